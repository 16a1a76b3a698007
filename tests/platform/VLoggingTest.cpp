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
        m_log.SetSink([this](VLogLevel::VSeverityLevel level, uint32_t group, const char* text) {
            m_records.push_back(std::to_string(level) + "/" + std::to_string(group) + "/" + text);
        });
    }

    void TearDown() override
    {
        m_log.SetSink({});
        m_log.SetEnabled(m_enabled);
        m_log.SetGlobalLogGroupMask(m_mask);
        m_log.SetGlobalLogLevel(m_level);
    }

    VLogging& m_log = VLogging::GetInstance();
    std::vector<std::string> m_records;

private:
    const bool m_enabled = m_log.IsEnabled();
    const uint32_t m_mask = m_log.GetGlobalLogGroupMask();
    const VLogLevel::VSeverityLevel m_level = m_log.GetGlobalLogLevel();
};

TEST_F(VLoggingTest, QuietByDefault)
{
    EXPECT_FALSE(m_log.IsEnabled());
    EXPECT_EQ(0xFFFFFFFFu, m_log.GetGlobalLogGroupMask());
    EXPECT_EQ(VLogLevel::eError, m_log.GetGlobalLogLevel());
    m_log.Log(VLogLevel::eError, m_log.GetOrCreateGroupId("Quiet"), "not shown");
    EXPECT_TRUE(m_records.empty());
}

TEST_F(VLoggingTest, FiltersByMaskAndLevel)
{
    const uint32_t shown = m_log.GetOrCreateGroupId("FilterShown");
    const uint32_t hidden = m_log.GetOrCreateGroupId("FilterHidden");
    m_log.SetEnabled(true);
    m_log.SetGlobalLogGroupMask(shown);
    m_log.SetGlobalLogLevel(VLogLevel::eWarning);
    m_log.Log(VLogLevel::eError, shown, "e");
    m_log.Log(VLogLevel::eWarning, shown, "w");
    m_log.Log(VLogLevel::eInfo, shown, "i");
    m_log.Log(VLogLevel::eError, hidden, "masked");

    m_log.SetGlobalLogLevel(VLogLevel::eSilent);
    m_log.Log(VLogLevel::eError, shown, "silent");

    const std::string id = std::to_string(shown);
    EXPECT_EQ((std::vector<std::string>{"0/" + id + "/e", "1/" + id + "/w"}), m_records);
}

TEST_F(VLoggingTest, GroupIdsAreStableDistinctBits)
{
    const uint32_t a = m_log.GetOrCreateGroupId("GroupA");
    const uint32_t b = m_log.GetOrCreateGroupId("GroupB");
    const std::string sameText = "GroupA";
    EXPECT_EQ(a, m_log.GetOrCreateGroupId(sameText.c_str()));
    EXPECT_NE(a, b);
    for (uint32_t id : {a, b}) {
        EXPECT_TRUE(id != 0 && (id & (id - 1)) == 0) << "not a single bit: " << id;
    }
    EXPECT_STREQ("GroupA", m_log.GetGroupName(a));
    EXPECT_EQ(nullptr, m_log.GetGroupName(a | b));
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
    const uint32_t group = m_log.GetOrCreateGroupId("StderrGroup");
    m_log.SetEnabled(true);
    m_log.SetSink({});
    ::testing::internal::CaptureStderr();
    m_log.Log(VLogLevel::eError, group, "went to stderr");
    EXPECT_EQ("[error] StderrGroup: went to stderr\n", ::testing::internal::GetCapturedStderr());
    EXPECT_TRUE(m_records.empty());
}
