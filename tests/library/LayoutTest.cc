// How the objects lie in memory that the library, its host and the engines hand to each other, and the numbers that
// they tell each other.
#include "tests/library/Contract.h"

#include "host/CommandTable.h"
#include "host/Configuration.h"
#include "host/DynamicLinker.h"
#include "host/EngineHost.h"
#include "host/ErrorStatus.h"
#include "host/FileLayer.h"
#include "host/Kds.h"
#include "host/KsString.h"
#include "host/LocaleText.h"
#include "host/MenuDatabase.h"
#include "host/StdString.h"
#include "host/XmlReader.h"

#include <cstddef>
#include <cstring>
#include <gtest/gtest.h>

namespace {

template <typename Class>
std::string sizeLine(const std::string& name)
{
    return name + ": size " + std::to_string(sizeof(Class)) + ", alignment " + std::to_string(alignof(Class));
}

/// Where in the table of virtual functions the function lies that `function` points to. Compilers mark such a pointer
/// in the lowest bit of its first or of its second word, according to the machine.
template <typename Function>
std::string slotLine(const std::string& name, Function function)
{
    std::ptrdiff_t words[2];
    static_assert(sizeof function == sizeof words);
    std::memcpy(words, &function, sizeof words);
    EXPECT_TRUE((words[0] & 1) != 0 || (words[1] & 1) != 0) << name << " is not virtual";
    const auto slot = static_cast<std::size_t>(words[0] & ~std::ptrdiff_t{1}) / sizeof(void*);
    return name + ": virtual function " + std::to_string(slot);
}

#define KEST_SIZE(type) sizeLine<type>(#type)
#define KEST_SLOT(function) slotLine(#function, &function)
#define KEST_VALUE(constant) (#constant " = " + std::to_string(static_cast<long>(constant)))
#define KEST_FIELD(type, field)                                                                                        \
    (#type "." #field ": offset " + std::to_string(offsetof(type, field)) + ", size " +                                \
     std::to_string(sizeof(type::field)))

TEST(LayoutTest, RecordsHaveTheSizesAndOffsetsOnRecord)
{
    const std::vector<std::string> lines = {
        KEST_SIZE(FILETIME),
        KEST_FIELD(FILETIME, dwLowDateTime),
        KEST_FIELD(FILETIME, dwHighDateTime),
        KEST_SIZE(WIN32_FIND_DATAW),
        KEST_FIELD(WIN32_FIND_DATAW, dwFileAttributes),
        KEST_FIELD(WIN32_FIND_DATAW, ftCreationTime),
        KEST_FIELD(WIN32_FIND_DATAW, ftLastAccessTime),
        KEST_FIELD(WIN32_FIND_DATAW, ftLastWriteTime),
        KEST_FIELD(WIN32_FIND_DATAW, nFileSizeHigh),
        KEST_FIELD(WIN32_FIND_DATAW, nFileSizeLow),
        KEST_FIELD(WIN32_FIND_DATAW, dwReserved0),
        KEST_FIELD(WIN32_FIND_DATAW, dwReserved1),
        KEST_FIELD(WIN32_FIND_DATAW, cFileName),
        KEST_FIELD(WIN32_FIND_DATAW, cAlternateFileName),
        KEST_SIZE(resbuf),
        KEST_FIELD(resbuf, rbnext), // NOLINT(bugprone-sizeof-expression): of the pointer
        KEST_FIELD(resbuf, restype),
        KEST_FIELD(resbuf, resval),
        KEST_FIELD(resbuf, resval.rreal),
        KEST_FIELD(resbuf, resval.rpoint),
        KEST_FIELD(resbuf, resval.rint),
        KEST_FIELD(resbuf, resval.rstring),
        KEST_SIZE(KestVariant),
        KEST_FIELD(KestVariant, type),
        KEST_FIELD(KestVariant, block),
    };
    expectContract("records.txt", lines);
}

TEST(LayoutTest, ARecordHasNoFieldsButThoseOnRecord)
{
    // Each line compiles for exactly this many fields.
    [[maybe_unused]] const auto& [low, high] = FILETIME{};
    [[maybe_unused]] const auto& [attributes, made, read, written, sizeHigh, sizeLow, one, two, name, shortName] =
        WIN32_FIND_DATAW{};
    [[maybe_unused]] const auto& [next, kind, value] = resbuf{};
    const KestVariant variant;
    [[maybe_unused]] const auto& [type, block] = variant;
}

TEST(LayoutTest, ClassesWhoseObjectsOneSideMakesAndTheOtherUsesHaveTheSizesOnRecord)
{
    // What lies inside is known to the side alone that has the members' code.
    const std::vector<std::string> lines = {
        KEST_SIZE(CStdStr<wchar_t>),
        KEST_SIZE(CStringArray),
        KEST_SIZE(KsString),
        KEST_SIZE(VxErrorStatus),
        KEST_SIZE(KsRxClass),
        KEST_SIZE(KsRxObject),
        KEST_SIZE(KsRxDynamicLinker),
        KEST_SIZE(KsRxDynamicLinkerImp),
        KEST_SIZE(KsRxDictionary),
        KEST_SIZE(TarvixConfig),
        KEST_SIZE(KestCommandString2TypeMap),
        KEST_SIZE(KestCrashRecorder),
        KEST_SIZE(Database),
        KEST_SIZE(XmlFilerReader),
        KEST_SIZE(KestEngineHost),
        KEST_SIZE(FindHandle),
        KEST_SIZE(std::string),
        KEST_SIZE(std::wstring),
        KEST_SIZE(Kest::ErrorStatus),
        KEST_SIZE(TarvixConfig::Path),
        KEST_SIZE(eRxKrxLoadType),
        KEST_SIZE(wchar_t),
        KEST_SIZE(bool),
    };
    expectContract("classes.txt", lines);
}

TEST(LayoutTest, VirtualFunctionsStandInTheOrderOnRecord)
{
    // A virtual destructor takes two places.
    const std::vector<std::string> lines = {
        KEST_SLOT(KsRxObject::isA),
        KEST_SLOT(KsRxDynamicLinker::loadModule),
        KEST_SLOT(XmlFilerReader::checkStartElement),
        KEST_SLOT(XmlFilerReader::checkEndElement),
        KEST_SLOT(XmlFilerReader::attribute),
        KEST_SLOT(XmlFilerReader::tokenName),
        KEST_SLOT(XmlFilerReader::moreTokens),
        KEST_SLOT(XmlFilerReader::readOk),
        KEST_SLOT(XmlFilerReader::readNext),
        KEST_SLOT(KestEngineHost::versionText),
        KEST_SLOT(KestEngineHost::print),
        KEST_SLOT(KestEngineHost::registerCommand),
        KEST_SLOT(KestEngineHost::engineStarted),
        KEST_SLOT(KestEngineHost::beginComponent),
        KEST_SLOT(KestEngineHost::endComponent),
    };
    expectContract("virtual-functions.txt", lines);
}

TEST(LayoutTest, NumbersThatBothSidesKnowAreThoseOnRecord)
{
    static_assert(sizeof(long) == sizeof(void*));
    const std::vector<std::string> lines = {
        KEST_VALUE(Kest::eOk),
        KEST_VALUE(Kest::eInvalidInput),
        KEST_VALUE(Kest::eOutOfMemory),
        KEST_VALUE(TarvixConfig::kMenus),
        KEST_VALUE(kRxLoadedAtStartup),
        KEST_VALUE(KestVariant::kNone),
        KEST_VALUE(KestVariant::kText),
        KEST_VALUE(FILE_ATTRIBUTE_DIRECTORY),
        KEST_VALUE(kKdsSuccess),
        KEST_VALUE(kCommandLoadedOnInvocation),
        KEST_VALUE(localetext::kUndecodableByte),
        "invalidFindHandle() = " + std::to_string(reinterpret_cast<std::intptr_t>(invalidFindHandle())),
    };
    expectContract("numbers.txt", lines);
}

} // namespace
