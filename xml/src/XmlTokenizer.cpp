#include "XmlTokenizer.h"

#include <cstring>
#include <vector>

#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/SAX2.h>
#include <libxml/xmlerror.h>

namespace NODX220Xml {
namespace Internal {

namespace {

const char* Text(const xmlChar* text)
{
    return reinterpret_cast<const char*>(text);
}

} // namespace

// The SAX2 callbacks: each gets the tokenizer as its user data.
struct TokenizerCallbacks {
    // The parser hands its context to every callback; the tokenizer rides along in it.
    static XmlTokenizer& Of(void* context) { return *static_cast<XmlTokenizer*>(static_cast<xmlParserCtxtPtr>(context)->_private); }

    static void StartElement(void* userData, const xmlChar* localName, const xmlChar* prefix,
                             const xmlChar*, int, const xmlChar**, int attributeCount, int,
                             const xmlChar** attributes)
    {
        XmlTokenizer& tokenizer = Of(userData);
        if (tokenizer.mFailed) {
            return;
        }
        // Five pointers per attribute: local name, prefix, namespace, value start, value end.
        thread_local std::vector<std::string> names;
        thread_local std::vector<std::string> values;
        thread_local std::vector<XmlAttribute> list;
        names.resize(static_cast<size_t>(attributeCount));
        values.resize(static_cast<size_t>(attributeCount));
        list.resize(static_cast<size_t>(attributeCount));
        for (int i = 0; i < attributeCount; ++i) {
            const xmlChar** attribute = attributes + 5 * i;
            std::string& name = names[static_cast<size_t>(i)];
            name.clear();
            if (attribute[1] != nullptr) {
                name.append(Text(attribute[1])).append(":");
            }
            name.append(Text(attribute[0]));
            values[static_cast<size_t>(i)].assign(Text(attribute[3]),
                                                  static_cast<size_t>(attribute[4] - attribute[3]));
            list[static_cast<size_t>(i)] = {name.c_str(), values[static_cast<size_t>(i)].c_str()};
        }
        tokenizer._MarkStart();
        std::string qualified;
        const char* name = Text(localName);
        if (prefix != nullptr) {
            qualified.append(Text(prefix)).append(":").append(Text(localName));
            name = qualified.c_str();
        }
        tokenizer.mHandler.StartElement(name, list.data(), list.size());
    }

    static void EndElement(void* userData, const xmlChar* localName, const xmlChar* prefix, const xmlChar*)
    {
        XmlTokenizer& tokenizer = Of(userData);
        if (tokenizer.mFailed) {
            return;
        }
        if (prefix != nullptr) {
            std::string qualified(Text(prefix));
            qualified.append(":").append(Text(localName));
            tokenizer.mHandler.EndElement(qualified.c_str());
        } else {
            tokenizer.mHandler.EndElement(Text(localName));
        }
    }

    static void Characters(void* userData, const xmlChar* text, int length)
    {
        XmlTokenizer& tokenizer = Of(userData);
        if (!tokenizer.mFailed) {
            tokenizer.mHandler.Text(Text(text), static_cast<size_t>(length));
        }
    }

    static void Comment(void* userData, const xmlChar* text)
    {
        XmlTokenizer& tokenizer = Of(userData);
        if (!tokenizer.mFailed) {
            tokenizer.mHandler.Comment(Text(text));
        }
    }

    static void ProcessingInstruction(void* userData, const xmlChar* target, const xmlChar* data)
    {
        XmlTokenizer& tokenizer = Of(userData);
        if (!tokenizer.mFailed) {
            tokenizer.mHandler.ProcessingInstruction(Text(target), data != nullptr ? Text(data) : "");
        }
    }

    static void Error(void* userData, xmlErrorPtr error)
    {
        if (error == nullptr || error->level < XML_ERR_ERROR) {
            return;
        }
        XmlTokenizer& tokenizer = Of(userData);
        if (tokenizer.mFailed) {
            return;
        }
        std::string message = error->message != nullptr ? error->message : "malformed XML";
        while (!message.empty() && (message.back() == '\n' || message.back() == ' ')) {
            message.pop_back();
        }
        tokenizer._Fail(message, static_cast<unsigned>(error->line > 0 ? error->line : 0),
                        static_cast<unsigned>(error->int2 > 0 ? error->int2 : 0));
    }

    // ODX documents declare no entities; a document that does is not read (its references
    // would otherwise vanish, or expand beyond measure).
    static void EntityDeclaration(void* context, const xmlChar* name, int, const xmlChar*, const xmlChar*, xmlChar*)
    {
        XmlTokenizer& tokenizer = Of(context);
        tokenizer._Fail(std::string("the document declares the entity '") + Text(name) +
                            "'; only the predefined entities are read",
                        tokenizer.Line(), tokenizer.Column());
    }

