#include "references/VIdRefMap.h"

#include "framework/VOdx.h"
#include "framework/VQualified.h"
#include "references/VReferencable.h"
#include "references/internal/DocumentTags.h"

namespace NODX220 {

namespace {

// The tag of the document root that a doctype stands for; TAG_UNSET where there is none.
VOdxTagEnum DocumentTagOf(VDoctype doctype)
{
    switch (doctype) {
    case eDoctypeFlash:
        return TAG_FLASH;
    case eDoctypeContainer:
        return TAG_DIAG_LAYER_CONTAINER;
    case eDoctypeMultipleEcuJobSpec:
        return TAG_MULTIPLE_ECU_JOB_SPEC;
    case eDoctypeComparamSpec:
        return TAG_COMPARAM_SPEC;
    case eDoctypeVehicleInfoSpec:
        return TAG_VEHICLE_INFO_SPEC;
    case eDoctypeComparamSubset:
        return TAG_COMPARAM_SUBSET;
    case eDoctypeEcuConfig:
        return TAG_ECU_CONFIG;
    case eDoctypeFunctionDictionary:
        return TAG_FUNCTION_DICTIONARY;
    default:
        return TAG_UNSET;
    }
}

VYAString ShortNameOf(VOdxElement& element)
{
    auto* qualified = dynamic_cast<VQualified*>(&element);
    return qualified != nullptr ? VYAString(qualified->GetShortName()) : VYAString();
}

} // namespace

VReferenceableSet::~VReferenceableSet() = default;

void VReferenceableSet::Remove(VReferencable& referencable)
{
    for (auto it = mItems.begin(); it != mItems.end(); ++it) {
        if (*it == &referencable) {
            mItems.erase(it);
            return;
        }
    }
}

VIdRefMap::~VIdRefMap() = default;

void VIdRefMap::Insert(VYAString id, VReferencable& referencable)
{
    // Equal keys keep their order of insertion.
    mEntries.emplace(std::move(id), &referencable);
}

void VIdRefMap::Remove(VYAString id, VReferencable& referencable)
{
    auto range = mEntries.equal_range(id);
    for (auto it = range.first; it != range.second; ++it) {
        if (it->second == &referencable) {
            mEntries.erase(it);
            return;
        }
    }
}

VReferencable* VIdRefMap::Find(VYAString id, VYAString docref) const
{
    auto range = mEntries.equal_range(id);
    if (range.first == range.second) {
        return nullptr;
    }
    for (auto it = range.first; it != range.second; ++it) {
        if (it->second->GetCategoryShortName() == docref) {
            return it->second;
        }
    }
    // A reference naming a wrong or missing document still resolves while the id exists.
    return range.first->second;
}

VReferencable* VIdRefMap::Find(VYAString id, VDoctype doctype, VYAString docref) const
{
    auto range = mEntries.equal_range(id);
    for (auto it = range.first; it != range.second; ++it) {
        if (GetContainerShortNameForReferencable(*it->second, doctype) == docref) {
            return it->second;
        }
    }
    return nullptr;
}

VReferenceableSet* VIdRefMap::GetAllReferencables() const
{
    auto* all = new VReferenceableSet();
    for (const auto& entry : mEntries) {
        all->Insert(*entry.second);
    }
    return all;
}

VYAString VIdRefMap::GetContainerShortNameForReferencable(VReferencable& referencable,
                                                          VDoctype doctype) const
{
    VOdxElement& element = referencable.GetOdxElement();
    if (element.GetOdxTag() == TAG_ODX) {
        return VYAString();
    }
    const bool isDocumentRoot = element.GetParent().GetOdxTag() == TAG_ODX;
    if (doctype == eDoctypeLayer) {
        return referencable.GetLayerShortName();
    }
    if (doctype == eDoctypeContainer) {
        return referencable.GetCategoryShortName();
    }
    if (isDocumentRoot) {
        return ShortNameOf(element);
    }
    const VOdxTagEnum wanted = DocumentTagOf(doctype);
    VOdxElement* current = &element;
    while (current->GetParent().GetOdxTag() != TAG_ODX) {
        current = &current->GetParent();
        if (wanted != TAG_UNSET && current->GetOdxTag() == wanted) {
            return ShortNameOf(*current);
        }
    }
    return VYAString();
}

} // namespace NODX220
