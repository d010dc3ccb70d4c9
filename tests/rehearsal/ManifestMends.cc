#include "tests/rehearsal/MendActions.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <regex>

namespace rehearsal {

namespace {

bool writeAtPlace(const Told& told, const std::string& value)
{
    return changeAt(told, [&](const ManifestEdit& manifest, xmlNode* element) {
        const std::string attribute = manifest.attributeAt(told.line, told.column);
        ManifestEdit::set(element, attribute, value);
        return !attribute.empty();
    });
}

/// Changes the attributes that the groups of `form` find in the text of the mend.
bool changeNamed(const Told& told, const std::string& form,
                 const std::function<void(xmlNode*, const std::string&)>& changeOne)
{
    std::smatch found;
    return std::regex_search(told.mend, found, std::regex(form)) &&
           changeAt(told, [&](const ManifestEdit& /*manifest*/, xmlNode* element) {
               for (std::size_t group = 1; group < found.size(); ++group) {
                   if (found[group].matched) {
                       changeOne(element, found[group]);
                   }
               }
               return true;
           });
}

/// The innermost element `name` around `element`; null: none.
xmlNode* around(xmlNode* element, const std::string& name)
{
    xmlNode* one = element->parent;
    while (one != nullptr && (one->name == nullptr || name != reinterpret_cast<const char*>(one->name))) {
        one = one->parent;
    }
    return one;
}

bool moveBehind(xmlNode* place, xmlNode* element)
{
    xmlUnlinkNode(element);
    xmlAddNextSibling(place, element);
    return true;
}

bool writeCode(const std::string& file, const std::string& code)
{
    const ManifestEdit manifest(file);
    xmlNode* const package = ManifestEdit::find(manifest.root(), "ApplicationPackage");
    if (package != nullptr) {
        ManifestEdit::set(package, "UpgradeCode", code);
        manifest.save();
    }
    return package != nullptr;
}

} // namespace

bool changeAt(const Told& told, const std::function<bool(const ManifestEdit&, xmlNode*)>& change)
{
    const ManifestEdit manifest(told.file);
    xmlNode* const element = manifest.elementAt(told.line, told.column);
    if (element == nullptr || !change(manifest, element)) {
        return false;
    }
    manifest.save();
    return true;
}

std::vector<std::string> quotedIn(const std::string& text)
{
    static const std::regex kQuoted("\"([^\"]*)\"");
    std::vector<std::string> all;
    for (std::sregex_iterator match(text.begin(), text.end(), kQuoted), end; match != end; ++match) {
        all.push_back((*match)[1]);
    }
    return all;
}

bool reparse(const Told& told, const MendTree& /*tree*/)
{
    ManifestEdit manifest(told.file);
    if (manifest.root() == nullptr) {
        manifest.wrap("ApplicationPackage");
    }
    manifest.save();
    return true;
}

bool renameAtPlace(const Told& told, const MendTree& /*tree*/)
{
    return changeAt(told, [&](const ManifestEdit& manifest, xmlNode* element) {
        const std::string name = quotedIn(told.mend).front();
        const std::string attribute = manifest.attributeAt(told.line, told.column);
        if (attribute.empty()) {
            ManifestEdit::rename(element, name);
        } else {
            ManifestEdit::set(element, name, ManifestEdit::text(element, attribute));
            ManifestEdit::unset(element, attribute);
        }
        return true;
    });
}

bool putIntoNamed(const Told& told, const MendTree& /*tree*/)
{
    return changeAt(told, [&](const ManifestEdit& manifest, xmlNode* element) {
        const std::string name = quotedIn(told.mend).front();
        xmlNode* place = ManifestEdit::find(manifest.root(), name);
        if (place == nullptr) {
            manifest.append(manifest.root(), "<" + name + "/>");
            place = ManifestEdit::find(manifest.root(), name);
        }
        xmlUnlinkNode(element);
        xmlAddChild(place, element);
        return true;
    });
}

bool moveOutOfItsLike(const Told& told, const MendTree& /*tree*/)
{
    return changeAt(told, [&](const ManifestEdit& /*manifest*/, xmlNode* element) {
        const std::string name = quotedIn(told.mend).front();
        xmlNode* place = around(element, name);
        for (xmlNode* outer = place; outer != nullptr; outer = around(outer, name)) {
            place = outer;
        }
        return place != nullptr && moveBehind(place, element);
    });
}

bool moveOtherOut(const Told& told, const MendTree& /*tree*/)
{
    return changeAt(told, [&](const ManifestEdit& /*manifest*/, xmlNode* element) {
        const std::string name = quotedIn(told.mend).front();
        xmlNode* const place = around(element, name);
        xmlNode* other = nullptr;
        for (xmlNode* one = place != nullptr ? place->children : nullptr; one != nullptr && other == nullptr;
             one = one->next) {
            other = ManifestEdit::find(one, name);
        }
        return other != nullptr && moveBehind(place, other);
    });
}

bool makeAttribute(const Told& told, const MendTree& /*tree*/)
{
    return changeAt(told, [](const ManifestEdit& /*manifest*/, xmlNode* element) {
        const std::unique_ptr<xmlChar, decltype(xmlFree)> text(xmlNodeGetContent(element), xmlFree);
        ManifestEdit::set(element->parent, reinterpret_cast<const char*>(element->name),
                          reinterpret_cast<const char*>(text.get()));
        ManifestEdit::remove(element);
        return true;
    });
}

bool makeOutermost(const Told& told, const MendTree& /*tree*/)
{
    return changeAt(told, [](const ManifestEdit& manifest, xmlNode* element) {
        xmlNode* const outer = manifest.root();
        xmlUnlinkNode(element);
        xmlDocSetRootElement(outer->doc, element);
        xmlFreeNode(outer);
        return true;
    });
}

bool writeAttributeOfText(const Told& told, const MendTree& /*tree*/)
{
    static const std::regex kWritten("(\\w+)=\"([^\"]*)\"");
    std::smatch written;
    return std::regex_search(told.mend, written, kWritten) &&
           changeAt(told, [&](const ManifestEdit& /*manifest*/, xmlNode* element) {
               ManifestEdit::set(element, written[1], written[2]);
               return true;
           });
}

bool removeAttributesOfText(const Told& told, const MendTree& /*tree*/)
{
    return changeNamed(told, "[Rr]emove (\\w+)(?:, (\\w+))?(?: and (\\w+))?", ManifestEdit::unset);
}

bool removeAttributeAtPlace(const Told& told, const MendTree& /*tree*/)
{
    return changeAt(told, [&](const ManifestEdit& manifest, xmlNode* element) {
        const std::string attribute = manifest.attributeAt(told.line, told.column);
        ManifestEdit::unset(element, attribute);
        return !attribute.empty();
    });
}

bool removeElement(const Told& told, const MendTree& /*tree*/)
{
    return changeAt(told, [](const ManifestEdit& /*manifest*/, xmlNode* element) {
        ManifestEdit::remove(element);
        return true;
    });
}

bool writeBounds(const Told& told, const MendTree& /*tree*/)
{
    return changeNamed(told, "Change (\\w+)(?: and (\\w+))?", [&](xmlNode* element, const std::string& attribute) {
        ManifestEdit::set(element, attribute, told.found);
    });
}

bool removeBounds(const Told& told, const MendTree& /*tree*/)
{
    return changeNamed(told, "Change (\\w+)(?: and (\\w+))?", ManifestEdit::unset);
}

bool writeExpectedBound(const Told& told, const MendTree& /*tree*/)
{
    return writeAtPlace(told, quotedIn(told.expected).front());
}

bool writeTrue(const Told& told, const MendTree& /*tree*/)
{
    return writeAtPlace(told, "True");
}

bool writeFalse(const Told& told, const MendTree& /*tree*/)
{
    return writeAtPlace(told, "False");
}

bool moveToPackage(const Told& told, const MendTree& /*tree*/)
{
    return changeAt(told, [](const ManifestEdit& manifest, xmlNode* element) {
        xmlNode* const package = ManifestEdit::find(manifest.root(), "ApplicationPackage");
        xmlUnlinkNode(element);
        xmlAddPrevSibling(package->children, element);
        return true;
    });
}

bool writeSimilarCode(const Told& told, const MendTree& /*tree*/)
{
    return writeAtPlace(told, quotedIn(told.mend).back());
}

bool writeNeededCode(const Told& told, const MendTree& tree)
{
    tree.installBundle("{NEEDED}");
    return changeAt(told, [](const ManifestEdit& /*manifest*/, xmlNode* element) {
        ManifestEdit::set(element, "UpgradeCode", "{NEEDED}");
        return true;
    });
}

bool writeOwnCode(const Told& told, const MendTree& /*tree*/)
{
    return writeCode(told.file, "{OWN}");
}

bool giveUnneededOwnCodes(const Told& told, const MendTree& tree)
{
    int number = 0;
    for (const Told& one : unneededOf(told, tree)) {
        if (!writeCode(one.file, "{OWN" + std::to_string(++number) + "}")) {
            return false;
        }
    }
    return true;
}

std::vector<Told> unneededOf(const Told& told, const MendTree& tree)
{
    const Looked seen = tree.look();
    std::vector<Told> all;
    std::copy_if(seen.findings.begin(), seen.findings.end(), std::back_inserter(all),
                 [&](const Told& other) { return other.code == told.code && other.subject == told.subject; });
    const auto needed = std::find_if(all.begin(), all.end(), [&](const Told& one) {
        const ManifestEdit manifest(one.file);
        xmlNode* const list = ManifestEdit::find(manifest.root(), "DependentBundles");
        const auto others =
            list != nullptr ? ManifestEdit::childrenNamed(list, "DependentBundle") : std::vector<xmlNode*>();
        return seen.isLoaded(one.bundle) && std::none_of(others.begin(), others.end(), [&](xmlNode* other) {
                   return ManifestEdit::text(other, "UpgradeCode") == told.subject; // it relies on one of the rest
               });
    });
    all.erase(needed != all.end() ? needed : all.begin());
    return all;
}

bool wrapInPackage(const Told& told, const MendTree& /*tree*/)
{
    ManifestEdit manifest(told.file);
    manifest.wrap("ApplicationPackage");
    for (const char* attribute : {"Name", "AppVersion", "UpgradeCode"}) {
        ManifestEdit::set(manifest.root(), attribute, "1");
    }
    manifest.save();
    return true;
}

} // namespace rehearsal
