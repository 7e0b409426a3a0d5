#pragma once

#include <cstdint>
#include <optional>

#include "nuo/common/string.h"

// Numbers as text, always in the classic locale, whatever locale the process has set.

namespace nuo {

string to_text(std::int64_t number);
string to_text(std::uint64_t number);
inline string to_text(int number) {
    return to_text(static_cast<std::int64_t>(number));
}
inline string to_text(unsigned number) {
    return to_text(static_cast<std::uint64_t>(number));
}

/// Six significant digits, as an output stream writes by default, where these read back as the
/// same number; else the shortest form that does.
string to_text(double number);

void append_text(string_builder& target, double number);

/// These accept what an input stream extracts: leading white space is skipped, a sign may stand in
/// front, reading stops at the first character that can't belong to the number, and what follows
/// is ignored. Nothing is returned when there is no number, or when it is out of range.
std::optional<std::int32_t> parse_int32(string_ref text);
std::optional<std::uint32_t> parse_uint32(string_ref text);
std::optional<std::int64_t> parse_int64(string_ref text);
std::optional<std::uint64_t> parse_uint64(string_ref text);
std::optional<double> parse_double(string_ref text);

/// How far the last number reached: the same as above, and `text` moves behind the number.
std::optional<std::int64_t> take_int64(string_ref& text);
std::optional<double> take_double(string_ref& text);

}  // namespace nuo
