#include "values/VTextIdElementSet.h"

#include "framework/VOdx.h"
#include "metadata/VSd.h"
#include "values/VDescription.h"
#include "values/VText.h"

namespace NODX220 {

VTextIdElementSet::VTextIdElementSet(VOdxElement& parent, VOdx& root) : VOdxElement(parent)
{
    SetOdxTag(TAG_COLLECTION);
    SetRootElement(root);
}

VTextIdElementSet::~VTextIdElementSet() = default;

VTextIdElementSet& VTextIdElementSet::Clone(VOdxElement& parent)
{
    auto* copy = new VTextIdElementSet(parent, parent.GetRootElement());
    copy->mElements = mElements;
    return *copy;
}

bool VTextIdElementSet::HandleTag(VOdxTagEnum, VOdxElement&)
{
    return false;
}

VTextIdElementSet::Container::const_iterator VTextIdElementSet::_Find(VOdxElement& element) const
{
    for (auto it = mElements.begin(); it != mElements.end(); ++it) {
        if (*it == &element) {
            return it;
        }
    }
    return mElements.end();
}

bool VTextIdElementSet::GetTextId(VOdxElement& element, VYAString& out) const
{
    switch (element.GetOdxTag()) {
    case TAG_DESCRIPTION:
        if (auto* description = dynamic_cast<VDescription*>(&element)) {
            if (description->HasTi()) {
                out = description->GetTi();
                return true;
            }
        }
        return false;
    case TAG_LONG_NAME:
    case TAG_SHORT_LABEL:
    case TAG_TEXT:
        if (auto* text = dynamic_cast<VText*>(&element)) {
            if (text->HasTi()) {
                out = text->GetTi();
                return true;
            }
        }
        return false;
    case TAG_SD:
        if (auto* value = dynamic_cast<VSd*>(&element)) {
            if (value->HasTi()) {
                out = value->GetTi();
                return true;
            }
        }
        return false;
    default:
        return false;
    }
}

bool VTextIdElementSet::SetTextId(VOdxElement& element, VYAString& text) const
{
    switch (element.GetOdxTag()) {
    case TAG_DESCRIPTION:
        if (auto* description = dynamic_cast<VDescription*>(&element)) {
            description->SetTi(text.GetBuffer());
            return true;
        }
        return false;
    case TAG_LONG_NAME:
    case TAG_SHORT_LABEL:
    case TAG_TEXT:
        if (auto* carrier = dynamic_cast<VText*>(&element)) {
            carrier->SetTi(text.GetBuffer());
            return true;
        }
        return false;
    case TAG_SD:
        if (auto* value = dynamic_cast<VSd*>(&element)) {
            value->SetTi(text.GetBuffer());
            return true;
        }
        return false;
    default:
        return false;
    }
}

} // namespace NODX220
