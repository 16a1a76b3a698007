#pragma once

#include "framework/TesselODX220ModelExport.h"
#include "framework/VLayerFileType.h"
#include "framework/VOdxElement.h"
#include "comparams/VComparamSpecCollection.h"
#include "comparams/VComparamSubsetCollection.h"
#include "ecuconfig/VEcuConfigCollection.h"
#include "flash/VFlashCollection.h"
#include "functions/VFunctionDictionaryCollection.h"
#include "functions/VMultipleEcuJobSpecCollection.h"
#include "layers/VDiagLayerContainerCollection.h"
#include "references/VUnresolvedIdRef.h"
#include "vehicle/VVehicleInfoSpecCollection.h"

namespace NODX220 {

class VAbstractSnrefResolver;
class VIdRefMap;
class VOdxLinkSet;
class VTextIdElementSet;

// The root of one document: the eight lists of top-level documents and the document-wide
// registries. Made by VOdxFactory::MakeOdx and ended by VOdxFactory::DestroyOdx, which also
// frees the three sets (the destructor does not).
class TESSEL_ODX_API VOdx : public VOdxElement {
public:
    // The root has no parent; parent is ignored. MakeOdx passes the root's own tag.
    VOdx(VOdxElement* parent, VOdxTagEnum tag);
    // Copies a whole document: its categories are cloned into the copy, which gets sets of its
    // own. The copy's references are not resolved by this.
    VOdx(VOdx& source, VOdxElement& newParent);
    ~VOdx() override;

    virtual VOdx& Clone(VOdxElement& newParent);

    VOdx& GetRootElement() const override;
    // Takes the eight kinds of top-level document; their physical parent stays the root.
    bool HandleTag(VOdxTagEnum tag, VOdxElement& child) override;

    VComparamSpecCollection& ComparamSpecCollection() { return mComparamSpecCollection; }
    VComparamSubsetCollection& ComparamSubsetCollection() { return mComparamSubsetCollection; }
    VDiagLayerContainerCollection& DiagLayerContainerCollection() { return mDiagLayerContainerCollection; }
    VEcuConfigCollection& EcuConfigCollection() { return mEcuConfigCollection; }
    VFlashCollection& FlashCollection() { return mFlashCollection; }
    VFunctionDictionaryCollection& FunctionDictionaryCollection() { return mFunctionDictionaryCollection; }
    VMultipleEcuJobSpecCollection& MultipleEcuJobSpecCollection() { return mMultipleEcuJobSpecCollection; }
    VVehicleInfoSpecCollection& VehicleInfoSpecCollection() { return mVehicleInfoSpecCollection; }
    VUnresolvedIdRefCollection& UnresolvedIdRefCollection() { return mUnresolvedIdRefCollection; }

    // The resolver of short-name references; may be null.
    void Initialize(VAbstractSnrefResolver& resolver) { mpSnrefResolver = &resolver; }
    VAbstractSnrefResolver* GetSnrefResolver() const { return mpSnrefResolver; }

    // Store the set, dropping the one there without freeing it.
    void InitOdxLinkSet(VOdxLinkSet& linkSet) { mpOdxLinkSet = &linkSet; }
    void InitTextIdSet(VTextIdElementSet& textIdSet) { mpTextIdElementSet = &textIdSet; }
    VOdxLinkSet& GetOdxLinkSet() const;
    VTextIdElementSet& TextIdElements() const;
    VIdRefMap& GetIdRefMap() const { return *mpIdRefMap; }

    const char* GetModelVersion() const { return mModelVersion.GetBuffer(); }
    void SetModelVersion(const char* version) { mModelVersion = version; }
    const char* GetSchemaLocation() const { return mSchemaLocation.GetBuffer(); }
    void SetSchemaLocation(const char* location) { mSchemaLocation = location; }
    VLayerFileType GetLayerFileType() const { return mLayerFileType; }
    void SetLayerFileType(VLayerFileType type) { mLayerFileType = type; }

    // Set by VOdxFactory::DestroyOdx: from then on elements skip their deregistration.
    bool IsInDestruction() const { return mInDestruction; }

private:
    friend class VOdxFactory;

    bool mInDestruction = false;
    VComparamSpecCollection mComparamSpecCollection;
    VComparamSubsetCollection mComparamSubsetCollection;
    VDiagLayerContainerCollection mDiagLayerContainerCollection;
    VEcuConfigCollection mEcuConfigCollection;
    VFlashCollection mFlashCollection;
    VFunctionDictionaryCollection mFunctionDictionaryCollection;
    VMultipleEcuJobSpecCollection mMultipleEcuJobSpecCollection;
    VUnresolvedIdRefCollection mUnresolvedIdRefCollection;
    VVehicleInfoSpecCollection mVehicleInfoSpecCollection;
    VYAString mModelVersion;
    VAbstractSnrefResolver* mpSnrefResolver = nullptr;
    VIdRefMap* mpIdRefMap = nullptr;
    VOdxLinkSet* mpOdxLinkSet = nullptr;
    VTextIdElementSet* mpTextIdElementSet = nullptr;
    VLayerFileType mLayerFileType;
    VYAString mSchemaLocation;
};

} // namespace NODX220
