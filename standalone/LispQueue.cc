#include "standalone/LispQueue.h"

#include "standalone/CaughtError.h"
#include "standalone/CommandTable.h"
#include "standalone/DynamicLinker.h"
#include "standalone/EngineServices.h"
#include "standalone/Host.h"
#include "standalone/Utf8.h"

#include "host/Kds.h"
#include "host/LocaleText.h"

#include <array>
#include <dlfcn.h>
#include <string_view>
#include <sys/stat.h>
#include <utility>

namespace standalone {

namespace {

constexpr char kLibrary[] = "libKestLispEvaluator.so";

} // namespace

std::wstring pathLoadedBy(const std::wstring& expression)
{
    constexpr std::wstring_view kOpening = L"(LOAD \"";
    constexpr std::wstring_view kEnd = L"\")";
    const std::wstring_view text(expression);
    if (!text.starts_with(kOpening) || !text.ends_with(kEnd) || text.size() < kOpening.size() + kEnd.size()) {
        return L"";
    }
    return std::wstring(text.substr(kOpening.size(), text.size() - kOpening.size() - kEnd.size()));
}

LispQueue::LispQueue(Host& owner) : host(owner) {}

bool LispQueue::add(const std::wstring& expression)
{
    const bool accepted = openEvaluator();
    if (accepted) {
        queue.push_back(expression);
    }
    host.journal().add(ExpressionQueued{expression, accepted, *openProblem});
    return accepted;
}

bool LispQueue::openEvaluator()
{
    if (!openProblem) {
        openProblem = openLibrary();
    }
    return evaluator != nullptr;
}

std::string LispQueue::openLibrary()
{
    void* library = nullptr;
    std::string folderProblem;
    if (const std::string& folder = host.settings().engineFolder; !folder.empty()) {
        const std::string path = folder + "/" + kLibrary;
        struct stat found
        {
        };
        if (::stat(path.c_str(), &found) == 0 && S_ISREG(found.st_mode)) { // a pipe would be waited for
            library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
            folderProblem = library == nullptr ? dynamicLoadingReason() : "";
        }
    }
    if (library == nullptr) {
        library = ::dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);
    }
    if (library == nullptr) {
        const std::string searchProblem = dynamicLoadingReason();
        return folderProblem.empty() ? "no LISP evaluator is installed beside the tool: " + searchProblem
                                     : "the LISP evaluator beside the tool cannot be opened: " + folderProblem;
    }
    evaluator = reinterpret_cast<Evaluate>(::dlsym(library, "kestLispEvaluate"));
    return evaluator != nullptr ? "" : "the LISP evaluator does not export kestLispEvaluate: " + dynamicLoadingReason();
}

std::vector<LispQueue::Evaluation> LispQueue::evaluateQueued()
{
    std::vector<Evaluation> results;
    if (evaluating) {
        return results;
    }
    const struct Evaluating
    {
        explicit Evaluating(bool& flag) : on(flag) { flag = true; }
        ~Evaluating() { on = false; }
        bool& on;
    } mark(evaluating);
    const std::size_t most = queue.size() + kMostQueuedMeanwhile;
    while (!queue.empty()) {
        const std::wstring expression = std::move(queue.front());
        queue.pop_front();
        const LoadTimer timer(host);
        std::string problem = results.size() < most ? evaluateFor(expression)
                                                    : "more than " + std::to_string(kMostQueuedMeanwhile) +
                                                          " expressions were queued by evaluated expressions";
        if (!problem.empty()) {
            host.print(displayable(std::wstring_view(expression)) + ": could not be evaluated: " + problem + "\n");
        }
        const bool succeeded = problem.empty();
        results.push_back({expression, succeeded, std::move(problem), timer.milliseconds()});
    }
    return results;
}

std::string LispQueue::evaluateFor(const std::wstring& expression) const
{
    CommandRegistry::Registration registration(host.commands(), localetext::narrow(pathLoadedBy(expression)));
    std::string problem = evaluate(expression);
    if (!problem.empty()) {
        registration.takeBack();
    }
    return problem;
}

std::string LispQueue::evaluate(const std::wstring& expression) const
{
    std::array<char, 4096> problem{};
    int status = 0;
    try {
        status = evaluator(localetext::utf8(expression).c_str(), problem.data(), problem.size());
    } catch (...) {
        return "the evaluator ended with " + describeCaughtError();
    }
    if (status == 0) {
        return "";
    }
    problem.back() = '\0';
    const std::string_view said(problem.data());
    if (said.empty()) {
        return "the evaluator returned " + std::to_string(status) + " and gave no reason";
    }
    const std::optional<std::wstring> wide = wideFromUtf8(said);
    return wide ? displayable(std::wstring_view(*wide)) : displayable(said);
}

} // namespace standalone
