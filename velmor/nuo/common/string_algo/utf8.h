#pragma once

#include <cstdint>
#include <utility>

#include "nuo/common/exception.h"
#include "nuo/common/string_ref.h"

namespace nuo::utf8 {

NUO_DECLARE_EXCEPTION(invalid_utf8_code);
NUO_DECLARE_EXCEPTION(no_enough_utf8_input);
NUO_DECLARE_EXCEPTION(unicode_out_range);

namespace detail {

/// The value at `at`, which moves behind it. Raises `invalid_utf8_code` for the bytes 254 and 255,
/// `no_enough_utf8_input` when the range ends within the sequence.
std::uint32_t decode_one(const char*& at, const char* last);

struct encoded {
    char bytes[6];
    unsigned size;
};
/// Raises `unicode_out_range` from 0x80000000 up.
encoded encode_one(std::uint32_t unit);

}  // namespace detail

/// Appends one 16-bit unit for each sequence to the output iterator and returns the positions
/// reached in both. This is no validating decoder: it reads the historic forms of up to six bytes,
/// takes 128 to 191 as the lead of two bytes, does not check continuation bytes, and drops the bits
/// above the sixteenth. What was written before a failure stays.
template <class Output>
std::pair<const char*, Output> decode(string_ref range, Output output) {
    const char* at = range.begin();
    while (at != range.end()) {
        *output = static_cast<char16_t>(detail::decode_one(at, range.end()) & 0xFFFF);
        ++output;
    }
    return {at, output};
}

/// Appends the bytes of each unit to the output iterator and returns the positions reached in both.
/// Units have up to 31 bits; a surrogate is encoded by itself as three bytes.
template <class Input, class Output>
std::pair<Input, Output> encode(Input first, Input last, Output output) {
    for (; first != last; ++first) {
        const detail::encoded unit = detail::encode_one(static_cast<std::uint32_t>(*first));
        for (unsigned i = 0; i < unit.size; ++i) {
            *output = unit.bytes[i];
            ++output;
        }
    }
    return {first, output};
}

template <class Range, class Output>
auto encode(const Range& range, Output output) {
    return encode(range.begin(), range.end(), output);
}

}  // namespace nuo::utf8
