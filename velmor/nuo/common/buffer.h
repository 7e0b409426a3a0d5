#pragma once

#include <cstdint>
#include <cstring>

#include "nuo/common/raw_store.h"

namespace nuo {

/// A contiguous, growable array of bytes from one heap. Copying takes over the source's heap and
/// allocates exactly the bytes in use. No operation checks its positions.
template <class T>
class buffer {
    static_assert(sizeof(T) == 1, "a buffer counts its size and capacity in bytes");

public:
    using value_type = T;

    explicit buffer(heap& from = get_heap()) noexcept : store_(from) {}
    buffer(const T* first, const T* last, heap& from = get_heap()) : store_(from) {
        insert(begin(), first, last);
    }
    buffer(const buffer& other) : store_(*other.store_.owner) { take(other); }
    buffer(buffer&& other) noexcept : store_(*other.store_.owner) { swap(other); }
    buffer& operator=(const buffer& other) {
        if (this != &other) take(other);
        return *this;
    }
    buffer& operator=(buffer&& other) noexcept {
        swap(other);
        return *this;
    }

    void append(const T* first, const T* last) { insert(end(), first, last); }
    void append(T value) { insert(end(), value); }
    /// The range may lie in this buffer, before `position`. Returns the address of the first
    /// inserted byte.
    T* insert(const T* position, const T* first, const T* last) {
        const auto count = static_cast<std::uint64_t>(last - first);
        if (count == 0) return const_cast<T*>(position);
        const auto* bytes = reinterpret_cast<const byte*>(first);
        return reinterpret_cast<T*>(store_.insert(offset_of(position), bytes, count));
    }
    T* insert(const T* position, T value) {
        auto* const gap = reinterpret_cast<T*>(store_.open_gap(offset_of(position), 1));
        *gap = value;
        return gap;
    }
    /// Inserts `count` zero bytes.
    T* insert_gap(const T* position, std::uint64_t count) {
        if (count == 0) return const_cast<T*>(position);
        return reinterpret_cast<T*>(store_.open_zero_gap(offset_of(position), count));
    }
    /// New bytes are zero.
    void resize(std::uint64_t size) { store_.resize(size); }
    void reserve(std::uint64_t capacity) { store_.make_room(capacity); }
    /// Keeps the array.
    void clear() noexcept { store_.size = 0; }
    void swap(buffer& other) noexcept { store_.swap(other.store_); }

    T* begin() noexcept { return reinterpret_cast<T*>(store_.data); }
    T* end() noexcept { return begin() + store_.size; }
    const T* begin() const noexcept { return reinterpret_cast<const T*>(store_.data); }
    const T* end() const noexcept { return begin() + store_.size; }
    /// Null until the first allocation.
    T* data() noexcept { return begin(); }
    const T* data() const noexcept { return begin(); }
    T& operator[](std::uint64_t index) noexcept { return begin()[index]; }
    const T& operator[](std::uint64_t index) const noexcept { return begin()[index]; }
    std::uint64_t size() const noexcept { return store_.size; }
    std::uint64_t capacity() const noexcept { return store_.capacity; }
    bool empty() const noexcept { return store_.size == 0; }
    heap& get_allocator() const noexcept { return *store_.owner; }

    friend bool operator==(const buffer& a, const buffer& b) noexcept {
        return a.size() == b.size() &&
               (a.size() == 0 || std::memcmp(a.begin(), b.begin(), a.size()) == 0);
    }

private:
    std::uint64_t offset_of(const T* position) const noexcept {
        return static_cast<std::uint64_t>(position - begin());
    }
    void take(const buffer& other) { store_.copy_from(other.store_, other.size()); }

    raw_store store_;
};

}  // namespace nuo
