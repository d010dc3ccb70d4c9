#include "engines/python/PythonApi.h"

#include <cstdlib>
#include <dlfcn.h>
#include <memory>

namespace engines {

namespace {

std::string linkerReason()
{
    const char* text = ::dlerror();
    return text != nullptr ? text : "the system gives no reason";
}

} // namespace

std::string PythonApi::open(const std::string& name)
{
    void* library = ::dlopen(name.c_str(), RTLD_LAZY | RTLD_GLOBAL); // stays open: an interpreter cannot leave
    if (library == nullptr) {
        return name + " cannot be opened: " + linkerReason();
    }
    std::string problem;
    const auto find = [&](auto& function, const char* symbol) {
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(::dlsym(library, symbol));
        if (function == nullptr && problem.empty()) {
            problem = name + " is no Python 3.8 or later: " + linkerReason();
        }
    };
    find(getVersion, "Py_GetVersion");
    find(isInitialized, "Py_IsInitialized");
    find(initializeEx, "Py_InitializeEx");
    utf8Mode = static_cast<int*>(::dlsym(library, "Py_UTF8Mode"));
    find(saveThread, "PyEval_SaveThread");
    find(gilEnsure, "PyGILState_Ensure");
    find(gilRelease, "PyGILState_Release");
    find(incRef, "Py_IncRef");
    find(decRef, "Py_DecRef");
    find(addModule, "PyImport_AddModule");
    find(moduleDict, "PyModule_GetDict");
    find(dictGet, "PyDict_GetItemString");
    find(dictSet, "PyDict_SetItemString");
    find(functionNew, "PyCFunction_NewEx");
    find(compile, "Py_CompileString");
    find(evalCode, "PyEval_EvalCode");
    find(callFunction, "PyObject_CallFunction");
    find(bytesAsString, "PyBytes_AsStringAndSize");
    find(bytesFromString, "PyBytes_FromStringAndSize");
    find(tupleItem, "PyTuple_GetItem");
    find(longFrom, "PyLong_FromLong");
    find(longAs, "PyLong_AsLong");
    find(errorClear, "PyErr_Clear");
    find(errorPrint, "PyErr_Print");
    return problem;
}

std::string PythonApi::libraryFile() const
{
    Dl_info place{};
    if (::dladdr(reinterpret_cast<void*>(getVersion), &place) == 0 || place.dli_fname == nullptr) {
        return "";
    }
    const std::unique_ptr<char, decltype(&std::free)> path(::realpath(place.dli_fname, nullptr), &std::free);
    return path != nullptr ? path.get() : "";
}

} // namespace engines
