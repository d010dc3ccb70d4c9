// LISP expressions that wait for evaluation, and the evaluator library that works them off.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace standalone {

class Host;

/// The path of the file that `expression` loads, as the autoloader queues it: (LOAD "path"). Empty for any other one.
std::wstring pathLoadedBy(const std::wstring& expression);

/// Accepts expressions when a LISP evaluator can be opened. Its library is looked for at the first expression: in the
/// engine folder, then where the system's dynamic linker searches. It stays open for the life of the process.
///
/// The library exports, in C: int kestLispEvaluate(const char* expression, char* problem, size_t problemSize). The
/// expression is UTF-8, save for bytes of a path that the locale could not decode, which stand as they are on disk.
/// It returns 0 on success; otherwise it may leave a text in UTF-8, ended by a zero byte, in `problem`.
class LispQueue
{
public:
    explicit LispQueue(Host& owner);
    LispQueue(const LispQueue&) = delete;
    LispQueue& operator=(const LispQueue&) = delete;

    /// Queues a copy of `expression` and returns true, or notes in the journal why not.
    bool add(const std::wstring& expression);

    /// What became of one expression.
    struct Evaluation
    {
        std::wstring expression;
        bool succeeded = false;
        std::string problem;     ///< UTF-8, one line
        double milliseconds = 0; ///< the start of the engine apart; not compared

        bool operator==(const Evaluation& other) const
        {
            return expression == other.expression && succeeded == other.succeeded && problem == other.problem;
        }
    };

    /// Evaluates what is queued, in order, and what these expressions queue meanwhile, up to kMostQueuedMeanwhile of
    /// them; the rest fails. Problems stand in the result and on the console. A call from inside an evaluation does
    /// nothing.
    std::vector<Evaluation> evaluateQueued();

    static constexpr std::size_t kMostQueuedMeanwhile = 1000;

    /// The number of expressions that wait.
    std::size_t waiting() const noexcept { return queue.size(); }

private:
    using Evaluate = int (*)(const char* expression, char* problem, std::size_t problemSize);

    bool openEvaluator();
    std::string openLibrary();
    std::string evaluateFor(const std::wstring& expression) const;
    std::string evaluate(const std::wstring& expression) const;

    Host& host;
    std::deque<std::wstring> queue;
    bool evaluating = false;
    Evaluate evaluator = nullptr;
    std::optional<std::string> openProblem; ///< set once the library was looked for; empty when it was found
};

} // namespace standalone
