#include "nuo/common/string_algo/number.h"

#include <locale.h>

#include <charconv>
#include <cmath>
#include <cstdlib>

namespace nuo {
namespace {

bool is_space(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
bool is_digit(char c) {
    return c >= '0' && c <= '9';
}
bool is_sign(char c) {
    return c == '+' || c == '-';
}

const char* skip_space(string_ref text) {
    const char* at = text.begin();
    while (at != text.end() && is_space(*at))
        ++at;
    return at;
}

const char* skip_digits(const char* at, const char* end) {
    while (at != end && is_digit(*at))
        ++at;
    return at;
}

/// The sign and the digits behind leading white space, as they stand.
string_ref integer_token(string_ref text) {
    const char* first = skip_space(text);
    const char* at = first;
    if (at != text.end() && is_sign(*at)) ++at;
    return {first, skip_digits(at, text.end())};
}

/// What an input stream gathers for a floating number before it converts it: an exponent mark is
/// taken in once a digit came, even when no digits follow it.
string_ref floating_token(string_ref text) {
    const char* first = skip_space(text);
    const char* end = text.end();
    const char* at = first;
    if (at != end && is_sign(*at)) ++at;
    const char* whole = at;
    at = skip_digits(at, end);
    bool digits = at != whole;
    if (at != end && *at == '.') {
        const char* fraction = ++at;
        at = skip_digits(at, end);
        digits = digits || at != fraction;
    }
    if (digits && at != end && (*at == 'e' || *at == 'E')) {
        ++at;
        if (at != end && is_sign(*at)) ++at;
        at = skip_digits(at, end);
    }
    return {first, at};
}

string_ref without_plus(string_ref token) {
    return !token.empty() && token.front() == '+' ? token.substr(1) : token;
}

template <class Number>
std::optional<Number> convert_integer(string_ref token) {
    const string_ref digits = without_plus(token);
    Number value{};
    const auto [end, failure] = std::from_chars(digits.begin(), digits.end(), value);
    if (failure != std::errc{} || end != digits.end()) return std::nullopt;
    return value;
}

/// A minus before an unsigned number wraps round, as an input stream has it.
template <class Number>
std::optional<Number> convert_unsigned(string_ref token) {
    const bool negative = !token.empty() && token.front() == '-';
    auto value = convert_integer<Number>(negative ? token.substr(1) : token);
    if (value && negative) *value = static_cast<Number>(Number{0} - *value);
    return value;
}

/// For numbers that from_chars calls out of range: the tiny ones are numbers still.
std::optional<double> convert_extreme(string_ref token) {
    static const locale_t classic = ::newlocale(LC_ALL_MASK, "C", locale_t{});
    const double value = ::strtod_l(string(token).c_str(), nullptr, classic);
    if (std::isinf(value)) return std::nullopt;
    return value;
}

std::optional<double> convert_floating(string_ref token) {
    const string_ref digits = without_plus(token);
    double value = 0;
    const auto [end, failure] = std::from_chars(digits.begin(), digits.end(), value);
    if (end != digits.end()) return std::nullopt;
    if (failure == std::errc::result_out_of_range) return convert_extreme(digits);
    if (failure != std::errc{}) return std::nullopt;
    return value;
}

template <class Number>
string integer_text(Number number) {
    string_builder text;
    text.append_number(number);
    return string(text);
}

}  // namespace

string to_text(std::int64_t number) {
    return integer_text(number);
}
string to_text(std::uint64_t number) {
    return integer_text(number);
}

void append_text(string_builder& target, double number) {
    constexpr int stream_precision = 6;
    char digits[32];
    char* const end = digits + sizeof digits;
    auto written = std::to_chars(digits, end, number, std::chars_format::general, stream_precision);
    const auto back = convert_floating(string_ref(digits, written.ptr));
    if (std::isfinite(number) && back != number) written = std::to_chars(digits, end, number);
    target.append(string_ref(digits, written.ptr));
}

string to_text(double number) {
    string_builder text;
    append_text(text, number);
    return string(text);
}

std::optional<std::int32_t> parse_int32(string_ref text) {
    return convert_integer<std::int32_t>(integer_token(text));
}
std::optional<std::uint32_t> parse_uint32(string_ref text) {
    return convert_unsigned<std::uint32_t>(integer_token(text));
}
std::optional<std::int64_t> parse_int64(string_ref text) {
    return convert_integer<std::int64_t>(integer_token(text));
}
std::optional<std::uint64_t> parse_uint64(string_ref text) {
    return convert_unsigned<std::uint64_t>(integer_token(text));
}
std::optional<double> parse_double(string_ref text) {
    return convert_floating(floating_token(text));
}

std::optional<std::int64_t> take_int64(string_ref& text) {
    const string_ref token = integer_token(text);
    text = string_ref(token.end(), text.end());
    return convert_integer<std::int64_t>(token);
}

std::optional<double> take_double(string_ref& text) {
    const string_ref token = floating_token(text);
    text = string_ref(token.end(), text.end());
    return convert_floating(token);
}

}  // namespace nuo
