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
    : m_data(m_internal), m_size(0), m_capacity(kInternalCapacity), m_internal{}
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
    if (other.m_size <= kInternalCapacity) {
        ReleaseHeap();
        std::memcpy(m_data, other.m_data, other.m_size);
    } else if (other.m_size <= m_capacity) {
        std::memcpy(m_data, other.m_data, other.m_size);
    } else {
        unsigned char* fresh = new unsigned char[other.m_size + 1];
        std::memcpy(fresh, other.m_data, other.m_size);
        ReleaseHeap();
        m_data = fresh;
        m_capacity = other.m_size;
    }
    m_size = other.m_size;
    m_data[m_size] = 0;
    return *this;
}

VByteStream& VByteStream::operator=(VByteStream&& other) noexcept
{
    if (this == &other) {
        return *this;
    }
    if (other.IsInternal()) {
        // Our capacity is at least the internal one, so this always fits.
        std::memcpy(m_data, other.m_data, other.m_size);
        m_size = other.m_size;
        m_data[m_size] = 0;
    } else {
        ReleaseHeap();
        m_data = other.m_data;
        m_size = other.m_size;
        m_capacity = other.m_capacity;
        other.m_data = other.m_internal;
        other.m_capacity = kInternalCapacity;
    }
    other.m_size = 0;
    other.m_data[0] = 0;
    return *this;
}

void VByteStream::ReleaseHeap() noexcept
{
    if (!IsInternal()) {
        delete[] m_data;
        m_data = m_internal;
        m_capacity = kInternalCapacity;
    }
}

void VByteStream::Grow(unsigned minCapacity)
{
    if (minCapacity <= m_capacity) {
        return;
    }
    unsigned newCapacity = m_capacity <= kMaxSize / 2 ? m_capacity * 2 : kMaxSize;
    if (newCapacity < minCapacity) {
        newCapacity = minCapacity;
    }
    unsigned char* fresh = new unsigned char[newCapacity + 1];
    std::memcpy(fresh, m_data, m_size + 1);
    ReleaseHeap();
    m_data = fresh;
    m_capacity = newCapacity;
}

void VByteStream::Resize(unsigned size)
{
    if (size > kMaxSize) {
        throw std::length_error("VByteStream: size too large");
    }
    if (size > m_size) {
        Grow(size);
        std::memset(m_data + m_size, 0, size - m_size);
    }
    m_size = size;
    m_data[m_size] = 0;
}

void VByteStream::Append(const unsigned char* data, unsigned size)
{
    if (size == 0) {
        return;
    }
    if (!data) {
        throw std::invalid_argument("VByteStream::Append: null data");
    }
    if (size > kMaxSize - m_size) {
        throw std::length_error("VByteStream: size too large");
    }
    // The source may lie inside our own buffer, which Grow() would free.
    const std::less<const unsigned char*> before;
    const bool aliases = !before(data, m_data) && before(data, m_data + m_capacity + 1);
    const unsigned offset = aliases ? static_cast<unsigned>(data - m_data) : 0;
    Grow(m_size + size);
    const unsigned char* source = aliases ? m_data + offset : data;
    std::memmove(m_data + m_size, source, size);
    m_size += size;
    m_data[m_size] = 0;
}

void VByteStream::Append(unsigned char byte)
{
    if (m_size == m_capacity) {
        if (m_size == kMaxSize) {
            throw std::length_error("VByteStream: size too large");
        }
        Grow(m_size + 1);
    }
    m_data[m_size++] = byte;
    m_data[m_size] = 0;
}

void VByteStream::Clear() noexcept
{
    ReleaseHeap();
    m_size = 0;
    m_data[0] = 0;
}

bool VByteStream::operator==(const VByteStream& other) const noexcept
{
    return m_size == other.m_size && std::memcmp(m_data, other.m_data, m_size) == 0;
}

} // namespace NTesselSharedUtil
