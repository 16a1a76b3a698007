#include "FrameworkFixture.h"

namespace FrameworkTests {
namespace {

// A text that notes every pad-lock count it passes through, and its destruction.
class CountingText : public VText {
public:
    CountingText(VOdxElement& parent, std::vector<int>& counts, Graveyard& graveyard, const char* name)
        : VText(parent, TAG_LONG_NAME), mCounts(counts), mGraveyard(graveyard), mName(name)
    {
    }
    ~CountingText() override { mGraveyard.push_back(mName); }

    void AddPadLock() override
    {
        VText::AddPadLock();
        mCounts.push_back(GetPadLockCount());
    }
    void RemovePadLock() override
    {
        mCounts.push_back(GetPadLockCount() - 1);
        VText::RemovePadLock();
    }

private:
    std::vector<int>& mCounts;
    Graveyard& mGraveyard;
    std::string mName;
};

class Rootless : public VOdxElement {
public:
    explicit Rootless(VOdxElement& parent) : VOdxElement(parent) {}
    bool HandleTag(VOdxTagEnum, VOdxElement&) override { return false; }
};

class PadLockTest : public DocumentFixture {
protected:
    std::vector<int> mCounts;
};

TEST_F(PadLockTest, LastRemovalDestroysAndRemovalAtZeroDoesNot)
{
    auto* probe = new Probe(mOdx, TAG_SDG, &mGraveyard, "p");
    probe->AddPadLock();
    probe->AddPadLock();
    probe->RemovePadLock();
    EXPECT_EQ(1, probe->GetPadLockCount());
    EXPECT_TRUE(probe->IsReferenced());
    EXPECT_TRUE(mGraveyard.empty());
    probe->RemovePadLock();
    EXPECT_EQ(Graveyard{"p"}, mGraveyard);

    auto* loose = new Probe(mOdx, TAG_SDG, &mGraveyard, "loose");
    loose->RemovePadLock();
    EXPECT_EQ(-1, loose->GetPadLockCount());
    EXPECT_FALSE(loose->IsReferenced());
    EXPECT_EQ(1u, mGraveyard.size());
    mFactory.DestroyElement(loose);
    EXPECT_EQ((Graveyard{"p", "loose"}), mGraveyard);
}

TEST_F(PadLockTest, AssignmentThroughSmartObjectResetsOnlyTheTarget)
{
    Probe target(mOdx, TAG_SDG);
    Probe source(mOdx, TAG_SDG);
    target.AddPadLock();
    target.AddPadLock();
    source.AddPadLock();
    VSmartObject& targetObject = target;
    VSmartObject& sourceObject = source;
    targetObject = sourceObject;
    EXPECT_EQ(0, target.GetPadLockCount());
    EXPECT_EQ(1, source.GetPadLockCount());

    VSmartObject& alias = source;
    sourceObject = alias;
    EXPECT_EQ(1, source.GetPadLockCount());
}

TEST_F(PadLockTest, HandlesShareOneElement)
{
    {
        VSmarty<Probe> empty;
        VSmarty<Probe> copy(empty);
        EXPECT_EQ(nullptr, copy.Pointee());
    }
    auto* probe = new Probe(mOdx, TAG_SDG, &mGraveyard, "shared");
    auto* second = new VSmarty<Probe>(probe);
    {
        VSmarty<Probe> first(*second);
        EXPECT_EQ(probe, first.Pointee());
        EXPECT_EQ(2, probe->GetPadLockCount());

        VSmarty<Probe>& alias = first;
        first = alias;
        EXPECT_EQ(2, probe->GetPadLockCount());
        EXPECT_EQ(probe, first.Pointee());
    }
    EXPECT_EQ(1, probe->GetPadLockCount());
    EXPECT_TRUE(mGraveyard.empty());

    auto* other = new Probe(mOdx, TAG_SDG, &mGraveyard, "other");
    VSmarty<Probe> otherHandle(other);
    *second = otherHandle;
    EXPECT_EQ(Graveyard{"shared"}, mGraveyard);
    EXPECT_EQ(2, other->GetPadLockCount());
    delete second;
    EXPECT_EQ(1, other->GetPadLockCount());
}

TEST_F(PadLockTest, ReferencedInHandleButNotInCollection)
{
    ProbeCollection collection(mOdx);
    auto* listed = new Probe(mOdx, TAG_COMPARAM);
    collection.Append(*listed);
    EXPECT_FALSE(listed->IsReferenced());

    VSmarty<Probe> handle(new Probe(mOdx, TAG_COMPARAM));
    EXPECT_TRUE(handle.Pointee()->IsReferenced());
}

TEST_F(PadLockTest, MemberSetterLocksBeforeReleasing)
{
    VFlash& flash = AddFlash("F");
    std::vector<int>& counts = mCounts;
    auto* first = new CountingText(flash, counts, mGraveyard, "first");
    flash.SetLongName(*first);
    EXPECT_EQ(1, first->GetPadLockCount());

    counts.clear();
    flash.SetLongName(flash.GetLongName());
    EXPECT_EQ((std::vector<int>{2, 1, 2, 1}), counts);
    EXPECT_TRUE(mGraveyard.empty());
    EXPECT_EQ(first, &flash.GetLongName());

    // A second holder keeps the replaced child alive; without it the child goes.
    VSmarty<VText> keeper(first);
    auto* second = new CountingText(flash, counts, mGraveyard, "second");
    flash.SetLongName(*second);
    EXPECT_TRUE(mGraveyard.empty());
    EXPECT_EQ(1, first->GetPadLockCount());

    auto* third = new CountingText(flash, counts, mGraveyard, "third");
    flash.SetLongName(*third);
    EXPECT_EQ(Graveyard{"second"}, mGraveyard);
    EXPECT_EQ(&flash, &third->GetParent());
}

using ElementCoreTest = DocumentFixture;

TEST_F(ElementCoreTest, CommentKeepsTheLastText)
{
    VFlash& flash = AddFlash("F");
    EXPECT_FALSE(flash.HasComment());
    auto failure = CatchOdx([&] { flash.GetComment(); });
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ("mpComment!=NULL", Str(failure->GetMessage()));

    flash.SetComment("first");
    flash.SetComment("second");
    EXPECT_TRUE(flash.HasComment());
    EXPECT_STREQ("second", flash.GetComment());
}

TEST_F(ElementCoreTest, ProcessingInstructionsAreMadeOnFirstUse)
{
    VFlash& flash = AddFlash("F");
    VProcessingInstructionCollection& instructions = flash.ProcessingInstructionCollection();
    EXPECT_TRUE(instructions.IsEmpty());
    EXPECT_EQ(&instructions, &flash.ProcessingInstructionCollection());

    VProcessingInstruction& added = instructions.AddNew();
    added.SetName("editor");
    EXPECT_EQ(1u, flash.ProcessingInstructionCollection().Count());
    EXPECT_STREQ("editor", (*flash.ProcessingInstructionCollection().Begin()).GetName());
    EXPECT_STREQ("", added.GetContent());
}

TEST_F(ElementCoreTest, DefaultHandlersRefuse)
{
    VAdminData& admin = mFactory.MakeAdminData(mOdx, TAG_ADMIN_DATA);
    EXPECT_FALSE(admin.HandleTChar(TAG_SHORT_NAME, "x"));
    EXPECT_FALSE(admin.HandleBool(TAG_IS_FINAL, true));
    EXPECT_FALSE(admin.HandleInt(TAG_OFFSET, -1));
    EXPECT_FALSE(admin.HandleDouble(TAG_V, 1.0));
    EXPECT_FALSE(admin.HandleUInt(TAG_DTC_VALUE, 1u));
    EXPECT_FALSE(admin.HandleByte(TAG_FILLBYTE, 0xFF));
    mFactory.DestroyElement(&admin);
}

TEST_F(ElementCoreTest, QualifiedHandlersTakeOnlyTheirTagsAndClasses)
{
    VFlash& flash = AddFlash("");
    VText& text = mFactory.MakeText(flash, TAG_LONG_NAME);
    VDescription& desc = mFactory.MakeDescription(flash, TAG_DESC);
    VSdg& sdg = mFactory.MakeSdg(flash, TAG_SDG);

    EXPECT_FALSE(flash.HandleTag(TAG_SHORT_NAME, text));
    EXPECT_FALSE(flash.HandleTChar(TAG_LONG_NAME, "x"));
    EXPECT_TRUE(flash.HandleTChar(TAG_SHORT_NAME, "F1"));
    EXPECT_STREQ("F1", flash.GetShortName());

    EXPECT_FALSE(flash.HandleTag(TAG_LONG_NAME, desc));
    EXPECT_FALSE(flash.HasLongName());
    EXPECT_FALSE(flash.HandleTag(TAG_DESC, text));
    EXPECT_FALSE(flash.HasDesc());
    EXPECT_FALSE(flash.HandleTag(TAG_ADMIN_DATA, sdg));
    EXPECT_FALSE(flash.HasAdminData());

    EXPECT_TRUE(flash.HandleTag(TAG_LONG_NAME, text));
    EXPECT_TRUE(flash.HandleTag(TAG_DESC, desc));
    EXPECT_EQ(&text, &flash.GetLongName());
    EXPECT_EQ(&desc, &flash.GetDesc());
    // The tag a parent takes is not compared with the child's own tag.
    VAdminData& admin = mFactory.MakeAdminData(flash, TAG_SDG);
    EXPECT_TRUE(flash.HandleTag(TAG_ADMIN_DATA, admin));
    EXPECT_EQ(&admin, &flash.GetAdminData());
    mFactory.DestroyElement(&sdg);
}

TEST_F(ElementCoreTest, XmlTagAndParents)
{
    Probe unset(mOdx, TAG_UNSET);
    EXPECT_EQ("", Str(unset.GetXmlTag()));
    EXPECT_EQ(TAG_UNSET, unset.GetOdxTag());

    VFlash& flash = AddFlash("F");
    VSdg& sdg = mFactory.MakeSdg(flash, TAG_SDG);
    EXPECT_EQ("SDG", Str(sdg.GetXmlTag()));
    EXPECT_EQ(&flash, &sdg.GetParent());
    EXPECT_EQ(&flash, &sdg.GetPhysicalParent());
    EXPECT_EQ(&mOdx, &sdg.GetRootElement());
    EXPECT_EQ("Collection", Str(flash.SdgCollection().GetXmlTag()));
    EXPECT_EQ(TAG_COLLECTION, flash.SdgCollection().GetOdxTag());
    mFactory.DestroyElement(&sdg);

    Rootless rootless(mOdx);
    EXPECT_EQ(TAG_UNSET, rootless.GetOdxTag());
    auto failure = CatchOdx([&] { rootless.GetRootElement(); });
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ("mpRootElement!=NULL", Str(failure->GetMessage()));
}

} // namespace
} // namespace FrameworkTests
