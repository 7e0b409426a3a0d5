#include <korvanet/platform/core/w3ctime.h>

#include <cstring>
#include <ctime>

namespace korvanet::platform::core {

namespace {

// "0" stands for a digit, everything else for itself.
constexpr char kForm[] = "0000-00-00T00:00:00";
constexpr std::size_t kLength = sizeof(kForm) - 1;

bool HasForm(const char* text) {
    if (std::strlen(text) != kLength) return false;
    for (std::size_t i = 0; i != kLength; ++i) {
        const bool digit = text[i] >= '0' && text[i] <= '9';
        if (kForm[i] == '0' ? !digit : text[i] != kForm[i]) return false;
    }
    return true;
}

int ReadNumber(const char* text, int digits) {
    int number = 0;
    for (int i = 0; i != digits; ++i)
        number = number * 10 + (text[i] - '0');
    return number;
}

int DaysOf(int year, int month) {
    constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : kDays[month - 1];
}

void WriteNumber(wchar_t* text, int digits, int number) {
    for (int i = digits; i-- != 0; number /= 10)
        text[i] = static_cast<wchar_t>(L'0' + number % 10);
}

}  // namespace

W3CTime::W3CTime() : W3CTime(FromSeconds(std::time(nullptr))) {}

W3CTime::W3CTime(int year, int month, int day, int hour, int minute, int second)
    : year_(year), month_(month), day_(day), hour_(hour), minute_(minute), second_(second) {}

W3CTime W3CTime::FromSeconds(std::int64_t seconds) {
    const std::time_t time = seconds;
    std::tm fields{};
    localtime_r(&time, &fields);
    return {fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday,
            fields.tm_hour,        fields.tm_min,     fields.tm_sec};
}

bool W3CTime::Parse(const IString& text, W3CTime& time) {
    const char* const from = text.AsUTF8();
    if (!HasForm(from)) return false;
    const W3CTime read(ReadNumber(from, 4), ReadNumber(from + 5, 2), ReadNumber(from + 8, 2),
                       ReadNumber(from + 11, 2), ReadNumber(from + 14, 2),
                       ReadNumber(from + 17, 2));
    if (read.month_ < 1 || read.month_ > 12) return false;
    if (read.day_ < 1 || read.day_ > DaysOf(read.year_, read.month_)) return false;
    // A leap second is the sixtieth.
    if (read.hour_ > 23 || read.minute_ > 59 || read.second_ > 60) return false;
    time = read;
    return true;
}

void W3CTime::ToString(IString& text) const {
    wchar_t out[] = L"0000-00-00T00:00:00";
    WriteNumber(out, 4, year_);
    WriteNumber(out + 5, 2, month_);
    WriteNumber(out + 8, 2, day_);
    WriteNumber(out + 11, 2, hour_);
    WriteNumber(out + 14, 2, minute_);
    WriteNumber(out + 17, 2, second_);
    text.Assign(out);
}

}  // namespace korvanet::platform::core
