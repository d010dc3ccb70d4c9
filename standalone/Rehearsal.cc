#include "standalone/Rehearsal.h"

#include "standalone/AssemblyFile.h"
#include "standalone/EngineServices.h"
#include "standalone/Host.h"
#include "standalone/RegularFile.h"

#include "host/Engines.h"
#include "host/LocaleText.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace standalone {

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
    RegularFile file;
    return meet(path, file.open(localetext::narrow(path).c_str()));
}

bool Rehearsal::meetAssembly(const std::wstring& path)
{
    return meet(path, problemOfAssembly(localetext::narrow(path)));
}

bool Rehearsal::meet(const std::wstring& path, const std::string& problem)
{
    host.engineServices().beginComponent(path);
    host.engineServices().endComponent(problem);
    return problem.empty();
}

} // namespace standalone
