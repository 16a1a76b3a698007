#include "TesselODX220Xml/VOdxWriter.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <functional>
#include <map>
#include <set>

#include <zip.h>

#include "TableSupport.h"
#include "Tables.h"
#include "TesselODX220Model.h"
#include "TesselODX220Xml/VOdxDocuments.h"

namespace NODX220Xml {

using namespace NODX220;
using namespace Internal;

namespace {

const char* const kXmlDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

void AppendEscaped(std::string& out, const char* text, bool attribute)
{
    for (const char* c = text; *c != '\0'; ++c) {
        switch (*c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += attribute ? "&quot;" : "\"";
            break;
        default:
            out += *c;
        }
    }
}

// Markup is stored escaped already; only quotes in attribute values still need it.
void AppendQuoteEscaped(std::string& out, const char* text)
{
    for (const char* c = text; *c != '\0'; ++c) {
        if (*c == '"') {
            out += "&quot;";
        } else {
            out += *c;
        }
    }
}

std::string EndingOf(VOdxTagEnum tag)
{
    switch (tag) {
    case TAG_DIAG_LAYER_CONTAINER:
        return ".odx-d";
    case TAG_COMPARAM_SPEC:
        return ".odx-c";
    case TAG_COMPARAM_SUBSET:
        return ".odx-cs";
    case TAG_FLASH:
        return ".odx-f";
    case TAG_VEHICLE_INFO_SPEC:
        return ".odx-v";
    case TAG_ECU_CONFIG:
        return ".odx-e";
    case TAG_FUNCTION_DICTIONARY:
        return ".odx-fd";
    case TAG_MULTIPLE_ECU_JOB_SPEC:
        return ".odx-m";
    default:
        return ".odx";
    }
}

// Writes elements by the tables of their classes into a text, indenting element content.
class DocumentWriter {
public:
    // With a sink, the text goes there in pieces as it grows, after complete elements: what
    // the writer may still take back (an empty wrapper, the break of an empty element) is never
    // among what went.
    using Sink = std::function<bool(const std::string& piece)>;

    DocumentWriter(std::string& out, unsigned indent, Sink sink = Sink())
        : mOut(out), mIndent(indent), mSink(std::move(sink))
    {
    }

    // Hands the rest to the sink; false when the sink failed.
    bool Finish()
    {
        if (mSink && !mFailed && !mOut.empty()) {
            mFailed = !mSink(mOut);
            mOut.clear();
        }
        return !mFailed;
    }

    void Root(VOdxCategory& category)
    {
        VOdx& root = category.GetRootElement();
        mOut += kXmlDeclaration;
        // What stood before the root belongs to the document: it is written there again.
        Annotations(category, 0);
        mOut += "<ODX MODEL-VERSION=\"";
        AppendEscaped(mOut, root.GetModelVersion(), true);
        mOut += "\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"";
        if (*root.GetSchemaLocation() != '\0') {
            mOut += " xsi:noNamespaceSchemaLocation=\"";
            AppendEscaped(mOut, root.GetSchemaLocation(), true);
            mOut += '"';
        }
        mOut += ">\n";
        Element(category, category.GetXmlTag().GetBuffer(), 1, false);
        mOut += "</ODX>\n";
    }

private:
    void Indent(unsigned depth) { mOut.append(static_cast<size_t>(depth) * mIndent, ' '); }

    void Annotations(VOdxElement& element, unsigned depth)
    {
        if (element.HasComment()) {
            Indent(depth);
            mOut += "<!--";
            mOut += element.GetComment();
            mOut += "-->\n";
        }
        VProcessingInstructionCollection& instructions = element.ProcessingInstructionCollection();
        for (auto it = instructions.Begin(); it != instructions.End(); ++it) {
            Indent(depth);
            mOut += "<?";
            mOut += (*it).GetName();
            if (*(*it).GetContent() != '\0') {
                mOut += ' ';
                mOut += (*it).GetContent();
            }
            mOut += "?>\n";
        }
    }

