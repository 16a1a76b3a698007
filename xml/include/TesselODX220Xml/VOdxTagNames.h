#pragma once

#include <string>
#include <vector>

#include "TesselODX220Model.h"
#include "TesselODX220Xml/TesselODX220XmlExport.h"

namespace NODX220Xml {

// From XML names to the tags of the model (the model itself maps only the other way, with
// VOdxTagEnumMapper::EnumToChar).
class TESSEL_XML_API VOdxTagNames {
public:
    // The tag of an XML name, spelled exactly; TAG_UNSET for a name that is no tag.
    static NODX220::VOdxTagEnum FromName(const char* name);
    // Every element name the reader takes somewhere in a document (children, plural wrappers,
    // the kinds named by xsi:type), sorted; and every attribute name it reads.
    static std::vector<std::string> ReadElementNames();
    static std::vector<std::string> ReadAttributeNames();
};

} // namespace NODX220Xml
