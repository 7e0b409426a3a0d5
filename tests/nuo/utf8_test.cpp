#include "nuo/common/string_algo/utf8.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <vector>

namespace {

using Units = std::vector<std::uint32_t>;

Units Decode(const std::string& bytes) {
    Units units;
    nuo::utf8::decode({bytes.data(), bytes.size()}, std::back_inserter(units));
    return units;
}

std::string Encode(const Units& units) {
    std::string bytes;
    nuo::utf8::encode(units, std::back_inserter(bytes));
    return bytes;
}

TEST(Utf8Decode, ReadsEveryLength) {
    EXPECT_EQ(Decode("A"), (Units{0x41}));
    EXPECT_EQ(Decode("\xC3\xA9"), (Units{0xE9}));
    EXPECT_EQ(Decode("\xE2\x82\xAC"), (Units{0x20AC}));
    EXPECT_EQ(Decode("A\xC3\xA9"
                     "B"),
              (Units{0x41, 0xE9, 0x42}));
}

TEST(Utf8Decode, FourByteFormKeepsTheLowerSixteenBits) {
    EXPECT_EQ(Decode("\xF0\x9F\x98\x80"), (Units{0xF600}));
    EXPECT_EQ(Decode("\xF7\xBF\xBF\x81"
                     "A"),
              (Units{0xFFC1, 0x41}));
}

TEST(Utf8Decode, HistoricFiveAndSixByteFormsKeepTheLowerSixteenBits) {
    EXPECT_EQ(Decode("\xF8\x88\x80\x8D\x85"), (Units{0x0345}));
    EXPECT_EQ(Decode("\xFB\xBF\xBF\xBF\x81"
                     "A"),
              (Units{0xFFC1, 0x41}));
    EXPECT_EQ(Decode("\xFD\xBF\xBF\xBF\xBF\xBF"), (Units{0xFFFF}));
    EXPECT_EQ(Decode("\xFC\x80\x80\x80\x81\x81"), (Units{0x0041}));
}

TEST(Utf8Decode, ContinuationBytesAreNotChecked) {
    EXPECT_EQ(Decode("\xC3\x28"), (Units{0xE8}));
}

TEST(Utf8Decode, ContinuationBytesAreTakenAsLeadsOfTwo) {
    EXPECT_EQ(Decode("\x80\x80"), (Units{0}));
    EXPECT_EQ(Decode("\xBF\xBF"), (Units{0x7FF}));
}

TEST(Utf8Decode, RaisesFor254And255) {
    EXPECT_THROW(Decode("\xFF"), nuo::utf8::invalid_utf8_code);
    EXPECT_THROW(Decode("\xFE"), nuo::context_exception<nuo::utf8::invalid_utf8_code>);
}

TEST(Utf8Decode, RaisesWhereTheRangeEndsWithinASequence) {
    for (const char* text :
         {"\xC3", "\xE2\x82", "\xF0\x9F\x98", "\xF8\x88\x80\x80", "\xFC\x80\x80\x80\x80"})
        EXPECT_THROW(Decode(text), nuo::utf8::no_enough_utf8_input) << text;
}

TEST(Utf8Decode, FailuresHaveNoTextBehindThePosition) {
    for (const char* text : {"\xC3", "\xFF"}) {
        try {
            Decode(text);
            FAIL();
        } catch (const nuo::exception& failure) {
            EXPECT_EQ(std::string(failure.what()).back(), ')');
        }
    }
}

TEST(Utf8Decode, KeepsWhatWasWrittenBeforeTheFailure) {
    Units units;
    EXPECT_THROW(nuo::utf8::decode("AB\xFF", std::back_inserter(units)), nuo::exception);
    EXPECT_EQ(units, (Units{0x41, 0x42}));
}

TEST(Utf8Decode, ReturnsBothPositions) {
    char16_t units[4] = {};
    const nuo::string_ref text = "ab";
    const auto [in, out] = nuo::utf8::decode(text, units);
    EXPECT_EQ(in, text.end());
    EXPECT_EQ(out, units + 2);
}

TEST(Utf8Encode, WritesEveryLength) {
    EXPECT_EQ(Encode({0x7F}), "\x7F");
    EXPECT_EQ(Encode({0x80}), "\xC2\x80");
    EXPECT_EQ(Encode({0x7FF}), "\xDF\xBF");
    EXPECT_EQ(Encode({0x800}), "\xE0\xA0\x80");
    EXPECT_EQ(Encode({0xFFFF}), "\xEF\xBF\xBF");
    EXPECT_EQ(Encode({0x10000}), "\xF0\x90\x80\x80");
    EXPECT_EQ(Encode({0x1FFFFF}), "\xF7\xBF\xBF\xBF");
    EXPECT_EQ(Encode({0x200000}), "\xF8\x88\x80\x80\x80");
    EXPECT_EQ(Encode({0x3FFFFFF}), "\xFB\xBF\xBF\xBF\xBF");
    EXPECT_EQ(Encode({0x4000000}), "\xFC\x84\x80\x80\x80\x80");
    EXPECT_EQ(Encode({0x7FFFFFFF}), "\xFD\xBF\xBF\xBF\xBF\xBF");
}

TEST(Utf8Encode, SurrogatesAreEncodedByThemselves) {
    const std::u16string pair = u"\U0001F600";
    std::string bytes;
    nuo::utf8::encode(pair, std::back_inserter(bytes));
    EXPECT_EQ(bytes, "\xED\xA0\xBD\xED\xB8\x80");
}

TEST(Utf8Encode, RaisesFrom31BitsUpWithItsName) {
    std::string bytes;
    try {
        nuo::utf8::encode(Units{0x41, 0x80000000}, std::back_inserter(bytes));
        FAIL();
    } catch (const nuo::utf8::unicode_out_range& failure) {
        const std::string message = failure.what();
        EXPECT_EQ(message.substr(message.find(')')), ")nuo::utf8::encode");
    }
    EXPECT_EQ(bytes, "A");
    EXPECT_THROW(Encode({0xFFFFFFFF}), nuo::context_exception<nuo::utf8::unicode_out_range>);
}

TEST(Utf8, EmptyRangesWriteNothing) {
    EXPECT_TRUE(Decode("").empty());
    EXPECT_TRUE(Encode({}).empty());
}

TEST(Utf8, RoundTripsTheBasicPlane) {
    Units units;
    for (std::uint32_t unit = 0; unit < 0x10000; unit += 7)
        units.push_back(unit);
    EXPECT_EQ(Decode(Encode(units)), units);
}

}  // namespace
