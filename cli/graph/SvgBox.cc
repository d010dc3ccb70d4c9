#include "cli/graph/SvgBox.h"

#include "cli/graph/TextWidth.h"
#include "standalone/Utf8.h"

#include <algorithm>

namespace cli {

namespace {

constexpr int kTitleSize = 15; // bold letters of 13 are that wide
constexpr int kLineSize = 11;
constexpr int kWidest = 420; ///< of a text
constexpr int kMargin = 12;
constexpr int kSignRoom = 20;
constexpr int kTitleHeight = 20;
constexpr int kTextHeight = 15;
constexpr std::size_t kMostContent = 12;

std::string textElement(const char* style, Point at, const std::string& text)
{
    return "<text class=\"" + std::string(style) + "\" x=\"" + std::to_string(at.x) + "\" y=\"" + std::to_string(at.y) +
           "\">" + xmlText(text) + "</text>\n";
}

} // namespace

SvgBox svgBox(const GraphNode& node, const PictureOptions& options)
{
    SvgBox box;
    box.title = clippedText(node.title, kTitleSize, kWidest);
    int width = textWidth(box.title, kTitleSize) + kSignRoom;
    const auto add = [&](const std::string& line) {
        box.lines.push_back(clippedText(line, kLineSize, kWidest));
        width = std::max(width, textWidth(box.lines.back(), kLineSize));
    };
    if (!node.folder.empty() && node.folder != node.title) {
        add(node.folder);
    }
    add(node.state());
    const std::vector<std::string> content = contentLines(node, options);
    const std::size_t most = content.size() > kMostContent ? kMostContent - 1 : content.size();
    for (std::size_t at = 0; at < most; ++at) {
        add(content[at]);
    }
    if (most < content.size()) {
        add("and " + std::to_string(content.size() - most) + " more");
    }
    box.size = {width + 2 * kMargin, kTitleHeight + static_cast<int>(box.lines.size()) * kTextHeight + kMargin};
    return box;
}

std::string drawn(const SvgBox& box, const GraphNode& node, Point corner)
{
    const NodeStanding standing = standingOf(node);
    const bool isRound = standing == NodeStanding::kFine || standing == NodeStanding::kMissing;
    std::string text = "<g>\n<title>" + xmlText(node.title + ": " + node.state()) + "</title>\n";
    text += "<rect class=\"box " + std::string(classOf(standing)) + "\" x=\"" + std::to_string(corner.x) + "\" y=\"" +
            std::to_string(corner.y) + "\" width=\"" + std::to_string(box.size.width) + "\" height=\"" +
            std::to_string(box.size.height) + "\" rx=\"" + (isRound ? "8" : "0") + "\"/>\n";
    text += standingSign(standing, {corner.x + kMargin - 2, corner.y + 8});
    text += textElement("title", {corner.x + kMargin + kSignRoom, corner.y + kTitleHeight}, box.title);
    int y = corner.y + kTitleHeight + kTextHeight + 2;
    for (const std::string& line : box.lines) {
        text += textElement("line", {corner.x + kMargin, y}, line);
        y += kTextHeight;
    }
    return text + "</g>\n";
}

std::string standingSign(NodeStanding standing, Point corner)
{
    const std::string place = "<path class=\"sign\" transform=\"translate(" + std::to_string(corner.x) + " " +
                              std::to_string(corner.y) + ")\" ";
    switch (standing) {
    case NodeStanding::kFine: // a tick
        return place + "stroke=\"#1a7f37\" d=\"M2 8l4 4l7-9\"/>\n";
    case NodeStanding::kDoubtful: // a triangle with an exclamation mark
        return place + "stroke=\"#7d4e00\" d=\"M7 1l6.5 12h-13zM7 5v4M7 11v.6\"/>\n";
    case NodeStanding::kBroken: // a cross
        return place + "stroke=\"#b3261e\" d=\"M2.5 2.5l9 9M11.5 2.5l-9 9\"/>\n";
    case NodeStanding::kMissing: // a question mark
        break;
    }
    return place + "stroke=\"#57606a\" d=\"M4 4.5a3 3 0 1 1 4.5 2.6q-1.5 1-1.5 2.4M7 12.4v.6\"/>\n";
}

std::string xmlText(const std::string& text)
{
    std::string escaped;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = at;
        const char32_t code = standalone::nextCodePoint(text, at);
        at += code == standalone::kNotUtf8 ? 1 : 0;
        if (code == U'&') {
            escaped += "&amp;";
        } else if (code == U'<') {
            escaped += "&lt;";
        } else if (code == U'>') {
            escaped += "&gt;";
        } else if (code == U'"') {
            escaped += "&quot;";
        } else if (code == standalone::kNotUtf8 || code < 0x20 || code == 0xFFFE || code == 0xFFFF) { // not for XML
            escaped += "\xEF\xBF\xBD";
        } else {
            escaped.append(text, start, at - start);
        }
    }
    return escaped;
}

} // namespace cli
