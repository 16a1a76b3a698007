#include "FrameworkFixture.h"

namespace FrameworkTests {
namespace {

using NTesselSharedUtil::Logging::VLogging;
using NTesselSharedUtil::Logging::VLogLevel;

TEST(ExceptionTest, TextForms)
{
    EXPECT_EQ("OdxException", Str(VOdxException("", VOdxException::OE_ModelError).ToString()));
    EXPECT_EQ("OdxException (OE_ModelError , mDesc.Pointee() != NULL)",
              Str(VOdxException("mDesc.Pointee() != NULL", VOdxException::OE_ModelError).ToString()));

    const VOdxException conversion(VYAString("bad"), VOdxException::OE_ConversionError);
    EXPECT_STREQ("OE_ConversionError", conversion.GetEnumSpecAsString());
    EXPECT_EQ("OdxException (OE_ConversionError , bad)", Str(conversion.ToString()));

    VOdxException assigned("x", VOdxException::OE_ModelError);
    assigned = conversion;
    const VOdxException copied(assigned);
    EXPECT_EQ("bad", Str(copied.GetMessage()));
    EXPECT_EQ(VOdxException::OE_ConversionError, copied.GetCode());
}

// A code outside the enumeration reads as "UnknownValue".
// Fails under the undefined-behaviour sanitizer: VOdxException.h declares VOdxExceptionCode
// without a fixed underlying type, so its values are 0 and 1 only and 7 is no valid code.
TEST(ExceptionTest, UnknownCodeText)
{
    const VOdxException unknown("odd", static_cast<VOdxException::VOdxExceptionCode>(7));
    EXPECT_STREQ("UnknownValue", unknown.GetEnumSpecAsString());
    EXPECT_EQ("OdxException (UnknownValue , odd)", Str(unknown.ToString()));
}

// Captures what the model logs; restores the logger afterwards.
class AssertionLogTest : public DocumentFixture {
protected:
    struct Line {
        int level;
        uint32_t group;
        std::string text;
    };

    void SetUp() override
    {
        mLog.SetSink([this](VLogLevel::VSeverityLevel level, uint32_t group, const char* text) {
            mLines.push_back({level, group, text});
        });
        mLog.SetGlobalLogGroupMask(0xFFFFFFFFu);
        mLog.SetGlobalLogLevel(VLogLevel::eError);
    }

    void TearDown() override
    {
        mLog.SetSink({});
        mLog.SetEnabled(mEnabled);
        mLog.SetGlobalLogGroupMask(mMask);
        mLog.SetGlobalLogLevel(mLevel);
        DocumentFixture::TearDown();
    }

    // The failure of GetAdminData on a category without admin data.
    void ExpectAdminDataFailure()
    {
        VFlash& flash = AddFlash("F");
        auto failure = CatchOdx([&] { flash.GetAdminData(); });
        ASSERT_TRUE(failure.has_value());
        EXPECT_EQ("mAdminData.Pointee() != NULL", Str(failure->GetMessage()));
        EXPECT_EQ(VOdxException::OE_ModelError, failure->GetCode());
    }

    VLogging& mLog = VLogging::GetInstance();
    const uint32_t mGroup = mLog.GetOrCreateGroupId("GroupQuillon");
    std::vector<Line> mLines;

private:
    const bool mEnabled = mLog.IsEnabled();
    const uint32_t mMask = mLog.GetGlobalLogGroupMask();
    const VLogLevel::VSeverityLevel mLevel = mLog.GetGlobalLogLevel();
};

TEST_F(AssertionLogTest, ThrowsWithoutLoggingWhenDisabled)
{
    mLog.SetEnabled(false);
    ExpectAdminDataFailure();

    VFlash& flash = AddFlash("G");
    auto failure = CatchOdx([&] { flash.GetDesc(); });
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ("mDesc.Pointee()", Str(failure->GetMessage()));
    failure = CatchOdx([&] { flash.GetLongName(); });
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ("mLongName.Pointee()", Str(failure->GetMessage()));
    EXPECT_TRUE(mLines.empty());
}

TEST_F(AssertionLogTest, LogsTheConditionWithAPointInTheModelGroup)
{
    mLog.SetEnabled(true);
    ExpectAdminDataFailure();
    ASSERT_EQ(1u, mLines.size());
    EXPECT_EQ(0, mLines[0].level);
    EXPECT_EQ(mGroup, mLines[0].group);
    EXPECT_EQ("mAdminData.Pointee() != NULL.", mLines[0].text);

    mLines.clear();
    EXPECT_THROW(AddFlash("G").GetDesc(), VOdxException);
    ASSERT_EQ(1u, mLines.size());
    EXPECT_EQ("mDesc.Pointee().", mLines[0].text);
}

TEST_F(AssertionLogTest, SilentWhenTheGroupIsMaskedOrTheLevelNegative)
{
    mLog.SetEnabled(true);
    mLog.SetGlobalLogGroupMask(~mGroup);
    ExpectAdminDataFailure();
    EXPECT_TRUE(mLines.empty());

    mLog.SetGlobalLogGroupMask(0xFFFFFFFFu);
    mLog.SetGlobalLogLevel(VLogLevel::eSilent);
    ExpectAdminDataFailure();
    EXPECT_TRUE(mLines.empty());
}

} // namespace
} // namespace FrameworkTests
