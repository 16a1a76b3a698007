#include "framework/VListCollection.h"

#include <string>

#include "framework/VOdx.h"
#include "framework/VQualified.h"

namespace NODX220 {

namespace {

VYAString ShortNamePredicate(const VQualified& item)
{
    VYAString predicate("SHORT-NAME='");
    predicate.Append(item.GetShortName());
    predicate.Append("'");
    return predicate;
}

} // namespace

VListCollectionBase::VListCollectionBase(VOdxElement& parent, VOdx& root) : VOdxElement(parent)
{
    SetOdxTag(TAG_COLLECTION);
    SetRootElement(root);
}

VListCollectionBase::VListCollectionBase(VListCollectionBase& source, VOdxElement& newParent)
    : VOdxElement(source, newParent)
{
}

VListCollectionBase::~VListCollectionBase() = default;

VYAString VListCollectionBase::GetXPATH(VXPathType type) const
{
    VYAString predicate;
    VYAString path = GetPhysicalParent().GetXPATHInternal(*this, predicate, type);
    path.Append("/");
    path.Append(_GetCollectionName());
    return path;
}

VYAString VListCollectionBase::GetXPATHInternal(const VOdxElement& origin, VYAString& predicate,
                                                VXPathType type) const
{
    VYAString path = GetPhysicalParent().GetXPATHInternal(*this, predicate, type);
    const VXPathForm form = _GetXPathForm();
    const auto* qualified = dynamic_cast<const VQualified*>(&origin);
    if (form == eXPathFormShortName && type == eXPathShortName && qualified != nullptr) {
        predicate = ShortNamePredicate(*qualified);
    } else {
        bool found = false;
        const uint32_t position = _PositionOf(origin, found);
        if (form == eXPathFormComparam && type == eXPathShortName) {
            if (found && qualified != nullptr) {
                predicate = ShortNamePredicate(*qualified);
            }
        } else {
            predicate = std::to_string(position).c_str();
        }
    }
    path.Append("/");
    path.Append(GetNameForXPATH(origin));
    return path;
}

VYAString VListCollectionBase::GetNameForXPATH(const VOdxElement& item) const
{
    VYAString name = item.GetXmlTag();
    name.Append("S");
    return name;
}

VXPathForm VListCollectionBase::_GetXPathForm() const
{
    return eXPathFormShortName;
}

bool VListCollectionBase::_SetsPhysicalParent() const
{
    return true;
}

} // namespace NODX220
