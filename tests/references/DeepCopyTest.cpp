#include <functional>
#include <memory>
#include <typeinfo>

#include "ReferencesFixture.h"

namespace ReferencesTests {
namespace {

using DeepCopyTest = ReferencesTest;

// A flash that owns id links, as elements with references do.
class LinkedFlash : public VFlash {
public:
    LinkedFlash(VOdx& root, const char* shortName) : VFlash(root, TAG_FLASH) { SetShortName(shortName); }
    LinkedFlash(LinkedFlash& source, VOdxElement& newParent) : VFlash(source, newParent)
    {
        for (VOdxlink* link : source.mLinks) {
            Keep(link->Clone(*this));
        }
    }
    ~LinkedFlash() override
    {
        for (VOdxlink* link : mLinks) {
            link->RemovePadLock();
        }
    }
    LinkedFlash& Clone(VOdxElement& newParent) override { return *new LinkedFlash(*this, newParent); }

    VOdxlink& AddLink(const char* idRef)
    {
        VOdxlink& link = VOdxFactory::Instance().MakeOdxlink(*this, TAG_ODXLINK);
        link.SetIdRef(idRef);
        return Keep(link);
    }
    VOdxlink& LinkAt(size_t index) { return *mLinks.at(index); }

private:
    VOdxlink& Keep(VOdxlink& link)
    {
        link.AddPadLock();
        mLinks.push_back(&link);
        return link;
    }
    std::vector<VOdxlink*> mLinks;
};

std::vector<VOdxCategory*> Categories(VOdx& odx)
{
    std::vector<VOdxCategory*> all;
    auto collect = [&all](auto& collection) {
        for (auto& category : collection) {
            all.push_back(&category);
        }
    };
    collect(odx.ComparamSpecCollection());
    collect(odx.ComparamSubsetCollection());
    collect(odx.DiagLayerContainerCollection());
    collect(odx.EcuConfigCollection());
    collect(odx.FlashCollection());
    collect(odx.FunctionDictionaryCollection());
    collect(odx.MultipleEcuJobSpecCollection());
    collect(odx.VehicleInfoSpecCollection());
    return all;
}

TEST_F(DeepCopyTest, CloneOfAResolvedLinkSharesTheTargetAndRegisters)
{
    VFlash& a = Flash("A");
    VComparamSpec& b = Comparams("B");
    VCompanyData& x = Company(b, "X", true);
    VOdxlink& source = Unpark(Link(a, "X"));
    ASSERT_TRUE(source.Resolve());

    VOdxlink& clone = Park(source.Clone(b));
    EXPECT_EQ(&x, &clone.GetReferencable());
    EXPECT_STREQ("X", clone.GetIdRef());
    EXPECT_FALSE(clone.HasDocref());  // seen from B the target is local
    EXPECT_EQ(2u, Links().Count());

    mFactory.DestroyElement(&source);
    EXPECT_TRUE(x.IsReferencedById());
    mFactory.DestroyElement(&x);
    EXPECT_FALSE(clone.HasReferencable());

    VOdxlink& textCopy = Park(Link(a, "Q", "DOC", eDoctypeMultipleEcuJobSpec).Clone(a));
    EXPECT_FALSE(textCopy.HasReferencable());
    EXPECT_STREQ("Q", textCopy.GetIdRef());
    ExpectDocref(textCopy, "DOC", eDoctypeMultipleEcuJobSpec);
    EXPECT_EQ(3u, Links().Count());
}

TEST_F(DeepCopyTest, CategoryClonedInTheSameDocumentClaimsTheSameIds)
{
    VFlash& flash = Flash("A");
    flash.SetId("FA");
    flash.SetComment("note");
    VText& longName = mFactory.MakeText(flash, TAG_LONG_NAME);
    flash.SetLongName(longName);
    VCompanyData& company = Company(flash, "CD");

    VFlash& clone = flash.Clone(mOdx);
    ASSERT_TRUE(mOdx.HandleTag(TAG_FLASH, clone));
    EXPECT_EQ(&mOdx, &clone.GetParent());

    ASSERT_EQ(1u, clone.CompanyDataCollection().Count());
    VCompanyData& companyClone = *clone.CompanyDataCollection().Begin();
    EXPECT_EQ((std::vector<VReferencable*>{&company, &companyClone, &flash, &clone}), AllOf(Map()));
    EXPECT_EQ(&flash, Map().Find("FA", "A"));

    EXPECT_STREQ("note", clone.GetComment());
    EXPECT_NE(flash.GetComment(), clone.GetComment());
    ASSERT_TRUE(clone.HasLongName());
    EXPECT_NE(&longName, &clone.GetLongName());
    EXPECT_EQ(&clone, &clone.GetLongName().GetParent());
    EXPECT_NE(&company, &companyClone);
    EXPECT_EQ(&clone, companyClone.GetCategory());
    EXPECT_EQ(&flash, company.GetCategory());
}

TEST_F(DeepCopyTest, DocumentCopyClonesCategoriesAndReResolvesItsLinks)
{
    LinkedFlash& flash = *new LinkedFlash(mOdx, "A");
    ASSERT_TRUE(mOdx.HandleTag(TAG_FLASH, flash));
    VComparamSpec& comparams = Comparams("B");
    Add(mFactory.MakeComparamSubset(mOdx, TAG_COMPARAM_SUBSET), TAG_COMPARAM_SUBSET, "CSUB");
    Add(mFactory.MakeDiagLayerContainer(mOdx, TAG_DIAG_LAYER_CONTAINER), TAG_DIAG_LAYER_CONTAINER, "DLC");
    Add(mFactory.MakeEcuConfig(mOdx, TAG_ECU_CONFIG), TAG_ECU_CONFIG, "EC");
    Add(mFactory.MakeFunctionDictionary(mOdx, TAG_FUNCTION_DICTIONARY), TAG_FUNCTION_DICTIONARY, "FD");
    Add(mFactory.MakeMultipleEcuJobSpec(mOdx, TAG_MULTIPLE_ECU_JOB_SPEC), TAG_MULTIPLE_ECU_JOB_SPEC, "MEJS");
    Add(mFactory.MakeVehicleInfoSpec(mOdx, TAG_VEHICLE_INFO_SPEC), TAG_VEHICLE_INFO_SPEC, "VIS");
    // One id for all eight, so that the copy's map shows the order in which they were cloned.
    for (VOdxCategory* category : Categories(mOdx)) {
        category->SetId("DOC");
    }
    VCompanyData& own = Company(flash, "CA");
    VCompanyData& far = Company(comparams, "CB");
    VOdxlink& local = flash.AddLink("CA");
    VOdxlink& cross = flash.AddLink("CB");
    Links().ResolveReferences(true);
    ASSERT_TRUE(cross.HasDocref());

    TestResolver resolver;
    mOdx.Initialize(resolver);
    mOdx.SetModelVersion("2.2.1");
    mOdx.SetLayerFileType(static_cast<VLayerFileType>(1));
    mOdx.UnresolvedIdRefCollection().AppendNew("K", own);

    VOdx& copy = mOdx.Clone(mOdx);
    std::unique_ptr<VOdx, std::function<void(VOdx*)>> end(&copy, [this](VOdx* odx) { mFactory.DestroyOdx(*odx); });

    EXPECT_STREQ("2.2.1", copy.GetModelVersion());
    EXPECT_STREQ("", copy.GetSchemaLocation());
    EXPECT_EQ(0, static_cast<int>(copy.GetLayerFileType()));
    EXPECT_EQ(&resolver, copy.GetSnrefResolver());
    EXPECT_EQ(1u, copy.UnresolvedIdRefCollection().Count());
    EXPECT_EQ(&mOdx, &copy.EcuConfigCollection().GetRootElement());
    EXPECT_EQ(&mOdx, &copy.FunctionDictionaryCollection().GetRootElement());
    EXPECT_EQ(&copy, &copy.FlashCollection().GetRootElement());

    // Each list of the copy holds clones of the source's items, in the copy.
    const std::vector<VOdxCategory*> originals = Categories(mOdx);
    const std::vector<VOdxCategory*> clones = Categories(copy);
    ASSERT_EQ(8u, originals.size());
    ASSERT_EQ(originals.size(), clones.size());
    for (size_t i = 0; i < clones.size(); ++i) {
        SCOPED_TRACE(originals[i]->GetShortName());
        EXPECT_NE(originals[i], clones[i]);
        EXPECT_EQ(typeid(*originals[i]), typeid(*clones[i]));
        EXPECT_STREQ(originals[i]->GetShortName(), clones[i]->GetShortName());
        EXPECT_EQ(&copy, &clones[i]->GetRootElement());
        EXPECT_EQ(&copy, &clones[i]->GetParent());
    }
    EXPECT_EQ(Map().Count(), copy.GetIdRefMap().Count());
    std::vector<VOdxTagEnum> cloneOrder;
    for (VReferencable* referencable : AllOf(copy.GetIdRefMap())) {
        if (std::string(referencable->GetId()) == "DOC") {
            cloneOrder.push_back(referencable->GetOdxElement().GetOdxTag());
        }
    }
    const std::vector<VOdxTagEnum> expectedOrder = {
        TAG_DIAG_LAYER_CONTAINER, TAG_COMPARAM_SPEC,        TAG_VEHICLE_INFO_SPEC, TAG_FLASH,
        TAG_ECU_CONFIG,           TAG_MULTIPLE_ECU_JOB_SPEC, TAG_COMPARAM_SUBSET,   TAG_FUNCTION_DICTIONARY};
    EXPECT_EQ(expectedOrder, cloneOrder);

    auto& flashCopy = dynamic_cast<LinkedFlash&>(*copy.FlashCollection().Begin());
    VOdxlink& localCopy = flashCopy.LinkAt(0);
    VOdxlink& crossCopy = flashCopy.LinkAt(1);
    EXPECT_EQ(2u, copy.GetOdxLinkSet().Count());
    EXPECT_EQ(2u, Links().Count());
    EXPECT_EQ(&own, &localCopy.GetReferencable());
    EXPECT_EQ(&far, &crossCopy.GetReferencable());

    copy.GetOdxLinkSet().ResolveReferences(true);
    VCompanyData& ownCopy = *flashCopy.CompanyDataCollection().Begin();
    VCompanyData& farCopy = *(*copy.ComparamSpecCollection().Begin()).CompanyDataCollection().Begin();
    EXPECT_EQ(&ownCopy, &localCopy.GetReferencable());
    EXPECT_EQ(&farCopy, &crossCopy.GetReferencable());
    EXPECT_FALSE(localCopy.HasDocref());
    EXPECT_STREQ("B", crossCopy.GetDocref());
    EXPECT_EQ(&own, &local.GetReferencable());
    EXPECT_EQ(&far, &cross.GetReferencable());
}

// A copy's links point into the source until resolved again; either document may end first
// without leaving the other with pointers into it.
TEST_F(DeepCopyTest, EitherDocumentMayEndWhileTheCopyPointsIntoTheSource)
{
    for (const bool sourceFirst : {false, true}) {
        SCOPED_TRACE(sourceFirst ? "source ends first" : "copy ends first");
        VOdx& source = mFactory.MakeOdx();
        auto* flash = new LinkedFlash(source, "F");
        source.HandleTag(TAG_FLASH, *flash);
        VCompanyData& company = mFactory.MakeCompanyData(*flash, TAG_COMPANY_DATA);
        flash->CompanyDataCollection().Append(company);
        company.SetId("c");
        VOdxlink& link = flash->AddLink("c");
        source.GetOdxLinkSet().ResolveReferences(true);

        VOdx& copy = source.Clone(source);
        VOdxlink& copied = static_cast<LinkedFlash&>(*copy.FlashCollection().Begin()).LinkAt(0);
        ASSERT_EQ(&copied.GetReferencable(), static_cast<VReferencable*>(&company));
        if (sourceFirst) {
            mFactory.DestroyOdx(source);
            EXPECT_FALSE(copied.HasReferencable());
            EXPECT_STREQ(copied.GetIdRef(), "c");
            EXPECT_TRUE(copied.Resolve());
            mFactory.DestroyOdx(copy);
        } else {
            mFactory.DestroyOdx(copy);
            company.SetId("c2");
            EXPECT_STREQ(link.GetIdRef(), "c2");
            mFactory.DestroyOdx(source);
        }
    }
}

} // namespace
} // namespace ReferencesTests
