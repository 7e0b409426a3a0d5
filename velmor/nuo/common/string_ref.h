#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace nuo {

/// A view of text that somebody else owns: pointer and size, not always NUL-terminated. Order is
/// that of `nuo::string`: by signed bytes, so bytes above 127 sort before ASCII.
class string_ref {
public:
    using value_type = char;
    using const_iterator = const char*;
    static constexpr std::uint64_t npos = ~std::uint64_t{0};

    constexpr string_ref() noexcept = default;
    /// A null `text` is the empty view.
    constexpr string_ref(const char* text) noexcept
        : data_(text != nullptr ? text : ""), size_(std::char_traits<char>::length(data_)) {}
    constexpr string_ref(const char* data, std::uint64_t size) noexcept
        : data_(data), size_(size) {}
    constexpr string_ref(const char* first, const char* last) noexcept
        : data_(first), size_(static_cast<std::uint64_t>(last - first)) {}

    constexpr string_ref(std::string_view text) noexcept
        : data_(text.data() != nullptr ? text.data() : ""), size_(text.size()) {}

    constexpr const char* data() const noexcept { return data_; }
    constexpr std::uint64_t size() const noexcept { return size_; }
    constexpr bool empty() const noexcept { return size_ == 0; }
    constexpr const char* begin() const noexcept { return data_; }
    constexpr const char* end() const noexcept { return data_ + size_; }
    constexpr char operator[](std::uint64_t index) const noexcept { return data_[index]; }
    constexpr char front() const noexcept { return data_[0]; }
    constexpr char back() const noexcept { return data_[size_ - 1]; }

    constexpr std::string_view view() const noexcept { return {data_, size_}; }

    /// `from` may lie behind the end: the result is then empty.
    constexpr string_ref substr(std::uint64_t from, std::uint64_t count = npos) const noexcept {
        if (from > size_) from = size_;
        if (count > size_ - from) count = size_ - from;
        return {data_ + from, count};
    }
    constexpr bool starts_with(string_ref text) const noexcept {
        return view().starts_with(text.view());
    }
    constexpr bool ends_with(string_ref text) const noexcept {
        return view().ends_with(text.view());
    }
    /// The position of the first or last occurrence, or `npos`.
    constexpr std::uint64_t find(char c, std::uint64_t from = 0) const noexcept {
        return view().find(c, from);
    }
    constexpr std::uint64_t find(string_ref text, std::uint64_t from = 0) const noexcept {
        return view().find(text.view(), from);
    }
    constexpr std::uint64_t rfind(char c) const noexcept { return view().rfind(c); }

    friend constexpr bool operator==(string_ref a, string_ref b) noexcept {
        return a.view() == b.view();
    }
    friend bool operator<(string_ref a, string_ref b) noexcept { return a.compare(b) < 0; }

    /// Below, at or above zero as this view sorts before, with or after `other`.
    int compare(string_ref other) const noexcept;

private:
    const char* data_ = "";
    std::uint64_t size_ = 0;
};

}  // namespace nuo
