#include "cli/ListReport.h"

#include "cli/ListedBundle.h"
#include "cli/ReportLines.h"
#include "cli/Shown.h"
#include "cli/Terminal.h"
#include "cli/rules/RuleTexts.h"

#include <algorithm>
#include <array>
#include <map>

namespace cli {

namespace {

constexpr std::size_t kColumns = 6;
constexpr std::size_t kStateColumn = 2;
constexpr std::size_t kGap = 2;

struct Row
{
    std::array<std::string, kColumns> cells;
    std::string colour; ///< of the state; empty: none
    std::string reason;
};

const char* colourOf(BundleState state)
{
    switch (state) {
    case BundleState::kLoaded:
    case BundleState::kMenusOnly:
        return "\x1B[32m";
    case BundleState::kKept:
    case BundleState::kLoadedWithFailures:
    case BundleState::kWaiting:
        return "\x1B[33m";
    case BundleState::kNotABundle:
    case BundleState::kUnreadable:
    case BundleState::kMalformed:
    case BundleState::kRequirementNotMet:
        break;
    }
    return "\x1B[31m";
}

/// The folder shortened under its root: "user: Tools.bundle".
std::string rootOf(const Examination& examination, const ExaminedBundle& bundle)
{
    constexpr std::array<const char*, 3> kNames{"program", "all users", "user"};
    for (std::size_t index = 0; index < examination.roots.size() && index < kNames.size(); ++index) {
        const std::wstring& root = examination.roots[index].path;
        if (bundle.folder.starts_with(root + L"/")) {
            return std::string(kNames[index]) + ": " +
                   abridged(std::wstring_view(bundle.folder).substr(root.size() + 1));
        }
    }
    return abridged(bundle.folder);
}

Row rowOf(const Examination& examination, const ListedBundle& listed, bool hasColours)
{
    const ExaminedBundle& bundle = *listed.bundle;
    const auto& package = bundle.records.package;
    Row row;
    row.cells = {package.name.empty() ? "-" : abridged(package.name),
                 package.appVersion.empty() ? "-" : abridged(package.appVersion),
                 nameOf(bundle.state),
                 std::to_string(listed.commands.size()),
                 std::to_string(listed.menus),
                 rootOf(examination, bundle)};
    row.colour = hasColours ? colourOf(bundle.state) : "";
    if (listed.reason != nullptr) {
        row.reason = std::string(nameOf(listed.reason->rule->severity)) + " " + std::string(listed.reason->rule->code) +
                     ": " + listed.reason->what;
    }
    return row;
}

/// How wide each column is. Where the terminal is too narrow, first the folder, then the name and the version shrink.
std::array<std::size_t, kColumns> widthsOf(const std::vector<Row>& rows, std::size_t terminal)
{
    std::array<std::size_t, kColumns> widths{};
    for (const Row& row : rows) {
        for (std::size_t column = 0; column < kColumns; ++column) {
            widths.at(column) = std::max(widths.at(column), columnsOf(row.cells.at(column)));
        }
    }
    std::size_t total = kGap * (kColumns - 1);
    for (const std::size_t width : widths) {
        total += width;
    }
    constexpr std::size_t kLeast = 8;
    for (const std::size_t column : {5U, 0U, 1U}) {
        if (terminal != 0 && total > terminal && widths.at(column) > kLeast) {
            const std::size_t narrower =
                std::max(kLeast, widths.at(column) - std::min(widths.at(column), total - terminal));
            total -= widths.at(column) - narrower;
            widths.at(column) = narrower;
        }
    }
    return widths;
}

std::string lineOf(const Row& row, const std::array<std::size_t, kColumns>& widths)
{
    std::string line;
    for (std::size_t column = 0; column < kColumns; ++column) {
        const std::string cell = fittedTo(widths.at(column), row.cells.at(column));
        const std::string padding(widths.at(column) - columnsOf(cell), ' ');
        const bool isNumber = column == 3 || column == 4;
        const bool isColoured = column == kStateColumn && !row.colour.empty();
        line += (isNumber ? padding : "") + (isColoured ? row.colour + cell + "\x1B[0m" : cell);
        if (column + 1 < kColumns) {
            line += (isNumber ? "" : padding) + std::string(kGap, ' ');
        }
    }
    return line + "\n";
}

/// `text` below a row, broken between words where it is too wide.
std::string indented(const std::string& text, std::size_t terminal)
{
    const std::string begin(4, ' ');
    std::string result = begin;
    std::size_t used = begin.size();
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        const std::string word = text.substr(at, end - at);
        if (terminal != 0 && used > begin.size() && used + 1 + columnsOf(word) > terminal) {
            result += "\n" + begin;
            used = begin.size();
        } else if (used > begin.size()) {
            result += " ";
            ++used;
        }
        result += word;
        used += columnsOf(word);
        at = end + 1;
    }
    return result + "\n";
}

/// " NAME" as a shell takes it; empty when `name` cannot be shown as it is: without a name, all is explained.
std::string asArgument(const std::wstring& name)
{
    const std::string text = plainUtf8(name);
    if (abridged(name) != text || text.find('\'') != std::string::npos) {
        return "";
    }
    const bool isPlain = text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-") ==
                         std::string::npos;
    return isPlain && !text.starts_with('-') ? " " + text : " -- '" + text + "'";
}

std::string countsText(const Examination& examination)
{
    std::map<BundleState, std::size_t> counts;
    for (const ExaminedBundle& bundle : examination.bundles) {
        ++counts[bundle.state];
    }
    std::string text;
    for (const auto& [state, count] : counts) {
        text += (text.empty() ? ": " : ", ") + std::to_string(count) + " " + nameOf(state);
    }
    return counted(examination.bundles.size(), "bundle", "bundles") + text + "\n";
}

} // namespace

std::string listText(const Examination& examination, const Findings& reasons, TableLook look)
{
    std::vector<Row> rows{{{"NAME", "VERSION", "STATE", "COMMANDS", "MENUS", "FOLDER"}, "", ""}};
    const std::vector<ListedBundle> bundles = listedBundles(examination, reasons);
    rows.reserve(bundles.size() + 1);
    const ListedBundle* unloaded = nullptr;
    for (const ListedBundle& listed : bundles) {
        rows.push_back(rowOf(examination, listed, look.hasColours));
        unloaded = unloaded == nullptr && !isAllLoaded(listed) ? &listed : unloaded;
    }
    std::string text;
    const std::array<std::size_t, kColumns> widths = widthsOf(rows, look.width);
    for (const Row& row : rows) {
        if (rows.size() > 1) {
            text += lineOf(row, widths);
            text += row.reason.empty() ? "" : indented(row.reason, look.width);
        }
    }
    text += (text.empty() ? "" : "\n") + countsText(examination);
    if (!examination.failure.empty()) {
        text += "An error ended the start: " + abridged(examination.failure) + "\n";
    }
    if (unloaded != nullptr) {
        text += "\"kestbundle explain" + asArgument(folderNameOf(*unloaded->bundle)) + "\" says why.\n";
    }
    return text;
}

} // namespace cli
