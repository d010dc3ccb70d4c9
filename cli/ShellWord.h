// Texts as words of a command line.
#pragma once

#include <string>

namespace cli {

/// `text`, which holds no zero byte, as one word for a shell: in single quotes where it needs them.
std::string shellWord(const std::string& text);

} // namespace cli
