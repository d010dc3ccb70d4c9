#include "cli/CheckReport.h"

#include "cli/FindingJson.h"
#include "cli/Shown.h"

#include "host/LocaleText.h"
#include "loading/ProductVersion.h"

#include <nlohmann/json.hpp>

namespace cli {

std::string checkJson(const CheckReport& report)
{
    using Json = nlohmann::ordered_json;
    const Examination& examination = *report.checked.examination;
    Json bundles = Json::array();
    for (std::size_t index = 0; index < examination.bundles.size(); ++index) {
        const ExaminedBundle& bundle = examination.bundles[index];
        bundles.push_back({{"folder", plainUtf8(bundle.folder)},
                           {"given", plainUtf8(report.targets.asGiven(bundle.folder))},
                           {"state", nameOf(bundle.state)},
                           {"findings", findingsJson(report.checked.findings[index])}});
    }
    const Json document = {{"format", 1},
                           {"version", KEST_VERSION},
                           {"exitStatus", report.exitStatus},
                           {"strict", report.isStrict},
                           {"host",
                            {{"productVersion", plainUtf8(loading::productVersion)},
                             {"vernum", plainUtf8(examination.host.vernum)},
                             {"productName", plainUtf8(examination.host.productName)}}},
                           {"errors", countOf(report.checked, Severity::kError)},
                           {"warnings", countOf(report.checked, Severity::kWarning)},
                           {"notes", countOf(report.checked, Severity::kNote)},
                           {"bundles", std::move(bundles)}};
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace cli
