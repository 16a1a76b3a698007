#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

#include "TesselODX220Model.h"
#include "values/VDateTime.h"

namespace {

using namespace NODX220;

// Seconds since the epoch of some UTC moments.
constexpr long long k20050301T1200Z = 1109678400;
constexpr long long k20050301T0200Z = 1109642400;
constexpr long long k20050301T2000Z = 1109707200;
constexpr long long k20050301T2330Z = 1109719800;
constexpr long long k20050701T1200Z = 1120219200;

class DateTimeTest : public ::testing::Test {
protected:
    void TearDown() override { VOdxFactory::Instance().DestroyOdx(mOdx); }

    VOdx& mOdx = VOdxFactory::Instance().MakeOdx();
};

TEST_F(DateTimeTest, NewElementPrintsDefaults)
{
    VDateTime date(mOdx, TAG_DATE);
    EXPECT_STREQ("1980-01-01", date.AsStringDateUtc());
    EXPECT_STREQ("00:00:00+00:00", date.AsStringTimeUtc());
    EXPECT_EQ(1, date.Sign());
    EXPECT_EQ(TAG_DATE, date.GetOdxTag());
    EXPECT_EQ(&mOdx, &date.GetRootElement());
    EXPECT_FALSE(date.HandleTag(TAG_DATE, date));
}

TEST_F(DateTimeTest, ParseUtcString)
{
    struct Case {
        const char* text;
        const char* separator;
        bool ok;
        const char* printed; // by AsStringDateTimeUtc with the same separator
        short sign;
    };
    const Case cases[] = {
        {"2005-03-01T13:05:09+01:00", "T", true, "2005-03-01T13:05:09+01:00", 1},
        {"2005-03-01T13:05:09-02:30", "T", true, "2005-03-01T13:05:09-02:30", -1},
        {"2005-03-01T13:05:09+13:00", "T", true, "2005-03-01T13:05:09-11:00", -1},
        {"2005-03-01T13:05:09-14:00", "T", true, "2005-03-01T13:05:09+10:00", 1},
        {"2005-03-01T13:05:09+12:00", "T", true, "2005-03-01T13:05:09+12:00", 1},
        {"2005-03-01T13:05:09.5+02:00", "T", true, "2005-03-01T13:05:09.005+02:00", 1},
        {"2005-03-01T13:05:09.020-02:00", "T", true, "2005-03-01T13:05:09.020-02:00", -1},
        {"2005-03-01 13:05:09+01:00", " ", true, "2005-03-01 13:05:09+01:00", 1},
        {"2005-03-01%13:05:09+01:00", "%", true, "2005-03-01%13:05:09+01:00", 1},
        // Anything but '-' counts as ahead of UTC.
        {"2005-03-01T13:05:09 01:00", "T", true, "2005-03-01T13:05:09+01:00", 1},
        // A "." outside the seconds switches to the fraction format, which then fails.
        {"2005.03.01T13:05:09+01:00", "T", false, "2005-01-01T00:00:00+00:00", 1},
        {"2005-03-01T13:05:09+01:00.", "T", false, "2005-03-01T13:05:09+00:00", 1},
        // No offset to read: date and time stay.
        {"2005-03-01T13:05:09Z", "T", false, "2005-03-01T13:05:09+00:00", 1},
        {"2005-03-01T13:05", "T", false, "2005-03-01T13:05:00+00:00", 1},
        {"", "T", false, "1980-01-01T00:00:00+00:00", 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        VDateTime date(mOdx, TAG_DATE);
        // Whatever an earlier parse left must not survive.
        date.ParseUtcString("1999-12-31T23:59:59.9-05:30", "T");
        EXPECT_EQ(c.ok, date.ParseUtcString(c.text, c.separator));
        EXPECT_STREQ(c.printed, date.AsStringDateTimeUtc(c.separator));
        EXPECT_EQ(c.sign, date.Sign());
    }
}

TEST_F(DateTimeTest, ParsedFields)
{
    VDateTime date(mOdx, TAG_DATE);
    ASSERT_TRUE(date.ParseUtcString("2005-03-01T13:05:09.5-02:00", "T"));
    EXPECT_EQ(2005, date.GetYear());
    EXPECT_EQ(9, date.GetSecond());
    EXPECT_EQ(5, date.GetMilliSecond());
    EXPECT_EQ(2, date.GetSpanHour());
    EXPECT_EQ(-1, date.Sign());
}

TEST_F(DateTimeTest, ParseUtcStringNTZ)
{
    VDateTime date(mOdx, TAG_DATE);
    date.ParseUtcString("1999-12-31T23:59:59.9-05:30", "T");
    EXPECT_TRUE(date.ParseUtcStringNTZ("2005-03-01 13:05:09"));
    EXPECT_STREQ("2005-03-01T13:05:09+00:00", date.AsStringDateTimeUtc("T"));
    EXPECT_EQ(0, date.GetMilliSecond());

    EXPECT_FALSE(date.ParseUtcStringNTZ("2005-03-01T13:05:09"));
    EXPECT_STREQ("2005-03-01T00:00:00+00:00", date.AsStringDateTimeUtc("T"));
    EXPECT_FALSE(date.ParseUtcStringNTZ("x"));
    EXPECT_STREQ("1980-01-01 00:00:00+00:00", date.AsStringDateTimeUtc(" "));
}

TEST_F(DateTimeTest, PrintingWidthsAreMinimums)
{
    VDateTime date(5, 13, 7, 123, 4, 5, -1, 2, 30, 45, mOdx, TAG_DATE);
    EXPECT_STREQ("0005-13-07", date.AsStringDateUtc());
    // The span second is not written.
    EXPECT_STREQ("123:04:05-02:30", date.AsStringTimeUtc());
    date.SetYear(12345);
    date.SetMilliSecond(1234);
    EXPECT_STREQ("12345-13-07", date.AsStringDateUtc());
    EXPECT_STREQ("123:04:05.1234-02:30", date.AsStringTimeUtc());
    date.SetMilliSecond(20);
    date.Sign(0);
    EXPECT_STREQ("12345-13-07/123:04:05.020+02:30", date.AsStringDateTimeUtc("/"));
}

TEST_F(DateTimeTest, ComparisonAndCopiesLeaveOutTheMillisecond)
{
    VDateTime a(2005, 3, 1, 13, 5, 9, 1, 1, 0, 0, mOdx, TAG_DATE);
    VDateTime b(2005, 3, 1, 13, 5, 9, 1, 1, 0, 0, mOdx, TAG_DATE);
    EXPECT_EQ(0, a.GetMilliSecond());
    a.SetMilliSecond(500);
    EXPECT_TRUE(a == b);
    b.Sign(-1);
    EXPECT_TRUE(a != b);
    b.Sign(1);
    b.SetSpanSecond(1);
    EXPECT_FALSE(a == b);

    b.SetMilliSecond(7);
    b = a;
    EXPECT_TRUE(a == b);
    EXPECT_EQ(7, b.GetMilliSecond());
    b = b;
    EXPECT_TRUE(a == b);

    VDateTime copy(a);
    EXPECT_TRUE(copy == a);
    EXPECT_EQ(0, copy.GetMilliSecond());
    EXPECT_EQ(&mOdx, &copy.GetParent());
    EXPECT_EQ(TAG_DATE, copy.GetOdxTag());

    VDateTime& clone = a.Clone(b);
    EXPECT_TRUE(clone == a);
    EXPECT_EQ(0, clone.GetMilliSecond());
    EXPECT_EQ(&b, &clone.GetParent());
    EXPECT_EQ(TAG_DATE, clone.GetOdxTag());
    EXPECT_EQ(&mOdx, &clone.GetRootElement());
    VOdxFactory::Instance().DestroyElement(&clone);
}

// Zone-dependent operations, checked under POSIX zone rules set for this process only.
class TimeZoneTest : public DateTimeTest {
protected:
    void SetUp() override
    {
        if (const char* tz = std::getenv("TZ")) {
            mSavedTz = tz;
        }
    }
    void TearDown() override
    {
        if (mSavedTz) {
            setenv("TZ", mSavedTz->c_str(), 1);
        } else {
            unsetenv("TZ");
        }
        tzset();
        DateTimeTest::TearDown();
    }
    static void UseZone(const char* rule)
    {
        setenv("TZ", rule, 1);
        tzset();
    }
    std::string Offset(long long time)
    {
        VDateTime date(mOdx, TAG_DATE);
        date.SetSpanSecond(99);
        date.CalculateTimeZoneUtc(time);
        EXPECT_EQ(0, date.GetSpanSecond());
        EXPECT_STREQ("1980-01-01", date.AsStringDateUtc());
        return date.AsStringTimeUtc() + 8;
    }

    std::optional<std::string> mSavedTz;
};

constexpr const char* kCentralEurope = "CET-1CEST,M3.5.0,M10.5.0/3";
constexpr const char* kUsEast = "EST5EDT,M3.2.0,M11.1.0";

TEST_F(TimeZoneTest, CalculateTimeZoneUtc)
{
    UseZone("UTC0");
    EXPECT_EQ("+00:00", Offset(k20050301T1200Z));
    UseZone(kCentralEurope);
    EXPECT_EQ("+01:00", Offset(k20050301T1200Z));
    EXPECT_EQ("+02:00", Offset(k20050701T1200Z));
    EXPECT_EQ("+01:00", Offset(k20050301T2330Z)); // local 00:30 of the next day
    UseZone(kUsEast);
    EXPECT_EQ("-05:00", Offset(k20050301T1200Z));
    EXPECT_EQ("-04:00", Offset(k20050701T1200Z));
    EXPECT_EQ("-05:00", Offset(k20050301T0200Z)); // local 21:00 of the day before
    UseZone("IST-5:30");
    EXPECT_EQ("+05:30", Offset(k20050301T1200Z));
    // Across midnight only the hour is folded; the minute stays as the difference gave it.
    EXPECT_EQ("+06:30", Offset(k20050301T2000Z));
}

TEST_F(TimeZoneTest, ConvertTimeUtcGivesLocalDateAndOffset)
{
    UseZone(kCentralEurope);
    VDateTime date(mOdx, TAG_DATE);
    date.SetMilliSecond(7);
    date.ConvertTimeUtc(k20050301T2330Z);
    EXPECT_STREQ("2005-03-02T00:30:00.007+01:00", date.AsStringDateTimeUtc("T"));

    UseZone(kUsEast);
    VDateTime fromTime(k20050701T1200Z, mOdx, TAG_DATE);
    EXPECT_STREQ("2005-07-01T08:00:00-04:00", fromTime.AsStringDateTimeUtc("T"));
    EXPECT_EQ(TAG_DATE, fromTime.GetOdxTag());

    // The given fields stay; only the offset comes from the moment.
    VDateTime fields(2001, 2, 3, 4, 5, 6, k20050301T1200Z, mOdx, TAG_DATE);
    EXPECT_STREQ("2001-02-03T04:05:06-05:00", fields.AsStringDateTimeUtc("T"));
}

TEST_F(TimeZoneTest, CurrentTimeReadsTheClock)
{
    UseZone("UTC0");
    VDateTime date(mOdx, TAG_DATE);
    const std::time_t before = std::time(nullptr);
    date.CurrentTime();
    const std::time_t after = std::time(nullptr);

    std::tm fields{};
    fields.tm_year = date.GetYear() - 1900;
    fields.tm_mon = date.GetMonth() - 1;
    fields.tm_mday = date.GetDay();
    fields.tm_hour = date.GetHour();
    fields.tm_min = date.GetMinute();
    fields.tm_sec = date.GetSecond();
    const std::time_t read = std::mktime(&fields);
    EXPECT_LE(before, read);
    EXPECT_GE(after, read);
    EXPECT_STREQ("+00:00", date.AsStringTimeUtc() + 8);
}

} // namespace
