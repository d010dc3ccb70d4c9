// One bundle: its manifest's records, its state, and the operations on it. Chief header of manifest/.
#pragma once

#include "host/StdString.h"
#include "host/XmlReader.h"
#include "manifest/BundleLogText.h"
#include "manifest/Records.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

class KestBundleManager;

/// A bundle is made by discovery, reads its manifest once (parseXml), and is then dropped or kept. A kept bundle gives
/// its menus (loadCuix) and loads its components (load). Its members are open to the manager and to the tools that
/// explain what became of it; nothing else changes them.
///
/// Paths are full paths, separated by "/". No operation throws an exception of its own.
class KestBundle
{
public:
    /// A bundle that only carries the loaders: no paths, no records, no manager. Nothing but loadNet, loadKrx, loadLsp,
    /// loadPython and the Python version operations may be used on it.
    KestBundle();
    /// A bundle in the folder `folder` with the manifest `manifest`, which is not read yet.
    KestBundle(const CStdStr<wchar_t>& folder, const CStdStr<wchar_t>& manifest);
    ~KestBundle();
    KestBundle(const KestBundle&) = delete;
    KestBundle& operator=(const KestBundle&) = delete;

    /// Whether load() has walked the components, or loadCuix() found nothing but menus.
    bool getIsLoad() const;
    /// Whether the running host meets the requirements of the manifest.
    bool getIsRuntime() const;
    /// Whether the manifest is malformed.
    bool getIsReadError() const;

    // The manifest reader. Each operation returns at once when there is no reader.

    /// Reads the manifest into the records. Problems are logged and noted in the flags; a manifest that cannot be
    /// opened is neither.
    void parseXml();
    /// Walks all tokens of the document.
    void readXmlNodeName();
    void readXmlAttributePackage();
    void readXmlAttributeCompany();
    /// Ends with the runtime check, at every such element.
    void readXmlAttributeRuntime();
    void readXmlNodeDepBundles();
    void readXmlAttributeDep();
    void readXmlNodeComponents();
    void readXmlNodeEntry();
    void readXmlAttributeEntry(KestComponentEntry& entry);
    void readXmlNodeCommands(KestComponentEntry& entry);
    void readXmlAttributeCommand(KestCommands& group);

    // The runtime check.

    /// Compares `runtime` with the running host; every mismatch clears `isRuntime` and is logged.
    void judgeRuntime();
    /// Splits `source` at each `delimiter`, one character, into `output`, which is emptied first and never left empty.
    void divString(const CStdStr<wchar_t>& source, const CStdStr<wchar_t>& delimiter, CStringArray& output);

    // Loading.

    /// Loads the start-up components, in manifest order, and registers the commands of those loaded on invocation.
    /// Failures are logged.
    void load();
    /// Each loads the module at `path` and returns whether it was loaded.
    bool loadNet(const CStdStr<wchar_t>& path);
    /// Ends the process when the host has no dynamic linker.
    bool loadKrx(const CStdStr<wchar_t>& path);
    bool loadLsp(const CStdStr<wchar_t>& path);
    /// Leaves the working directory at the script's folder when the script ran, on purpose.
    bool loadPython(const CStdStr<wchar_t>& path);
    /// Forms the two candidate names of the system's Python library; false when `pythonVersion` is empty.
    bool preparePyVersion();
    /// Tries the candidates; on success `pythonVersion` becomes the name that could be opened.
    bool checkSystemPython();
    void setPyVersion(const CStdStr<wchar_t>& version);

    // Menus.

    /// Appends the paths of the bundle's start-up menus to `menuList`, joined by ";". Returns whether it appended any.
    bool loadCuix(CStdStr<wchar_t>& menuList);

    // The error log.

    /// Writes the line that separates one problem from the next.
    void writeLogSplitLine();

    KestApplicationPackage package;
    std::vector<KestDependentBundle> dependentBundles;             ///< in document order
    std::map<CStdStr<wchar_t>, CStdStr<wchar_t>> commandModuleMap; ///< upper-case command name to module path
    std::map<CStdStr<wchar_t>, CStdStr<wchar_t>> pythonVersionMap; ///< path of a ".py" module to its Python version
    bool isRuntime = false;
    bool isLoad = false;
    bool isReadError = false;
    CStdStr<wchar_t> xmlPath;
    CStdStr<wchar_t> bundlePath;
    KestRuntimeRequirements runtime;
    KestCompanyDetails company;
    std::unique_ptr<XmlFilerReader> xmlReader;  ///< null before parseXml()
    std::vector<KestComponentEntry> components; ///< in document order
    std::string pythonLoadLib;                  ///< the library that runs Python components
    std::string pythonVersion;  ///< of the module being loaded; then the file name of the library that was found
    std::string pythonLibName;  ///< first candidate for that library
    std::string pythonLibNameM; ///< second candidate
    KestBundleManager* manager = nullptr; ///< not owned

private:
    /// Logs `message` behind the manifest's path, after the split line.
    void logManifestProblem(const char* message);
};
