#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace NODX220Xml {
namespace Internal {

// A PDX archive opened for reading; entries are streamed, never unpacked to disk.
class PdxArchive {
public:
    static std::unique_ptr<PdxArchive> OpenFile(const std::string& path, std::string& error);
    static std::unique_ptr<PdxArchive> OpenMemory(const void* data, size_t size, std::string& error);
    ~PdxArchive();
    PdxArchive(const PdxArchive&) = delete;
    PdxArchive& operator=(const PdxArchive&) = delete;

    const std::vector<std::string>& EntryNames() const { return mNames; }
    bool Has(const std::string& name) const;
    // Hands the entry to the sink in pieces; the sink answers false to stop. False with the
    // error when the entry cannot be read.
    bool Read(const std::string& name, const std::function<bool(const char*, size_t)>& sink,
              std::string& error) const;

    // Whether an entry name stays inside the archive (no absolute path, no "..").
    static bool IsSafeName(const std::string& name);

private:
    explicit PdxArchive(void* archive);

    void* mpArchive;
    std::vector<std::string> mNames;
};

} // namespace Internal
} // namespace NODX220Xml
