#pragma once

#include <string>
#include <utility>
#include <vector>

#include "TesselODX220Xml/TesselODX220XmlExport.h"
#include "TesselODX220Xml/VOdxReader.h"

namespace NODX220 {
class VOdx;
class VOdxCategory;
}

namespace NODX220Xml {

// One written ODX document: its file name and its UTF-8 text.
struct TESSEL_XML_API VWrittenDocument {
    std::string mName;
    std::string mText;
};

struct TESSEL_XML_API VWriteOptions {
    // Blanks per level of nesting; 0 writes every element on a line of its own, unindented.
    unsigned mIndent = 2;
};

// Writes a model out as ODX: one document per top-level document of the root, in the order the
// descriptions give, with attributes, enumeration literals, escaped text, description markup as
// stored, comments and processing instructions. References are written as the model holds them
// after resolution (a reference into another document with its DOCREF and DOCTYPE).
class TESSEL_XML_API VOdxWriter {
public:
    explicit VOdxWriter(const VWriteOptions& options = VWriteOptions());

    // The text of one top-level document, in an ODX root of its own.
    std::string WriteDocument(NODX220::VOdxCategory& category) const;
    // Every top-level document, named by its file name where it has one, else by its short name
    // and the ending of its kind.
    std::vector<VWrittenDocument> WriteDocuments(NODX220::VOdx& odx) const;
    // The file name a top-level document is written under.
    static std::string FileNameOf(NODX220::VOdxCategory& category);

    bool WriteDirectory(NODX220::VOdx& odx, const std::string& directory, std::string& error) const;
    bool WriteCategoryFile(NODX220::VOdxCategory& category, const std::string& path, std::string& error) const;
    // A PDX archive of the documents. A catalog and entries of a loaded archive, when given, are
    // carried over unchanged; without a catalog one is made for the documents.
    bool WritePdx(NODX220::VOdx& odx, const std::string& path, const VPdxCatalog* catalog,
                  const std::vector<VArchiveEntry>* entries, std::string& error) const;
    std::vector<unsigned char> WritePdxToMemory(NODX220::VOdx& odx, const VPdxCatalog* catalog,
                                                const std::vector<VArchiveEntry>* entries,
                                                std::string& error) const;

private:
    // The top-level documents with the names they are written under; two never share one.
    static std::vector<std::pair<std::string, NODX220::VOdxCategory*>> NamedCategories(NODX220::VOdx& odx);

    VWriteOptions mOptions;
};

} // namespace NODX220Xml
