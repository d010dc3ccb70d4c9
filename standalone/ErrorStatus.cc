#include "host/ErrorStatus.h"

#include "standalone/CrashReport.h"

#include <cwchar>
#include <deque>

namespace {

constexpr std::size_t kErrorsKept = 16;

std::deque<standalone::RecordedError>& recorded()
{
    static std::deque<standalone::RecordedError> errors;
    return errors;
}

} // namespace

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

void KestCrashRecorder::record(const VxErrorStatus* error)
{
    if (error == nullptr) {
        return;
    }
    if (recorded().size() == kErrorsKept) {
        recorded().pop_front();
    }
    recorded().push_back({error->status(), error->text(), error->number()});
}

KestCrashRecorder* kestGetCrashRecorder()
{
    static KestCrashRecorder theOne;
    return &theOne;
}

namespace standalone {

std::vector<RecordedError> recordedErrors()
{
    return {recorded().begin(), recorded().end()};
}

void forgetRecordedErrors()
{
    recorded().clear();
}

} // namespace standalone
