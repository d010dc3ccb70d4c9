// What a measured program prints: one line that bench/run reads.
#pragma once

#include <cstddef>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <string>

namespace bench {

/// Runs from its making to report(), so that neither the start of the process nor its end counts. What counts is the
/// processor's time: what is measured waits for nothing, and other programs at work do not show.
class Measured
{
public:
    /// Prints the nanoseconds, `found`, by which the reader sees that the work was done, and the resident memory.
    void report(std::size_t found) const
    {
        std::printf("%ld ns, found %zu, %ld KB\n", processorTime() - begin, found, residentKilobytes());
    }

private:
    static long processorTime()
    {
        std::timespec now{};
        ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
        return now.tv_sec * 1'000'000'000 + now.tv_nsec;
    }

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

    long begin = processorTime();
};

} // namespace bench
