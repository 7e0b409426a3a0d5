#include <korvanet/platform/core/utf8string.h>
#include <korvanet/platform/core/w3ctime.h>
#include <optional>

#include <cstdlib>
#include <ctime>

namespace {

using korvanet::platform::core::UTF8String;
using korvanet::platform::core::W3CTime;

std::string Text(const W3CTime& time) {
    UTF8String out;
    time.ToString(out);
    return out.AsUTF8();
}

class W3CTimeZone : public testing::Test {
protected:
    W3CTimeZone() {
        if (const char* zone = std::getenv("TZ")) former_ = zone;
    }
    void SetZone(const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
    }
    void TearDown() override {
        former_ ? setenv("TZ", former_->c_str(), 1) : unsetenv("TZ");
        tzset();
    }

private:
    std::optional<std::string> former_;
};

TEST(W3CTime, HasFixedFieldsWithoutAZone) {
    EXPECT_EQ(Text(W3CTime(2011, 3, 4, 5, 6, 7)), "2011-03-04T05:06:07");
    EXPECT_EQ(Text(W3CTime(987, 12, 31, 23, 59, 59)), "0987-12-31T23:59:59");
}

TEST_F(W3CTimeZone, GivesLocalTime) {
    SetZone("UTC0");
    EXPECT_EQ(Text(W3CTime::FromSeconds(0)), "1970-01-01T00:00:00");
    EXPECT_EQ(Text(W3CTime::FromSeconds(1300000000)), "2011-03-13T07:06:40");
    SetZone("IST-5:30");
    EXPECT_EQ(Text(W3CTime::FromSeconds(1300000000)), "2011-03-13T12:36:40");
    EXPECT_EQ(Text(W3CTime::FromSeconds(-86400)), "1969-12-31T05:30:00");
}

TEST(W3CTime, PresentTimeHasTheFormThatItReads) {
    W3CTime read(1, 1, 1, 1, 1, 1);
    const std::string now = Text(W3CTime());
    ASSERT_TRUE(W3CTime::Parse(UTF8String(now.c_str()), read));
    EXPECT_EQ(Text(read), now);
}

TEST(W3CTime, ReadsItsOwnForm) {
    W3CTime time(1, 1, 1, 1, 1, 1);
    ASSERT_TRUE(W3CTime::Parse(UTF8String("2024-02-29T23:59:60"), time));
    EXPECT_EQ(time.GetYear(), 2024);
    EXPECT_EQ(time.GetMonth(), 2);
    EXPECT_EQ(time.GetDay(), 29);
    EXPECT_EQ(time.GetHour(), 23);
    EXPECT_EQ(time.GetMinute(), 59);
    EXPECT_EQ(time.GetSecond(), 60);
    EXPECT_TRUE(W3CTime::Parse(UTF8String("2000-02-29T00:00:00"), time));
}

TEST(W3CTime, RefusesOtherFormsAndDaysThatNoCalendarHas) {
    for (const char* text : {"", "2011-03-04", "2011-03-04 05:06:07", "2011-03-04T05:06:07Z",
                             "2011-3-04T05:06:07", "2011-03-04T05:06:0x", "2011-00-04T05:06:07",
                             "2011-13-04T05:06:07", "2011-03-00T05:06:07", "2011-04-31T05:06:07",
                             "2023-02-29T05:06:07", "1900-02-29T05:06:07", "2011-03-04T24:06:07",
                             "2011-03-04T05:60:07", "2011-03-04T05:06:61"}) {
        W3CTime time(2001, 2, 3, 4, 5, 6);
        EXPECT_FALSE(W3CTime::Parse(UTF8String(text), time)) << text;
        EXPECT_EQ(Text(time), "2001-02-03T04:05:06");
    }
}

}  // namespace