    static void Attributes(std::string& out, VOdxElement& element, const ClassTable& table)
    {
        std::string text;
        for (uint16_t i = 0; i < table.attributeCount; ++i) {
            const AttributeRule& rule = table.attributes[i];
            if (!rule.present(element)) {
                continue;
            }
            text.clear();
            rule.load(element, text);
            out += ' ';
            out += rule.name;
            out += "=\"";
            AppendEscaped(out, text.c_str(), true);
            out += '"';
        }
    }

    void Element(VOdxElement& element, const char* name, unsigned depth, bool annotate = true)
    {
        const ClassTable* table = TableOf(element);
        if (table == nullptr) {
            return;
        }
        if (table->transparent) {
            // Its members stand in the element that holds it.
            for (uint16_t i = 0; i < table->stepCount; ++i) {
                Step(element, table->steps[i], depth);
            }
            return;
        }
        if (annotate) {
            Annotations(element, depth);
        }
        Indent(depth);
        mOut += '<';
        mOut += name;
        if (table->content == Content::Reference) {
            // The attributes are the link object's.
            for (uint16_t i = 0; i < table->stepCount; ++i) {
                if (VOdxElement* link = table->steps[i].kind == StepKind::Element ? table->steps[i].child(element)
                                                                                 : nullptr) {
                    if (const ClassTable* linkTable = TableOf(*link)) {
                        Attributes(mOut, *link, *linkTable);
                    }
                }
            }
            mOut += "/>\n";
            return;
        }
        Attributes(mOut, element, *table);
        if (table->xsiType) {
            // The element name is the family's; the kind goes to xsi:type.
            mOut += " xsi:type=\"";
            mOut += VOdxTagEnumMapper::EnumToChar(element.GetOdxTag());
            mOut += '"';
        }
        switch (table->content) {
        case Content::Text: {
            std::string text;
            table->contentText(element, text);
            Inline(name, text.c_str());
            return;
        }
        case Content::Date:
            Inline(name, static_cast<VDateTime&>(element).AsStringDateTimeUtc("T"));
            return;
        case Content::Bytes:
            Inline(name, static_cast<NODX220::VByteStream&>(element).ToString(NTesselSharedUtil::eHexPlain).GetBuffer());
            return;
        default:
            break;
        }
        const size_t open = Position();
        mOut += '>';
        const size_t body = Position();
        if (table->content == Content::Markup) {
            // Markup stands inline: layout added there would become content.
            auto& description = static_cast<VDescription&>(element);
            if (description.HasDescContent()) {
                VSimpleXmlElement& root = description.GetContentAsDOM();
                for (unsigned i = 0; i < root.GetChildCount(); ++i) {
                    Node(root.GetChildElementAt(i));
                }
            }
        }
        // Members are written a line each; the line break after the start tag goes again when
        // no member was written.
        const size_t members = Position();
        mOut += '\n';
        for (uint16_t i = 0; i < table->stepCount; ++i) {
            Step(element, table->steps[i], depth + 1);
        }
        // Nothing was flushed when nothing was written, so these take back what is still here.
        if (Position() == members + 1) {
            mOut.resize(members - mFlushed);
        }
        if (Position() == body) {
            mOut.replace(open - mFlushed, 1, "/>\n");
            return;
        }
        if (LastCharacter() == '\n') {
            Indent(depth);
        }
        mOut += "</";
        mOut += name;
        mOut += ">\n";
        Flushed();
    }

    void Inline(const char* name, const char* text)
    {
        if (*text == '\0') {
            mOut += "/>\n";
            return;
        }
        mOut += '>';
        AppendEscaped(mOut, text, false);
        mOut += "</";
        mOut += name;
        mOut += ">\n";
        Flushed();
    }

