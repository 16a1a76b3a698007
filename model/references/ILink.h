#pragma once

#include "framework/TesselODX220ModelExport.h"

namespace NODX220 {

class VOdxElement;
class VOdxlink;
class VSnpathref;
class VSnref;

// The reference proper inside a typed link element: by id, by short name, or by a path of
// short names.
class TESSEL_ODX_API ILink {
public:
    ILink() = default;
    ILink(const ILink&) = default;
    ILink& operator=(const ILink&) = default;

    virtual bool IsOdxlink() const = 0;
    virtual bool IsSnref() const = 0;
    virtual bool IsSnpathref() const = 0;
    // Null, with a logged line, when the link is of another kind.
    virtual VOdxlink* GetAsOdxlink() = 0;
    virtual VSnref* GetAsSnref() = 0;
    virtual VSnpathref* GetAsSnpathref() = 0;
    virtual ILink& CloneLink(VOdxElement& newParent) = 0;
    virtual ~ILink();
};

} // namespace NODX220
