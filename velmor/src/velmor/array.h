#pragma once

#include <cstdint>

#include "nuo/common/buffer.h"
#include "nuo/common/exception.h"
#include "nuo/common/heap.h"
#include "velmor/forward.h"
#include "velmor/object.h"

namespace velmor {

/// Raised when an array is to grow beyond what an array may hold.
NUO_DECLARE_EXCEPTION(array_too_large);

/// What an `Array` points to.
struct ArrayImp {
    Type type;
    /// The elements side by side, with a stride of the type's payload.
    nuo::buffer<nuo::byte> buffer;
    /// Passed on to the construction of elements.
    nuo::ext_heap* extHeap = nullptr;
};

/// A growable row of values of one type: a value of one pointer, null while unbound. It owns its
/// elements; copying copies them.
///
/// Elements are views (`Object`) into the row and end with the next change of its size. Indices,
/// positions and the types of incoming values are not checked. Rows of pod elements call no
/// per-element operation.
class Array {
public:
    static constexpr std::uint64_t kMaxCount = std::uint64_t{1} << 32;
    static constexpr std::uint64_t kMaxBytes = std::uint64_t{1} << 31;

    /// A view of one element that steps by the size of its type.
    class Position : public Object {
    public:
        Position() = default;
        Position(Type type, void* data) : Object(type, data) {}

        Object operator*() const { return *this; }
        Position& operator++();
        Position& operator--();
    };

    /// An unbound array.
    Array() = default;
    /// An empty array of elements of `type`. A null heap is the default one.
    Array(Type type, nuo::heap* heap, nuo::ext_heap* extHeap);
    Array(const Array& other);
    Array(Array&& other) noexcept : imp_(other.imp_) { other.imp_ = nullptr; }
    Array& operator=(const Array& other);
    Array& operator=(Array&& other) noexcept;
    ~Array();

    void swap(Array& other) noexcept;

    bool bound() const { return imp_ != nullptr; }
    /// The element type; invalid while unbound.
    Type type() const { return imp_ ? imp_->type : Type(); }

    std::uint64_t size() const;
    bool empty() const { return imp_ == nullptr || imp_->buffer.size() == 0; }
    /// Bytes allocated.
    std::uint64_t capacity() const { return imp_ ? imp_->buffer.capacity() : 0; }

    /// The null position in an empty or unbound array.
    Position begin() const;
    Position end() const;
    Object front() const { return (*this)[0]; }
    Object back() const { return (*this)[size() - 1]; }
    Object operator[](std::uint64_t index) const;

    /// Whether `count` elements of `type` are within what an array may hold.
    static bool fits(Type type, std::uint64_t count);

    /// The growing operations raise `array_too_large` and leave the array as it was when the wanted
    /// size does not fit. `value` may be an element of this array.
    void push_back(ConstObject value);
    /// Gives the position of the new element.
    Position insert(Object position, ConstObject value);
    void resize(std::uint64_t count);

    void pop_back();
    /// Moves the later elements forward by assignment; gives the position.
    Position erase(Object position);
    /// Ends the elements from the last to the first. The array stays bound and keeps its bytes.
    void clear();

private:
    nuo::byte* bytes() const;
    std::uint64_t stride() const { return imp_->type.payload(); }
    void grow(std::uint64_t count);
    void construct(std::uint64_t from, std::uint64_t to);
    /// Makes the elements of an empty array those of `other`, which are of the same type.
    void copyElements(const Array& other);
    void destruct(std::uint64_t from, std::uint64_t to);

    ArrayImp* imp_ = nullptr;
};

/// Lexicographic by the elements; elements that do not compare are equal to each other.
int compareArrays(const Array& left, const Array& right);

}  // namespace velmor
