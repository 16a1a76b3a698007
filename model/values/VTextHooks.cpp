#include "framework/VOdx.h"
#include "values/VText.h"
#include "values/VTextIdElementSet.h"

namespace NODX220 {

// A text enters its document's set of text carriers for its whole life.
void VText::_AfterConstruct()
{
    GetRootElement().TextIdElements().Append(*this);
}

void VText::_BeforeDestroy()
{
    VOdx& root = GetRootElement();
    if (!root.IsInDestruction()) {
        root.TextIdElements().Remove(*this);
    }
}

} // namespace NODX220
