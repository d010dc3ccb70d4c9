// What the tool has to say about a bundle: a rule that has something against it, and where.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cli {

enum class Severity
{
    kError,   ///< something does not load, and it was meant to
    kWarning, ///< it loads, but hardly as it was meant; or only here and now
    kNote,    ///< worth knowing
};

/// "error", "warning" or "note"; stable, since scripts read it.
const char* nameOf(Severity severity);

/// One rule. All are constants in cli/rules/, and each has a place of its own in docs/findings.md.
struct Rule
{
    std::string_view code; ///< "KB401": stable; never given to another rule
    std::string_view name; ///< "missing-dependency": for people, and the place in the document
    Severity severity;
    std::string_view title; ///< a short sentence without the case's own texts
};

/// A place in a file. Lines and columns count from 1, columns in characters; 0 is none.
struct Place
{
    std::wstring file; ///< absolute; empty: none
    int line = 0;
    int column = 0;
};

/// What a rule found. All texts are complete sentences or values in UTF-8, safe to print on a terminal line by line;
/// what comes from a bundle has gone through shownLine().
struct Finding
{
    const Rule* rule = nullptr;
    std::wstring bundle;  ///< the bundle folder that it is about
    std::wstring subject; ///< what it is about more closely: a module path, a command, a menu; may be empty
    std::optional<std::size_t> component; ///< its position in the bundle, when it is about one; paths may be repeated
    Place place;
    std::string what;     ///< what is wrong, with the offending text in it
    std::string expected; ///< may be empty, like the next two
    std::string found;
    std::string mend; ///< what to change
};

using Findings = std::vector<Finding>;

} // namespace cli
