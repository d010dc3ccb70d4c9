// A manifest in the hands of an author: found by line and column, changed as an XML document, and saved.
#pragma once

#include <libxml/tree.h>
#include <memory>
#include <string>
#include <vector>

namespace rehearsal {

/// Lines stay where they are as long as nothing is added or moved. What is not well-formed is read as far as can be.
class ManifestEdit
{
public:
    explicit ManifestEdit(std::string path);

    /// The element with the place `line`:`column` in its start tag; null: none.
    xmlNode* elementAt(int line, int column) const;
    /// The name of the attribute at just this place; empty: none.
    std::string attributeAt(int line, int column) const;
    xmlNode* root() const;
    /// The first element named `name` in or below `from`, in document order; null: none.
    static xmlNode* find(xmlNode* from, const std::string& name);
    static std::vector<xmlNode*> childrenNamed(xmlNode* parent, const std::string& name);

    static std::string text(xmlNode* element, const std::string& attribute);
    static void set(xmlNode* element, const std::string& attribute, const std::string& value);
    static void unset(xmlNode* element, const std::string& attribute);
    static void remove(xmlNode* element);
    static void rename(xmlNode* element, const std::string& name);
    /// Appends the elements that `xml` holds.
    void append(xmlNode* parent, const std::string& xml) const;
    /// Puts a new outermost element `name` around everything, or in place of nothing.
    void wrap(const std::string& name);

    void save() const;

private:
    struct Closing
    {
        void operator()(xmlDoc* parsed) const { xmlFreeDoc(parsed); }
    };

    std::string file;
    bool isDeclared; ///< it begins with an XML declaration, which is a line
    std::unique_ptr<xmlDoc, Closing> document;
};

} // namespace rehearsal
