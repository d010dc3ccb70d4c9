// A whole start on the samples, again and again, in which one call after the other fails.
#include "tests/faults/Trial.h"

#include <CLI/CLI.hpp>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace faults;

struct Options
{
    std::string kind = "all";
    std::string way;
    long only = 0;
    long most = 0;
    long jobs = 1;
    Samples samples;
};

/// What the processes of a sweep add up.
struct Sums
{
    long calls;
    long trials;
    long struck;
    long findings;
};

/// The call numbers of a sweep over `calls` calls: all, or `most` of them, evenly spread from the first to the last.
std::vector<long> numbersToTry(const Options& options, long calls)
{
    if (options.only > 0) {
        return {options.only};
    }
    std::vector<long> numbers;
    const long count = options.most > 0 && options.most < calls ? options.most : calls;
    for (long index = 0; index < count; ++index) {
        numbers.push_back(count == 1 ? 1 : 1 + index * (calls - 1) / (count - 1));
    }
    return numbers;
}

std::string titleOf(const Way& way)
{
    return std::string(way.kindName) + " " + way.name;
}

/// The share of process number `job` in the sweep. Returns its exit status.
int sweepHere(const Way& way, const Options& options, const std::string& folder, long job, Sums& sums)
{
    Trial trial(folder, options.samples, way);
    if (!trial.problem().empty()) {
        std::printf("%s: %s", titleOf(way).c_str(), trial.problem().c_str());
        return 1;
    }
    const std::vector<long> numbers = numbersToTry(options, trial.calls());
    __atomic_store_n(&sums.calls, trial.calls(), __ATOMIC_RELAXED);
    for (auto index = static_cast<std::size_t>(job); index < numbers.size();
         index += static_cast<std::size_t>(options.jobs)) {
        const std::string problems = trial.run(numbers[index], options.only > 0);
        __atomic_add_fetch(&sums.trials, 1, __ATOMIC_RELAXED);
        __atomic_add_fetch(&sums.struck, trial.hasStruck() ? 1 : 0, __ATOMIC_RELAXED);
        if (!problems.empty()) {
            __atomic_add_fetch(&sums.findings, 1, __ATOMIC_RELAXED);
            std::printf("%s, call %ld of %ld:\n%s", titleOf(way).c_str(), numbers[index], trial.calls(),
                        problems.c_str());
            std::fflush(stdout);
        }
    }
    return 0;
}

/// Returns whether nothing was found.
bool sweep(const Way& way, const Options& options, const std::string& folder)
{
    const auto begin = std::chrono::steady_clock::now();
    void* const memory = ::mmap(nullptr, sizeof(Sums), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    Sums& sums = *static_cast<Sums*>(memory);
    std::vector<pid_t> processes;
    std::fflush(stdout);
    for (long job = 0; job < options.jobs; ++job) {
        const std::string own = folder + "/" + way.kindName + "-" + way.name + "-" + std::to_string(job);
        std::filesystem::create_directories(own);
        const pid_t process = ::fork();
        if (process == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL); // nobody would end them when this process is ended
            const int status = sweepHere(way, options, own, job, sums);
            std::fflush(stdout);
            ::_exit(status);
        }
        processes.push_back(process);
    }
    bool isWell = true;
    for (const pid_t process : processes) {
        int status = 0;
        isWell = process > 0 && ::waitpid(process, &status, 0) == process && status == 0 && isWell;
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    std::printf("%-16s %6ld calls, %6ld tried, %6ld failed, %3ld findings, %.1f s\n", titleOf(way).c_str(), sums.calls,
                sums.trials, sums.struck, sums.findings, took.count());
    // A sweep in which nothing fails proves nothing.
    isWell = isWell && sums.findings == 0 && sums.struck > 0;
    ::munmap(memory, sizeof(Sums));
    return isWell;
}

int sweepAll(const Options& options)
{
    std::string folder = std::filesystem::temp_directory_path().string() + "/kestbundle-faults-XXXXXX";
    if (::mkdtemp(folder.data()) == nullptr) {
        std::perror(folder.c_str());
        return 2;
    }
    bool isKnown = false;
    bool isWell = true;
    for (const Way& way : allWays()) {
        if ((options.kind == "all" || options.kind == way.kindName) &&
            (options.way.empty() || options.way == way.name)) {
            isKnown = true;
            isWell = sweep(way, options, folder) && isWell;
        }
    }
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
    if (!isKnown) {
        std::fprintf(stderr, "There is no such kind of fault; known are:\n");
        for (const Way& way : allWays()) {
            std::fprintf(stderr, "  %s\n", titleOf(way).c_str());
        }
        return 2;
    }
    return isWell ? 0 : 1;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    CLI::App app("Starts the host on the samples, again and again, while one call after the other fails.");
    Options options;
    app.add_option("--kind", options.kind, "Which calls fail: new, malloc, open, ...; all if not given");
    app.add_option("--way", options.way, "How they fail: once, EIO, ...; every way that is known if not given");
    app.add_option("--only", options.only, "Let call number N fail alone, and show where it is made");
    app.add_option("--most", options.most, "At most so many calls of a kind, evenly spread");
    app.add_option("--jobs", options.jobs, "So many processes at once")->check(CLI::PositiveNumber);
    app.add_flag("--all-samples", options.samples.areAll, "With every sample and the engines");
    app.add_flag("--fresh", options.samples.isFresh, "In a home in which nothing was ever stored");
    CLI11_PARSE(app, argumentCount, arguments)
    ::setenv("LC_ALL", "C.UTF-8", 1);
    return sweepAll(options);
}
