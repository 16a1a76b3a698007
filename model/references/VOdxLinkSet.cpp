#include "references/VOdxLinkSet.h"

namespace NODX220 {

VOdxLinkSet::~VOdxLinkSet() = default;

void VOdxLinkSet::Remove(VOdxlink& link)
{
    for (auto it = mLinks.begin(); it != mLinks.end(); ++it) {
        if (*it == &link) {
            mLinks.erase(it);
            return;
        }
    }
}

} // namespace NODX220
