#include "framework/VProcessingInstruction.h"

namespace NODX220 {

template class VOwningList<VProcessingInstruction>;

VProcessingInstruction::~VProcessingInstruction() = default;

VProcessingInstructionCollection::~VProcessingInstructionCollection() = default;

VProcessingInstruction& VProcessingInstructionCollection::AddNew()
{
    auto* instruction = new VProcessingInstruction();
    Append(*instruction);
    return *instruction;
}

} // namespace NODX220
