#pragma once

#include <list>

#include "framework/TesselODX220ModelExport.h"
#include "framework/VExternalIterator.h"

namespace NODX220 {

class VOdxlink;

// Every id link of one document, in order of construction; owns the list, not the links.
class TESSEL_ODX_API VOdxLinkSet {
public:
    using Container = std::list<VOdxlink*>;
    using Iterator = VExternalIterator<Container::iterator, VOdxlink&>;

    VOdxLinkSet() = default;
    VOdxLinkSet(const VOdxLinkSet&) = delete;
    VOdxLinkSet& operator=(const VOdxLinkSet&) = delete;
    virtual ~VOdxLinkSet();

    void Insert(VOdxlink& link) { mLinks.push_back(&link); }
    // Erases the first entry of this link; silent if there is none.
    void Remove(VOdxlink& link);
    void Clear() { mLinks.clear(); }
    uint32_t Count() const { return static_cast<uint32_t>(mLinks.size()); }
    Iterator Begin() { return Iterator(mLinks.begin()); }
    // Resolves every link, resolved ones included; unless silent, each link that fails is
    // logged at level 1. Failures stay on the list for a later run.
    virtual void ResolveReferences(bool silent);
    Iterator End() { return Iterator(mLinks.end()); }

private:
    Container mLinks;
};

} // namespace NODX220
