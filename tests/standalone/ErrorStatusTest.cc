#include "standalone/CrashReport.h"

#include "host/ErrorStatus.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using standalone::RecordedError;

namespace {

TEST(ErrorStatusTest, AnErrorKeepsACopyOfItsText)
{
    std::wstring text = L"the drawing is locked";
    const VxErrorStatus error(Kest::eOutOfMemory, text.c_str(), -3);
    text = L"changed";
    EXPECT_EQ(error.status(), Kest::eOutOfMemory);
    EXPECT_EQ(std::wstring(error.text()), L"the drawing is locked");
    EXPECT_EQ(error.number(), -3);
}

TEST(ErrorStatusTest, TheRecorderOutlivesTheErrorsThatItNotes)
{
    standalone::forgetRecordedErrors();
    KestCrashRecorder* recorder = kestGetCrashRecorder();
    ASSERT_NE(recorder, nullptr);
    {
        const VxErrorStatus error(Kest::eInvalidInput, L"\"\"", 0);
        recorder->record(&error);
    }
    recorder->record(nullptr);
    EXPECT_EQ(standalone::recordedErrors(), (std::vector<RecordedError>{{3, L"\"\"", 0}}));
}

TEST(ErrorStatusTest, TheRecorderKeepsTheLastSixteenErrors)
{
    standalone::forgetRecordedErrors();
    std::vector<RecordedError> expected;
    for (int number = 0; number < 20; ++number) {
        const std::wstring text = L"error " + std::to_wstring(number);
        const VxErrorStatus error(Kest::eInvalidInput, text.c_str(), number);
        kestGetCrashRecorder()->record(&error);
        if (number >= 4) {
            expected.push_back({3, text, number});
        }
    }
    EXPECT_EQ(standalone::recordedErrors(), expected);
    standalone::forgetRecordedErrors();
    EXPECT_EQ(standalone::recordedErrors(), std::vector<RecordedError>{});
}

} // namespace
