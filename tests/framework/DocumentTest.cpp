#include "FrameworkFixture.h"

#include <algorithm>
#include <cctype>
#include <functional>
#include <set>

namespace FrameworkTests {
namespace {

using FactoryTest = DocumentFixture;

TEST_F(FactoryTest, NewDocumentDefaults)
{
    EXPECT_EQ(&mFactory, &VOdxFactory::Instance());
    EXPECT_STREQ("2.2.0", mOdx.GetModelVersion());
    EXPECT_STREQ("odx.xsd", mOdx.GetSchemaLocation());
    EXPECT_EQ(0, static_cast<int>(mOdx.GetLayerFileType()));
    EXPECT_EQ(TAG_ODX, mOdx.GetOdxTag());
    EXPECT_EQ(&mOdx, &mOdx.GetRootElement());
    EXPECT_EQ(nullptr, mOdx.GetSnrefResolver());
    EXPECT_NO_THROW(mOdx.GetOdxLinkSet());
    EXPECT_NO_THROW(mOdx.TextIdElements());
    EXPECT_TRUE(mOdx.FlashCollection().IsEmpty());
    EXPECT_TRUE(mOdx.UnresolvedIdRefCollection().IsEmpty());
}

struct CategorySlot {
    VOdxTagEnum tag;
    std::function<VOdxCategory&(VOdxFactory&, VOdx&)> make;
    std::function<uint32_t(VOdx&)> count;
};

TEST_F(FactoryTest, RootTakesEachCategoryOnlyUnderItsTag)
{
    const std::vector<CategorySlot> slots = {
        {TAG_COMPARAM_SPEC, [](VOdxFactory& f, VOdx& o) -> VOdxCategory& { return f.MakeComparamSpec(o, TAG_COMPARAM_SPEC); },
         [](VOdx& o) { return o.ComparamSpecCollection().Count(); }},
        {TAG_COMPARAM_SUBSET, [](VOdxFactory& f, VOdx& o) -> VOdxCategory& { return f.MakeComparamSubset(o, TAG_COMPARAM_SUBSET); },
         [](VOdx& o) { return o.ComparamSubsetCollection().Count(); }},
        {TAG_DIAG_LAYER_CONTAINER, [](VOdxFactory& f, VOdx& o) -> VOdxCategory& { return f.MakeDiagLayerContainer(o, TAG_DIAG_LAYER_CONTAINER); },
         [](VOdx& o) { return o.DiagLayerContainerCollection().Count(); }},
        {TAG_ECU_CONFIG, [](VOdxFactory& f, VOdx& o) -> VOdxCategory& { return f.MakeEcuConfig(o, TAG_ECU_CONFIG); },
         [](VOdx& o) { return o.EcuConfigCollection().Count(); }},
        {TAG_FLASH, [](VOdxFactory& f, VOdx& o) -> VOdxCategory& { return f.MakeFlash(o, TAG_FLASH); },
         [](VOdx& o) { return o.FlashCollection().Count(); }},
        {TAG_FUNCTION_DICTIONARY, [](VOdxFactory& f, VOdx& o) -> VOdxCategory& { return f.MakeFunctionDictionary(o, TAG_FUNCTION_DICTIONARY); },
         [](VOdx& o) { return o.FunctionDictionaryCollection().Count(); }},
        {TAG_MULTIPLE_ECU_JOB_SPEC, [](VOdxFactory& f, VOdx& o) -> VOdxCategory& { return f.MakeMultipleEcuJobSpec(o, TAG_MULTIPLE_ECU_JOB_SPEC); },
         [](VOdx& o) { return o.MultipleEcuJobSpecCollection().Count(); }},
        {TAG_VEHICLE_INFO_SPEC, [](VOdxFactory& f, VOdx& o) -> VOdxCategory& { return f.MakeVehicleInfoSpec(o, TAG_VEHICLE_INFO_SPEC); },
         [](VOdx& o) { return o.VehicleInfoSpecCollection().Count(); }},
    };
    for (size_t i = 0; i < slots.size(); ++i) {
        const CategorySlot& slot = slots[i];
        SCOPED_TRACE(VOdxTagEnumMapper::EnumToChar(slot.tag));
        VOdxCategory& wrong = slots[(i + 1) % slots.size()].make(mFactory, mOdx);
        EXPECT_FALSE(mOdx.HandleTag(slot.tag, wrong));
        EXPECT_EQ(0u, slot.count(mOdx));
        mFactory.DestroyElement(&wrong);

        VOdxCategory& right = slot.make(mFactory, mOdx);
        EXPECT_FALSE(mOdx.HandleTag(TAG_SDG, right));
        EXPECT_TRUE(mOdx.HandleTag(slot.tag, right));
        EXPECT_EQ(1u, slot.count(mOdx));
        EXPECT_EQ(&mOdx, &right.GetPhysicalParent());
    }
}

TEST(DocumentRootTest, RootBuiltByItsConstructorHasNoSets)
{
    VOdx odx(nullptr, TAG_ODX);
    EXPECT_EQ(&odx, &odx.GetRootElement());
    auto noLinks = CatchOdx([&] { odx.GetOdxLinkSet(); });
    ASSERT_TRUE(noLinks.has_value());
    EXPECT_EQ("mpOdxLinkSet!=NULL", Str(noLinks->GetMessage()));
    EXPECT_EQ(VOdxException::OE_ModelError, noLinks->GetCode());
    auto noTexts = CatchOdx([&] { odx.TextIdElements(); });
    ASSERT_TRUE(noTexts.has_value());
    EXPECT_EQ("mpTextIdElementSet!=NULL", Str(noTexts->GetMessage()));
    // Only DestroyOdx frees the sets; this root never went through the factory.
    delete &odx.GetIdRefMap();
}

TEST_F(FactoryTest, DestroyElementAndFreeStandingCollections)
{
    mFactory.DestroyElement(nullptr);

    VFlash& flash = AddFlash("F");
    VSdgCollection& sdgs = mFactory.MakeSdgCollection(flash);
    EXPECT_EQ(&flash, &sdgs.GetParent());
    EXPECT_EQ(&mOdx, &sdgs.GetRootElement());
    EXPECT_EQ(TAG_COLLECTION, sdgs.GetOdxTag());
    sdgs.Append(mFactory.MakeSdg(flash, TAG_SDG));
    mFactory.DestroyElement(&sdgs);

    mFactory.DestroyElement(new Probe(mOdx, TAG_SDG, &mGraveyard, "gone"));
    EXPECT_EQ(Graveyard{"gone"}, mGraveyard);
}

TEST_F(FactoryTest, DestroyingOneDocumentEndsTheParkedElementsOfAll)
{
    VOdx& other = mFactory.MakeOdx();
    VUnhandledElementCollection& parked = mFactory.UnhandledElementCollection();
    parked.Append(*new Probe(mOdx, TAG_SDG, &mGraveyard, "mine"));
    parked.Append(*new Probe(other, TAG_SDG, &mGraveyard, "theirs"));
    VFlash& refused = mFactory.MakeFlash(other, TAG_FLASH);
    refused.SetId("F.1");
    ASSERT_FALSE(other.HandleTag(TAG_ECU_CONFIG, refused));
    parked.Append(refused);
    VText& text = mFactory.MakeText(mOdx, TAG_LONG_NAME);
    parked.Append(text);
    EXPECT_EQ(4u, parked.Count());

    mFactory.DestroyOdx(other);
    EXPECT_EQ((Graveyard{"mine", "theirs"}), mGraveyard);
    EXPECT_TRUE(parked.IsEmpty());
}

TEST_F(FactoryTest, PopulatedDocumentEndsWithoutLeaks)
{
    VOdx& doc = mFactory.MakeOdx();
    VDiagLayerContainer& container = mFactory.MakeDiagLayerContainer(doc, TAG_DIAG_LAYER_CONTAINER);
    container.SetShortName("C");
    container.SetId("C.ID");
    container.SetComment("generated");
    container.ProcessingInstructionCollection().AddNew().SetName("pi");
    container.SetLongName(mFactory.MakeText(container, TAG_LONG_NAME));
    container.SetDesc(mFactory.MakeDescription(container, TAG_DESC));
    container.SetAdminData(mFactory.MakeAdminData(container, TAG_ADMIN_DATA));
    container.SdgCollection().Append(mFactory.MakeSdg(container, TAG_SDG));
    VCompanyData& company = mFactory.MakeCompanyData(container, TAG_COMPANY_DATA);
    company.SetId("CD.ID");
    company.SetLongName(mFactory.MakeText(company, TAG_LONG_NAME));
    container.CompanyDataCollection().Append(company);
    ASSERT_TRUE(doc.HandleTag(TAG_DIAG_LAYER_CONTAINER, container));
    mFactory.UnhandledElementCollection().Append(*new Probe(doc, TAG_SDG, &mGraveyard, "orphan"));

    mFactory.DestroyOdx(doc);
    EXPECT_EQ(Graveyard{"orphan"}, mGraveyard);
}

TEST(TagTest, SpellingsOfSpecialAndBoundaryValues)
{
    const std::vector<std::pair<int, const char*>> expected = {
        {0, "ADDITIONAL-AUDIENCE"}, {6, "ADDRESS-LENGTH"}, {17, "Base-Member"}, {33, "block"},
        {38, "Byte-Stream"}, {57, "Collection"}, {109, "Content"}, {273, "FLASH"},
        {278, "FLASH-CLASSS"}, {283, "Format-Tag"}, {288, "FUNCT-CLASSS"}, {447, "ODX"},
        {582, "SHORT-NAME"}, {681, "Unknown"}, {682, "Unresolved-Id-Ref"}, {723, "ZIP"},
        {724, ""}, {725, ""}, {100000, ""}, {-1, ""}};
    for (const auto& [value, text] : expected) {
        EXPECT_STREQ(text, VOdxTagEnumMapper::EnumToChar(static_cast<VOdxTagEnum>(value)))
            << "value " << value;
    }
    EXPECT_EQ(724, TAG_UNSET);
    EXPECT_EQ(447, TAG_ODX);
    EXPECT_EQ(57, TAG_COLLECTION);
    EXPECT_EQ(582, TAG_SHORT_NAME);
}

TEST(TagTest, AllTextsAreDistinctAndSorted)
{
    auto key = [](const std::string& text) {
        std::string result;
        for (char c : text) {
            if (c != '-') {
                result += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
            }
        }
        return result;
    };
    std::set<std::string> seen;
    std::string previous;
    for (int value = 0; value < TAG_UNSET; ++value) {
        const std::string text = VOdxTagEnumMapper::EnumToChar(static_cast<VOdxTagEnum>(value));
        ASSERT_FALSE(text.empty()) << "value " << value;
        EXPECT_TRUE(seen.insert(text).second) << text;
        if (value > 0) {
            EXPECT_LT(previous, key(text)) << "value " << value << " " << text;
        }
        previous = key(text);
    }
}

} // namespace
} // namespace FrameworkTests
