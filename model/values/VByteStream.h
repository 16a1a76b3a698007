#pragma once

#include "TesselSharedUtil/VByteStream.h"
#include "framework/TesselODX220ModelExport.h"
#include "framework/VOdxElement.h"

namespace NODX220 {

// The bytes of an address, mask, fill byte or coded value: a byte buffer that is also an
// element. The bytes come through the constructors or the buffer's own accessors.
class TESSEL_ODX_API VByteStream : public VOdxElement, public NTesselSharedUtil::VByteStream {
public:
    VByteStream(VOdxElement& parent, VOdxTagEnum tag);
    // size bytes, all zero.
    VByteStream(unsigned size, VOdxElement& parent, VOdxTagEnum tag);
    VByteStream(const unsigned char* data, unsigned size, VOdxElement& parent, VOdxTagEnum tag);
    // Element and bytes; the tag is the source's.
    VByteStream(VByteStream& source, VOdxElement& parent);
    ~VByteStream() override;

    VByteStream& Clone(VOdxElement& parent);

    // Two upper-case hex digits per byte, decorated as the format says; a format outside
    // the enumeration is taken as eHexPlain. An empty stream gives the empty text.
    virtual VYAString ToString(NTesselSharedUtil::VOutputFormat format) const;

    bool HandleTag(VOdxTagEnum tag, VOdxElement& child) override;

private:
    virtual VByteStream& operator=(const VByteStream& source);
};

} // namespace NODX220
