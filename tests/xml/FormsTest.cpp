// XML forms that enter the model under another shape: references a table key gathers into a
// compound, and forms the model has no place for, which are reported with their reason.

#include "TesselODX220Xml/VOdxCompare.h"
#include "TesselODX220Xml/VOdxWriter.h"
#include "XmlTestSupport.h"

namespace XmlTests {
namespace {

std::string Layer(const std::string& content)
{
    return Odx("  <DIAG-LAYER-CONTAINER ID=\"C\">\n    <SHORT-NAME>C</SHORT-NAME>\n    <BASE-VARIANTS>\n"
               "      <BASE-VARIANT ID=\"BV\">\n        <SHORT-NAME>BV</SHORT-NAME>\n" +
               content + "      </BASE-VARIANT>\n    </BASE-VARIANTS>\n  </DIAG-LAYER-CONTAINER>\n");
}

VTableKey& KeyOf(VOdx& root, unsigned position)
{
    VBaseVariant& layer = dynamic_cast<VBaseVariant&>(*(*root.DiagLayerContainerCollection().begin())
                                                           .DiagLayerCollection()
                                                           .begin());
    auto param = (*layer.RequestCollection().begin()).ParamCollection().begin();
    for (unsigned i = 0; i < position; ++i) {
        ++param;
    }
    return dynamic_cast<VTableKey&>(*param);
}

// A table key names a table and a row of it with two references; both stay, in the compound
// that the first one made, and are written back in place.
TEST(Forms, TableKeyKeepsTheTableAndItsRowTogether)
{
    const std::string text =
        Layer("        <REQUESTS>\n          <REQUEST ID=\"RQ\">\n            <SHORT-NAME>RQ</SHORT-NAME>\n"
              "            <PARAMS>\n"
              "              <PARAM ID=\"K1\" xsi:type=\"TABLE-KEY\">\n                <SHORT-NAME>ById</SHORT-NAME>\n"
              "                <TABLE-REF ID-REF=\"BV\"/>\n                <TABLE-ROW-SNREF SHORT-NAME=\"Row\"/>\n"
              "              </PARAM>\n"
              "              <PARAM ID=\"K2\" xsi:type=\"TABLE-KEY\">\n                <SHORT-NAME>ByName</SHORT-NAME>\n"
              "                <TABLE-SNREF SHORT-NAME=\"T\"/>\n                <TABLE-ROW-SNREF SHORT-NAME=\"Row\"/>\n"
              "              </PARAM>\n"
              "              <PARAM ID=\"K3\" xsi:type=\"TABLE-KEY\">\n                <SHORT-NAME>RowOnly</SHORT-NAME>\n"
              "                <TABLE-ROW-SNREF SHORT-NAME=\"Row\"/>\n"
              "              </PARAM>\n"
              "            </PARAMS>\n          </REQUEST>\n        </REQUESTS>\n");
    VLoadResult result = ReadText("tk.odx-d", text);
    ASSERT_NE(result.GetDocument(), nullptr) << Findings(result);
    EXPECT_EQ(result.GetUnhandledCount(), 0u) << Findings(result);
    EXPECT_EQ(Finding(result, eSeverityWarning, "replaces"), nullptr) << Findings(result);

    VTableKey& byId = KeyOf(*result.GetDocument(), 0);
    VOdxlinkToTable* compound = byId.GetOdxlinkToTableSnrefToTableTableRowLinkChoice().GetAsOdxlinkToTable();
    ASSERT_NE(compound, nullptr);
    EXPECT_TRUE(compound->HasTableRef());
    ASSERT_TRUE(compound->HasTableRowSnref());
    EXPECT_STREQ(compound->GetTableRowSnref().GetLink().GetAsSnref()->GetShortName(), "Row");

    VSnrefToTable* byName =
        KeyOf(*result.GetDocument(), 1).GetOdxlinkToTableSnrefToTableTableRowLinkChoice().GetAsSnrefToTable();
    ASSERT_NE(byName, nullptr);
    EXPECT_TRUE(byName->HasTableSnref());
    EXPECT_TRUE(byName->HasTableRowSnref());

    // Without a table before it, the row stands alone.
    EXPECT_TRUE(KeyOf(*result.GetDocument(), 2).GetOdxlinkToTableSnrefToTableTableRowLinkChoice().IsTableRowRef());

    const std::string written =
        VOdxWriter().WriteDocument(*result.GetDocument()->DiagLayerContainerCollection().begin());
    const std::vector<std::string> differences = VOdxCompare::Canonical(text, written);
    EXPECT_TRUE(differences.empty()) << differences.front();
}

// What ODX allows but the model cannot hold is reported where it stands, with the reason, and
// the rest of the document loads.
TEST(Forms, UnheldFormsAreReportedWithTheirReason)
{
    const std::string text = Layer(
        "        <SUB-COMPONENTS>\n          <SUB-COMPONENT ID=\"SC\">\n            <SHORT-NAME>SC</SHORT-NAME>\n"
        "            <SUB-COMPONENT-PARAM-CONNECTORS>\n"
        "              <SUB-COMPONENT-PARAM-CONNECTOR ID=\"SCPC\">\n                <SHORT-NAME>P</SHORT-NAME>\n"
        "                <IN-PARAM-IF-REFS>\n"
        "                  <IN-PARAM-IF-SNREF SHORT-NAME=\"kept\"/>\n"
        "                  <IN-PARAM-IF-SNPATHREF SHORT-NAME-PATH=\"a.b\"/>\n"
        "                </IN-PARAM-IF-REFS>\n"
        "              </SUB-COMPONENT-PARAM-CONNECTOR>\n"
        "            </SUB-COMPONENT-PARAM-CONNECTORS>\n          </SUB-COMPONENT>\n        </SUB-COMPONENTS>\n"
        "        <DYN-DEFINED-SPEC>\n          <DYN-ID-DEF-MODE-INFOS>\n            <DYN-ID-DEF-MODE-INFO>\n"
        "              <DEF-MODE>M</DEF-MODE>\n              <SELECTION-TABLE-REFS>\n"
        "                <SELECTION-TABLE-REF ID-REF=\"T\"/>\n"
        "                <SELECTION-TABLE-SNREF SHORT-NAME=\"T\"/>\n"
        "              </SELECTION-TABLE-REFS>\n"
        "            </DYN-ID-DEF-MODE-INFO>\n          </DYN-ID-DEF-MODE-INFOS>\n        </DYN-DEFINED-SPEC>\n"
        "        <PARENT-REFS>\n          <PARENT-REF ID-REF=\"X\" xsi:type=\"ECU-VARIANT-REF\"/>\n"
        "        </PARENT-REFS>\n");
    VLoadResult result = ReadText("forms.odx-d", text);
    ASSERT_NE(result.GetDocument(), nullptr) << Findings(result);
    EXPECT_EQ(result.GetUnhandledCount(), 3u) << Findings(result);

    const VDiagnostic* path = Finding(result, eSeverityWarning, "element IN-PARAM-IF-SNPATHREF is not read: ");
    ASSERT_NE(path, nullptr) << Findings(result);
    EXPECT_EQ(path->mLine, LineOf(text, "<IN-PARAM-IF-SNPATHREF"));
    EXPECT_NE(path->mPath.find("IN-PARAM-IF-REFS[1]/IN-PARAM-IF-SNPATHREF[1]"), std::string::npos) << path->mPath;
    EXPECT_NE(Finding(result, eSeverityWarning, "element SELECTION-TABLE-REF is not read: "), nullptr);
    // A kind that no class stands for is named by its xsi:type.
    EXPECT_NE(Finding(result, eSeverityWarning, "element PARENT-REF of xsi:type ECU-VARIANT-REF is not read"), nullptr)
        << Findings(result);

    // What has a place was taken: the input link under its model tag, the short-name table.
    VBaseVariant& layer = dynamic_cast<VBaseVariant&>(
        *(*result.GetDocument()->DiagLayerContainerCollection().begin()).DiagLayerCollection().begin());
    VSubComponentParamConnector& connector =
        *(*layer.SubComponentCollection().begin()).SubComponentParamConnectorCollection().begin();
    ASSERT_EQ(connector.InParamIfLinkCollection().Count(), 1u);
    EXPECT_EQ((*connector.InParamIfLinkCollection().begin()).GetOdxTag(), TAG_WRITE_DATA_SNREF);
    VDynIdDefModeInfo& info = *layer.GetDynDefinedSpec().DynIdDefModeInfoCollection().begin();
    EXPECT_EQ(info.TableLinkCollection().Count(), 1u);
    EXPECT_FALSE(layer.HasParentRefCollection());
}

} // namespace
} // namespace XmlTests
