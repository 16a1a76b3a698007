#include "references/VReferencable.h"

#include "framework/VOdx.h"
#include "framework/VOdxCategory.h"
#include "layers/VDiagLayer.h"
#include "framework/internal/Failure.h"
#include "references/VIdRefMap.h"
#include "references/VOdxlink.h"
#include "references/internal/DocumentTags.h"

namespace NODX220 {

VReferencable::VReferencable() = default;

VReferencable::VReferencable(const VReferencable& other) : mpOdxElement(other.mpOdxElement)
{
    SetId(other.GetId());
}

VReferencable::~VReferencable()
{
    // While the whole document ends, the map and the links go in one sweep without this.
    if (mpOdxElement != nullptr && !_RootInDestruction()) {
        mpOdxElement->GetRootElement().GetIdRefMap().Remove(mId, *this);
        // The links forget their target but keep their text, so that they can resolve again.
        if (mpLinks != nullptr) {
            for (VOdxlink* link : *mpLinks) {
                link->ReferencableDestroyed();
            }
        }
    }
    delete mpLinks;
}

bool VReferencable::_RootInDestruction() const
{
    return mpOdxElement->GetRootElement().IsInDestruction();
}

void VReferencable::_ReleaseLinksOutside(const VOdx& root)
{
    if (mpLinks == nullptr) {
        return;
    }
    for (auto it = mpLinks->begin(); it != mpLinks->end();) {
        VOdxlink* link = *it;
        if (&link->GetRootElement() != &root) {
            link->ReferencableDestroyed();
            it = mpLinks->erase(it);
        } else {
            ++it;
        }
    }
}

VOdxElement& VReferencable::GetOdxElement() const
{
    if (mpOdxElement == nullptr) {
        Internal::FailAssertion(kLogGroupId, "mpOdxElement!=NULL");
    }
    return *mpOdxElement;
}

void VReferencable::SetId(const char* id)
{
    if (!mId.IsEmpty()) {
        GetOdxElement().GetRootElement().GetIdRefMap().Remove(mId, *this);
    }
    mId = id;
    SetShortNames();
    GetOdxElement().GetRootElement().GetIdRefMap().Insert(mId, *this);
    Notify();
}

VYAString VReferencable::GetLayerShortName() const
{
    return mpLayer != nullptr ? VYAString(mpLayer->GetShortName()) : VYAString();
}

VYAString VReferencable::GetCategoryShortName() const
{
    return mpCategory != nullptr ? VYAString(mpCategory->GetShortName()) : VYAString();
}

void VReferencable::Register(VOdxlink& link)
{
    if (mpLinks == nullptr) {
        mpLinks = new std::set<VOdxlink*>();
    }
    mpLinks->insert(&link);
}

void VReferencable::DeRegister(VOdxlink& link)
{
    if (mpLinks != nullptr) {
        mpLinks->erase(&link);
    }
}

void VReferencable::Notify()
{
    if (mpLinks == nullptr) {
        return;
    }
    for (VOdxlink* link : *mpLinks) {
        link->ReferencableHasChanged();
    }
}

void VReferencable::SetShortNames()
{
    VOdxElement* element = &GetOdxElement();
    while (element->GetOdxTag() != TAG_ODX) {
        const VOdxTagEnum tag = element->GetOdxTag();
        // An outer layer or category overwrites an inner one.
        if (Internal::IsLayerTag(tag)) {
            if (auto* layer = dynamic_cast<VDiagLayer*>(element)) {
                mpLayer = layer;
            }
        } else if (Internal::IsCategoryTag(tag)) {
            if (auto* category = dynamic_cast<VOdxCategory*>(element)) {
                mpCategory = category;
            }
        }
        element = &element->GetParent();
    }
}

} // namespace NODX220
