// Arguments and environments for the system's calls that start programs.
#pragma once

#include <string>
#include <vector>

/// What those calls take for `texts`, which have to live as long: a pointer to each, and a null pointer. They change
/// nothing, though their types say otherwise.
inline std::vector<char*> pointersTo(const std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (const std::string& text : texts) {
        pointers.push_back(const_cast<char*>(text.c_str()));
    }
    pointers.push_back(nullptr);
    return pointers;
}
