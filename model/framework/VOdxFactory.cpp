#include "framework/VOdxFactory.h"

#include <cstdlib>

#include "framework/VOdx.h"
#include "framework/VProcessingInstruction.h"
#include "references/VIdRefMap.h"
#include "references/VOdxLinkSet.h"
#include "references/VOdxlink.h"
#include "references/VReferencable.h"
#include "values/VSimpleXmlElement.h"
#include "values/VTextIdElementSet.h"

namespace NODX220 {

template class VOwningList<VOdxElement>;

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

VSimpleXmlElement& VOdxFactory::MakeSimpleXmlElement(const char* name)
{
    return *new VSimpleXmlElement(VYAString(name));
}

void VOdxFactory::DestroyElement(VOdxElement* element)
{
    if (element != nullptr) {
        element->Destroy();
    }
}

void VOdxFactory::DestroyOdx(VOdx& root)
{
    VOdxLinkSet* linkSet = root.mpOdxLinkSet;
    VIdRefMap* idRefMap = root.mpIdRefMap;
    // References between this document and others (copies point into their source until
    // resolved again) are undone first, so that no survivor keeps a pointer into this one.
    if (linkSet != nullptr) {
        for (auto it = linkSet->Begin(); it != linkSet->End(); ++it) {
            (*it)._ReleaseTargetOutside(root);
        }
    }
    for (auto& entry : idRefMap->mEntries) {
        entry.second->_ReleaseLinksOutside(root);
    }
    root.mInDestruction = true;
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
