#include <korvanet/platform/core/jpkuuid.h>

#include <cstring>

#include "platform/core/randombytes.h"

namespace korvanet::platform::core {

namespace {

constexpr char kHexDigits[] = "0123456789ABCDEF";

bool IsHyphenPlace(int place) {
    return place == 8 || place == 13 || place == 18 || place == 23;
}

bool IsHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

}  // namespace

JPKUUID::JPKUUID() {
    std::uint64_t random[2];
    FillRandom(random, sizeof(random));
    high_ = (random[0] & ~std::uint64_t{0xF000}) | 0x4000;                    // version 4
    low_ = (random[1] & ~(std::uint64_t{3} << 62)) | std::uint64_t{1} << 63;  // RFC 4122 variant
}

bool JPKUUID::IsValid(const IString& text) {
    const char* const from = text.AsUTF8();
    if (std::strlen(from) != kTextLength) return false;
    for (int i = 0; i != kTextLength; ++i) {
        if (IsHyphenPlace(i) ? from[i] != '-' : !IsHexDigit(from[i])) return false;
    }
    return true;
}

void JPKUUID::ToString(IString& text) const {
    char digits[kTextLength + 1];
    ToChars(digits);
    wchar_t wide[kTextLength + 1];
    for (int i = 0; i <= kTextLength; ++i)
        wide[i] = static_cast<wchar_t>(digits[i]);
    text.Assign(wide);
}

void JPKUUID::ToChars(char (&text)[kTextLength + 1]) const {
    int place = 0;
    for (int digit = 0; digit != 32; ++digit) {
        if (IsHyphenPlace(place)) text[place++] = '-';
        const std::uint64_t half = digit < 16 ? high_ : low_;
        text[place++] = kHexDigits[(half >> (60 - digit % 16 * 4)) & 15];
    }
    text[place] = '\0';
}

}  // namespace korvanet::platform::core
