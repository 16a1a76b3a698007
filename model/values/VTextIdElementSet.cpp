#include "values/VTextIdElementSet.h"

#include "framework/VOdx.h"
#include "metadata/VSd.h"
#include "values/VDescription.h"
#include "values/VText.h"
#include "values/VVt.h"

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

namespace {

// Calls `use` with the element as the class that carries its text id, chosen by its tag; false
// when the element carries none.
template <class Use>
bool WithCarrier(VOdxElement& element, const Use& use)
{
    switch (element.GetOdxTag()) {
    case TAG_DESCRIPTION:
        // A description is markup, but the DESCRIPTION of an item value is a plain text.
        if (auto* description = dynamic_cast<VDescription*>(&element)) {
            return use(*description);
        }
        if (auto* text = dynamic_cast<VText*>(&element)) {
            return use(*text);
        }
        return false;
    case TAG_LONG_NAME:
    case TAG_MEANING:
    case TAG_SHORT_LABEL:
    case TAG_TEXT:
        if (auto* text = dynamic_cast<VText*>(&element)) {
            return use(*text);
        }
        return false;
    case TAG_VT:
        if (auto* value = dynamic_cast<VVt*>(&element)) {
            return use(*value);
        }
        return false;
    case TAG_SD:
        if (auto* value = dynamic_cast<VSd*>(&element)) {
            return use(*value);
        }
        return false;
    default:
        return false;
    }
}

} // namespace

bool VTextIdElementSet::GetTextId(VOdxElement& element, VYAString& out) const
{
    return WithCarrier(element, [&out](auto& carrier) {
        if (!carrier.HasTi()) {
            return false;
        }
        out = carrier.GetTi();
        return true;
    });
}

bool VTextIdElementSet::SetTextId(VOdxElement& element, VYAString& text) const
{
    return WithCarrier(element, [&text](auto& carrier) {
        carrier.SetTi(text.GetBuffer());
        return true;
    });
}

} // namespace NODX220
