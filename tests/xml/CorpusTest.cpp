// Real files written by other tools: everything the model holds today must load cleanly.

#include "XmlTestSupport.h"

#include <algorithm>

namespace XmlTests {
namespace {

std::vector<std::string> CorpusFiles()
{
    std::vector<std::string> files;
    const std::filesystem::path folder = std::filesystem::path(CorpusDir()) / "odxtools";
    std::error_code error;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, error)) {
        const std::string extension = entry.path().extension().string();
        if (entry.is_regular_file() && (extension == ".pdx" || extension.rfind(".odx", 0) == 0)) {
            files.push_back(entry.path().string());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

TEST(Corpus, EveryFileLoadsWithoutErrorsAndResolvesItsLinks)
{
    const std::vector<std::string> files = CorpusFiles();
    if (files.empty()) {
        GTEST_SKIP() << "no corpus in " << CorpusDir() << "/odxtools (set TESSEL_CORPUS_DIR)";
    }
    for (const std::string& file : files) {
        SCOPED_TRACE(file);
        VLoadResult result = VOdxReader().ReadFile(file);
        ASSERT_NE(result.GetDocument(), nullptr) << Findings(result);
        EXPECT_EQ(result.CountDiagnostics(eSeverityError), 0u) << Findings(result);
        EXPECT_EQ(result.GetUnresolvedCount(), 0u);
        EXPECT_GT(result.GetLinkCount(), 0u);
        // Warnings are for content the model does not hold yet, nothing else.
        for (const VDiagnostic& diagnostic : result.GetDiagnostics()) {
            EXPECT_NE(diagnostic.mMessage.find("is not read"), std::string::npos) << diagnostic.ToString();
            EXPECT_GT(diagnostic.mLine, 0u) << diagnostic.ToString();
        }
        EXPECT_EQ(ParkedCount(), 0u);
        const std::vector<VOdxCategory*> categories = Categories(*result.GetDocument());
        ASSERT_FALSE(categories.empty());
        for (VOdxCategory* category : categories) {
            EXPECT_NE(*category->GetShortName(), '\0');
            EXPECT_NE(std::string(category->GetFileName()).find(".odx"), std::string::npos);
        }
        EXPECT_EQ(result.HasCatalog(), file.size() > 4 && file.compare(file.size() - 4, 4, ".pdx") == 0);
    }
}

} // namespace
} // namespace XmlTests
