#include "references/VUnresolvedIdRef.h"

#include "framework/VOdxElement.h"

namespace NODX220 {

template class VOwningList<VUnresolvedIdRef>;

VUnresolvedIdRef::VUnresolvedIdRef(const VYAString& key, VOdxElement& element)
    : mKey(key), mpElement(&element)
{
}

void VUnresolvedIdRef::CleanUp()
{
    if (mpElement != nullptr) {
        mpElement->Destroy();
    }
}

VUnresolvedIdRefCollection::VUnresolvedIdRefCollection(VUnresolvedIdRefCollection& other)
{
    for (auto it = other.Begin(); it != other.End(); ++it) {
        Append(*(*it).Clone());
    }
}

VUnresolvedIdRefCollection::~VUnresolvedIdRefCollection() = default;

VUnresolvedIdRef& VUnresolvedIdRefCollection::AppendNew(const VYAString& key, VOdxElement& element)
{
    auto* record = new VUnresolvedIdRef(key, element);
    Append(*record);
    return *record;
}

void VUnresolvedIdRefCollection::CleanUp()
{
    for (auto it = Begin(); it != End(); ++it) {
        (*it).CleanUp();
    }
}

} // namespace NODX220
