#include "values/VDateTime.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <iomanip>
#include <sstream>
#include <string>
#include <type_traits>

namespace NODX220 {

// The fields are scanned with %hu.
static_assert(std::is_same<uint16_t, unsigned short>::value, "uint16_t must be unsigned short");

namespace {

bool LocalBreakdown(long long time, std::tm& out)
{
    const std::time_t t = static_cast<std::time_t>(time);
    return localtime_r(&t, &out) != nullptr;
}

bool UtcBreakdown(long long time, std::tm& out)
{
    const std::time_t t = static_cast<std::time_t>(time);
    return gmtime_r(&t, &out) != nullptr;
}

long SecondOfDay(const std::tm& breakdown)
{
    return breakdown.tm_hour * 3600L + breakdown.tm_min * 60L + breakdown.tm_sec;
}

// The separator goes into a scan format: a '%' in it must match itself.
std::string EscapeForScan(const char* text)
{
    std::string escaped;
    for (const char* p = text; p != nullptr && *p != '\0'; ++p) {
        escaped += *p;
        if (*p == '%') {
            escaped += '%';
        }
    }
    return escaped;
}

} // namespace

VDateTime::VDateTime(VOdxElement& parent, VOdxTagEnum tag) : VOdxElement(parent)
{
    SetOdxTag(tag);
    SetRootElement(parent.GetRootElement());
}

VDateTime::VDateTime(uint16_t year, uint16_t month, uint16_t day, uint16_t hour, uint16_t minute,
                     uint16_t second, short sign, uint16_t spanHour, uint16_t spanMinute,
                     uint16_t spanSecond, VOdxElement& parent, VOdxTagEnum tag)
    : VOdxElement(parent), mYear(year), mMonth(month), mDay(day), mHour(hour), mMinute(minute),
      mSecond(second), mSpanHour(spanHour), mSpanMinute(spanMinute), mSpanSecond(spanSecond),
      mSign(sign >= 0)
{
    SetOdxTag(tag);
    SetRootElement(parent.GetRootElement());
}

VDateTime::VDateTime(uint16_t year, uint16_t month, uint16_t day, uint16_t hour, uint16_t minute,
                     uint16_t second, long long time, VOdxElement& parent, VOdxTagEnum tag)
    : VOdxElement(parent), mYear(year), mMonth(month), mDay(day), mHour(hour), mMinute(minute),
      mSecond(second)
{
    CalculateTimeZoneUtc(time);
    SetOdxTag(tag);
    SetRootElement(parent.GetRootElement());
}

VDateTime::VDateTime(long long time, VOdxElement& parent, VOdxTagEnum tag) : VOdxElement(parent)
{
    ConvertTimeUtc(time);
    SetOdxTag(tag);
    SetRootElement(parent.GetRootElement());
}

VDateTime::VDateTime(VDateTime& source) : VOdxElement(source.GetParent())
{
    _CopyValue(source);
    SetOdxTag(source.GetOdxTag());
    SetRootElement(source.GetRootElement());
}

VDateTime::VDateTime(VDateTime& source, VOdxElement& parent) : VOdxElement(source, parent)
{
    _CopyValue(source);
}

VDateTime::~VDateTime()
{
    delete mpTexts;
}

VDateTime::Texts& VDateTime::_Texts()
{
    if (mpTexts == nullptr) {
        mpTexts = new Texts();
    }
    return *mpTexts;
}

VDateTime& VDateTime::Clone(VOdxElement& parent)
{
    return *new VDateTime(*this, parent);
}

VDateTime& VDateTime::operator=(const VDateTime& source)
{
    if (this != &source) {
        _CopyValue(source);
    }
    return *this;
}

bool VDateTime::operator==(const VDateTime& other) const
{
    return mYear == other.mYear && mMonth == other.mMonth && mDay == other.mDay &&
           mHour == other.mHour && mMinute == other.mMinute && mSecond == other.mSecond &&
           mSign == other.mSign && mSpanHour == other.mSpanHour &&
           mSpanMinute == other.mSpanMinute && mSpanSecond == other.mSpanSecond;
}

void VDateTime::_CopyValue(const VDateTime& source)
{
    mYear = source.mYear;
    mMonth = source.mMonth;
    mDay = source.mDay;
    mHour = source.mHour;
    mMinute = source.mMinute;
    mSecond = source.mSecond;
    mSign = source.mSign;
    mSpanHour = source.mSpanHour;
    mSpanMinute = source.mSpanMinute;
    mSpanSecond = source.mSpanSecond;
}

void VDateTime::Reset()
{
    mYear = 1980;
    mMonth = 1;
    mDay = 1;
    mHour = 0;
    mMinute = 0;
    mSecond = 0;
    mMilliSecond = 0;
    mSpanHour = 0;
    mSpanMinute = 0;
    mSpanSecond = 0;
    mSign = true;
}

void VDateTime::CurrentTime()
{
    ConvertTimeUtc(static_cast<long long>(std::time(nullptr)));
}

void VDateTime::ConvertTimeUtc(long long time)
{
    std::tm local{};
    if (!LocalBreakdown(time, local)) {
        return;
    }
    mYear = static_cast<uint16_t>(local.tm_year + 1900);
    mMonth = static_cast<uint16_t>(local.tm_mon + 1);
    mDay = static_cast<uint16_t>(local.tm_mday);
    mHour = static_cast<uint16_t>(local.tm_hour);
    mMinute = static_cast<uint16_t>(local.tm_min);
    mSecond = static_cast<uint16_t>(local.tm_sec);
    CalculateTimeZoneUtc(time);
}

void VDateTime::CalculateTimeZoneUtc(long long time)
{
    std::tm local{};
    std::tm utc{};
    if (!LocalBreakdown(time, local) || !UtcBreakdown(time, utc)) {
        return;
    }
    const long localSeconds = SecondOfDay(local);
    const long utcSeconds = SecondOfDay(utc);
    const long difference = std::labs(localSeconds - utcSeconds);
    mSpanHour = static_cast<uint16_t>(difference / 3600);
    mSpanMinute = static_cast<uint16_t>(difference % 3600 / 60);
    mSpanSecond = static_cast<uint16_t>(difference % 60);
    mSign = localSeconds >= utcSeconds;
    // Only the time of day was compared: a moment across midnight gives the long way round.
    NormalizeSpanHour();
}

void VDateTime::NormalizeSpanHour()
{
    if (mSpanHour > 12) {
        mSign = !mSign;
        mSpanHour = static_cast<uint16_t>(24 - mSpanHour);
    }
}

bool VDateTime::ParseUtcString(const char* text, const char* separator)
{
    if (text == nullptr) {
        text = "";
    }
    const bool fraction = std::strchr(text, '.') != nullptr;
    std::string format = "%hu-%hu-%hu";
    format += EscapeForScan(separator);
    format += "%hu:%hu:%hu";
    if (fraction) {
        format += ".%hu";
    }
    format += "%c%hd:%hu";

    Reset();
    char signCharacter = '+';
    short spanHour = 0;
    int converted = 0;
    if (fraction) {
        converted = std::sscanf(text, format.c_str(), &mYear, &mMonth, &mDay, &mHour, &mMinute,
                                &mSecond, &mMilliSecond, &signCharacter, &spanHour, &mSpanMinute);
    } else {
        converted = std::sscanf(text, format.c_str(), &mYear, &mMonth, &mDay, &mHour, &mMinute,
                                &mSecond, &signCharacter, &spanHour, &mSpanMinute);
    }
    mSpanHour = static_cast<uint16_t>(spanHour);
    mSign = signCharacter != '-';
    NormalizeSpanHour();
    return converted == (fraction ? 10 : 9);
}

bool VDateTime::ParseUtcStringNTZ(const char* text)
{
    Reset();
    if (text == nullptr) {
        return false;
    }
    return std::sscanf(text, "%hu-%hu-%hu %hu:%hu:%hu", &mYear, &mMonth, &mDay, &mHour, &mMinute,
                       &mSecond) == 6;
}

const char* VDateTime::AsStringDateUtc()
{
    std::ostringstream stream;
    stream << std::setfill('0') << std::setw(4) << mYear << '-' << std::setw(2) << mMonth << '-'
           << std::setw(2) << mDay;
    _Texts().date = stream.str().c_str();
    return mpTexts->date.GetBuffer();
}

const char* VDateTime::AsStringTimeUtc()
{
    std::ostringstream stream;
    stream << std::setfill('0') << std::setw(2) << mHour << ':' << std::setw(2) << mMinute << ':'
           << std::setw(2) << mSecond;
    if (mMilliSecond != 0) {
        stream << '.' << std::setw(3) << mMilliSecond;
    }
    stream << (mSign ? '+' : '-') << std::setw(2) << mSpanHour << ':' << std::setw(2)
           << mSpanMinute;
    _Texts().time = stream.str().c_str();
    return mpTexts->time.GetBuffer();
}

const char* VDateTime::AsStringDateTimeUtc(const char* separator)
{
    VYAString text(AsStringDateUtc());
    text.Append(separator);
    text.Append(AsStringTimeUtc());
    _Texts().dateTime = text;
    return mpTexts->dateTime.GetBuffer();
}

bool VDateTime::HandleTag(VOdxTagEnum, VOdxElement&)
{
    return false;
}

} // namespace NODX220
