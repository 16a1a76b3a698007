// PDX archives: the bundled example, archives built here, and archives that must be refused.

#include "XmlTestSupport.h"

#include <set>

namespace XmlTests {
namespace {

class ExampleArchive : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (ExamplePdx().empty() || !std::filesystem::exists(ExamplePdx())) {
            GTEST_SKIP() << "the example archive is not built (TESSEL_BUILD_EXAMPLES=OFF)";
        }
    }
};

TEST_F(ExampleArchive, LoadsEveryDocumentCompletelyFromFileAndFromMemory)
{
    VLoadResult result = VOdxReader().ReadFile(ExamplePdx());
    ASSERT_NE(result.GetDocument(), nullptr) << Findings(result);
    EXPECT_TRUE(result.GetDiagnostics().empty()) << Findings(result);
    EXPECT_EQ(result.GetUnhandledCount(), 0u);
    EXPECT_EQ(result.GetUnresolvedCount(), 0u);
    // Every kind of document refers into the others; all of it resolves.
    EXPECT_GT(result.GetLinkCount(), 100u);
    EXPECT_EQ(ParkedCount(), 0u);
    std::set<std::string> kinds;
    for (VOdxCategory* category : Categories(*result.GetDocument())) {
        kinds.insert(category->GetXmlTag().GetBuffer());
        EXPECT_EQ(std::string(category->GetFileName()).rfind("example.odx-", 0), 0u) << category->GetFileName();
    }
    EXPECT_EQ(kinds.size(), 8u);
    EXPECT_EQ(result.GetLoadedFiles().size(), 8u);

    ASSERT_TRUE(result.HasCatalog());
    const VPdxCatalog& catalog = result.GetCatalog();
    EXPECT_EQ(catalog.mShortName, "tessel_example");
    EXPECT_EQ(catalog.mDtdVersion, "ODX-2.2.0");
    ASSERT_EQ(catalog.mBlocks.size(), 1u);
    EXPECT_EQ(catalog.mBlocks[0].mShortName, "example_data");
    ASSERT_EQ(catalog.mBlocks[0].mFiles.size(), 9u);
    EXPECT_EQ(catalog.mBlocks[0].mFiles[0].mName, "example.odx-d");
    EXPECT_EQ(catalog.mBlocks[0].mFiles[0].mMimeType, "application/x-asam.odx.odx-d");
    EXPECT_EQ(catalog.mBlocks[0].mFiles[8].mName, "notes.txt");
    const std::vector<unsigned char> index = ReadBytes(std::string(TESSEL_EXAMPLE_SOURCES) + "/index.xml");
    EXPECT_EQ(catalog.mText, std::string(index.begin(), index.end()));
    ASSERT_EQ(result.GetArchiveEntries().size(), 1u);
    EXPECT_EQ(result.GetArchiveEntries()[0].mName, "notes.txt");
    EXPECT_EQ(result.GetArchiveEntries()[0].mData, ReadBytes(std::string(TESSEL_EXAMPLE_SOURCES) + "/notes.txt"));

    // Read from memory, the archive gives the same.
    const std::vector<unsigned char> bytes = ReadBytes(ExamplePdx());
    VLoadResult fromMemory = VOdxReader().ReadBuffer(ExamplePdx(), bytes.data(), bytes.size());
    ASSERT_NE(fromMemory.GetDocument(), nullptr) << Findings(fromMemory);
    EXPECT_EQ(Paths(*fromMemory.GetDocument()), Paths(*result.GetDocument()));
    EXPECT_EQ(fromMemory.GetLoadedFiles(), result.GetLoadedFiles());
    EXPECT_EQ(fromMemory.GetLinkCount(), result.GetLinkCount());
    EXPECT_EQ(fromMemory.GetCatalog().mText, catalog.mText);
    ASSERT_EQ(fromMemory.GetArchiveEntries().size(), 1u);
    EXPECT_EQ(fromMemory.GetArchiveEntries()[0].mData, result.GetArchiveEntries()[0].mData);
}

const std::string kGood = Odx("  <FLASH ID=\"F\"><SHORT-NAME>Good</SHORT-NAME></FLASH>\n");

TEST(Archive, EntriesAreReadByCatalogAndContent)
{
    // An ODX document under another name is read when the catalog names it; a document the
    // catalog does not name is kept as it is.
    const std::vector<unsigned char> zip =
        Zip({{"index.xml", Catalog({"sub/good.odx-f", "renamed.dat"})},
             {"sub/good.odx-f", kGood},
             {"renamed.dat", Odx("  <ECU-CONFIG><SHORT-NAME>Hidden</SHORT-NAME></ECU-CONFIG>\n")},
             {"stray.odx-d", Odx("  <DIAG-LAYER-CONTAINER><SHORT-NAME>S</SHORT-NAME></DIAG-LAYER-CONTAINER>\n")}});
    VLoadResult result = VOdxReader().ReadBuffer("made.pdx", zip.data(), zip.size());
    ASSERT_NE(result.GetDocument(), nullptr) << Findings(result);
    EXPECT_TRUE(result.GetDiagnostics().empty()) << Findings(result);
    VOdx& root = *result.GetDocument();
    ASSERT_EQ(root.FlashCollection().Count(), 1u);
    EXPECT_STREQ((*root.FlashCollection().Begin()).GetFileName(), "good.odx-f");
    EXPECT_EQ(root.EcuConfigCollection().Count(), 1u);
    EXPECT_EQ(root.DiagLayerContainerCollection().Count(), 0u);
    ASSERT_EQ(result.GetArchiveEntries().size(), 1u);
    EXPECT_EQ(result.GetArchiveEntries()[0].mName, "stray.odx-d");
    EXPECT_EQ(result.GetLoadedFiles(), (std::vector<std::string>{"made.pdx/sub/good.odx-f", "made.pdx/renamed.dat"}));
}

