// How much room text takes in a picture.
#pragma once

#include <cstddef>
#include <string>

namespace cli {

/// The width of `text`, UTF-8, in a sans-serif font of `size` pixels: rather too wide than too narrow.
int textWidth(const std::string& text, int size);

/// `text`, shortened to at most `width` at its end, where "…" then stands.
std::string clippedText(const std::string& text, int size, int width);

} // namespace cli
