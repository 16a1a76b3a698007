#include "framework/VOdx.h"

#include "comparams/VComparamSpec.h"
#include "comparams/VComparamSubset.h"
#include "ecuconfig/VEcuConfig.h"
#include "flash/VFlash.h"
#include "framework/internal/Failure.h"
#include "functions/VFunctionDictionary.h"
#include "functions/VMultipleEcuJobSpec.h"
#include "layers/VDiagLayerContainer.h"
#include "references/VIdRefMap.h"
#include "references/VOdxLinkSet.h"
#include "values/VTextIdElementSet.h"
#include "vehicle/VVehicleInfoSpec.h"

namespace NODX220 {

namespace {

template <class Collection>
void CloneCategories(Collection& source, Collection& target, VOdx& newRoot)
{
    for (auto& category : source) {
        target.Append(category.Clone(newRoot));
    }
}

} // namespace

VOdx::VOdx(VOdxElement*, VOdxTagEnum tag)
    : VOdxElement(static_cast<VOdxElement*>(nullptr)),
      mComparamSpecCollection(*this, *this),
      mComparamSubsetCollection(*this, *this),
      mDiagLayerContainerCollection(*this, *this),
      mEcuConfigCollection(*this, *this),
      mFlashCollection(*this, *this),
      mFunctionDictionaryCollection(*this, *this),
      mMultipleEcuJobSpecCollection(*this, *this),
      mUnresolvedIdRefCollection(),
      mVehicleInfoSpecCollection(*this, *this),
      mModelVersion("2.2.0"),
      mpIdRefMap(new VIdRefMap()),
      mLayerFileType(static_cast<VLayerFileType>(0)),
      mSchemaLocation("odx.xsd")
{
    SetOdxTag(tag);
    SetRootElement(*this);
}

// The collections of ECU-CONFIG and FUNCTION-DICTIONARY take newParent's document as their
// root, all others the copy; kept as it always was.
VOdx::VOdx(VOdx& source, VOdxElement& newParent)
    : VOdxElement(source, newParent),
      mComparamSpecCollection(*this, *this),
      mComparamSubsetCollection(*this, *this),
      mDiagLayerContainerCollection(*this, *this),
      mEcuConfigCollection(*this, newParent.GetRootElement()),
      mFlashCollection(*this, *this),
      mFunctionDictionaryCollection(*this, newParent.GetRootElement()),
      mMultipleEcuJobSpecCollection(*this, *this),
      mUnresolvedIdRefCollection(source.mUnresolvedIdRefCollection),
      mVehicleInfoSpecCollection(*this, *this),
      mModelVersion(source.mModelVersion),
      mpSnrefResolver(source.mpSnrefResolver),
      mpIdRefMap(new VIdRefMap()),
      mpOdxLinkSet(new VOdxLinkSet()),
      mLayerFileType(static_cast<VLayerFileType>(0)),
      mSchemaLocation()
{
    mpTextIdElementSet = new VTextIdElementSet(*this, *this);
    CloneCategories(source.mDiagLayerContainerCollection, mDiagLayerContainerCollection, *this);
    CloneCategories(source.mComparamSpecCollection, mComparamSpecCollection, *this);
    CloneCategories(source.mVehicleInfoSpecCollection, mVehicleInfoSpecCollection, *this);
    CloneCategories(source.mFlashCollection, mFlashCollection, *this);
    CloneCategories(source.mEcuConfigCollection, mEcuConfigCollection, *this);
    CloneCategories(source.mMultipleEcuJobSpecCollection, mMultipleEcuJobSpecCollection, *this);
    CloneCategories(source.mComparamSubsetCollection, mComparamSubsetCollection, *this);
    CloneCategories(source.mFunctionDictionaryCollection, mFunctionDictionaryCollection, *this);
}

VOdx::~VOdx() = default;

VOdx& VOdx::Clone(VOdxElement& newParent)
{
    return *new VOdx(*this, newParent);
}

VOdx& VOdx::GetRootElement() const
{
    return const_cast<VOdx&>(*this);
}

bool VOdx::HandleTag(VOdxTagEnum tag, VOdxElement& child)
{
    switch (tag) {
    case TAG_COMPARAM_SPEC:
        if (auto* spec = dynamic_cast<VComparamSpec*>(&child)) {
            mComparamSpecCollection.Append(*spec);
            return true;
        }
        return false;
    case TAG_COMPARAM_SUBSET:
        if (auto* subset = dynamic_cast<VComparamSubset*>(&child)) {
            mComparamSubsetCollection.Append(*subset);
            return true;
        }
        return false;
    case TAG_DIAG_LAYER_CONTAINER:
        if (auto* container = dynamic_cast<VDiagLayerContainer*>(&child)) {
            mDiagLayerContainerCollection.Append(*container);
            return true;
        }
        return false;
    case TAG_ECU_CONFIG:
        if (auto* config = dynamic_cast<VEcuConfig*>(&child)) {
            mEcuConfigCollection.Append(*config);
            return true;
        }
        return false;
    case TAG_FLASH:
        if (auto* flash = dynamic_cast<VFlash*>(&child)) {
            mFlashCollection.Append(*flash);
            return true;
        }
        return false;
    case TAG_FUNCTION_DICTIONARY:
        if (auto* dictionary = dynamic_cast<VFunctionDictionary*>(&child)) {
            mFunctionDictionaryCollection.Append(*dictionary);
            return true;
        }
        return false;
    case TAG_MULTIPLE_ECU_JOB_SPEC:
        if (auto* jobSpec = dynamic_cast<VMultipleEcuJobSpec*>(&child)) {
            mMultipleEcuJobSpecCollection.Append(*jobSpec);
            return true;
        }
        return false;
    case TAG_VEHICLE_INFO_SPEC:
        if (auto* infoSpec = dynamic_cast<VVehicleInfoSpec*>(&child)) {
            mVehicleInfoSpecCollection.Append(*infoSpec);
            return true;
        }
        return false;
    default:
        return false;
    }
}

VOdxLinkSet& VOdx::GetOdxLinkSet() const
{
    if (mpOdxLinkSet == nullptr) {
        Internal::FailAssertion(kLogGroupId, "mpOdxLinkSet!=NULL");
    }
    return *mpOdxLinkSet;
}

VTextIdElementSet& VOdx::TextIdElements() const
{
    if (mpTextIdElementSet == nullptr) {
        Internal::FailAssertion(kLogGroupId, "mpTextIdElementSet!=NULL");
    }
    return *mpTextIdElementSet;
}

} // namespace NODX220
