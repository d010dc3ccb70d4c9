// The lines of a text.
#pragma once

#include <sstream>
#include <string>
#include <vector>

using Lines = std::vector<std::string>;

/// Without their ends; an end that is the last of the text begins no other line.
inline Lines linesOf(const std::string& text)
{
    Lines lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}
