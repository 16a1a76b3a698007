#include "FrameworkFixture.h"

#include <stdexcept>
#include <typeinfo>

namespace FrameworkTests {
namespace {

class CollectionTest : public DocumentFixture {
protected:
    Probe& NewProbe(const char* name) { return *new Probe(mOdx, TAG_COMPARAM, &mGraveyard, name); }
};

TEST_F(CollectionTest, EmptyCollection)
{
    ProbeCollection collection(mOdx);
    EXPECT_EQ(0u, collection.Count());
    EXPECT_TRUE(collection.IsEmpty());
    EXPECT_TRUE(collection.Begin() == collection.End());
    Probe outsider(mOdx, TAG_COMPARAM);
    EXPECT_TRUE(collection.Find(outsider) == collection.End());
    collection.Remove(outsider);
    EXPECT_TRUE(collection.IsEmpty());
}

TEST_F(CollectionTest, AppendKeepsOrderAndBecomesPhysicalParent)
{
    VFlash& flash = AddFlash("F");
    VSdg& first = mFactory.MakeSdg(flash, TAG_SDG);
    VSdg& second = mFactory.MakeSdg(flash, TAG_SDG);
    flash.SdgCollection().Append(first);
    flash.SdgCollection().Append(second);
    EXPECT_EQ(2u, flash.SdgCollection().Count());
    EXPECT_EQ(&flash.SdgCollection(), &first.GetPhysicalParent());
    EXPECT_EQ(&flash, &first.GetParent());

    std::vector<VSdg*> seen;
    for (auto it = flash.SdgCollection().Begin(); it != flash.SdgCollection().End(); ++it) {
        seen.push_back(&*it);
    }
    EXPECT_EQ((std::vector<VSdg*>{&first, &second}), seen);
    EXPECT_EQ(&flash, &flash.SdgCollection().GetParent());
}

TEST_F(CollectionTest, RemoveByItemDetachesAndRemoveByIteratorDestroys)
{
    ProbeCollection collection(mOdx);
    Probe& kept = NewProbe("kept");
    Probe& dropped = NewProbe("dropped");
    collection.Append(kept);
    collection.Append(dropped);

    collection.Remove(kept);
    EXPECT_EQ(1u, collection.Count());
    EXPECT_TRUE(mGraveyard.empty());
    EXPECT_EQ(&collection, &kept.GetPhysicalParent());

    collection.Remove(collection.Find(dropped));
    EXPECT_EQ(Graveyard{"dropped"}, mGraveyard);
    EXPECT_TRUE(collection.IsEmpty());
    mFactory.DestroyElement(&kept);
}

TEST_F(CollectionTest, ClearAndDestructionDestroyInListOrder)
{
    ProbeCollection collection(mOdx);
    collection.Append(NewProbe("a"));
    collection.Append(NewProbe("b"));
    collection.Append(NewProbe("c"));
    collection.Clear();
    EXPECT_EQ((Graveyard{"a", "b", "c"}), mGraveyard);
    EXPECT_TRUE(collection.IsEmpty());

    mGraveyard.clear();
    auto* owned = new ProbeCollection(mOdx);
    owned->Append(NewProbe("x"));
    owned->Append(NewProbe("y"));
    mFactory.DestroyElement(owned);
    EXPECT_EQ((Graveyard{"x", "y"}), mGraveyard);
}

TEST_F(CollectionTest, EqualityComparesItemAddresses)
{
    ProbeCollection left(mOdx);
    ProbeCollection right(mOdx);
    EXPECT_TRUE(left == right);

    Probe& shared = NewProbe("shared");
    left.Append(shared);
    right.Append(NewProbe("lookalike"));
    EXPECT_FALSE(left == right);
    EXPECT_TRUE(left != right);
    EXPECT_TRUE(left == left);

    right.Clear();
    right.Append(shared);
    EXPECT_TRUE(left == right);
    right.Remove(shared);
}

TEST_F(CollectionTest, HandleTagChecksTagFirstThenClass)
{
    VFlash& flash = AddFlash("F");
    VSdgCollection& sdgs = flash.SdgCollection();
    VSdg& sdg = mFactory.MakeSdg(flash, TAG_SDG);
    VAdminData& admin = mFactory.MakeAdminData(flash, TAG_SDG);

    EXPECT_FALSE(sdgs.HandleTag(TAG_SD, sdg));
    EXPECT_FALSE(sdgs.HandleTag(TAG_SDGS, sdg));
    EXPECT_FALSE(sdgs.HandleTag(TAG_SD, admin));
    EXPECT_THROW(sdgs.HandleTag(TAG_SDG, admin), std::bad_cast);
    EXPECT_TRUE(sdgs.IsEmpty());

    EXPECT_TRUE(sdgs.HandleTag(TAG_SDG, sdg));
    EXPECT_EQ(1u, sdgs.Count());
    EXPECT_EQ(&sdgs, &sdg.GetPhysicalParent());
    mFactory.DestroyElement(&admin);
}

TEST_F(CollectionTest, UIntCollection)
{
    VUIntCollection& values = mFactory.MakeUIntCollection(mOdx);
    EXPECT_EQ("Collection", Str(values.GetXmlTag()));
    EXPECT_TRUE(values.IsEmpty());
    EXPECT_EQ(-1, values.Find(0));
    try {
        values.At(0);
        ADD_FAILURE() << "At on an empty collection returned";
    } catch (const std::out_of_range& e) {
        EXPECT_STREQ("invalid vector<T> subscript", e.what());
    }

    EXPECT_TRUE(values.HandleUInt(TAG_DTC_VALUE, 7));
    EXPECT_TRUE(values.HandleUInt(TAG_DTC_VALUE, 9));
    EXPECT_FALSE(values.HandleUInt(TAG_V, 11));
    EXPECT_FALSE(values.HandleDouble(TAG_DTC_VALUE, 1.0));
    EXPECT_FALSE(values.HandleTag(TAG_DTC_VALUE, values));
    ASSERT_EQ(2u, values.Size());
    EXPECT_EQ(9u, values.At(1));
    EXPECT_THROW(values.At(2), std::out_of_range);
    EXPECT_EQ(1, values.Find(9));

    values.Erase(values.Size());
    EXPECT_EQ(2u, values.Size());
    values.Erase(0);
    ASSERT_EQ(1u, values.Size());
    EXPECT_EQ(9u, values.At(0));
    values.Clear();
    EXPECT_TRUE(values.IsEmpty());
    values.Destroy();

    VUIntCollection sized(8, mOdx);
    EXPECT_TRUE(sized.IsEmpty());
    EXPECT_EQ(TAG_COLLECTION, sized.GetOdxTag());
    EXPECT_TRUE(CatchOdx([&] { sized.GetRootElement(); }).has_value());
}

TEST_F(CollectionTest, DoubleCollection)
{
    VDoubleCollection& values = mFactory.MakeDoubleCollection(mOdx);
    EXPECT_TRUE(values.HandleDouble(TAG_V, 1.5));
    EXPECT_TRUE(values.HandleDouble(TAG_V, -2.25));
    EXPECT_FALSE(values.HandleDouble(TAG_DTC_VALUE, 3.0));
    EXPECT_FALSE(values.HandleUInt(TAG_V, 3));
    ASSERT_EQ(2u, values.Size());
    EXPECT_DOUBLE_EQ(-2.25, values.At(1));
    EXPECT_EQ(1, values.Find(-2.25));
    EXPECT_EQ(-1, values.Find(3.0));
    EXPECT_THROW(values.At(2), std::out_of_range);
    mFactory.DestroyElement(&values);
}

TEST_F(CollectionTest, TextCollection)
{
    VYATStringCollection& texts = mFactory.MakeYAStringCollection(mOdx);
    EXPECT_EQ("Unknown", Str(texts.GetXmlTag()));
    EXPECT_TRUE(texts.HandleTChar(TAG_CODED_VALUE, "a"));
    EXPECT_TRUE(texts.HandleTChar(TAG_ROLE, "b"));
    EXPECT_FALSE(texts.HandleTChar(TAG_SHORT_NAME, "c"));
    EXPECT_FALSE(texts.HandleTag(TAG_ROLE, texts));
    texts.Append("a");
    ASSERT_EQ(3u, texts.Count());

    EXPECT_EQ("b", Str(*texts.Find("b")));
    EXPECT_TRUE(texts.Find("c") == texts.End());
    texts.Remove("a");
    texts.Remove("missing");
    ASSERT_EQ(2u, texts.Count());
    EXPECT_EQ("b", Str(*texts.Begin()));
    EXPECT_FALSE(texts.Find("a") == texts.End());
    mFactory.DestroyElement(&texts);
}

TEST_F(CollectionTest, UnresolvedRecordsShareTheirElements)
{
    VUnresolvedIdRefCollection records;
    Probe& first = NewProbe("first");
    Probe& second = NewProbe("second");
    VUnresolvedIdRef& firstRecord = records.AppendNew("K1", first);
    records.AppendNew("K2", second);

    {
        VUnresolvedIdRefCollection copy(records);
        ASSERT_EQ(2u, copy.Count());
        VUnresolvedIdRef& copied = *copy.Begin();
        EXPECT_NE(&firstRecord, &copied);
        EXPECT_EQ(&first, &copied.GetElement());
        EXPECT_EQ("K1", Str(copied.GetKey()));
        EXPECT_TRUE(copy != records);

        copy.Remove(copied);
        EXPECT_EQ(1u, copy.Count());
        EXPECT_EQ("K1", Str(copied.GetKey()));
        delete &copied;
        copy.Remove(copy.Begin());
        EXPECT_TRUE(copy.IsEmpty());
    }
    EXPECT_TRUE(mGraveyard.empty());

    records.CleanUp();
    EXPECT_EQ((Graveyard{"first", "second"}), mGraveyard);
    EXPECT_EQ(2u, records.Count());
    records.Clear();
}

} // namespace
} // namespace FrameworkTests
