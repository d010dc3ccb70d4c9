// The attributes of one element. Each reader keeps one value buffer for all attributes of the element and never clears
// it: when the host's reader leaves the buffer alone for a missing attribute, the attribute reads like the one before
// it.
#include "host/KsString.h"
#include "host/LocaleText.h"
#include "host/TextLayer.h"
#include "manifest/Bundle.h"
#include "manifest/BundleStrConst.h"

namespace {

/// Which attribute goes to which field of a record.
template <typename Record>
struct AttributeField
{
    const CStdStr<wchar_t>& attribute;
    CStdStr<wchar_t> Record::*field;
};

// In reading order.
constexpr AttributeField<KestApplicationPackage> kPackageFields[] = {
    {BundleStrConst::app_UpgradeCode, &KestApplicationPackage::upgradeCode},
    {BundleStrConst::app_SchemaVersion, &KestApplicationPackage::schemaVersion},
    {BundleStrConst::app_AppVersion, &KestApplicationPackage::appVersion},
    {BundleStrConst::app_Author, &KestApplicationPackage::author},
    {BundleStrConst::app_Name, &KestApplicationPackage::name},
    {BundleStrConst::app_Description, &KestApplicationPackage::description},
    {BundleStrConst::app_Icon, &KestApplicationPackage::icon},
    {BundleStrConst::app_HelpFile, &KestApplicationPackage::helpFile},
    {BundleStrConst::app_ProductCode, &KestApplicationPackage::productCode},
};

constexpr AttributeField<KestCompanyDetails> kCompanyFields[] = {
    {BundleStrConst::company_Name, &KestCompanyDetails::name},
    {BundleStrConst::company_Phone, &KestCompanyDetails::phone},
    {BundleStrConst::company_URL, &KestCompanyDetails::url},
    {BundleStrConst::company_Email, &KestCompanyDetails::email},
};

constexpr AttributeField<KestRuntimeRequirements> kRuntimeFields[] = {
    {BundleStrConst::run_Arc, &KestRuntimeRequirements::architecture},
    {BundleStrConst::run_OS, &KestRuntimeRequirements::os},
    {BundleStrConst::run_Platform, &KestRuntimeRequirements::platform},
    {BundleStrConst::run_SeriesMin, &KestRuntimeRequirements::seriesMin},
    {BundleStrConst::run_SeriesMax, &KestRuntimeRequirements::seriesMax},
};

constexpr AttributeField<KestCommand> kCommandFields[] = {
    {BundleStrConst::command_Global, &KestCommand::globalName},
    {BundleStrConst::command_Local, &KestCommand::localName},
};

/// Groups have a few commands; growing to this many would move the first ones twice.
constexpr std::size_t kUsualCommands = 4;

/// Longer values are no reason to keep so much memory.
constexpr std::size_t kMostKeptUnits = 4096;

/// The value buffer of the element whose attributes are read now, empty at first. It keeps its memory from element to
/// element: everything runs on one thread, and nothing of one element is asked for amid another.
CStdStr<wchar_t>& emptyValue()
{
    static CStdStr<wchar_t> value;
    value.clear();
    if (value.capacity() > kMostKeptUnits) {
        value.shrink_to_fit();
    }
    return value;
}

template <typename Record, std::size_t Count>
void readFields(XmlFilerReader& reader, const AttributeField<Record> (&fields)[Count], Record& record)
{
    CStdStr<wchar_t>& value = emptyValue();
    for (const AttributeField<Record>& field : fields) {
        reader.attribute(field.attribute, value);
        record.*field.field = value;
    }
}

/// Upper-cases `value` in place and tells whether it is then `word`. An empty value is left alone and is no word.
bool readsAs(CStdStr<wchar_t>& value, const char* word)
{
    if (value.empty()) {
        return false;
    }
    localetext::upperByGlobalLocale(value);
    return KsString(word).compare(value.c_str()) == 0;
}

} // namespace

void KestBundle::readXmlAttributePackage()
{
    if (xmlReader) {
        readFields(*xmlReader, kPackageFields, package);
    }
}

void KestBundle::readXmlAttributeCompany()
{
    if (xmlReader) {
        readFields(*xmlReader, kCompanyFields, company);
    }
}

void KestBundle::readXmlAttributeRuntime()
{
    if (xmlReader) {
        readFields(*xmlReader, kRuntimeFields, runtime);
        judgeRuntime();
    }
}

void KestBundle::readXmlAttributeDep()
{
    if (!xmlReader) {
        return;
    }
    CStdStr<wchar_t>& value = emptyValue();
    xmlReader->attribute(BundleStrConst::dep_UpgradeCode, value);
    if (value.empty()) {
        return; // a dependency on nobody
    }
    KestDependentBundle record;
    record.upgradeCode = value;
    xmlReader->attribute(BundleStrConst::dep_VersionMin, value);
    record.versionMin = value;
    xmlReader->attribute(BundleStrConst::dep_VersionMax, value);
    record.versionMax = value;
    dependentBundles.push_back(std::move(record));
}

void KestBundle::readXmlAttributeEntry(KestComponentEntry& entry)
{
    if (!xmlReader) {
        return;
    }
    CStdStr<wchar_t>& value = emptyValue();
    xmlReader->attribute(BundleStrConst::entry_ModuleName, value);
    if (value.empty()) {
        return; // meant: an entry without a module is kept with nothing in it
    }
    if (localetext::equalIgnoringCase(std::wstring_view(value).substr(0, 2), L"./")) {
        value.erase(0, 1);
        entry.moduleName.reserve(bundlePath.size() + value.size()); // without room to spare: it is kept
        entry.moduleName.assign(bundlePath).append(value);
    }
    xmlReader->attribute(BundleStrConst::entry_AppName, value);
    entry.appName = value;
    xmlReader->attribute(BundleStrConst::entry_LoadCtrlFlag, value);
    entry.loadCtrlFlag = value.empty() ? 1 : _wtoi(value.c_str());
    xmlReader->attribute(BundleStrConst::entry_PythonVersion, value);
    entry.pythonVersion = KsString().assign(value.c_str()).utf8Ptr();

    entry.loadFlags = KestComponentEntry::kLoadStartup;
    xmlReader->attribute(BundleStrConst::entry_LoadStartup, value);
    if (readsAs(value, "FALSE")) {
        entry.loadFlags &= ~KestComponentEntry::kLoadStartup;
    }
    xmlReader->attribute(BundleStrConst::entry_LoadCommand, value);
    if (readsAs(value, "TRUE")) {
        entry.loadFlags |= KestComponentEntry::kLoadCommand;
    }
}

void KestBundle::readXmlAttributeCommand(KestCommands& group)
{
    if (!xmlReader) {
        return;
    }
    group.commands.reserve(kUsualCommands);
    readFields(*xmlReader, kCommandFields, group.commands.emplace_back());
}
