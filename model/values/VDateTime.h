#pragma once

#include <cstdint>

#include "framework/TesselODX220ModelExport.h"
#include "framework/VOdxElement.h"

namespace NODX220 {

// A date and time with its offset from UTC, kept in broken-down fields. The offset (span) is
// an absolute value; the sign tells its direction, true for ahead of UTC. No field is
// range-checked. The millisecond takes no part in copies and comparisons.
class TESSEL_ODX_API VDateTime : public VOdxElement {
public:
    VDateTime(VOdxElement& parent, VOdxTagEnum tag);
    // The sign is true for a sign argument of 0 or more.
    VDateTime(uint16_t year, uint16_t month, uint16_t day, uint16_t hour, uint16_t minute,
              uint16_t second, short sign, uint16_t spanHour, uint16_t spanMinute,
              uint16_t spanSecond, VOdxElement& parent, VOdxTagEnum tag);
    // The offset is the local zone's at the moment time (seconds since the epoch).
    VDateTime(uint16_t year, uint16_t month, uint16_t day, uint16_t hour, uint16_t minute,
              uint16_t second, long long time, VOdxElement& parent, VOdxTagEnum tag);
    // The local date, time and offset of the moment time.
    VDateTime(long long time, VOdxElement& parent, VOdxTagEnum tag);
    // Same parent, root and tag as the source.
    VDateTime(VDateTime& source);
    VDateTime(VDateTime& source, VOdxElement& parent);
    ~VDateTime() override;

    VDateTime& Clone(VOdxElement& parent);

    VDateTime& operator=(const VDateTime& source);
    bool operator==(const VDateTime& other) const;
    bool operator!=(const VDateTime& other) const { return !(*this == other); }

    uint16_t GetYear() const { return mYear; }
    void SetYear(uint16_t year) { mYear = year; }
    uint16_t GetMonth() const { return mMonth; }
    void SetMonth(uint16_t month) { mMonth = month; }
    uint16_t GetDay() const { return mDay; }
    void SetDay(uint16_t day) { mDay = day; }
    uint16_t GetHour() const { return mHour; }
    void SetHour(uint16_t hour) { mHour = hour; }
    uint16_t GetMinute() const { return mMinute; }
    void SetMinute(uint16_t minute) { mMinute = minute; }
    uint16_t GetSecond() const { return mSecond; }
    void SetSecond(uint16_t second) { mSecond = second; }
    uint16_t GetMilliSecond() const { return mMilliSecond; }
    void SetMilliSecond(uint16_t milliSecond) { mMilliSecond = milliSecond; }
    uint16_t GetSpanHour() const { return mSpanHour; }
    void SetSpanHour(uint16_t spanHour) { mSpanHour = spanHour; }
    uint16_t GetSpanMinute() const { return mSpanMinute; }
    void SetSpanMinute(uint16_t spanMinute) { mSpanMinute = spanMinute; }
    uint16_t GetSpanSecond() const { return mSpanSecond; }
    void SetSpanSecond(uint16_t spanSecond) { mSpanSecond = spanSecond; }

    // All values back to their defaults; the texts stay.
    void Reset();
    void CurrentTime();
    void ConvertTimeUtc(long long time);
    // Sets the offset only, from the local and UTC time of day at that moment.
    void CalculateTimeZoneUtc(long long time);
    // A span hour above 12 is folded to 24 minus it, with the sign inverted.
    void NormalizeSpanHour();

    short Sign() const { return mSign ? 1 : -1; }
    void Sign(short value) { mSign = value >= 0; }

    // "YYYY-MM-DD<separator>hh:mm:ss[.f]+hh:mm"; true if every part was read. Fields not
    // read keep their defaults.
    bool ParseUtcString(const char* text, const char* separator);
    // "YYYY-MM-DD hh:mm:ss" without an offset.
    bool ParseUtcStringNTZ(const char* text);

    // Valid until the next call of the same operation.
    const char* AsStringDateUtc();
    const char* AsStringTimeUtc();
    const char* AsStringDateTimeUtc(const char* separator);

    bool HandleTag(VOdxTagEnum tag, VOdxElement& child) override;

private:
    void _CopyValue(const VDateTime& source);

    uint16_t mYear = 1980;
    uint16_t mMonth = 1;
    uint16_t mDay = 1;
    uint16_t mHour = 0;
    uint16_t mMinute = 0;
    uint16_t mSecond = 0;
    uint16_t mMilliSecond = 0;
    uint16_t mSpanHour = 0;
    uint16_t mSpanMinute = 0;
    uint16_t mSpanSecond = 0;
    bool mSign = true;
    // The texts last handed out, made when first asked for.
    struct Texts {
        VYAString date;
        VYAString time;
        VYAString dateTime;
    };
    Texts& _Texts();
    Texts* mpTexts = nullptr;
};

} // namespace NODX220
