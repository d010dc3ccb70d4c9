#include "cli/ManifestVocabulary.h"

#include "manifest/BundleStrConst.h"

#include <algorithm>

namespace cli {

namespace {

using namespace BundleStrConst;

constexpr AttributeWord kPackageAttributes[] = {
    {app_UpgradeCode, ValueForm::kText, true,
     "The identity of the bundle, by habit a GUID in braces: other bundles depend on it, and of several bundles with "
     "one identity only the first has its menus registered. Give every bundle its own and keep it from version to "
     "version. Compared letter for letter. Without it nothing can depend on the bundle, and it shares its identity "
     "with all others that have none."},
    {app_SchemaVersion, ValueForm::kText, true, "The version of the manifest's form. It is not compared; write 1.0."},
    {app_AppVersion, ValueForm::kText, true, "The version of the bundle. For people; it is not compared."},
    {app_Author, ValueForm::kText, true, "Who made the bundle. For people."},
    {app_Name, ValueForm::kText, true, "The name of the bundle. For people; the name of its folder may be another."},
    {app_Description, ValueForm::kText, true, "What the bundle is for, in a sentence. For people."},
    {app_Icon, ValueForm::kText, true, "A picture for the bundle. For people; nobody looks for the file."},
    {app_HelpFile, ValueForm::kText, true, "The help of the bundle. For people; nobody looks for the file."},
    {app_ProductCode, ValueForm::kText, true,
     "By habit a GUID in braces for this version of the bundle: a new one for each version. It is not compared."},
};

constexpr AttributeWord kCompanyAttributes[] = {
    {company_Name, ValueForm::kText, true, "The name of the company. For people."},
    {company_Phone, ValueForm::kText, true, "Its telephone number. For people."},
    {company_URL, ValueForm::kText, true, "Its page in the web. For people."},
    {company_Email, ValueForm::kText, true, "Its address for mail. For people."},
};

constexpr AttributeWord kRuntimeAttributes[] = {
    {run_Arc, ValueForm::kText, true,
     "The machine: aarch64 or x86_64, letter for letter. Only what stands before the first _ counts. It is compared "
     "even when it is missing: a bundle whose RuntimeRequirements name no Architecture fits no host."},
    {run_OS, ValueForm::kText, true,
     "The operating system, letter for letter: Linux. Without it every operating system will do."},
    {run_Platform, ValueForm::kText, true,
     "The product name of the host, letter for letter: TARVIX. Without it every host will do."},
    {run_SeriesMin, ValueForm::kDecimalNumber, true,
     "The lowest product version of the host, itself included: 26.0. It is a decimal number, so 26.10 is 26.1. Without "
     "it there is no lower bound."},
    {run_SeriesMax, ValueForm::kDecimalNumber, true,
     "The highest product version of the host, itself included: 26.0. It is a decimal number, so 26.10 is 26.1. "
     "Without it there is no upper bound."},
};

constexpr AttributeWord kDependencyAttributes[] = {
    {dep_UpgradeCode, ValueForm::kText, true,
     "The UpgradeCode of the bundle that must be loaded before this one, letter for letter. Without it the element "
     "does "
     "not count."},
    {dep_VersionMin, ValueForm::kText, true, "The lowest version of that bundle. It is not compared."},
    {dep_VersionMax, ValueForm::kText, true, "The highest version of that bundle. It is not compared."},
};

constexpr AttributeWord kEntryAttributes[] = {
    {entry_ModuleName, ValueForm::kBundlePath, true,
     "The file, from the bundle folder on: ./Contents/tool.krx. It begins with ./ or it names no file. Its extension "
     "says what it is: .krx a native module; .lsp, .kelx, .vls LISP; .py a Python script; .dll a managed assembly; "
     ".cuix, .mnu, .mns, .menuc a menu. Without it the whole entry is empty and never loads."},
    {entry_AppName, ValueForm::kText, true, "The name of the component. For people."},
    {entry_LoadCtrlFlag, ValueForm::kWholeNumber, true,
     "Only 1 lets the entry load, or its menu be registered, when the host starts. 1 when it is missing."},
    {entry_PythonVersion, ValueForm::kPythonVersion, true,
     "For a Python script, the library to run it with: python3.11 stands for libpython3.11.so. Without it the script "
     "is "
     "passed over in silence."},
    {entry_LoadStartup, ValueForm::kTrueFalse, true,
     "False keeps the entry from loading when the host starts. On when it is missing; No and 0 do not switch it off."},
    {entry_LoadCommand, ValueForm::kTrueFalse, true,
     "True has the entry load when one of its Commands is first used. It works only together with "
     "LoadOnTARVIXStartup=\"False\". Off when it is missing."},
};

constexpr AttributeWord kCommandsAttributes[] = {
    {commands_GroupName, ValueForm::kText, true, "The name of the group of commands. For people."},
};

constexpr AttributeWord kCommandAttributes[] = {
    {command_Global, ValueForm::kText, true,
     "The name of the command in every language. Nothing is made of it: Local is the name that counts."},
    {command_Local, ValueForm::kText, true,
     "The name that people type; letter case does not matter. The component must register a command of this name when "
     "it is loaded. Of several entries with one name the first found has it. Without it the command is never "
     "announced."},
    {command_HelpTopic, ValueForm::kText, false, "A place in the help file. It is passed over."},
    {command_StartupCommand, ValueForm::kTrueFalse, false,
     "Whether the command runs when the host starts. It is passed over: no command does."},
};

constexpr ElementWord kElements[] = {
    {xml_ApplicationPackage, nullptr, true, kPackageAttributes,
     "A bundle: what it is called, and which one it is. No attribute is required."},
    {xml_CompanyDetails, &xml_ApplicationPackage, true, kCompanyAttributes,
     "Who stands behind the bundle. For people."},
    {xml_RuntimeRequirements, &xml_ApplicationPackage, true, kRuntimeAttributes,
     "The host that the bundle needs; on any other it is dropped, and the error log says why. Put it before "
     "Components, "
     "and give Architecture in it. Without this element the bundle fits every host."},
    {xml_DependentBundles,
     &xml_ApplicationPackage,
     true,
     {},
     "The bundles that must be loaded before this one. When one of them is not installed, or they depend on each other "
     "in a circle, this bundle is never loaded, and no log tells of it."},
    {xml_DependentBundle, &xml_DependentBundles, true, kDependencyAttributes,
     "One bundle that must be loaded before this one."},
    {xml_DepComponent, &xml_DependentBundle, false, {}, "A component of that bundle. It is passed over."},
    {xml_Components,
     &xml_ApplicationPackage,
     true,
     {},
     "The files that the bundle brings, in the order in which they load. A bundle without any never counts as loaded, "
     "so nothing can depend on it."},
    {xml_ComponentEntry, &xml_Components, true, kEntryAttributes,
     "One file of the bundle, and when it loads: when the host starts, unless that is switched off."},
    {xml_Commands, &xml_ComponentEntry, true, kCommandsAttributes,
     "The commands that the entry loads on. They are announced only for an entry that does not load when the host "
     "starts."},
    {xml_Command, &xml_Commands, true, kCommandAttributes, "One command that the entry loads on."},
};

bool isSame(const ElementWord& one, const CStdStr<wchar_t>* name)
{
    return name != nullptr && one.name == *name;
}

} // namespace

std::span<const ElementWord> manifestVocabulary()
{
    return kElements;
}

const ElementWord* findElement(std::wstring_view name)
{
    const auto* found = std::ranges::find_if(kElements, [name](const ElementWord& one) { return one.name == name; });
    return found == std::end(kElements) ? nullptr : found;
}

const AttributeWord* findAttribute(const ElementWord& element, std::wstring_view name)
{
    for (const AttributeWord& attribute : element.attributes) {
        if (attribute.name == name) {
            return &attribute;
        }
    }
    return nullptr;
}

std::vector<const ElementWord*> childrenOf(const ElementWord& element)
{
    std::vector<const ElementWord*> children;
    for (const ElementWord& one : kElements) {
        if (isSame(element, one.parent)) {
            children.push_back(&one);
        }
    }
    return children;
}

bool keepsItsContent(const ElementWord& element)
{
    return element.parent != nullptr &&
           std::ranges::any_of(childrenOf(element), [](const ElementWord* child) { return child->isRead; });
}

const ElementWord* elementSeen(const ElementWord* around, std::wstring_view name)
{
    const ElementWord* element = findElement(name);
    if (element == nullptr || !element->isRead) {
        return nullptr;
    }
    const bool isForAnyPlace = element->parent == nullptr || isSame(kElements[0], element->parent);
    const bool isSeen = around == nullptr ? isForAnyPlace : isSame(*around, element->parent);
    return isSeen ? element : nullptr;
}

} // namespace cli
