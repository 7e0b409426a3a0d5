// Decoding of any bytes, and that what was decoded encodes to bytes which decode to the same. The
// input is also taken as 32-bit units for the encoder.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

#include "nuo/common/string_algo/utf8.h"

namespace {

std::u16string Decoded(nuo::string_ref text) {
    std::u16string units;
    nuo::utf8::decode(text, std::back_inserter(units));
    return units;
}

void RoundTrip(nuo::string_ref text) {
    try {
        const std::u16string units = Decoded(text);
        std::string bytes;
        nuo::utf8::encode(units, std::back_inserter(bytes));
        if (Decoded(nuo::string_ref(bytes.data(), bytes.size())) != units) std::abort();
    } catch (const nuo::utf8::invalid_utf8_code&) {
    } catch (const nuo::utf8::no_enough_utf8_input&) {
    }
}

void Encode(const std::uint8_t* data, std::size_t size) {
    std::vector<std::uint32_t> units(size / sizeof(std::uint32_t));
    if (units.empty()) return;
    std::memcpy(units.data(), data, units.size() * sizeof(std::uint32_t));
    std::string bytes;
    try {
        nuo::utf8::encode(units, std::back_inserter(bytes));
    } catch (const nuo::utf8::unicode_out_range&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    RoundTrip(nuo::string_ref(reinterpret_cast<const char*>(data), size));
    Encode(data, size);
    return 0;
}
