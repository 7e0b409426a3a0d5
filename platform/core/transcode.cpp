#include "platform/core/transcode.h"

#include <cstdint>

namespace korvanet::platform::core {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

// What a lead byte promises: how many bytes follow, and the range of the first of them. The narrow
// ranges keep out overlong forms, surrogates and what lies above U+10FFFF.
struct Lead {
    unsigned following;
    unsigned char low;
    unsigned char high;
    char32_t bits;
};

Lead ReadLead(unsigned char byte) {
    if (byte >= 0xC2 && byte <= 0xDF) return {1, 0x80, 0xBF, byte & 0x1Fu};
    if (byte == 0xE0) return {2, 0xA0, 0xBF, 0};
    if (byte == 0xED) return {2, 0x80, 0x9F, 0xD};
    if (byte >= 0xE1 && byte <= 0xEF) return {2, 0x80, 0xBF, byte & 0x0Fu};
    if (byte == 0xF0) return {3, 0x90, 0xBF, 0};
    if (byte >= 0xF1 && byte <= 0xF3) return {3, 0x80, 0xBF, byte & 0x07u};
    if (byte == 0xF4) return {3, 0x80, 0x8F, 4};
    return {0, 0, 0, 0};
}

// Reads the sequence that starts with a byte above 0x7F; `first` moves behind it, or behind the
// part of it that is there.
char32_t DecodeOne(const char*& first, const char* last) {
    Lead lead = ReadLead(static_cast<unsigned char>(*first++));
    if (lead.following == 0) return kReplacement;
    char32_t point = lead.bits;
    for (; lead.following != 0; --lead.following) {
        if (first == last) return kReplacement;
        const auto byte = static_cast<unsigned char>(*first);
        if (byte < lead.low || byte > lead.high) return kReplacement;
        point = (point << 6) | (byte & 0x3Fu);
        lead.low = 0x80;
        lead.high = 0xBF;
        ++first;
    }
    return point;
}

char32_t WellFormed(wchar_t unit) {
    const auto point = static_cast<char32_t>(unit);
    const bool surrogate = point >= 0xD800 && point <= 0xDFFF;
    return surrogate || point > 0x10FFFF ? kReplacement : point;
}

char Continuation(char32_t point, unsigned shift) {
    return static_cast<char>(0x80 | ((point >> shift) & 0x3F));
}

}  // namespace

wchar_t* DecodeUtf8(const char* first, const char* last, wchar_t* out) {
    while (first != last) {
        const auto byte = static_cast<unsigned char>(*first);
        if (byte < 0x80) {
            *out++ = static_cast<wchar_t>(byte);
            ++first;
        } else {
            *out++ = static_cast<wchar_t>(DecodeOne(first, last));
        }
    }
    return out;
}

std::size_t Utf8Size(const wchar_t* first, const wchar_t* last) {
    std::size_t size = 0;
    for (; first != last; ++first) {
        const char32_t point = WellFormed(*first);
        size += point < 0x80 ? 1 : point < 0x800 ? 2 : point < 0x10000 ? 3 : 4;
    }
    return size;
}

char* EncodeUtf8(const wchar_t* first, const wchar_t* last, char* out) {
    for (; first != last; ++first) {
        const char32_t point = WellFormed(*first);
        if (point < 0x80) {
            *out++ = static_cast<char>(point);
        } else if (point < 0x800) {
            *out++ = static_cast<char>(0xC0 | (point >> 6));
            *out++ = Continuation(point, 0);
        } else if (point < 0x10000) {
            *out++ = static_cast<char>(0xE0 | (point >> 12));
            *out++ = Continuation(point, 6);
            *out++ = Continuation(point, 0);
        } else {
            *out++ = static_cast<char>(0xF0 | (point >> 18));
            *out++ = Continuation(point, 12);
            *out++ = Continuation(point, 6);
            *out++ = Continuation(point, 0);
        }
    }
    return out;
}

}  // namespace korvanet::platform::core
