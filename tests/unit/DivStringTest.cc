// The splitting routine, which the manager and the bundle both have as a member.
#include "tests/AutoloaderTest.h"

namespace {

using Pieces = std::vector<std::wstring>;

class DivStringTest : public AutoloaderTest
{
protected:
    /// What both members make of `source`; they must agree.
    Pieces split(const wchar_t* source, const wchar_t* delimiter)
    {
        CStringArray ofManager;
        manager().divString(source, delimiter, ofManager);
        CStringArray ofBundle;
        KestBundle().divString(source, delimiter, ofBundle);
        EXPECT_EQ(pieces(ofManager), pieces(ofBundle));
        return pieces(ofManager);
    }

    static Pieces pieces(const CStringArray& array)
    {
        Pieces all;
        for (int i = 0; i < array.GetSize(); ++i) {
            all.push_back(array[i]);
        }
        return all;
    }
};

TEST_F(DivStringTest, ATextWithoutTheDelimiterIsOnePiece)
{
    EXPECT_EQ(split(L"abc", L"_"), (Pieces{L"abc"}));
}

TEST_F(DivStringTest, EachDelimiterEndsAPiece)
{
    EXPECT_EQ(split(L"26.0_1_Linux_aarch64", L"_"), (Pieces{L"26.0", L"1", L"Linux", L"aarch64"}));
    EXPECT_EQ(split(L"/a b.cuix; /c.cuix", L";"), (Pieces{L"/a b.cuix", L" /c.cuix"}));
}

TEST_F(DivStringTest, AnEmptySourceYieldsOneEmptyElement)
{
    EXPECT_EQ(split(L"", L";"), (Pieces{L""}));
}

TEST_F(DivStringTest, ATrailingDelimiterYieldsAFinalEmptyElement)
{
    EXPECT_EQ(split(L"a;", L";"), (Pieces{L"a", L""}));
    EXPECT_EQ(split(L";", L";"), (Pieces{L"", L""}));
}

TEST_F(DivStringTest, EmptyPiecesAreKept)
{
    EXPECT_EQ(split(L";a;;b", L";"), (Pieces{L"", L"a", L"", L"b"}));
    EXPECT_EQ(split(L";;;", L";"), (Pieces{L"", L"", L"", L""}));
}

TEST_F(DivStringTest, OneCharacterIsSkippedAfterAMatchWhateverTheDelimitersLength)
{
    EXPECT_EQ(split(L"a::b", L"::"), (Pieces{L"a", L":b"}));
    EXPECT_EQ(split(L"a:::b", L"::"), (Pieces{L"a", L"", L":b"}));
    EXPECT_EQ(split(L"aaa", L"aa"), (Pieces{L"", L"", L"a"}));
    EXPECT_EQ(split(L"x--", L"--"), (Pieces{L"x", L"-"}));
}

TEST_F(DivStringTest, TheWholeDelimiterMustMatch)
{
    EXPECT_EQ(split(L"a:b:c", L"::"), (Pieces{L"a:b:c"}));
}

TEST_F(DivStringTest, CharactersAbove16BitsAndUndecodableBytesPassThrough)
{
    EXPECT_EQ(split(L"\U0001F600_\xDCFF_ß", L"_"), (Pieces{L"\U0001F600", L"\xDCFF", L"ß"}));
}

TEST_F(DivStringTest, TheOutputIsEmptiedFirst)
{
    CStringArray output;
    output.Add(L"old");
    manager().divString(L"a;b", L";", output);
    EXPECT_EQ(pieces(output), (Pieces{L"a", L"b"}));

    KestBundle().divString(L"c", L";", output);
    EXPECT_EQ(pieces(output), (Pieces{L"c"}));
}

TEST_F(DivStringTest, SplittingAsksTheHostNothing)
{
    split(L"a;b", L";");
    EXPECT_EQ(host.calls, std::vector<std::string>());
}

} // namespace
