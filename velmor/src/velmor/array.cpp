#include "velmor/array.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace velmor {
namespace {

/// Where `value` lies in the buffer when it is an element of it: growing moves it.
std::ptrdiff_t offsetInside(const nuo::buffer<nuo::byte>& buffer, const void* value) {
    const auto* const at = static_cast<const nuo::byte*>(value);
    const std::less<> before;
    if (before(at, buffer.begin()) || !before(at, buffer.end())) return -1;
    return at - buffer.begin();
}

nuo::byte* step(void* data, std::uint64_t by) {
    return static_cast<nuo::byte*>(data) + by;
}

}  // namespace

Array::Position& Array::Position::operator++() {
    *this = Position(type(), step(data(), type().payload()));
    return *this;
}

Array::Position& Array::Position::operator--() {
    *this = Position(type(), static_cast<nuo::byte*>(data()) - type().payload());
    return *this;
}

Array::Array(Type type, nuo::heap* heap, nuo::ext_heap* extHeap)
    : imp_(new ArrayImp{type, nuo::buffer<nuo::byte>(heap != nullptr ? *heap : nuo::get_heap()),
                        extHeap}) {}

Array::Array(const Array& other) {
    if (other.imp_ == nullptr) return;
    Array copy(other.imp_->type, &other.imp_->buffer.get_allocator(), other.imp_->extHeap);
    if (other.imp_->type.valid() && !other.imp_->type.isPod()) {
        copy.copyElements(other);
    } else {
        copy.imp_->buffer = other.imp_->buffer;
    }
    swap(copy);
}

Array& Array::operator=(const Array& other) {
    if (imp_ == other.imp_) return *this;
    // Most arrays of a clone are empty: then there is nothing to make anew.
    if (imp_ != nullptr && other.imp_ != nullptr && other.imp_->buffer.empty() &&
        imp_->buffer.capacity() == 0 && imp_->type == other.imp_->type &&
        imp_->extHeap == other.imp_->extHeap &&
        &imp_->buffer.get_allocator() == &other.imp_->buffer.get_allocator()) {
        return *this;
    }
    Array copy(other);
    swap(copy);
    return *this;
}

Array& Array::operator=(Array&& other) noexcept {
    swap(other);
    return *this;
}

Array::~Array() {
    if (imp_ == nullptr) return;
    clear();
    delete imp_;
}

void Array::swap(Array& other) noexcept {
    std::swap(imp_, other.imp_);
}

std::uint64_t Array::size() const {
    if (empty()) return 0;
    return imp_->buffer.size() / stride();
}

Array::Position Array::begin() const {
    return empty() ? Position() : Position(imp_->type, bytes());
}

Array::Position Array::end() const {
    return empty() ? Position() : Position(imp_->type, step(bytes(), imp_->buffer.size()));
}

Object Array::operator[](std::uint64_t index) const {
    return Object(imp_->type, step(bytes(), index * stride()));
}

bool Array::fits(Type type, std::uint64_t count) {
    const std::uint64_t stride = type.payload();
    return count <= kMaxCount && stride <= kMaxBytes && count * stride <= kMaxBytes;
}

void Array::push_back(ConstObject value) {
    const std::uint64_t count = size();
    const std::ptrdiff_t inside = offsetInside(imp_->buffer, value.data());
    grow(count + 1);
    if (inside >= 0) value = ConstObject(value.type(), bytes() + inside);
    imp_->type.methods().assign(value, (*this)[count]);
}

