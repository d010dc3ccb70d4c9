#include "tests/library/Contract.h"

#include <cstdlib>
#include <cxxabi.h>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>

namespace {

const std::string kFolder = KEST_CONTRACT_FOLDER "/";

std::vector<std::string> linesOf(const std::string& file, bool areComments)
{
    std::ifstream stream(kFolder + file);
    EXPECT_TRUE(stream) << file;
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        if ((line.rfind('#', 0) == 0) == areComments) {
            lines.push_back(line);
        }
    }
    return lines;
}

} // namespace

std::vector<std::string> contractLines(const std::string& file)
{
    return linesOf(file, false);
}

void expectContract(const std::string& file, const std::vector<std::string>& lines)
{
    if (std::getenv("KEST_RENEW_CONTRACT") != nullptr) {
        const std::vector<std::string> comments = linesOf(file, true);
        std::ofstream stream(kFolder + file);
        for (const std::vector<std::string>* part : {&comments, &lines}) {
            for (const std::string& line : *part) {
                stream << line << '\n';
            }
        }
        ADD_FAILURE() << "written anew: " << kFolder << file << "; read the difference, and run without the variable";
        return;
    }
    EXPECT_EQ(lines, contractLines(file))
        << "Hosts, engines and this library are built apart: a difference breaks those that are in use.\n"
        << "To move the contract on purpose, run this program once with KEST_RENEW_CONTRACT=1 in its environment and\n"
        << "commit tests/contract/" << file << " with the reason.";
}

std::string demangled(const char* mangled)
{
    struct Free
    {
        void operator()(char* text) const { std::free(text); }
    };
    int status = 0;
    const std::unique_ptr<char, Free> name(abi::__cxa_demangle(mangled, nullptr, nullptr, &status));
    return status == 0 ? name.get() : mangled;
}
