#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TesselODX220Model.h"
#include "values/VByteStream.h"

namespace {

using namespace NODX220;
using NTesselSharedUtil::VOutputFormat;

class ByteStreamTest : public ::testing::Test {
protected:
    void TearDown() override { mFactory.DestroyOdx(mOdx); }

    VByteStream& Make(const std::vector<unsigned char>& bytes)
    {
        auto* stream = new VByteStream(bytes.data(), static_cast<unsigned>(bytes.size()), mOdx,
                                       TAG_FILLBYTE);
        mFactory.UnhandledElementCollection().Append(*stream);
        return *stream;
    }

    static std::string Text(const VByteStream& stream, int format)
    {
        const VYAString text = stream.ToString(static_cast<VOutputFormat>(format));
        return std::string(text.GetBuffer(), text.GetLength());
    }

    VOdxFactory& mFactory = VOdxFactory::Instance();
    VOdx& mOdx = mFactory.MakeOdx();
};

TEST_F(ByteStreamTest, ToStringInAllFormats)
{
    struct Case {
        std::vector<unsigned char> bytes;
        const char* texts[4];
    };
    const Case cases[] = {
        {{}, {"", "", "", ""}},
        {{0x00}, {"0x00", "0x00", "00", "00"}},
        {{0x0A, 0x1F}, {"0x0A 0x1F", "0x0A1F", "0A 1F", "0A1F"}},
        {{0xAB, 0xF0, 0x09}, {"0xAB 0xF0 0x09", "0xABF009", "AB F0 09", "ABF009"}},
    };
    for (const Case& c : cases) {
        VByteStream& stream = Make(c.bytes);
        for (int format = 0; format < 4; ++format) {
            EXPECT_EQ(c.texts[format], Text(stream, format)) << "format " << format;
        }
        EXPECT_EQ(c.texts[3], Text(stream, 7));
    }
}

TEST_F(ByteStreamTest, LongStreamPrintsEveryByte)
{
    std::vector<unsigned char> bytes;
    std::string plain;
    for (unsigned i = 0; i < 40; ++i) {
        bytes.push_back(static_cast<unsigned char>(i * 7));
        char hex[3];
        snprintf(hex, sizeof hex, "%02X", bytes.back());
        plain += hex;
    }
    VByteStream& stream = Make(bytes);
    EXPECT_EQ(plain, Text(stream, 3));
    EXPECT_EQ("0x" + plain, Text(stream, 1));
    const std::string each = Text(stream, 0);
    EXPECT_EQ(40u * 5 - 1, each.size());
    EXPECT_EQ("0x00 0x07 ", each.substr(0, 10));
    EXPECT_EQ(" 0x11", each.substr(each.size() - 5)); // 39 * 7 = 0x111
}

TEST_F(ByteStreamTest, ConstructorsAndClone)
{
    VByteStream sized(3, mOdx, TAG_BIT_MASK);
    EXPECT_EQ("000000", Text(sized, 3));
    EXPECT_EQ(TAG_BIT_MASK, sized.GetOdxTag());

    std::vector<unsigned char> bytes(40, 0x5A);
    VByteStream& source = Make(bytes);
    VByteStream& clone = source.Clone(sized);
    EXPECT_EQ(TAG_FILLBYTE, clone.GetOdxTag());
    EXPECT_EQ(&sized, &clone.GetParent());
    EXPECT_EQ(&sized, &clone.GetPhysicalParent());
    EXPECT_EQ(&mOdx, &clone.GetRootElement());
    ASSERT_EQ(40u, clone.GetSize());
    EXPECT_NE(source.GetData(), clone.GetData());
    source.GetData()[0] = 0;
    EXPECT_EQ(0x5A, clone.GetData()[0]);
    EXPECT_FALSE(clone.HandleTag(TAG_BIT_MASK, source));
    mFactory.DestroyElement(&clone);
}

TEST_F(ByteStreamTest, MadeByTheFactory)
{
    VByteStream& stream = mFactory.MakeByteStream(mOdx, TAG_BIT_MASK);
    EXPECT_EQ(TAG_BIT_MASK, stream.GetOdxTag());
    EXPECT_EQ(&mOdx, &stream.GetParent());
    EXPECT_EQ(0u, stream.GetSize());
    stream.Append(0x80);
    EXPECT_EQ("0x80", Text(stream, 0));
    mFactory.DestroyElement(&stream);
}

} // namespace
