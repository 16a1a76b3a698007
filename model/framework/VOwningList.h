#pragma once

#include <cstdint>
#include <list>

#include "framework/TesselODX220ModelExport.h"
#include "framework/VExternalIterator.h"

namespace NODX220 {

// A plain list that owns its items and is no element: no parent, no tag, no HandleTag.
// Remove by item detaches (the caller owns the item afterwards); Remove by iterator destroys.
template <class T>
class TESSEL_ODX_API VOwningList {
public:
    using Container = std::list<T*>;
    using Iterator = VExternalIterator<typename Container::iterator, T&>;

    VOwningList() = default;
    VOwningList(const VOwningList&) = delete;
    VOwningList& operator=(const VOwningList&) = delete;
    virtual ~VOwningList() { Clear(); }

    void Append(T& item) { mItems.push_back(&item); }

    Iterator Begin() { return Iterator(mItems.begin()); }
    Iterator End() { return Iterator(mItems.end()); }
    Iterator Find(T& item) { return Iterator(_Find(item)); }

    void Remove(T& item)
    {
        auto position = _Find(item);
        if (position != mItems.end()) {
            mItems.erase(position);
        }
    }

    void Remove(Iterator position) { _Remove(position.Unwrap()); }

    // Destroys the items in list order, then empties the list.
    void Clear()
    {
        Container items;
        items.swap(mItems);
        for (T* item : items) {
            delete item;
        }
    }

    uint32_t Count() const { return static_cast<uint32_t>(mItems.size()); }
    bool IsEmpty() const { return mItems.empty(); }

    bool operator==(const VOwningList& other) const { return mItems == other.mItems; }
    bool operator!=(const VOwningList& other) const { return !(*this == other); }

protected:
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

    void _Remove(typename Container::iterator position)
    {
        T* item = *position;
        mItems.erase(position);
        delete item;
    }

    Container& _Items() { return mItems; }

private:
    Container mItems;
};

} // namespace NODX220
