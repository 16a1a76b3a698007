#pragma once

#include <cstdint>
#include <list>
#include <vector>

#include "framework/TesselODX220ModelExport.h"
#include "framework/VExternalIterator.h"
#include "framework/VOdxElement.h"
#include "values/IAllValueDtcValuesChoice.h"

namespace NODX220 {

// An element holding a growing array of numbers rather than a list of elements.
template <class N>
class TESSEL_ODX_API VNumberCollection : public VOdxElement {
public:
    VNumberCollection(VOdxElement& parent, VOdx& root);
    // Empty with room for size values; the root stays unset.
    VNumberCollection(unsigned size, VOdxElement& parent);
    ~VNumberCollection() override;

    virtual uint32_t Size() const;
    virtual bool IsEmpty() const;
    virtual void Clear();
    // Raises std::out_of_range for an index of Size() or above.
    virtual N At(uint32_t index) const;
    // The index of the first equal value, -1 if there is none.
    virtual int32_t Find(N value) const;
    virtual void Append(N value);
    // Moves the tail down; an index of Size() or above does nothing.
    virtual void Erase(uint32_t index);

    bool HandleTag(VOdxTagEnum tag, VOdxElement& child) override;

protected:
    VNumberCollection(VNumberCollection& source, VOdxElement& newParent);

private:
    std::vector<N> mValues;
};

extern template class TESSEL_ODX_API VNumberCollection<uint32_t>;
extern template class TESSEL_ODX_API VNumberCollection<double>;

// The unsigned numbers of a list such as DTC-VALUES. As the trouble codes of environment data it
// is the alternative of VAllValue.
class TESSEL_ODX_API VUIntCollection : public VNumberCollection<uint32_t>, public IAllValueDtcValuesChoice {
public:
    VUIntCollection(VOdxElement& parent, VOdx& root);
    VUIntCollection(unsigned size, VOdxElement& parent);
    VUIntCollection(VUIntCollection& source, VOdxElement& newParent);
    ~VUIntCollection() override;

    virtual VUIntCollection& Clone(VOdxElement& newParent);

    bool IsAllValue() const override;
    bool IsDtcValues() const override;
    VAllValue* GetAsAllValue() override;
    VUIntCollection* GetAsDtcValues() override;
    IAllValueDtcValuesChoice& CloneAllValueDtcValuesChoice(VOdxElement& newParent) override;
    // Takes DTC-VALUE.
    bool HandleUInt(VOdxTagEnum tag, uint32_t value) override;
};

// The floating-point numbers of a list of V elements.
class TESSEL_ODX_API VDoubleCollection : public VNumberCollection<double> {
public:
    VDoubleCollection(VOdxElement& parent, VOdx& root);
    VDoubleCollection(unsigned size, VOdxElement& parent);
    VDoubleCollection(VDoubleCollection& source, VOdxElement& newParent);
    ~VDoubleCollection() override;

    virtual VDoubleCollection& Clone(VOdxElement& newParent);
    // Takes V.
    bool HandleDouble(VOdxTagEnum tag, double value) override;
};

// A list of owned texts. Unlike element lists, removing by value destroys the text.
class TESSEL_ODX_API VYATStringCollection : public VOdxElement {
public:
    using Container = std::list<VYAString*>;
    using Iterator = VExternalIterator<Container::iterator, VYAString&>;

    VYATStringCollection(VOdxElement& parent, VOdx& root);
    VYATStringCollection(VYATStringCollection& source, VOdxElement& newParent);
    ~VYATStringCollection() override;

    VYATStringCollection& Clone(VOdxElement& newParent);

    void Append(const char* text);
    Iterator Begin() { return Iterator(mTexts.begin()); }
    Iterator End() { return Iterator(mTexts.end()); }
    Iterator begin() { return Begin(); }
    Iterator end() { return End(); }
    // The first text equal to this one.
    Iterator Find(const char* text);
    // Removes and destroys the first equal text; nothing if there is none.
    void Remove(const char* text);
    void Clear();
    uint32_t Count() const { return static_cast<uint32_t>(mTexts.size()); }
    bool IsEmpty() const { return mTexts.empty(); }

    bool operator==(const VYATStringCollection& other) const { return mTexts == other.mTexts; }
    bool operator!=(const VYATStringCollection& other) const { return !(*this == other); }

    bool HandleTag(VOdxTagEnum tag, VOdxElement& child) override;
    // Takes CODED-VALUE and ROLE.
    bool HandleTChar(VOdxTagEnum tag, const char* value) override;

private:
    Container mTexts;
};

} // namespace NODX220
