// The dynamic linker of the stand-alone host, for native modules.
#pragma once

#include "standalone/ModuleImage.h"

#include "host/DynamicLinker.h"

#include <set>
#include <string>

namespace standalone {

class Host;

/// What the dynamic-loading interface says about its last failure in this thread: UTF-8, one line.
std::string dynamicLoadingReason();

/// Loads native modules and keeps them open for the life of the process, since commands hold their code. A module
/// that fails leaves nothing behind: its commands are forgotten and it is closed again.
class ModuleLinker : public KsRxDynamicLinker
{
public:
    explicit ModuleLinker(Host& owner);

    KsRxClass* isA() const override;

    /// `path` must name a folder: nothing is searched for. The second request for a module that is loaded succeeds
    /// and does nothing. The reason of a failure stands in the journal and, in one line, on the console.
    bool loadModule(const wchar_t* path, bool printit, bool asCommand) override;

    /// Amends the newest journal entry of the module at `path`.
    void noteLoadType(const wchar_t* path, int type);

private:
    std::string load(const std::string& path);
    std::string rehearse(const std::string& path);
    std::string runEntry(const std::string& path, void* module);

    Host& host;
    std::set<void*> loaded;      ///< modules whose entry succeeded for this host
    std::set<void*> beingLoaded; ///< modules whose entry is running
    ModulesInMemory rehearsed;   ///< modules that would be loaded
};

} // namespace standalone
