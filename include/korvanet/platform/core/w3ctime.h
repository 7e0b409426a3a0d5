#pragma once

#include <cstdint>

#include <korvanet/platform/core/export.h>
#include <korvanet/platform/core/istring.h>

namespace korvanet::platform::core {

/// A time stamp in the form of a package's properties, "YYYY-MM-DDThh:mm:ss": local time, to the
/// second, without a zone.
class HALVERN_API W3CTime {
public:
    /// The present local time.
    W3CTime();

    /// The given calendar fields (month and day from 1), taken as they are.
    W3CTime(int year, int month, int day, int hour, int minute, int second);

    /// The local time of `seconds` since the epoch.
    static W3CTime FromSeconds(std::int64_t seconds);

    /// Reads a text of exactly the form above. False, and `time` unchanged, when the text has
    /// another form or names a day or time that no calendar has.
    static bool Parse(const IString& text, W3CTime& time);

    void ToString(IString& text) const;

    int GetYear() const { return year_; }
    int GetMonth() const { return month_; }
    int GetDay() const { return day_; }
    int GetHour() const { return hour_; }
    int GetMinute() const { return minute_; }
    int GetSecond() const { return second_; }

private:
    int year_;
    int month_;
    int day_;
    int hour_;
    int minute_;
    int second_;
};

}  // namespace korvanet::platform::core
