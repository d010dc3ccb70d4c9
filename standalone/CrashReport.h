// What the crash recorder of the process has noted.
#pragma once

#include <string>
#include <vector>

namespace standalone {

/// A copy of an error that was handed to the recorder.
struct RecordedError
{
    int status = 0;
    std::wstring text;
    int number = 0;

    bool operator==(const RecordedError&) const = default;
};

/// The last 16 recorded errors, oldest first.
std::vector<RecordedError> recordedErrors();

/// Empties the record.
void forgetRecordedErrors();

} // namespace standalone
