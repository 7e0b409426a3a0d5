#include "nuo/common/raw_store.h"

#include <cstring>
#include <limits>
#include <new>

namespace nuo {
namespace {

constexpr std::uint64_t array_alignment = 1;

/// Room for `wanted` and as much again by half; a size that can't exist is refused here, where the
/// arithmetic would wrap.
std::uint64_t half_as_much_again(std::uint64_t wanted) {
    if (wanted > std::numeric_limits<std::int64_t>::max()) throw std::bad_alloc();
    return wanted + wanted / 2;
}

std::uint64_t grown_capacity(std::uint64_t capacity, std::uint64_t need) {
    const std::uint64_t doubled = capacity * 2;
    return need >= doubled ? half_as_much_again(need) : doubled;
}

byte* allocate(heap& from, std::uint64_t capacity) {
    return static_cast<byte*>(from.malloc(capacity, array_alignment, nullptr));
}

void copy_bytes(byte* target, const byte* source, std::uint64_t count) {
    if (count != 0) std::memcpy(target, source, count);
}

}  // namespace

void raw_store::release() noexcept {
    if (data != nullptr) owner->free(data, capacity, array_alignment);
    data = nullptr;
}

// The old array goes last, for the new bytes may lie in it.
byte* raw_store::insert(std::uint64_t offset, const byte* bytes, std::uint64_t count) {
    if (count > std::numeric_limits<std::int64_t>::max()) throw std::bad_alloc();
    const std::uint64_t tail = size - offset;
    if (size + count < capacity) {
        std::memmove(data + offset + count, data + offset, tail);
        if (bytes != nullptr) copy_bytes(data + offset, bytes, count);
    } else {
        const std::uint64_t grown = grown_capacity(capacity, size + count + 1);
        byte* array = allocate(*owner, grown);
        copy_bytes(array, data, offset);
        if (bytes != nullptr) copy_bytes(array + offset, bytes, count);
        copy_bytes(array + offset + count, data + offset, tail);
        release();
        data = array;
        capacity = grown;
    }
    size += count;
    return data + offset;
}

byte* raw_store::open_zero_gap(std::uint64_t offset, std::uint64_t count) {
    byte* gap = open_gap(offset, count);
    std::memset(gap, 0, count);
    return gap;
}

void raw_store::resize(std::uint64_t new_size) {
    make_room(new_size);
    if (new_size > size) std::memset(data + size, 0, new_size - size);
    size = new_size;
}

void raw_store::make_room(std::uint64_t wanted) {
    if (wanted <= capacity) return;
    const std::uint64_t grown = grown_capacity(capacity, wanted);
    byte* array = allocate(*owner, grown);
    copy_bytes(array, data, size);
    release();
    data = array;
    capacity = grown;
}

void raw_store::copy_from(const raw_store& other, std::uint64_t new_capacity) {
    byte* array = nullptr;
    if (other.size != 0) {
        array = allocate(*other.owner, new_capacity);
        copy_bytes(array, other.data, other.size);
    }
    release();
    owner = other.owner;
    data = array;
    size = other.size;
    capacity = array != nullptr ? new_capacity : 0;
}

void raw_store::swap(raw_store& other) noexcept {
    std::swap(owner, other.owner);
    std::swap(capacity, other.capacity);
    std::swap(size, other.size);
    std::swap(data, other.data);
}

}  // namespace nuo
