// Content the reader does not take, malformed input, strict and lenient loads, and what a
// failed load must leave alone.

#include "XmlTestSupport.h"

namespace XmlTests {
namespace {

TEST(Unhandled, UnknownElementsAndAttributesAreReportedWhereTheyAreAndSkipped)
{
    const std::string text = Odx("  <COMPARAM-SPEC ID=\"CP\">\n    <SHORT-NAME>CP</SHORT-NAME>\n"
                                 "    <ECU-MEMS>\n      <ECU-MEM><SHORT-NAME>Inner</SHORT-NAME></ECU-MEM>\n"
                                 "    </ECU-MEMS>\n"
                                 "    <SDGS>\n      <SDG SI=\"g\" COLOR=\"red\"><SD>kept</SD></SDG>\n    </SDGS>\n"
                                 "  </COMPARAM-SPEC>\n");
    VLoadResult result = ReadText("cp.odx-c", text);
    ASSERT_NE(result.GetDocument(), nullptr) << Findings(result);
    EXPECT_EQ(result.CountDiagnostics(eSeverityError), 0u) << Findings(result);
    // The content of a skipped element is not reported on its own.
    EXPECT_EQ(result.GetUnhandledCount(), 2u) << Findings(result);
    // A flash element in a comparam document has no place there.
    const VDiagnostic* element = Finding(result, eSeverityWarning, "element ECU-MEMS is not read");
    ASSERT_NE(element, nullptr) << Findings(result);
    EXPECT_EQ(element->mFile, "cp.odx-c");
    EXPECT_EQ(element->mLine, LineOf(text, "<ECU-MEMS>"));
    EXPECT_FALSE(element->mPath.empty());
    const VDiagnostic* attribute = Finding(result, eSeverityWarning, "attribute COLOR of SDG is not read");
    ASSERT_NE(attribute, nullptr) << Findings(result);
    EXPECT_EQ(attribute->mLine, LineOf(text, "COLOR="));

    VComparamSpec& spec = *result.GetDocument()->ComparamSpecCollection().Begin();
    EXPECT_STREQ(spec.GetShortName(), "CP");
    ASSERT_EQ(spec.SdgCollection().Count(), 1u);
    VSdg& sdg = *spec.SdgCollection().begin();
    EXPECT_STREQ(sdg.GetSi(), "g");
    EXPECT_STREQ((*sdg.SdgSdChoiceCollection().begin()).GetAsSd()->GetBaseMember(), "kept");
}

// Findings name where an element or attribute starts, also when its start tag spans lines, and
// the element's place in the file by positions, so that sibling groups are told apart.
TEST(Unhandled, FindingsNameTheStartAndPathOfTheirElement)
{
    const std::string text = Odx("  <FLASH ID=\"F\">\n    <SHORT-NAME>F</SHORT-NAME>\n    <SDGS>\n      <SDG/>\n"
                                 "      <SDG SI=\"x\"\n           COLOR=\"red\"\n           />\n    </SDGS>\n"
                                 "    <ADMIN-DATA><DOC-REVISIONS><DOC-REVISION>\n"
                                 "      <TEAM-MEMBER-REF\n         ID-REF=\"TM.Nobody\"/>\n"
                                 "    </DOC-REVISION></DOC-REVISIONS></ADMIN-DATA>\n  </FLASH>\n");
    VLoadResult result = ReadText("f.odx-f", text);
    ASSERT_NE(result.GetDocument(), nullptr);
    const VDiagnostic* attribute = Finding(result, eSeverityWarning, "COLOR");
    const VDiagnostic* reference = Finding(result, eSeverityWarning, "TM.Nobody");
    ASSERT_TRUE(attribute != nullptr && reference != nullptr) << Findings(result);
    EXPECT_EQ(attribute->mLine, LineOf(text, "COLOR="));
    EXPECT_EQ(reference->mLine, LineOf(text, "<TEAM-MEMBER-REF"));
    EXPECT_EQ(reference->mColumn, 7u);
    EXPECT_EQ(attribute->mPath, "ODX[1]/FLASH[1]/SDGS[1]/SDG[2]");
}

TEST(Malformed, DocumentsThatAreNoOdxFailWithTheirPlace)
{
    struct Case {
        const char* what;
        std::string text;
        std::string at; // the text on the line of the fault; empty where no line is known
    };
    const Case cases[] = {
        {"unclosed tag", "<ODX>\n  <FLASH>\n    <SHORT-NAME>F</SHORT-NAME>\n</ODX>\n", "</ODX>"},
        {"other root", "<?xml version=\"1.0\"?>\n<CATALOG>\n</CATALOG>\n", "<CATALOG>"},
        {"empty", "", ""},
        {"blank", "  \n", ""},
        {"undeclared entity", "<ODX>\n  <FLASH>\n    <SHORT-NAME>&foo;</SHORT-NAME>\n  </FLASH>\n</ODX>\n", "&foo;"},
        {"second root", "<ODX/>\n<ODX>x</ODX>\n", "<ODX>x"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.what);
        VLoadResult result = ReadText("bad.odx-f", test.text);
        EXPECT_EQ(result.GetDocument(), nullptr);
        EXPECT_TRUE(result.GetLoadedFiles().empty());
        ASSERT_EQ(result.CountDiagnostics(eSeverityError), 1u) << Findings(result);
        const VDiagnostic& error = *Finding(result, eSeverityError, "");
        EXPECT_EQ(error.mFile, "bad.odx-f");
        EXPECT_FALSE(error.mMessage.empty());
        if (!test.at.empty()) {
            EXPECT_EQ(error.mLine, LineOf(test.text, test.at)) << error.ToString();
            EXPECT_GT(error.mColumn, 0u) << error.ToString();
        }
    }
}

TEST(Malformed, FilesThatCannotBeReadAreErrors)
{
    TempDir folder;
    const std::string garbage = folder.Write("garbage.pdx", "no zip here");
    for (const std::string& path : {folder.Path() + "/absent.odx-d", folder.Path(), garbage}) {
        SCOPED_TRACE(path);
        VLoadResult result = VOdxReader().ReadFile(path);
        EXPECT_EQ(result.GetDocument(), nullptr);
        ASSERT_GE(result.CountDiagnostics(eSeverityError), 1u);
        EXPECT_EQ(result.GetDiagnostics()[0].mFile, path);
    }
}

TEST(Malformed, ValuesThatDoNotConvertAreErrorsAtTheirLine)
{
    // No member holds a number yet: DOCTYPE literals and dates are the values converted.
    const std::string text = Odx("  <DIAG-LAYER-CONTAINER>\n    <SHORT-NAME>D</SHORT-NAME>\n"
                                 "    <ADMIN-DATA><DOC-REVISIONS><DOC-REVISION>\n"
                                 "      <TEAM-MEMBER-REF ID-REF=\"X\" DOCREF=\"D\" DOCTYPE=\"NO-SUCH-TYPE\"/>\n"
                                 "      <DATE>next tuesday</DATE>\n"
                                 "    </DOC-REVISION></DOC-REVISIONS></ADMIN-DATA>\n  </DIAG-LAYER-CONTAINER>\n");
    VLoadResult result = ReadText("d.odx-d", text);
    const VDiagnostic* doctype = Finding(result, eSeverityError, "NO-SUCH-TYPE");
    ASSERT_NE(doctype, nullptr) << Findings(result);
    EXPECT_EQ(doctype->mFile, "d.odx-d");
    EXPECT_EQ(doctype->mLine, LineOf(text, "DOCTYPE="));
    const VDiagnostic* date = Finding(result, eSeverityError, "next tuesday");
    ASSERT_NE(date, nullptr) << Findings(result);
    EXPECT_EQ(date->mLine, LineOf(text, "<DATE>"));
}

TEST(Malformed, DocumentsDeclaringEntitiesAreRefusedAndNothingOutsideIsLoaded)
{
    TempDir folder;
    const std::string secret = folder.Write("secret.txt", "SECRET-CONTENT");
    for (const std::string& declaration :
         {"<!ENTITY leak SYSTEM \"file://" + secret + "\">", std::string("<!ENTITY leak \"inner text\">")}) {
        SCOPED_TRACE(declaration);
        const std::string text = "<?xml version=\"1.0\"?>\n<!DOCTYPE ODX [\n" + declaration +
                                 "\n]>\n<ODX>\n  <FLASH><SHORT-NAME>&leak;</SHORT-NAME></FLASH>\n</ODX>\n";
        VLoadResult result = ReadText("x.odx-f", text);
        EXPECT_EQ(result.GetDocument(), nullptr);
        const VDiagnostic* error = Finding(result, eSeverityError, "leak");
        ASSERT_NE(error, nullptr) << Findings(result);
        EXPECT_EQ(error->mLine, LineOf(text, "<!ENTITY"));
        EXPECT_EQ(Findings(result).find("SECRET"), std::string::npos);
    }
}

// Nesting has no bound: 100000 nested SDG (1.3 MB) are read, and ending or walking the
// document recurses once per level until the stack overflows (the model's destructors,
// VOdxWalk::Tree). The reader should refuse such nesting with an error
// (DocumentReader::StartElement, or a depth limit in XmlTokenizer).
TEST(Malformed, DeepNestingIsRefusedOrSurvived)
{
    std::string text = "<ODX><FLASH><SHORT-NAME>F</SHORT-NAME><SDGS>";
    for (int i = 0; i < 100000; ++i) {
        text += "<SDG>";
    }
    for (int i = 0; i < 100000; ++i) {
        text += "</SDG>";
    }
    text += "</SDGS></FLASH></ODX>";
    EXPECT_EXIT(
        {
            VLoadResult result = ReadText("deep.odx-f", text);
            if (result.GetDocument() != nullptr) {
                VOdxWalk::Tree(*result.GetDocument(), [](VOdxElement&) {});
            }
            std::exit(result.GetDocument() == nullptr && result.CountDiagnostics(eSeverityError) == 1 ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(Strictness, OneBadFileFailsAStrictLoadAndALenientLoadKeepsTheGoodOne)
{
    const std::string good = Odx("  <FLASH ID=\"F\"><SHORT-NAME>Good</SHORT-NAME></FLASH>\n");
    const std::string bad = Odx("  <ECU-CONFIG><SHORT-NAME>Bad</SHORT-NAME>\n");
    const std::vector<VOdxReader::VBuffer> buffers = {{"good.odx-f", good.data(), good.size()},
                                                      {"bad.odx-e", bad.data(), bad.size()}};
    VLoadResult strict = VOdxReader().ReadBuffers(buffers);
    EXPECT_EQ(strict.GetDocument(), nullptr);
    ASSERT_EQ(strict.CountDiagnostics(eSeverityError), 1u) << Findings(strict);
    EXPECT_EQ(strict.GetDiagnostics()[0].mFile, "bad.odx-e");

    VReadOptions options;
    options.mLenient = true;
    VLoadResult lenient = VOdxReader(options).ReadBuffers(buffers);
    ASSERT_NE(lenient.GetDocument(), nullptr);
    EXPECT_EQ(lenient.GetLoadedFiles(), std::vector<std::string>{"good.odx-f"});
    const std::vector<VOdxCategory*> categories = Categories(*lenient.GetDocument());
    ASSERT_EQ(categories.size(), 1u);
    EXPECT_STREQ(categories[0]->GetShortName(), "Good");
    ASSERT_EQ(lenient.CountDiagnostics(eSeverityError), 1u);
    EXPECT_EQ(Finding(lenient, eSeverityError, "")->mFile, "bad.odx-e");
    EXPECT_EQ(VOdxReader(options).ReadBuffers({buffers[1]}).GetDocument(), nullptr);

    // A file that fails after a complete document of its own takes that document along.
    const std::string half = Odx("  <FLASH ID=\"F2\"><SHORT-NAME>Half</SHORT-NAME></FLASH>\n  <FLASH>\n");
    VLoadResult partly = VOdxReader(options).ReadBuffers({buffers[0], {"half.odx-f", half.data(), half.size()}});
    ASSERT_NE(partly.GetDocument(), nullptr);
    EXPECT_EQ(partly.GetDocument()->FlashCollection().Count(), 1u);
    EXPECT_EQ(partly.GetDocument()->GetIdRefMap().Find(VYAString("F2"), VYAString("Half")), nullptr);
}

TEST(LiveDocuments, FailedLoadLeavesOtherDocumentsAndTheirParkedElements)
{
    const std::string text = Odx("  <FLASH ID=\"F\"><SHORT-NAME>A</SHORT-NAME></FLASH>\n");
    VLoadResult first = ReadText("a.odx-f", text);
    ASSERT_NE(first.GetDocument(), nullptr);
    VFlash& flash = *first.GetDocument()->FlashCollection().Begin();
    // Nothing the tables make is refused by its parent today: park one the way the reader does.
    VSdg& parked = VOdxFactory::Instance().MakeSdg(flash, TAG_SDG);
    parked.SetSi("parked");
    VOdxFactory::Instance().UnhandledElementCollection().Append(parked);
    ASSERT_EQ(ParkedCount(), 1u);

    const std::string bad = Odx("  <FLASH ID=\"B\"><SHORT-NAME>B</SHORT-NAME></FLASH>\n  <FLASH><SDGS><SDG>\n");
    EXPECT_EQ(ReadText("b.odx-f", bad).GetDocument(), nullptr);
    {
        // A lenient load that drops a failed file and keeps a document of its own, then ends.
        VReadOptions lenient;
        lenient.mLenient = true;
        VLoadResult other = VOdxReader(lenient).ReadBuffers(
            {{"c.odx-f", text.data(), text.size()}, {"b.odx-f", bad.data(), bad.size()}});
        ASSERT_NE(other.GetDocument(), nullptr);
    }
    ASSERT_EQ(ParkedCount(), 1u);
    EXPECT_EQ(&*VOdxFactory::Instance().UnhandledElementCollection().Begin(), static_cast<VOdxElement*>(&parked));
    EXPECT_STREQ(parked.GetSi(), "parked");
    EXPECT_EQ(&parked.GetRootElement(), first.GetDocument());
    EXPECT_STREQ(flash.GetShortName(), "A");
    VOdxDocuments::Destroy(*first.ReleaseDocument());
    EXPECT_EQ(ParkedCount(), 0u);
}

} // namespace
} // namespace XmlTests
