#include "layers/VDiagLayerContainer.h"

namespace NODX220 {

VYAString VDiagLayerContainer::GetXPATHInternal(const VOdxElement&, VYAString& predicate,
                                                VXPathType type) const
{
    VYAString path = GetPhysicalParent().GetXPATHInternal(*this, predicate, type);
    path.Append("/");
    path.Append(GetXmlTag());
    path.Append("[SHORT-NAME='");
    path.Append(GetShortName());
    path.Append("']");
    predicate.Clear();
    return path;
}

} // namespace NODX220