TEST(Archive, BrokenArchivesAreRefusedNamingTheFault)
{
    const std::string catalogMissing = Catalog({"good.odx-f", "missing.odx-d"});
    const std::string catalogClimbing = Catalog({"good.odx-f", "../good.odx-f"});
    const std::string notZip = "PK\x03\x04 this is no archive at all";
    struct Case {
        const char* what;
        std::vector<unsigned char> bytes;
        const char* file;
        const char* message;
        unsigned line;
    };
    const Case cases[] = {
        {"broken zip", std::vector<unsigned char>(notZip.begin(), notZip.end()), "t.pdx", "archive", 0},
        {"no catalog", Zip({{"good.odx-f", kGood}}), "t.pdx", "no index.xml", 0},
        {"missing file", Zip({{"index.xml", catalogMissing}, {"good.odx-f", kGood}}), "t.pdx/index.xml",
         "missing.odx-d", LineOf(catalogMissing, "missing.odx-d")},
        {"entry climbs out", Zip({{"index.xml", Catalog({"good.odx-f"})}, {"good.odx-f", kGood}, {"../evil.odx-d", kGood}}),
         "t.pdx", "../evil.odx-d", 0},
        {"absolute entry", Zip({{"index.xml", Catalog({"good.odx-f"})}, {"good.odx-f", kGood}, {"/abs.odx-d", kGood}}),
         "t.pdx", "/abs.odx-d", 0},
        {"catalog climbs out", Zip({{"index.xml", catalogClimbing}, {"good.odx-f", kGood}}), "t.pdx/index.xml",
         "climbs out", LineOf(catalogClimbing, "../good")},
        {"broken catalog", Zip({{"index.xml", "<CATALOG>\n<SHORT-NAME>x</CATALOG>"}, {"good.odx-f", kGood}}),
         "t.pdx/index.xml", "", 2},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.what);
        ASSERT_FALSE(test.bytes.empty());
        VLoadResult result = VOdxReader().ReadBuffer("t.pdx", test.bytes.data(), test.bytes.size());
        EXPECT_EQ(result.GetDocument(), nullptr);
        const VDiagnostic* error = Finding(result, eSeverityError, test.message);
        ASSERT_NE(error, nullptr) << Findings(result);
        EXPECT_EQ(error->mFile, test.file);
        if (test.line != 0) {
            EXPECT_EQ(error->mLine, test.line);
            EXPECT_GT(error->mColumn, 0u);
        }
        EXPECT_EQ(ParkedCount(), 0u);
    }
}

TEST(Archive, LenientLoadKeepsTheEntriesThatLoaded)
{
    const std::vector<unsigned char> zip =
        Zip({{"index.xml", Catalog({"good.odx-f", "bad.odx-d", "missing.odx-c"})},
             {"good.odx-f", kGood},
             {"bad.odx-d", Odx("  <DIAG-LAYER-CONTAINER><SHORT-NAME>Bad</SHORT-NAME>\n")}});
    EXPECT_EQ(VOdxReader().ReadBuffer("t.pdx", zip.data(), zip.size()).GetDocument(), nullptr);

    VReadOptions options;
    options.mLenient = true;
    VLoadResult lenient = VOdxReader(options).ReadBuffer("t.pdx", zip.data(), zip.size());
    ASSERT_NE(lenient.GetDocument(), nullptr) << Findings(lenient);
    EXPECT_EQ(Categories(*lenient.GetDocument()).size(), 1u);
    EXPECT_EQ(lenient.GetDocument()->FlashCollection().Count(), 1u);
    EXPECT_EQ(lenient.GetLoadedFiles(), std::vector<std::string>{"t.pdx/good.odx-f"});
    EXPECT_TRUE(lenient.HasCatalog());
    EXPECT_NE(Finding(lenient, eSeverityError, "missing.odx-c"), nullptr) << Findings(lenient);
    size_t badReported = 0;
    for (const VDiagnostic& diagnostic : lenient.GetDiagnostics()) {
        badReported += diagnostic.mSeverity == eSeverityError && diagnostic.mFile == "t.pdx/bad.odx-d";
    }
    EXPECT_EQ(badReported, 1u) << Findings(lenient);
}

} // namespace
} // namespace XmlTests
