#include "host/ErrorStatus.h"

#include "standalone/CrashReport.h"

#include <deque>

namespace {

constexpr std::size_t kErrorsKept = 16;

std::deque<standalone::RecordedError>& recorded()
{
    static std::deque<standalone::RecordedError> errors;
    return errors;
}

} // namespace

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
