#include "framework/VOdxElement.h"

#include "framework/VOdx.h"
#include "framework/VProcessingInstruction.h"
#include "framework/internal/Failure.h"

namespace NODX220 {

VOdxElement::VOdxElement(VOdxElement& parent)
    : VSmartObject(), mpParent(&parent), mpPhysicalParent(&parent)
{
}

VOdxElement::VOdxElement(VOdxElement* parent)
    : VSmartObject(), mpParent(parent), mpPhysicalParent(parent)
{
}

VOdxElement::VOdxElement(VOdxElement& source, VOdxElement& newParent)
    : VSmartObject(),
      mOdxTag(source.mOdxTag),
      mpParent(&newParent),
      mpPhysicalParent(&newParent),
      mpRootElement(&newParent.GetRootElement())
{
    if (source.HasComment()) {
        mpComment = new VYAString(*source.mpComment);
    }
    VProcessingInstructionCollection& sourceInstructions = source.ProcessingInstructionCollection();
    VProcessingInstructionCollection& instructions = ProcessingInstructionCollection();
    for (auto it = sourceInstructions.Begin(); it != sourceInstructions.End(); ++it) {
        instructions.Append(*new VProcessingInstruction(*it));
    }
}

VOdxElement::~VOdxElement()
{
    delete mpProcessingInstructions;
    delete mpComment;
}

VOdxElement& VOdxElement::GetParent() const
{
    return *mpParent;
}

VOdxElement& VOdxElement::GetPhysicalParent() const
{
    return *mpPhysicalParent;
}

void VOdxElement::SetPhysicalParent(VOdxElement& parent)
{
    mpPhysicalParent = &parent;
}

void VOdxElement::Destroy()
{
    delete this;
}

void VOdxElement::SetComment(const char* comment)
{
    delete mpComment;
    mpComment = nullptr;
    mpComment = new VYAString(comment);
}

const char* VOdxElement::GetComment() const
{
    if (mpComment == nullptr) {
        Internal::FailAssertion(kLogGroupId, "mpComment!=NULL");
    }
    return mpComment->GetBuffer();
}

bool VOdxElement::HasComment() const
{
    return mpComment != nullptr;
}

VProcessingInstructionCollection& VOdxElement::ProcessingInstructionCollection()
{
    if (mpProcessingInstructions == nullptr) {
        mpProcessingInstructions = new VProcessingInstructionCollection();
    }
    return *mpProcessingInstructions;
}

bool VOdxElement::HandleTChar(VOdxTagEnum, const char*)
{
    return false;
}

bool VOdxElement::HandleBool(VOdxTagEnum, bool)
{
    return false;
}

bool VOdxElement::HandleInt(VOdxTagEnum, int32_t)
{
    return false;
}

bool VOdxElement::HandleDouble(VOdxTagEnum, double)
{
    return false;
}

bool VOdxElement::HandleUInt(VOdxTagEnum, uint32_t)
{
    return false;
}

bool VOdxElement::HandleByte(VOdxTagEnum, uint8_t)
{
    return false;
}

bool VOdxElement::HandleSimpleXmlElement(VOdxTagEnum, VSimpleXmlElement&)
{
    return false;
}

VOdx& VOdxElement::GetRootElement() const
{
    if (mpRootElement == nullptr) {
        Internal::FailAssertion(kLogGroupId, "mpRootElement!=NULL");
    }
    return *mpRootElement;
}

VYAString VOdxElement::GetXPATH(VXPathType type) const
{
    VYAString predicate;
    return GetXPATHInternal(*this, predicate, type);
}

VYAString VOdxElement::GetXPATHInternal(const VOdxElement&, VYAString& predicate,
                                        VXPathType type) const
{
    if (mOdxTag == TAG_ODX) {
        return GetXmlTag();
    }
    // The collection above may fill the predicate, so the climb runs first.
    VYAString path = GetPhysicalParent().GetXPATHInternal(*this, predicate, type);
    path.Append("/");
    path.Append(GetXmlTag());
    if (!predicate.IsEmpty()) {
        path.Append("[");
        path.Append(predicate);
        path.Append("]");
        predicate.Clear();
    }
    return path;
}

VYAString VOdxElement::GetXmlTag() const
{
    return VYAString(VOdxTagEnumMapper::EnumToChar(mOdxTag));
}

void VOdxElement::SetOdxTag(VOdxTagEnum tag)
{
    mOdxTag = tag;
}

} // namespace NODX220
