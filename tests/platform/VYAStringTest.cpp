#include <TesselSharedUtil/VContainerYAString.h>
#include <TesselSharedUtil/VYAString.h>

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <unordered_set>
#include <utility>

using NTesselSharedUtil::VContainerYAString;
using NTesselSharedUtil::VYAString;

TEST(VYAString, NullAndEmptyConstructionAreTheSame)
{
    const char* const null = nullptr;
    for (const VYAString& s : {VYAString(), VYAString(null), VYAString(null, 5), VYAString("")}) {
        EXPECT_TRUE(s.IsEmpty());
        EXPECT_EQ(0u, s.GetLength());
        ASSERT_NE(nullptr, s.GetBuffer());
        EXPECT_STREQ("", s.GetBuffer());
        EXPECT_TRUE(s == null);
    }
}

TEST(VYAString, AppendConcatenateAndCompare)
{
    VYAString s("ab");
    s.Append("cd").Append(VYAString("ef")).Append(static_cast<const char*>(nullptr));
    EXPECT_EQ("abcdef", s);
    s.Append(s);
    EXPECT_EQ("abcdefabcdef", s);

    EXPECT_EQ("xy", VYAString("x") + "y");
    EXPECT_EQ("xy", VYAString("x") + VYAString("y"));
    EXPECT_EQ("xy", "x" + VYAString("y"));
    EXPECT_NE(VYAString("x"), "X");

    EXPECT_LT(VYAString("a"), VYAString("ab"));
    EXPECT_LT(VYAString("ab"), VYAString("b"));
    EXPECT_FALSE(VYAString("a") < VYAString("a"));
    EXPECT_LT(VYAString("z"), VYAString("\xC3\xA4")); // bytes compare unsigned
}

TEST(VYAString, MovedFromIsReusable)
{
    VYAString original("text");
    const VYAString moved(std::move(original));
    EXPECT_EQ("text", moved);
    original = "reused";
    EXPECT_EQ("reused?", original.Append("?"));
}

TEST(VYAString, EmbeddedNulKeepsLength)
{
    const VYAString s("a\0b", 3);
    EXPECT_EQ(3u, s.GetLength());
    EXPECT_EQ(0, std::memcmp(s.GetBuffer(), "a\0b", 4));
    EXPECT_NE(s, "a");
    EXPECT_EQ(s, VYAString("a\0bc", 3));

    const std::unordered_set<VYAString> set{s, VYAString("a")};
    EXPECT_EQ(2u, set.size());
}

TEST(VContainerYAString, AtChecksBounds)
{
    VContainerYAString list;
    EXPECT_THROW(list.At(0), std::out_of_range);
    list.Pushback("one");
    list.Pushback(VYAString("two"));
    ASSERT_EQ(2u, list.Size());
    EXPECT_EQ("one", list.At(0));
    EXPECT_EQ("two", list.At(1));
    EXPECT_THROW(list.At(2), std::out_of_range);
}
