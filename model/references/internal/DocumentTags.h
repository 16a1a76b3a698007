#pragma once

// Which tags open a document (a category) or a layer (not installed).

#include "framework/VOdxTagEnum.h"

namespace NODX220 {
namespace Internal {

inline bool IsCategoryTag(VOdxTagEnum tag)
{
    switch (tag) {
    case TAG_COMPARAM_SPEC:
    case TAG_COMPARAM_SUBSET:
    case TAG_DIAG_LAYER_CONTAINER:
    case TAG_ECU_CONFIG:
    case TAG_FLASH:
    case TAG_FUNCTION_DICTIONARY:
    case TAG_MULTIPLE_ECU_JOB_SPEC:
    case TAG_VEHICLE_INFO_SPEC:
        return true;
    default:
        return false;
    }
}

inline bool IsLayerTag(VOdxTagEnum tag)
{
    switch (tag) {
    case TAG_BASE_VARIANT:
    case TAG_ECU_SHARED_DATA:
    case TAG_ECU_VARIANT:
    case TAG_FUNCTIONAL_GROUP:
    case TAG_PROTOCOL:
        return true;
    default:
        return false;
    }
}

} // namespace Internal
} // namespace NODX220
