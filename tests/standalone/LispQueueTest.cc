#include "standalone/LispQueue.h"

#include "HostFixture.h"

#include "host/Kds.h"
#include "host/LocaleText.h"

#include <dlfcn.h>
#include <sys/stat.h>

using standalone::ExpressionQueued;
using standalone::LispQueue;
using standalonetest::writeFile;

namespace {

const std::string kRecordingEvaluator = std::string(KEST_TEST_MODULES) + "/recording-evaluator";

class LispQueueTest : public standalonetest::HostFixture
{
protected:
    void startWithEvaluator()
    {
        settings.engineFolder = kRecordingEvaluator;
        startHost();
        if (auto* present = given()) {
            present->clear();
        }
    }

    /// What the evaluator was given, or null while it is not open.
    static std::vector<std::string>* given()
    {
        void* library = ::dlopen((kRecordingEvaluator + "/libKestLispEvaluator.so").c_str(), RTLD_LAZY | RTLD_NOLOAD);
        if (library == nullptr) {
            return nullptr;
        }
        auto expressions = reinterpret_cast<std::vector<std::string>* (*)()>(::dlsym(library, "kestGivenExpressions"));
        std::vector<std::string>* present = expressions();
        ::dlclose(library);
        return present;
    }

    /// Queues an expression, which is refused, and returns the reason in the journal.
    std::string problemOfQueueing()
    {
        EXPECT_NE(kds_queueexpr(L"(LOAD \"/a.lsp\")"), 5100);
        const auto noted = running->journal().only<ExpressionQueued>();
        EXPECT_FALSE(noted.empty());
        EXPECT_EQ(noted.back().expression, L"(LOAD \"/a.lsp\")");
        EXPECT_FALSE(noted.back().accepted);
        EXPECT_EQ(running->lispQueue().waiting(), 0U);
        return noted.back().problem;
    }
};

TEST_F(LispQueueTest, ExpressionsAreEvaluatedInOrderAndNotBeforeTheirTime)
{
    startWithEvaluator();
    std::wstring expression = L"(ONE)";
    EXPECT_EQ(kds_queueexpr(expression.c_str()), 5100);
    expression = L"changed";
    EXPECT_EQ(kds_queueexpr(L"(TWO \u20AC)"), 5100);
    ASSERT_NE(given(), nullptr);
    EXPECT_EQ(*given(), std::vector<std::string>{});
    EXPECT_EQ(running->lispQueue().evaluateQueued(),
              (std::vector<LispQueue::Evaluation>{{L"(ONE)", true, ""}, {L"(TWO \u20AC)", true, ""}}));
    EXPECT_EQ(*given(), (std::vector<std::string>{"(ONE)", "(TWO \xE2\x82\xAC)"}));
    EXPECT_EQ(console, "");
    EXPECT_EQ(running->lispQueue().evaluateQueued(), std::vector<LispQueue::Evaluation>{});
    const auto noted = running->journal().only<ExpressionQueued>();
    ASSERT_EQ(noted.size(), 2U);
    EXPECT_EQ(noted[0].expression, L"(ONE)");
    EXPECT_TRUE(noted[0].accepted);
    EXPECT_EQ(noted[0].problem, "");
}

TEST_F(LispQueueTest, APathThatTheLocaleCannotDecodeKeepsItsBytes)
{
    startWithEvaluator();
    kds_queueexpr((L"(LOAD \"" + localetext::widen("/caf\xC3\xA9/\xE9.lsp") + L"\")").c_str());
    running->lispQueue().evaluateQueued();
    EXPECT_EQ(*given(), std::vector<std::string>{"(LOAD \"/caf\xC3\xA9/\xE9.lsp\")"});
}

TEST_F(LispQueueTest, AProblemStopsNoOtherExpression)
{
    startWithEvaluator();
    for (const wchar_t* expression : {L"(FAIL)", L"(FAIL-SILENTLY)", L"(THROW)", L"(ONE)"}) {
        kds_queueexpr(expression);
    }
    const std::string thrown = "the evaluator ended with an exception: the stack is exhausted";
    EXPECT_EQ(running->lispQueue().evaluateQueued(),
              (std::vector<LispQueue::Evaluation>{
                  {L"(FAIL)", false, "the variable X is unbound\\x0Ain line 3"},
                  {L"(FAIL-SILENTLY)", false, "the evaluator returned 3 and gave no reason"},
                  {L"(THROW)", false, thrown},
                  {L"(ONE)", true, ""},
              }));
    EXPECT_EQ(console, "(FAIL): could not be evaluated: the variable X is unbound\\x0Ain line 3\n"
                       "(FAIL-SILENTLY): could not be evaluated: the evaluator returned 3 and gave no reason\n"
                       "(THROW): could not be evaluated: " +
                           thrown + "\n");
}

TEST_F(LispQueueTest, AProblemWithoutAnEndIsCut)
{
    startWithEvaluator();
    kds_queueexpr(L"(FAIL-AT-LENGTH)");
    EXPECT_EQ(running->lispQueue().evaluateQueued(),
              (std::vector<LispQueue::Evaluation>{{L"(FAIL-AT-LENGTH)", false, std::string(4095, 'x')}}));
}

TEST_F(LispQueueTest, WhatAnExpressionQueuesIsEvaluatedAfterwards)
{
    startWithEvaluator();
    kds_queueexpr(L"(QUEUE-ONE)");
    kds_queueexpr(L"(TWO)");
    EXPECT_EQ(
        running->lispQueue().evaluateQueued(),
        (std::vector<LispQueue::Evaluation>{{L"(QUEUE-ONE)", true, ""}, {L"(TWO)", true, ""}, {L"(ONE)", true, ""}}));
}

TEST_F(LispQueueTest, AnExpressionThatQueuesItselfComesToAnEnd)
{
    startWithEvaluator();
    kds_queueexpr(L"(QUEUE-FOREVER)");
    const auto results = running->lispQueue().evaluateQueued();
    ASSERT_EQ(results.size(), 1002U);
    EXPECT_EQ(given()->size(), 1001U);
    EXPECT_TRUE(results[1000].succeeded);
    EXPECT_EQ(results[1001].problem, "more than 1000 expressions were queued by evaluated expressions");
    EXPECT_EQ(running->lispQueue().waiting(), 0U);
}

TEST_F(LispQueueTest, WithoutAnEvaluatorAnExpressionIsRefusedAndTheReasonIsPlain)
{
    const std::string reason = "no LISP evaluator is installed beside the tool: libKestLispEvaluator.so: cannot open "
                               "shared object file: No such file or directory";
    startHost();
    EXPECT_EQ(problemOfQueueing(), reason);
    EXPECT_EQ(problemOfQueueing(), reason);
    running.reset();
    settings.engineFolder = folder.path; // a folder without the library says the same
    startHost();
    EXPECT_EQ(problemOfQueueing(), reason);
    EXPECT_EQ(running->lispQueue().evaluateQueued(), std::vector<LispQueue::Evaluation>{});
}

TEST_F(LispQueueTest, AnEvaluatorThatCannotBeOpenedIsNamed)
{
    const std::string path = folder / "libKestLispEvaluator.so";
    writeFile(path, std::string(100, 'x'));
    settings.engineFolder = folder.path;
    startHost();
    EXPECT_EQ(problemOfQueueing(),
              "the LISP evaluator beside the tool cannot be opened: " + path + ": invalid ELF header");
}

TEST_F(LispQueueTest, APipeInPlaceOfTheEvaluatorIsNotWaitedFor)
{
    ASSERT_EQ(::mkfifo((folder / "libKestLispEvaluator.so").c_str(), 0600), 0);
    settings.engineFolder = folder.path;
    startHost();
    EXPECT_TRUE(problemOfQueueing().starts_with("no LISP evaluator is installed beside the tool: "));
}

TEST_F(LispQueueTest, AnEvaluatorWithoutItsExportIsRefused)
{
    const std::string path = std::string(KEST_TEST_MODULES) + "/evaluator-without-export";
    settings.engineFolder = path;
    startHost();
    EXPECT_EQ(problemOfQueueing(), "the LISP evaluator does not export kestLispEvaluate: " + path +
                                       "/libKestLispEvaluator.so: undefined symbol: kestLispEvaluate");
}

TEST_F(LispQueueTest, NoExpressionIsRefused)
{
    startWithEvaluator();
    EXPECT_NE(kds_queueexpr(nullptr), 5100);
    EXPECT_EQ(running->lispQueue().waiting(), 0U);
}

} // namespace
