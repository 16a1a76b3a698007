#include "references/VAbstractSnrefResolver.h"

namespace NODX220 {

VAbstractSnrefResolver::~VAbstractSnrefResolver() = default;

} // namespace NODX220
