#include "nuo/common/string_algo/utf8.h"

namespace nuo::utf8::detail {
namespace {

constexpr std::uint32_t low_six = 0x3F;
constexpr std::uint32_t continuation_mark = 0x80;

struct lead_form {
    std::uint32_t limit;  // lead bytes below it have this form
    unsigned following;
    std::uint32_t bits;  // of the lead byte
};

// 128 to 191 are taken as the lead of two bytes, on purpose.
constexpr lead_form lead_forms[] = {
    {128, 0, 0x7F}, {224, 1, 0x1F}, {240, 2, 0x0F}, {248, 3, 0x07}, {252, 4, 0x03}, {254, 5, 0x01},
};

struct unit_form {
    std::uint32_t limit;  // units below it have this form
    unsigned following;
    std::uint32_t mark;  // of the lead byte
};

constexpr unit_form unit_forms[] = {
    {0x80, 0, 0},        {0x800, 1, 0xC0},     {0x10000, 2, 0xE0},
    {0x200000, 3, 0xF0}, {0x4000000, 4, 0xF8}, {0x80000000, 5, 0xFC},
};

}  // namespace

std::uint32_t decode_one(const char*& at, const char* last) {
    const std::uint32_t lead = static_cast<unsigned char>(*at++);
    for (const lead_form& form : lead_forms) {
        if (lead >= form.limit) continue;
        std::uint32_t value = lead & form.bits;
        for (unsigned i = 0; i < form.following; ++i) {
            if (at == last) NUO_RAISE(no_enough_utf8_input);
            value = (value << 6) | (static_cast<unsigned char>(*at++) & low_six);
        }
        return value;
    }
    NUO_RAISE(invalid_utf8_code);
}

encoded encode_one(std::uint32_t unit) {
    for (const unit_form& form : unit_forms) {
        if (unit >= form.limit) continue;
        encoded result{{}, form.following + 1};
        for (unsigned i = form.following; i > 0; --i) {
            result.bytes[i] = static_cast<char>(continuation_mark | (unit & low_six));
            unit >>= 6;
        }
        result.bytes[0] = static_cast<char>(form.mark | unit);
        return result;
    }
    NUO_RAISE(unicode_out_range, "nuo::utf8::encode");
}

}  // namespace nuo::utf8::detail
