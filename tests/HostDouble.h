// A host that records every call and answers as it was told to. The test's own process supplies it to the autoloader:
// to the core objects linked into the same program, and to the shared library when the program opens it.
//
// Strings, numbers and error objects (KsString, _wtof, VxErrorStatus, ...) are the stand-alone host's and are not
// recorded.
#pragma once

#include "host/Configuration.h"

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace hostdouble {

/// One element of a manifest.
struct Element
{
    std::wstring name;
    std::vector<std::pair<std::wstring, std::wstring>> attributes = {};
    std::vector<Element> children = {};
};

struct Token
{
    enum Kind
    {
        kStart,
        kEnd,
        kOther,
    };
    Kind kind;
    std::wstring name;
    std::vector<std::pair<std::wstring, std::wstring>> attributes = {};
};

/// The tokens of `element` and all that is in it.
std::vector<Token> tokensOf(const Element& element);

/// What a reader says about a document.
struct Document
{
    Document() = default;
    Document(const Element& root) : tokens(tokensOf(root)) {}

    std::vector<Token> tokens;
    bool isMalformed = false; ///< the reader stops behind the last token and reports an error
};

/// What a reader does to the value buffer for an attribute that is missing.
enum class MissingAttribute
{
    kEmptiesBuffer,
    kLeavesBufferAlone,
};

struct FolderEntry
{
    std::wstring name;
    bool isFolder = true;
};

/// A library that can be opened: what it exports.
using Exports = std::map<std::string, void (*)()>;

/// What is stored under a configuration key.
struct StoredValue
{
    std::wstring text;
    std::int32_t type = KestVariant::kText;
};

/// Everything that the host answers, and all that it was asked.
struct State
{
    // What the host answers.
    std::wstring programPath = L"/program/";
    std::map<std::wstring, std::vector<FolderEntry>> folders; ///< a folder that is not here cannot be listed
    std::map<std::wstring, Document> documents;               ///< a path that is not here gives no reader
    MissingAttribute missingAttribute = MissingAttribute::kEmptiesBuffer;
    bool recordsReaderChecks = false; ///< the reader's questions are recorded too, not only what moves or reads it
    bool isLogOpenable = true;
    std::optional<std::wstring> vernum = L"26.0_1_Linux_x86_64"; ///< nullopt: the variable cannot be read
    bool isVernumNull = false;                                   ///< read with success, but without a string
    std::optional<std::wstring> productName = L"TARVIX";         ///< nullopt: a null pointer
    bool hasConfiguration = true;
    std::map<std::wstring, StoredValue> configuration;
    std::set<std::wstring> unreadableKeys;            ///< getValue fails although the key may exist
    std::set<std::wstring> misreadKeys;               ///< getValue fails, but fills the value nevertheless
    std::set<std::wstring> unstorableKeys;            ///< setValue fails
    std::function<void(const std::wstring&)> onStore; ///< called with the key at the end of each setValue
    bool hasCrashRecorder = true;
    std::map<std::wstring, std::wstring> convertedMenus;                 ///< source to result; absent: conversion fails
    std::function<bool(const std::wstring&, std::wstring&)> convertMenu; ///< when set, in place of convertedMenus
    bool hasDynamicLinker = true;
    bool isDynamicLinkerOfForeignClass = false;
    std::set<std::wstring> brokenModules; ///< loadModule answers false
    int queueStatus = 5100;
    std::map<std::wstring, Exports> openLibraries;     ///< GetModuleHandleW finds them
    std::map<std::wstring, Exports> loadableLibraries; ///< LoadLibraryW finds them
    std::map<std::string, Exports> sharedObjects;      ///< dlopen finds them
    bool netLoadResult = true;
    int pythonResult = 0;
    std::optional<std::wstring> workingDirectory = L"/start"; ///< nullopt: cannot be read
    std::optional<long> time;                                 ///< nullopt: the real one
    bool isMallocFailing = false;                             ///< for the calls of the code under test
    /// The call with this number, from 1, fails if it can; 0: none does.
    std::size_t failingCall = 0;

    // What it was asked, in order, in UTF-8: "name(arguments) -> result", without "-> result" where there is none.
    std::vector<std::string> calls;
    /// The raw bytes of the last block handed to setValue for each key.
    std::map<std::wstring, std::string> storedBlocks;
    /// The blocks' addresses and contents cannot outlive the call; errors that were recorded, as "status text number".
    std::vector<std::string> recordedErrors;
    const void* lastRecordedError = nullptr; ///< its address, to be compared only
    std::size_t stringCopies = 0;            ///< reports to updateCStringManagerData
    std::size_t openReaders = 0;             ///< made and not released yet
    bool isLogClosed = false;
};

/// The one state. reset() makes it as new, closes and forgets the log and gives back what the double allocated.
State& state();
void reset();

/// What the log holds, as bytes.
std::string logText();

/// The calls whose names (the text before "(") are among `names`, in order.
std::vector<std::string> callsTo(const std::set<std::string>& names);

/// `text` in UTF-8.
std::string utf8(std::wstring_view text);

// Exports for fake libraries, under the names "netLoad", "setPythonVersion" and "loadPythonFile"; they record their
// calls like host operations.
void (*netLoadAddress())();
void (*setPythonVersionAddress())();
void (*loadPythonFileAddress())();

} // namespace hostdouble
