// Standard output, kept free for one document.
#pragma once

#include <string>

namespace cli {

/// While it lives, what any code of the process writes to standard output comes out on standard error, so that a
/// module with a word of its own to say cannot spoil the document.
class ReservedOutput
{
public:
    /// Throws std::system_error when standard output cannot be kept; it is closed, for example.
    ReservedOutput();
    ReservedOutput(const ReservedOutput&) = delete;
    ReservedOutput& operator=(const ReservedOutput&) = delete;
    ~ReservedOutput();

    /// Writes all of `document` to the true standard output. Throws std::system_error on failure.
    void write(const std::string& document);

private:
    int descriptor;
};

} // namespace cli
