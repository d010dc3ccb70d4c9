// The loaders of managed assemblies, native modules and LISP files.
#include "host/DynamicLinker.h"
#include "host/Engines.h"
#include "host/Kds.h"
#include "host/ModuleLayer.h"
#include "host/TextLayer.h"
#include "manifest/Bundle.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <iterator>

namespace {

/// The host's dynamic linker. A host without one is broken beyond repair: the process stops with the fault that the
/// use of a missing service is.
KsRxDynamicLinker& dynamicLinker()
{
    KsRxObject* service = ksrxSysRegistry()->at(L"DynamicLinker");
    if (service == nullptr || !service->isA()->isDerivedFrom(KsRxDynamicLinker::desc())) {
        std::raise(SIGSEGV);
        std::abort();
    }
    return *static_cast<KsRxDynamicLinker*>(service);
}

} // namespace

bool KestBundle::loadNet(const CStdStr<wchar_t>& path)
{
    constexpr const wchar_t* kLibrary = L"VxManagedCommand.dll";
    ModuleHandle library = GetModuleHandleW(kLibrary);
    if (library == nullptr) {
        library = LoadLibraryW(kLibrary);
    }
    if (library == nullptr) {
        return false;
    }
    const auto netLoad = reinterpret_cast<engines::NetLoad>(GetProcAddress(library, "netLoad"));
    return netLoad != nullptr && netLoad(path, 0);
}

bool KestBundle::loadKrx(const CStdStr<wchar_t>& path)
{
    return dynamicLinker().loadModule(path.c_str(), false, false);
}

bool KestBundle::loadLsp(const CStdStr<wchar_t>& path)
{
    wchar_t expression[2049] = {};
    _tarswprintf(expression, std::size(expression), L"(LOAD \"%ls\")", path.c_str());
    std::replace(std::begin(expression), std::end(expression), L'\\', L'/');
    return kds_queueexpr(expression) == kKdsSuccess;
}
