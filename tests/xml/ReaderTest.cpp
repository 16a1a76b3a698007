// Reading documents into the model: categories, references, markup, comments, the walk.

#include "XmlTestSupport.h"

#include <map>
#include <regex>
#include <set>

namespace XmlTests {
namespace {

std::string Category(const std::string& kind, const std::string& name, const std::string& inner = "")
{
    return "  <" + kind + " ID=\"ID." + name + "\" OID=\"oid-" + name + "\">\n    <SHORT-NAME>" + name +
           "</SHORT-NAME>\n" + inner + "  </" + kind + ">\n";
}

TEST(DocumentTypes, EachFileTypeGivesItsCategoryNamedAfterTheFile)
{
    const std::map<std::string, std::string> kinds = {
        {"odx-d", "DIAG-LAYER-CONTAINER"}, {"odx-c", "COMPARAM-SPEC"},     {"odx-cs", "COMPARAM-SUBSET"},
        {"odx-f", "FLASH"},                {"odx-v", "VEHICLE-INFO-SPEC"}, {"odx-e", "ECU-CONFIG"},
        {"odx-fd", "FUNCTION-DICTIONARY"}, {"odx-m", "MULTIPLE-ECU-JOB-SPEC"}};
    for (const auto& [extension, kind] : kinds) {
        SCOPED_TRACE(kind);
        const std::string name = "some/folder/sample." + extension;
        VLoadResult result = ReadText(name, Odx(Category(kind, "Doc", "    <LONG-NAME TI=\"TI.L\">Long</LONG-NAME>\n"
                                                                      "    <ADMIN-DATA><LANGUAGE>de</LANGUAGE></ADMIN-DATA>\n")));
        ASSERT_NE(result.GetDocument(), nullptr) << Findings(result);
        EXPECT_TRUE(result.GetDiagnostics().empty()) << Findings(result);
        EXPECT_EQ(result.GetLoadedFiles(), std::vector<std::string>{name});
        EXPECT_STREQ(result.GetDocument()->GetModelVersion(), "2.2.0");
        const std::vector<VOdxCategory*> categories = Categories(*result.GetDocument());
        ASSERT_EQ(categories.size(), 1u);
        VOdxCategory& category = *categories[0];
        EXPECT_STREQ(category.GetXmlTag().GetBuffer(), kind.c_str());
        EXPECT_STREQ(category.GetFileName(), ("sample." + extension).c_str());
        EXPECT_STREQ(category.GetShortName(), "Doc");
        EXPECT_STREQ(category.GetId(), "ID.Doc");
        EXPECT_STREQ(category.GetOid(), "oid-Doc");
        ASSERT_TRUE(category.HasLongName() && category.HasAdminData());
        EXPECT_STREQ(category.GetLongName().GetBaseMember(), "Long");
        EXPECT_STREQ(category.GetLongName().GetTi(), "TI.L");
        EXPECT_STREQ(category.GetAdminData().GetLanguage(), "de");
    }
}

TEST(DocumentTypes, SeveralFilesMakeOneDocumentWithReferencesAcrossThem)
{
    TempDir folder;
    const std::string container = folder.Write(
        "a.odx-d", Odx(Category("DIAG-LAYER-CONTAINER", "Container_A",
                                "    <COMPANY-DATAS><COMPANY-DATA ID=\"CD\"><SHORT-NAME>Company</SHORT-NAME>\n"
                                "      <ROLES><ROLE>manufacturer</ROLE><ROLE>author</ROLE></ROLES>\n"
                                "      <TEAM-MEMBERS><TEAM-MEMBER ID=\"TM.A\"><SHORT-NAME>Member</SHORT-NAME>\n"
                                "        <ROLES><ROLE>editor</ROLE></ROLES></TEAM-MEMBER></TEAM-MEMBERS>\n"
                                "    </COMPANY-DATA></COMPANY-DATAS>\n")));
    const std::string subset = folder.Write(
        "b.odx-cs", Odx(Category("COMPARAM-SUBSET", "Subset_B",
                                 "    <ADMIN-DATA><DOC-REVISIONS><DOC-REVISION>\n"
                                 "      <TEAM-MEMBER-REF ID-REF=\"TM.A\" DOCREF=\"Container_A\" DOCTYPE=\"CONTAINER\"/>\n"
                                 "      <REVISION-LABEL>1.1</REVISION-LABEL><DATE>2026-11-01T09:30:00+01:00</DATE>\n"
                                 "    </DOC-REVISION></DOC-REVISIONS></ADMIN-DATA>\n")));
    VLoadResult result = VOdxReader().ReadFiles({container, subset});
    ASSERT_NE(result.GetDocument(), nullptr) << Findings(result);
    EXPECT_TRUE(result.GetDiagnostics().empty()) << Findings(result);
    EXPECT_EQ(result.GetLoadedFiles(), (std::vector<std::string>{container, subset}));
    VOdx& root = *result.GetDocument();
    ASSERT_EQ(root.DiagLayerContainerCollection().Count(), 1u);
    ASSERT_EQ(root.ComparamSubsetCollection().Count(), 1u);
    VDiagLayerContainer& dlc = *root.DiagLayerContainerCollection().Begin();
    VComparamSubset& cps = *root.ComparamSubsetCollection().Begin();
    EXPECT_STREQ(dlc.GetFileName(), "a.odx-d");
    EXPECT_STREQ(cps.GetFileName(), "b.odx-cs");

    VCompanyData& company = *dlc.CompanyDataCollection().begin();
    std::vector<std::string> roles;
    for (VYAString& role : company.Roles()) {
        roles.emplace_back(role.GetBuffer());
    }
    EXPECT_EQ(roles, (std::vector<std::string>{"manufacturer", "author"}));
    VTeamMember& member = *company.TeamMemberCollection().begin();
    EXPECT_EQ(member.Roles().Count(), 1u);

    VDocRevision& revision = *cps.GetAdminData().DocRevisionCollection().begin();
    EXPECT_STREQ(revision.GetRevisionLabel(), "1.1");
    ASSERT_TRUE(revision.HasDate() && revision.HasTeamMemberRef());
    EXPECT_EQ(revision.GetDate().GetYear(), 2026);
    EXPECT_EQ(revision.GetDate().GetMinute(), 30);
    VTeamMemberLink& reference = revision.GetTeamMemberRef();
    ASSERT_TRUE(reference.HasLink());
    VOdxlink* link = reference.GetLink().GetAsOdxlink();
    ASSERT_NE(link, nullptr);
    EXPECT_STREQ(link->GetIdRef(), "TM.A");
    EXPECT_STREQ(link->GetDocref(), "Container_A");
    EXPECT_EQ(link->GetDoctype(), eDoctypeContainer);
    ASSERT_TRUE(reference.HasTeamMember());
    EXPECT_EQ(&reference.GetTeamMember(), &member);
    EXPECT_EQ(result.GetLinkCount(), 1u);
    EXPECT_EQ(result.GetUnresolvedCount(), 0u);
}

TEST(Dispatch, XsiTypeNamesTheKindAnElementIsReadAs)
{
    const std::string text = Odx(Category("FLASH", "F",
                                          "    <SDGS>\n"
                                          "      <GROUP xsi:type=\"SDG\" SI=\"typed\"><SD SI=\"1\"/><SDG SI=\"2\"/><SD SI=\"3\"/></GROUP>\n"
                                          "      <SDG xsi:type=\"NO-SUCH-KIND\" SI=\"plain\"/>\n"
                                          "    </SDGS>\n"));
    VLoadResult result = ReadText("x.odx-f", text);
    ASSERT_NE(result.GetDocument(), nullptr) << Findings(result);
    EXPECT_TRUE(result.GetDiagnostics().empty()) << Findings(result);
    VFlash& flash = *result.GetDocument()->FlashCollection().Begin();
    std::vector<std::string> groups;
    for (VSdg& sdg : flash.SdgCollection()) {
        groups.emplace_back(sdg.GetSi());
    }
    EXPECT_EQ(groups, (std::vector<std::string>{"typed", "plain"}));
    // Values and subgroups are walked in the order they were written.
    std::vector<std::string> order;
    VOdxWalk::Children(*flash.SdgCollection().begin(), [&order](VOdxElement& child) {
        order.push_back(std::string(child.GetXmlTag().GetBuffer()) +
                        (dynamic_cast<VSd*>(&child) ? static_cast<VSd&>(child).GetSi() : static_cast<VSdg&>(child).GetSi()));
    });
    EXPECT_EQ(order, (std::vector<std::string>{"SD1", "SDG2", "SD3"}));
}

TEST(References, ReferenceWithoutTargetIsReportedWhereItWasRead)
{
    const std::string text = Odx(Category("ECU-CONFIG", "E",
                                          "    <ADMIN-DATA><DOC-REVISIONS><DOC-REVISION>\n"
                                          "      <TEAM-MEMBER-REF ID-REF=\"TM.Nobody\"/>\n"
                                          "    </DOC-REVISION></DOC-REVISIONS></ADMIN-DATA>\n"));
    VLoadResult result = ReadText("e.odx-e", text);
    ASSERT_NE(result.GetDocument(), nullptr);
    EXPECT_EQ(result.GetLinkCount(), 1u);
    EXPECT_EQ(result.GetUnresolvedCount(), 1u);
    EXPECT_EQ(result.CountDiagnostics(eSeverityError), 0u);
    const VDiagnostic* warning = Finding(result, eSeverityWarning, "TM.Nobody");
    ASSERT_NE(warning, nullptr) << Findings(result);
    EXPECT_EQ(warning->mFile, "e.odx-e");
    EXPECT_EQ(warning->mLine, LineOf(text, "TEAM-MEMBER-REF"));
}

TEST(Text, DescriptionMarkupKeepsCharacterDataEscapedOnce)
{
    const std::string text = Odx(Category("VEHICLE-INFO-SPEC", "V",
                                          "    <DESC TI=\"TI.D\"><p>a &amp; <b>b</b> &lt;c&gt;</p><p>two</p>\n"
                                          "      <EXTERNAL-DOCS><EXTERNAL-DOC HREF=\"h.pdf\">Manual</EXTERNAL-DOC></EXTERNAL-DOCS>\n"
                                          "    </DESC>\n"));
    VLoadResult result = ReadText("v.odx-v", text);
    ASSERT_NE(result.GetDocument(), nullptr) << Findings(result);
    EXPECT_TRUE(result.GetDiagnostics().empty()) << Findings(result);
    VVehicleInfoSpec& spec = *result.GetDocument()->VehicleInfoSpecCollection().Begin();
    ASSERT_TRUE(spec.HasDesc());
    VDescription& desc = spec.GetDesc();
    EXPECT_STREQ(desc.GetTi(), "TI.D");
    // The tagged text reads back as the original; the layout before EXTERNAL-DOCS is no content.
    EXPECT_EQ(std::string(desc.GetTaggedContent()), "<p>a &amp; <b>b</b> &lt;c&gt;</p><p>two</p>");
    EXPECT_EQ(std::string(desc.GetContent()), "a &amp; b &lt;c&gt;\ntwo");
    ASSERT_EQ(desc.ExternalDocCollection().Count(), 1u);
    VExternalDoc& doc = *desc.ExternalDocCollection().begin();
    EXPECT_STREQ(doc.GetHref(), "h.pdf");
    EXPECT_STREQ(doc.GetBaseMember(), "Manual");
}

TEST(Text, EntitiesAndCharacterReferencesAreDecodedInTextAndAttributes)
{
    const std::string text = Odx("  <FLASH ID=\"F&amp;1\">\n    <SHORT-NAME>A&amp;B</SHORT-NAME>\n"
                                 "    <SDGS><SDG SI=\"a &amp; b &lt;c&gt; &#38;\">"
                                 "<SD>x &lt; y &#228; <![CDATA[<raw>]]></SD></SDG></SDGS>\n  </FLASH>\n");
    VLoadResult result = ReadText("f.odx-f", text);
    ASSERT_NE(result.GetDocument(), nullptr) << Findings(result);
    VFlash& flash = *result.GetDocument()->FlashCollection().Begin();
    EXPECT_STREQ(flash.GetShortName(), "A&B");
    EXPECT_STREQ(flash.GetId(), "F&1");
    VSdg& sdg = *flash.SdgCollection().begin();
    EXPECT_STREQ(sdg.GetSi(), "a & b <c> &");
    EXPECT_STREQ((*sdg.SdgSdChoiceCollection().begin()).GetAsSd()->GetBaseMember(), "x < y \xC3\xA4 <raw>");
}

TEST(Comments, AttachToTheNextElementMadeJoinedByNewlines)
{
    const std::string text = "<?xml version=\"1.0\"?>\n<!-- before the root -->\n<ODX>\n"
                             "  <FUNCTION-DICTIONARY ID=\"FD\">\n    <SHORT-NAME>FD</SHORT-NAME>\n    <SDGS>\n"
                             "      <!-- one -->\n      <!-- two -->\n      <?tool mark=\"1\"?>\n"
                             "      <SDG SI=\"first\"><SD>v</SD></SDG>\n      <SDG SI=\"second\"/>\n"
                             "    </SDGS>\n  </FUNCTION-DICTIONARY>\n</ODX>\n";
    VLoadResult result = ReadText("fd.odx-fd", text);
    ASSERT_NE(result.GetDocument(), nullptr) << Findings(result);
    VFunctionDictionary& dictionary = *result.GetDocument()->FunctionDictionaryCollection().Begin();
    EXPECT_STREQ(dictionary.GetComment(), " before the root ");
    auto sdg = dictionary.SdgCollection().begin();
    VSdg& first = *sdg;
    VSdg& second = *++sdg;
    EXPECT_STREQ(first.GetComment(), " one \n two ");
    ASSERT_EQ(first.ProcessingInstructionCollection().Count(), 1u);
    EXPECT_STREQ((*first.ProcessingInstructionCollection().Begin()).GetName(), "tool");
    EXPECT_STREQ((*first.ProcessingInstructionCollection().Begin()).GetContent(), "mark=\"1\"");
    EXPECT_FALSE((*first.SdgSdChoiceCollection().begin()).GetAsSd()->HasComment());
    EXPECT_FALSE(second.HasComment());
    EXPECT_EQ(second.ProcessingInstructionCollection().Count(), 0u);
}

TEST(Walk, TreeVisitsEveryElementReadOnceParentsFirst)
{
    // The example sources, and how often each element is written in them.
    std::vector<std::string> files;
    std::map<std::string, size_t> written;
    const std::regex startTag("<([A-Z][A-Z0-9-]*)[\\s/>]");
    for (const auto& entry : std::filesystem::directory_iterator(TESSEL_EXAMPLE_SOURCES)) {
        if (entry.path().extension().string().rfind(".odx", 0) == 0) {
            files.push_back(entry.path().string());
            const std::vector<unsigned char> bytes = ReadBytes(files.back());
            const std::string text(bytes.begin(), bytes.end());
            for (std::sregex_iterator it(text.begin(), text.end(), startTag), end; it != end; ++it) {
                // STATE is also the text of a revision, which is no element; a state has an id.
                if ((*it)[1].str() == "STATE" && (*it)[0].str().back() != ' ') {
                    continue;
                }
                ++written[(*it)[1].str()];
            }
        }
    }
    ASSERT_EQ(files.size(), 8u);
    VLoadResult result = VOdxReader().ReadFiles(files);
    ASSERT_NE(result.GetDocument(), nullptr) << Findings(result);
    VOdx& root = *result.GetDocument();
    std::set<const VOdxElement*> seen;
    std::map<std::string, size_t> visited;
    size_t links = 0;
    VOdxWalk::Tree(root, [&](VOdxElement& element) {
        if (&element != &root) {
            EXPECT_EQ(seen.count(&element.GetParent()), 1u) << element.GetXPATH(eXPathPosition).GetBuffer();
        }
        if (dynamic_cast<VOdxlink*>(&element) != nullptr) {
            ++links;
        }
        EXPECT_TRUE(seen.insert(&element).second);
        // Each child under the name the documents give it; link objects and compounds have none.
        VOdxWalk::NamedChildren(element, [&visited](VOdxElement&, const char* name) {
            if (name != nullptr) {
                ++visited[name];
            }
        });
    });
    EXPECT_EQ(links, result.GetLinkCount());
    EXPECT_EQ(seen.size(), [&root] {
        size_t children = 1;
        VOdxWalk::Tree(root, [&children](VOdxElement&) { ++children; });
        return children - 1;
    }());
    for (const auto& [tag, count] : visited) {
        EXPECT_EQ(count, written[tag]) << tag;
    }
    for (const char* tag : {"ADMIN-DATA", "COMPANY-DATA", "COMPANY-DATA-REF", "COMPANY-DOC-INFO",
                            "COMPANY-REVISION-INFO", "COMPANY-SPECIFIC-INFO", "DATE", "DESC", "DOC-REVISION",
                            "EXTERNAL-DOC", "LONG-NAME", "MODIFICATION", "RELATED-DOC", "SD", "SDG", "SDG-CAPTION",
                            "SDG-CAPTION-REF", "TEAM-MEMBER", "TEAM-MEMBER-REF", "XDOC"}) {
        EXPECT_GT(written[tag], 0u) << tag;
        EXPECT_EQ(visited[tag], written[tag]) << tag;
    }
    const std::vector<std::string> paths = Paths(root);
    EXPECT_EQ(paths.size(), seen.size());
    EXPECT_EQ(std::set<std::string>(paths.begin(), paths.end()).size(), paths.size()) << "paths are not unique";
}

} // namespace
} // namespace XmlTests
