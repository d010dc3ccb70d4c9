#include "cli/TagPositions.h"

#include <algorithm>

namespace cli {

namespace {

bool isBlank(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r';
}

bool isCharacterBegin(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}

} // namespace

bool TagPositions::step(TagPosition& next)
{
    while (!isOver()) {
        moveTo(text.find('<', at));
        if (isAt("<!--")) {
            moveBehind("-->");
        } else if (isAt("<![CDATA[")) {
            moveBehind("]]>");
        } else if (isAt("<?")) {
            moveBehind("?>");
        } else if (isAt("<!")) {
            skipDocumentType();
        } else if (isAt("</")) {
            moveBehind(">");
        } else if (!isOver()) {
            readTag(next);
            return true;
        }
    }
    return false;
}

/// Only forward; behind the end is the end.
void TagPositions::moveTo(std::size_t offset)
{
    for (offset = std::min(offset, text.size()); at < offset; ++at) {
        if (text[at] == '\n') {
            ++position.line;
            position.column = 1;
        } else if (isCharacterBegin(text[at])) {
            ++position.column;
        }
    }
}

void TagPositions::moveBehind(std::string_view mark)
{
    const std::size_t found = text.find(mark, at + 1);
    moveTo(found == std::string_view::npos ? found : found + mark.size());
}

/// Its declarations may hold what looks like a tag in quotes, in comments and in processing instructions.
void TagPositions::skipDocumentType()
{
    int brackets = 0;
    moveTo(at + 1);
    while (!isOver()) {
        const char byte = text[at];
        if (byte == '"' || byte == '\'') {
            moveBehind(text.substr(at, 1));
        } else if (isAt("<!--")) {
            moveBehind("-->");
        } else if (isAt("<?")) {
            moveBehind("?>");
        } else {
            brackets += byte == '[' ? 1 : byte == ']' ? -1 : 0;
            moveTo(at + 1);
            if (byte == '>' && brackets == 0) {
                return;
            }
        }
    }
}

void TagPositions::skipBlanks()
{
    std::size_t end = at;
    while (end < text.size() && isBlank(text[end])) {
        ++end;
    }
    moveTo(end);
}

std::string_view TagPositions::takeName()
{
    const std::size_t begin = at;
    std::size_t end = at;
    while (end < text.size() && !isBlank(text[end]) && text[end] != '=' && text[end] != '/' && text[end] != '>') {
        ++end;
    }
    moveTo(end);
    return text.substr(begin, end - begin);
}

void TagPositions::readTag(TagPosition& next)
{
    next.attributes.clear();
    next.tag.position = position;
    moveTo(at + 1);
    next.tag.name = takeName();
    for (skipBlanks(); !isOver() && text[at] != '>' && text[at] != '/'; skipBlanks()) {
        const TextPosition begin = position;
        const std::string_view name = takeName();
        moveTo(text.find_first_of("\"'>", at));
        if (name.empty() || isOver() || text[at] == '>') {
            return; // no well-formed tag: it has no token
        }
        moveBehind(text.substr(at, 1));
        next.attributes.push_back({name, begin});
    }
}

} // namespace cli
