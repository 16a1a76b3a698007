#pragma once

#include "TesselSharedUtil/VYAString.h"
#include "framework/TesselODX220ModelExport.h"
#include "framework/VOwningList.h"

namespace NODX220 {

using NTesselSharedUtil::VYAString;

// An XML processing instruction kept with the element it belongs to. A plain object, not an
// element.
class TESSEL_ODX_API VProcessingInstruction {
public:
    VProcessingInstruction() = default;
    VProcessingInstruction(const VProcessingInstruction& other) = default;
    VProcessingInstruction& operator=(const VProcessingInstruction& other) = default;
    virtual ~VProcessingInstruction();

    const char* GetName() const { return mName.GetBuffer(); }
    void SetName(const char* name) { mName = name; }
    const char* GetContent() const { return mContent.GetBuffer(); }
    void SetContent(const char* content) { mContent = content; }

private:
    VYAString mName;
    VYAString mContent;
};

extern template class TESSEL_ODX_API VOwningList<VProcessingInstruction>;

class TESSEL_ODX_API VProcessingInstructionCollection : public VOwningList<VProcessingInstruction> {
public:
    VProcessingInstructionCollection() = default;
    ~VProcessingInstructionCollection() override;

    // Appends a new empty instruction and returns it.
    VProcessingInstruction& AddNew();
};

} // namespace NODX220
