// The host's operations as the autoloader sees them: each hands on to the stand-alone host's own.
#include "tests/faults/FaultPoint.h"

#include "host/CommandTable.h"
#include "host/Configuration.h"
#include "host/FileLayer.h"
#include "host/Kds.h"
#include "host/MenuDatabase.h"
#include "host/ModuleLayer.h"
#include "host/XmlReader.h"

#include <cerrno>
#include <dlfcn.h>
#include <memory>
#include <stdexcept>

using faults::Kind;

namespace {

/// The definition of the symbol `name` that would have been used without the one here.
template <typename Function>
Function next(const char* name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

/// Whether this call of a host operation is to fail.
bool fails(const char* call)
{
    return faults::strike(Kind::kHost, call) != nullptr;
}

/// The same for an operation that may also throw.
bool failsOrThrows(const char* call)
{
    if (faults::strike(Kind::kThrow, call) != nullptr) {
        throw std::runtime_error("thrown in place of " + std::string(call));
    }
    return fails(call);
}

constexpr auto kUnreadable = static_cast<Kest::ErrorStatus>(1000);
/// A list could not be read or stored: as every host should, this one then stores none of the two.
bool isLost = false;

/// A reader that can find its document malformed at any place.
class FailingReader final : public XmlFilerReader
{
public:
    explicit FailingReader(XmlFilerReader* given) : reader(given) {}

    int checkStartElement() override { return hasFailed ? 1 : reader->checkStartElement(); }
    int checkEndElement() override { return hasFailed ? 1 : reader->checkEndElement(); }
    void attribute(const CStdStr<wchar_t>& name, CStdStr<wchar_t>& value) override { reader->attribute(name, value); }
    void tokenName(CStdStr<wchar_t>& name) override { reader->tokenName(name); }
    int moreTokens() override { return hasFailed ? 0 : reader->moreTokens(); }
    int readOk() override { return hasFailed ? 0 : reader->readOk(); }

    void readNext() override
    {
        hasFailed = hasFailed || fails("readNext");
        reader->readNext();
    }

private:
    std::unique_ptr<XmlFilerReader> reader;
    bool hasFailed = false;
};

} // namespace

#define KEST_HOSTS_OWN(name) next<decltype(&::name)>(#name)

void GetKestProgramPath(wchar_t* buffer)
{
    if (fails("GetKestProgramPath")) {
        buffer[0] = L'\0';
        return;
    }
    KEST_HOSTS_OWN(GetKestProgramPath)(buffer);
}

FindHandle FindFirstFileW(const wchar_t* pattern, WIN32_FIND_DATAW* data)
{
    return failsOrThrows("FindFirstFileW") ? invalidFindHandle() : KEST_HOSTS_OWN(FindFirstFileW)(pattern, data);
}

int FindNextFileW(FindHandle handle, WIN32_FIND_DATAW* data)
{
    return failsOrThrows("FindNextFileW") ? 0 : KEST_HOSTS_OWN(FindNextFileW)(handle, data);
}

std::FILE* _wfopen(const wchar_t* path, const wchar_t* mode)
{
    if (fails("_wfopen")) {
        errno = EACCES;
        return nullptr;
    }
    return KEST_HOSTS_OWN(_wfopen)(path, mode);
}

std::uint32_t GetCurrentDirectoryW(std::uint32_t size, wchar_t* buffer)
{
    return fails("GetCurrentDirectoryW") ? 0 : KEST_HOSTS_OWN(GetCurrentDirectoryW)(size, buffer);
}

int SetCurrentDirectoryW(const wchar_t* path)
{
    return fails("SetCurrentDirectoryW") ? 0 : KEST_HOSTS_OWN(SetCurrentDirectoryW)(path);
}

ModuleHandle GetModuleHandleW(const wchar_t* name)
{
    return fails("GetModuleHandleW") ? nullptr : KEST_HOSTS_OWN(GetModuleHandleW)(name);
}

ModuleHandle LoadLibraryW(const wchar_t* name)
{
    return fails("LoadLibraryW") ? nullptr : KEST_HOSTS_OWN(LoadLibraryW)(name);
}

ProcAddress GetProcAddress(ModuleHandle module, const char* name)
{
    return fails("GetProcAddress") ? nullptr : KEST_HOSTS_OWN(GetProcAddress)(module, name);
}

XmlFilerReader* kestCreateXmlFilerReader(const wchar_t* path)
{
    if (failsOrThrows("kestCreateXmlFilerReader")) {
        return nullptr;
    }
    std::unique_ptr<XmlFilerReader> reader(KEST_HOSTS_OWN(kestCreateXmlFilerReader)(path));
    return reader != nullptr ? new FailingReader(reader.release()) : nullptr;
}

int kds_queueexpr(const wchar_t* expression)
{
    return failsOrThrows("kds_queueexpr") ? kKdsSuccess - 1 : KEST_HOSTS_OWN(kds_queueexpr)(expression);
}

// From here on the names as the linker knows them, the same on all machines that are built for.

int ksedGetVar(const wchar_t* name, resbuf* result)
{
    return failsOrThrows("ksedGetVar") ? kKdsSuccess - 1
                                       : next<decltype(&::ksedGetVar)>("_Z10ksedGetVarPKwP6resbuf")(name, result);
}

TarvixConfig* kestConfig()
{
    return fails("kestConfig") ? nullptr : next<decltype(&::kestConfig)>("_Z10kestConfigv")();
}

Kest::ErrorStatus TarvixConfig::getValue(Path path, const wchar_t* key, KestVariant& value) const
{
    if (fails("getValue")) {
        isLost = true;
        return kUnreadable;
    }
    using Member = Kest::ErrorStatus (*)(const TarvixConfig*, Path, const wchar_t*, KestVariant&);
    return next<Member>("_ZNK12TarvixConfig8getValueENS_4PathEPKwR11KestVariant")(this, path, key, value);
}

Kest::ErrorStatus TarvixConfig::setValue(Path path, const wchar_t* key, const KestVariant& value)
{
    isLost = failsOrThrows("setValue") || isLost;
    if (isLost) {
        return kUnreadable;
    }
    using Member = Kest::ErrorStatus (*)(TarvixConfig*, Path, const wchar_t*, const KestVariant&);
    return next<Member>("_ZN12TarvixConfig8setValueENS_4PathEPKwRK11KestVariant")(this, path, key, value);
}

const wchar_t* TarvixConfig::productName() const
{
    using Member = const wchar_t* (*)(const TarvixConfig*);
    return failsOrThrows("productName") ? nullptr : next<Member>("_ZNK12TarvixConfig11productNameEv")(this);
}

bool Database::convertMenuToCuix(const CStdStr<wchar_t>& source, CStdStr<wchar_t>& converted)
{
    return !failsOrThrows("convertMenuToCuix") &&
           next<decltype(&Database::convertMenuToCuix)>("_ZN8Database17convertMenuToCuixERK7CStdStrIwERS1_")(source,
                                                                                                             converted);
}

void KestCommandString2TypeMap::addEntry(const wchar_t* name, int type)
{
    if (failsOrThrows("addEntry")) {
        return;
    }
    using Member = void (*)(KestCommandString2TypeMap*, const wchar_t*, int);
    next<Member>("_ZN25KestCommandString2TypeMap8addEntryEPKwi")(this, name, type);
}
