// Any requirements against any host: the verdict and the log, against the plain telling of the comparisons.
// An input is a byte of settings and seven lines.
#include "fuzz/Input.h"
#include "fuzz/RequirementsModel.h"
#include "fuzz/Target.h"
#include "host/TextLayer.h"
#include "manifest/Bundle.h"
#include "tests/FreshManager.h"

namespace fuzz {

namespace {

void judge(std::string_view bytes)
{
    Input input(bytes);
    const unsigned settings = input.below(256);
    restartManagerAndHost();
    hostdouble::State& host = hostdouble::state();
    host.vernum = input.line();
    host.productName = input.line();
    KestBundle bundle(L"/b", L"/b/PackageContents.xml");
    bundle.runtime.seriesMin = input.line();
    bundle.runtime.seriesMax = input.line();
    bundle.runtime.os = input.line();
    bundle.runtime.architecture = input.line();
    bundle.runtime.platform = input.line();
    if (settings % 16 == 1) {
        host.vernum.reset();
    } else if (settings % 16 == 2) {
        host.productName.reset();
    }
    host.isVernumNull = settings % 16 == 3;
    host.hasConfiguration = settings % 16 != 4;

    bundle.judgeRuntime();

    std::string expected;
    for (const std::string& wrong : mismatches(bundle.runtime, host)) {
        expected += "\n---------------------------------------\n/b/PackageContents.xml: The " + wrong +
                    " of the RuntimeRequirements element is incorrect\n";
    }
    requireEqual(loggedProblems(), expected, "the log");
    require(bundle.getIsRuntime() == expected.empty(), "the verdict is what the log says");
    for (const CStdStr<wchar_t>& text : {bundle.runtime.seriesMin, bundle.runtime.seriesMax}) {
        requireEqual(std::to_string(_wtof(text.c_str())), std::to_string(number(text)), "a number");
        require(_wtoi(text.c_str()) == wholeNumber(text), "a whole number");
    }
}

const Register kRequirements("requirements", judge);

} // namespace

} // namespace fuzz
