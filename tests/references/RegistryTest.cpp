#include "ReferencesFixture.h"

namespace ReferencesTests {
namespace {

using RegistryTest = ReferencesTest;

class ContainerNameMap : public VIdRefMap {
public:
    using VIdRefMap::GetContainerShortNameForReferencable;
};

TEST_F(RegistryTest, FindByCategoryFallsBackFindByDocumentDoesNot)
{
    EXPECT_EQ(nullptr, Map().Find("X", "A"));
    EXPECT_EQ(nullptr, Map().Find("X", eDoctypeNone, ""));
    EXPECT_TRUE(AllOf(Map()).empty());
    VCompanyData& inA = Company(Flash("A"), "X");
    VCompanyData& inB = Company(Comparams("B"), "X");

    EXPECT_EQ(nullptr, inA.GetLayer());
    EXPECT_EQ(&inA, Map().Find("X", "A"));
    EXPECT_EQ(&inB, Map().Find("X", "B"));
    EXPECT_EQ(&inA, Map().Find("X", "Q"));
    EXPECT_EQ(&inA, Map().Find("X", ""));
    EXPECT_EQ(nullptr, Map().Find("Y", "A"));

    EXPECT_EQ(nullptr, Map().Find("X", eDoctypeContainer, "Q"));
    // Doctype 1 names the category whatever its kind.
    EXPECT_EQ(&inB, Map().Find("X", eDoctypeContainer, "B"));
    EXPECT_EQ(&inB, Map().Find("X", eDoctypeComparamSpec, "B"));
    EXPECT_EQ(nullptr, Map().Find("X", eDoctypeFlash, "B"));
    EXPECT_EQ(nullptr, Map().Find("X", eDoctypeNone, "B"));
}

TEST_F(RegistryTest, AllReferencablesComeByIdThenByInsertion)
{
    VFlash& flash = Flash("A");
    VCompanyData& b1 = Company(flash, "B");
    VCompanyData& a1 = Company(flash, "A");
    VCompanyData& b2 = Company(flash, "B");
    Map().Insert("A", b2);

    EXPECT_EQ((std::vector<VReferencable*>{&a1, &b2, &b1, &b2}), AllOf(Map()));

    Map().Remove("A", b2);
    EXPECT_EQ(&a1, Map().Find("A", "A"));
    EXPECT_EQ(3u, Map().Count());
}

TEST_F(RegistryTest, SetIdMovesTheEntry)
{
    VFlash& flash = Flash("A");
    VCompanyData& first = Company(flash, "X");
    VCompanyData& second = Company(flash, "X");
    EXPECT_EQ(&first, Map().Find("X", "A"));

    // The same text again goes behind the other entries of that id.
    first.SetId("X");
    EXPECT_EQ(&second, Map().Find("X", "A"));
    EXPECT_EQ(2u, Map().Count());

    second.SetId("");
    EXPECT_EQ(&first, Map().Find("X", "A"));
    EXPECT_EQ(&second, Map().Find("", "A"));
    EXPECT_EQ(2u, Map().Count());
    EXPECT_STREQ("", second.GetId());
}

TEST_F(RegistryTest, DocumentRootIsKnownByItsOwnName)
{
    ContainerNameMap names;
    VFlash& flash = Flash("F");
    flash.SetId("FID");
    VCompanyData& inner = Company(flash, "CD");
    for (int value = eDoctypeFlash; value <= eDoctypeNone; ++value) {
        const auto doctype = static_cast<VDoctype>(value);
        SCOPED_TRACE(value);
        const bool byCategory = doctype == eDoctypeFlash || doctype == eDoctypeContainer;
        EXPECT_STREQ(doctype == eDoctypeLayer ? "" : "F",
                     names.GetContainerShortNameForReferencable(flash, doctype).GetBuffer());
        EXPECT_STREQ(byCategory ? "F" : "",
                     names.GetContainerShortNameForReferencable(inner, doctype).GetBuffer());
    }
    // Without a doctype a root is found by its name, an inner element only by the empty name.
    EXPECT_EQ(&flash, Map().Find("FID", eDoctypeNone, "F"));
    EXPECT_EQ(nullptr, Map().Find("CD", eDoctypeNone, "F"));
    EXPECT_EQ(&inner, Map().Find("CD", eDoctypeNone, ""));
}

TEST_F(RegistryTest, NotReferencedOnceTheLastLinkIsGoneOrRepointed)
{
    VFlash& flash = Flash("A");
    VCompanyData& x = Company(flash, "X");
    VCompanyData& y = Company(flash, "Y");
    VOdxlink& doomed = Unpark(Link(flash, "X"));
    VOdxlink& kept = Link(flash, "X");
    EXPECT_FALSE(x.IsReferencedById());
    Links().ResolveReferences(true);
    EXPECT_TRUE(x.IsReferencedById());
    EXPECT_FALSE(y.IsReferencedById());

    mFactory.DestroyElement(&doomed);
    EXPECT_TRUE(x.IsReferencedById());
    EXPECT_EQ(1u, Links().Count());

    kept.SetReferencable(y);
    EXPECT_FALSE(x.IsReferencedById());
    EXPECT_TRUE(y.IsReferencedById());
    EXPECT_STREQ("Y", kept.GetIdRef());
}

} // namespace
} // namespace ReferencesTests
