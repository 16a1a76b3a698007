#pragma once

#include <list>
#include <map>

#include "TesselSharedUtil/VYAString.h"
#include "framework/TesselODX220ModelExport.h"
#include "framework/VExternalIterator.h"
#include "references/VDoctype.h"

namespace NODX220 {

using NTesselSharedUtil::VYAString;

class VReferencable;

// A plain list of referencables; owns the list, not the referencables.
class TESSEL_ODX_API VReferenceableSet {
public:
    using Container = std::list<VReferencable*>;
    using Iterator = VExternalIterator<Container::iterator, VReferencable&>;

    VReferenceableSet() = default;
    virtual ~VReferenceableSet();

    void Insert(VReferencable& referencable) { mItems.push_back(&referencable); }
    void Remove(VReferencable& referencable);
    Iterator Begin() { return Iterator(mItems.begin()); }
    Iterator End() { return Iterator(mItems.end()); }
    uint32_t Count() const { return static_cast<uint32_t>(mItems.size()); }

private:
    Container mItems;
};

// The id registry of one document: id text to referencable, several per id (ids are unique per
// document, not per process). Owns its entries, not the referencables.
class TESSEL_ODX_API VIdRefMap {
public:
    VIdRefMap() = default;
    VIdRefMap(const VIdRefMap&) = delete;
    VIdRefMap& operator=(const VIdRefMap&) = delete;
    virtual ~VIdRefMap();

    void Insert(VYAString id, VReferencable& referencable);
    // Removes the first entry of the id that holds this referencable; silent if none.
    void Remove(VYAString id, VReferencable& referencable);
    // Prefers the candidate in the named document; falls back to the oldest one of the id.
    VReferencable* Find(VYAString id, VYAString docref) const;
    // The candidate known under docref as a member of a document of that kind; no fallback.
    VReferencable* Find(VYAString id, VDoctype doctype, VYAString docref) const;
    void Clear() { mEntries.clear(); }
    uint32_t Count() const { return static_cast<uint32_t>(mEntries.size()); }
    // A new set with every entry's referencable in map order; the caller deletes it.
    VReferenceableSet* GetAllReferencables() const;

protected:
    VYAString GetContainerShortNameForReferencable(VReferencable& referencable,
                                                   VDoctype doctype) const;

private:
    friend class VOdxFactory;

    std::multimap<VYAString, VReferencable*> mEntries;
};

} // namespace NODX220
