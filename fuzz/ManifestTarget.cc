// Any bytes as a manifest, through the stand-alone host's reader into the records: read twice, they say the same, and
// the records, the flags, the log and the journal agree with each other.
#include "bundle/BundleManager.h"
#include "fuzz/MemoryFile.h"
#include "fuzz/StandaloneHost.h"
#include "fuzz/Target.h"
#include "manifest/Bundle.h"
#include "tests/RecordText.h"

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace fuzz {

namespace {

/// In place of the error log, while it lives.
class LogInMemory
{
public:
    explicit LogInMemory(KestBundleManager& owner) : manager(owner)
    {
        manager.logFile.reset(::open_memstream(&bytes, &size));
    }
    LogInMemory(const LogInMemory&) = delete;
    LogInMemory& operator=(const LogInMemory&) = delete;
    ~LogInMemory()
    {
        manager.logFile.reset();
        std::free(bytes);
    }

    std::string text() const { return {bytes, size}; }

private:
    KestBundleManager& manager;
    char* bytes = nullptr;
    std::size_t size = 0;
};

std::string messages(const KestBundle& bundle, const standalone::ManifestRead& told)
{
    return std::string("runtime ") + (bundle.getIsRuntime() ? "1" : "0") + " malformed " +
           (bundle.getIsReadError() ? "1" : "0") + " " + std::to_string(told.line) + ":" + std::to_string(told.column) +
           " " + told.problem;
}

void checkRecords(const KestBundle& bundle)
{
    for (const KestDependentBundle& dependency : bundle.dependentBundles) {
        require(!dependency.upgradeCode.empty(), "a dependency is on somebody");
    }
    for (const KestComponentEntry& entry : bundle.components) {
        require(entry.moduleName.empty() || entry.moduleName.starts_with(bundle.bundlePath + L"/"),
                "a module lies in its bundle");
        require((entry.loadFlags & ~(KestComponentEntry::kLoadStartup | KestComponentEntry::kLoadCommand)) == 0,
                "there are two load flags");
    }
}

/// Reads the file at `path` and returns all that can be seen of it.
std::vector<std::string> readOnce(const std::string& path)
{
    standalone::Journal& journal = standaloneHost().journal();
    journal.clear();
    const LogInMemory log(*KestBundleManager::getInstance());
    KestBundle bundle(L"/b/a.bundle", localetext::widen(path));
    bundle.parseXml();

    const auto told = journal.only<standalone::ManifestRead>();
    require(told.size() == 1 && told[0].opened, "the journal tells of one manifest, which was opened");
    require(bundle.getIsReadError() == (told[0].malformed && bundle.getIsRuntime()),
            "what the journal calls malformed is malformed");
    require(told[0].malformed != told[0].problem.empty(), "a fault has a name");
    const std::string formatError = "\n---------------------------------------\n" + path + "  File format error\n";
    require(bundle.getIsRuntime() ? log.text() == (bundle.getIsReadError() ? formatError : "")
                                  : log.text().find("RuntimeRequirements") != std::string::npos,
            "the log tells of each problem, and of nothing else");
    checkRecords(bundle);
    std::vector<std::string> seen = recordtext::of(bundle);
    seen.push_back(messages(bundle, told[0]));
    seen.push_back(log.text());
    return seen;
}

void readManifest(std::string_view bytes)
{
    static const MemoryFile file;
    standaloneHost();
    file.fill(bytes);
    const std::vector<std::string> first = readOnce(file.path());
    requireEqual(readOnce(file.path()), first, "a manifest that is read again");
}

const Register kManifest("manifest", readManifest);

} // namespace

} // namespace fuzz
