#include "framework/VNumberCollection.h"

#include <cstring>
#include <stdexcept>

#include "framework/VOdx.h"
#include "framework/internal/Failure.h"

namespace NODX220 {

template <class N>
VNumberCollection<N>::VNumberCollection(VOdxElement& parent, VOdx& root) : VOdxElement(parent)
{
    SetOdxTag(TAG_COLLECTION);
    SetRootElement(root);
}

template <class N>
VNumberCollection<N>::VNumberCollection(unsigned size, VOdxElement& parent) : VOdxElement(parent)
{
    SetOdxTag(TAG_COLLECTION);
    mValues.reserve(size);
}

template <class N>
VNumberCollection<N>::VNumberCollection(VNumberCollection& source, VOdxElement& newParent)
    : VOdxElement(source, newParent), mValues(source.mValues)
{
}

template <class N>
VNumberCollection<N>::~VNumberCollection() = default;

template <class N>
uint32_t VNumberCollection<N>::Size() const
{
    return static_cast<uint32_t>(mValues.size());
}

template <class N>
bool VNumberCollection<N>::IsEmpty() const
{
    return mValues.empty();
}

template <class N>
void VNumberCollection<N>::Clear()
{
    mValues.clear();
}

template <class N>
N VNumberCollection<N>::At(uint32_t index) const
{
    if (index >= mValues.size()) {
        throw std::out_of_range("invalid vector<T> subscript");
    }
    return mValues[index];
}

template <class N>
int32_t VNumberCollection<N>::Find(N value) const
{
    for (size_t i = 0; i < mValues.size(); ++i) {
        if (mValues[i] == value) {
            return static_cast<int32_t>(i);
        }
    }
    return -1;
}

template <class N>
void VNumberCollection<N>::Append(N value)
{
    mValues.push_back(value);
}

template <class N>
void VNumberCollection<N>::Erase(uint32_t index)
{
    if (index < mValues.size()) {
        mValues.erase(mValues.begin() + index);
    }
}

template <class N>
bool VNumberCollection<N>::HandleTag(VOdxTagEnum, VOdxElement&)
{
    return false;
}

template class VNumberCollection<uint32_t>;
template class VNumberCollection<double>;

VUIntCollection::VUIntCollection(VOdxElement& parent, VOdx& root)
    : VNumberCollection<uint32_t>(parent, root)
{
}

VUIntCollection::VUIntCollection(unsigned size, VOdxElement& parent)
    : VNumberCollection<uint32_t>(size, parent)
{
}

VUIntCollection::VUIntCollection(VUIntCollection& source, VOdxElement& newParent)
    : VNumberCollection<uint32_t>(source, newParent)
{
}

VUIntCollection::~VUIntCollection() = default;

VUIntCollection& VUIntCollection::Clone(VOdxElement& newParent)
{
    return *new VUIntCollection(*this, newParent);
}

bool VUIntCollection::IsAllValue() const
{
    return false;
}

bool VUIntCollection::IsDtcValues() const
{
    return true;
}

VAllValue* VUIntCollection::GetAsAllValue()
{
    Internal::LogWrongType(kLogGroupId, "VAllValue");
    return nullptr;
}

VUIntCollection* VUIntCollection::GetAsDtcValues()
{
    return this;
}

IAllValueDtcValuesChoice& VUIntCollection::CloneAllValueDtcValuesChoice(VOdxElement& newParent)
{
    return Clone(newParent);
}

bool VUIntCollection::HandleUInt(VOdxTagEnum tag, uint32_t value)
{
    if (tag != TAG_DTC_VALUE) {
        return false;
    }
    Append(value);
    return true;
}

VDoubleCollection::VDoubleCollection(VOdxElement& parent, VOdx& root)
    : VNumberCollection<double>(parent, root)
{
}

VDoubleCollection::VDoubleCollection(unsigned size, VOdxElement& parent)
    : VNumberCollection<double>(size, parent)
{
}

VDoubleCollection::VDoubleCollection(VDoubleCollection& source, VOdxElement& newParent)
    : VNumberCollection<double>(source, newParent)
{
}

VDoubleCollection::~VDoubleCollection() = default;

VDoubleCollection& VDoubleCollection::Clone(VOdxElement& newParent)
{
    return *new VDoubleCollection(*this, newParent);
}

bool VDoubleCollection::HandleDouble(VOdxTagEnum tag, double value)
{
    if (tag != TAG_V) {
        return false;
    }
    Append(value);
    return true;
}

VYATStringCollection::VYATStringCollection(VOdxElement& parent, VOdx& root) : VOdxElement(parent)
{
    SetOdxTag(TAG_UNKNOWN);
    SetRootElement(root);
}

VYATStringCollection::VYATStringCollection(VYATStringCollection& source, VOdxElement& newParent)
    : VOdxElement(source, newParent)
{
    for (const VYAString* text : source.mTexts) {
        mTexts.push_back(new VYAString(*text));
    }
}

VYATStringCollection::~VYATStringCollection()
{
    Clear();
}

VYATStringCollection& VYATStringCollection::Clone(VOdxElement& newParent)
{
    return *new VYATStringCollection(*this, newParent);
}

void VYATStringCollection::Append(const char* text)
{
    mTexts.push_back(new VYAString(text));
}

VYATStringCollection::Iterator VYATStringCollection::Find(const char* text)
{
    for (auto it = mTexts.begin(); it != mTexts.end(); ++it) {
        if (**it == text) {
            return Iterator(it);
        }
    }
    return End();
}

void VYATStringCollection::Remove(const char* text)
{
    Iterator position = Find(text);
    if (position != End()) {
        delete *position.Unwrap();
        mTexts.erase(position.Unwrap());
    }
}

void VYATStringCollection::Clear()
{
    for (VYAString* text : mTexts) {
        delete text;
    }
    mTexts.clear();
}

bool VYATStringCollection::HandleTag(VOdxTagEnum, VOdxElement&)
{
    return false;
}

bool VYATStringCollection::HandleTChar(VOdxTagEnum tag, const char* value)
{
    if (tag != TAG_CODED_VALUE && tag != TAG_ROLE) {
        return false;
    }
    Append(value);
    return true;
}

} // namespace NODX220
