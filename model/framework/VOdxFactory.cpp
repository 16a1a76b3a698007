#include "framework/VOdxFactory.h"

#include <cstdlib>

#include "framework/VOdx.h"
#include "framework/VProcessingInstruction.h"
#include "references/VIdRefMap.h"
#include "references/VOdxLinkSet.h"
#include "values/VTextIdElementSet.h"

namespace NODX220 {

VUnhandledElementCollection::~VUnhandledElementCollection() = default;

VOdxFactory& VOdxFactory::Instance()
{
    // Made on first use; an exit handler registered at that moment frees it at process end.
    if (spInstance == nullptr) {
        spInstance = new VOdxFactory();
        std::atexit(DestroyInstance);
    }
    return *spInstance;
}

VOdxFactory* VOdxFactory::spInstance = nullptr;

void VOdxFactory::DestroyInstance()
{
    delete spInstance;
    spInstance = nullptr;
}

VOdxFactory::~VOdxFactory() = default;

VOdx& VOdxFactory::MakeOdx()
{
    auto* root = new VOdx(nullptr, TAG_ODX);
    root->mpOdxLinkSet = new VOdxLinkSet();
    root->mpTextIdElementSet = new VTextIdElementSet(*root, *root);
    return *root;
}

VProcessingInstruction& VOdxFactory::MakeProcessingInstruction()
{
    return *new VProcessingInstruction();
}

void VOdxFactory::DestroyElement(VOdxElement* element)
{
    if (element != nullptr) {
        element->Destroy();
    }
}

void VOdxFactory::DestroyOdx(VOdx& root)
{
    root.mInDestruction = true;
    VOdxLinkSet* linkSet = root.mpOdxLinkSet;
    VIdRefMap* idRefMap = root.mpIdRefMap;
    if (linkSet != nullptr) {
        linkSet->Clear();
    }
    idRefMap->Clear();
    VTextIdElementSet* textIdSet = root.mpTextIdElementSet;
    root.mpTextIdElementSet = nullptr;
    mUnhandledElements.Clear();
    delete &root;
    delete linkSet;
    delete idRefMap;
    delete textIdSet;
}

} // namespace NODX220
