#pragma once

#include <cstdint>

#include "TesselSharedUtil/VYAString.h"
#include "framework/TesselODX220ModelExport.h"
#include "framework/VOdxTagEnum.h"
#include "framework/VSmartObject.h"
#include "framework/VXPathType.h"

namespace NODX220 {

using NTesselSharedUtil::VYAString;

class VOdx;
class VProcessingInstructionCollection;
class VSimpleXmlElement;

// Every node of a document in memory. An element has a logical parent (the one it was made
// with) and a physical parent (the element that really holds it: a collection once it was
// appended to one), a root, a tag, and optionally a comment and processing instructions.
// Readers fill elements through the Handle* operations; each returns whether it took the value.
class TESSEL_ODX_API VOdxElement : public VSmartObject {
public:
    explicit VOdxElement(VOdxElement& parent);
    // Copies comment, instructions and tag; the copy joins newParent's document.
    VOdxElement(VOdxElement& source, VOdxElement& newParent);
    VOdxElement(const VOdxElement&) = delete;
    VOdxElement& operator=(const VOdxElement&) = delete;
    ~VOdxElement() override;

    virtual VOdxElement& GetParent() const;
    virtual VOdxElement& GetPhysicalParent() const;
    virtual void SetPhysicalParent(VOdxElement& parent);
    // Destroys and frees this element.
    virtual void Destroy();

    virtual void SetComment(const char* comment);
    virtual const char* GetComment() const;
    virtual bool HasComment() const;
    // Made empty on first use; asking creates it.
    virtual VProcessingInstructionCollection& ProcessingInstructionCollection();

    virtual bool HandleTag(VOdxTagEnum tag, VOdxElement& child) = 0;
    virtual bool HandleTChar(VOdxTagEnum tag, const char* value);
    virtual bool HandleBool(VOdxTagEnum tag, bool value);
    virtual bool HandleInt(VOdxTagEnum tag, int32_t value);
    virtual bool HandleDouble(VOdxTagEnum tag, double value);
    virtual bool HandleUInt(VOdxTagEnum tag, uint32_t value);
    virtual bool HandleByte(VOdxTagEnum tag, uint8_t value);
    virtual bool HandleSimpleXmlElement(VOdxTagEnum tag, VSimpleXmlElement& element);

    virtual VOdx& GetRootElement() const;
    virtual VYAString GetXPATH(VXPathType type) const;
    virtual VYAString GetXPATHInternal(const VOdxElement& origin, VYAString& predicate,
                                       VXPathType type) const;
    virtual VYAString GetXmlTag() const;

    VOdxTagEnum GetOdxTag() const { return mOdxTag; }
    void SetRootElement(VOdx& root) { mpRootElement = &root; }

protected:
    // For the document root, which alone has no parent.
    explicit VOdxElement(VOdxElement* parent);
    virtual void SetOdxTag(VOdxTagEnum tag);

private:
    // The tag stands first so that it fills the padding behind the pad-lock count.
    VOdxTagEnum mOdxTag = TAG_UNSET;
    VOdxElement* mpParent;
    VOdxElement* mpPhysicalParent;
    VOdx* mpRootElement = nullptr;
    VYAString* mpComment = nullptr;
    VProcessingInstructionCollection* mpProcessingInstructions = nullptr;
};

} // namespace NODX220
