#pragma once

// Small helpers the generated tables call.

#include <string>
#include <type_traits>

#include "Tables.h"

namespace NODX220Xml {
namespace Internal {

// An item of a collection as an element, whether the collection holds classes or interfaces.
template <class T>
VOdxElement& AsElement(T& item)
{
    if constexpr (std::is_base_of<VOdxElement, T>::value) {
        return static_cast<VOdxElement&>(item);
    } else {
        return dynamic_cast<VOdxElement&>(item);
    }
}

// The literal of an enumeration value; the empty text for a number without one.
const char* EnumText(const EnumLiterals& literals, int value);
// The number of a literal; false when the literal is unknown.
bool EnumValue(const EnumLiterals& literals, const char* text, int& value);
// Takes a top-level document out of the root and destroys it.
void RemoveCategory(NODX220::VOdx& root, VOdxElement& category);
// The shortest text that reads back as the same double.
std::string FormatDouble(double value);

} // namespace Internal
} // namespace NODX220Xml
