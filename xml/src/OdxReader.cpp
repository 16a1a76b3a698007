#include "TesselODX220Xml/VOdxReader.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <typeinfo>

#include "DocumentReader.h"
#include "PdxArchive.h"
#include "TesselODX220Model.h"
#include "TesselODX220Xml/VOdxDocuments.h"
#include "XmlTokenizer.h"

namespace NODX220Xml {

using namespace NODX220;
using Internal::LoadState;

std::string VDiagnostic::ToString() const
{
    static const char* const kWords[] = {"error", "warning", "note"};
    std::string text = mFile;
    text += ':' + std::to_string(mLine) + ':' + std::to_string(mColumn) + ": ";
    text += kWords[mSeverity];
    text += ": " + mMessage;
    if (!mPath.empty()) {
        text += " [" + mPath + "]";
    }
    return text;
}

VLoadResult::VLoadResult() = default;

VLoadResult::VLoadResult(VLoadResult&& other) noexcept
    : mpDocument(other.mpDocument),
      mDiagnostics(std::move(other.mDiagnostics)),
      mLoadedFiles(std::move(other.mLoadedFiles)),
      mUnhandled(other.mUnhandled),
      mUnresolved(other.mUnresolved),
      mLinks(other.mLinks),
      mLoadMilliseconds(other.mLoadMilliseconds),
      mHasCatalog(other.mHasCatalog),
      mCatalog(std::move(other.mCatalog)),
      mArchiveEntries(std::move(other.mArchiveEntries))
{
    other.mpDocument = nullptr;
}

VLoadResult& VLoadResult::operator=(VLoadResult&& other) noexcept
{
    if (this != &other) {
        if (mpDocument != nullptr) {
            VOdxDocuments::Destroy(*mpDocument);
        }
        mpDocument = other.mpDocument;
        other.mpDocument = nullptr;
        mDiagnostics = std::move(other.mDiagnostics);
        mLoadedFiles = std::move(other.mLoadedFiles);
        mUnhandled = other.mUnhandled;
        mUnresolved = other.mUnresolved;
        mLinks = other.mLinks;
        mLoadMilliseconds = other.mLoadMilliseconds;
        mHasCatalog = other.mHasCatalog;
        mCatalog = std::move(other.mCatalog);
        mArchiveEntries = std::move(other.mArchiveEntries);
    }
    return *this;
}

VLoadResult::~VLoadResult()
{
    if (mpDocument != nullptr) {
        VOdxDocuments::Destroy(*mpDocument);
    }
}

VOdx* VLoadResult::ReleaseDocument()
{
    VOdx* document = mpDocument;
    mpDocument = nullptr;
    return document;
}

size_t VLoadResult::CountDiagnostics(VSeverity severity) const
{
    return static_cast<size_t>(std::count_if(mDiagnostics.begin(), mDiagnostics.end(),
                                             [severity](const VDiagnostic& d) { return d.mSeverity == severity; }));
}

namespace {

bool EndsWith(const std::string& text, const char* suffix)
{
    const size_t length = std::strlen(suffix);
    if (text.size() < length) {
        return false;
    }
    for (size_t i = 0; i < length; ++i) {
        if (std::tolower(static_cast<unsigned char>(text[text.size() - length + i])) != suffix[i]) {
            return false;
        }
    }
    return true;
}

bool IsOdxName(const std::string& name)
{
    static const char* const kEndings[] = {".odx", ".odx-d", ".odx-c", ".odx-cs", ".odx-v",
                                           ".odx-f", ".odx-m", ".odx-fd", ".odx-e"};
    for (const char* ending : kEndings) {
        if (EndsWith(name, ending)) {
            return true;
        }
    }
    return false;
}

// Whether a text starts like an ODX document: its first element is ODX.
bool LooksLikeOdx(const unsigned char* data, size_t size)
{
    const std::string head(reinterpret_cast<const char*>(data), std::min<size_t>(size, 4096));
    size_t at = 0;
    while ((at = head.find('<', at)) != std::string::npos) {
        if (head.compare(at, 2, "<?") == 0 || head.compare(at, 2, "<!") == 0) {
            ++at;
            continue;
        }
        return head.compare(at, 4, "<ODX") == 0 &&
               (at + 4 >= head.size() || std::strchr(" \t\r\n>/", head[at + 4]) != nullptr);
    }
    return false;
}

// The largest archive entry kept as bytes (job code and the like).
const size_t kMaxKeptEntry = size_t(512) << 20;

bool IsZip(const void* data, size_t size)
{
    return size >= 4 && std::memcmp(data, "PK\x03\x04", 4) == 0;
}

// The catalog of an archive: short names, blocks and files, with where each file is named.
class CatalogReader : public Internal::XmlTokenHandler {
public:
    struct Named {
        std::string name;
        unsigned line;
        unsigned column;
    };

