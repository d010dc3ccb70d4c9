#include "tests/rehearsal/ManifestEdit.h"

#include "cli/ManifestDocument.h"
#include "host/LocaleText.h"

#include <fstream>
#include <libxml/parser.h>
#include <libxml/xmlsave.h>
#include <sstream>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace rehearsal {

namespace {

const xmlChar* bytes(const std::string& text)
{
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

bool isElement(const xmlNode* node, const std::string& name)
{
    return node->type == XML_ELEMENT_NODE && (name.empty() || xmlStrEqual(node->name, bytes(name)) != 0);
}

/// `from` and all elements below it, in document order.
void collect(xmlNode* from, std::vector<xmlNode*>& all)
{
    for (xmlNode* node = from; node != nullptr; node = node->next) {
        if (isElement(node, "")) {
            all.push_back(node);
            collect(node->children, all);
        }
    }
}

bool isUpTo(const cli::TextPosition& position, int line, int column)
{
    return std::tie(position.line, position.column) <= std::tie(line, column);
}

} // namespace

ManifestEdit::ManifestEdit(std::string path) : file(std::move(path))
{
    std::ostringstream content;
    content << std::ifstream(file, std::ios::binary).rdbuf();
    const std::string text = content.str();
    isDeclared = text.starts_with("<?xml");
    document.reset(xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                                 XML_PARSE_RECOVER | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_NONET));
    if (document == nullptr) {
        document.reset(xmlNewDoc(bytes("1.0")));
    }
}

xmlNode* ManifestEdit::root() const
{
    return xmlDocGetRootElement(document.get());
}

xmlNode* ManifestEdit::elementAt(int line, int column) const
{
    const cli::ManifestDocument written = cli::readManifestDocument(file);
    std::size_t count = 0;
    while (count < written.elements.size() && isUpTo(written.elements[count].position, line, column)) {
        ++count;
    }
    std::vector<xmlNode*> all;
    collect(root(), all);
    return count > 0 && count <= all.size() ? all[count - 1] : nullptr;
}

std::string ManifestEdit::attributeAt(int line, int column) const
{
    for (const cli::ManifestElement& element : cli::readManifestDocument(file).elements) {
        for (const cli::ManifestAttribute& attribute : element.attributes) {
            if (attribute.position.line == line && attribute.position.column == column) {
                return localetext::narrow(attribute.name);
            }
        }
    }
    return "";
}

xmlNode* ManifestEdit::find(xmlNode* from, const std::string& name)
{
    for (xmlNode* node = from; node != nullptr; node = node->next) {
        if (isElement(node, name)) {
            return node;
        }
        if (xmlNode* const below = find(node->children, name)) {
            return below;
        }
    }
    return nullptr;
}

std::vector<xmlNode*> ManifestEdit::childrenNamed(xmlNode* parent, const std::string& name)
{
    std::vector<xmlNode*> all;
    for (xmlNode* node = parent->children; node != nullptr; node = node->next) {
        if (isElement(node, name)) {
            all.push_back(node);
        }
    }
    return all;
}

std::string ManifestEdit::text(xmlNode* element, const std::string& attribute)
{
    xmlChar* const value = xmlGetProp(element, bytes(attribute));
    std::string text = value != nullptr ? reinterpret_cast<const char*>(value) : "";
    xmlFree(value);
    return text;
}

void ManifestEdit::set(xmlNode* element, const std::string& attribute, const std::string& value)
{
    xmlSetProp(element, bytes(attribute), bytes(value));
}

void ManifestEdit::unset(xmlNode* element, const std::string& attribute)
{
    xmlUnsetProp(element, bytes(attribute));
}

void ManifestEdit::remove(xmlNode* element)
{
    xmlUnlinkNode(element);
    xmlFreeNode(element);
}

void ManifestEdit::rename(xmlNode* element, const std::string& name)
{
    element->ns = nullptr; // which would put its prefix before the name
    xmlNodeSetName(element, bytes(name));
}

void ManifestEdit::append(xmlNode* parent, const std::string& xml) const
{
    xmlNode* list = nullptr;
    if (xmlParseInNodeContext(parent, xml.data(), static_cast<int>(xml.size()), 0, &list) != XML_ERR_OK) {
        throw std::runtime_error("not well-formed: " + xml);
    }
    xmlAddChildList(parent, list);
}

void ManifestEdit::wrap(const std::string& name)
{
    xmlNode* const inner = root();
    xmlNode* const outer = xmlNewDocNode(document.get(), nullptr, bytes(name), nullptr);
    if (inner != nullptr) {
        xmlUnlinkNode(inner);
        xmlAddChild(outer, inner);
    }
    xmlDocSetRootElement(document.get(), outer);
}

void ManifestEdit::save() const
{
    const int options = isDeclared ? XML_SAVE_AS_XML : XML_SAVE_AS_XML | XML_SAVE_NO_DECL;
    xmlSaveCtxt* const saving = xmlSaveToFilename(file.c_str(), "UTF-8", options);
    if (saving == nullptr || xmlSaveDoc(saving, document.get()) < 0 || xmlSaveClose(saving) < 0) {
        throw std::runtime_error("cannot write " + file);
    }
}

} // namespace rehearsal
