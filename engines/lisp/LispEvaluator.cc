#include "engines/lisp/LispEvaluator.h"

#include "engines/lisp/LispText.h"
#include "engines/lisp/LispWorld.h"

#include <cstring>
#include <exception>

int kestLispEvaluate(const char* expression, char* problem, std::size_t problemSize)
{
    std::string found;
    try {
        found = engines::evaluateLisp(expression);
    } catch (const std::exception& error) {
        found = error.what();
    }
    if (problem != nullptr && problemSize > 0) {
        const std::string_view fitting = engines::cutAtCharacter(found, problemSize - 1);
        std::memcpy(problem, fitting.data(), fitting.size());
        problem[fitting.size()] = '\0';
    }
    return found.empty() ? 0 : 1;
}
