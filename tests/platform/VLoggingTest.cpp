#include <TesselLogging/VLogging.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

using NTesselSharedUtil::Logging::VLogging;
using NTesselSharedUtil::Logging::VLogLevel;

class VLoggingTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        mLog.SetSink([this](VLogLevel::VSeverityLevel level, uint32_t group, const char* text) {
            mRecords.push_back(std::to_string(level) + "/" + std::to_string(group) + "/" + text);
        });
    }

    void TearDown() override
    {
        mLog.SetSink({});
        mLog.SetEnabled(mEnabled);
        mLog.SetGlobalLogGroupMask(mMask);
        mLog.SetGlobalLogLevel(mLevel);
    }

    VLogging& mLog = VLogging::GetInstance();
    std::vector<std::string> mRecords;

private:
    const bool mEnabled = mLog.IsEnabled();
    const uint32_t mMask = mLog.GetGlobalLogGroupMask();
    const VLogLevel::VSeverityLevel mLevel = mLog.GetGlobalLogLevel();
};

TEST_F(VLoggingTest, QuietByDefault)
{
    EXPECT_FALSE(mLog.IsEnabled());
    EXPECT_EQ(0xFFFFFFFFu, mLog.GetGlobalLogGroupMask());
    EXPECT_EQ(VLogLevel::eError, mLog.GetGlobalLogLevel());
    mLog.Log(VLogLevel::eError, mLog.GetOrCreateGroupId("Quiet"), "not shown");
    EXPECT_TRUE(mRecords.empty());
}

TEST_F(VLoggingTest, FiltersByMaskAndLevel)
{
    const uint32_t shown = mLog.GetOrCreateGroupId("FilterShown");
    const uint32_t hidden = mLog.GetOrCreateGroupId("FilterHidden");
    mLog.SetEnabled(true);
    mLog.SetGlobalLogGroupMask(shown);
    mLog.SetGlobalLogLevel(VLogLevel::eWarning);
    mLog.Log(VLogLevel::eError, shown, "e");
    mLog.Log(VLogLevel::eWarning, shown, "w");
    mLog.Log(VLogLevel::eInfo, shown, "i");
    mLog.Log(VLogLevel::eError, hidden, "masked");

    mLog.SetGlobalLogLevel(VLogLevel::eSilent);
    mLog.Log(VLogLevel::eError, shown, "silent");

    const std::string id = std::to_string(shown);
    EXPECT_EQ((std::vector<std::string>{"0/" + id + "/e", "1/" + id + "/w"}), mRecords);
}

TEST_F(VLoggingTest, GroupIdsAreStableDistinctBits)
{
    const uint32_t a = mLog.GetOrCreateGroupId("GroupA");
    const uint32_t b = mLog.GetOrCreateGroupId("GroupB");
    const std::string sameText = "GroupA";
    EXPECT_EQ(a, mLog.GetOrCreateGroupId(sameText.c_str()));
    EXPECT_NE(a, b);
    for (uint32_t id : {a, b}) {
        EXPECT_TRUE(id != 0 && (id & (id - 1)) == 0) << "not a single bit: " << id;
    }
    EXPECT_STREQ("GroupA", mLog.GetGroupName(a));
    EXPECT_EQ(nullptr, mLog.GetGroupName(a | b));
}

TEST_F(VLoggingTest, NamesBeyondThirtyTwoShareTheLastBit)
{
    // In a child process, so this process's group table is not used up.
    EXPECT_EXIT(
        {
            VLogging& log = VLogging::GetInstance();
            const uint32_t last = 1u << 31;
            const uint32_t first = log.GetOrCreateGroupId("Overflow0");
            uint32_t previous = first;
            bool ok = true;
            for (int i = 1; i < 40; ++i) {
                const uint32_t id = log.GetOrCreateGroupId(("Overflow" + std::to_string(i)).c_str());
                ok = ok && (id > previous || (id == last && previous == last));
                previous = id;
            }
            ok = ok && previous == last && first != last && log.GetOrCreateGroupId("Overflow0") == first;
            std::exit(ok ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(VLoggingTest, EmptySinkRestoresDefault)
{
    const uint32_t group = mLog.GetOrCreateGroupId("StderrGroup");
    mLog.SetEnabled(true);
    mLog.SetSink({});
    ::testing::internal::CaptureStderr();
    mLog.Log(VLogLevel::eError, group, "went to stderr");
    EXPECT_EQ("[error] StderrGroup: went to stderr\n", ::testing::internal::GetCapturedStderr());
    EXPECT_TRUE(mRecords.empty());
}
