#include <TesselSharedUtil/VByteStream.h>

#include <gtest/gtest.h>

#include <vector>

using NTesselSharedUtil::VByteStream;
using VBytes = std::vector<unsigned char>;

namespace {

bool PointsIntoObject(const VByteStream& s)
{
    const auto* begin = reinterpret_cast<const unsigned char*>(&s);
    return s.GetData() >= begin && s.GetData() < begin + sizeof(s);
}

VBytes Pattern(unsigned size)
{
    VBytes bytes(size);
    for (unsigned i = 0; i < size; ++i) {
        bytes[i] = static_cast<unsigned char>(i * 7 + 1);
    }
    return bytes;
}

VBytes Bytes(const VByteStream& s)
{
    return VBytes(s.GetData(), s.GetData() + s.GetSize());
}

} // namespace

TEST(VByteStream, DefaultUsesInternalArea)
{
    const VByteStream s;
    EXPECT_EQ(0u, s.GetSize());
    EXPECT_EQ(31u, s.GetCapacity());
    EXPECT_TRUE(PointsIntoObject(s));
    EXPECT_LE(sizeof(VByteStream), 2 * sizeof(void*) + 2 * sizeof(unsigned) + 32);
}

TEST(VByteStream, ConstructionAroundInternalCapacity)
{
    for (unsigned size : {0u, 1u, 31u, 32u, 100u}) {
        SCOPED_TRACE(size);
        const VByteStream zeros(size);
        EXPECT_EQ(VBytes(size, 0), Bytes(zeros));
        EXPECT_EQ(size <= 31, PointsIntoObject(zeros));

        const VBytes pattern = Pattern(size);
        const VByteStream copied(pattern.data(), size);
        EXPECT_EQ(pattern, Bytes(copied));
        EXPECT_EQ(size <= 31, PointsIntoObject(copied));
    }
    EXPECT_THROW(VByteStream(nullptr, 1), std::invalid_argument);
}

TEST(VByteStream, CopiesAreIndependent)
{
    for (unsigned size : {5u, 100u}) {
        SCOPED_TRACE(size);
        const VBytes pattern = Pattern(size);
        VByteStream original(pattern.data(), size);
        VByteStream copy(original);
        EXPECT_EQ(original, copy);
        EXPECT_EQ(size <= 31, PointsIntoObject(copy));
        copy.GetData()[0] ^= 0xFF;
        EXPECT_NE(original, copy);
        EXPECT_EQ(pattern, Bytes(original));

        VByteStream assigned(200);
        assigned = original;
        EXPECT_EQ(pattern, Bytes(assigned));
        EXPECT_EQ(size <= 31, PointsIntoObject(assigned)); // gives the heap block back

        VByteStream& alias = assigned;
        assigned = alias;
        EXPECT_EQ(pattern, Bytes(assigned));

        VByteStream moved(std::move(copy));
        EXPECT_EQ(size, moved.GetSize());
        EXPECT_EQ(0u, copy.GetSize());
        EXPECT_TRUE(PointsIntoObject(copy));
    }
}

TEST(VByteStream, GrowingPastInternalAreaKeepsBytes)
{
    const VBytes pattern = Pattern(80);
    VByteStream appended(pattern.data(), 30);
    appended.Append(pattern[30]);
    appended.Append(pattern[31]);
    appended.Append(pattern.data() + 32, 48);
    EXPECT_EQ(pattern, Bytes(appended));

    // The source lies in the stream's own heap block, which is reallocated.
    VByteStream doubled(pattern.data(), 40);
    doubled.Append(doubled.GetData(), 40);
    VBytes expected(pattern.begin(), pattern.begin() + 40);
    expected.insert(expected.end(), pattern.begin(), pattern.begin() + 40);
    EXPECT_EQ(expected, Bytes(doubled));

    VByteStream resized(pattern.data(), 31);
    resized.Resize(40);
    expected.assign(pattern.begin(), pattern.begin() + 31);
    expected.resize(40, 0);
    EXPECT_EQ(expected, Bytes(resized));
    resized.Resize(10);
    resized.Resize(20); // re-exposed bytes must be zero again
    expected.resize(10);
    expected.resize(20, 0);
    EXPECT_EQ(expected, Bytes(resized));
}
