// Any file name, in any encoding, through the LISP expression that loads it: what the stand-alone host reads out of the
// expression names the same file again. An input is a byte that chooses the locale and the bytes of a path.
#include "fuzz/Input.h"
#include "fuzz/StandaloneHost.h"
#include "fuzz/Target.h"
#include "host/LocaleText.h"
#include "manifest/Bundle.h"
#include "standalone/LispQueue.h"

#include <algorithm>
#include <clocale>

namespace fuzz {

namespace {

/// What an expression has room for around the path.
constexpr std::size_t kLongestPath = 2048 - 9;

/// All of them, loaded once: what the C library keeps it need not look for again.
void setLocale(unsigned number)
{
    constexpr const char* kLocales[] = {"C.UTF-8",          "C",          "de_DE.ISO-8859-1", "zh_CN.GB18030",
                                        "zh_HK.BIG5-HKSCS", "tr_TR.UTF-8"};
    setenv("LOCPATH", KEST_TEST_LOCALES, 1);
    const char* const name = kLocales[number % std::size(kLocales)];
    if (std::setlocale(LC_ALL, name) == nullptr) {
        throw std::runtime_error(std::string("there is no locale ") + name);
    }
}

void loadLisp(std::string_view bytes)
{
    Input input(bytes);
    setLocale(input.below(6));
    std::string file(bytes.substr(std::min<std::size_t>(bytes.size(), 1)));
    file.resize(std::min(file.find('\0'), file.size()));
    const std::wstring path = localetext::widen(file);
    requireEqual(localetext::narrow(path), file, "a name is the same when it has been wide");

    StandaloneHost& host = standaloneHost();
    host.journal().clear();
    KestBundle carrier;
    require(!carrier.loadLsp(path), "there is no evaluator here");
    const std::wstring expression = host.journal().only<standalone::ExpressionQueued>().at(0).expression;
    std::setlocale(LC_ALL, "C.UTF-8");

    std::wstring slashed = path;
    std::replace(slashed.begin(), slashed.end(), L'\\', L'/');
    requireEqual(expression, (L"(LOAD \"" + slashed + L"\")").substr(0, 2048), "the expression");
    if (path.size() <= kLongestPath) {
        requireEqual(standalone::pathLoadedBy(expression), slashed, "the path that the expression loads");
    }
}

const Register kLisp("lisp", loadLisp);

} // namespace

} // namespace fuzz
