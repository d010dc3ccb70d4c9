// The recording host's libraries and modules: the dynamic linker, the Win32-style layer, and dlopen.
#include "tests/HostDoubleRecord.h"

#include "host/DynamicLinker.h"
#include "host/Engines.h"
#include "host/ModuleLayer.h"

namespace hostdouble {

namespace {

std::string handleText(const void* handle)
{
    return handle != nullptr ? "handle" : "null";
}

class Linker : public KsRxDynamicLinker
{
public:
    KsRxClass* isA() const override
    {
        static KsRxClass foreign(L"Foreign", nullptr);
        static KsRxClass derived(L"Linker", KsRxDynamicLinker::desc());
        return state().isDynamicLinkerOfForeignClass ? &foreign : &derived;
    }

    bool loadModule(const wchar_t* path, bool printit, bool asCommand) override
    {
        const bool fails = record("loadModule", {utf8(path), printit ? "true" : "false", asCommand ? "true" : "false"});
        const bool loads = !fails && state().brokenModules.count(path) == 0;
        return result(loads, loads ? "true" : "false");
    }
};

template <typename Key, typename Name>
void* find(const std::map<Key, Exports>& libraries, const Name& name)
{
    const auto found = libraries.find(name);
    return found == libraries.end() ? nullptr : const_cast<Exports*>(&found->second);
}

/// Whether `handle` is one that this double gave out.
bool isOurs(const void* handle)
{
    for (const auto& [name, exports] : state().sharedObjects) {
        if (&exports == handle) {
            return true;
        }
    }
    return false;
}

bool netLoadExport(const CStdStr<wchar_t>& path, int reserved)
{
    const bool fails = record("netLoad", {utf8(path), std::to_string(reserved)});
    const bool loads = !fails && state().netLoadResult;
    return result(loads, loads ? "true" : "false");
}

void setPythonVersionExport(std::string libraryName)
{
    record("setPythonVersion", {libraryName});
}

int loadPythonFileExport(const wchar_t* path)
{
    const bool fails = record("loadPythonFile", {utf8(path)});
    const int status = fails ? 1 : state().pythonResult;
    return result(status, std::to_string(status));
}

} // namespace

Exports::mapped_type netLoadAddress()
{
    return reinterpret_cast<void (*)()>(&netLoadExport);
}

Exports::mapped_type setPythonVersionAddress()
{
    return reinterpret_cast<void (*)()>(&setPythonVersionExport);
}

Exports::mapped_type loadPythonFileAddress()
{
    return reinterpret_cast<void (*)()>(&loadPythonFileExport);
}

} // namespace hostdouble

using namespace hostdouble;

ModuleHandle GetModuleHandleW(const wchar_t* name)
{
    record("GetModuleHandleW", {utf8(name)});
    void* handle = find(state().openLibraries, name);
    return result(handle, handleText(handle));
}

ModuleHandle LoadLibraryW(const wchar_t* name)
{
    const bool fails = record("LoadLibraryW", {utf8(name)});
    void* handle = fails ? nullptr : find(state().loadableLibraries, name);
    return result(handle, handleText(handle));
}

ProcAddress GetProcAddress(ModuleHandle module, const char* name)
{
    const bool fails = record("GetProcAddress", {name});
    const auto& exports = *static_cast<Exports*>(module);
    const auto found = exports.find(name);
    const ProcAddress address = fails || found == exports.end() ? nullptr : found->second;
    return result(address, address != nullptr ? "address" : "null");
}

KsRxClass::KsRxClass(const wchar_t* name, const KsRxClass* parent) noexcept : className(name), parentClass(parent) {}

bool KsRxClass::isDerivedFrom(const KsRxClass* other) const noexcept
{
    return this == other || (parentClass != nullptr && parentClass->isDerivedFrom(other));
}

KsRxClass* KsRxDynamicLinker::desc()
{
    static KsRxClass description(L"KsRxDynamicLinker", nullptr);
    return &description;
}

KsRxObject* KsRxDictionary::at(const wchar_t* key) const
{
    static Linker linker;
    record("KsRxDictionary::at", {utf8(key)});
    return state().hasDynamicLinker && std::wstring_view(key) == L"DynamicLinker" ? &linker : nullptr;
}

KsRxDictionary* ksrxSysRegistry()
{
    static KsRxDictionary registry;
    return &registry;
}

void KsRxDynamicLinkerImp::setKrxLoadType(const wchar_t* path, eRxKrxLoadType type)
{
    record("setKrxLoadType", {utf8(path), std::to_string(static_cast<int>(type))});
}

// The linker puts these in place of the calls of the code under test.

extern "C" {

void* __real_dlopen(const char* name, int mode);
void* __real_dlsym(void* handle, const char* name);
int __real_dlclose(void* handle);
void* __wrap_dlopen(const char* name, int mode);
void* __wrap_dlsym(void* handle, const char* name);
int __wrap_dlclose(void* handle);

void* __wrap_dlopen(const char* name, int mode)
{
    const bool fails = record("dlopen", {name, std::to_string(mode)});
    void* handle = fails ? nullptr : find(state().sharedObjects, name);
    return result(handle, handleText(handle));
}

void* __wrap_dlsym(void* handle, const char* name)
{
    if (!isOurs(handle)) {
        if (handle == nullptr && !state().sharedObjects.empty()) {
            record("dlsym", {"null", name}); // which searches the whole process
        }
        return __real_dlsym(handle, name);
    }
    const bool fails = record("dlsym", {name});
    const auto& exports = *static_cast<Exports*>(handle);
    const auto found = exports.find(name);
    const auto address = fails || found == exports.end() ? nullptr : found->second;
    return result(reinterpret_cast<void*>(address), address != nullptr ? "address" : "null");
}

int __wrap_dlclose(void* handle)
{
    if (!isOurs(handle)) {
        return __real_dlclose(handle);
    }
    record("dlclose", {});
    return 0;
}
} // extern "C"
