#pragma once

#include <string>
#include <vector>

#include "TesselODX220Xml/TesselODX220XmlExport.h"
#include "TesselODX220Xml/VOdxWriter.h"

namespace NODX220Xml {

// Compares ODX texts as the model reads them. In the canonical form whitespace between
// elements, attribute order, the XML declaration, comments and processing instructions do not
// count; numbers compare by value, dates as the model reads and prints them (no zone is UTC, a
// fraction is milliseconds), an empty plural wrapper counts as absent (the model keeps no
// empty lists), and the DOCREF and DOCTYPE of references do not count at all, since the model
// rewrites them as seen from where a reference stands.
class TESSEL_XML_API VOdxCompare {
public:
    // The differences between two texts of one document, each as "path: what"; empty when
    // they are equal in the canonical form. At most `limit` are reported.
    static std::vector<std::string> Canonical(const std::string& expected, const std::string& actual,
                                              size_t limit = 50);
    // The documents of input files (ODX documents or PDX archives) against written documents,
    // matched by file name; each difference starts with the document's name.
    static std::vector<std::string> WithInputs(const std::vector<std::string>& inputs,
                                               const std::vector<VWrittenDocument>& written,
                                               size_t limit = 50);
    // Where two texts first differ, byte for byte: "line N, PATH"; empty when they are equal.
    static std::string FirstDifference(const std::string& first, const std::string& second);
};

} // namespace NODX220Xml
