#include "engines/lisp/LispWorld.h"

#include "engines/lisp/LispBoot.h"
#include "engines/lisp/LispText.h"
#include "engines/lisp/StackGuard.h"

#include "engines/Visit.h"
#include "host/EngineHost.h"

#include <chrono>
#include <pthread.h>

namespace engines {

namespace {

/// LISP knows the one thread on which it was booted.
struct World
{
    enum class State
    {
        NotBooted,
        Ready,
        Broken
    };
    State state = State::NotBooted;
    pthread_t thread{};
};

GuestState guest;
World world;

void boot()
{
    const auto begin = std::chrono::steady_clock::now();
    world.thread = ::pthread_self();
    world.state = bootLisp() ? World::State::Ready : World::State::Broken;
    const std::chrono::duration<double, std::milli> passed = std::chrono::steady_clock::now() - begin;
    KestEngineHost* host = kestEngineHost();
    if (host != nullptr && world.state == World::State::Ready) {
        host->engineStarted("LISP (ECL " + utf8Text(cl_lisp_implementation_version()) + ")", passed.count());
    }
}

/// Why LISP cannot be called, or empty text.
std::string unusable()
{
    if (world.state == World::State::Broken) {
        return "LISP could not be started";
    }
    return ::pthread_equal(world.thread, ::pthread_self()) != 0
               ? ""
               : "LISP can be called on the thread only on which it was started";
}

/// The argument of a call: a text or a number.
struct Argument
{
    const char* text;
    std::size_t size;
    int number;
};

/// Calls the function of one argument `name` of package KEST-HOST. It returns a problem text or NIL; null says that it
/// was left by a jump. No destructor may wait in this frame.
cl_object call(const char* name, const Argument& argument)
{
    cl_object volatile result = nullptr;
    const cl_env_ptr environment = ecl_process_env();
    ECL_CATCH_ALL_BEGIN(environment)
    {
        const cl_object value =
            argument.text != nullptr ? lispText(argument.text, argument.size) : ecl_make_fixnum(argument.number);
        result = cl_funcall(2, ecl_make_symbol(name, "KEST-HOST"), value);
    }
    ECL_CATCH_ALL_END;
    return result;
}

std::string problemOf(const char* name, const Argument& argument)
{
    const cl_object problem = call(name, argument);
    if (problem == nullptr) {
        return "LISP gave up the evaluation";
    }
    return problem == ECL_NIL ? "" : utf8Text(problem);
}

} // namespace

std::string evaluateLisp(std::string_view expression)
{
    const StackGuard guard;
    const Visit visit(guest);
    if (world.state == World::State::NotBooted) {
        boot();
    }
    std::string problem = unusable();
    return problem.empty() ? problemOf("EVALUATE", {expression.data(), expression.size(), 0}) : problem;
}

std::string runLispCommand(int number)
{
    const StackGuard guard;
    const Visit visit(guest);
    std::string problem = unusable();
    return problem.empty() ? problemOf("RUN", {nullptr, 0, number}) : problem;
}

} // namespace engines
