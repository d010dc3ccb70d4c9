#include "loading/ModuleKind.h"
#include "tests/TestLocale.h"

#include <cstdint>
#include <locale>

namespace {

TEST(ModuleKindTest, EachExtensionNamesItsKind)
{
    EXPECT_EQ(moduleKindOf(L"/b/a.dll"), ModuleKind::kManaged);
    EXPECT_EQ(moduleKindOf(L"/b/a.krx"), ModuleKind::kNative);
    EXPECT_EQ(moduleKindOf(L"/b/a.lsp"), ModuleKind::kLisp);
    EXPECT_EQ(moduleKindOf(L"/b/a.kelx"), ModuleKind::kLisp);
    EXPECT_EQ(moduleKindOf(L"/b/a.vls"), ModuleKind::kLisp);
    EXPECT_EQ(moduleKindOf(L"/b/a.py"), ModuleKind::kPython);
}

TEST(ModuleKindTest, MenusAndUnknownExtensionsAreOther)
{
    for (const wchar_t* path : {L"/b/a.cuix", L"/b/a.mnu", L"/b/a.mns", L"/b/a.menuc", L"/b/a.so", L"/b/a.", L""}) {
        EXPECT_EQ(moduleKindOf(path), ModuleKind::kOther) << path;
    }
}

TEST(ModuleKindTest, LetterCaseDoesNotMatter)
{
    EXPECT_EQ(moduleKindOf(L"/b/a.DLL"), ModuleKind::kManaged);
    EXPECT_EQ(moduleKindOf(L"/b/a.KRX"), ModuleKind::kNative);
    EXPECT_EQ(moduleKindOf(L"/b/a.lSp"), ModuleKind::kLisp);
    EXPECT_EQ(moduleKindOf(L"/b/a.Kelx"), ModuleKind::kLisp);
    EXPECT_EQ(moduleKindOf(L"/b/a.VLS"), ModuleKind::kLisp);
    EXPECT_EQ(moduleKindOf(L"/b/a.pY"), ModuleKind::kPython);
}

TEST(ModuleKindTest, TheExtensionIsTheTextFromTheLastPoint)
{
    EXPECT_EQ(moduleKindOf(L"/b/a.lsp.bak"), ModuleKind::kOther);
    EXPECT_EQ(moduleKindOf(L"/b/a.bak.lsp"), ModuleKind::kLisp);
    EXPECT_EQ(moduleKindOf(L"/b.krx/a"), ModuleKind::kOther);
    EXPECT_EQ(moduleKindOf(L".py"), ModuleKind::kPython);
}

TEST(ModuleKindTest, WithoutAPointTheWholePathIsTheExtension)
{
    EXPECT_EQ(moduleKindOf(L"krx"), ModuleKind::kOther);
    EXPECT_EQ(moduleKindOf(L"/b/akrx"), ModuleKind::kOther);
}

TEST(ModuleKindTest, BothTextsMustEndTogether)
{
    EXPECT_EQ(moduleKindOf(L"/b/a.krxx"), ModuleKind::kOther);
    EXPECT_EQ(moduleKindOf(L"/b/a.kr"), ModuleKind::kOther);
    EXPECT_EQ(moduleKindOf(L"/b/a.krx "), ModuleKind::kOther);
    EXPECT_EQ(moduleKindOf(std::wstring(L"/b/a.krx\0", 9)), ModuleKind::kOther);
}

TEST(ModuleKindTest, OnlyTheLettersAToZAreFoldedInEveryLocale)
{
    const TestLocale turkish("tr_TR.UTF-8");
    EXPECT_EQ(moduleKindOf(L"/b/a.DLL"), ModuleKind::kManaged);
    EXPECT_EQ(moduleKindOf(L"/b/a.\u212ARX"), ModuleKind::kOther) << "the Kelvin sign is no K";
    EXPECT_EQ(moduleKindOf(L"/b/a.l\u017Fp"), ModuleKind::kOther) << "the long s is no s";
    EXPECT_EQ(moduleKindOf(L"/b/a.\uFF30\uFF39"), ModuleKind::kOther) << "wide letters are no letters";
}

TEST(ModuleKindTest, FoldingIsTheClassicLocalesForEveryCodePoint)
{
    const auto& classic = std::use_facet<std::ctype<wchar_t>>(std::locale::classic());
    for (std::uint32_t code = 0; code <= 0x10FFFF; ++code) {
        const auto unit = static_cast<wchar_t>(code);
        ASSERT_EQ(localetext::lowerByClassicLocale(unit), classic.tolower(unit)) << "code point " << code;
    }
}

TEST(ModuleKindTest, FoldingStaysClassicWhenTheGlobalLocaleIsAnother)
{
    const TestLocale turkish("tr_TR.UTF-8");
    const auto& classic = std::use_facet<std::ctype<wchar_t>>(std::locale::classic());
    for (std::uint32_t code = 0; code <= 0x10FFFF; ++code) {
        const auto unit = static_cast<wchar_t>(code);
        ASSERT_EQ(localetext::lowerByClassicLocale(unit), classic.tolower(unit)) << "code point " << code;
    }
}

} // namespace
