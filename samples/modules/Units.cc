// UNITS: converts the lengths listed in lengths.txt, which lies beside this module, into millimetres and inches.
#include "standalone/ModuleApi.h"

#include <charconv>
#include <dlfcn.h>
#include <fstream>
#include <iomanip>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

namespace {

constexpr double kMillimetresPerInch = 25.4;

/// The folder that holds this module, "/" included: the way from a module to the other files of its bundle.
std::string ownFolder()
{
    static const char somewhereInThisModule = 0;
    Dl_info place{};
    if (::dladdr(&somewhereInThisModule, &place) == 0) {
        return "";
    }
    const std::string path = place.dli_fname;
    return path.substr(0, path.rfind('/') + 1);
}

/// A decimal number, "2440" or "0.5", in every locale with a point.
std::optional<double> decimal(std::string_view text)
{
    double value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, problem] = std::from_chars(text.data(), end, value);
    return problem == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

/// A decimal number or a fraction such as "3/8".
std::optional<double> number(std::string_view text)
{
    const std::size_t slash = text.find('/');
    if (slash == std::string_view::npos) {
        return decimal(text);
    }
    const std::optional<double> upper = decimal(text.substr(0, slash));
    const std::optional<double> lower = decimal(text.substr(slash + 1));
    return upper && lower && *lower > 0 ? std::optional(*upper / *lower) : std::nullopt;
}

std::optional<double> millimetresPer(std::string_view unit)
{
    struct Unit
    {
        std::string_view name;
        double millimetres;
    };
    constexpr Unit kUnits[] = {
        {"mm", 1}, {"cm", 10}, {"m", 1000}, {"in", kMillimetresPerInch}, {"ft", 12 * kMillimetresPerInch}};
    for (const Unit& one : kUnits) {
        if (one.name == unit) {
            return one.millimetres;
        }
    }
    return std::nullopt;
}

/// The millimetres of "3 ft 2 in", the sum of its parts; nothing when it is no length.
std::optional<double> millimetresOf(const std::string& line)
{
    std::istringstream words(line);
    std::string amount;
    std::string unit;
    std::optional<double> sum;
    while (words >> amount) {
        const std::optional<double> value = number(amount);
        const std::optional<double> factor = (words >> unit) ? millimetresPer(unit) : std::nullopt;
        if (!value || !factor) {
            return std::nullopt;
        }
        sum = sum.value_or(0) + *value * *factor;
    }
    return sum;
}

void convertLengths(void* /*context*/)
{
    const std::string path = ownFolder() + "lengths.txt";
    std::ifstream file(path);
    if (!file) {
        kestPrint(("UNITS: " + path + " cannot be opened\n").c_str());
        return;
    }
    std::ostringstream table;
    table << std::fixed << std::setprecision(3);
    std::string line;
    for (int lineNumber = 1; std::getline(file, line); ++lineNumber) {
        if (line.empty() || line.front() == '#') {
            continue;
        }
        table << std::left << std::setw(16) << line << std::right;
        if (const std::optional<double> length = millimetresOf(line)) {
            table << std::setw(12) << *length << " mm" << std::setw(12) << *length / kMillimetresPerInch << " in\n";
        } else {
            table << "  is no length (line " << lineNumber << " of lengths.txt)\n";
        }
    }
    kestPrint(table.str().c_str());
}

} // namespace

int kestModuleEntry()
{
    if (kestRegisterCommand("UNITS", convertLengths, nullptr) == 0) {
        return 1; // another module has the name
    }
    kestPrint(
        ("Units: ready on host version " + std::string(kestHostVersion()) + "; UNITS converts lengths\n").c_str());
    return 0;
}
