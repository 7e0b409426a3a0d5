#include <korvanet/platform/core/stringalgorithm.h>
#include <korvanet/platform/core/utf8string.h>

namespace {

using korvanet::platform::core::StringAlgorithm;
using korvanet::platform::core::UTF8String;

std::string Percent(const char* text) {
    UTF8String out;
    StringAlgorithm::PercentEncode(UTF8String(text), out);
    return out.AsUTF8();
}

std::string Uri(const char* text) {
    UTF8String out;
    StringAlgorithm::UriEncode(UTF8String(text), out);
    return out.AsUTF8();
}

TEST(PercentEncoding, LeavesOnlyUnreservedCharacters) {
    EXPECT_EQ(Percent("AZaz09-._~"), "AZaz09-._~");
    EXPECT_EQ(Percent("a b/c?d#e%"), "a%20b%2Fc%3Fd%23e%25");
    EXPECT_EQ(Percent("\xC3\xBC\xF0\x9F\x8E\xA8"), "%C3%BC%F0%9F%8E%A8");
    EXPECT_EQ(Percent("\x01\x7F"), "%01%7F");
    EXPECT_EQ(Percent(""), "");
}

TEST(UriEncoding, KeepsTheStructureOfAUri) {
    EXPECT_EQ(Uri("file:///C:/a b/\xC3\xBC.png?x=1&y=[2]#top"),
              "file:///C:/a%20b/%C3%BC.png?x=1&y=[2]#top");
    EXPECT_EQ(Uri("a%20b"), "a%20b");
    EXPECT_EQ(Uri("100% of %2"), "100%25%20of%20%252");
    EXPECT_EQ(Uri("\"<>\\^`{|}"), "%22%3C%3E%5C%5E%60%7B%7C%7D");
}

TEST(PercentDecoding, TurnsEscapesBack) {
    UTF8String out;
    ASSERT_TRUE(StringAlgorithm::PercentDecode(UTF8String("a%20b%2f%2F+%C3%BC"), out));
    EXPECT_STREQ(out.AsUTF8(), "a b//+\xC3\xBC");
    ASSERT_TRUE(StringAlgorithm::PercentDecode(UTF8String(""), out));
    EXPECT_STREQ(out.AsUTF8(), "");
}

TEST(PercentDecoding, RefusesBrokenEscapesAndBytesThatAreNoTextAndLeavesTheResultAlone) {
    for (const char* text : {"%", "a%2", "%G0", "%0G", "%%20", "a%00b", "caf%E9", "%ED%A0%80"}) {
        UTF8String out("before");
        EXPECT_FALSE(StringAlgorithm::PercentDecode(UTF8String(text), out)) << text;
        EXPECT_STREQ(out.AsUTF8(), "before");
    }
}

TEST(PercentDecoding, WorksInPlace) {
    UTF8String text("x%20y");
    ASSERT_TRUE(StringAlgorithm::PercentDecode(text, text));
    EXPECT_STREQ(text.AsUTF8(), "x y");
    StringAlgorithm::PercentEncode(text, text);
    EXPECT_STREQ(text.AsUTF8(), "x%20y");
}

const std::pair<const char*, const char*> kVectors[] = {
    {"", ""},
    {"f", "Zg=="},
    {"fo", "Zm8="},
    {"foo", "Zm9v"},
    {"foob", "Zm9vYg=="},
    {"fooba", "Zm9vYmE="},
    {"foobar", "Zm9vYmFy"},
    {"\xFB\xFF\xBF", "+/+/"},
};

TEST(Base64, EncodesTheKnownVectors) {
    for (const auto& [bytes, text] : kVectors) {
        UTF8String out("before");
        StringAlgorithm::Base64Encode(bytes, std::strlen(bytes), out);
        EXPECT_STREQ(out.AsUTF8(), text);
    }
}

TEST(Base64, DecodesTheKnownVectors) {
    for (const auto& [bytes, text] : kVectors) {
        char buffer[16] = {};
        std::uint64_t size = 99;
        ASSERT_TRUE(StringAlgorithm::Base64Decode(UTF8String(text), buffer, sizeof(buffer), size))
            << text;
        EXPECT_EQ(std::string(buffer, size), bytes);
    }
}

TEST(Base64, EveryByteSurvivesTheRoundTrip) {
    unsigned char bytes[256];
    for (int i = 0; i != 256; ++i)
        bytes[i] = static_cast<unsigned char>(i);
    for (std::uint64_t length : {253u, 254u, 255u, 256u}) {
        UTF8String text;
        StringAlgorithm::Base64Encode(bytes, length, text);
        unsigned char back[256] = {};
        std::uint64_t size = 0;
        ASSERT_TRUE(StringAlgorithm::Base64Decode(text, back, sizeof(back), size));
        ASSERT_EQ(size, length);
        EXPECT_EQ(std::memcmp(back, bytes, size), 0);
    }
}

TEST(Base64, PassesOverWhiteSpace) {
    char buffer[8];
    std::uint64_t size = 0;
    ASSERT_TRUE(StringAlgorithm::Base64Decode(UTF8String(" Zm\r\n9v\tYg = =\n"), buffer,
                                              sizeof(buffer), size));
    EXPECT_EQ(std::string(buffer, size), "foob");
}

TEST(Base64, TellsTheSizeWithoutABuffer) {
    std::uint64_t size = 0;
    ASSERT_TRUE(StringAlgorithm::Base64Decode(UTF8String("Zm9vYg=="), nullptr, 0, size));
    EXPECT_EQ(size, 4u);
}

TEST(Base64, RefusesASmallBufferAndWritesNothing) {
    char buffer[4] = {'k', 'e', 'p', 't'};
    std::uint64_t size = 77;
    EXPECT_FALSE(StringAlgorithm::Base64Decode(UTF8String("Zm9vYg=="), buffer, 3, size));
    EXPECT_EQ(size, 77u);
    EXPECT_EQ(std::string(buffer, 4), "kept");
}

TEST(Base64, RefusesWhatIsNotBase64) {
    for (const char* text : {"Z", "Zg", "Zg=", "Zm9", "Z===", "====", "=", "Zg==Zg==", "Zg=g",
                             "Zm8==", "Zm9v=", "Zh==", "Zm9=", "Z-9v", "Z_9v", "\xC3\xBC=="}) {
        char buffer[16];
        std::uint64_t size = 77;
        EXPECT_FALSE(StringAlgorithm::Base64Decode(UTF8String(text), buffer, sizeof(buffer), size))
            << text;
        EXPECT_EQ(size, 77u);
    }
}

}  // namespace
