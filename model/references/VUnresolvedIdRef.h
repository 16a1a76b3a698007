#pragma once

#include "TesselSharedUtil/VYAString.h"
#include "framework/TesselODX220ModelExport.h"
#include "framework/VOwningList.h"

namespace NODX220 {

using NTesselSharedUtil::VYAString;

class VOdxElement;

// A reader's note of an element waiting for an id: key and element, owning neither.
class TESSEL_ODX_API VUnresolvedIdRef {
public:
    VUnresolvedIdRef(const VYAString& key, VOdxElement& element);
    VUnresolvedIdRef(const VUnresolvedIdRef& other) = default;
    VUnresolvedIdRef& operator=(const VUnresolvedIdRef& other) = default;

    VYAString GetKey() const { return mKey; }
    VOdxElement& GetElement() const { return *mpElement; }
    VUnresolvedIdRef* Clone() const { return new VUnresolvedIdRef(*this); }
    // Destroys the element; the pointer stays as it is.
    void CleanUp();

private:
    VYAString mKey;
    VOdxElement* mpElement;
};

extern template class TESSEL_ODX_API VOwningList<VUnresolvedIdRef>;

// The pending notes of a document. Owns the records; the elements stay alone unless CleanUp
// destroys them.
class TESSEL_ODX_API VUnresolvedIdRefCollection : public VOwningList<VUnresolvedIdRef> {
public:
    VUnresolvedIdRefCollection() = default;
    // Copies share the elements: each record is cloned.
    VUnresolvedIdRefCollection(VUnresolvedIdRefCollection& other);
    ~VUnresolvedIdRefCollection() override;

    VUnresolvedIdRef& AppendNew(const VYAString& key, VOdxElement& element);
    // Destroys every record's element and leaves the records with stale pointers: Clear next.
    void CleanUp();
};

} // namespace NODX220