    explicit CatalogReader(VPdxCatalog& catalog) : mCatalog(catalog) {}
    void SetTokenizer(Internal::XmlTokenizer& tokenizer) { mpTokenizer = &tokenizer; }

    void StartElement(const char* name, const Internal::XmlAttribute* attributes, size_t count) override
    {
        mPath.emplace_back(name);
        mText.clear();
        if (std::strcmp(name, "CATALOG") == 0) {
            mCatalog.mDtdVersion = Attribute(attributes, count, "F-DTD-VERSION");
        } else if (std::strcmp(name, "ABLOCK") == 0) {
            mCatalog.mBlocks.emplace_back();
            mCatalog.mBlocks.back().mUpdate = Attribute(attributes, count, "UPD");
        } else if (std::strcmp(name, "FILE") == 0 && !mCatalog.mBlocks.empty()) {
            VPdxFile file;
            file.mCreationDate = Attribute(attributes, count, "CREATION-DATE");
            file.mMimeType = Attribute(attributes, count, "MIME-TYPE");
            mCatalog.mBlocks.back().mFiles.push_back(file);
            mFiles.push_back({"", mpTokenizer->Line(), mpTokenizer->Column()});
        }
    }

    void EndElement(const char* name) override
    {
        const std::string parent = mPath.size() >= 2 ? mPath[mPath.size() - 2] : "";
        if (std::strcmp(name, "SHORT-NAME") == 0) {
            if (parent == "CATALOG") {
                mCatalog.mShortName = mText;
            } else if (parent == "ABLOCK" && !mCatalog.mBlocks.empty()) {
                mCatalog.mBlocks.back().mShortName = mText;
            }
        } else if (std::strcmp(name, "FILE") == 0 && !mCatalog.mBlocks.empty()) {
            const size_t first = mText.find_first_not_of(" \t\r\n");
            const size_t last = mText.find_last_not_of(" \t\r\n");
            const std::string file = first == std::string::npos ? "" : mText.substr(first, last - first + 1);
            mCatalog.mBlocks.back().mFiles.back().mName = file;
            mFiles.back().name = file;
        }
        mPath.pop_back();
        mText.clear();
    }

    void Text(const char* text, size_t length) override { mText.append(text, length); }
    void Comment(const char*) override {}
    void ProcessingInstruction(const char*, const char*) override {}

    const std::vector<Named>& Files() const { return mFiles; }

private:
    static std::string Attribute(const Internal::XmlAttribute* attributes, size_t count, const char* name)
    {
        for (size_t i = 0; i < count; ++i) {
            if (std::strcmp(attributes[i].name, name) == 0) {
                return attributes[i].value;
            }
        }
        return "";
    }

    VPdxCatalog& mCatalog;
    Internal::XmlTokenizer* mpTokenizer = nullptr;
    std::vector<std::string> mPath;
    std::string mText;
    std::vector<Named> mFiles;
};

} // namespace

// One load: the files and archives read into one document.
struct ReaderAccess {
    VLoadResult& result;
    const VReadOptions& options;
    LoadState state;
    bool failed = false;

    ReaderAccess(VLoadResult& loadResult, const VReadOptions& readOptions, VOdx& root)
        : result(loadResult), options(readOptions), state{root, loadResult.mDiagnostics, {}, 0}
    {
    }

    void Error(const std::string& file, const std::string& message, unsigned line = 0, unsigned column = 0)
    {
        VDiagnostic diagnostic;
        diagnostic.mFile = file;
        diagnostic.mLine = line;
        diagnostic.mColumn = column;
        diagnostic.mMessage = message;
        result.mDiagnostics.push_back(std::move(diagnostic));
        failed = true;
    }

    // Reads one document from a source of pieces; false when it failed.
    bool ReadDocument(const std::string& name, const std::function<bool(Internal::DocumentReader&)>& feed)
    {
        const size_t slash = name.find_last_of('/');
        Internal::DocumentReader reader(state, name, slash == std::string::npos ? name : name.substr(slash + 1));
        if (!feed(reader) || !reader.Finish()) {
            failed = true;
            return false;
        }
        result.mLoadedFiles.push_back(name);
        return true;
    }

    bool ReadDocumentBuffer(const std::string& name, const void* data, size_t size)
    {
        return ReadDocument(name, [&](Internal::DocumentReader& reader) {
            return reader.Feed(static_cast<const char*>(data), size);
        });
    }

