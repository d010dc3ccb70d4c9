// The start tags of an XML text, with where they and their attributes stand in it.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace cli {

/// Both count from 1, the column in characters; 0 is not known.
struct TextPosition
{
    int line = 0;
    int column = 0;

    bool operator==(const TextPosition&) const = default;
};

struct NamePosition
{
    std::string_view name; ///< as written, in the text that was given
    TextPosition position;
};

/// A start tag: the position is that of its "<".
struct TagPosition
{
    NamePosition tag;
    std::vector<NamePosition> attributes; ///< in the order written
};

/// Walks over the start tags of `utf8`, which outlives it, in one pass. Judges nothing: the text is one that a parser
/// finds well-formed up to the last tag that is asked for.
class TagPositions
{
public:
    explicit TagPositions(std::string_view utf8) : text(utf8) {}

    /// Writes the next start tag into `next`; false when there is none.
    bool step(TagPosition& next);

private:
    void moveTo(std::size_t offset);
    void moveBehind(std::string_view mark);
    void skipDocumentType();
    void skipBlanks();
    std::string_view takeName();
    void readTag(TagPosition& next);

    bool isAt(std::string_view mark) const { return text.substr(at, mark.size()) == mark; }
    bool isOver() const { return at >= text.size(); }

    std::string_view text;
    std::size_t at = 0;
    TextPosition position{1, 1}; ///< of `at`
};

} // namespace cli
