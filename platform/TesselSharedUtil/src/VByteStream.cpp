#include <TesselSharedUtil/VByteStream.h>

#include <cstring>
#include <functional>
#include <limits>
#include <stdexcept>
#include <utility>

namespace NTesselSharedUtil {

namespace {

// Leaves room for the trailing zero byte without overflowing `unsigned`.
constexpr unsigned kMaxSize = std::numeric_limits<unsigned>::max() - 1;

} // namespace

VByteStream::VByteStream() noexcept
    : mData(mInternal), mSize(0), mCapacity(kInternalCapacity), mInternal{}
{
}

VByteStream::VByteStream(unsigned size) : VByteStream()
{
    Resize(size);
}

VByteStream::VByteStream(const unsigned char* data, unsigned size) : VByteStream()
{
    Append(data, size);
}

VByteStream::VByteStream(const VByteStream& other) : VByteStream()
{
    *this = other;
}

VByteStream::VByteStream(VByteStream&& other) noexcept : VByteStream()
{
    *this = std::move(other);
}

VByteStream::~VByteStream()
{
    ReleaseHeap();
}

VByteStream& VByteStream::operator=(const VByteStream& other)
{
    if (this == &other) {
        return *this;
    }
    if (other.mSize <= kInternalCapacity) {
        ReleaseHeap();
        std::memcpy(mData, other.mData, other.mSize);
    } else if (other.mSize <= mCapacity) {
        std::memcpy(mData, other.mData, other.mSize);
    } else {
        unsigned char* fresh = new unsigned char[other.mSize + 1];
        std::memcpy(fresh, other.mData, other.mSize);
        ReleaseHeap();
        mData = fresh;
        mCapacity = other.mSize;
    }
    mSize = other.mSize;
    mData[mSize] = 0;
    return *this;
}

VByteStream& VByteStream::operator=(VByteStream&& other) noexcept
{
    if (this == &other) {
        return *this;
    }
    if (other.IsInternal()) {
        // Our capacity is at least the internal one, so this always fits.
        std::memcpy(mData, other.mData, other.mSize);
        mSize = other.mSize;
        mData[mSize] = 0;
    } else {
        ReleaseHeap();
        mData = other.mData;
        mSize = other.mSize;
        mCapacity = other.mCapacity;
        other.mData = other.mInternal;
        other.mCapacity = kInternalCapacity;
    }
    other.mSize = 0;
    other.mData[0] = 0;
    return *this;
}

void VByteStream::ReleaseHeap() noexcept
{
    if (!IsInternal()) {
        delete[] mData;
        mData = mInternal;
        mCapacity = kInternalCapacity;
    }
}

void VByteStream::Grow(unsigned minCapacity)
{
    if (minCapacity <= mCapacity) {
        return;
    }
    unsigned newCapacity = mCapacity <= kMaxSize / 2 ? mCapacity * 2 : kMaxSize;
    if (newCapacity < minCapacity) {
        newCapacity = minCapacity;
    }
    unsigned char* fresh = new unsigned char[newCapacity + 1];
    std::memcpy(fresh, mData, mSize + 1);
    ReleaseHeap();
    mData = fresh;
    mCapacity = newCapacity;
}

void VByteStream::Resize(unsigned size)
{
    if (size > kMaxSize) {
        throw std::length_error("VByteStream: size too large");
    }
    if (size > mSize) {
        Grow(size);
        std::memset(mData + mSize, 0, size - mSize);
    }
    mSize = size;
    mData[mSize] = 0;
}

void VByteStream::Append(const unsigned char* data, unsigned size)
{
    if (size == 0) {
        return;
    }
    if (!data) {
        throw std::invalid_argument("VByteStream::Append: null data");
    }
    if (size > kMaxSize - mSize) {
        throw std::length_error("VByteStream: size too large");
    }
    // The source may lie inside our own buffer, which Grow() would free.
    const std::less<const unsigned char*> before;
    const bool aliases = !before(data, mData) && before(data, mData + mCapacity + 1);
    const unsigned offset = aliases ? static_cast<unsigned>(data - mData) : 0;
    Grow(mSize + size);
    const unsigned char* source = aliases ? mData + offset : data;
    std::memmove(mData + mSize, source, size);
    mSize += size;
    mData[mSize] = 0;
}

void VByteStream::Append(unsigned char byte)
{
    if (mSize == mCapacity) {
        if (mSize == kMaxSize) {
            throw std::length_error("VByteStream: size too large");
        }
        Grow(mSize + 1);
    }
    mData[mSize++] = byte;
    mData[mSize] = 0;
}

void VByteStream::Clear() noexcept
{
    ReleaseHeap();
    mSize = 0;
    mData[0] = 0;
}

bool VByteStream::operator==(const VByteStream& other) const noexcept
{
    return mSize == other.mSize && std::memcmp(mData, other.mData, mSize) == 0;
}

} // namespace NTesselSharedUtil
