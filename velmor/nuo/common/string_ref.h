#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

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
        : data_(text != nullptr ? text : ""), size_(traits::length(data_)) {}
    constexpr string_ref(const char* data, std::uint64_t size) noexcept
        : data_(data), size_(size) {}
    constexpr string_ref(const char* first, const char* last) noexcept
        : data_(first), size_(static_cast<std::uint64_t>(last - first)) {}

    constexpr const char* data() const noexcept { return data_; }
    constexpr std::uint64_t size() const noexcept { return size_; }
    constexpr bool empty() const noexcept { return size_ == 0; }
    constexpr const char* begin() const noexcept { return data_; }
    constexpr const char* end() const noexcept { return data_ + size_; }
    constexpr char operator[](std::uint64_t index) const noexcept { return data_[index]; }
    constexpr char front() const noexcept { return data_[0]; }
    constexpr char back() const noexcept { return data_[size_ - 1]; }

    /// `from` may lie behind the end: the result is then empty.
    constexpr string_ref substr(std::uint64_t from, std::uint64_t count = npos) const noexcept {
        if (from > size_) from = size_;
        if (count > size_ - from) count = size_ - from;
        return {data_ + from, count};
    }
    constexpr bool starts_with(string_ref text) const noexcept {
        return substr(0, text.size_) == text;
    }
    constexpr bool ends_with(string_ref text) const noexcept {
        return text.size_ <= size_ && substr(size_ - text.size_) == text;
    }
    /// The position of the first or last occurrence, or `npos`.
    constexpr std::uint64_t find(char c, std::uint64_t from = 0) const noexcept {
        const string_ref part = substr(from);
        const char* found = traits::find(part.data_, part.size_, c);
        return found != nullptr ? static_cast<std::uint64_t>(found - data_) : npos;
    }
    constexpr std::uint64_t find(string_ref text, std::uint64_t from = 0) const noexcept {
        for (std::uint64_t at = from; at <= size_ && text.size_ <= size_ - at; ++at)
            if (substr(at, text.size_) == text) return at;
        return npos;
    }
    constexpr std::uint64_t rfind(char c) const noexcept {
        for (std::uint64_t at = size_; at > 0; --at)
            if (data_[at - 1] == c) return at - 1;
        return npos;
    }

    friend constexpr bool operator==(string_ref a, string_ref b) noexcept {
        return a.size_ == b.size_ && traits::compare(a.data_, b.data_, a.size_) == 0;
    }
    friend bool operator<(string_ref a, string_ref b) noexcept { return a.compare(b) < 0; }

    /// Below, at or above zero as this view sorts before, with or after `other`.
    int compare(string_ref other) const noexcept;

private:
    using traits = std::char_traits<char>;

    const char* data_ = "";
    std::uint64_t size_ = 0;
};

}  // namespace nuo
