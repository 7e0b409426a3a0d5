#pragma once

#include <typeinfo>

namespace velmor {

/// Identifies the native class behind a type. Two tags are equal when they are one object or of
/// one dynamic class, so that a second static of the same tag in another module still matches.
class TypeInfoHandle {
public:
    virtual bool equal_to(const TypeInfoHandle& other) const = 0;
    virtual ~TypeInfoHandle();

    friend bool operator==(const TypeInfoHandle& left, const TypeInfoHandle& right) {
        return &left == &right || left.equal_to(right);
    }
    friend bool operator!=(const TypeInfoHandle& left, const TypeInfoHandle& right) {
        return !(left == right);
    }
};

/// The tag of the native class `T`; `TypeInfo<void>` stands for every type that is a record of its
/// items and has no native class.
template <class T>
class TypeInfo final : public TypeInfoHandle {
public:
    bool equal_to(const TypeInfoHandle& other) const override {
        return typeid(other) == typeid(TypeInfo<T>);
    }

    /// The one object of this tag. Never freed, so that it outlives every static that refers to it.
    static const TypeInfo& instance() {
        static const auto* const only = new TypeInfo<T>;
        return *only;
    }
};

}  // namespace velmor