Array::Position Array::insert(Object position, ConstObject value) {
    if (!fits(imp_->type, size() + 1)) NUO_RAISE(array_too_large);
    nuo::buffer<nuo::byte>& buffer = imp_->buffer;
    std::uint64_t index = 0;
    if (position.valid()) {
        const auto offset = static_cast<nuo::byte*>(position.data()) - buffer.begin();
        index = static_cast<std::uint64_t>(offset) / position.type().payload();
    }
    std::ptrdiff_t inside = offsetInside(buffer, value.data());
    const std::uint64_t at = index * stride();
    buffer.insert_gap(buffer.begin() + at, stride());
    const Object gap = (*this)[index];
    if (!imp_->type.isPod()) {
        try {
            imp_->type.methods().construct(gap, &buffer.get_allocator(), imp_->extHeap);
        } catch (...) {
            nuo::byte* const first = buffer.begin() + at;
            std::copy(first + stride(), buffer.end(), first);
            buffer.resize(buffer.size() - stride());
            throw;
        }
    }
    if (inside >= 0) {
        if (static_cast<std::uint64_t>(inside) >= at) inside += stride();
        value = ConstObject(value.type(), bytes() + inside);
    }
    imp_->type.methods().assign(value, gap);
    return Position(gap.type(), gap.data());
}

void Array::resize(std::uint64_t count) {
    const std::uint64_t now = size();
    if (count >= now) {
        grow(count);
    } else {
        destruct(count, now);
        imp_->buffer.resize(count * stride());
    }
}

void Array::pop_back() {
    const std::uint64_t count = size();
    destruct(count - 1, count);
    imp_->buffer.resize((count - 1) * stride());
}

Array::Position Array::erase(Object position) {
    const auto offset = static_cast<nuo::byte*>(position.data()) - bytes();
    const std::uint64_t count = size();
    const TypeMethods& methods = imp_->type.methods();
    for (std::uint64_t i = static_cast<std::uint64_t>(offset) / stride(); i + 1 < count; ++i) {
        methods.assign((*this)[i + 1], (*this)[i]);
    }
    pop_back();
    return Position(position.type(), position.data());
}

void Array::clear() {
    if (empty()) return;
    destruct(0, size());
    imp_->buffer.clear();
}

nuo::byte* Array::bytes() const {
    return imp_->buffer.begin();
}

void Array::grow(std::uint64_t count) {
    if (!fits(imp_->type, count)) NUO_RAISE(array_too_large);
    const std::uint64_t before = imp_->buffer.size();
    const std::uint64_t from = size();
    imp_->buffer.resize(count * stride());
    if (imp_->type.isPod()) return;
    try {
        construct(from, count);
    } catch (...) {
        imp_->buffer.resize(before);
        throw;
    }
}

void Array::construct(std::uint64_t from, std::uint64_t to) {
    const TypeMethods& methods = imp_->type.methods();
    std::uint64_t done = from;
    try {
        for (; done < to; ++done) {
            methods.construct((*this)[done], &imp_->buffer.get_allocator(), imp_->extHeap);
        }
    } catch (...) {
        destruct(from, done);
        throw;
    }
}

void Array::copyElements(const Array& other) {
    const TypeMethods& methods = imp_->type.methods();
    nuo::buffer<nuo::byte>& buffer = imp_->buffer;
    buffer.resize(other.imp_->buffer.size());
    const std::uint64_t count = size();
    std::uint64_t made = 0;
    try {
        while (made < count) {
            const Object element = (*this)[made];
            methods.construct(element, &buffer.get_allocator(), imp_->extHeap);
            ++made;
            methods.assign(other[made - 1], element);
        }
    } catch (...) {
        // This array goes next, and ends what stands in its buffer.
        buffer.resize(made * stride());
        throw;
    }
}

void Array::destruct(std::uint64_t from, std::uint64_t to) {
    if (imp_->type.isPod()) return;
    const TypeMethods& methods = imp_->type.methods();
    while (to-- > from)
        methods.destruct((*this)[to]);
}

int compareArrays(const Array& left, const Array& right) {
    const std::uint64_t leftSize = left.size();
    const std::uint64_t rightSize = right.size();
    for (std::uint64_t i = 0; i < std::min(leftSize, rightSize); ++i) {
        if (const int order = compare(left[i], right[i])) return order;
    }
    return leftSize < rightSize ? -1 : rightSize < leftSize ? 1 : 0;
}

}  // namespace velmor
