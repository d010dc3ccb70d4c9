#include "cli/ManifestSchema.h"

#include "cli/ManifestVocabulary.h"
#include "cli/Shown.h"
#include "cli/XmlText.h"

namespace cli {

namespace {

/// The simple type for the values of each form: its name, and the pattern of what it allows.
struct ValueType
{
    ValueForm form;
    const char* name;
    const char* pattern;
    const char* documentation;
};

constexpr ValueType kValueTypes[] = {
    {ValueForm::kBundlePath, "BundlePath", "\\./.+", "./ and a path in the bundle folder."},
    {ValueForm::kTrueFalse, "TrueFalse", "[Tt][Rr][Uu][Ee]|[Ff][Aa][Ll][Ss][Ee]", "True or False, in any letter case."},
    {ValueForm::kWholeNumber, "WholeNumber", "[+\\-]?[0-9]+", "A whole number."},
    {ValueForm::kDecimalNumber, "DecimalNumber", "[0-9]+(\\.[0-9]+)?", "A decimal number with a point, such as 26.0."},
    {ValueForm::kPythonVersion, "PythonVersion", "python[0-9]+(\\.[0-9]+)?[a-z]*",
     "The middle of the name of a Python library: python3.11."},
};

std::string typeNameOf(ValueForm form)
{
    for (const ValueType& type : kValueTypes) {
        if (type.form == form) {
            return type.name;
        }
    }
    return "xs:string";
}

std::string annotation(const std::string& indent, const std::string& text)
{
    return indent + "<xs:annotation>\n" + indent + "  <xs:documentation>" + escapedXml(text) + "</xs:documentation>\n" +
           indent + "</xs:annotation>\n";
}

std::string elementDeclaration(const std::string& indent, const ElementWord& element)
{
    const std::string name = plainUtf8(element.name);
    return indent + "<xs:element name=\"" + name + "\" type=\"" + name + "\">\n" +
           annotation(indent + "  ", element.documentation) + indent + "</xs:element>\n";
}

std::string attributeDeclaration(const AttributeWord& attribute)
{
    return "    <xs:attribute name=\"" + plainUtf8(attribute.name) + "\" type=\"" + typeNameOf(attribute.form) +
           "\">\n" + annotation("      ", attribute.documentation) + "    </xs:attribute>\n";
}

/// What an element of this name may hold.
std::string complexType(const ElementWord& element)
{
    std::string text = "\n  <xs:complexType name=\"" + plainUtf8(element.name) + "\">\n";
    if (const auto children = childrenOf(element); !children.empty()) {
        text += "    <xs:choice minOccurs=\"0\" maxOccurs=\"unbounded\">\n";
        for (const ElementWord* child : children) {
            text += elementDeclaration("      ", *child);
        }
        text += "    </xs:choice>\n";
    }
    for (const AttributeWord& attribute : element.attributes) {
        text += attributeDeclaration(attribute);
    }
    return text + "  </xs:complexType>\n";
}

std::string simpleType(const ValueType& type)
{
    return std::string("\n  <xs:simpleType name=\"") + type.name + "\">\n" + annotation("    ", type.documentation) +
           "    <xs:restriction base=\"xs:string\">\n      <xs:pattern value=\"" + type.pattern +
           "\"/>\n    </xs:restriction>\n  </xs:simpleType>\n";
}

} // namespace

std::string manifestSchema()
{
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\">\n";
    for (const ElementWord& element : manifestVocabulary()) {
        if (element.parent == nullptr) {
            text += elementDeclaration("  ", element);
        }
    }
    for (const ElementWord& element : manifestVocabulary()) {
        text += complexType(element);
    }
    for (const ValueType& type : kValueTypes) {
        text += simpleType(type);
    }
    return text + "</xs:schema>\n";
}

} // namespace cli
