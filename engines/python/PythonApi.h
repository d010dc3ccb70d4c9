// The functions of a Python library that is opened at run time. All of them are part of every CPython from 3.8 on; what
// is declared here is Python's documented C interface, so that no header of one version binds the engine to it.
#pragma once

#include <cstddef>
#include <string>

namespace engines {

/// An object of Python; its inside is Python's own.
struct PyObject;

using PyFunction = PyObject* (*)(PyObject* self, PyObject* arguments);

/// A function that Python code can call (PyMethodDef).
struct PyMethod
{
    const char* name;
    PyFunction function;
    int flags; ///< one of the following
    const char* documentation;
};

inline constexpr int kPyArguments = 1;   ///< METH_VARARGS: `arguments` is a tuple
inline constexpr int kPyNoArguments = 4; ///< METH_NOARGS
inline constexpr int kPyOneArgument = 8; ///< METH_O: `arguments` is the argument itself

inline constexpr int kPyFileInput = 257; ///< Py_file_input: a sequence of statements

/// References are counted: a function returns a new one unless it says "borrowed", and takes none over.
struct PythonApi
{
    /// Opens the library `name`, which is searched for as the dynamic linker does, so that extension modules find its
    /// symbols, and finds its functions. Returns why not, or empty text.
    std::string open(const std::string& name);

    const char* (*getVersion)() = nullptr;
    int (*isInitialized)() = nullptr;
    void (*initializeEx)(int installsSignalHandlers) = nullptr;
    int* utf8Mode = nullptr; ///< what the start reads; null: the version has it no more
    void* (*saveThread)() = nullptr;
    int (*gilEnsure)() = nullptr;
    void (*gilRelease)(int state) = nullptr;
    void (*incRef)(PyObject*) = nullptr;
    void (*decRef)(PyObject*) = nullptr;
    PyObject* (*addModule)(const char* name) = nullptr;              ///< borrowed
    PyObject* (*moduleDict)(PyObject* module) = nullptr;             ///< borrowed
    PyObject* (*dictGet)(PyObject* dict, const char* key) = nullptr; ///< borrowed
    int (*dictSet)(PyObject* dict, const char* key, PyObject* value) = nullptr;
    PyObject* (*functionNew)(PyMethod* method, PyObject* self, PyObject* module) = nullptr;
    PyObject* (*compile)(const char* source, const char* file, int start) = nullptr;
    PyObject* (*evalCode)(PyObject* code, PyObject* globals, PyObject* locals) = nullptr;
    PyObject* (*callFunction)(PyObject* function, const char* format, ...) = nullptr;
    int (*bytesAsString)(PyObject* bytes, char** text, std::ptrdiff_t* size) = nullptr;
    PyObject* (*bytesFromString)(const char* text, std::ptrdiff_t size) = nullptr;
    PyObject* (*tupleItem)(PyObject* tuple, std::ptrdiff_t index) = nullptr; ///< borrowed
    PyObject* (*longFrom)(long value) = nullptr;
    long (*longAs)(PyObject* number) = nullptr;
    void (*errorClear)() = nullptr;
    void (*errorPrint)() = nullptr; ///< and clears it

    /// The real path of the file that the functions come from; empty when the system does not say.
    std::string libraryFile() const;
};

} // namespace engines
