#pragma once

#include <cstdint>
#include <new>
#include <type_traits>

#include "nuo/common/archive/primitives.h"
#include "nuo/common/archive/string.h"
#include "nuo/common/buffer.h"
#include "nuo/common/string.h"
#include "velmor/object.h"
#include "velmor/type_methods.h"
#include "velmor/vocabulary.h"

namespace velmor {

// number | bool | string | byte_buffer             as told in nuo/common/archive
// matrix44 | color3 | color4 | vector3 | vector4   = double...
// units_value                                      = unit:uint32 value:double
// type                                             = nothing
// All are told in docs/formats/reflective_values.md.

/// The stored form of the native class `T`. A class without a specialization stores nothing, unless
/// methods derived from `PrimitiveMethods<T>` store it.
template <class T>
struct ValueForm {
    static void read(nuo::archive::reader&, T&) {}
    static void write(nuo::archive::writer&, const T&) {}
};

/// The form of what the archives of the support library know.
template <class T>
struct ArchiveForm {
    static void read(nuo::archive::reader& reader, T& value) { reader >> value; }
    static void write(nuo::archive::writer& writer, const T& value) { writer << value; }
};

/// The form of a row of doubles: its memory.
template <class T>
struct DoublesForm {
    static_assert(std::is_trivially_copyable_v<T> && alignof(T) == alignof(double));

    static void read(nuo::archive::reader& reader, T& value) {
        nuo::archive::read_exact(reader, {&value, sizeof(T)});
    }
    static void write(nuo::archive::writer& writer, const T& value) {
        nuo::archive::write_all(writer, {&value, sizeof(T)});
    }
};

template <class T>
requires(std::is_arithmetic_v<T>) struct ValueForm<T> : ArchiveForm<T> {
};
template <>
struct ValueForm<void*> : ArchiveForm<void*> {};
template <>
struct ValueForm<nuo::string> : ArchiveForm<nuo::string> {};
template <>
struct ValueForm<nuo::buffer<nuo::byte>> : ArchiveForm<nuo::buffer<nuo::byte>> {};
template <>
struct ValueForm<Matrix44> : DoublesForm<Matrix44> {};
template <>
struct ValueForm<Color3> : DoublesForm<Color3> {};
template <>
struct ValueForm<Color4> : DoublesForm<Color4> {};
template <>
struct ValueForm<Vector3> : DoublesForm<Vector3> {};
template <>
struct ValueForm<Vector4> : DoublesForm<Vector4> {};
template <>
struct ValueForm<UnitsValue> {
    static void read(nuo::archive::reader& reader, UnitsValue& value) {
        reader >> value.unit >> value.value;
    }
    static void write(nuo::archive::writer& writer, const UnitsValue& value) {
        writer << value.unit << value.value;
    }
};

/// Found for a native class that compares; `PrimitiveMethods<T>` offers `compare` exactly then.
template <class T>
requires(std::is_arithmetic_v<T>) int compareNative(const T& left, const T& right) {
    return left < right ? -1 : right < left ? 1 : 0;
}
int compareNative(const nuo::string& left, const nuo::string& right);
/// By unsigned bytes, the shorter first.
int compareNative(const nuo::buffer<nuo::byte>& left, const nuo::buffer<nuo::byte>& right);

template <class T>
concept ComparesNatively = requires(const T& value) {
    compareNative(value, value);
};

/// Whether a native class is plain memory.
template <class T>
inline constexpr bool kIsPod = std::is_trivially_copyable_v<T>;
// A handle of a type takes part in no block copy.
template <>
inline constexpr bool kIsPod<Type> = false;

/// The methods of a type whose values are objects of the native class `T`: its constructor without
/// arguments (numbers are 0), destructor and assignment. Derive from it to bind a class whose
/// construction or form needs more.
template <class T>
class PrimitiveMethods : public TypeMethods {
public:
    void construct(Object object, nuo::heap*, nuo::ext_heap*) const override {
        ::new (object.data()) T();
    }
    void destruct(Object object) const override { native(object).~T(); }
    void assign(ConstObject source, Object destination) const override {
        native(destination) = native(source);
    }
    void deserialize(nuo::archive::reader& reader, Object object, nuo::heap*,
                     nuo::ext_heap*) const override {
        ValueForm<T>::read(reader, native(object));
    }
    void serialize(nuo::archive::writer& writer, ConstObject object) const override {
        ValueForm<T>::write(writer, native(object));
    }
    void beginLayout(std::uint64_t& payload, std::uint64_t& offset, std::uint64_t& alignment,
                     bool& pod) const override {
        payload = sizeof(T);
        offset = 0;
        alignment = alignof(T);
        pod = kIsPod<T>;
    }
    void nextLayout(const TypeItem&, std::uint64_t&, std::uint64_t&, std::uint64_t&,
                    bool&) const override {}
    const TypeInfoHandle& typeinfo() const override { return TypeInfo<T>::instance(); }
    const ExtendMethods* extendMethods() const override;

    /// The one object of this class; never freed.
    static const PrimitiveMethods& instance() {
        static const auto* const only = new PrimitiveMethods<T>;
        return *only;
    }

protected:
    static T& native(Object object) { return *static_cast<T*>(object.data()); }
    static const T& native(ConstObject object) { return *static_cast<const T*>(object.data()); }
};

template <class T>
const ExtendMethods* PrimitiveMethods<T>::extendMethods() const {
    if constexpr (ComparesNatively<T>) {
        static constexpr ExtendMethods record{[](ConstObject left, ConstObject right) {
                                                  return compareNative(native(left), native(right));
                                              },
                                              nullptr};
        return &record;
    } else {
        return nullptr;
    }
}

}  // namespace velmor