    void Step(VOdxElement& owner, const MemberStep& step, unsigned depth)
    {
        switch (step.kind) {
        case StepKind::Element:
            if (VOdxElement* child = step.child(owner)) {
                Element(*child, StepName(step, *child).c_str(), depth);
            }
            return;
        case StepKind::Text:
            if (step.present(owner)) {
                std::string text;
                step.load(owner, text);
                Indent(depth);
                mOut += '<';
                mOut += step.name;
                Inline(step.name, text.c_str());
            }
            return;
        case StepKind::Items:
            step.items(owner, [this, depth, &step](VOdxElement& item) {
                if (StepTakes(step, item.GetOdxTag())) {
                    Element(item, StepName(step, item).c_str(), depth);
                }
            });
            return;
        case StepKind::Wrapper:
            Wrapped(step.name, depth, [&]() {
                step.items(owner, [this, depth, &step](VOdxElement& item) {
                    if (StepTakes(step, item.GetOdxTag())) {
                        Element(item, StepName(step, item).c_str(), depth + 1);
                    }
                });
            });
            return;
        case StepKind::TextItems:
            step.texts(owner, [this, depth, &step](const char* text) {
                Indent(depth);
                mOut += '<';
                mOut += step.itemName;
                Inline(step.itemName, text);
            });
            return;
        case StepKind::TextWrapper:
            Wrapped(step.name, depth, [&]() {
                step.texts(owner, [this, depth, &step](const char* text) {
                    Indent(depth + 1);
                    mOut += '<';
                    mOut += step.itemName;
                    Inline(step.itemName, text);
                });
            });
            return;
        }
    }

    // A plural wrapper around what `items` writes; nothing at all when that is nothing.
    template <class Items>
    void Wrapped(const char* name, unsigned depth, const Items& items)
    {
        const size_t start = Position();
        Indent(depth);
        mOut += '<';
        mOut += name;
        mOut += ">\n";
        const size_t body = Position();
        items();
        if (Position() == body) {
            mOut.resize(start - mFlushed);
            return;
        }
        Indent(depth);
        mOut += "</";
        mOut += name;
        mOut += ">\n";
    }

    // A node of description markup, as stored: its character data is escaped already.
    void Node(VSimpleXmlElement& node)
    {
        const VYAString& name = node.GetTagname();
        if (name.IsEmpty()) {
            mOut += node.GetPCData().GetBuffer();
            for (unsigned i = 0; i < node.GetChildCount(); ++i) {
                Node(node.GetChildElementAt(i));
            }
            return;
        }
        mOut += '<';
        mOut += name.GetBuffer();
        const VContainerYAString names = node.GetAttributeNames();
        for (unsigned i = 0; i < names.Size(); ++i) {
            mOut += ' ';
            mOut += names.At(i).GetBuffer();
            mOut += "=\"";
            AppendQuoteEscaped(mOut, node.GetAttribute(names.At(i)).GetBuffer());
            mOut += '"';
        }
        if (node.GetChildCount() == 0 && node.GetPCData().IsEmpty()) {
            mOut += "/>";
            return;
        }
        mOut += '>';
        mOut += node.GetPCData().GetBuffer();
        for (unsigned i = 0; i < node.GetChildCount(); ++i) {
            Node(node.GetChildElementAt(i));
        }
        mOut += "</";
        mOut += name.GetBuffer();
        mOut += '>';
    }

    // Where the text stands, counting what went to the sink.
    size_t Position() const { return mFlushed + mOut.size(); }

    char LastCharacter() const { return mOut.empty() ? mLastFlushed : mOut.back(); }

    // After a complete element: passes the text on once enough has gathered.
    void Flushed()
    {
        if (!mSink || mFailed || mOut.size() < kPiece) {
            return;
        }
        mFailed = !mSink(mOut);
        mFlushed += mOut.size();
        mLastFlushed = mOut.back();
        mOut.clear();
    }

    static constexpr size_t kPiece = 1 << 16;

