#include "menus/VariantText.h"

#include "tests/AutoloaderTest.h"

#include <cstddef>
#include <cstring>
#include <memory>

namespace {

using Lines = std::vector<std::string>;

static_assert(sizeof(KestVariant) == 12);
static_assert(offsetof(KestVariant, type) == 0);
static_assert(offsetof(KestVariant, block) == 4);
static_assert(sizeof(KestVariant::type) == 4 && std::is_signed_v<decltype(KestVariant::type)>);

/// The longest text whose block a signed 32-bit count can say.
constexpr std::size_t kLongestText = 536870909;

class VariantTextTest : public AutoloaderTest
{
protected:
    VariantTextTest() { host.calls.reserve(16); }

    ~VariantTextTest() override { host.isMallocFailing = false; }

    /// The bytes of `value`'s block.
    static std::string bytesOf(const KestVariant& value)
    {
        std::int32_t count = 0;
        std::memcpy(&count, value.block, sizeof(count));
        return {static_cast<const char*>(value.block), static_cast<std::size_t>(count)};
    }

    /// `numbers` as 32-bit numbers in the order of this machine.
    static std::string bytesOf(std::initializer_list<std::uint32_t> numbers)
    {
        std::string bytes;
        for (const std::uint32_t number : numbers) {
            bytes.append(reinterpret_cast<const char*>(&number), sizeof(number));
        }
        return bytes;
    }

    /// The error that setVariantText() throws; null when it throws none.
    static std::unique_ptr<VxErrorStatus> errorOf(KestVariant& value, const CStdStr<wchar_t>& text)
    {
        try {
            setVariantText(value, text);
        } catch (VxErrorStatus* error) {
            return std::unique_ptr<VxErrorStatus>(error);
        }
        return nullptr;
    }
};

TEST_F(VariantTextTest, AFreshVariantHoldsNothingAndReadsAsEmptyText)
{
    const KestVariant value;

    EXPECT_EQ(value.type, 0);
    EXPECT_TRUE(value.block == nullptr);
    EXPECT_EQ(variantText(value), L"");
}

TEST_F(VariantTextTest, TheTagStandsAtByteZeroAndThePointerAtByteFour)
{
    KestVariant value;
    setVariantText(value, L"a");
    const auto* const bytes = reinterpret_cast<const unsigned char*>(&value);
    std::int32_t tag = 0;
    void* pointer = nullptr;
    std::memcpy(&tag, bytes, sizeof(tag));
    std::memcpy(&pointer, bytes + 4, sizeof(pointer));

    EXPECT_EQ(tag, 5);
    EXPECT_TRUE(pointer == value.block);
}

TEST_F(VariantTextTest, ATextIsStoredAsTheCountOfTheWholeBlockTheCodeUnitsAndAZero)
{
    KestVariant value;

    setVariantText(value, L"a\u00E9\u20AC\U0001D11E");

    EXPECT_EQ(value.type, 5);
    EXPECT_EQ(bytesOf(value), bytesOf({24, 'a', 0xE9, 0x20AC, 0x1D11E, 0}));
    EXPECT_EQ(host.calls, Lines());
}

TEST_F(VariantTextTest, EmptyTextIsStoredAsABlockOfEightBytes)
{
    KestVariant value;

    setVariantText(value, L"");

    EXPECT_EQ(value.type, 5);
    EXPECT_EQ(bytesOf(value), bytesOf({8, 0}));
}

TEST_F(VariantTextTest, ANewTextReplacesTheOldOneWhetherLongerOrShorter)
{
    KestVariant value;
    for (const wchar_t* text : {L"middle", L"a much longer text than that", L"", L"x"}) {
        setVariantText(value, text);

        EXPECT_EQ(variantText(value), text);
        EXPECT_EQ(bytesOf(value).size(), (std::wcslen(text) + 2) * 4);
    }
}

TEST_F(VariantTextTest, AValueOfAnotherKindBecomesText)
{
    KestVariant value;
    value.type = 3;
    value.block = std::malloc(100);

    setVariantText(value, L"a");

    EXPECT_EQ(value.type, 5);
    EXPECT_EQ(bytesOf(value), bytesOf({12, 'a', 0}));
}

TEST_F(VariantTextTest, ATextReadsAsItWasGivenAtEveryAlignmentOfTheVariant)
{
    KestVariant values[3]; // 12 bytes each, so that the pointers stand at 4 and 8 in turn
    for (KestVariant& value : values) {
        setVariantText(value, L"/b/\u00FC;/c");
        EXPECT_EQ(variantText(value), L"/b/\u00FC;/c");
    }
}

TEST_F(VariantTextTest, OnlyATextKindWithABlockReadsAsItsText)
{
    KestVariant value;
    setVariantText(value, L"a");
    for (const std::int32_t type : {0, 1, 4, 6, -5}) {
        value.type = type;
        EXPECT_EQ(variantText(value), L"") << type;
    }
    value.type = 5;
    EXPECT_EQ(variantText(value), L"a");

    KestVariant withoutBlock;
    withoutBlock.type = 5;
    EXPECT_EQ(variantText(withoutBlock), L"");
}

TEST_F(VariantTextTest, TheCountIsFourBytesACodeUnitTheZeroIncludedAndFourForItself)
{
    EXPECT_EQ(variantBlockSize(0), 8);
    EXPECT_EQ(variantBlockSize(1), 12);
    EXPECT_EQ(variantBlockSize(1000), 4008);
    EXPECT_EQ(variantBlockSize(kLongestText), 2147483644);
}

TEST_F(VariantTextTest, ACountThatDoesNotFitIsNotPositiveEvenWhereItWouldComeRoundAgain)
{
    for (const std::size_t length :
         {kLongestText + 1, kLongestText + 2, std::size_t{1} << 30, (std::size_t{1} << 30) - 1,
          (std::size_t{1} << 30) + 5, std::size_t{1} << 32, SIZE_MAX / 4, SIZE_MAX - 1, SIZE_MAX}) {
        EXPECT_LE(variantBlockSize(length), 0) << length;
    }
}

TEST_F(VariantTextTest, ATextThatIsTooLongIsRecordedAndThrownAsAPointerWithStatusThree)
{
    const CStdStr<wchar_t> text = std::wstring(kLongestText + 1, L'x');
    KestVariant value;
    setVariantText(value, L"old");

    const auto error = errorOf(value, text);

    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->status(), 3);
    EXPECT_STREQ(error->text(), L"\"\"");
    EXPECT_EQ(error->number(), 0);
    EXPECT_EQ(host.calls, (Lines{"kestGetCrashRecorder()", "KestCrashRecorder::record(3 \"\" 0)"}));
    EXPECT_TRUE(host.lastRecordedError == error.get()) << "what is recorded is what is thrown";
    EXPECT_EQ(value.type, 5);
    EXPECT_TRUE(value.block == nullptr) << "the old block is gone";

