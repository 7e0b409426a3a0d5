#pragma once

#include <memory>
#include <typeinfo>
#include <utility>

#include "nuo/common/exception.h"

namespace nuo {

NUO_DECLARE_EXCEPTION(bad_any_cast);

/// A value of any copyable type. Values live on the global heap.
class any {
public:
    class placeholder {
    public:
        virtual ~placeholder();
        virtual const std::type_info& type() const noexcept = 0;
        virtual placeholder* clone() const = 0;
    };

    template <class T>
    class holder : public placeholder {
    public:
        explicit holder(T value) : held(std::move(value)) {}
        const std::type_info& type() const noexcept override { return typeid(T); }
        placeholder* clone() const override { return new holder(held); }

        T held;
    };

    any() noexcept = default;
    template <class T>
    requires(!std::is_same_v<T, any>) explicit any(T value)
        : content_(new holder<T>(std::move(value))) {}
    any(const any& other) : content_(other.content_ ? other.content_->clone() : nullptr) {}
    any(any&&) noexcept = default;
    any& operator=(const any& other) {
        any(other).swap(*this);
        return *this;
    }
    any& operator=(any&&) noexcept = default;

    bool empty() const noexcept { return content_ == nullptr; }
    /// The record of void when empty.
    const std::type_info& type() const noexcept;
    void swap(any& other) noexcept { content_.swap(other.content_); }

private:
    template <class T>
    friend T* any_cast(any* value);

    std::unique_ptr<placeholder> content_;
};

namespace detail {
[[noreturn]] void raise_bad_any_cast();
}

/// The address of the held value. Raises `bad_any_cast` for a null pointer, an empty any and any
/// type but `T`; it never returns null.
template <class T>
T* any_cast(any* value) {
    if (value == nullptr || value->type() != typeid(T)) detail::raise_bad_any_cast();
    return &static_cast<any::holder<T>*>(value->content_.get())->held;
}

template <class T>
const T* any_cast(const any* value) {
    return any_cast<T>(const_cast<any*>(value));
}

}  // namespace nuo
