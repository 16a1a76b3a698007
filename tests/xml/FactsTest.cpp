// Every element and attribute name that ODX documents use, as the shared notes on the format list
// them, is read somewhere, or stands below with the reason why the model cannot hold it.

#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "TesselODX220Xml/VOdxTagNames.h"
#include "XmlTestSupport.h"

namespace XmlTests {
namespace {

// Names the model has no place for, each with the reason.
const std::map<std::string, std::string> kUnheld = {
    {"IN-PARAM-IF-REF", "a communication relation names its parameter by short name or path only"},
    {"OUT-PARAM-IF-REF", "a communication relation names its parameter by short name or path only"},
    {"SELECTION-TABLE-REF", "dynamic definitions name selection tables by short name only"},
};

// The names of the notes' element section: those being defined and those their content names,
// without attributes (@NAME), remarks in parentheses and the placeholder of the layer content.
struct Names {
    std::set<std::string> elements;
    std::set<std::string> attributes;
};

Names NamesOfTheNotes(const std::string& path)
{
    Names names;
    std::ifstream in(path);
    std::string line;
    bool elements = false;
    const std::regex word(R"((@?)\b([A-Z][A-Z0-9]*(?:-[A-Z0-9]+)*)\b)");
    while (std::getline(in, line)) {
        if (line.rfind("## ", 0) == 0) {
            elements = line == "## Elements";
            continue;
        }
        if (!elements || line.empty() || line[0] == '#' || line[0] == '(') {
            continue;
        }
        // Remarks stand in parentheses; the xsi:type kinds of a family stand in brackets.
        std::string text;
        int depth = 0;
        for (char c : line) {
            depth += c == '(' ? 1 : c == ')' ? -1 : 0;
            if (depth == 0 && c != ')') {
                text += c;
            }
        }
        for (std::sregex_iterator it(text.begin(), text.end(), word), end; it != end; ++it) {
            const std::string name = (*it)[2].str();
            if ((*it)[1].length() > 0) {
                names.attributes.insert(name);
            } else if (name != "LAYER-COMMON") {
                names.elements.insert(name);
            }
        }
    }
    return names;
}

TEST(Facts, EveryNameOfTheFormatIsReadOrHasAReasonWhyNot)
{
    const std::string notes = CorpusDir() + "/../odx-xml-facts.md";
    if (!std::filesystem::exists(notes)) {
        GTEST_SKIP() << "no notes on the format at " << notes;
    }
    const Names names = NamesOfTheNotes(notes);
    ASSERT_GT(names.elements.size(), 400u);
    std::set<std::string> read;
    for (const std::string& name : VOdxTagNames::ReadElementNames()) {
        read.insert(name);
    }
    read.insert("ODX");  // the root, which the reader opens itself
    for (const std::string& name : names.elements) {
        EXPECT_TRUE(read.count(name) == 1 || kUnheld.count(name) == 1) << name << " is neither read nor listed";
        EXPECT_FALSE(read.count(name) == 1 && kUnheld.count(name) == 1) << name << " is read after all";
    }
    std::set<std::string> attributes;
    for (const std::string& name : VOdxTagNames::ReadAttributeNames()) {
        attributes.insert(name);
    }
    // Attributes that the reader takes apart from the classes: of the root and of xsi.
    attributes.insert({"MODEL-VERSION", "F-DTD-VERSION", "UPD", "CREATION-DATE", "MIME-TYPE"});
    for (const std::string& name : names.attributes) {
        EXPECT_EQ(attributes.count(name), 1u) << "attribute " << name << " is not read";
    }
}

} // namespace
} // namespace XmlTests
