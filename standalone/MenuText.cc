#include "standalone/MenuText.h"

#include "standalone/CuixWriter.h"
#include "standalone/Utf8.h"

#include <array>
#include <cstdio>
#include <functional>
#include <optional>
#include <vector>

namespace standalone {

namespace {

/// Why `line` cannot stand in a menu file; empty when it can.
std::string problemOfCharacters(std::string_view line)
{
    for (std::size_t at = 0; at < line.size();) {
        const char32_t code = nextCodePoint(line, at);
        if (code == kNotUtf8) {
            return "the text is not UTF-8";
        }
        if ((code < 0x20 && code != U'\t') || code == 0xFFFE || code == 0xFFFF) {
            std::array<char, 16> name{};
            std::snprintf(name.data(), name.size(), "U+%04X", static_cast<unsigned>(code));
            return std::string("the character ") + name.data() + " cannot stand in a menu";
        }
    }
    return "";
}

/// Hands the lines of `bytes` to `take`, which answers with a problem or an empty text, then finishes `writer`.
MenuText convert(std::string_view bytes, CuixWriter& writer,
                 const std::function<std::string(std::string_view line, int number)>& take)
{
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (bytes.starts_with(kByteOrderMark)) {
        bytes.remove_prefix(kByteOrderMark.size());
    }
    int number = 1;
    const auto failed = [&](const std::string& problem) {
        return MenuText{"", "line " + std::to_string(number) + ": " + problem};
    };
    for (;; ++number) {
        const std::size_t end = bytes.find('\n');
        std::string_view line = bytes.substr(0, end);
        if (line.ends_with('\r') && end != std::string_view::npos) {
            line.remove_suffix(1);
        }
        std::string problem = problemOfCharacters(line);
        if (problem.empty()) {
            problem = take(line, number);
        }
        if (!problem.empty()) {
            return failed(problem);
        }
        if (end == std::string_view::npos || end + 1 == bytes.size()) {
            break;
        }
        bytes.remove_prefix(end + 1);
    }
    if (const std::string problem = writer.finish(); !problem.empty()) {
        return failed(problem);
    }
    return {writer.take(), ""};
}

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t");
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

bool isPunctuation(char character)
{
    return std::string_view("!\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~").find(character) != std::string_view::npos;
}

/// The position of the first `wanted` that no backslash stands before, or npos.
std::size_t findPlain(std::string_view text, char wanted)
{
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == wanted) {
            return at;
        }
        at += text[at] == '\\' ? 1U : 0U;
    }
    return std::string_view::npos;
}

/// `text` with each backslash and the punctuation after it replaced by that punctuation; nothing when a backslash
/// stands before anything else.
std::optional<std::string> unescaped(std::string_view text)
{
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '\\' && (++at == text.size() || !isPunctuation(text[at]))) {
            return std::nullopt;
        }
        plain += text[at];
    }
    return plain;
}

constexpr char kBadEscape[] = "a backslash in a label stands before no punctuation; write \"\\\\\" for a backslash";

std::string takeSourceLine(CuixWriter& writer, std::string_view untrimmed, int number)
{
    const std::string_view line = trimmed(untrimmed);
    if (line.empty() || line.front() == '#') {
        return "";
    }
    if (line == "<") {
        return writer.endSubmenu();
    }
    if (line.size() >= 3 && line.find_first_not_of('-') == std::string_view::npos) {
        return writer.addSeparator();
    }
    if (line.front() == '[') {
        if (findPlain(line, ']') != line.size() - 1) {
            return "the menu's title does not end with \"]\" at the end of the line";
        }
        const std::optional<std::string> title = unescaped(trimmed(line.substr(1, line.size() - 2)));
        return title ? writer.startMenu(*title) : kBadEscape;
    }
    if (line.front() == '>') {
        const std::optional<std::string> label = unescaped(trimmed(line.substr(1)));
        return label ? writer.startSubmenu(*label, number) : kBadEscape;
    }
    const std::size_t equals = findPlain(line, '=');
    if (equals == std::string_view::npos) {
        return "the item has no \"=\" between its label and its command";
    }
    const std::optional<std::string> label = unescaped(trimmed(line.substr(0, equals)));
    return label ? writer.addItem(*label, trimmed(line.substr(equals + 1))) : kBadEscape;
}

std::string takeCompactLine(CuixWriter& writer, std::string_view line, int number)
{
    if (number == 1) {
        return line == "menuc\t1" ? "" : "the first line is not \"menuc\", a tab and \"1\"";
    }
    if (line.empty()) {
        return "";
    }
    std::vector<std::string_view> fields;
    for (std::string_view rest = line;;) {
        const std::size_t tab = rest.find('\t');
        fields.push_back(rest.substr(0, tab));
        if (tab == std::string_view::npos) {
            break;
        }
        rest.remove_prefix(tab + 1);
    }
    constexpr std::string_view kKinds = "MIS><";
    constexpr std::array<std::size_t, kKinds.size()> kFieldCounts{2, 3, 1, 2, 1};
    const std::string_view kind = fields.front();
    const std::size_t which = kind.size() == 1 ? kKinds.find(kind.front()) : std::string_view::npos;
    if (which == std::string_view::npos) {
        return "the record kind is none of M, I, S, > and <";
    }
    if (fields.size() != kFieldCounts[which]) {
        return "the number of fields is " + std::to_string(fields.size()) + ", and a record of kind " +
               std::string(kind) + " takes " + std::to_string(kFieldCounts[which]);
    }
    switch (kind.front()) {
    case 'M':
        return writer.startMenu(fields[1]);
    case 'I':
        return writer.addItem(fields[1], fields[2]);
    case 'S':
        return writer.addSeparator();
    case '>':
        return writer.startSubmenu(fields[1], number);
    default:
        return writer.endSubmenu();
    }
}

} // namespace

MenuText cuixFromSourceMenu(std::string_view bytes)
{
    CuixWriter writer;
    return convert(bytes, writer,
                   [&](std::string_view line, int number) { return takeSourceLine(writer, line, number); });
}

MenuText cuixFromCompactMenu(std::string_view bytes)
{
    CuixWriter writer;
    return convert(bytes, writer,
                   [&](std::string_view line, int number) { return takeCompactLine(writer, line, number); });
}

} // namespace standalone
