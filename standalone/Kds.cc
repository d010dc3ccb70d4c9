#include "host/Kds.h"

#include "standalone/Host.h"
#include "standalone/LispQueue.h"

#include <string_view>

namespace {

constexpr int kKdsFailure = 5101;

} // namespace

int ksedGetVar(const wchar_t* name, resbuf* result)
{
    standalone::Host* host = standalone::Host::living();
    if (host == nullptr || name == nullptr || result == nullptr || std::wstring_view(name) != L"VERNUM") {
        return kKdsFailure;
    }
    result->resval.rstring = host->vernum();
    return kKdsSuccess;
}

int kds_queueexpr(const wchar_t* expression)
{
    standalone::Host* host = standalone::Host::living();
    const bool accepted = host != nullptr && expression != nullptr && host->lispQueue().add(expression);
    return accepted ? kKdsSuccess : kKdsFailure;
}
