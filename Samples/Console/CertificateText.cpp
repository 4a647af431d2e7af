#include "CertificateText.h"

#include "ConsoleText.h"
#include "resource.h"

#include <YReportMessageParams.h>
#include <openssl/YCertificateOpenSsl.h>

#include <windows.h>

#include <string_view>

namespace {

// "CN=host, O=Organisation"
std::wstring FormatName(const YCertificateNameBase& name)
{
    std::wstring text;
    for (int number = 0; number < YCertificateNameBase::fieldCount; ++number) {
        const auto field = static_cast<YCertificateNameBase::Field>(number);
        if (name.GetField(field).IsEmpty()) {
            continue;
        }
        const std::string_view shortName = YCertificateNameBase::GetShortName(field);
        text += text.empty() ? L"" : L", ";
        text += std::wstring(shortName.begin(), shortName.end()) + L'=';
        text += name.GetField(field).c_str();
    }
    return text;
}

// Seconds since 1970 as a date where the user is.
std::wstring FormatDate(std::int64_t seconds)
{
    constexpr std::int64_t secondsFrom1601To1970 = 11'644'473'600;
    constexpr std::int64_t ticksPerSecond = 10'000'000;
    const std::int64_t ticks = (seconds + secondsFrom1601To1970) * ticksPerSecond;
    const FILETIME file{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    SYSTEMTIME universal{};
    SYSTEMTIME local{};
    wchar_t text[64] = L"";
    ::FileTimeToSystemTime(&file, &universal);
    ::SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local);
    ::GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &local, nullptr, text, 64);
    return text;
}

std::wstring FormatBytes(const YCertificateContextBase::Fingerprint& bytes)
{
    std::wstring text;
    for (const std::uint8_t byte : bytes) {
        text += text.empty() ? L"" : L" ";
        text += YFormatText(L"%1!02X!", static_cast<unsigned>(byte));
    }
    return text;
}

}  // namespace

std::wstring DescribeCertificate(const std::wstring& file)
{
    if (file.empty()) {
        return {};
    }
    YReportMessageParams error;
    const auto certificate = OpenSSL::YCertificate::Load(file.c_str(), error);
    if (!certificate) {
        return error.GetTrimmedText();
    }
    const YCertificateContextBase& context = certificate->GetContext();
    const std::string serial = context.GetSerialNumber();
    return FormatText(IDS_CERTIFICATE_DETAILS, FormatName(*context.GetSubject()).c_str(),
                      FormatDate(context.GetNotBefore()).c_str(),
                      FormatDate(context.GetNotAfter()).c_str(),
                      std::wstring(serial.begin(), serial.end()).c_str(),
                      FormatBytes(context.GetFingerprint()).c_str(), context.GetPublicKeyBits());
}
