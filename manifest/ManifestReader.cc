// The walk over the tokens of a manifest. What counts is where an element is met, not a schema: the top loop sees every
// element outside "Components" and "DependentBundles", at any depth.
#include "bundle/BundleManager.h"
#include "manifest/Bundle.h"
#include "manifest/BundleStrConst.h"

namespace {

void advance(XmlFilerReader& reader, CStdStr<wchar_t>& name)
{
    reader.readNext();
    reader.tokenName(name);
}

/// Walks to the end tag of `element`, on which the reader is left standing, or to the end of the document.
/// `name` holds the current token's name; `onStart` is called at each start tag and may itself walk on.
template <typename OnStart>
void walkSubtree(XmlFilerReader& reader, const CStdStr<wchar_t>& element, CStdStr<wchar_t>& name, OnStart onStart)
{
    while (reader.moreTokens() != 0) {
        if (reader.checkEndElement() == 0 && name == element) {
            return;
        }
        if (reader.checkStartElement() == 0) {
            onStart();
        }
        advance(reader, name);
    }
}

} // namespace

void KestBundle::parseXml()
{
    xmlReader.reset();
    xmlReader.reset(kestCreateXmlFilerReader(xmlPath.c_str()));
    if (!xmlReader) {
        return; // meant: the bundle stays sound and empty
    }
    readXmlNodeName();
}

void KestBundle::readXmlNodeName()
{
    if (!xmlReader) {
        return;
    }
    CStdStr<wchar_t> name;
    advance(*xmlReader, name);
    while (xmlReader->moreTokens() != 0) {
        if (xmlReader->checkStartElement() == 0) {
            if (name == BundleStrConst::xml_ApplicationPackage) {
                readXmlAttributePackage();
            } else if (name == BundleStrConst::xml_DependentBundles) {
                readXmlNodeDepBundles();
            } else if (name == BundleStrConst::xml_RuntimeRequirements) {
                readXmlAttributeRuntime();
                if (!isRuntime) {
                    return; // the rest is of no interest, not even whether it is well-formed
                }
            } else if (name == BundleStrConst::xml_Components) {
                readXmlNodeComponents();
            } else if (name == BundleStrConst::xml_CompanyDetails) {
                readXmlAttributeCompany();
            }
        }
        advance(*xmlReader, name);
    }
    if (xmlReader->readOk() == 0) {
        isReadError = true;
        logManifestProblem(bundlelogtext::kFileFormatError);
    }
}

void KestBundle::readXmlNodeDepBundles()
{
    if (!xmlReader) {
        return;
    }
    CStdStr<wchar_t> name;
    advance(*xmlReader, name);
    walkSubtree(*xmlReader, BundleStrConst::xml_DependentBundles, name, [&] {
        if (name == BundleStrConst::xml_DependentBundle) {
            readXmlAttributeDep();
        }
    });
}

void KestBundle::readXmlNodeComponents()
{
    if (!xmlReader) {
        return;
    }
    CStdStr<wchar_t> name;
    advance(*xmlReader, name);
    walkSubtree(*xmlReader, BundleStrConst::xml_Components, name, [&] {
        if (name == BundleStrConst::xml_ComponentEntry) {
            readXmlNodeEntry();
        }
    });
}

void KestBundle::readXmlNodeEntry()
{
    if (!xmlReader) {
        return;
    }
    KestComponentEntry entry;
    CStdStr<wchar_t> name;
    xmlReader->tokenName(name); // the entry's own start tag
    walkSubtree(*xmlReader, BundleStrConst::xml_ComponentEntry, name, [&] {
        if (name == BundleStrConst::xml_ComponentEntry) {
            readXmlAttributeEntry(entry);
        } else if (name == BundleStrConst::xml_Commands) {
            readXmlNodeCommands(entry);
        }
    });
    components.push_back(std::move(entry));
}

void KestBundle::readXmlNodeCommands(KestComponentEntry& entry)
{
    if (!xmlReader) {
        return;
    }
    KestCommands group;
    CStdStr<wchar_t> name;
    xmlReader->tokenName(name); // the group's own start tag
    walkSubtree(*xmlReader, BundleStrConst::xml_Commands, name, [&] {
        if (name == BundleStrConst::xml_Commands) {
            CStdStr<wchar_t> value;
            xmlReader->attribute(BundleStrConst::commands_GroupName, value);
            group.groupName = value;
        } else if (name == BundleStrConst::xml_Command) {
            readXmlAttributeCommand(group);
        }
    });
    entry.commands.push_back(std::move(group));
}