    std::string& mOut;
    unsigned mIndent;
    Sink mSink;
    size_t mFlushed = 0;
    char mLastFlushed = '\n';
    bool mFailed = false;
};

std::vector<VOdxCategory*> CategoriesOf(VOdx& odx)
{
    std::vector<VOdxCategory*> categories;
    VOdxWalk::Children(odx, [&categories](VOdxElement& child) {
        if (auto* category = dynamic_cast<VOdxCategory*>(&child)) {
            categories.push_back(category);
        }
    });
    return categories;
}

const char* MimeTypeOf(const std::string& name)
{
    static const std::map<std::string, const char*> kTypes = {
        {".odx-d", "application/x-asam.odx.odx-d"},   {".odx-c", "application/x-asam.odx.odx-c"},
        {".odx-cs", "application/x-asam.odx.odx-cs"}, {".odx-f", "application/x-asam.odx.odx-f"},
        {".odx-v", "application/x-asam.odx.odx-v"},   {".odx-e", "application/x-asam.odx.odx-e"},
        {".odx-fd", "application/x-asam.odx.odx-fd"}, {".odx-m", "application/x-asam.odx.odx-m"},
    };
    const size_t dot = name.rfind('.');
    if (dot != std::string::npos) {
        auto found = kTypes.find(name.substr(dot));
        if (found != kTypes.end()) {
            return found->second;
        }
    }
    return "application/x-asam.odx";
}

// A catalog for documents written without one of their own.
std::string MakeCatalog(const std::vector<VWrittenDocument>& documents)
{
    std::string text = kXmlDeclaration;
    text += "<CATALOG xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" F-DTD-VERSION=\"ODX-2.2.0\" "
            "xsi:noNamespaceSchemaLocation=\"odx-cc.xsd\">\n  <SHORT-NAME>catalog</SHORT-NAME>\n  <ABLOCKS>\n"
            "    <ABLOCK>\n      <SHORT-NAME>documents</SHORT-NAME>\n      <FILES>\n";
    for (const VWrittenDocument& document : documents) {
        text += "        <FILE MIME-TYPE=\"";
        text += MimeTypeOf(document.mName);
        text += "\">";
        AppendEscaped(text, document.mName.c_str(), false);
        text += "</FILE>\n";
    }
    text += "      </FILES>\n    </ABLOCK>\n  </ABLOCKS>\n</CATALOG>\n";
    return text;
}

bool WriteWholeFile(const std::string& path, const void* data, size_t size, std::string& error)
{
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) {
        error = path + ": cannot write the file: " + std::strerror(errno);
        return false;
    }
    const bool written = std::fwrite(data, 1, size, file) == size;
    const bool closed = std::fclose(file) == 0;
    if (!written || !closed) {
        error = path + ": cannot write the file: " + std::strerror(errno);
        return false;
    }
    return true;
}

} // namespace

VOdxWriter::VOdxWriter(const VWriteOptions& options) : mOptions(options) {}

std::string VOdxWriter::WriteDocument(VOdxCategory& category) const
{
    std::string text;
    DocumentWriter(text, mOptions.mIndent).Root(category);
    return text;
}

std::string VOdxWriter::FileNameOf(VOdxCategory& category)
{
    const char* fileName = category.GetFileName();
    if (*fileName != '\0') {
        return fileName;
    }
    std::string name = category.GetShortName();
    if (name.empty()) {
        name = "document";
    }
    return name + EndingOf(category.GetOdxTag());
}

std::vector<VWrittenDocument> VOdxWriter::WriteDocuments(VOdx& odx) const
{
    std::vector<VWrittenDocument> documents;
    for (const auto& named : NamedCategories(odx)) {
        documents.push_back({named.first, WriteDocument(*named.second)});
    }
    return documents;
}

std::vector<std::pair<std::string, VOdxCategory*>> VOdxWriter::NamedCategories(VOdx& odx)
{
    std::vector<std::pair<std::string, VOdxCategory*>> named;
    std::set<std::string> names;
    for (VOdxCategory* category : CategoriesOf(odx)) {
        std::string name = FileNameOf(*category);
        // Two documents never share a name: a later one gets a number.
        if (!names.insert(name).second) {
            const size_t dot = name.rfind('.');
            const std::string stem = dot == std::string::npos ? name : name.substr(0, dot);
            const std::string ending = dot == std::string::npos ? "" : name.substr(dot);
            for (unsigned n = 2; !names.insert(name = stem + "-" + std::to_string(n) + ending).second; ++n) {
            }
        }
        named.emplace_back(name, category);
    }
    return named;
}

bool VOdxWriter::WriteDirectory(VOdx& odx, const std::string& directory, std::string& error) const
{
    for (const auto& named : NamedCategories(odx)) {
        if (!WriteCategoryFile(*named.second, directory + "/" + named.first, error)) {
            return false;
        }
    }
    return true;
}

