#include "assets/serialization/io/xmlescape.h"

#include <cstdint>

namespace korvanet::platform::assets {
namespace {

// Empty for characters that stand for themselves.
nuo::string_ref EntityOf(char c, XmlPlace place) {
    switch (c) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        case '\'':
            return "&apos;";
        case '\r':
            return "&#13;";
        case '\n':
            return place == XmlPlace::kAttribute ? "&#10;" : "";
        case '\t':
            return place == XmlPlace::kAttribute ? "&#9;" : "";
        default:
            return {};
    }
}

std::uint64_t SequenceLength(unsigned char lead) {
    if (lead < 0x80) {
        return 1;
    }
    // The leads 0xC0 and 0xC1 would only tell what one byte can.
    const bool is_lead = lead >= 0xC2 && lead < 0xF5;
    return !is_lead ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

bool IsXmlCharacter(std::uint32_t value, std::uint64_t length) {
    constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool is_surrogate = value >= 0xD800 && value <= 0xDFFF;
    const bool is_control = value < 0x20 && value != '\t' && value != '\n' && value != '\r';
    return value >= kLeast[length] && value <= 0x10FFFF && value != 0xFFFE && value != 0xFFFF &&
           !is_surrogate && !is_control;
}

// The bytes of the character at `at`; 0 for what no document can hold.
std::uint64_t CharacterLength(const char* at, const char* last) {
    const auto lead = static_cast<unsigned char>(*at);
    const std::uint64_t length = SequenceLength(lead);
    if (length == 0 || static_cast<std::uint64_t>(last - at) < length) {
        return 0;
    }
    std::uint32_t value = length == 1 ? lead : lead & (0x7FU >> length);
    for (std::uint64_t i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(at[i]);
        if ((next & 0xC0) != 0x80) {
            return 0;
        }
        value = value << 6 | (next & 0x3FU);
    }
    return IsXmlCharacter(value, length) ? length : 0;
}

}  // namespace

void AppendEscapedXml(nuo::string_builder& out, nuo::string_ref text, XmlPlace place) {
    const char* plain = text.begin();
    for (const char* at = text.begin(); at != text.end(); ++at) {
        const nuo::string_ref entity = EntityOf(*at, place);
        if (!entity.empty()) {
            out.append(nuo::string_ref(plain, at)).append(entity);
            plain = at + 1;
        }
    }
    out.append(nuo::string_ref(plain, text.end()));
}

bool IsXmlText(nuo::string_ref text) {
    for (const char* at = text.begin(); at != text.end();) {
        const std::uint64_t length = CharacterLength(at, text.end());
        if (length == 0) {
            return false;
        }
        at += length;
    }
    return true;
}

}  // namespace korvanet::platform::assets
