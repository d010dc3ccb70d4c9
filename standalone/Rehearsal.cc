#include "standalone/Rehearsal.h"

#include "standalone/EngineServices.h"
#include "standalone/Host.h"
#include "standalone/RegularFile.h"

#include "host/Engines.h"
#include "host/LocaleText.h"

#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

namespace standalone {

namespace {

/// Why the regular file at `path` cannot be read; empty when it can. `begin` are its first bytes, up to 64 of them.
std::string problemOfReading(const std::wstring& path, std::string& begin)
{
    constexpr std::size_t kRoom = 64;
    begin.assign(kRoom, '\0');
    RegularFile file;
    std::size_t length = 0;
    std::string problem = file.open(localetext::narrow(path).c_str());
    if (problem.empty()) {
        problem = file.read(begin.data(), kRoom, length);
    }
    begin.resize(length);
    return problem;
}

} // namespace

Rehearsal::Rehearsal(Host& owner) : host(owner) {}

Rehearsal::~Rehearsal()
{
    for (const auto& [path, descriptor] : files) {
        ::close(descriptor);
    }
}

std::FILE* Rehearsal::openForWriting(const std::string& path)
{
    const int kept = ::memfd_create("kest-rehearsal", MFD_CLOEXEC);
    if (kept < 0) {
        return nullptr;
    }
    const int own = ::fcntl(kept, F_DUPFD_CLOEXEC, 0); // the stream may outlive the rehearsal
    std::FILE* const stream = own >= 0 ? ::fdopen(own, "w") : nullptr;
    if (stream == nullptr) {
        const int error = errno;
        ::close(kept);
        if (own >= 0) {
            ::close(own);
        }
        errno = error;
        return nullptr;
    }
    const auto [place, isNew] = files.try_emplace(path, kept);
    if (!isNew) {
        ::close(place->second);
        place->second = kept;
    }
    return stream;
}

std::string Rehearsal::written(const std::string& path) const
{
    std::string content;
    const auto file = files.find(path);
    if (file == files.end()) {
        return content;
    }
    char buffer[4096];
    for (;;) {
        const ssize_t length = ::pread(file->second, buffer, sizeof(buffer), static_cast<off_t>(content.size()));
        if (length <= 0) {
            return content;
        }
        content.append(buffer, static_cast<std::size_t>(length));
    }
}

bool Rehearsal::meetScript(const std::wstring& path)
{
    std::string begin;
    return meet(path, problemOfReading(path, begin));
}

bool Rehearsal::meetAssembly(const std::wstring& path)
{
    std::string begin;
    std::string problem = problemOfReading(path, begin);
    if (problem.empty() && !begin.starts_with("MZ")) { // the format's own mark, of every executable of its family
        problem = "it is not a managed assembly";
    }
    return meet(path, problem);
}

bool Rehearsal::meet(const std::wstring& path, const std::string& problem)
{
    host.engineServices().beginComponent(path);
    host.engineServices().endComponent(problem);
    return problem.empty();
}

} // namespace standalone
