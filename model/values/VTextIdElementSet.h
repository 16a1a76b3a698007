#pragma once

#include <cstdint>
#include <set>

#include "framework/TesselODX220ModelExport.h"
#include "framework/VExternalIterator.h"
#include "framework/VOdxElement.h"

namespace NODX220 {

// The text carriers of one document (for translation tools), ordered by address. Owns nothing
// but its nodes. The text id of an element is read and written by the element's tag.
class TESSEL_ODX_API VTextIdElementSet : public VOdxElement {
public:
    using Container = std::set<VOdxElement*>;
    using Iterator = VExternalIterator<Container::const_iterator, VOdxElement&>;

    VTextIdElementSet(VOdxElement& parent, VOdx& root);
    ~VTextIdElementSet() override;

    // A new set with the same members; the elements are not copied.
    VTextIdElementSet& Clone(VOdxElement& parent);

    void Append(VOdxElement& element) { mElements.insert(&element); }
    // Silently ignores an element that is not in the set.
    void Remove(VOdxElement& element) { mElements.erase(&element); }
    void Remove(Iterator position) { mElements.erase(position.Unwrap()); }
    Iterator Find(VOdxElement& element) const { return Iterator(mElements.find(&element)); }
    void Clear() { mElements.clear(); }
    uint32_t Count() const { return static_cast<uint32_t>(mElements.size()); }
    bool IsEmpty() const { return mElements.empty(); }
    Iterator Begin() const { return Iterator(mElements.begin()); }
    Iterator End() const { return Iterator(mElements.end()); }

    bool operator==(const VTextIdElementSet& other) const { return mElements == other.mElements; }
    bool operator!=(const VTextIdElementSet& other) const { return !(*this == other); }

    bool HandleTag(VOdxTagEnum tag, VOdxElement& child) override;

    // The text id of an element that can carry one, chosen by its tag; false (and out
    // untouched) when it cannot or has none.
    bool GetTextId(VOdxElement& element, VYAString& out) const;
    bool SetTextId(VOdxElement& element, VYAString& text) const;

protected:
    Container::const_iterator _Find(VOdxElement& element) const;
    void _Insert(VOdxElement& element) { mElements.insert(&element); }
    void _Remove(Container::const_iterator position) { mElements.erase(position); }

private:
    Container mElements;
};

} // namespace NODX220
