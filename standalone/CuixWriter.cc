#include "standalone/CuixWriter.h"

namespace standalone {

CuixWriter::CuixWriter() : document("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<MenuFile version=\"1\">\n") {}

std::string CuixWriter::startMenu(std::string_view title)
{
    if (title.empty()) {
        return "the menu has no title";
    }
    if (std::string problem = endMenu(); !problem.empty()) {
        return problem;
    }
    document += "  <Menu";
    attribute("title", title);
    document += ">\n";
    inMenu = true;
    return "";
}

std::string CuixWriter::startSubmenu(std::string_view label, int line)
{
    if (label.empty()) {
        return "the submenu has no label";
    }
    if (open.size() == kDeepestNesting) {
        return "submenus are nested deeper than " + std::to_string(kDeepestNesting);
    }
    std::string problem = startLine("<Submenu");
    attribute("label", label);
    document += ">\n";
    open.push_back(line);
    return problem;
}

std::string CuixWriter::endSubmenu()
{
    if (open.empty()) {
        return "no submenu is open";
    }
    open.pop_back();
    std::string problem = startLine("</Submenu>");
    document += "\n";
    return problem;
}

std::string CuixWriter::addItem(std::string_view label, std::string_view command)
{
    if (label.empty()) {
        return "the item has no label";
    }
    if (command.empty()) {
        return "the item has no command";
    }
    std::string problem = startLine("<Item");
    attribute("label", label);
    attribute("command", command);
    document += "/>\n";
    return problem;
}

std::string CuixWriter::addSeparator()
{
    std::string problem = startLine("<Separator/>");
    document += "\n";
    return problem;
}

std::string CuixWriter::finish()
{
    if (std::string problem = endMenu(); !problem.empty()) {
        return problem;
    }
    const bool holdsMenu = document.ends_with("  </Menu>\n");
    document += "</MenuFile>\n";
    return holdsMenu ? "" : "the file holds no menu";
}

std::string CuixWriter::endMenu()
{
    if (!open.empty()) {
        return "the submenu opened in line " + std::to_string(open.back()) + " is not closed";
    }
    if (inMenu) {
        document += "  </Menu>\n";
    }
    inMenu = false;
    return "";
}

std::string CuixWriter::startLine(std::string_view element)
{
    if (!inMenu) {
        return "it stands before the first menu";
    }
    document.append(4 + 2 * open.size(), ' ');
    document += element;
    return document.size() <= kLargestDocument
               ? ""
               : "the converted menu is larger than " + std::to_string(kLargestDocument >> 20) + " MB";
}

void CuixWriter::attribute(std::string_view name, std::string_view value)
{
    document += ' ';
    document += name;
    document += "=\"";
    for (const char character : value) {
        switch (character) {
        case '&':
            document += "&amp;";
            break;
        case '<':
            document += "&lt;";
            break;
        case '>':
            document += "&gt;";
            break;
        case '"':
            document += "&quot;";
            break;
        case '\t': // as it stands, a parser would read a blank
            document += "&#9;";
            break;
        default:
            document += character;
        }
    }
    document += '"';
}

} // namespace standalone
