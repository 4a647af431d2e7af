#include "certificates/CertificateGeneration.h"

#include "YUniqueHandle.h"

#include <windows.h>

#include <process.h>

#include <exception>
#include <utility>

namespace {

// The thread's own hold on this library, which would be gone under it otherwise.
HMODULE HoldThisLibrary(const void* address)
{
    HMODULE module = nullptr;
    ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                         static_cast<const wchar_t*>(address), &module);
    return module;
}

}  // namespace

CertificateGeneration::CertificateGeneration(SslLib library, const YCertificateNameBase& subject,
                                             const YCertificateParameters& wanted)
    : sslLib(library), name(subject), algorithm(wanted.signatureAlgorithm), parameters(wanted)
{
    parameters.name = &name;
    parameters.signatureAlgorithm = algorithm.c_str();
}

void CertificateGeneration::Start()
{
    AddRef();  // the thread's
    const YUniqueKernelHandle thread(
        reinterpret_cast<HANDLE>(::_beginthreadex(nullptr, 0, &RunThread, this, 0, nullptr)));
    if (!thread) {
        Run();
        Release();
    }
}

unsigned __stdcall CertificateGeneration::RunThread(void* generation)
{
    const HMODULE library = HoldThisLibrary(reinterpret_cast<const void*>(&RunThread));
    {
        const auto self = YUnknownPointer<CertificateGeneration>::Adopt(
            static_cast<CertificateGeneration*>(generation));
        self->Run();
    }
    if (library) {
        ::FreeLibraryAndExitThread(library, 0);
    }
    return 0;
}

void CertificateGeneration::Run() noexcept
{
    try {
        CreateCertificate(sslLib, parameters, certificate, failure);
    } catch (const std::exception&) {
        failure.SetErrorCode(ERROR_NOT_ENOUGH_MEMORY);
    }
    done = true;
}

YUnknownPointer<YCertificateBase> CertificateGeneration::Take(YReportMessageParams& error)
{
    if (!certificate) {
        error = failure;
    }
    return std::exchange(certificate, {});
}
