#pragma once

#include <functional>

#include "TesselODX220Xml/TesselODX220XmlExport.h"

namespace NODX220 {
class VOdx;
class VOdxElement;
}

namespace NODX220Xml {

// Services for whole documents.
class TESSEL_XML_API VOdxDocuments {
public:
    // Ends one document. Unlike VOdxFactory::DestroyOdx it keeps the parked (unhandled)
    // elements of the other documents alive: use it whenever several documents live at once.
    static void Destroy(NODX220::VOdx& document);
};

// The children of an element in document order: element members, then collection items,
// as the descriptions order them (the writer's order). Link elements have their link object
// as a child. Values that are no elements (texts, numbers) are not visited.
class TESSEL_XML_API VOdxWalk {
public:
    static void Children(NODX220::VOdxElement& element,
                         const std::function<void(NODX220::VOdxElement&)>& visit);
    // The children with the name each has in documents, in the writer's order: a name that
    // the document gives otherwise than the element's tag (renamed items, the fixed names of
    // families written with xsi:type, free-standing collections), and null for an element
    // that has no XML element of its own (a link object, whose attributes its reference
    // element carries; a compound whose members stand in its owner).
    static void NamedChildren(NODX220::VOdxElement& element,
                              const std::function<void(NODX220::VOdxElement& child, const char* name)>& visit);
    // The element and everything below it, parents before children.
    static void Tree(NODX220::VOdxElement& element,
                     const std::function<void(NODX220::VOdxElement&)>& visit);
};

} // namespace NODX220Xml
