// OpenSslLibrary.h: OpenSSL 3, found when it is first needed.
#pragma once

#include "CommonUiApi.h"
#include "OpenSslFunctions.h"

#include <memory>
#include <string>

class YReportMessageParams;

namespace OpenSSL {

// libcrypto-3.dll and libssl-3.dll from the folder of this library, else from the program's; nowhere
// else, so that nobody can put others in front of them. Both or neither, and of their functions all
// or none. Any thread; of two that come first one waits. Memory of theirs is cleared when they give it
// back, unless the program has used them before.

// Null, and error is 0xE10400CD with what is missing as its detail (a DLL, a function) or the policy
// that forbids cryptography that is not validated; the DLLs are not loaded then, and the next call
// tries again. Once bound they stay to the end of the process, as objects of theirs may, and this library
// with them; a later policy stops new certificates only.
COMMONUI_API const Functions* FindFunctions(YReportMessageParams& error);

// After FindFunctions has found them.
COMMONUI_API const Functions& GetFunctions() noexcept;

// Makes error the message with a detail that tells the newest entry of the error queue and, where
// the system was the reason, the system's text. systemError: the reason where the queue has none;
// 0: none known. Empties the queue.
COMMONUI_API void ReportFailure(unsigned messageId, YReportMessageParams& error,
                                unsigned systemError = 0);

// Owns an object of the library's.
template <auto free>
struct Freer
{
    template <class Object>
    void operator()(Object* object) const noexcept
    {
        (GetFunctions().*free)(object);
    }
};
template <class Object, auto free>
using Handle = std::unique_ptr<Object, Freer<free>>;

using BigNumberHandle = Handle<BigNumber, &Functions::BN_free>;
using BioHandle = Handle<Bio, &Functions::BIO_free>;
using CertificateHandle = Handle<Certificate, &Functions::X509_free>;
using ExtensionHandle = Handle<Extension, &Functions::X509_EXTENSION_free>;
using KeyHandle = Handle<Key, &Functions::EVP_PKEY_free>;  // clears the key's memory
using Pkcs12Handle = Handle<Pkcs12, &Functions::PKCS12_free>;
using RequestHandle = Handle<Request, &Functions::X509_REQ_free>;
using RsaKeyHandle = Handle<RsaKey, &Functions::RSA_free>;  // clears the key's memory
using TimeHandle = Handle<Time, &Functions::ASN1_TIME_free>;

}  // namespace OpenSSL
