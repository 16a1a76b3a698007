#pragma once

#include "framework/TesselODX220ModelExport.h"
#include "framework/VOdxElementMakers.h"
#include "framework/VOwningList.h"

namespace NODX220 {

class VOdx;
class VOdxElement;
class VProcessingInstruction;
class VSimpleXmlElement;

extern template class TESSEL_ODX_API VOwningList<VOdxElement>;

// Elements that nothing took: parked here by readers so that they live as long as their
// document and die in a known order. A plain owning list, no element.
class TESSEL_ODX_API VUnhandledElementCollection : public VOwningList<VOdxElement> {
public:
    VUnhandledElementCollection() = default;
    ~VUnhandledElementCollection() override;
};

// The one place where elements come to life. A process has one factory, made on first use.
class TESSEL_ODX_API VOdxFactory : public VOdxElementMakers {
public:
    static VOdxFactory& Instance();

    // A new document with its link set, id map and text id set.
    VOdx& MakeOdx();
    VProcessingInstruction& MakeProcessingInstruction();
    // A markup node, the caller's until a node or a description takes it.
    VSimpleXmlElement& MakeSimpleXmlElement(const char* name);

    // Destroys and frees an element that nobody owns; nothing for null.
    void DestroyElement(VOdxElement* element);
    // Ends a document: empties its sets, clears the unhandled collection (the parked
    // elements of every document go with it), destroys the tree, then frees the sets.
    void DestroyOdx(VOdx& root);

    VUnhandledElementCollection& UnhandledElementCollection() { return mUnhandledElements; }

    VOdxFactory(const VOdxFactory&) = delete;
    VOdxFactory& operator=(const VOdxFactory&) = delete;

private:
    VOdxFactory() = default;
    ~VOdxFactory() override;
    static void DestroyInstance();

    static VOdxFactory* spInstance;

    VUnhandledElementCollection mUnhandledElements;
};

} // namespace NODX220