    host.hasCrashRecorder = false;
    host.calls.clear();
    const auto unrecorded = errorOf(value, text);

    ASSERT_NE(unrecorded, nullptr);
    EXPECT_EQ(unrecorded->status(), 3);
    EXPECT_EQ(host.calls, Lines{"kestGetCrashRecorder()"});
}

TEST_F(VariantTextTest, MemoryThatRunsOutIsRecordedAndThrownAsAPointerWithStatusSix)
{
    for (const wchar_t* text : {L"new", L""}) {
        KestVariant value;
        setVariantText(value, L"old");
        host.calls.clear();
        host.isMallocFailing = true;

        const auto error = errorOf(value, text);
        host.isMallocFailing = false;

        ASSERT_NE(error, nullptr);
        EXPECT_EQ(error->status(), 6);
        EXPECT_STREQ(error->text(), L"\"\"");
        EXPECT_EQ(error->number(), 0);
        EXPECT_EQ(host.calls, (Lines{"kestGetCrashRecorder()", "KestCrashRecorder::record(6 \"\" 0)"}));
        EXPECT_TRUE(host.lastRecordedError == error.get()) << "what is recorded is what is thrown";
        EXPECT_EQ(value.type, 5);
        EXPECT_TRUE(value.block == nullptr) << "the old block is gone";
    }
}

TEST_F(VariantTextTest, WithoutARecorderAnErrorIsThrownAllTheSame)
{
    host.hasCrashRecorder = false;
    KestVariant value;
    host.isMallocFailing = true;

    const auto error = errorOf(value, L"new");
    host.isMallocFailing = false;

    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->status(), 6);
    EXPECT_EQ(host.calls, Lines{"kestGetCrashRecorder()"});
    EXPECT_EQ(host.recordedErrors, Lines());
}

} // namespace