    bool ReadDocumentFile(const std::string& path)
    {
        std::FILE* file = std::fopen(path.c_str(), "rb");
        if (file == nullptr) {
            Error(path, std::string("cannot open the file: ") + std::strerror(errno));
            return false;
        }
        bool readError = false;
        const bool ok = ReadDocument(path, [&](Internal::DocumentReader& reader) {
            std::vector<char> buffer(1 << 18);
            for (;;) {
                const size_t got = std::fread(buffer.data(), 1, buffer.size(), file);
                if (got > 0 && !reader.Feed(buffer.data(), got)) {
                    return false;
                }
                if (got < buffer.size()) {
                    readError = std::ferror(file) != 0;
                    return !readError;
                }
            }
        });
        std::fclose(file);
        if (readError) {
            Error(path, "the file could not be read to its end");
        }
        return ok;
    }

    bool ReadArchive(const std::string& name, std::unique_ptr<Internal::PdxArchive> archive)
    {
        if (!archive->Has("index.xml")) {
            Error(name, "the archive has no index.xml catalog");
            return false;
        }
        for (const std::string& entry : archive->EntryNames()) {
            if (!Internal::PdxArchive::IsSafeName(entry)) {
                Error(name, "the entry name '" + entry + "' climbs out of the archive");
                return false;
            }
        }
        // The catalog, kept as it was read.
        VPdxCatalog catalog;
        CatalogReader catalogReader(catalog);
        Internal::XmlTokenizer tokenizer(catalogReader, name + "/index.xml");
        catalogReader.SetTokenizer(tokenizer);
        std::string error;
        const bool catalogRead = archive->Read("index.xml", [&](const char* data, size_t size) {
            catalog.mText.append(data, size);
            return tokenizer.Feed(data, size);
        }, error);
        if (!catalogRead) {
            Error(name + "/index.xml", error);
            return false;
        }
        if (!tokenizer.Finish()) {
            Error(name + "/index.xml", tokenizer.Error(), tokenizer.ErrorLine(), tokenizer.ErrorColumn());
            return false;
        }
        bool ok = true;
        std::vector<std::string> named;
        for (const CatalogReader::Named& file : catalogReader.Files()) {
            const std::string where = name + "/index.xml";
            if (!Internal::PdxArchive::IsSafeName(file.name)) {
                Error(where, "the catalog names '" + file.name + "', which climbs out of the archive", file.line,
                      file.column);
                ok = false;
                continue;
            }
            if (!archive->Has(file.name)) {
                Error(where, "the catalog names '" + file.name + "', which the archive lacks", file.line,
                      file.column);
                ok = false;
                continue;
            }
            named.push_back(file.name);
        }
        if (!ok && !options.mLenient) {
            return false;
        }
        for (const std::string& entry : archive->EntryNames()) {
            if (entry == "index.xml" || (!entry.empty() && entry.back() == '/')) {
                continue;
            }
            const std::string where = name + "/" + entry;
            const bool inCatalog = std::find(named.begin(), named.end(), entry) != named.end();
            // Documents are streamed into the model; anything else is kept as bytes.
            bool odx = inCatalog && IsOdxName(entry);
            std::vector<unsigned char> bytes;
            if (!odx) {
                bool tooLarge = false;
                if (!archive->Read(entry, [&](const char* data, size_t size) {
                        // Kept entries live in memory: one that unpacks beyond reason is refused.
                        if (bytes.size() + size > kMaxKeptEntry) {
                            tooLarge = true;
                            return false;
                        }
                        bytes.insert(bytes.end(), data, data + size);
                        return true;
                    }, error) || tooLarge) {
                    Error(where, tooLarge ? "the entry unpacks to more than " + std::to_string(kMaxKeptEntry >> 20) +
                                                " MiB, which is more than is kept in memory"
                                          : error);
                    ok = false;
                    continue;
                }
                if (!(inCatalog && LooksLikeOdx(bytes.data(), bytes.size()))) {
                    result.mArchiveEntries.push_back({entry, std::move(bytes)});
                    continue;
                }
                ok = ReadDocumentBuffer(where, bytes.data(), bytes.size()) && ok;
                continue;
            }
            bool readFailed = false;
            const bool documentOk = ReadDocument(where, [&](Internal::DocumentReader& reader) {
                if (!archive->Read(entry, [&](const char* data, size_t size) { return reader.Feed(data, size); },
                                   error)) {
                    readFailed = true;
                    return false;
                }
                return true;
            });
            if (readFailed) {
                Error(where, error);
            }
            ok = documentOk && ok;
        }
        if (!result.mHasCatalog) {
            result.mHasCatalog = true;
            result.mCatalog = std::move(catalog);
        }
        return ok;
    }

