#pragma once

#include <concepts>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

#include "nuo/common/heap.h"
#include "nuo/common/string_builder.h"
#include "nuo/common/string_ref.h"

namespace nuo {

template <class Char>
class basic_string;

/// The string of the whole system: immutable text in a block that copies share, with its hash.
/// Normally UTF-8; nothing checks the encoding. The empty string has no block.
///
/// Copy construction shares the block and keeps the source's heap. Assignment makes a new block in
/// this string's own heap, unless both hold the same block already. Moving shares nothing: it hands
/// the block over. The counts are plain memory: strings that share a block belong to one thread.
template <>
class basic_string<char> {
public:
    using value_type = char;
    using const_iterator = const char*;

    /// The hash of the empty string, and the start of every other one.
    static constexpr std::uint64_t hash_seed = 2166136261;

    basic_string() noexcept : heap_(&get_heap()) {}
    explicit basic_string(heap& from) noexcept : heap_(&from) {}
    basic_string(const char* text, heap& from = get_heap())
        : basic_string(string_ref(text), from) {}
    basic_string(string_ref text, heap& from = get_heap())
        : heap_(&from), block_(make_block(from, text, string_ref())) {}
    basic_string(const string_builder& text, heap& from = get_heap())
        : basic_string(string_ref(text), from) {}
    /// `head` and `tail` joined, in one allocation. A pair of pointers is one range through
    /// `string_ref(first, last)`: taken here, two literals would be read as a range and not joined.
    basic_string(string_ref head, string_ref tail, heap& from = get_heap())
        : heap_(&from), block_(make_block(from, head, tail)) {}
    basic_string(const basic_string& other) noexcept : heap_(other.heap_), block_(other.block_) {
        if (block_ != nullptr) ++block_->count;
    }
    basic_string(basic_string&& other) noexcept
        : heap_(other.heap_), block_(std::exchange(other.block_, nullptr)) {}
    ~basic_string() { release(); }

    basic_string& operator=(const basic_string& other);
    basic_string& operator=(basic_string&& other);

    /// Makes a string of `size` bytes that `fill(char*)` writes; the bytes are zero before. When
    /// `fill` raises, the block is freed.
    template <class Fill>
    static basic_string filled(std::uint64_t size, Fill&& fill, heap& from = get_heap());

    /// Never null, always NUL-terminated.
    const char* data() const noexcept { return block_ != nullptr ? text_of(block_) : empty_text(); }
    const char* c_str() const noexcept { return data(); }
    std::uint64_t size() const noexcept { return block_ != nullptr ? block_->size : 0; }
    std::uint64_t hash() const noexcept { return block_ != nullptr ? block_->hash : hash_seed; }
    bool empty() const noexcept { return block_ == nullptr; }
    const char* begin() const noexcept { return data(); }
    const char* end() const noexcept { return data() + size(); }
    char operator[](std::uint64_t index) const noexcept { return data()[index]; }
    string_ref ref() const noexcept { return {data(), size()}; }
    operator string_ref() const noexcept { return ref(); }
    heap& get_allocator() const noexcept { return *heap_; }
    /// How many strings share the block; 0 for the empty string.
    std::uint64_t use_count() const noexcept { return block_ != nullptr ? block_->count : 0; }
    /// Releases the block; the heap stays.
    void clear() noexcept { release(); }
    void swap(basic_string& other) noexcept {
        std::swap(heap_, other.heap_);
        std::swap(block_, other.block_);
    }

    friend bool operator==(const basic_string& a, const basic_string& b) noexcept {
        if (a.block_ == b.block_) return true;
        if (a.hash() != b.hash()) return false;
        return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size()) == 0;
    }
    friend bool operator<(const basic_string& a, const basic_string& b) noexcept {
        return a.block_ != b.block_ && a.ref().compare(b.ref()) < 0;
    }
    /// Literals and views are compared in place: none of these makes a string.
    template <class Text>
    requires(std::convertible_to<const Text&, string_ref> &&
             !std::derived_from<Text, basic_string>) friend bool
    operator==(const basic_string& a, const Text& b) noexcept {
        return a.ref() == string_ref(b);
    }
    template <class Text>
    requires(std::convertible_to<const Text&, string_ref> &&
             !std::derived_from<Text, basic_string>) friend bool
    operator<(const basic_string& a, const Text& b) noexcept {
        return a.ref() < string_ref(b);
    }
    template <class Text>
    requires(std::convertible_to<const Text&, string_ref> &&
             !std::derived_from<Text, basic_string>) friend bool
    operator<(const Text& a, const basic_string& b) noexcept {
        return string_ref(a) < b.ref();
    }

private:
    /// The text and its NUL stand behind the three fields.
    struct block {
        std::uint64_t count;
        std::uint64_t hash;
        std::uint64_t size;
    };
    static constexpr std::uint64_t block_overhead = 32;
    static constexpr std::uint64_t block_alignment = 8;

    static char* text_of(block* b) noexcept { return reinterpret_cast<char*>(b + 1); }
    static block* allocate_block(heap& from, std::uint64_t size);
    static block* allocate_zero_block(heap& from, std::uint64_t size);
    static void free_block(heap& from, block* b) noexcept;
    static void finish_block(block* b) noexcept;
    static block* make_block(heap& from, string_ref head, string_ref tail);
    void release() noexcept {
        if (block_ != nullptr && --block_->count == 0) free_block(*heap_, block_);
        block_ = nullptr;
    }

    heap* heap_;
    block* block_ = nullptr;
};

using string = basic_string<char>;

static_assert(sizeof(string) == 16);

template <class Fill>
string string::filled(std::uint64_t size, Fill&& fill, heap& from) {
    string result(from);
    if (size == 0) return result;
    block* made = allocate_zero_block(from, size);
    try {
        fill(text_of(made));
    } catch (...) {
        free_block(from, made);
        throw;
    }
    finish_block(made);
    result.block_ = made;
    return result;
}

/// The order of every map keyed by string. It is transparent: `find`, `lower_bound` and the like
/// take a `string_ref` or a literal and make no string.
struct string_less {
    using is_transparent = void;

    bool operator()(const string& a, const string& b) const noexcept { return a < b; }
    bool operator()(const string& a, string_ref b) const noexcept { return a.ref() < b; }
    bool operator()(string_ref a, const string& b) const noexcept { return a < b.ref(); }
    bool operator()(string_ref a, string_ref b) const noexcept { return a < b; }
    bool operator()(const string& a, const char* b) const noexcept { return a.ref() < b; }
    bool operator()(const char* a, const string& b) const noexcept {
        return string_ref(a) < b.ref();
    }
};

}  // namespace nuo
