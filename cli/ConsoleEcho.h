// What the host and its modules print during a run.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace cli {

/// Keeps what is printed, and shows it line by line as it comes, because what a module printed before it hung or
/// crashed is what its author needs.
class ConsoleEcho
{
public:
    /// `isLive`: lines go to standard output at once, escaped, each behind a bar.
    explicit ConsoleEcho(bool isLive);

    /// From now on printed text belongs to a new part; `heading`, with its line end, is shown before its first line.
    void begin(std::string heading);

    /// Takes a piece of what is printed, UTF-8.
    void take(const std::string& piece);

    /// Ends the part, shows a last line without a line end, and returns all that was printed in it.
    std::string end();

private:
    void showLine(const std::string& line);

    struct Closer
    {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::FILE* shown() const { return ownOutput ? ownOutput.get() : stdout; }

    bool live;
    /// Standard output once more, for what a script prints after it has closed or turned away the descriptor.
    std::unique_ptr<std::FILE, Closer> ownOutput;
    std::string heading;
    std::string printed;
    std::size_t shownUpTo = 0;
};

} // namespace cli
