#include "tests/HostDouble.h"

#include "host/CommandTable.h"
#include "host/Kds.h"
#include "host/LocaleText.h"
#include "host/MenuDatabase.h"
#include "host/StdString.h"
#include "tests/HostDoubleRecord.h"

#include <cstring>
#include <ctime>

extern "C" void* __real_malloc(std::size_t size);

namespace hostdouble {

namespace {

State theState;

std::string join(std::initializer_list<std::string> arguments)
{
    std::string joined;
    for (const std::string& argument : arguments) {
        joined += (joined.empty() ? "" : ", ") + argument;
    }
    return joined;
}

} // namespace

bool record(const std::string& name, std::initializer_list<std::string> arguments)
{
    theState.calls.push_back(name + "(" + join(arguments) + ")");
    return theState.calls.size() == theState.failingCall;
}

State& state()
{
    return theState;
}

void reset()
{
    forgetFiles();
    theState = State();
}

std::vector<std::string> callsTo(const std::set<std::string>& names)
{
    std::vector<std::string> chosen;
    for (const std::string& call : theState.calls) {
        if (names.count(call.substr(0, call.find('('))) != 0) {
            chosen.push_back(call);
        }
    }
    return chosen;
}

std::string utf8(std::wstring_view text)
{
    std::string bytes;
    for (const wchar_t unit : text) {
        localetext::appendUtf8(bytes, unit);
    }
    return bytes;
}

} // namespace hostdouble

using namespace hostdouble;

// The host's operations.

void updateCStringManagerData(const void*) noexcept
{
    ++theState.stringCopies;
}

int ksedGetVar(const wchar_t* name, resbuf* value)
{
    const bool fails = record("ksedGetVar", {utf8(name)});
    value->restype = 5005;
    if (theState.vernum && !theState.isVernumNull) {
        value->resval.rstring = theState.vernum->data();
    }
    const int status = fails || !theState.vernum ? -5001 : kKdsSuccess;
    return result(status, std::to_string(status));
}

int kds_queueexpr(const wchar_t* expression)
{
    const bool fails = record("kds_queueexpr", {utf8(expression)});
    const int status = fails ? -5001 : theState.queueStatus;
    return result(status, std::to_string(status));
}

void KestCrashRecorder::record(const VxErrorStatus* error)
{
    const std::string text = std::to_string(static_cast<int>(error->status())) + " " + utf8(error->text()) + " " +
                             std::to_string(error->number());
    ::record("KestCrashRecorder::record", {text});
    theState.recordedErrors.push_back(text);
    theState.lastRecordedError = error;
}

KestCrashRecorder* kestGetCrashRecorder()
{
    static KestCrashRecorder recorder;
    record("kestGetCrashRecorder", {});
    return theState.hasCrashRecorder ? &recorder : nullptr;
}

Kest::ErrorStatus TarvixConfig::getValue(Path path, const wchar_t* key, KestVariant& value) const
{
    const bool fails = record("getValue", {std::to_string(static_cast<int>(path)), utf8(key)});
    const auto found = theState.configuration.find(key);
    if (fails || found == theState.configuration.end() || theState.unreadableKeys.count(key) != 0) {
        return result(static_cast<Kest::ErrorStatus>(2), "2");
    }
    const std::wstring& text = found->second.text;
    const auto size = static_cast<std::int32_t>((text.size() + 1) * 4 + 4);
    auto* block = static_cast<char*>(__real_malloc(static_cast<std::size_t>(size)));
    std::memcpy(block, &size, 4);
    std::memcpy(block + 4, text.c_str(), static_cast<std::size_t>(size) - 4);
    value.type = found->second.type;
    value.block = block;
    if (theState.misreadKeys.count(key) != 0) {
        return result(static_cast<Kest::ErrorStatus>(2), "2 " + utf8(text));
    }
    return result(Kest::eOk, utf8(text));
}

Kest::ErrorStatus TarvixConfig::setValue(Path path, const wchar_t* key, const KestVariant& value)
{
    std::int32_t size = 0;
    std::memcpy(&size, value.block, 4);
    const auto* block = static_cast<const char*>(value.block);
    const std::wstring text = reinterpret_cast<const wchar_t*>(block + 4);
    const bool fails = record("setValue", {std::to_string(static_cast<int>(path)), utf8(key), utf8(text)});
    if (fails || theState.unstorableKeys.count(key) != 0) {
        return static_cast<Kest::ErrorStatus>(1);
    }
    theState.storedBlocks[key] = std::string(block, static_cast<std::size_t>(size));
    theState.configuration[key] = {text, value.type};
    if (theState.onStore) {
        theState.onStore(key);
    }
    return Kest::eOk;
}

const wchar_t* TarvixConfig::productName() const
{
    record("productName", {});
    return theState.productName ? theState.productName->c_str() : nullptr;
}

TarvixConfig* kestConfig()
{
    static TarvixConfig config;
    const bool fails = record("kestConfig", {});
    return theState.hasConfiguration && !fails ? &config : nullptr;
}

void KestCommandString2TypeMap::addEntry(const wchar_t* name, int type)
{
    record("addEntry", {utf8(name), std::to_string(type)});
}

KestCommandString2TypeMap* KestGetCommandString2TypeMap()
{
    static KestCommandString2TypeMap table;
    return &table;
}

bool Database::convertMenuToCuix(const CStdStr<wchar_t>& source, CStdStr<wchar_t>& converted)
{
    const bool fails = record("convertMenuToCuix", {utf8(source), utf8(converted)});
    if (theState.convertMenu) {
        return theState.convertMenu(source, converted);
    }
    const auto found = theState.convertedMenus.find(source);
    if (fails || found == theState.convertedMenus.end()) {
        return result(false, "false");
    }
    converted = found->second;
    return result(true, "true");
}

// What the code under test asks of the system; the linker puts these in place of its calls.

extern "C" {

std::time_t __real_time(std::time_t* out);
std::time_t __wrap_time(std::time_t* out);
void* __wrap_malloc(std::size_t size);

std::time_t __wrap_time(std::time_t* out)
{
    return theState.time ? *theState.time : __real_time(out);
}

void* __wrap_malloc(std::size_t size)
{
    return theState.isMallocFailing ? nullptr : __real_malloc(size);
}
}
