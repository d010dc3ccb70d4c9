// A LISP evaluator that prints what it is given, and fails for expressions that hold "broken".
#include "standalone/ModuleApi.h"

#include <cstdio>
#include <cstring>
#include <string>

extern "C" [[gnu::visibility("default")]] int kestLispEvaluate(const char* expression, char* problem,
                                                               std::size_t problemSize);

int kestLispEvaluate(const char* expression, char* problem, std::size_t problemSize)
{
    kestPrint((std::string("evaluating ") + expression + "\n").c_str());
    if (std::strstr(expression, "broken") != nullptr) {
        std::snprintf(problem, problemSize, "the file is broken");
        return 1;
    }
    return 0;
}
