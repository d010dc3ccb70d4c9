// The fixture of the tests of the LISP evaluator.
#pragma once

#include "tests/engines/EngineTest.h"

#include "host/Kds.h"
#include "host/LocaleText.h"
#include "standalone/LispQueue.h"

#include <sys/resource.h>

namespace enginetest {

class LispTest : public EngineTest
{
protected:
    void SetUp() override
    {
        if (KEST_HAS_LISP == 0) {
            GTEST_SKIP() << "the LISP engine is not built";
        }
    }

    /// Queues and evaluates `expression`, the bytes of a wide text, and returns its problem; what was printed before is
    /// forgotten. Without a problem the console has nothing of the host's.
    std::string evaluate(const std::string& expression)
    {
        console.clear();
        EXPECT_EQ(kds_queueexpr(localetext::widen(expression).c_str()), kKdsSuccess);
        const auto results = running->lispQueue().evaluateQueued();
        if (results.size() != 1) {
            ADD_FAILURE() << results.size() << " expressions were evaluated";
            return "";
        }
        EXPECT_EQ(results[0].succeeded, results[0].problem.empty());
        return normalised(results[0].problem);
    }

    std::string load(const std::string& path) { return evaluate("(LOAD \"" + path + "\")"); }

    /// What `expression` prints; it succeeds.
    std::string printedBy(const std::string& expression)
    {
        EXPECT_EQ(evaluate(expression), "") << expression;
        return console;
    }

    /// The evaluator itself, to be called with no host in between.
    static int (*evaluator())(const char*, char*, std::size_t)
    {
        void* library = open("libKestLispEvaluator.so");
        return reinterpret_cast<int (*)(const char*, char*, std::size_t)>(::dlsym(library, "kestLispEvaluate"));
    }
};

} // namespace enginetest
