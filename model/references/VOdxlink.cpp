#include "references/VOdxlink.h"

#include <string>

#include "framework/VOdx.h"
#include "framework/VQualified.h"
#include "framework/internal/Failure.h"
#include "references/VIdRefMap.h"
#include "references/VOdxLinkSet.h"
#include "references/VReferencable.h"
#include "references/internal/DocumentTags.h"

namespace NODX220 {

using NTesselSharedUtil::Logging::VLogLevel;

namespace {

VDoctype DoctypeOfCategory(VOdxTagEnum tag)
{
    switch (tag) {
    case TAG_COMPARAM_SPEC:
        return eDoctypeComparamSpec;
    case TAG_COMPARAM_SUBSET:
        return eDoctypeComparamSubset;
    case TAG_DIAG_LAYER_CONTAINER:
        return eDoctypeContainer;
    case TAG_ECU_CONFIG:
        return eDoctypeEcuConfig;
    case TAG_FLASH:
        return eDoctypeFlash;
    case TAG_FUNCTION_DICTIONARY:
        return eDoctypeFunctionDictionary;
    case TAG_MULTIPLE_ECU_JOB_SPEC:
        return eDoctypeMultipleEcuJobSpec;
    case TAG_VEHICLE_INFO_SPEC:
        return eDoctypeVehicleInfoSpec;
    default:
        return eDoctypeNone;
    }
}

template <class Predicate>
VOdxElement* EnclosingElement(VOdxElement& element, Predicate matches)
{
    for (VOdxElement* current = &element; current->GetOdxTag() != TAG_ODX;
         current = &current->GetParent()) {
        if (matches(current->GetOdxTag())) {
            return current;
        }
    }
    return nullptr;
}

} // namespace

ILink::~ILink() = default;

VOdxlink::VOdxlink(VOdxElement& parent, VOdxTagEnum tag) : VOdxElement(parent)
{
    SetOdxTag(tag);
    SetRootElement(parent.GetRootElement());
    _EnterLinkSet();
}

VOdxlink::VOdxlink(VOdxElement& parent) : VOdxElement(parent)
{
    SetRootElement(parent.GetRootElement());
    _EnterLinkSet();
}

VOdxlink::VOdxlink(VOdxlink& source, VOdxElement& parent)
    : VOdxElement(source, parent),
      ILink(source),
      mDoctype(source.mDoctype),
      mHasDoctype(source.mHasDoctype),
      mHasRevision(source.mHasRevision),
      mHasDocref(source.mHasDocref),
      mRevision(source.mRevision),
      mIdRef(source.mIdRef),
      mDocref(source.mDocref)
{
    if (source.mpReferencable != nullptr) {
        // A copy points where its source points, as seen from its own place.
        mpReferencable = source.mpReferencable;
        mpReferencable->Register(*this);
        UpdatePropertiesFromReferencable(*mpReferencable);
    }
    _EnterLinkSet();
}

VOdxlink::~VOdxlink()
{
    VOdx& root = GetRootElement();
    if (root.IsInDestruction()) {
        return;
    }
    root.GetOdxLinkSet().Remove(*this);
    if (mpReferencable != nullptr) {
        mpReferencable->DeRegister(*this);
    }
}

void VOdxlink::_ReleaseTargetOutside(const VOdx& root)
{
    if (mpReferencable != nullptr && &mpReferencable->GetOdxElement().GetRootElement() != &root) {
        mpReferencable->DeRegister(*this);
        mpReferencable = nullptr;
    }
}

void VOdxlink::_EnterLinkSet()
{
    GetRootElement().GetOdxLinkSet().Insert(*this);
}

VOdxlink& VOdxlink::Clone(VOdxElement& parent)
{
    return *new VOdxlink(*this, parent);
}

ILink& VOdxlink::CloneLink(VOdxElement& parent)
{
    return Clone(parent);
}

void VOdxlink::SetDocref(const char* docref)
{
    mDocref = docref;
    mHasDocref = true;
}

void VOdxlink::SetDoctype(VDoctype doctype)
{
    mDoctype = doctype;
    mHasDoctype = true;
}

void VOdxlink::SetRevision(const char* revision)
{
    mRevision = revision;
    mHasRevision = true;
}

void VOdxlink::SetReferencable(VReferencable& referencable)
{
    if (mpReferencable != nullptr) {
        mpReferencable->DeRegister(*this);
    }
    mpReferencable = &referencable;
    mpReferencable->Register(*this);
    UpdatePropertiesFromReferencable(referencable);
}

VReferencable& VOdxlink::GetReferencable()
{
    return *mpReferencable;
}

bool VOdxlink::HasReferencable() const
{
    return mpReferencable != nullptr;
}

void VOdxlink::ReferencableHasChanged()
{
    if (mpReferencable == nullptr) {
        Internal::FailAssertion(kLogGroupId, "mpReferencable");
    }
    UpdatePropertiesFromReferencable(*mpReferencable);
}

void VOdxlink::ReferencableDestroyed()
{
    mpReferencable = nullptr;
}

bool VOdxlink::Resolve()
{
    VIdRefMap& map = GetRootElement().GetIdRefMap();
    VReferencable* found = nullptr;
    if (mHasDocref) {
        found = map.Find(mIdRef, mDoctype, mDocref);
    } else {
        VOdxElement* category = VOdxLinkUtil::GetCategory(*this);
        auto* qualified = dynamic_cast<VQualified*>(category);
        if (qualified == nullptr) {
            return false;
        }
        found = map.Find(mIdRef, VYAString(qualified->GetShortName()));
    }
    if (found == nullptr) {
        return false;
    }
    SetReferencable(*found);
    return true;
}

void VOdxlink::UpdatePropertiesFromReferencable(VReferencable& referencable)
{
    Reset();
    mIdRef = referencable.GetId();
    VOdxElement& target = referencable.GetOdxElement();
    if (GetRootElement().GetLayerFileType() == 1) {
        VOdxElement* targetLayer = VOdxLinkUtil::GetLayer(target);
        if (targetLayer == nullptr || targetLayer == VOdxLinkUtil::GetLayer(*this)) {
            return;
        }
        mDocref = referencable.GetLayerShortName();
        mHasDocref = true;
        mDoctype = eDoctypeLayer;
        mHasDoctype = true;
        return;
    }
    VOdxElement* ownCategory = VOdxLinkUtil::GetCategory(*this);
    VOdxElement* targetCategory = VOdxLinkUtil::GetCategory(target);
    if (ownCategory == nullptr || targetCategory == nullptr || ownCategory == targetCategory) {
        return;
    }
    mDocref = referencable.GetCategoryShortName();
    mHasDocref = true;
    mDoctype = DoctypeOfCategory(targetCategory->GetOdxTag());
    mHasDoctype = true;
}

void VOdxlink::Reset()
{
    mIdRef.Clear();
    mDocref.Clear();
    mHasDocref = false;
    mHasDoctype = false;
    mDoctype = eDoctypeNone;
}

bool VOdxlink::IsOdxlink() const
{
    return true;
}

bool VOdxlink::IsSnref() const
{
    return false;
}

bool VOdxlink::IsSnpathref() const
{
    return false;
}

VOdxlink* VOdxlink::GetAsOdxlink()
{
    return this;
}

VSnref* VOdxlink::GetAsSnref()
{
    Internal::LogWrongType(kLogGroupId, "VLink");
    return nullptr;
}

VSnpathref* VOdxlink::GetAsSnpathref()
{
    Internal::LogWrongType(kLogGroupId, "VLink");
    return nullptr;
}

bool VOdxlink::HandleTag(VOdxTagEnum, VOdxElement&)
{
    return false;
}

VOdxLinkUtil::~VOdxLinkUtil() = default;

VOdxElement* VOdxLinkUtil::GetCategory(VOdxElement& element)
{
    return EnclosingElement(element, Internal::IsCategoryTag);
}

VOdxElement* VOdxLinkUtil::GetLayer(VOdxElement& element)
{
    return EnclosingElement(element, Internal::IsLayerTag);
}

void VOdxLinkSet::ResolveReferences(bool silent)
{
    // A link that fails is reported and left on the list for a later run; the walk goes on.
    for (VOdxlink* link : mLinks) {
        if (link->Resolve() || silent || !Internal::LogAdmits(VLogLevel::eWarning, kLogGroupId)) {
            continue;
        }
        std::string line("Unable to resolve Odxlink with '");
        line += link->GetDocref();
        line += "' and IdRef '";
        line += link->GetIdRef();
        line += "'";
        Internal::LogLine(VLogLevel::eWarning, kLogGroupId, line.c_str());
    }
}

} // namespace NODX220
