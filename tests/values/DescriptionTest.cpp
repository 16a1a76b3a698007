// Markup nodes and the plain and tagged renderings of descriptions.

#include <string>

#include <gtest/gtest.h>

#include "TesselODX220Model.h"

namespace NODX220 {
namespace {

class DescriptionTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        mDescription = &mFactory.MakeDescription(mRoot, TAG_DESC);
        mFactory.UnhandledElementCollection().Append(*mDescription);
    }
    void TearDown() override { mFactory.DestroyOdx(mRoot); }

    // Delivers a top-level node the way a reader does.
    VSimpleXmlElement& Node(const char* name, const char* text = nullptr)
    {
        VSimpleXmlElement& node = mFactory.MakeSimpleXmlElement(name);
        if (text != nullptr) {
            node.SetPCData(VYAString(text), true);
        }
        EXPECT_TRUE(mDescription->HandleSimpleXmlElement(TAG_FORMAT_TAG, node));
        return node;
    }

    VOdxFactory& mFactory = VOdxFactory::Instance();
    VOdx& mRoot = mFactory.MakeOdx();
    VDescription* mDescription = nullptr;
};

TEST_F(DescriptionTest, EmptyDescription)
{
    EXPECT_STREQ(mDescription->GetContent(), "");
    EXPECT_STREQ(mDescription->GetTaggedContent(), "");
    EXPECT_FALSE(mDescription->HasDescContent());
    EXPECT_THROW(mDescription->GetContentAsDOM(), VOdxException);
    VSimpleXmlElement& node = mFactory.MakeSimpleXmlElement("p");
    EXPECT_FALSE(mDescription->HandleSimpleXmlElement(TAG_DESC, node));
    delete &node;
}

TEST_F(DescriptionTest, PlainTextBreaksBeforeParagraphsItemsAndBreaks)
{
    Node("p", "A");
    Node("b", "bold");
    Node("p", "B");
    Node("br");
    VSimpleXmlElement& list = Node("ul");
    list.NewInnerTag(VYAString("li")).SetPCData(VYAString("one"), false);
    list.NewInnerTag(VYAString("li")).SetPCData(VYAString("two"), false);
    EXPECT_EQ(std::string(mDescription->GetContent()), "Abold\nB\n\none\ntwo");
    EXPECT_EQ(mDescription->GetContentAsDOM().GetChildCount(), 5u);
    EXPECT_TRUE(mDescription->GetContentAsDOM().GetTagname().IsEmpty());
}

TEST_F(DescriptionTest, TaggedTextKeepsMarkupAndEscapes)
{
    Node("p", "a<b & c");
    Node("br");
    VSimpleXmlElement& mixed = Node("p");
    mixed.NewInnerTag(VYAString("")).SetPCData(VYAString("x "), false);
    mixed.NewInnerTag(VYAString("b")).SetPCData(VYAString("y"), false);
    VSimpleXmlElement& single = Node("i");
    single.NewInnerTag(VYAString("")).SetPCData(VYAString("only"), false);
    EXPECT_EQ(std::string(mDescription->GetTaggedContent()),
              "<p>a&lt;b &amp; c</p><br/><p>x <b>y</b></p><i>only</i>");
    // A text node writes no tags, and nothing below it does either.
    VSimpleXmlElement& text = Node("");
    text.NewInnerTag(VYAString("b")).SetPCData(VYAString("z"), false);
    EXPECT_EQ(std::string(mDescription->GetTaggedContent()),
              "<p>a&lt;b &amp; c</p><br/><p>x <b>y</b></p><i>only</i>z");
}

TEST_F(DescriptionTest, AttributesFollowTheNameWithoutBlanks)
{
    VSimpleXmlElement& node = Node("p", "t");
    node.SetAttribute(VYAString("b"), VYAString("2"), false);
    node.SetAttribute(VYAString("a"), VYAString("1"), false);
    EXPECT_EQ(std::string(mDescription->GetTaggedContent()), "<pa=\"1\"b=\"2\">t</p>");
}

