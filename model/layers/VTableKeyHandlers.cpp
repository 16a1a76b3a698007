#include "layers/VOdxlinkToTable.h"
#include "layers/VSnrefToTable.h"
#include "layers/VTableKey.h"
#include "layers/VTableRowLink.h"

namespace NODX220 {

// A table key builds its choice from separate references: TABLE-REF or TABLE-SNREF make (or
// reuse) the compound alternative that names a table and take the reference into it; a row
// reference replaces whatever was there.
bool VTableKey::HandleTag(VOdxTagEnum tag, VOdxElement& child)
{
    if (VPositionableParam::HandleTag(tag, child)) {
        return true;
    }
    IOdxlinkToTableSnrefToTableTableRowLinkChoice* present =
        HasOdxlinkToTableSnrefToTableTableRowLinkChoice() ? &GetOdxlinkToTableSnrefToTableTableRowLinkChoice()
                                                          : nullptr;
    switch (tag) {
    case TAG_TABLE_REF: {
        VOdxlinkToTable* compound = present != nullptr ? present->GetAsOdxlinkToTable() : nullptr;
        if (compound == nullptr) {
            // Made here, not by the factory, and replacing an alternative of another kind.
            compound = new VOdxlinkToTable(*this, TAG_ODXLINK_TO_TABLE);
            SetOdxlinkToTableSnrefToTableTableRowLinkChoice(*compound);
        }
        return compound->HandleTag(tag, child);
    }
    case TAG_TABLE_SNREF: {
        VSnrefToTable* compound = present != nullptr ? present->GetAsSnrefToTable() : nullptr;
        if (compound == nullptr) {
            compound = new VSnrefToTable(*this, TAG_SNREF_TO_TABLE);
            SetOdxlinkToTableSnrefToTableTableRowLinkChoice(*compound);
        }
        return compound->HandleTag(tag, child);
    }
    case TAG_TABLE_ROW_SNREF:
        // The row goes to the compound first, whatever it answers; then the row link becomes
        // the choice on its own, as a TABLE-ROW-REF would.
        if (present != nullptr) {
            if (present->IsOdxlinkToTable()) {
                present->GetAsOdxlinkToTable()->HandleTag(tag, child);
            }
            if (present->IsSnrefToTable()) {
                present->GetAsSnrefToTable()->HandleTag(tag, child);
            }
        }
        [[fallthrough]];
    case TAG_TABLE_ROW_REF: {
        auto* row = dynamic_cast<IOdxlinkToTableSnrefToTableTableRowLinkChoice*>(&child);
        if (row == nullptr) {
            return false;
        }
        // The compound that now holds the row dies when the row replaces it: a lock of our own
        // keeps the row alive across the swap.
        child.AddPadLock();
        SetOdxlinkToTableSnrefToTableTableRowLinkChoice(*row);
        child.RemovePadLock();
        return true;
    }
    default:
        return false;
    }
}

} // namespace NODX220
