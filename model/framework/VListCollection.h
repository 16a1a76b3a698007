#pragma once

#include <cstdint>
#include <list>

#include "framework/TesselODX220ModelExport.h"
#include "framework/VExternalIterator.h"
#include "framework/VOdxElement.h"

namespace NODX220 {

// How a collection names its items in element paths.
enum VXPathForm {
    // [SHORT-NAME='...'] for qualified items when asked for short names, else the position.
    eXPathFormShortName,
    // Always the position.
    eXPathFormPosition,
    // The short name only for an item found in the list; positions otherwise.
    eXPathFormComparam
};

// The part of every list collection that does not depend on the item class: its element
// identity and its steps in element paths.
class TESSEL_ODX_API VListCollectionBase : public VOdxElement {
public:
    VListCollectionBase(VOdxElement& parent, VOdx& root);
    VListCollectionBase(VListCollectionBase& source, VOdxElement& newParent);
    ~VListCollectionBase() override;

    // The path of the collection itself ends in its plural name.
    VYAString GetXPATH(VXPathType type) const override;
    VYAString GetXPATHInternal(const VOdxElement& origin, VYAString& predicate,
                               VXPathType type) const override;
    // The step name when the path is climbed from the item: its tag and an "S".
    virtual VYAString GetNameForXPATH(const VOdxElement& item) const;

protected:
    virtual bool _IsItemTag(VOdxTagEnum tag) const = 0;
    virtual const char* _GetCollectionName() const = 0;
    virtual VXPathForm _GetXPathForm() const;
    virtual bool _SetsPhysicalParent() const;
    // The 1-based position of origin among the items of the same tag (or the count of such
    // items when origin is not in the list), and whether origin was met.
    virtual uint32_t _PositionOf(const VOdxElement& origin, bool& found) const = 0;
};

// A collection that owns a list of items of class (or interface) T, in insertion order.
// Remove by item detaches; Remove by iterator destroys. The operations that need the item class
// complete are defined in VListCollectionImpl.h and instantiated once, inside the library.
template <class T>
class TESSEL_ODX_API VListCollection : public VListCollectionBase {
public:
    using Container = std::list<T*>;
    using Iterator = VExternalIterator<typename Container::iterator, T&>;

    VListCollection(VOdxElement& parent, VOdx& root) : VListCollectionBase(parent, root) {}
    ~VListCollection() override;

    // Appends the item; most collections become its physical parent.
    void Append(T& item);

    Iterator Begin() { return Iterator(mItems.begin()); }
    Iterator End() { return Iterator(mItems.end()); }
    Iterator begin() { return Begin(); }
    Iterator end() { return End(); }
    Iterator Find(T& item) { return Iterator(_Find(item)); }

    // Takes the first entry of this item out of the list without destroying it.
    void Remove(T& item)
    {
        auto position = _Find(item);
        if (position != mItems.end()) {
            mItems.erase(position);
        }
    }

    // Unlinks the item at the position and destroys it.
    void Remove(Iterator position) { _Remove(position.Unwrap()); }

    // Destroys the items in list order, then empties the list.
    void Clear();

    uint32_t Count() const { return static_cast<uint32_t>(mItems.size()); }
    bool IsEmpty() const { return mItems.empty(); }

    // Same items at the same addresses in the same order; no deep comparison.
    bool operator==(const VListCollection& other) const { return mItems == other.mItems; }
    bool operator!=(const VListCollection& other) const { return !(*this == other); }

    // A wrong tag is refused; a child of the wrong class raises std::bad_cast.
    bool HandleTag(VOdxTagEnum tag, VOdxElement& child) override;

protected:
    VListCollection(VListCollection& source, VOdxElement& newParent)
        : VListCollectionBase(source, newParent)
    {
    }

    // Adds a copy made for this collection.
    void _AppendCopy(T& copy);

    typename Container::iterator _Find(T& item)
    {
        for (auto it = mItems.begin(); it != mItems.end(); ++it) {
            if (*it == &item) {
                return it;
            }
        }
        return mItems.end();
    }

    void _Insert(typename Container::iterator position, T& item) { mItems.insert(position, &item); }
    void _Remove(typename Container::iterator position);
    uint32_t _PositionOf(const VOdxElement& origin, bool& found) const override;

private:
    static VOdxElement& _AsElement(T& item);

    Container mItems;
};

} // namespace NODX220
