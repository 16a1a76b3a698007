#include "references/VSnref.h"

#include "framework/VOdx.h"
#include "framework/internal/Failure.h"

namespace NODX220 {

VSnref::VSnref(VOdxElement& parent, VOdxTagEnum tag) : VOdxElement(parent)
{
    SetOdxTag(tag);
    SetRootElement(parent.GetRootElement());
}

VSnref::VSnref(VSnref& source, VOdxElement& parent)
    : VOdxElement(source, parent), ILink(source), mShortName(source.mShortName)
{
}

VSnref::~VSnref() = default;

VSnref& VSnref::Clone(VOdxElement& parent)
{
    return *new VSnref(*this, parent);
}

ILink& VSnref::CloneLink(VOdxElement& parent)
{
    return Clone(parent);
}

bool VSnref::IsOdxlink() const
{
    return false;
}

bool VSnref::IsSnref() const
{
    return true;
}

bool VSnref::IsSnpathref() const
{
    return false;
}

VOdxlink* VSnref::GetAsOdxlink()
{
    Internal::LogWrongType(kLogGroupId, "VOdxlink");
    return nullptr;
}

VSnref* VSnref::GetAsSnref()
{
    return this;
}

VSnpathref* VSnref::GetAsSnpathref()
{
    Internal::LogWrongType(kLogGroupId, "VLink");
    return nullptr;
}

bool VSnref::HandleTag(VOdxTagEnum, VOdxElement&)
{
    return false;
}

VSnpathref::VSnpathref(VOdxElement& parent, VOdxTagEnum tag) : VOdxElement(parent)
{
    SetOdxTag(tag);
    SetRootElement(parent.GetRootElement());
}

VSnpathref::VSnpathref(VSnpathref& source, VOdxElement& parent)
    : VOdxElement(source, parent), ILink(source), mShortNamePath(source.mShortNamePath)
{
}

VSnpathref::~VSnpathref() = default;

VSnpathref& VSnpathref::Clone(VOdxElement& parent)
{
    return *new VSnpathref(*this, parent);
}

ILink& VSnpathref::CloneLink(VOdxElement& parent)
{
    return Clone(parent);
}

bool VSnpathref::IsOdxlink() const
{
    return false;
}

bool VSnpathref::IsSnref() const
{
    return false;
}

bool VSnpathref::IsSnpathref() const
{
    return true;
}

VOdxlink* VSnpathref::GetAsOdxlink()
{
    Internal::LogWrongType(kLogGroupId, "VOdxlink");
    return nullptr;
}

VSnref* VSnpathref::GetAsSnref()
{
    Internal::LogWrongType(kLogGroupId, "VSnref");
    return nullptr;
}

VSnpathref* VSnpathref::GetAsSnpathref()
{
    return this;
}

bool VSnpathref::HandleTag(VOdxTagEnum, VOdxElement&)
{
    return false;
}

} // namespace NODX220
