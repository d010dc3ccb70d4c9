// The command "kestbundle".
#include "cli/ExitStatus.h"
#include "cli/Shown.h"
#include "cli/Subcommands.h"
#include "standalone/CaughtError.h"

#include <CLI/CLI.hpp>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <unistd.h>

namespace {

/// Texts follow the user's locale. The plain "C" locale, which knows no character above ASCII, gives way to its sister
/// that does.
void followLocale()
{
    std::setlocale(LC_ALL, "");
    const char* current = std::setlocale(LC_CTYPE, nullptr);
    const std::string_view name = current != nullptr ? current : "C";
    if (name == "C" || name == "POSIX") {
        std::setlocale(LC_CTYPE, "C.UTF-8");
    }
}

/// A standard stream that is closed at the start must not become the place of the next file that is opened: what is
/// printed would go there. Opened for reading only, so that writing to it still fails.
void fillStandardDescriptors()
{
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(number, F_GETFD) < 0 && errno == EBADF) {
            static_cast<void>(::open("/dev/null", O_RDONLY)); // takes the lowest number, which is this one
        }
    }
}

int complain(const std::string& text, int status)
{
    cli::print(stderr, "kestbundle: " + text + "\n");
    return status;
}

int parseAndRun(int argumentCount, char** arguments)
{
    CLI::App app;
    cli::Action chosen;
    cli::defineCommandLine(app, chosen);
    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) { // help or version was asked for
            return app.exit(error);
        }
        return complain(cli::explainRefusal(app, error), cli::kWrongUse);
    }
    const int status = chosen();
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0
               ? status
               : complain("standard output could not be written", cli::kSomethingFailed);
}

int runOrComplain(int argumentCount, char** arguments)
{
    try {
        return parseAndRun(argumentCount, arguments);
    } catch (const cli::WrongUse& wrong) {
        return complain(wrong.what(), cli::kWrongUse);
    } catch (...) {
        return complain("the run ended with " + standalone::describeCaughtError(), cli::kSomethingFailed);
    }
}

} // namespace

int main(int argumentCount, char** arguments)
{
    fillStandardDescriptors();
    followLocale();
    try {
        return runOrComplain(argumentCount, arguments);
    } catch (...) { // there was no memory to say more
        std::fputs("kestbundle: the run ended for lack of memory\n", stderr);
        return cli::kSomethingFailed;
    }
}
