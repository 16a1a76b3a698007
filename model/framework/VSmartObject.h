#pragma once

#include <cstdint>

#include "framework/TesselODX220ModelExport.h"

namespace NODX220 {

// Root of every element: an intrusive count of the pad locks that hold the object.
class TESSEL_ODX_API VSmartObject {
public:
    VSmartObject() = default;
    // A copy starts unlocked: pad locks belong to an object, never to its value.
    VSmartObject(const VSmartObject&) : mPadLockCount(0) {}
    // Assignment deliberately resets the target's count (handles may still hold it).
    VSmartObject& operator=(const VSmartObject& other);
    virtual ~VSmartObject() = 0;

    virtual void AddPadLock();
    // Destroys the object when the count was exactly 1 before the call.
    virtual void RemovePadLock();
    virtual bool IsReferenced() const;

    int32_t GetPadLockCount() const { return mPadLockCount; }

protected:
    bool _IsPadLocked() const { return mPadLockCount > 0; }

private:
    int32_t mPadLockCount = 0;
};

} // namespace NODX220
