#include "host/ErrorStatus.h"

#include <cwchar>

VxErrorStatus::VxErrorStatus(Kest::ErrorStatus status, const wchar_t* text, int number)
    : errorStatus(status), errorText(nullptr), errorNumber(number)
{
    const std::size_t size = std::wcslen(text) + 1;
    errorText = new wchar_t[size];
    std::wmemcpy(errorText, text, size);
}

VxErrorStatus::~VxErrorStatus()
{
    delete[] errorText;
}

Kest::ErrorStatus VxErrorStatus::status() const noexcept
{
    return errorStatus;
}

const wchar_t* VxErrorStatus::text() const noexcept
{
    return errorText;
}

int VxErrorStatus::number() const noexcept
{
    return errorNumber;
}
