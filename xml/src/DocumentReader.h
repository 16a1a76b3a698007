#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "Tables.h"
#include "TesselODX220Xml/VOdxReader.h"
#include "XmlTokenizer.h"

namespace NODX220Xml {
namespace Internal {

// Where a link was read, for the report of links that found no target.
struct LinkOrigin {
    std::string file;
    unsigned line;
    unsigned column;
};

// What the readers of one load share: the document, the findings, and the places of links.
struct LoadState {
    NODX220::VOdx& root;
    std::vector<VDiagnostic>& diagnostics;
    std::unordered_map<const NODX220::VOdxlink*, LinkOrigin> linkOrigins;
    size_t unhandled = 0;
};

// Reads one ODX document into the root: the tables of the element classes decide which class
// an XML element makes, where it goes and how its attributes and text are delivered.
class DocumentReader : public XmlTokenHandler {
public:
    // location names the document in findings; fileName is what its documents are told.
    DocumentReader(LoadState& state, const std::string& location, const std::string& fileName);
    ~DocumentReader() override;

    // Feeds the document; false when it was malformed or no ODX document. A failed document
    // leaves nothing of itself in the root.
    bool Feed(const char* data, size_t size);
    bool Finish();

    void StartElement(const char* name, const XmlAttribute* attributes, size_t count) override;
    void EndElement(const char* name) override;
    void Text(const char* text, size_t length) override;
    void Comment(const char* text) override;
    void ProcessingInstruction(const char* target, const char* data) override;

private:
    enum class FrameKind { Root, Element, Wrapper, TextChild, Markup, Skip };

    struct Frame {
        FrameKind kind;
        // Element and Root: the element read; Wrapper and TextChild: the one that receives.
        NODX220::VOdxElement* element = nullptr;
        // Element and TextChild: the element the result goes to.
        NODX220::VOdxElement* owner = nullptr;
        // Element: the logical parent it is made with (the owner of a wrapper's collection).
        NODX220::VOdxElement* maker = nullptr;
        const ClassTable* table = nullptr;
        const CollectionTable* collection = nullptr;
        const ChildRule* rule = nullptr;
        NODX220::VSimpleXmlElement* node = nullptr;
        std::string text;
        // Where the element stands in the file: its name and its position among its like.
        std::string name;
        unsigned position = 0;
        // How many children of each name it had so far.
        std::vector<std::pair<std::string, unsigned>> childCounts;
        unsigned line = 0;
        unsigned column = 0;
        unsigned depth = 0;
    };

    const ChildRule* _Rule(const ChildRule* rules, uint16_t ruleCount, const char* name,
                           const XmlAttribute* attributes, size_t count);
    void _StartRoot(const char* name, const XmlAttribute* attributes, size_t count);
    void _StartChild(Frame& parent, const ChildRule* rule, const char* name,
                     const XmlAttribute* attributes, size_t count);
    void _StartMarkup(const char* name, const XmlAttribute* attributes, size_t count);
    void _EndElementFrame(Frame& frame);
    void _EndTextFrame(Frame& frame);
    void _Deliver(Frame& frame, NODX220::VOdxElement& child);
    void _ApplyAttributes(NODX220::VOdxElement& element, const ClassTable& table,
                          const XmlAttribute* attributes, size_t count, const char* elementName,
                          const Frame& frame);
    // Names a new child of the innermost element and counts it.
    void _Place(Frame& child, const char* name);
    // ODX[1]/FLASH[1]/SDGS[1]/SDG[2]: the frames up to `depth`, then an optional last step.
    std::string _Path(size_t depth, const Frame* last = nullptr) const;
    void _AttachPending(NODX220::VOdxElement& element);
    void _FlushMarkupText();
    void _Skip(const char* name, const XmlAttribute* attributes, size_t count);
    void _Park(NODX220::VOdxElement& element);
    void _Report(VSeverity severity, const std::string& message, const std::string& path, unsigned line,
                 unsigned column);
    void _Fail(const std::string& message, unsigned line, unsigned column);
    void _Discard();

    LoadState& mState;
    std::string mLocation;
    std::string mFileName;
    XmlTokenizer mTokenizer;
    std::vector<Frame> mFrames;
    std::string mPendingComment;
    std::vector<std::pair<std::string, std::string>> mPendingInstructions;
    // What this document added to the root or parked, undone if it fails.
    std::vector<NODX220::VOdxElement*> mCategories;
    std::vector<NODX220::VOdxElement*> mParked;
    bool mFailed = false;
    bool mFinished = false;
    bool mSawRoot = false;
};

} // namespace Internal
} // namespace NODX220Xml
