#include "nuo/common/string_builder.h"

#include <charconv>
#include <cstring>
#include <new>

namespace nuo {

const char* empty_text() noexcept {
    static const char text[1] = {'\0'};
    return text;
}

string_builder::string_builder(const string_builder& other) : store_(*other.store_.owner) {
    take(other);
}

string_builder::string_builder(string_builder&& other) noexcept : store_(*other.store_.owner) {
    swap(other);
}

string_builder& string_builder::operator=(const string_builder& other) {
    if (this != &other) take(other);
    return *this;
}

string_builder& string_builder::operator=(string_builder&& other) noexcept {
    swap(other);
    return *this;
}

void string_builder::take(const string_builder& other) {
    store_.copy_from(other.store_, other.size() + 1);
    terminate();
}

void string_builder::terminate() noexcept {
    if (store_.data != nullptr) store_.data[store_.size] = 0;
}

const char* string_builder::data() const noexcept {
    return store_.data != nullptr ? reinterpret_cast<const char*>(store_.data) : empty_text();
}

char* string_builder::open(const char* position, std::uint64_t count) {
    const auto offset = static_cast<std::uint64_t>(position - data());
    return reinterpret_cast<char*>(store_.open_gap(offset, count));
}

char* string_builder::insert(const char* position, string_ref text) {
    if (text.empty()) return const_cast<char*>(position);
    const auto offset = static_cast<std::uint64_t>(position - data());
    const auto* bytes = reinterpret_cast<const byte*>(text.data());
    byte* gap = store_.insert(offset, bytes, text.size());
    terminate();
    return reinterpret_cast<char*>(gap);
}

char* string_builder::insert(const char* position, char c) {
    char* gap = open(position, 1);
    *gap = c;
    terminate();
    return gap;
}

string_builder& string_builder::append(string_ref text) {
    insert(end(), text);
    return *this;
}

string_builder& string_builder::append(char c) {
    insert(end(), c);
    return *this;
}

string_builder& string_builder::append(std::uint64_t count, char c) {
    if (count != 0) std::memset(open(end(), count), c, count);
    terminate();
    return *this;
}

string_builder& string_builder::append_number(std::int64_t number) {
    char digits[24];
    const auto written = std::to_chars(digits, digits + sizeof digits, number);
    return append(string_ref(digits, written.ptr));
}

string_builder& string_builder::append_number(std::uint64_t number) {
    char digits[24];
    const auto written = std::to_chars(digits, digits + sizeof digits, number);
    return append(string_ref(digits, written.ptr));
}

void string_builder::resize(std::uint64_t size) {
    const std::uint64_t before = store_.size;
    reserve(size);
    if (size > before) std::memset(store_.data + before, 0, size - before);
    store_.size = size;
    terminate();
}

void string_builder::reserve(std::uint64_t size) {
    if (size == ~std::uint64_t{0}) throw std::bad_alloc();
    store_.make_room(size + 1);
    terminate();
}

void string_builder::clear() noexcept {
    store_.size = 0;
    terminate();
}

}  // namespace nuo
