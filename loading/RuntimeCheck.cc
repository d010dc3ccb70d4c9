// Whether the running host is one that a bundle asks for.
#include "host/Configuration.h"
#include "host/Kds.h"
#include "host/TextLayer.h"
#include "loading/ProductVersion.h"
#include "manifest/Bundle.h"

const wchar_t* loading::productVersion = L"26.0";

namespace {

constexpr int kFieldsNeeded = 4;
constexpr int kOSField = 2;
constexpr int kArchitectureField = 3;

/// Whether `seriesMin` <= version <= `seriesMax`; a bound of 0.0, which is what no number reads as, is none.
bool isInSeries(const CStdStr<wchar_t>& seriesMin, const CStdStr<wchar_t>& seriesMax)
{
    const double version = _wtof(loading::productVersion);
    const double min = _wtof(seriesMin.c_str());
    const double max = _wtof(seriesMax.c_str());
    return !((min != 0.0 && version < min) || (max != 0.0 && version > max));
}

CStdStr<wchar_t> textOrEmpty(const wchar_t* text)
{
    return text != nullptr ? CStdStr<wchar_t>(text) : CStdStr<wchar_t>();
}

CStdStr<wchar_t> hostVernum()
{
    resbuf result{};
    if (ksedGetVar(L"VERNUM", &result) != kKdsSuccess) {
        return {};
    }
    return textOrEmpty(result.resval.rstring);
}

} // namespace

void KestBundle::judgeRuntime()
{
    const auto reject = [this](const char* message) {
        isRuntime = false;
        logManifestProblem(message);
    };

    if (!isInSeries(runtime.seriesMin, runtime.seriesMax)) {
        reject(bundlelogtext::kWrongProductVersion);
    }

    const CStdStr<wchar_t> separator = L"_";
    CStringArray vernum;
    divString(hostVernum(), separator, vernum);
    const bool isVernumKnown = vernum.GetSize() >= kFieldsNeeded;
    if (isVernumKnown && !runtime.os.empty() && vernum[kOSField] != runtime.os) {
        reject(bundlelogtext::kWrongOS);
    }
    if (isVernumKnown) {
        // Meant: an empty architecture is compared too, unlike the empty OS and platform.
        CStringArray architecture;
        divString(runtime.architecture, separator, architecture);
        if (vernum[kArchitectureField] != architecture[0]) {
            reject(bundlelogtext::kWrongArchitecture);
        }
    }

    if (const TarvixConfig* config = kestConfig()) {
        const CStdStr<wchar_t> product = textOrEmpty(config->productName());
        if (!runtime.platform.empty() && runtime.platform != product) {
            reject(bundlelogtext::kWrongPlatform);
        }
    }
}
