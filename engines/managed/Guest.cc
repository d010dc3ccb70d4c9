#include "engines/managed/Guest.h"

#include "engines/managed/Runtime.h"
#include "engines/managed/Text.h"

#include <mono/metadata/appdomain.h>
#include <mono/metadata/assembly.h>
#include <mono/metadata/exception.h>
#include <mono/metadata/image.h>
#include <mono/metadata/loader.h>
#include <mono/metadata/object.h>
#include <mono/metadata/reflection.h>

#include <mutex>
#include <utility>

namespace engines {

namespace {

GuestState guestState;
thread_local bool isHostThread = false;

std::mutex printedElsewhereMutex;
std::string printedElsewhere; ///< by other threads than the host's; the host cannot be called there

void printFromElsewhere() noexcept
{
    std::string text;
    {
        const std::lock_guard lock(printedElsewhereMutex);
        text.swap(printedElsewhere);
    }
    if (KestEngineHost* host = kestEngineHost(); host != nullptr && !text.empty()) {
        host->print(text);
    }
}

void print(MonoString* text)
{
    printForManaged(utf8Of(text));
}

MonoString* hostVersion()
{
    const KestEngineHost* host = kestEngineHost();
    return mono_string_new(mono_domain_get(), host != nullptr ? host->versionText().c_str() : "");
}

mono_bool isOnHostThread()
{
    return isHostThread ? 1 : 0;
}

mono_bool registerCommand(MonoString* name, std::int32_t number)
{
    KestEngineHost* host = kestEngineHost();
    return host != nullptr && host->registerCommand(utf8Of(name), &runManagedCommand, number) ? 1 : 0;
}

thread_local MonoAssembly* referenceBeingBound = nullptr;

/// Asked by the runtime for each reference, before its own search.
MonoAssembly* assemblyForReference(MonoAssemblyName* /*name*/, void* /*data*/)
{
    return referenceBeingBound;
}

void bindReference(MonoReflectionAssembly* asking, std::int32_t index, MonoReflectionAssembly* found)
{
    referenceBeingBound = mono_reflection_assembly_get_assembly(found);
    mono_assembly_load_reference(mono_assembly_get_image(mono_reflection_assembly_get_assembly(asking)), index);
    referenceBeingBound = nullptr;
}

MonoString* frameworkFolderText()
{
    return mono_string_new(mono_domain_get(), frameworkFolder().c_str());
}

// These two stand in for the runtime's own, which end the process. The exception skips what is below them: they own
// nothing when they raise it.

void exitProcess(std::int32_t status)
{
    mono_raise_exception(endingOfProcess(status));
}

void failProcess(MonoString* message, MonoException* /*cause*/, MonoString* /*source*/)
{
    mono_raise_exception(failureOfProcess(message));
}

template <typename Function>
void addCall(const char* name, Function* function)
{
    mono_add_internal_call(name, reinterpret_cast<const void*>(function));
}

} // namespace

ManagedVisit::ManagedVisit() : isInner(std::exchange(isHostThread, true)), visit(guestState)
{
    printFromElsewhere();
}

ManagedVisit::~ManagedVisit()
{
    printFromElsewhere();
    isHostThread = isInner;
}

void printForManaged(const std::string& text) noexcept
{
    if (!isHostThread) {
        const std::lock_guard lock(printedElsewhereMutex);
        printedElsewhere += text;
        return;
    }
    printFromElsewhere();
    if (KestEngineHost* host = kestEngineHost()) {
        host->print(text);
    }
}

void addManagedCallbacks()
{
    addCall("KestEngine.Native::Print", &print);
    addCall("KestEngine.Native::HostVersion", &hostVersion);
    addCall("KestEngine.Native::IsHostThread", &isOnHostThread);
    addCall("KestEngine.Native::BindReference", &bindReference);
    addCall("KestEngine.Native::FrameworkFolder", &frameworkFolderText);
    addCall("KestEngine.Native::RegisterCommand", &registerCommand);
    mono_install_assembly_search_hook(&assemblyForReference, nullptr);
    addCall("System.Environment::Exit", &exitProcess);
    addCall("System.Environment::FailFast(string,System.Exception,string)", &failProcess);
}

} // namespace engines
