// What a measured program prints: one line that bench/run reads.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <string>

namespace bench {

/// Runs from its making to report(), so that neither the start of the process nor its end counts.
class Measured
{
public:
    /// Prints the nanoseconds, `found`, by which the reader sees that the work was done, and the resident memory.
    void report(std::size_t found) const
    {
        const auto elapsed = std::chrono::steady_clock::now() - begin;
        const auto nanoseconds = std::chrono::duration_cast<std::chrono::nanoseconds>(elapsed).count();
        std::printf("%lld ns, found %zu, %ld KB\n", static_cast<long long>(nanoseconds), found, residentKilobytes());
    }

private:
    static long residentKilobytes()
    {
        std::ifstream status("/proc/self/status");
        for (std::string word; status >> word;) {
            if (word == "VmRSS:") {
                long kilobytes = 0;
                status >> kilobytes;
                return kilobytes;
            }
        }
        return 0;
    }

    std::chrono::steady_clock::time_point begin = std::chrono::steady_clock::now();
};

} // namespace bench
