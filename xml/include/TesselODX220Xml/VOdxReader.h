#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "TesselODX220Xml/TesselODX220XmlExport.h"

namespace NODX220 {
class VOdx;
}

namespace NODX220Xml {

enum VSeverity {
    eSeverityError = 0,
    eSeverityWarning = 1,
    eSeverityNote = 2
};

// One finding of a load: where it is (file, line and column from 1, 0 where unknown; the
// element's place in the file by positions, such as ODX[1]/FLASH[1]/SDGS[1]/SDG[2]) and what.
struct TESSEL_XML_API VDiagnostic {
    VSeverity mSeverity = eSeverityError;
    std::string mFile;
    unsigned mLine = 0;
    unsigned mColumn = 0;
    std::string mPath;
    std::string mMessage;

    // "file:line:column: error: message [path]"
    std::string ToString() const;
};

// The catalog (index.xml) of a PDX archive: what it says, and its text as it was read.
struct TESSEL_XML_API VPdxFile {
    std::string mName;
    std::string mCreationDate;
    std::string mMimeType;
};

struct TESSEL_XML_API VPdxBlock {
    std::string mShortName;
    std::string mUpdate;
    std::vector<VPdxFile> mFiles;
};

struct TESSEL_XML_API VPdxCatalog {
    std::string mShortName;
    std::string mDtdVersion;
    std::vector<VPdxBlock> mBlocks;
    std::string mText;
};

// A file of an archive that is no ODX document (job code and the like), kept as it was.
struct TESSEL_XML_API VArchiveEntry {
    std::string mName;
    std::vector<unsigned char> mData;
};

struct TESSEL_XML_API VReadOptions {
    // Keep the files that loaded when others fail; by default one failed file fails the load.
    bool mLenient = false;
    // Resolve the id references once all files are in.
    bool mResolveReferences = true;
    // Keep the model's own log quiet while resolving; failures come back as diagnostics.
    bool mSilentResolution = true;
};

// What a load gave: the document (owned by the result until released), the diagnostics, and
// for an archive its catalog and other entries.
class TESSEL_XML_API VLoadResult {
public:
    VLoadResult();
    VLoadResult(VLoadResult&& other) noexcept;
    VLoadResult& operator=(VLoadResult&& other) noexcept;
    VLoadResult(const VLoadResult&) = delete;
    VLoadResult& operator=(const VLoadResult&) = delete;
    // Ends a document still held, keeping the parked elements of other documents.
    ~VLoadResult();

    // Null when the load failed.
    NODX220::VOdx* GetDocument() const { return mpDocument; }
    // Hands the document over; the caller ends it with VOdxDocuments::Destroy.
    NODX220::VOdx* ReleaseDocument();

    const std::vector<VDiagnostic>& GetDiagnostics() const { return mDiagnostics; }
    size_t CountDiagnostics(VSeverity severity) const;
    // Files that were read into the document.
    const std::vector<std::string>& GetLoadedFiles() const { return mLoadedFiles; }
    // Elements and attributes that nothing took, and id references that found no target.
    size_t GetUnhandledCount() const { return mUnhandled; }
    size_t GetUnresolvedCount() const { return mUnresolved; }
    size_t GetLinkCount() const { return mLinks; }
    double GetLoadMilliseconds() const { return mLoadMilliseconds; }

    bool HasCatalog() const { return mHasCatalog; }
    const VPdxCatalog& GetCatalog() const { return mCatalog; }
    const std::vector<VArchiveEntry>& GetArchiveEntries() const { return mArchiveEntries; }

private:
    friend class VOdxReader;
    friend struct ReaderAccess;

    NODX220::VOdx* mpDocument = nullptr;
    std::vector<VDiagnostic> mDiagnostics;
    std::vector<std::string> mLoadedFiles;
    size_t mUnhandled = 0;
    size_t mUnresolved = 0;
    size_t mLinks = 0;
    double mLoadMilliseconds = 0.0;
    bool mHasCatalog = false;
    VPdxCatalog mCatalog;
    std::vector<VArchiveEntry> mArchiveEntries;
};

// Reads ODX documents (.odx, .odx-d, .odx-c, .odx-cs, .odx-v, .odx-f, .odx-m, .odx-fd, .odx-e,
// any file whose root is ODX) and PDX archives into one document.
class TESSEL_XML_API VOdxReader {
public:
    struct VBuffer {
        std::string mName;
        const void* mpData;
        size_t mSize;
    };

    explicit VOdxReader(const VReadOptions& options = VReadOptions());

    VLoadResult ReadFile(const std::string& path);
    VLoadResult ReadFiles(const std::vector<std::string>& paths);
    // Documents or archives in memory; an archive is told by its content.
    VLoadResult ReadBuffer(const std::string& name, const void* data, size_t size);
    VLoadResult ReadBuffers(const std::vector<VBuffer>& buffers);

private:
    VReadOptions mOptions;
};

} // namespace NODX220Xml
