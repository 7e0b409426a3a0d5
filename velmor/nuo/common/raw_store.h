#pragma once

#include <cstdint>
#include <utility>

#include "nuo/common/heap.h"

namespace nuo {

using byte = unsigned char;

/// The growable array of bytes below `buffer` and `string_builder`, which share its growth rule.
/// No operation checks its positions.
class raw_store {
public:
    explicit raw_store(heap& from) noexcept : heap_(&from) {}
    ~raw_store() { release(); }
    raw_store(const raw_store&) = delete;
    raw_store& operator=(const raw_store&) = delete;

    /// Opens a gap of `count` unset bytes at `offset` and returns its address.
    byte* open_gap(std::uint64_t offset, std::uint64_t count);
    /// Makes room for `size` bytes by the rule of `resize`; the size in use stays.
    void make_room(std::uint64_t size);
    /// Allocates exactly `capacity` bytes, of which `size` are copied from `data`; the old array is
    /// freed through the old heap.
    void copy_from(heap& from, const byte* data, std::uint64_t size, std::uint64_t capacity);
    void swap(raw_store& other) noexcept;

    heap* heap_;
    std::uint64_t capacity_ = 0;
    std::uint64_t size_ = 0;
    byte* data_ = nullptr;

private:
    void release() noexcept;
    void move_to(std::uint64_t capacity, std::uint64_t head, std::uint64_t gap);
};

}  // namespace nuo
