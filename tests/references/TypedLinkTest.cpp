#include "ReferencesFixture.h"

namespace ReferencesTests {
namespace {

class TypedLinkTest : public ReferencesTest {
protected:
    // A COMPANY-DATA-REF as the reader builds it: the id link below the typed element.
    VCompanyDataLink& CompanyRef(VOdxElement& parent, const char* idRef)
    {
        VCompanyDataLink& typed = Park(mFactory.MakeCompanyDataLink(parent, TAG_COMPANY_DATA_REF));
        VOdxlink& link = mFactory.MakeOdxlink(typed, TAG_ODXLINK);
        link.SetIdRef(idRef);
        typed.SetLink(link);
        return typed;
    }

    VIdentIfLink& IdentRef(VOdxElement& parent, const char* shortName)
    {
        VIdentIfLink& typed = Park(mFactory.MakeIdentIfLink(parent, TAG_IDENT_IF_SNREF));
        VSnref& snref = mFactory.MakeSnref(typed, TAG_SNREF);
        snref.SetShortName(shortName);
        typed.SetLink(snref);
        return typed;
    }

    TestResolver mResolver;
    TestIdent mIdentA;
    TestIdent mIdentB;
};

TEST_F(TypedLinkTest, OdxlinkTargetIsCachedAtTheFirstSuccessfulHas)
{
    VFlash& flash = Flash("A");
    VCompanyData& first = Company(flash, "C1");
    VCompanyData& second = Company(flash, "C2");
    VCompanyDataLink& typed = CompanyRef(flash, "C1");
    VOdxlink& link = *typed.GetLink().GetAsOdxlink();

    EXPECT_FALSE(typed.HasCompanyData());
    EXPECT_FALSE(link.HasReferencable());
    Links().ResolveReferences(true);
    ASSERT_TRUE(typed.HasCompanyData());
    EXPECT_EQ(&first, &typed.GetCompanyData());

    link.SetReferencable(second);
    first.SetId("C3");
    EXPECT_TRUE(typed.HasCompanyData());
    EXPECT_EQ(&first, &typed.GetCompanyData());
    EXPECT_EQ(&second, &link.GetReferencable());
}

TEST_F(TypedLinkTest, TargetOfAnotherClassIsNoTargetAndNoError)
{
    VFlash& flash = Flash("A");
    flash.SetId("FA");
    VCompanyDataLink& typed = CompanyRef(flash, "FA");
    Links().ResolveReferences(true);
    ASSERT_TRUE(typed.GetLink().GetAsOdxlink()->HasReferencable());

    LogCapture log(VLogLevel::eDebug);
    EXPECT_FALSE(typed.HasCompanyData());
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(TypedLinkTest, ReplacedLinkDiesUnlessHeldElsewhere)
{
    VFlash& flash = Flash("A");
    VCompanyDataLink& typed = Park(mFactory.MakeCompanyDataLink(flash, TAG_COMPANY_DATA_REF));
    VOdxlink& first = mFactory.MakeOdxlink(typed, TAG_ODXLINK);
    VOdxlink& second = mFactory.MakeOdxlink(typed, TAG_ODXLINK);
    typed.SetLink(first);
    ASSERT_EQ(2u, Links().Count());

    typed.SetLink(second);
    EXPECT_EQ(1u, Links().Count());
    EXPECT_EQ(&second, &*Links().Begin());
    EXPECT_EQ(&second, typed.GetLink().GetAsOdxlink());

    VOdxlink& third = mFactory.MakeOdxlink(typed, TAG_ODXLINK);
    second.AddPadLock();
    typed.SetLink(third);
    EXPECT_EQ(2u, Links().Count());
    EXPECT_EQ(1, second.GetPadLockCount());
    second.RemovePadLock();
    EXPECT_EQ(1u, Links().Count());
}

TEST_F(TypedLinkTest, CloneHoldsItsOwnLinkAndTheSourcesTarget)
{
    VFlash& flash = Flash("A");
    VCompanyData& linked = Company(flash, "C1");
    VCompanyData& stored = Company(flash, "C2");
    VCompanyDataLink& typed = CompanyRef(flash, "C1");
    Links().ResolveReferences(true);
    typed.SetCompanyData(stored);

    VCompanyDataLink& clone = Park(typed.Clone(flash));
    ASSERT_TRUE(clone.HasLink());
    EXPECT_NE(&typed.GetLink(), &clone.GetLink());
    VOdxlink* copied = clone.GetLink().GetAsOdxlink();
    ASSERT_NE(nullptr, copied);
    EXPECT_EQ(&clone, &copied->GetParent());
    EXPECT_EQ(&linked, &copied->GetReferencable());
    EXPECT_EQ(2u, Links().Count());
    EXPECT_EQ(&stored, &clone.GetCompanyData());

    VIdentIfLink& ident = IdentRef(flash, "Ident");
    ident.SetIdentIf(mIdentA);
    VIdentIfLink& identClone = Park(ident.Clone(flash));
    VSnref* snref = identClone.GetLink().GetAsSnref();
    ASSERT_NE(nullptr, snref);
    EXPECT_NE(ident.GetLink().GetAsSnref(), snref);
    EXPECT_STREQ("Ident", snref->GetShortName());
    EXPECT_EQ(&mIdentA, &identClone.GetIdentIf());
}

TEST_F(TypedLinkTest, ResolverIsAskedEachTimeAndItsLastAnswerKept)
{
    mOdx.Initialize(mResolver);
    VFlash& a = Flash("A");
    VFlash& b = Flash("B");
    VFlash& c = Flash("C");
    mResolver.answers = {{&a, &mIdentA}, {&b, &mIdentB}};
    VIdentIfLink& typed = IdentRef(a, "Ident");

    ASSERT_TRUE(typed.HasIdentIf(a));
    EXPECT_EQ(&mIdentA, &typed.GetIdentIf());
    ASSERT_TRUE(typed.HasIdentIf(b));
    EXPECT_EQ(&mIdentB, &typed.GetIdentIf());
    // No answer leaves the older target in place.
    EXPECT_TRUE(typed.HasIdentIf(c));
    EXPECT_EQ(&mIdentB, &typed.GetIdentIf());
    const std::vector<std::pair<std::string, VFlash*>> asked = {{"Ident", &a}, {"Ident", &b}, {"Ident", &c}};
    EXPECT_EQ(asked, mResolver.calls);

    EXPECT_TRUE(IdentRef(a, "").HasIdentIf(a));
    EXPECT_EQ("", mResolver.calls.back().first);
}

TEST_F(TypedLinkTest, WithoutResolverOrWithAPathOnlyTheStoredTargetCounts)
{
    VFlash& flash = Flash("A");
    VIdentIfLink& byName = IdentRef(flash, "Ident");
    EXPECT_FALSE(byName.HasIdentIf(flash));
    byName.SetIdentIf(mIdentA);
    EXPECT_TRUE(byName.HasIdentIf(flash));

    mOdx.Initialize(mResolver);
    mResolver.answers = {{&flash, &mIdentA}};
    VIdentIfLink& byPath = Park(mFactory.MakeIdentIfLink(flash, TAG_IDENT_IF_SNREF));
    VSnpathref& path = mFactory.MakeSnpathref(byPath, TAG_PARAM_SNPATHREF);
    path.SetShortNamePath("Ident");
    byPath.SetLink(path);
    EXPECT_FALSE(byPath.HasIdentIf(flash));
    byPath.SetIdentIf(mIdentB);
    EXPECT_TRUE(byPath.HasIdentIf(flash));
    EXPECT_EQ(&mIdentB, &byPath.GetIdentIf());
    EXPECT_TRUE(mResolver.calls.empty());
}

TEST_F(TypedLinkTest, WrongKindAccessorsLogAndGiveNull)
{
    VFlash& flash = Flash("A");
    VOdxlink& odxlink = Link(flash, "X");
    VSnref& snref = Park(mFactory.MakeSnref(flash, TAG_SNREF));
    VSnpathref& path = Park(mFactory.MakeSnpathref(flash, TAG_PARAM_SNPATHREF));
    LogCapture log(VLogLevel::eError);
    EXPECT_EQ(&odxlink, odxlink.GetAsOdxlink());
    EXPECT_EQ(nullptr, odxlink.GetAsSnref());
    EXPECT_EQ(nullptr, odxlink.GetAsSnpathref());
    EXPECT_EQ(&snref, snref.GetAsSnref());
    EXPECT_EQ(nullptr, snref.GetAsOdxlink());
    EXPECT_EQ(nullptr, snref.GetAsSnpathref());
    EXPECT_EQ(&path, path.GetAsSnpathref());
    EXPECT_EQ(nullptr, path.GetAsOdxlink());
    EXPECT_EQ(nullptr, path.GetAsSnref());

    const std::vector<std::string> expected = {"VLink", "VLink", "VOdxlink", "VLink", "VOdxlink", "VSnref"};
    ASSERT_EQ(expected.size(), log.lines.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ("ODX ERR: Element is not of type " + expected[i], log.lines[i].text);
        EXPECT_EQ(VLogLevel::eError, log.lines[i].level);
    }
}

} // namespace
} // namespace ReferencesTests
