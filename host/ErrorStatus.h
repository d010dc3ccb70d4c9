// The host's statuses, error objects and crash recorder.
#pragma once

namespace Kest {

/// A status of the host. 0 is success; only the values used here have a name.
enum ErrorStatus : int
{
    eOk = 0,
    eInvalidInput = 3,
    eOutOfMemory = 6,
};

} // namespace Kest

/// An error as the host throws it: made with new, handed to the crash recorder when there is one, then thrown as a
/// pointer. Whoever catches the pointer owns the object.
class VxErrorStatus
{
public:
    /// `text` is copied and not null.
    VxErrorStatus(Kest::ErrorStatus status, const wchar_t* text, int number);
    VxErrorStatus(const VxErrorStatus&) = delete;
    VxErrorStatus& operator=(const VxErrorStatus&) = delete;
    ~VxErrorStatus();

    Kest::ErrorStatus status() const noexcept;
    const wchar_t* text() const noexcept;
    int number() const noexcept;

private:
    Kest::ErrorStatus errorStatus;
    wchar_t* errorText;
    int errorNumber;
};

/// Keeps errors for the report that the host writes when it crashes.
class KestCrashRecorder
{
public:
    /// Notes `error`, which stays the caller's: the recorder copies what it needs and keeps no pointer.
    void record(const VxErrorStatus* error);
};

/// The crash recorder, or null when the host has none. Owned by the host.
KestCrashRecorder* kestGetCrashRecorder();