TEST_F(DescriptionTest, CopyClonesTheTreeWithoutAttributes)
{
    VSimpleXmlElement& node = Node("p", "t");
    node.SetAttribute(VYAString("a"), VYAString("1"), false);
    mDescription->HandleTChar(TAG_TI, "TI.1");
    VDescription& copy = mDescription->Clone(mRoot);
    mFactory.UnhandledElementCollection().Append(copy);
    ASSERT_TRUE(copy.HasDescContent());
    EXPECT_NE(&copy.GetContentAsDOM(), &mDescription->GetContentAsDOM());
    EXPECT_EQ(std::string(copy.GetTaggedContent()), "<p>t</p>");
    EXPECT_STREQ(copy.GetTi(), "TI.1");
    EXPECT_TRUE(copy.HasTi());
}

TEST_F(DescriptionTest, SetContentReplacesTheTree)
{
    Node("p", "old");
    auto* root = new VSimpleXmlElementRoot();
    root->NewInnerTag(VYAString("p")).SetPCData(VYAString("new"), false);
    mDescription->SetContent(*root);
    EXPECT_STREQ(mDescription->GetContent(), "new");
}

TEST(SimpleXmlElementTest, AttributesAndCharacterData)
{
    VSimpleXmlElement node(VYAString("p"));
    EXPECT_TRUE(node.SetAttribute(VYAString("empty"), VYAString(""), false));
    EXPECT_TRUE(node.GetAttribute(VYAString("empty")).IsEmpty());
    EXPECT_TRUE(node.GetAttribute(VYAString("absent")).IsEmpty());
    EXPECT_EQ(node.GetAttributeNames().Size(), 1u);

    EXPECT_TRUE(node.SetAttribute(VYAString("n"), -5));
    EXPECT_STREQ(node.GetAttribute(VYAString("n")).GetBuffer(), "-5");
    EXPECT_TRUE(node.SetAttribute(VYAString("n"), false));
    EXPECT_STREQ(node.GetAttribute(VYAString("n")).GetBuffer(), "-5");
    EXPECT_FALSE(node.SetAttribute(VYAString("n"), true));
    EXPECT_TRUE(node.GetAttribute(VYAString("n")).IsEmpty());
    EXPECT_TRUE(node.SetAttribute(VYAString("q"), VYAString("<&>"), true));
    EXPECT_STREQ(node.GetAttribute(VYAString("q")).GetBuffer(), "&lt;&amp;&gt;");

    node.SetPCData(VYAString("a<b"), true);
    EXPECT_STREQ(node.GetPCData().GetBuffer(), "a&lt;b");
    node.AppendPCData(VYAString("&lt;"), true);
    node.AppendPCData(VYAString("&"), false);
    EXPECT_STREQ(node.GetPCData().GetBuffer(), "a&lt;b&amp;lt;&");
    node.SetPCData(VYAString("a<b"), false);
    EXPECT_STREQ(node.GetPCData().GetBuffer(), "a<b");
}

TEST(SimpleXmlElementTest, ChildrenCloneAndClear)
{
    VSimpleXmlElement node(VYAString("ul"));
    node.SetAttribute(VYAString("a"), VYAString("1"), false);
    node.SetPCData(VYAString("data"), false);
    node.NewInnerTag(VYAString("li")).SetAttribute(VYAString("b"), VYAString("2"), false);
    node.NewInnerTag(VYAString("li"));
    EXPECT_EQ(node.GetChildCount(), 2u);
    EXPECT_THROW(node.GetChildElementAt(2), VOdxException);

    VSimpleXmlElement& copy = node.Clone();
    EXPECT_EQ(copy.GetChildCount(), 2u);
    EXPECT_EQ(copy.GetAttributeNames().Size(), 0u);
    EXPECT_EQ(copy.GetChildElementAt(0).GetAttributeNames().Size(), 0u);
    EXPECT_STREQ(copy.GetPCData().GetBuffer(), "data");
    delete &copy;

    node.Clear();
    EXPECT_EQ(node.GetChildCount(), 0u);
    EXPECT_EQ(node.GetAttributeNames().Size(), 0u);
    EXPECT_STREQ(node.GetTagname().GetBuffer(), "ul");
    EXPECT_STREQ(node.GetPCData().GetBuffer(), "data");
}

} // namespace
} // namespace NODX220
