// CertificateText.h: a certificate in words.
#pragma once

#include <string>

// Subject, validity, serial number, fingerprint and key of the file, a line each; or why it cannot be
// read. No file: nothing. User-interface thread.
std::wstring DescribeCertificate(const std::wstring& file);
