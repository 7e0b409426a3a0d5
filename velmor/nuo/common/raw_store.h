#pragma once

#include <cstdint>
#include <utility>

#include "nuo/common/heap.h"

namespace nuo {

using byte = unsigned char;

/// The growable array of bytes below `buffer` and `string_builder`, which share its growth rule: a
/// plain record for these two. No operation checks its positions.
class raw_store {
public:
    explicit raw_store(heap& from) noexcept : owner(&from) {}
    ~raw_store() { release(); }
    raw_store(const raw_store&) = delete;
    raw_store& operator=(const raw_store&) = delete;

    /// Opens a gap of `count` unset bytes at `offset` and returns its address.
    byte* open_gap(std::uint64_t offset, std::uint64_t count) {
        return insert(offset, nullptr, count);
    }
    /// The same, filled with `bytes`, which may lie in this array before `offset`; unset without.
    byte* insert(std::uint64_t offset, const byte* bytes, std::uint64_t count);
    /// Opens a gap of zeros.
    byte* open_zero_gap(std::uint64_t offset, std::uint64_t count);
    /// Bytes behind the old size are zero.
    void resize(std::uint64_t new_size);
    /// Makes room for `wanted` bytes, if they do not fit, by doubling or half as much again; the
    /// size in use stays.
    void make_room(std::uint64_t wanted);
    /// Takes over the heap and the bytes of `other` in an array of exactly `new_capacity` bytes,
    /// none when `other` is empty; the old array is freed through the old heap.
    void copy_from(const raw_store& other, std::uint64_t new_capacity);
    void swap(raw_store& other) noexcept;

    heap* owner;
    std::uint64_t capacity = 0;
    std::uint64_t size = 0;
    byte* data = nullptr;

private:
    void release() noexcept;
};

}  // namespace nuo
