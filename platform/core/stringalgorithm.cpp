#include <korvanet/platform/core/stringalgorithm.h>

#include <cstring>
#include <string>
#include <string_view>

#include "platform/core/convert.h"

namespace korvanet::platform::core {

namespace {

constexpr std::string_view kReserved = ":/?#[]@!$&'()*+,;=";
constexpr std::string_view kUnreservedMarks = "-._~";
constexpr char kHexDigits[] = "0123456789ABCDEF";
constexpr std::string_view kBase64Digits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Not <cctype>: its answers hang on the locale of the host.
bool IsUnreserved(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
           kUnreservedMarks.find(c) != std::string_view::npos;
}

int HexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

// The byte that the escape at `at` means, or -1. The text is NUL-terminated.
int EscapedByte(const char* at) {
    const int high = *at == '%' ? HexValue(at[1]) : -1;
    const int low = high >= 0 ? HexValue(at[2]) : -1;
    return low >= 0 ? high * 16 + low : -1;
}

void AppendEscape(std::string& out, char c) {
    const auto byte = static_cast<unsigned char>(c);
    out += '%';
    out += kHexDigits[byte >> 4];
    out += kHexDigits[byte & 15];
}

void AssignUtf8(IString& target, const std::string& text) {
    target.Assign(ToWide(text).c_str());
}

bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// Appends the bytes of one group of four digits, `padding` of which are "=". False when bits that
// stand for no byte are set: such a text is no result of encoding.
bool AppendGroup(std::string& out, std::uint32_t bits, unsigned padding) {
    const std::uint32_t unused = padding == 2 ? 0xFFFF : padding == 1 ? 0xFF : 0;
    if ((bits & unused) != 0) return false;
    out += static_cast<char>(bits >> 16);
    if (padding < 2) out += static_cast<char>(bits >> 8);
    if (padding < 1) out += static_cast<char>(bits);
    return true;
}

bool DecodeBase64(const char* text, std::string& out) {
    std::uint32_t bits = 0;
    unsigned digits = 0;
    unsigned padding = 0;
    for (; *text != '\0'; ++text) {
        if (IsSpace(*text)) continue;
        const std::size_t value = kBase64Digits.find(*text);
        if (*text == '=') {
            if (digits + padding < 2 || digits + padding > 3 || digits == 0) return false;
            ++padding;
        } else if (value == std::string_view::npos || padding != 0) {
            return false;
        } else {
            ++digits;
        }
        bits = (bits << 6) | (*text == '=' ? 0 : static_cast<std::uint32_t>(value));
        if (digits + padding == 4) {
            if (!AppendGroup(out, bits, padding)) return false;
            bits = 0;
            digits = 0;
        }
    }
    return digits == 0;
}

}  // namespace

void StringAlgorithm::PercentEncode(const IString& text, IString& encoded) {
    std::string out;
    for (const char* at = text.AsUTF8(); *at != '\0'; ++at) {
        if (IsUnreserved(*at))
            out += *at;
        else
            AppendEscape(out, *at);
    }
    AssignUtf8(encoded, out);
}

void StringAlgorithm::UriEncode(const IString& text, IString& encoded) {
    std::string out;
    for (const char* at = text.AsUTF8(); *at != '\0'; ++at) {
        const bool stands = IsUnreserved(*at) || kReserved.find(*at) != std::string_view::npos ||
                            EscapedByte(at) >= 0;
        if (stands)
            out += *at;
        else
            AppendEscape(out, *at);
    }
    AssignUtf8(encoded, out);
}

bool StringAlgorithm::PercentDecode(const IString& text, IString& decoded) {
    std::string out;
    for (const char* at = text.AsUTF8(); *at != '\0'; ++at) {
        if (*at != '%') {
            out += *at;
            continue;
        }
        const int byte = EscapedByte(at);
        if (byte <= 0) return false;
        out += static_cast<char>(byte);
        at += 2;
    }
    const std::wstring wide = ToWide(out);
    if (ToUtf8(wide) != out) return false;
    decoded.Assign(wide.c_str());
    return true;
}

void StringAlgorithm::Base64Encode(const void* data, std::uint64_t size, IString& encoded) {
    const auto* bytes = static_cast<const unsigned char*>(data);
    std::string out;
    out.reserve((size / 3 + 1) * 4);
    for (std::uint64_t i = 0; i < size; i += 3) {
        const std::uint64_t left = size - i;
        const std::uint32_t bits = (bytes[i] * 0x10000u) + (left > 1 ? bytes[i + 1] * 0x100u : 0u) +
                                   (left > 2 ? bytes[i + 2] : 0u);
        out += kBase64Digits[bits >> 18];
        out += kBase64Digits[(bits >> 12) & 63];
        out += left > 1 ? kBase64Digits[(bits >> 6) & 63] : '=';
        out += left > 2 ? kBase64Digits[bits & 63] : '=';
    }
    AssignUtf8(encoded, out);
}

bool StringAlgorithm::Base64Decode(const IString& text, void* data, std::uint64_t capacity,
                                   std::uint64_t& size) {
    std::string out;
    if (!DecodeBase64(text.AsUTF8(), out)) return false;
    if (data != nullptr && out.size() > capacity) return false;
    size = out.size();
    if (data != nullptr && !out.empty()) std::memcpy(data, out.data(), out.size());
    return true;
}

}  // namespace korvanet::platform::core
