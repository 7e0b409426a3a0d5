#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace korvanet::platform::assets {

// Base of the counted objects of the asset layer: descriptors, bounds, choices and tables.
//
// The count is plain memory, since a table and all that hangs from it belong to one thread at a
// time. It starts at zero: a factory hands out an object that nobody holds yet. The count that
// falls to zero ends the object through Expire(), which a table overrides because a library may
// keep it alive without counting it.
class IntrusiveCounter {
public:
    IntrusiveCounter() = default;
    IntrusiveCounter(const IntrusiveCounter&) = delete;
    IntrusiveCounter& operator=(const IntrusiveCounter&) = delete;
    virtual ~IntrusiveCounter() = default;

    std::uint64_t ReferenceCount() const { return count_; }

    void Retain() const { ++count_; }

    // Gives up one reference. A release of an object that nobody holds does nothing.
    void Unretain() const {
        if (count_ != 0 && --count_ == 0) {
            const_cast<IntrusiveCounter*>(this)->Expire();
        }
    }

protected:
    virtual void Expire();

private:
    mutable std::uint64_t count_ = 0;
};

// Owner of one reference to an IntrusiveCounter; one word, relocatable as raw bytes.
template <class T>
class intrusive_ptr {
public:
    intrusive_ptr() noexcept = default;
    intrusive_ptr(std::nullptr_t) noexcept {}
    intrusive_ptr(T* object) noexcept : object_(object) {
        if (object_ != nullptr) {
            object_->Retain();
        }
    }
    intrusive_ptr(const intrusive_ptr& other) noexcept : intrusive_ptr(other.object_) {}
    intrusive_ptr(intrusive_ptr&& other) noexcept
        : object_(std::exchange(other.object_, nullptr)) {}
    ~intrusive_ptr() {
        if (object_ != nullptr) {
            object_->Unretain();
        }
    }

    intrusive_ptr& operator=(intrusive_ptr other) noexcept {
        swap(other);
        return *this;
    }

    void swap(intrusive_ptr& other) noexcept { std::swap(object_, other.object_); }
    void reset(T* object = nullptr) { intrusive_ptr(object).swap(*this); }

    T* get() const noexcept { return object_; }
    T& operator*() const noexcept { return *object_; }
    T* operator->() const noexcept { return object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }

    friend bool operator==(const intrusive_ptr& a, const intrusive_ptr& b) noexcept {
        return a.object_ == b.object_;
    }
    friend bool operator==(const intrusive_ptr& a, const T* b) noexcept { return a.object_ == b; }

private:
    T* object_ = nullptr;
};

}  // namespace korvanet::platform::assets