    void ReadPath(const std::string& path)
    {
        if (EndsWith(path, ".pdx")) {
            std::string error;
            std::unique_ptr<Internal::PdxArchive> archive = Internal::PdxArchive::OpenFile(path, error);
            if (archive == nullptr) {
                Error(path, error);
                return;
            }
            ReadArchive(path, std::move(archive));
            return;
        }
        ReadDocumentFile(path);
    }

    void ReadMemory(const std::string& name, const void* data, size_t size)
    {
        if (IsZip(data, size)) {
            std::string error;
            std::unique_ptr<Internal::PdxArchive> archive = Internal::PdxArchive::OpenMemory(data, size, error);
            if (archive == nullptr) {
                Error(name, error);
                return;
            }
            ReadArchive(name, std::move(archive));
            return;
        }
        ReadDocumentBuffer(name, data, size);
    }

    // Resolves the references and reports those that found no target, where they were read.
    void Complete()
    {
        VOdx& root = state.root;
        VOdxLinkSet& links = root.GetOdxLinkSet();
        if (options.mResolveReferences) {
            links.ResolveReferences(options.mSilentResolution);
        }
        result.mLinks = links.Count();
        for (auto it = links.Begin(); it != links.End(); ++it) {
            VOdxlink& link = *it;
            if (link.HasReferencable()) {
                continue;
            }
            ++result.mUnresolved;
            if (!options.mResolveReferences) {
                continue;
            }
            VDiagnostic diagnostic;
            diagnostic.mSeverity = eSeverityWarning;
            auto origin = state.linkOrigins.find(&link);
            if (origin != state.linkOrigins.end()) {
                diagnostic.mFile = origin->second.file;
                diagnostic.mLine = origin->second.line;
                diagnostic.mColumn = origin->second.column;
            }
            // A plain id link stands inside the reference element that names it; an element that
            // is itself the link (a parent or comparam reference) names its own place.
            VOdxElement& place = typeid(link) == typeid(VOdxlink) ? link.GetParent() : link;
            diagnostic.mPath = place.GetXPATH(eXPathShortName).GetBuffer();
            diagnostic.mMessage = std::string("no target for the reference to '") + link.GetIdRef() + "'";
            if (link.HasDocref()) {
                diagnostic.mMessage += std::string(" in '") + link.GetDocref() + "'";
            }
            result.mDiagnostics.push_back(std::move(diagnostic));
        }
        result.mUnhandled = state.unhandled;
    }

    // A load from beginning to end: by default one failed file fails it, and nothing of the
    // document is kept.
    static VLoadResult Run(const VReadOptions& options, const std::function<void(ReaderAccess&)>& load)
    {
        const auto start = std::chrono::steady_clock::now();
        VLoadResult result;
        VOdx& root = VOdxFactory::Instance().MakeOdx();
        {
            ReaderAccess access(result, options, root);
            load(access);
            if (access.failed && (!options.mLenient || result.mLoadedFiles.empty())) {
                VOdxDocuments::Destroy(root);
            } else {
                access.Complete();
                result.mpDocument = &root;
            }
        }
        const auto end = std::chrono::steady_clock::now();
        result.mLoadMilliseconds = std::chrono::duration<double, std::milli>(end - start).count();
        return result;
    }
};

VOdxReader::VOdxReader(const VReadOptions& options) : mOptions(options) {}

VLoadResult VOdxReader::ReadFile(const std::string& path)
{
    return ReaderAccess::Run(mOptions, [&](ReaderAccess& load) { load.ReadPath(path); });
}

VLoadResult VOdxReader::ReadFiles(const std::vector<std::string>& paths)
{
    return ReaderAccess::Run(mOptions, [&](ReaderAccess& load) {
        for (const std::string& path : paths) {
            load.ReadPath(path);
            if (load.failed && !mOptions.mLenient) {
                break;
            }
        }
    });
}

VLoadResult VOdxReader::ReadBuffer(const std::string& name, const void* data, size_t size)
{
    return ReaderAccess::Run(mOptions, [&](ReaderAccess& load) { load.ReadMemory(name, data, size); });
}

VLoadResult VOdxReader::ReadBuffers(const std::vector<VBuffer>& buffers)
{
    return ReaderAccess::Run(mOptions, [&](ReaderAccess& load) {
        for (const VBuffer& buffer : buffers) {
            load.ReadMemory(buffer.mName, buffer.mpData, buffer.mSize);
            if (load.failed && !mOptions.mLenient) {
                break;
            }
        }
    });
}

} // namespace NODX220Xml
