#include "framework/VSmartObject.h"

namespace NODX220 {

VSmartObject::~VSmartObject() = default;

VSmartObject& VSmartObject::operator=(const VSmartObject& other)
{
    if (this != &other) {
        mPadLockCount = 0;
    }
    return *this;
}

void VSmartObject::AddPadLock()
{
    ++mPadLockCount;
}

void VSmartObject::RemovePadLock()
{
    const int32_t before = mPadLockCount--;
    if (before == 1) {
        delete this;
    }
}

bool VSmartObject::IsReferenced() const
{
    return mPadLockCount > 0;
}

} // namespace NODX220
