// Real files written by other tools: everything the model holds today must load cleanly.

#include "XmlTestSupport.h"

#include <algorithm>
#include <map>

namespace XmlTests {
namespace {

// The corpus as the sets of files that belong together: each archive on its own, and the loose
// documents of each folder as one set (their references cross files).
std::vector<std::vector<std::string>> CorpusSets()
{
    std::vector<std::vector<std::string>> sets;
    std::map<std::string, std::vector<std::string>> folders;
    const std::filesystem::path root = std::filesystem::path(CorpusDir()) / "odxtools";
    std::error_code error;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root, error)) {
        const std::string extension = entry.path().extension().string();
        if (!entry.is_regular_file()) {
            continue;
        }
        if (extension == ".pdx") {
            sets.push_back({entry.path().string()});
        } else if (extension.rfind(".odx", 0) == 0) {
            folders[entry.path().parent_path().string()].push_back(entry.path().string());
        }
    }
    for (auto& folder : folders) {
        std::sort(folder.second.begin(), folder.second.end());
        sets.push_back(folder.second);
    }
    std::sort(sets.begin(), sets.end());
    return sets;
}

TEST(Corpus, EverySetLoadsCompletelyAndResolvesItsLinks)
{
    const std::vector<std::vector<std::string>> sets = CorpusSets();
    if (sets.empty()) {
        GTEST_SKIP() << "no corpus in " << CorpusDir() << "/odxtools (set TESSEL_CORPUS_DIR)";
    }
    for (const std::vector<std::string>& files : sets) {
        SCOPED_TRACE(files.front());
        VLoadResult result = VOdxReader().ReadFiles(files);
        ASSERT_NE(result.GetDocument(), nullptr) << Findings(result);
        EXPECT_EQ(result.CountDiagnostics(eSeverityError), 0u) << Findings(result);
        EXPECT_EQ(result.GetUnresolvedCount(), 0u) << Findings(result);
        EXPECT_GT(result.GetLinkCount(), 0u);
        EXPECT_EQ(result.GetUnhandledCount(), 0u) << Findings(result);
        EXPECT_TRUE(result.GetDiagnostics().empty()) << Findings(result);
        EXPECT_EQ(ParkedCount(), 0u);
        const std::vector<VOdxCategory*> categories = Categories(*result.GetDocument());
        ASSERT_FALSE(categories.empty());
        for (VOdxCategory* category : categories) {
            EXPECT_NE(*category->GetShortName(), '\0');
            EXPECT_NE(std::string(category->GetFileName()).find(".odx"), std::string::npos);
        }
        const std::string& first = files.front();
        EXPECT_EQ(result.HasCatalog(), first.size() > 4 && first.compare(first.size() - 4, 4, ".pdx") == 0);
    }
}

} // namespace
} // namespace XmlTests
