// The least that any loader does: list the folder of bundles and each bundle, open, read and close each manifest.
// With a parser's name it also parses them, with handlers that do nothing.
#include "bench/BarePass.h"
#include "bench/BundleTree.h"
#include "bench/Measured.h"

#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <functional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

/// Calls `onName` for each entry of `folder`, asking the kernel itself: opendir() would look at the folder once more.
template <typename OnName>
void listFolder(const std::string& folder, OnName onName)
{
    constexpr std::size_t kBlock = std::size_t{64} * 1024;
    alignas(dirent64) char block[kBlock];
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (ssize_t length = 0; (length = ::getdents64(descriptor, block, kBlock)) > 0;) {
        for (const char* record = block; record < block + length;) {
            decltype(dirent64::d_reclen) recordLength = 0;
            std::memcpy(&recordLength, record + offsetof(dirent64, d_reclen), sizeof recordLength);
            onName(record + offsetof(dirent64, d_name));
            record += recordLength;
        }
    }
    ::close(descriptor);
}

/// Reads the file at `path` into `buffer`; the text is valid until the next call.
std::string_view readFile(const std::string& path, std::vector<char>& buffer)
{
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status = {};
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0) {
        return {};
    }
    buffer.resize(static_cast<std::size_t>(status.st_size) + 1);
    const ssize_t length = ::read(descriptor, buffer.data(), buffer.size());
    ::close(descriptor);
    return {buffer.data(), length > 0 ? static_cast<std::size_t>(length) : 0};
}

std::size_t readAll(const std::string& root, const std::function<void(std::string_view)>& onManifest)
{
    std::vector<char> buffer;
    std::size_t manifests = 0;
    listFolder(root, [&](const char* bundle) {
        if (!std::string_view(bundle).ends_with(".bundle")) {
            return;
        }
        const std::string folder = root + "/" + bundle;
        listFolder(folder, [&](const char* file) {
            if (std::strcmp(file, "PackageContents.xml") == 0) {
                onManifest(readFile(folder + "/" + file, buffer));
                ++manifests;
            }
        });
    });
    return manifests;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const std::string_view parser = argumentCount == 3 ? arguments[1] : "";
    if (parser != "none" && parser != "libxml2" && parser != "expat") {
        std::fputs("usage: kest_bench_floor none|libxml2|expat HOME\n", stderr);
        return 2;
    }
    const bench::Measured measured;
    const std::string root = bench::bundleFolder(arguments[2]);
    std::size_t manifests = 0;
    if (parser == "libxml2") {
        bench::LibxmlPass pass;
        manifests = readAll(root, [&](std::string_view text) { pass.parse(text); });
    } else if (parser == "expat") {
        bench::ExpatPass pass;
        manifests = readAll(root, [&](std::string_view text) { pass.parse(text); });
    } else {
        manifests = readAll(root, [](std::string_view) {});
    }
    measured.report(manifests);
    return 0;
}
