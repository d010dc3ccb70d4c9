// The types of all functions that the library, its host and the engines call in each other. A symbol's name tells no
// result type, and of a C function nothing but its name.
#include "tests/library/Contract.h"

#include "bundle/EntryPoints.h"
#include "host/CommandTable.h"
#include "host/Configuration.h"
#include "host/DynamicLinker.h"
#include "host/EngineHost.h"
#include "host/Engines.h"
#include "host/ErrorStatus.h"
#include "host/FileLayer.h"
#include "host/Kds.h"
#include "host/KsString.h"
#include "host/MenuDatabase.h"
#include "host/ModuleLayer.h"
#include "host/StdString.h"
#include "host/TextLayer.h"
#include "host/XmlReader.h"

#include <gtest/gtest.h>
#include <set>
#include <typeinfo>

namespace {

struct Function
{
    std::string name;
    std::string type;
};

#define KEST_FUNCTION(function)                                                                                        \
    Function                                                                                                           \
    {                                                                                                                  \
#function, demangled(typeid(decltype(&function)).name())                                                       \
    }
#define KEST_POINTER(type)                                                                                             \
    Function                                                                                                           \
    {                                                                                                                  \
#type, demangled(typeid(type).name())                                                                          \
    }

const std::vector<Function>& functions()
{
    using ReadElement = const CStdStr<wchar_t>& (CStringArray::*)(int) const noexcept;
    using Element = CStdStr<wchar_t>& (CStringArray::*)(int) noexcept;
    static const std::vector<Function> all = {
        KEST_FUNCTION(excute),
        KEST_FUNCTION(excuteCuix),
        KEST_FUNCTION(loadIfCmdNeeded),
        KEST_FUNCTION(CStringArray::Add),
        KEST_FUNCTION(CStringArray::GetSize),
        KEST_FUNCTION(CStringArray::RemoveAll),
        {"CStringArray::operator[]",
         demangled(typeid(decltype(static_cast<Element>(&CStringArray::operator[]))).name())},
        {"CStringArray::operator[]",
         demangled(typeid(decltype(static_cast<ReadElement>(&CStringArray::operator[]))).name())},
        KEST_FUNCTION(Database::convertMenuToCuix),
        KEST_FUNCTION(FindFirstFileW),
        KEST_FUNCTION(FindNextFileW),
        KEST_FUNCTION(GetCurrentDirectoryW),
        KEST_FUNCTION(GetKestProgramPath),
        KEST_FUNCTION(GetModuleHandleW),
        KEST_FUNCTION(GetProcAddress),
        KEST_FUNCTION(KestCommandString2TypeMap::addEntry),
        KEST_FUNCTION(KestCrashRecorder::record),
        KEST_FUNCTION(KestGetCommandString2TypeMap),
        KEST_FUNCTION(KsRxClass::isDerivedFrom),
        KEST_FUNCTION(KsRxDictionary::at),
        KEST_FUNCTION(KsRxDynamicLinker::desc),
        KEST_FUNCTION(KsRxDynamicLinkerImp::setKrxLoadType),
        KEST_FUNCTION(KsString::ansiPtr),
        KEST_FUNCTION(KsString::assign),
        KEST_FUNCTION(KsString::compare),
        KEST_FUNCTION(KsString::utf8Ptr),
        KEST_FUNCTION(LoadLibraryW),
        KEST_FUNCTION(SetCurrentDirectoryW),
        KEST_FUNCTION(TarvixConfig::getValue),
        KEST_FUNCTION(TarvixConfig::productName),
        KEST_FUNCTION(TarvixConfig::setValue),
        KEST_FUNCTION(VxErrorStatus::number),
        KEST_FUNCTION(VxErrorStatus::status),
        KEST_FUNCTION(VxErrorStatus::text),
        KEST_FUNCTION(_tarswprintf),
        KEST_FUNCTION(_wfopen),
        KEST_FUNCTION(_wtof),
        KEST_FUNCTION(_wtoi),
        KEST_FUNCTION(kds_queueexpr),
        KEST_FUNCTION(kestConfig),
        KEST_FUNCTION(kestCreateXmlFilerReader),
        KEST_FUNCTION(kestEngineHost),
        KEST_FUNCTION(kestGetCrashRecorder),
        KEST_FUNCTION(ksedGetVar),
        KEST_FUNCTION(ksrxSysRegistry),
        KEST_FUNCTION(updateCStringManagerData),
        KEST_FUNCTION(KsRxObject::isA),
        KEST_FUNCTION(KsRxDynamicLinker::loadModule),
        KEST_FUNCTION(XmlFilerReader::checkStartElement),
        KEST_FUNCTION(XmlFilerReader::checkEndElement),
        KEST_FUNCTION(XmlFilerReader::attribute),
        KEST_FUNCTION(XmlFilerReader::tokenName),
        KEST_FUNCTION(XmlFilerReader::moreTokens),
        KEST_FUNCTION(XmlFilerReader::readOk),
        KEST_FUNCTION(XmlFilerReader::readNext),
        KEST_FUNCTION(KestEngineHost::versionText),
        KEST_FUNCTION(KestEngineHost::print),
        KEST_FUNCTION(KestEngineHost::registerCommand),
        KEST_FUNCTION(KestEngineHost::engineStarted),
        KEST_FUNCTION(KestEngineHost::beginComponent),
        KEST_FUNCTION(KestEngineHost::endComponent),
        KEST_POINTER(KestEngineCommand),
        KEST_POINTER(ProcAddress),
        KEST_POINTER(engines::NetLoad),
        KEST_POINTER(engines::SetPythonVersion),
        KEST_POINTER(engines::LoadPythonFile),
    };
    return all;
}

TEST(FunctionTypesTest, FunctionsThatAreCalledAcrossTheBorderHaveTheTypesOnRecord)
{
    std::vector<std::string> lines;
    for (const Function& function : functions()) {
        lines.push_back(function.name + ": " + function.type);
    }
    expectContract("functions.txt", lines);
}

TEST(FunctionTypesTest, EveryHostOperationOnRecordHasItsTypeThere)
{
    std::set<std::string> typed;
    for (const Function& function : functions()) {
        typed.insert(function.name);
    }
    for (const std::string& line : contractLines("host-operations.txt")) {
        const std::string name = line.substr(line.find(' ') + 1); // "mangled readable(arguments)"
        const std::string plain = name.substr(0, name.find('('));
        const std::size_t scope = plain.rfind("::");
        const std::string last = scope == std::string::npos ? plain : plain.substr(scope + 2);
        const bool isMaking = scope != std::string::npos && (plain.substr(0, scope) == last || last[0] == '~');
        EXPECT_TRUE(isMaking || typed.contains(plain)) << plain;
    }
}

} // namespace
