#include "manifest/Bundle.h"

#include "bundle/BundleManager.h"

namespace {

constexpr char kPythonLoadLib[] = "libVxPythonLoad.so";

}

KestBundle::KestBundle() : pythonLoadLib(kPythonLoadLib) {}

KestBundle::KestBundle(const CStdStr<wchar_t>& folder, const CStdStr<wchar_t>& manifest)
    : isRuntime(true),
      xmlPath(manifest),
      bundlePath(folder),
      pythonLoadLib(kPythonLoadLib),
      manager(KestBundleManager::getInstance())
{
}

KestBundle::~KestBundle()
{
    xmlReader.reset(); // before the members that it was read into
}

bool KestBundle::getIsLoad() const
{
    return isLoad;
}

bool KestBundle::getIsRuntime() const
{
    return isRuntime;
}

bool KestBundle::getIsReadError() const
{
    return isReadError;
}
