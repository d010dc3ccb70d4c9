// The Python interpreter of this process.
#pragma once

#include "engines/Visit.h"
#include "engines/python/PythonApi.h"

#include <string>
#include <thread>

namespace engines {

/// Starts when the first script is loaded and stays. There is one: a second version of Python cannot start beside it.
/// Every call is made on the host's thread, inside a Visit.
class Interpreter
{
public:
    /// The one of this process.
    static Interpreter& current();

    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;

    /// Makes sure that the interpreter of the library `name` runs. Returns why it does not, in UTF-8, or empty text.
    std::string start(const std::string& name);

    /// Runs the script at the narrow `path`. Returns why it failed, in one line of UTF-8, or empty text; what there is
    /// to say at length is printed.
    std::string load(const std::string& path);

    /// The same for a command that a script registered.
    std::string runCommand(int number);

    /// Python's part of the end of the process.
    void end();

private:
    Interpreter() = default;

    std::string boot();
    std::string defineRuntime(const std::string& environment);
    std::string problemIn(PyObject* result);

    static PyObject* print(PyObject* self, PyObject* bytes);
    static PyObject* registerCommand(PyObject* self, PyObject* arguments);
    static PyObject* hostVersion(PyObject* self, PyObject* nothing);

    class Turn;

    PythonApi api;
    std::string library; ///< empty until it is open
    bool isRunning = false;
    std::string startProblem; ///< of a start that failed on its way: there is no second one
    PyObject* loadFunction = nullptr;
    PyObject* runFunction = nullptr;
    PyObject* endFunction = nullptr;
    std::thread::id visitor;  ///< the thread that visits the engine; none while nobody does
    std::string printedApart; ///< by threads of scripts; for the next visit, since the host has one thread
};

/// What the interpreter has set up for itself.
GuestState& pythonGuest();

} // namespace engines
