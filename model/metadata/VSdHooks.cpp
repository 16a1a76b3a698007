#include "framework/VOdx.h"
#include "metadata/VSd.h"
#include "values/VTextIdElementSet.h"

namespace NODX220 {

// A value enters its document's set of text carriers for its whole life.
void VSd::_AfterConstruct()
{
    GetRootElement().TextIdElements().Append(*this);
}

void VSd::_BeforeDestroy()
{
    VOdx& root = GetRootElement();
    if (!root.IsInDestruction()) {
        root.TextIdElements().Remove(*this);
    }
}

} // namespace NODX220
