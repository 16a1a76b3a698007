#ifndef TESSEL_SHAREDUTIL_VBYTESTREAM_H
#define TESSEL_SHAREDUTIL_VBYTESTREAM_H

#include <TesselSharedUtil/TesselSharedUtilExport.h>

namespace NTesselSharedUtil {

// How a byte stream is rendered as hex text, shown for the bytes 0A 1F.
enum VOutputFormat : int {
    eHexPrefixEach = 0, // "0x0A 0x1F"
    eHexPrefixOnce = 1, // "0x0A1F"
    eHexSpaced = 2,     // "0A 1F"
    eHexPlain = 3       // "0A1F"
};

// Growable byte buffer with a 32-byte area inside the object: streams of up to
// 31 bytes never touch the heap. One byte past the end is always kept and set to
// zero, so GetData() is also usable as a NUL-terminated buffer.
class TESSEL_SHAREDUTIL_API VByteStream {
public:
    static constexpr unsigned kInternalCapacity = 31;

    VByteStream() noexcept;
    explicit VByteStream(unsigned size);
    // data may be null only when size is 0 (std::invalid_argument otherwise).
    VByteStream(const unsigned char* data, unsigned size);
    VByteStream(const VByteStream& other);
    VByteStream(VByteStream&& other) noexcept;
    virtual ~VByteStream();

    VByteStream& operator=(const VByteStream& other);
    VByteStream& operator=(VByteStream&& other) noexcept;

    unsigned char* GetData() noexcept { return mData; }
    const unsigned char* GetData() const noexcept { return mData; }
    unsigned GetSize() const noexcept { return mSize; }
    unsigned GetCapacity() const noexcept { return mCapacity; }
    bool IsEmpty() const noexcept { return mSize == 0; }

    // Growing fills the new bytes with zero; shrinking keeps the allocation.
    void Resize(unsigned size);
    void Append(const unsigned char* data, unsigned size);
    void Append(unsigned char byte);
    // Empties the stream and gives any heap allocation back.
    void Clear() noexcept;

    bool operator==(const VByteStream& other) const noexcept;
    bool operator!=(const VByteStream& other) const noexcept { return !(*this == other); }

private:
    bool IsInternal() const noexcept { return mData == mInternal; }
    void ReleaseHeap() noexcept;
    void Grow(unsigned minCapacity);

    unsigned char* mData;
    unsigned mSize;
    unsigned mCapacity;
    unsigned char mInternal[kInternalCapacity + 1];
};

} // namespace NTesselSharedUtil

#endif
