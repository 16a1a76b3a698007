#pragma once

#include <set>

#include "TesselSharedUtil/VYAString.h"
#include "framework/TesselODX220ModelExport.h"

namespace NODX220 {

using NTesselSharedUtil::VYAString;

class VDiagLayer;
class VOdx;
class VOdxCategory;
class VOdxElement;
class VOdxlink;

// Mix-in of every element with an ID: registers it in its document's id map, knows its
// enclosing layer and document, and keeps the links that are resolved to it. An element class
// derives from its element base first and from this second.
class TESSEL_ODX_API VReferencable {
public:
    VReferencable();
    // Takes the source's element and registers it under the source's id; the links stay.
    VReferencable(const VReferencable& other);
    VReferencable& operator=(const VReferencable&) = delete;
    virtual ~VReferencable();

    void SetOdxElement(VOdxElement& element) { mpOdxElement = &element; }
    VOdxElement& GetOdxElement() const;

    // Moves the entry in the id map to the new id and tells the resolved links.
    void SetId(const char* id);
    const char* GetId() const { return mId.GetBuffer(); }

    VDiagLayer* GetLayer() const { return mpLayer; }
    VOdxCategory* GetCategory() const { return mpCategory; }
    VYAString GetLayerShortName() const;
    VYAString GetCategoryShortName() const;

    bool IsReferencedById() const { return mpLinks != nullptr && !mpLinks->empty(); }
    virtual void Register(VOdxlink& link);
    virtual void DeRegister(VOdxlink& link);
    // Tells every resolved link that this target changed, in pointer order.
    virtual void Notify();

protected:
    // Finds the enclosing layer and document by the logical parents.
    void SetShortNames();

private:
    friend class VOdxFactory;

    bool _RootInDestruction() const;
    // Before its document ends: links of other documents forget this target.
    void _ReleaseLinksOutside(const VOdx& root);

    VYAString mId;
    VDiagLayer* mpLayer = nullptr;
    VOdxCategory* mpCategory = nullptr;
    VOdxElement* mpOdxElement = nullptr;
    // The links resolved to this element; made when the first one registers.
    std::set<VOdxlink*>* mpLinks = nullptr;
};

} // namespace NODX220
