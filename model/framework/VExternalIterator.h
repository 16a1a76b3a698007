#pragma once

#include <iterator>

namespace NODX220 {

// Iterator handed out by collections: wraps the position of the inner container and
// delivers the item by reference.
template <class I, class R>
class VExternalIterator {
public:
    using iterator_category = std::forward_iterator_tag;
    using reference = R;

    VExternalIterator() : mIterator() {}
    explicit VExternalIterator(const I& iterator) : mIterator(iterator) {}
    VExternalIterator(const VExternalIterator&) = default;
    VExternalIterator& operator=(const VExternalIterator&) = default;
    virtual ~VExternalIterator() = default;

    bool operator==(const VExternalIterator& other) const { return mIterator == other.mIterator; }
    bool operator!=(const VExternalIterator& other) const { return mIterator != other.mIterator; }

    VExternalIterator& operator++()
    {
        ++mIterator;
        return *this;
    }

    R operator*() const { return **mIterator; }

    I& Unwrap() { return mIterator; }
    const I& Unwrap() const { return mIterator; }

private:
    I mIterator;
};

} // namespace NODX220
