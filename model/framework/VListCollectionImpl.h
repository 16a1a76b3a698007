#pragma once

// Definitions of VListCollection that need the item class complete. Included by the generated
// sources only, which instantiate each collection's list once.

#include <type_traits>
#include <typeinfo>

#include "framework/VListCollection.h"

namespace NODX220 {

template <class T>
VListCollection<T>::~VListCollection()
{
    Clear();
}

template <class T>
void VListCollection<T>::Append(T& item)
{
    if (_SetsPhysicalParent()) {
        _AsElement(item).SetPhysicalParent(*this);
    }
    mItems.push_back(&item);
}

template <class T>
void VListCollection<T>::Clear()
{
    Container items;
    items.swap(mItems);
    for (T* item : items) {
        delete item;
    }
}

template <class T>
bool VListCollection<T>::HandleTag(VOdxTagEnum tag, VOdxElement& child)
{
    if (!_IsItemTag(tag)) {
        return false;
    }
    Append(dynamic_cast<T&>(child));
    return true;
}

template <class T>
void VListCollection<T>::_AppendCopy(T& copy)
{
    if (_SetsPhysicalParent()) {
        _AsElement(copy).SetPhysicalParent(*this);
    }
    mItems.push_back(&copy);
}

template <class T>
void VListCollection<T>::_Remove(typename Container::iterator position)
{
    T* item = *position;
    mItems.erase(position);
    delete item;
}

template <class T>
uint32_t VListCollection<T>::_PositionOf(const VOdxElement& origin, bool& found) const
{
    // Items count by their XML name, so that only those of origin's kind are numbered. An item
    // of origin's tag and class has its name without asking.
    const VYAString originTag = origin.GetXmlTag();
    const std::type_info& originClass = typeid(origin);
    uint32_t position = 1;
    found = false;
    for (T* item : mItems) {
        const VOdxElement& element = _AsElement(*item);
        const bool sameKind = element.GetOdxTag() == origin.GetOdxTag() && typeid(element) == originClass;
        if (sameKind || element.GetXmlTag() == originTag) {
            if (&element == &origin) {
                found = true;
                break;
            }
            ++position;
        }
    }
    return position;
}

template <class T>
VOdxElement& VListCollection<T>::_AsElement(T& item)
{
    if constexpr (std::is_base_of<VOdxElement, T>::value) {
        return static_cast<VOdxElement&>(item);
    } else {
        return dynamic_cast<VOdxElement&>(item);
    }
}

} // namespace NODX220
