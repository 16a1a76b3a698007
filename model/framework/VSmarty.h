#pragma once

#include "framework/TesselODX220ModelExport.h"
#include "framework/VSmartObject.h"

namespace NODX220 {

// One pad lock on one object: constructing it locks, destroying it unlocks (and may destroy
// the object).
class TESSEL_ODX_API VPadLock {
public:
    explicit VPadLock(VSmartObject* object) : mpObject(object) { mpObject->AddPadLock(); }
    VPadLock(const VPadLock&) = delete;
    VPadLock& operator=(const VPadLock&) = delete;
    virtual ~VPadLock() { mpObject->RemovePadLock(); }

private:
    VSmartObject* mpObject;
};

// Owning handle on a single child. Copies share the child: each handle holds its own pad
// lock, and the last one to go destroys the child.
template <class T>
class VSmarty {
public:
    VSmarty(T* pointee = nullptr) { _Init(pointee); }
    VSmarty(const VSmarty& other) { _Init(other.Pointee()); }
    virtual ~VSmarty() { _Destroy(); }

    VSmarty& operator=(const VSmarty& other)
    {
        if (this != &other) {
            // The other handle's pad lock keeps a shared child alive meanwhile.
            T* pointee = other.Pointee();
            _Destroy();
            _Init(pointee);
        }
        return *this;
    }

    T* Pointee() const { return mpPointee; }

protected:
    void _Init(T* pointee)
    {
        mpPointee = pointee;
        mpPadLock = pointee != nullptr ? new VPadLock(pointee) : nullptr;
    }

    void _Destroy()
    {
        if (mpPointee == nullptr) {
            return;
        }
        mpPointee = nullptr;
        delete mpPadLock;
        mpPadLock = nullptr;
    }

private:
    T* mpPointee = nullptr;
    VPadLock* mpPadLock = nullptr;
};

} // namespace NODX220
