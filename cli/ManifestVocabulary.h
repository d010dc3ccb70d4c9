// The words of a manifest for those who write one: which elements and attributes there are, where they belong, what
// their values look like, and what is made of them. The names are the very constants that the reader compares with.
#pragma once

#include "host/StdString.h"

#include <span>
#include <string_view>
#include <vector>

namespace cli {

/// What a sensible value of an attribute looks like. The reader refuses none; another value just does nothing useful.
enum class ValueForm
{
    kText,          ///< anything
    kBundlePath,    ///< "./" and a path in the bundle folder
    kTrueFalse,     ///< "True" or "False", in any letter case
    kWholeNumber,   ///< "1"
    kDecimalNumber, ///< "26.0"
    kPythonVersion, ///< "python3.11"
};

struct AttributeWord
{
    const CStdStr<wchar_t>& name;
    ValueForm form;
    bool isRead;               ///< else it is part of the vocabulary, and passed over
    const char* documentation; ///< UTF-8, whole sentences
};

struct ElementWord
{
    const CStdStr<wchar_t>& name;
    const CStdStr<wchar_t>* parent; ///< the element that it belongs in; null for the outermost
    bool isRead;                    ///< else it is part of the vocabulary, and passed over
    std::span<const AttributeWord> attributes;
    const char* documentation; ///< UTF-8, whole sentences
};

/// Every element, an outer one before those inside it.
std::span<const ElementWord> manifestVocabulary();

/// The element of this name, letter for letter; null when there is none.
const ElementWord* findElement(std::wstring_view name);

/// The attribute of this name, letter for letter; null when `element` has none.
const AttributeWord* findAttribute(const ElementWord& element, std::wstring_view name);

/// The elements that belong directly in `element`, in their usual order.
std::vector<const ElementWord*> childrenOf(const ElementWord& element);

/// Whether nothing is seen inside `element` but what belongs there. Of the others, content is seen as if their tags
/// were not there.
bool keepsItsContent(const ElementWord& element);

/// What the reader takes an element called `name` for; null: it passes it over. `around` is the innermost of the
/// elements that stand around it, were seen themselves, and keep their content; null when there is none.
const ElementWord* elementSeen(const ElementWord* around, std::wstring_view name);

} // namespace cli
