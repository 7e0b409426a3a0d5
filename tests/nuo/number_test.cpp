#include "nuo/common/string_algo/number.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>
#include <string>

namespace {

using nuo::to_text;

const char* const kTexts[] = {"",
                              " ",
                              "0",
                              "-0",
                              "+5",
                              "-5",
                              "  12 ",
                              "\t\n12x",
                              "12.5",
                              "12.",
                              ".5",
                              ".",
                              "-.5e3",
                              "1e5",
                              "1e",
                              "1e+",
                              "1e-5x",
                              "e5",
                              "1,5",
                              "0x10",
                              "1e400",
                              "-1e400",
                              "1e-400",
                              "1e-320",
                              "inf",
                              "nan",
                              "--1",
                              "+-1",
                              "+",
                              "1.5.5",
                              "1e5e5",
                              "007",
                              "1 2",
                              "abc",
                              "4294967295",
                              "4294967296",
                              "-4294967295",
                              "-4294967296",
                              "2147483648",
                              "-2147483648",
                              "9223372036854775808",
                              "18446744073709551615",
                              "18446744073709551616",
                              "-1",
                              "1E3",
                              "1e5.5"};

/// What an input stream of the classic locale extracts.
template <class Number>
std::optional<Number> Extract(const std::string& text) {
    std::istringstream in(text);
    in.imbue(std::locale::classic());
    Number value{};
    if (!(in >> value)) return std::nullopt;
    return value;
}

TEST(NumberParsing, TakesWhatAnInputStreamTakes) {
    for (const char* text : kTexts) {
        EXPECT_EQ(nuo::parse_int32(text), Extract<std::int32_t>(text)) << text;
        EXPECT_EQ(nuo::parse_uint32(text), Extract<std::uint32_t>(text)) << text;
        EXPECT_EQ(nuo::parse_int64(text), Extract<std::int64_t>(text)) << text;
        EXPECT_EQ(nuo::parse_uint64(text), Extract<std::uint64_t>(text)) << text;
        EXPECT_EQ(nuo::parse_double(text), Extract<double>(text)) << text;
    }
}

TEST(NumberParsing, TakesWhatItSays) {
    EXPECT_EQ(nuo::parse_int32(" -12abc"), -12);
    EXPECT_EQ(nuo::parse_double("1.5, 2"), 1.5);
    EXPECT_EQ(nuo::parse_double("1,5"), 1.0);
    EXPECT_EQ(nuo::parse_double("1e"), std::nullopt);
    EXPECT_EQ(nuo::parse_double("inf"), std::nullopt);
    EXPECT_EQ(nuo::parse_int32("2147483648"), std::nullopt);
}

TEST(NumberParsing, TakesSeveralNumbersInTurn) {
    nuo::string_ref text = " 1.5 -2e1 x";
    EXPECT_EQ(nuo::take_double(text), 1.5);
    EXPECT_EQ(nuo::take_double(text), -20.0);
    EXPECT_EQ(nuo::take_double(text), std::nullopt);
    EXPECT_EQ(text, "x");
    text = "7 8";
    EXPECT_EQ(nuo::take_int64(text), 7);
    EXPECT_EQ(nuo::take_int64(text), 8);
    EXPECT_EQ(nuo::take_int64(text), std::nullopt);
}

TEST(NumberText, WholeNumbers) {
    EXPECT_EQ(to_text(-5), "-5");
    EXPECT_EQ(to_text(5u), "5");
    EXPECT_EQ(to_text(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(to_text(std::numeric_limits<std::uint64_t>::max()), "18446744073709551615");
}

TEST(NumberText, SixDigitsWhereTheseReadBack) {
    EXPECT_EQ(to_text(0.0), "0");
    EXPECT_EQ(to_text(-0.0), "-0");
    EXPECT_EQ(to_text(1.0), "1");
    EXPECT_EQ(to_text(0.1), "0.1");
    EXPECT_EQ(to_text(1e6), "1e+06");
    EXPECT_EQ(to_text(123456.0), "123456");
    EXPECT_EQ(to_text(0.00001), "1e-05");
}

TEST(NumberText, ShortestFormElse) {
    EXPECT_EQ(to_text(1.0 / 3), "0.3333333333333333");
    EXPECT_EQ(to_text(1234567.0), "1234567");
    EXPECT_EQ(to_text(0.1 + 0.2), "0.30000000000000004");
    EXPECT_EQ(to_text(std::numeric_limits<double>::max()), "1.7976931348623157e+308");
}

TEST(NumberText, AsAStreamWritesIt) {
    for (const double number : {1.5, -2.25, 1e10, 1e-10, 1e100, 100000.0, 999999.0}) {
        std::ostringstream out;
        out.imbue(std::locale::classic());
        out << number;
        EXPECT_EQ(to_text(number), out.str().c_str());
    }
    EXPECT_EQ(to_text(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(to_text(std::nan("")), "nan");
}

TEST(NumberText, EveryDoubleReadsBack) {
    for (double number = 1e-310; number < 1e300; number *= 37.123456789)
        EXPECT_EQ(nuo::parse_double(to_text(number)), number);
    const double smallest = std::numeric_limits<double>::denorm_min();
    EXPECT_EQ(nuo::parse_double(to_text(smallest)), smallest);
}

class DecimalComma : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    std::string do_grouping() const override { return "\3"; }
    char do_thousands_sep() const override { return '.'; }
};

TEST(Number, IsTheSameInALocaleWithADecimalComma) {
    const std::locale before = std::locale::global(std::locale(std::locale(), new DecimalComma));
    EXPECT_EQ(to_text(1234.5), "1234.5");
    EXPECT_EQ(to_text(1.0 / 3), "0.3333333333333333");
    EXPECT_EQ(to_text(1234567), "1234567");
    EXPECT_EQ(nuo::parse_double("1.5"), 1.5);
    EXPECT_EQ(nuo::parse_double("1e-400"), 0.0);
    std::locale::global(before);
}

}  // namespace
