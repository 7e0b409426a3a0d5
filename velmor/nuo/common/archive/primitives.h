#pragma once

#include <bit>
#include <concepts>
#include <cstdint>
#include <type_traits>

#include "nuo/common/iarchive.h"

namespace nuo::archive {

// Stored numbers are the bytes of the value, first byte first; see docs/formats/primitive_forms.md.
static_assert(std::endian::native == std::endian::little,
              "stored numbers are little-endian and written as they lie in memory");

/// Reads until the range is full or the data ends; returns the address behind the last byte.
byte* read_some(reader& in, byte_range range);
/// Fills the range or raises `read_failed`; the bytes that were there are consumed.
void read_exact(reader& in, byte_range range);
void write_all(writer& out, const_byte_range range);

/// A value whose stored form is its bytes. `bool` has an operator of its own; `long double` and
/// wide characters are never stored.
template <class T>
concept primitive = std::is_pointer_v<T> || std::same_as<T, float> || std::same_as<T, double> ||
    (std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, wchar_t> && sizeof(T) <= 8);

/// Raises `read_failed` when the data ends within the value.
template <primitive T>
reader& operator>>(reader& in, T& value) {
    read_exact(in, {&value, sizeof(T)});
    return in;
}

template <primitive T>
writer& operator<<(writer& out, const T& value) {
    write_all(out, {&value, sizeof(T)});
    return out;
}

/// Any byte but 0 reads as true; 0 and 1 are written.
reader& operator>>(reader& in, bool& value);

template <class T>
requires(std::same_as<T, bool>) writer& operator<<(writer& out, const T& value) {
    return out << static_cast<std::uint8_t>(value ? 1 : 0);
}

/// `const auto count = read_value<std::uint32_t>(in);`
template <class T>
T read_value(reader& in) {
    T value{};
    in >> value;
    return value;
}

}  // namespace nuo::archive
