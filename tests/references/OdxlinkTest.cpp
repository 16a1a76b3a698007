#include "ReferencesFixture.h"

namespace ReferencesTests {
namespace {

using OdxlinkTest = ReferencesTest;

TEST_F(OdxlinkTest, LocalLinkFallsBackToAnotherCategoryAndNamesIt)
{
    VFlash& a = Flash("A");
    VComparamSpec& b = Comparams("B");
    VCompanyData& x = Company(b, "X");
    VOdxlink& fromA = Link(a, "X");
    VOdxlink& inB = Link(b, "X", "B", eDoctypeComparamSpec);
    EXPECT_FALSE(fromA.HasReferencable());

    ASSERT_TRUE(fromA.Resolve());
    EXPECT_EQ(&x, &fromA.GetReferencable());
    ExpectDocref(fromA, "B", eDoctypeComparamSpec);
    // A docref to the link's own document is dropped.
    ASSERT_TRUE(inB.Resolve());
    EXPECT_EQ(&x, &inB.GetReferencable());
    ExpectLocal(inB);

    fromA.SetRevision("2.1");
    fromA.Reset();
    EXPECT_EQ(&x, &fromA.GetReferencable());
    EXPECT_STREQ("", fromA.GetIdRef());
    ExpectLocal(fromA);
    EXPECT_STREQ("2.1", fromA.GetRevision());
}

TEST_F(OdxlinkTest, DocrefLinkNeedsTheKindOfItsDocument)
{
    VFlash& a = Flash("A");
    VDiagLayerContainer& b =
        Add(mFactory.MakeDiagLayerContainer(mOdx, TAG_DIAG_LAYER_CONTAINER), TAG_DIAG_LAYER_CONTAINER, "B");
    VCompanyData& x = Company(b, "X");
    VOdxlink& byContainer = Link(a, "X", "B", eDoctypeContainer);
    VOdxlink& inside = Link(b, "X", "B", eDoctypeContainer);
    VOdxlink& untyped = Link(a, "X", "B");

    ASSERT_TRUE(byContainer.Resolve());
    EXPECT_EQ(&x, &byContainer.GetReferencable());
    ExpectDocref(byContainer, "B", eDoctypeContainer);
    ASSERT_TRUE(inside.Resolve());
    ExpectLocal(inside);

    EXPECT_FALSE(untyped.Resolve());
    EXPECT_FALSE(untyped.HasReferencable());
    EXPECT_STREQ("X", untyped.GetIdRef());
    ExpectDocref(untyped, "B", eDoctypeNone);
}

TEST_F(OdxlinkTest, LayerFileKeepsLinksToTargetsWithoutLayerLocal)
{
    mOdx.SetLayerFileType(static_cast<VLayerFileType>(1));
    VFlash& a = Flash("A");
    VCompanyData& x = Company(Comparams("B"), "X");
    VOdxlink& plain = Link(a, "X");
    VOdxlink& named = Link(a, "X", "B", eDoctypeComparamSpec);

    Links().ResolveReferences(true);
    EXPECT_EQ(&x, &plain.GetReferencable());
    EXPECT_EQ(&x, &named.GetReferencable());
    ExpectLocal(plain);
    ExpectLocal(named);

    mOdx.SetLayerFileType(static_cast<VLayerFileType>(0));
    Links().ResolveReferences(true);
    ExpectDocref(plain, "B", eDoctypeComparamSpec);
    ExpectDocref(named, "B", eDoctypeComparamSpec);
}

TEST_F(OdxlinkTest, NewIdOfTheTargetRewritesAllItsLinks)
{
    VComparamSpec& b = Comparams("B");
    VCompanyData& x = Company(b, "X");
    VOdxlink& fromA = Link(Flash("A"), "X");
    VOdxlink& inB = Link(b, "X");
    Links().ResolveReferences(true);

    b.SetShortName("B2");
    x.SetId("Y");
    EXPECT_STREQ("Y", fromA.GetIdRef());
    ExpectDocref(fromA, "B2", eDoctypeComparamSpec);
    EXPECT_STREQ("Y", inB.GetIdRef());
    ExpectLocal(inB);

    LogCapture log(VLogLevel::eDebug);
    Links().ResolveReferences(false);
    EXPECT_TRUE(log.lines.empty());
    EXPECT_EQ(&x, &fromA.GetReferencable());
}

TEST_F(OdxlinkTest, DestroyedTargetLeavesTheTextForALaterResolve)
{
    VComparamSpec& b = Comparams("B");
    VCompanyData& x = Company(b, "X", true);
    VOdxlink& fromA = Link(Flash("A"), "X");
    VOdxlink& inB = Link(b, "X");
    Links().ResolveReferences(true);

    mFactory.DestroyElement(&x);
    EXPECT_FALSE(fromA.HasReferencable());
    EXPECT_FALSE(inB.HasReferencable());
    EXPECT_STREQ("X", fromA.GetIdRef());
    ExpectDocref(fromA, "B", eDoctypeComparamSpec);
    EXPECT_STREQ("X", inB.GetIdRef());
    EXPECT_EQ(0u, Map().Count());

    VCompanyData& successor = Company(b, "X");
    Links().ResolveReferences(true);
    EXPECT_EQ(&successor, &fromA.GetReferencable());
    EXPECT_EQ(&successor, &inB.GetReferencable());
}

TEST_F(OdxlinkTest, EachFailureIsLoggedOncePerCallUnlessSilent)
{
    VFlash& a = Flash("A");
    Company(a, "X");
    Link(a, "ID1", "DOC");
    VOdxlink& good = Link(a, "X");
    Link(a, "ID2");
    Link(mOdx, "X");  // outside any document a local link has nowhere to look
    {
        LogCapture quiet(VLogLevel::eError);
        Links().ResolveReferences(false);
        EXPECT_TRUE(quiet.lines.empty());
    }
    LogCapture log(VLogLevel::eWarning);
    Links().ResolveReferences(true);
    EXPECT_TRUE(log.lines.empty());

    Links().ResolveReferences(false);
    Links().ResolveReferences(false);
    const std::vector<std::string> once = {
        "Unable to resolve Odxlink with 'DOC' and IdRef 'ID1'",
        "Unable to resolve Odxlink with '' and IdRef 'ID2'",
        "Unable to resolve Odxlink with '' and IdRef 'X'",
    };
    ASSERT_EQ(2 * once.size(), log.lines.size());
    for (size_t i = 0; i < log.lines.size(); ++i) {
        EXPECT_EQ(once[i % once.size()], log.lines[i].text);
        EXPECT_EQ(VLogLevel::eWarning, log.lines[i].level);
    }
    EXPECT_TRUE(good.HasReferencable());
    EXPECT_EQ(4u, Links().Count());
}

} // namespace
} // namespace ReferencesTests
