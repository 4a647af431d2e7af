// CertificateGeneration.h: a certificate that is being made while its user waits.
#pragma once

#include "YCertificateNameBase.h"
#include "YCreateCertificate.h"
#include "YReportMessageParams.h"
#include "YUnknown.h"
#include "YUnknownPointer.h"

#include <atomic>
#include <cstdint>
#include <string>

// Made on a thread of its own, which holds the object and this library until it is done: whoever
// waits may give up at any time by releasing it. What was made goes with it then.
class CertificateGeneration : public YUnknown<>
{
public:
    CertificateGeneration(SslLib library, const YCertificateNameBase& name,
                          const YCertificateParameters& wanted);

    // Where no thread can be made it is done when this returns.
    void Start();

    bool IsDone() const { return done; }
    // Once it is done. Null: error says why.
    YUnknownPointer<YCertificateBase> Take(YReportMessageParams& error);

private:
    static unsigned __stdcall RunThread(void* generation);
    void Run() noexcept;

    const SslLib sslLib;
    const YCertificateNameBase name;
    const std::string algorithm;
    YCertificateParameters parameters;

    YUnknownPointer<YCertificateBase> certificate;
    YReportMessageParams failure;
    std::atomic<bool> done = false;  // written last
};
