#pragma once

#include <gtest/gtest.h>
#include <zip.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "TesselODX220Model.h"
#include "TesselODX220Xml/VOdxDocuments.h"
#include "TesselODX220Xml/VOdxReader.h"

namespace XmlTests {

using namespace NODX220;
using namespace NODX220Xml;

inline VLoadResult ReadText(const std::string& name, const std::string& text,
                            const VReadOptions& options = VReadOptions())
{
    return VOdxReader(options).ReadBuffer(name, text.data(), text.size());
}

// A document with the usual prolog around the body.
inline std::string Odx(const std::string& body)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<ODX MODEL-VERSION=\"2.2.0\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">\n" +
           body + "</ODX>\n";
}

// The line (from 1) on which a piece of text first occurs.
inline unsigned LineOf(const std::string& text, const std::string& piece)
{
    const size_t at = text.find(piece);
    EXPECT_NE(at, std::string::npos) << piece;
    return 1 + static_cast<unsigned>(std::count(text.begin(), text.begin() + std::min(at, text.size()), '\n'));
}

inline std::string Findings(const VLoadResult& result)
{
    std::string all;
    for (const VDiagnostic& diagnostic : result.GetDiagnostics()) {
        all += diagnostic.ToString() + "\n";
    }
    return all;
}

// The first finding of this severity whose message contains the piece, or null.
inline const VDiagnostic* Finding(const VLoadResult& result, VSeverity severity, const std::string& piece)
{
    for (const VDiagnostic& diagnostic : result.GetDiagnostics()) {
        if (diagnostic.mSeverity == severity && diagnostic.mMessage.find(piece) != std::string::npos) {
            return &diagnostic;
        }
    }
    return nullptr;
}

inline std::vector<VOdxCategory*> Categories(VOdx& root)
{
    std::vector<VOdxCategory*> all;
    VOdxWalk::Children(root, [&all](VOdxElement& child) {
        if (auto* category = dynamic_cast<VOdxCategory*>(&child)) {
            all.push_back(category);
        }
    });
    return all;
}

inline std::vector<std::string> Paths(VOdx& root)
{
    std::vector<std::string> paths;
    VOdxWalk::Tree(root, [&paths](VOdxElement& element) {
        paths.emplace_back(element.GetXPATH(eXPathPosition).GetBuffer());
    });
    return paths;
}

inline size_t ParkedCount()
{
    return VOdxFactory::Instance().UnhandledElementCollection().Count();
}

inline std::vector<unsigned char> ReadBytes(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::vector<unsigned char>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// A zip archive built in memory from named texts.
inline std::vector<unsigned char> Zip(const std::vector<std::pair<std::string, std::string>>& entries)
{
    zip_source_t* buffer = zip_source_buffer_create(nullptr, 0, 0, nullptr);
    zip_source_keep(buffer);
    zip_t* archive = zip_open_from_source(buffer, ZIP_TRUNCATE, nullptr);
    for (const auto& [name, text] : entries) {
        zip_source_t* data = zip_source_buffer(archive, text.data(), text.size(), 0);
        EXPECT_GE(zip_file_add(archive, name.c_str(), data, ZIP_FL_ENC_UTF_8), 0) << name;
    }
    EXPECT_EQ(zip_close(archive), 0);
    std::vector<unsigned char> bytes;
    zip_stat_t stat;
    if (zip_source_stat(buffer, &stat) == 0 && zip_source_open(buffer) == 0) {
        bytes.resize(static_cast<size_t>(stat.size));
        EXPECT_EQ(zip_source_read(buffer, bytes.data(), bytes.size()), static_cast<zip_int64_t>(bytes.size()));
        zip_source_close(buffer);
    }
    zip_source_free(buffer);
    return bytes;
}

inline std::string Catalog(const std::vector<std::string>& files)
{
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<CATALOG F-DTD-VERSION=\"ODX-2.2.0\">\n"
                       "  <SHORT-NAME>test</SHORT-NAME>\n  <ABLOCKS>\n    <ABLOCK>\n"
                       "      <SHORT-NAME>block</SHORT-NAME>\n      <FILES>\n";
    for (const std::string& file : files) {
        text += "        <FILE>" + file + "</FILE>\n";
    }
    return text + "      </FILES>\n    </ABLOCK>\n  </ABLOCKS>\n</CATALOG>\n";
}

// A folder of its own below the system's temporary folder, removed with its content.
class TempDir {
public:
    TempDir()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "xml_tests_XXXXXX").string();
        mPath = ::mkdtemp(pattern.data()) != nullptr ? pattern : std::string();
    }
    ~TempDir()
    {
        std::error_code ignored;
        std::filesystem::remove_all(mPath, ignored);
    }
    std::string Write(const std::string& name, const std::string& text) const
    {
        const std::string path = mPath + "/" + name;
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }
    const std::string& Path() const { return mPath; }

private:
    std::string mPath;
};

inline std::string CorpusDir()
{
    const char* fromEnvironment = std::getenv("TESSEL_CORPUS_DIR");
    return fromEnvironment != nullptr && *fromEnvironment != '\0' ? fromEnvironment : TESSEL_CORPUS_DIR;
}

inline std::string ExamplePdx()
{
#ifdef TESSEL_EXAMPLE_PDX
    return TESSEL_EXAMPLE_PDX;
#else
    return "";
#endif
}

} // namespace XmlTests
