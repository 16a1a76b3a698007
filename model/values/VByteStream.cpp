#include "values/VByteStream.h"

#include <string>

namespace NODX220 {

VByteStream::VByteStream(VOdxElement& parent, VOdxTagEnum tag) : VOdxElement(parent)
{
    SetOdxTag(tag);
    SetRootElement(parent.GetRootElement());
}

VByteStream::VByteStream(unsigned size, VOdxElement& parent, VOdxTagEnum tag)
    : VOdxElement(parent), NTesselSharedUtil::VByteStream(size)
{
    SetOdxTag(tag);
    SetRootElement(parent.GetRootElement());
}

VByteStream::VByteStream(const unsigned char* data, unsigned size, VOdxElement& parent,
                         VOdxTagEnum tag)
    : VOdxElement(parent), NTesselSharedUtil::VByteStream(data, size)
{
    SetOdxTag(tag);
    SetRootElement(parent.GetRootElement());
}

VByteStream::VByteStream(VByteStream& source, VOdxElement& parent)
    : VOdxElement(source, parent), NTesselSharedUtil::VByteStream(source)
{
}

VByteStream::~VByteStream() = default;

VByteStream& VByteStream::Clone(VOdxElement& parent)
{
    return *new VByteStream(*this, parent);
}

VYAString VByteStream::ToString(NTesselSharedUtil::VOutputFormat format) const
{
    static const char kDigits[] = "0123456789ABCDEF";
    const bool prefixEach = format == NTesselSharedUtil::eHexPrefixEach;
    const bool prefixOnce = format == NTesselSharedUtil::eHexPrefixOnce;
    const bool spaced = prefixEach || format == NTesselSharedUtil::eHexSpaced;

    const unsigned char* data = GetData();
    const unsigned size = GetSize();
    std::string text;
    text.reserve(size * 5);
    for (unsigned i = 0; i < size; ++i) {
        if (i > 0 && spaced) {
            text += ' ';
        }
        if (prefixEach || (prefixOnce && i == 0)) {
            text += "0x";
        }
        text += kDigits[data[i] >> 4];
        text += kDigits[data[i] & 0x0F];
    }
    return VYAString(text.data(), text.size());
}

bool VByteStream::HandleTag(VOdxTagEnum, VOdxElement&)
{
    return false;
}

VByteStream& VByteStream::operator=(const VByteStream& source)
{
    NTesselSharedUtil::VByteStream::operator=(source);
    return *this;
}

} // namespace NODX220