bool VOdxWriter::WriteCategoryFile(VOdxCategory& category, const std::string& path, std::string& error) const
{
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) {
        error = path + ": cannot write the file: " + std::strerror(errno);
        return false;
    }
    std::string buffer;
    DocumentWriter writer(buffer, mOptions.mIndent, [file](const std::string& piece) {
        return std::fwrite(piece.data(), 1, piece.size(), file) == piece.size();
    });
    writer.Root(category);
    const bool written = writer.Finish();
    const bool closed = std::fclose(file) == 0;
    if (!written || !closed) {
        error = path + ": cannot write the file: " + std::strerror(errno);
        return false;
    }
    return true;
}

std::vector<unsigned char> VOdxWriter::WritePdxToMemory(VOdx& odx, const VPdxCatalog* catalog,
                                                        const std::vector<VArchiveEntry>* entries,
                                                        std::string& error) const
{
    const std::vector<VWrittenDocument> documents = WriteDocuments(odx);
    const std::string catalogText = catalog != nullptr ? catalog->mText : MakeCatalog(documents);
    std::vector<unsigned char> archive;
    zip_error_t zipError;
    zip_error_init(&zipError);
    zip_source_t* buffer = zip_source_buffer_create(nullptr, 0, 0, &zipError);
    zip_t* zip = buffer != nullptr ? zip_open_from_source(buffer, ZIP_TRUNCATE, &zipError) : nullptr;
    if (zip == nullptr) {
        error = std::string("cannot make the archive: ") + zip_error_strerror(&zipError);
        if (buffer != nullptr) {
            zip_source_free(buffer);
        }
        zip_error_fini(&zipError);
        return archive;
    }
    zip_source_keep(buffer);
    // Entries carry a fixed time, so that the same model gives the same archive.
    const time_t stamp = 315532800;
    bool ok = true;
    auto add = [&](const std::string& name, const void* data, size_t size) {
        zip_source_t* source = zip_source_buffer(zip, data, size, 0);
        const zip_int64_t index = source != nullptr ? zip_file_add(zip, name.c_str(), source, ZIP_FL_ENC_UTF_8) : -1;
        if (index < 0) {
            if (source != nullptr) {
                zip_source_free(source);
            }
            error = "cannot add " + name + " to the archive: " + zip_strerror(zip);
            ok = false;
            return;
        }
        zip_file_set_mtime(zip, static_cast<zip_uint64_t>(index), stamp, 0);
    };
    add("index.xml", catalogText.data(), catalogText.size());
    for (const VWrittenDocument& document : documents) {
        if (ok) {
            add(document.mName, document.mText.data(), document.mText.size());
        }
    }
    if (entries != nullptr) {
        for (const VArchiveEntry& entry : *entries) {
            if (ok) {
                add(entry.mName, entry.mData.data(), entry.mData.size());
            }
        }
    }
    if (!ok || zip_close(zip) != 0) {
        if (ok) {
            error = std::string("cannot make the archive: ") + zip_strerror(zip);
        }
        zip_discard(zip);
        zip_source_free(buffer);
        zip_error_fini(&zipError);
        return archive;
    }
    if (zip_source_open(buffer) == 0) {
        zip_source_seek(buffer, 0, SEEK_END);
        const zip_int64_t size = zip_source_tell(buffer);
        zip_source_seek(buffer, 0, SEEK_SET);
        if (size > 0) {
            archive.resize(static_cast<size_t>(size));
            zip_source_read(buffer, archive.data(), static_cast<zip_uint64_t>(size));
        }
        zip_source_close(buffer);
    }
    zip_source_free(buffer);
    zip_error_fini(&zipError);
    return archive;
}

bool VOdxWriter::WritePdx(VOdx& odx, const std::string& path, const VPdxCatalog* catalog,
                          const std::vector<VArchiveEntry>* entries, std::string& error) const
{
    const std::vector<unsigned char> archive = WritePdxToMemory(odx, catalog, entries, error);
    if (archive.empty()) {
        return false;
    }
    return WriteWholeFile(path, archive.data(), archive.size(), error);
}

} // namespace NODX220Xml
