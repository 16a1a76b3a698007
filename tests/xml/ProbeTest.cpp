#include "XmlTestSupport.h"
namespace XmlTests {
namespace {
TEST(Probe, Things)
{
    const std::string text = Odx(
        "  <DIAG-LAYER-CONTAINER ID=\"D\">\n"
        "    <SHORT-NAME>D</SHORT-NAME>\n"
        "    <SDGS>\n"
        "      <SDG SI=\"x\"\n"
        "           COLOR=\"red\"\n"
        "           >\n"
        "        <SD>v</SD>\n"
        "      </SDG>\n"
        "      <SDG><UNKNOWN\n   a='1'/></SDG>\n"
        "    </SDGS>\n"
        "    <ADMIN-DATA><DOC-REVISIONS><DOC-REVISION>\n"
        "      <TEAM-MEMBER-REF\n         ID-REF=\"TM\"\n         DOCTYPE=\"X\"/>\n"
        "    </DOC-REVISION></DOC-REVISIONS></ADMIN-DATA>\n"
        "  </DIAG-LAYER-CONTAINER>\n");
    VLoadResult result = ReadText("p.odx-d", text);
    std::cout << text << Findings(result);
}
}
}
