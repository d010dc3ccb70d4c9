#include "host/StdString.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

namespace {

std::vector<std::wstring> content(const CStringArray& array)
{
    std::vector<std::wstring> texts;
    for (int i = 0; i < array.GetSize(); ++i) {
        texts.push_back(array[i]);
    }
    return texts;
}

} // namespace

TEST(StdStringTest, NewArrayIsEmpty)
{
    EXPECT_EQ(CStringArray().GetSize(), 0);
}

TEST(StdStringTest, AddAnswersTheIndexAndKeepsTheOrder)
{
    CStringArray array;
    std::vector<std::wstring> expected;
    for (int i = 0; i < 100; ++i) {
        expected.push_back(L"element number " + std::to_wstring(i));
        EXPECT_EQ(array.Add(expected.back()), i);
    }
    EXPECT_EQ(content(array), expected);
}

TEST(StdStringTest, AddedTextIsACopy)
{
    CStringArray array;
    CStdStr<wchar_t> text(L"before");
    array.Add(text);
    text = L"after";
    EXPECT_EQ(content(array), std::vector<std::wstring>{L"before"});
}

TEST(StdStringTest, ElementOfTheArrayItselfCanBeAdded)
{
    CStringArray array;
    array.Add(L"long enough to have memory of its own, outside the object");
    for (int i = 0; i < 40; ++i) {
        array.Add(array[0]);
    }
    EXPECT_EQ(content(array), std::vector<std::wstring>(41, array[0]));
}

TEST(StdStringTest, ElementsCanBeChanged)
{
    CStringArray array;
    array.Add(L"one");
    array.Add(L"two");
    array[1] = L"three";
    EXPECT_EQ(content(array), (std::vector<std::wstring>{L"one", L"three"}));
}

TEST(StdStringTest, RemoveAllEmptiesAndTheArrayGoesOn)
{
    CStringArray array;
    array.RemoveAll();
    array.Add(L"one");
    array.Add(L"");
    array.RemoveAll();
    EXPECT_EQ(array.GetSize(), 0);
    EXPECT_EQ(array.Add(L"two"), 0);
    EXPECT_EQ(content(array), std::vector<std::wstring>{L"two"});
}

TEST(StdStringTest, CopyOfAStringIsEqualWhateverTheBookkeepingDoes)
{
    const CStdStr<wchar_t> original(L"text");
    const CStdStr<wchar_t> copy(original);
    updateCStringManagerData(&copy);
    updateCStringManagerData(nullptr);
    EXPECT_EQ(copy, original);
    static_assert(std::is_nothrow_move_constructible_v<CStdStr<wchar_t>>);
}