    // Nothing outside the document is ever loaded.
    static xmlParserInputPtr NoEntity(void*, const xmlChar*, const xmlChar*) { return nullptr; }
};

XmlTokenizer::XmlTokenizer(XmlTokenHandler& handler, const std::string& fileName)
    : mHandler(handler), mFileName(fileName)
{
    xmlSAXHandler sax;
    std::memset(&sax, 0, sizeof sax);
    sax.initialized = XML_SAX2_MAGIC;
    sax.startElementNs = TokenizerCallbacks::StartElement;
    sax.endElementNs = TokenizerCallbacks::EndElement;
    sax.characters = TokenizerCallbacks::Characters;
    sax.cdataBlock = TokenizerCallbacks::Characters;
    sax.comment = TokenizerCallbacks::Comment;
    sax.processingInstruction = TokenizerCallbacks::ProcessingInstruction;
    sax.serror = TokenizerCallbacks::Error;
    // Entities other than the predefined ones and character references are not declared
    // anywhere the parser looks, so they are errors; no DTD or external entity is loaded.
    sax.resolveEntity = TokenizerCallbacks::NoEntity;
    sax.entityDecl = TokenizerCallbacks::EntityDeclaration;
    xmlParserCtxtPtr context = xmlCreatePushParserCtxt(&sax, nullptr, nullptr, 0, mFileName.c_str());
    if (context == nullptr) {
        _Fail("the XML parser could not be started", 0, 0);
        return;
    }
    context->_private = this;
    xmlCtxtUseOptions(context, XML_PARSE_NONET | XML_PARSE_NOCDATA);
    // Attribute values come decoded ("&amp;" as "&", not kept as "&#38;"). Only the predefined
    // entities and character references can be replaced: nothing declares others.
    context->replaceEntities = 1;
    mpContext = context;
}

XmlTokenizer::~XmlTokenizer()
{
    if (mpContext != nullptr) {
        auto* context = static_cast<xmlParserCtxtPtr>(mpContext);
        if (context->myDoc != nullptr) {
            xmlFreeDoc(context->myDoc);
        }
        xmlFreeParserCtxt(context);
    }
}

bool XmlTokenizer::Feed(const char* data, size_t size)
{
    if (mFailed || mpContext == nullptr) {
        return false;
    }
    auto* context = static_cast<xmlParserCtxtPtr>(mpContext);
    // The parser takes int sizes: feed large blocks in slices.
    const size_t slice = 1u << 20;
    while (size > 0 && !mFailed) {
        const size_t piece = size < slice ? size : slice;
        const int status = xmlParseChunk(context, data, static_cast<int>(piece), 0);
        if (status != 0 && !mFailed) {
            _Fail("malformed XML", Line(), Column());
        }
        data += piece;
        size -= piece;
    }
    return !mFailed;
}

bool XmlTokenizer::Finish()
{
    if (mFailed || mpContext == nullptr) {
        return false;
    }
    auto* context = static_cast<xmlParserCtxtPtr>(mpContext);
    const int status = xmlParseChunk(context, nullptr, 0, 1);
    if ((status != 0 || !context->wellFormed) && !mFailed) {
        _Fail("malformed XML", Line(), Column());
    }
    return !mFailed;
}

void XmlTokenizer::Stop()
{
    if (mpContext != nullptr) {
        xmlStopParser(static_cast<xmlParserCtxtPtr>(mpContext));
    }
}

void XmlTokenizer::_MarkStart()
{
    // The parser stands at the end of the start tag, which is still in its buffer: the tag
    // starts at the last '<' before it (no '<' can stand inside attribute values).
    auto* context = static_cast<xmlParserCtxtPtr>(mpContext);
    const xmlChar* base = context->input->base;
    const xmlChar* cur = context->input->cur;
    const xmlChar* start = cur;
    while (start > base && *start != '<') {
        --start;
    }
    mStartLine = Line();
    mStartColumn = Column();
    mpTagStart = nullptr;
    mpTagEnd = nullptr;
    if (*start != '<') {
        return;
    }
    mpTagStart = reinterpret_cast<const char*>(start);
    mpTagEnd = reinterpret_cast<const char*>(cur);
    unsigned breaks = 0;
    for (const xmlChar* c = start; c < cur; ++c) {
        breaks += *c == '\n' ? 1 : 0;
    }
    mStartLine -= breaks;
    if (breaks == 0) {
        mStartColumn -= static_cast<unsigned>(cur - start);
        return;
    }
    const xmlChar* lineStart = start;
    while (lineStart > base && lineStart[-1] != '\n') {
        --lineStart;
    }
    mStartColumn = static_cast<unsigned>(start - lineStart) + 1;
}

void XmlTokenizer::AttributePosition(const char* name, unsigned& line, unsigned& column) const
{
    line = mStartLine;
    column = mStartColumn;
    if (mpTagStart == nullptr) {
        return;
    }
    const size_t length = std::strlen(name);
    unsigned atLine = mStartLine;
    unsigned atColumn = mStartColumn;
    for (const char* c = mpTagStart; c + length < mpTagEnd; ++c) {
        const bool after = c > mpTagStart && (c[-1] == ' ' || c[-1] == '\t' || c[-1] == '\n' || c[-1] == '\r');
        if (after && std::strncmp(c, name, length) == 0) {
            const char* next = c + length;
            while (next < mpTagEnd && (*next == ' ' || *next == '\t' || *next == '\n' || *next == '\r')) {
                ++next;
            }
            if (next < mpTagEnd && *next == '=') {
                line = atLine;
                column = atColumn;
                return;
            }
        }
        if (*c == '\n') {
            ++atLine;
            atColumn = 1;
        } else {
            ++atColumn;
        }
    }
}

unsigned XmlTokenizer::Line() const
{
    return mpContext != nullptr ? static_cast<unsigned>(xmlSAX2GetLineNumber(mpContext)) : 0;
}

unsigned XmlTokenizer::Column() const
{
    return mpContext != nullptr ? static_cast<unsigned>(xmlSAX2GetColumnNumber(mpContext)) : 0;
}

void XmlTokenizer::_Fail(const std::string& message, unsigned line, unsigned column)
{
    if (mFailed) {
        return;
    }
    mFailed = true;
    mError = message;
    mErrorLine = line;
    mErrorColumn = column;
    Stop();
}

} // namespace Internal
} // namespace NODX220Xml
