// An evaluator that keeps what it was given; some expressions tell it to behave in a certain way.
#include "ModuleExport.h"

#include "host/Kds.h"

#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

std::vector<std::string> given;

} // namespace

/// The expressions that were evaluated in this process, oldest first.
extern "C" KEST_EXPORT std::vector<std::string>* kestGivenExpressions();

std::vector<std::string>* kestGivenExpressions()
{
    return &given;
}

extern "C" KEST_EXPORT int kestLispEvaluate(const char* expression, char* problem, std::size_t problemSize);

int kestLispEvaluate(const char* expression, char* problem, std::size_t problemSize)
{
    given.emplace_back(expression);
    const std::string text(expression);
    if (text == "(FAIL)") {
        std::strncpy(problem, "the variable X is unbound\nin line 3", problemSize - 1);
        return 1;
    }
    if (text == "(FAIL-SILENTLY)") {
        return 3;
    }
    if (text == "(FAIL-AT-LENGTH)") {
        std::memset(problem, 'x', problemSize);
        return 1;
    }
    if (text == "(THROW)") {
        throw std::runtime_error("the stack is exhausted");
    }
    if (text == "(QUEUE-ONE)") {
        kds_queueexpr(L"(ONE)");
    }
    if (text == "(QUEUE-FOREVER)") {
        kds_queueexpr(L"(QUEUE-FOREVER)");
    }
    return 0;
}
