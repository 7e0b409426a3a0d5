#include "nuo/common/string.h"

#include <bit>
#include <limits>
#include <new>

namespace nuo {
namespace {

// Eight bytes at a time up to the word that differs; its lowest differing byte decides.
static_assert(std::endian::native == std::endian::little);

std::uint64_t load_word(const char* text) noexcept {
    std::uint64_t word;
    std::memcpy(&word, text, sizeof word);
    return word;
}

/// The multiplication comes first; bytes are signed, so 0xFF changes all upper bits.
std::uint64_t hash_of(const char* text, std::uint64_t size) noexcept {
    constexpr std::uint64_t factor = 16777619;
    const std::uint64_t step = size / 10 + 1;
    std::uint64_t hash = basic_string<char>::hash_seed;
    for (std::uint64_t i = 0; i < size; i += step) {
        const auto c = static_cast<std::int64_t>(static_cast<signed char>(text[i]));
        hash = (hash * factor) ^ static_cast<std::uint64_t>(c);
    }
    return hash;
}

}  // namespace

int string_ref::compare(string_ref other) const noexcept {
    const std::uint64_t common = size_ < other.size_ ? size_ : other.size_;
    std::uint64_t i = 0;
    for (; i + 8 <= common; i += 8) {
        const std::uint64_t difference = load_word(data_ + i) ^ load_word(other.data_ + i);
        if (difference == 0) continue;
        i += static_cast<std::uint64_t>(std::countr_zero(difference)) / 8;
        break;
    }
    for (; i < common; ++i) {
        const int a = static_cast<signed char>(data_[i]);
        const int b = static_cast<signed char>(other.data_[i]);
        if (a != b) return a - b;
    }
    if (size_ == other.size_) return 0;
    return size_ < other.size_ ? -1 : 1;
}

string::block* string::allocate_block(heap& from, std::uint64_t size) {
    if (size > std::numeric_limits<std::int64_t>::max()) throw std::bad_alloc();
    void* memory = from.malloc(size + block_overhead, block_alignment, nullptr);
    return new (memory) block{1, hash_seed, size};
}

string::block* string::allocate_zero_block(heap& from, std::uint64_t size) {
    block* made = allocate_block(from, size);
    std::memset(text_of(made), 0, size);
    return made;
}

void string::free_block(heap& from, block* b) noexcept {
    from.free(b, b->size + block_overhead, block_alignment);
}

void string::finish_block(block* b) noexcept {
    char* text = text_of(b);
    text[b->size] = '\0';
    b->hash = hash_of(text, b->size);
}

string::block* string::make_block(heap& from, string_ref head, string_ref tail) {
    const std::uint64_t size = head.size() + tail.size();
    if (size == 0) return nullptr;
    block* made = allocate_block(from, size);
    char* text = text_of(made);
    if (!head.empty()) std::memcpy(text, head.data(), head.size());
    if (!tail.empty()) std::memcpy(text + head.size(), tail.data(), tail.size());
    finish_block(made);
    return made;
}

string& string::operator=(const basic_string& other) {
    if (block_ == other.block_) return *this;
    block* made = make_block(*heap_, other.ref(), string_ref());
    release();
    block_ = made;
    return *this;
}

string& string::operator=(basic_string&& other) {
    if (this == &other) return *this;
    // The block was taken from the other's heap, and must go back there.
    if (heap_ != other.heap_) return *this = static_cast<const basic_string&>(other);
    release();
    block_ = std::exchange(other.block_, nullptr);
    return *this;
}

}  // namespace nuo
