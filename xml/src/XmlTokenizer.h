#pragma once

// The one interface between the XML layer and the XML parser: a stream of tokens with their
// positions. Entities and DTDs outside the document are never loaded, and nothing touches the
// network.

#include <cstddef>
#include <string>

namespace NODX220Xml {
namespace Internal {

struct XmlAttribute {
    // The qualified name, "xsi:type" for a prefixed one.
    const char* name;
    const char* value;
};

class XmlTokenHandler {
public:
    virtual ~XmlTokenHandler() = default;
    virtual void StartElement(const char* name, const XmlAttribute* attributes, size_t count) = 0;
    virtual void EndElement(const char* name) = 0;
    virtual void Text(const char* text, size_t length) = 0;
    virtual void Comment(const char* text) = 0;
    virtual void ProcessingInstruction(const char* target, const char* data) = 0;
};

// Feeds a document in pieces to a handler. Text arrives as UTF-8 with entities decoded.
class XmlTokenizer {
public:
    XmlTokenizer(XmlTokenHandler& handler, const std::string& fileName);
    ~XmlTokenizer();
    XmlTokenizer(const XmlTokenizer&) = delete;
    XmlTokenizer& operator=(const XmlTokenizer&) = delete;

    // False once the document turned out malformed; Error() then tells why and where.
    bool Feed(const char* data, size_t size);
    bool Finish();
    // Stops at the next token: the handler asks for it when it gives up on the document.
    void Stop();

    // The position of the token being handled.
    unsigned Line() const;
    unsigned Column() const;
    // Where the element being started begins: its '<'.
    unsigned StartLine() const { return mStartLine; }
    unsigned StartColumn() const { return mStartColumn; }
    // Where an attribute of the element being started stands; its start where not found.
    void AttributePosition(const char* name, unsigned& line, unsigned& column) const;

    bool Failed() const { return mFailed; }
    const std::string& Error() const { return mError; }
    unsigned ErrorLine() const { return mErrorLine; }
    unsigned ErrorColumn() const { return mErrorColumn; }

private:
    friend struct TokenizerCallbacks;

    void _Fail(const std::string& message, unsigned line, unsigned column);
    void _MarkStart();

    XmlTokenHandler& mHandler;
    std::string mFileName;
    void* mpContext = nullptr;
    bool mStarted = false;
    bool mFailed = false;
    std::string mError;
    unsigned mErrorLine = 0;
    unsigned mErrorColumn = 0;
    unsigned mStartLine = 0;
    unsigned mStartColumn = 0;
    // The start tag in the parser's buffer, while its element is being started.
    const char* mpTagStart = nullptr;
    const char* mpTagEnd = nullptr;
};

} // namespace Internal
} // namespace NODX220Xml
