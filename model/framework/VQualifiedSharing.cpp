#include "framework/VQualified.h"
#include "values/VDescription.h"
#include "values/VText.h"

namespace NODX220 {

// Not a copy: the source becomes the parent, and its children get a second handle here.
VQualified::VQualified(VQualified& source) : VOdxElement(source), mShortName(source.mShortName)
{
    SetRootElement(source.GetRootElement());
    if (source.HasLongName()) {
        SetLongName(source.GetLongName());
    }
    if (source.HasDesc()) {
        SetDesc(source.GetDesc());
    }
}

} // namespace NODX220
