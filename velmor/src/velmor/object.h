#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>

#include "nuo/common/exception.h"
#include "nuo/common/iterator.h"
#include "nuo/common/string.h"
#include "velmor/forward.h"
#include "velmor/type.h"
#include "velmor/type_methods.h"

namespace velmor {

/// Raised by `bind` on a value of another native class.
NUO_DECLARE_EXCEPTION(TypeMismatchException);

/// A view of a value: its type and the address of its bytes, two words, passed by value. It owns
/// nothing and keeps nothing alive. Null bytes make the invalid object.
///
/// `Data` is `void` (`Object`) or `const void` (`ConstObject`).
template <class Data>
class ObjectT {
public:
    ObjectT() = default;
    ObjectT(Type type, Data* data) : type_(type), data_(data) {}

    /// An `Object` may stand wherever a `ConstObject` is wanted.
    template <class Other, class = std::enable_if_t<std::is_const_v<Data> && std::is_void_v<Other>>>
    ObjectT(const ObjectT<Other>& other) : type_(other.type()), data_(other.data()) {}

    bool valid() const { return data_ != nullptr; }
    Type type() const { return type_; }
    Data* data() const { return data_; }

    /// Bases and members, in order. The end position has the address behind the value.
    nuo::const_range<SubObjectT<Data>, SubObjectT<Data>> members() const;
    /// The same from the last to the first.
    nuo::const_range<SubObjectT<Data>, SubObjectT<Data>> reverseMembers() const;
    /// The member of that name; the end position when there is none. Bases are reached by position.
    SubObjectT<Data> member(nuo::string_ref name) const;

    friend bool operator==(ObjectT left, ObjectT right) {
        return left.type_ == right.type_ && left.data_ == right.data_;
    }
    friend bool operator!=(ObjectT left, ObjectT right) { return !(left == right); }

private:
    Type type_;
    Data* data_ = nullptr;
};

/// A view of one base or member of a value, or (`kWhole`) of the value itself.
template <class Data>
class SubObjectT {
public:
    /// The index that stands for the enclosing value.
    static constexpr std::uint64_t kWhole = kUnknown;

    SubObjectT() = default;
    SubObjectT(Type owner, Data* data, std::uint64_t index)
        : owner_(owner), data_(data), index_(index) {}

    /// Type of the enclosing value.
    Type owner() const { return owner_; }
    /// Position in the owner's items; their number is the end position, which has no type or name.
    std::uint64_t index() const { return index_; }
    bool atEnd() const { return index_ != kWhole && index_ >= owner_.items().size(); }

    Type type() const { return index_ == kWhole ? owner_ : owner_.items()[index_].type(); }
    Data* data() const;
    ObjectT<Data> asObject() const { return ObjectT<Data>(type(), data()); }
    /// Another item of the same value.
    SubObjectT at(std::uint64_t index) const { return SubObjectT(owner_, data_, index); }
    /// The item's name. Not for `kWhole`.
    const nuo::string& name() const { return owner_.items()[index_].name(); }

private:
    Type owner_;
    Data* data_ = nullptr;
    std::uint64_t index_ = kWhole;
};

template <class Data>
inline Data* SubObjectT<Data>::data() const {
    using Byte = std::conditional_t<std::is_const_v<Data>, const std::byte, std::byte>;
    if (index_ == kWhole) return data_;
    const std::uint64_t offset = atEnd() ? owner_.payload() : owner_.items()[index_].offset();
    return static_cast<Byte*>(data_) + offset;
}

/// Steps over the items of one value. Two iterators are equal when they stand at one index.
template <class Data>
class SubObjIteratorT {
public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = SubObjectT<Data>;
    using difference_type = std::ptrdiff_t;
    using pointer = const value_type*;
    using reference = value_type;

    SubObjIteratorT() = default;
    explicit SubObjIteratorT(value_type view) : view_(view) {}

    value_type operator*() const { return view_; }
    SubObjIteratorT& operator++() { return step(1); }
    SubObjIteratorT& operator--() { return step(~std::uint64_t{0}); }

    friend bool operator==(const SubObjIteratorT& left, const SubObjIteratorT& right) {
        return left.view_.index() == right.view_.index();
    }
    friend bool operator!=(const SubObjIteratorT& left, const SubObjIteratorT& right) {
        return !(left == right);
    }

private:
    SubObjIteratorT& step(std::uint64_t by) {
        view_ = view_.at(view_.index() + by);
        return *this;
    }

    value_type view_;
};

using SubObjIterator = SubObjIteratorT<void>;
using ConstSubObjIterator = SubObjIteratorT<const void>;

template <class Data>
nuo::const_range<SubObjectT<Data>, SubObjectT<Data>> ObjectT<Data>::members() const {
    using Iterator = SubObjIteratorT<Data>;
    return nuo::make_range<SubObjectT<Data>, SubObjectT<Data>>(
        Iterator(SubObjectT<Data>(type_, data_, 0)),
        Iterator(SubObjectT<Data>(type_, data_, type_.items().size())));
}

template <class Data>
nuo::const_range<SubObjectT<Data>, SubObjectT<Data>> ObjectT<Data>::reverseMembers() const {
    using Iterator = std::reverse_iterator<SubObjIteratorT<Data>>;
    return nuo::make_range<SubObjectT<Data>, SubObjectT<Data>>(
        Iterator(SubObjIteratorT<Data>(SubObjectT<Data>(type_, data_, type_.items().size()))),
        Iterator(SubObjIteratorT<Data>(SubObjectT<Data>(type_, data_, 0))));
}

template <class Data>
SubObjectT<Data> ObjectT<Data>::member(nuo::string_ref name) const {
    const TypeItem* const item = type_.member(name);
    return SubObjectT<Data>(type_, data_, item ? item->index() : type_.items().size());
}

/// True when the values of `type` are objects of the native class `T`.
template <class T>
bool isNative(Type type) {
    return type.methods().typeinfo() == TypeInfo<T>::instance();
}

/// The native object behind a value, null when the value is of another native class.
template <class T>
T* bindOrNull(Object object) {
    return isNative<T>(object.type()) ? static_cast<T*>(object.data()) : nullptr;
}

template <class T>
const T* bindOrNull(ConstObject object) {
    return isNative<T>(object.type()) ? static_cast<const T*>(object.data()) : nullptr;
}

/// Raises `TypeMismatchException`, with no text.
[[noreturn]] void raiseTypeMismatch();

/// The native object behind a value. Raises `TypeMismatchException` when the value is of another
/// native class.
template <class T>
T* bind(Object object) {
    if (!isNative<T>(object.type())) raiseTypeMismatch();
    return static_cast<T*>(object.data());
}

template <class T>
const T* bind(ConstObject object) {
    if (!isNative<T>(object.type())) raiseTypeMismatch();
    return static_cast<const T*>(object.data());
}

}  // namespace velmor
