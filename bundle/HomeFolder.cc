#include "bundle/HomeFolder.h"

#include <cstdlib>
#include <stdexcept>

std::string homeFolder()
{
    const char* home = std::getenv("HOME");
    if (home == nullptr) {
        // The text that hosts know; the standard library's own wording differs between its versions.
        throw std::logic_error("basic_string::_M_construct null not valid");
    }
    return home;
}
