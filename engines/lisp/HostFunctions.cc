#include "engines/lisp/HostFunctions.h"

#include "engines/lisp/LispEvaluator.h"
#include "engines/lisp/LispText.h"
#include "engines/lisp/LispWorld.h"

#include "host/EngineHost.h"
#include "host/LocaleText.h"

#include <algorithm>
#include <cerrno>
#include <cfenv>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// LISP can leave any of its own functions without the destructors of C++. So each function here works on C++ objects
// first, in a function that calls nothing of LISP, and makes LISP objects of plain memory when these are gone.

namespace engines {

namespace {

/// What outlives the frames that filled it, and is given back when it has become a LISP object.
std::string handedOver;

cl_object takeText()
{
    const cl_object text = lispText(handedOver.data(), handedOver.size());
    std::string().swap(handedOver);
    return text;
}

cl_object takeBytes()
{
    const cl_object text = lispBytes(handedOver.data(), handedOver.size());
    std::string().swap(handedOver);
    return text;
}

/// While the host runs, its calculations end as they would without LISP.
class FloatingPointOfHost
{
public:
    FloatingPointOfHost() { std::feholdexcept(&ofLisp); }
    FloatingPointOfHost(const FloatingPointOfHost&) = delete;
    FloatingPointOfHost& operator=(const FloatingPointOfHost&) = delete;
    ~FloatingPointOfHost() { std::fesetenv(&ofLisp); }

private:
    std::fenv_t ofLisp{};
};

void printToHost(cl_object text) noexcept
{
    const FloatingPointOfHost floatingPoint;
    if (KestEngineHost* host = kestEngineHost()) {
        host->print(utf8Text(text));
    }
}

bool registerWithHost(cl_object name, int number) noexcept
{
    const FloatingPointOfHost floatingPoint;
    KestEngineHost* host = kestEngineHost();
    return host != nullptr && host->registerCommand(utf8Text(name), &runLispCommand, number);
}

void handOverVersion() noexcept
{
    const KestEngineHost* host = kestEngineHost();
    handedOver = host != nullptr ? host->versionText() : "";
}

/// The host upper-cases names the same way.
void handOverUpperCase(cl_object name) noexcept
{
    std::wstring wide = wideText(name);
    localetext::upperByGlobalLocale(wide);
    handedOver.clear();
    for (const wchar_t unit : wide) {
        localetext::appendUtf8(handedOver, unit);
    }
}

void handOverNative(cl_object text) noexcept
{
    handedOver = localetext::narrow(wideText(text));
}

/// Whether these characters are bytes, and UTF-8 as such.
bool isUtf8Bytes(std::wstring_view text)
{
    std::string bytes;
    for (const wchar_t unit : text) {
        if (unit > 0xFF) {
            return false;
        }
        bytes.push_back(static_cast<char>(unit));
    }
    return isUtf8(bytes);
}

/// Each part of a path that is no UTF-8 as bytes is taken for characters.
void handOverNativeParts(cl_object text) noexcept
{
    const std::wstring wide = wideText(text);
    handedOver.clear();
    for (std::size_t begin = 0; begin <= wide.size();) {
        const std::size_t end = std::min(wide.find(L'/', begin), wide.size());
        const std::wstring_view part = std::wstring_view(wide).substr(begin, end - begin);
        handedOver += isUtf8Bytes(part) ? std::string(part.begin(), part.end()) : localetext::narrow(part);
        handedOver += end < wide.size() ? "/" : "";
        begin = end + 1;
    }
}

void handOverShown(cl_object native) noexcept
{
    handedOver.clear();
    for (const wchar_t unit : localetext::widen(nativeBytes(native))) {
        if (localetext::isUndecodableByte(unit)) {
            handedOver.push_back(static_cast<char>(unit - localetext::kUndecodableByte));
        } else {
            localetext::appendUtf8(handedOver, unit);
        }
    }
}

void handOverTruename(cl_object native) noexcept
{
    handedOver = nativeBytes(native);
    if (char* real = ::realpath(handedOver.c_str(), nullptr)) {
        handedOver = real;
        std::free(real);
    }
}

bool isFile(cl_object native) noexcept
{
    struct stat found
    {
    };
    return ::stat(nativeBytes(native).c_str(), &found) == 0;
}

/// Hands over the content of the file, without a byte order mark, and returns true; or why there is none.
bool handOverFile(cl_object native) noexcept
{
    handedOver.clear();
    const std::string path = nativeBytes(native);
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); // a pipe would be waited for
    int error = file < 0 ? errno : 0;
    struct stat status
    {
    };
    if (error == 0 && ::fstat(file, &status) == 0 && !S_ISREG(status.st_mode)) {
        ::close(file);
        handedOver = S_ISDIR(status.st_mode) ? std::strerror(EISDIR) : "Not a regular file";
        return false;
    }
    while (error == 0) {
        char buffer[16384];
        const ssize_t count = ::read(file, buffer, sizeof buffer);
        if (count == 0) {
            break;
        }
        if (count < 0 && errno != EINTR) {
            error = errno;
        } else if (count > 0) {
            handedOver.append(buffer, static_cast<std::size_t>(count));
        }
    }
    if (file >= 0) {
        ::close(file);
    }
    if (error != 0) {
        handedOver = std::strerror(error);
        return false;
    }
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (handedOver.starts_with(kByteOrderMark)) {
        handedOver.erase(0, kByteOrderMark.size());
    }
    return true;
}

cl_object truth(bool value)
{
    return value ? ECL_T : ECL_NIL;
}

cl_object print(cl_object text)
{
    printToHost(text);
    ecl_return1(ecl_process_env(), ECL_NIL);
}

cl_object registerCommand(cl_object name, cl_object number)
{
    const bool accepted = registerWithHost(name, static_cast<int>(ecl_to_fixnum(number)));
    ecl_return1(ecl_process_env(), truth(accepted));
}

cl_object versionText()
{
    handOverVersion();
    ecl_return1(ecl_process_env(), takeText());
}

cl_object upperCase(cl_object name)
{
    handOverUpperCase(name);
    ecl_return1(ecl_process_env(), takeText());
}

cl_object nativeText(cl_object text)
{
    handOverNative(text);
    ecl_return1(ecl_process_env(), takeBytes());
}

cl_object nativeParts(cl_object text)
{
    handOverNativeParts(text);
    ecl_return1(ecl_process_env(), takeBytes());
}

cl_object shownText(cl_object native)
{
    handOverShown(native);
    ecl_return1(ecl_process_env(), takeText());
}

cl_object nativeTruename(cl_object native)
{
    handOverTruename(native);
    ecl_return1(ecl_process_env(), takeBytes());
}

cl_object exists(cl_object native)
{
    ecl_return1(ecl_process_env(), truth(isFile(native)));
}

/// The source text, and NIL; or NIL and why it cannot be read.
cl_object readSource(cl_object native)
{
    const bool isRead = handOverFile(native);
    const cl_object text = takeText();
    const cl_env_ptr environment = ecl_process_env();
    if (isRead) {
        ecl_return2(environment, text, ECL_NIL);
    }
    ecl_return2(environment, ECL_NIL, text);
}

void define(const char* name, void* function, int argumentCount)
{
    const cl_object symbol = ecl_make_symbol(name, "KEST-HOST");
    ecl_def_c_function(symbol, reinterpret_cast<cl_objectfn_fixed>(function), argumentCount);
}

} // namespace

void defineHostFunctions()
{
    define("%PRINT", reinterpret_cast<void*>(&print), 1);
    define("%REGISTER", reinterpret_cast<void*>(&registerCommand), 2);
    define("%VERSION", reinterpret_cast<void*>(&versionText), 0);
    define("%UPPER-CASE", reinterpret_cast<void*>(&upperCase), 1);
    define("%NATIVE", reinterpret_cast<void*>(&nativeText), 1);
    define("%NATIVE-PARTS", reinterpret_cast<void*>(&nativeParts), 1);
    define("%SHOWN", reinterpret_cast<void*>(&shownText), 1);
    define("%TRUENAME", reinterpret_cast<void*>(&nativeTruename), 1);
    define("%EXISTS", reinterpret_cast<void*>(&exists), 1);
    define("%READ-SOURCE", reinterpret_cast<void*>(&readSource), 1);
}

} // namespace engines
