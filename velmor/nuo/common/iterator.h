#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace nuo {

/// Describes the elements of an `IteratorT`. With the default `Reference` an element that the
/// wrapped iterator makes on the fly is stored in the iterator and lives until it moves; with
/// `Reference` = `T` elements are handed out by value and nothing is stored.
template <class T, class Reference = const T&>
struct const_itr_traits {
    using value_type = T;
    using reference = Reference;
};

/// What a wrapped iterator can do. Two implementations that meet in `equal_to` or `swap` wrap the
/// same class.
template <class Traits>
class IteratorImpBase {
public:
    virtual typename Traits::reference current() = 0;
    virtual void next() = 0;
    /// A forward-only implementation does nothing.
    virtual void previous() = 0;
    /// Constructs a copy in `storage` and returns it; null for a null `storage`.
    virtual IteratorImpBase* clone(void* storage) const = 0;
    /// Runs the destructor without freeing.
    virtual void destroy() = 0;
    virtual bool equal_to(const IteratorImpBase& other) const = 0;
    virtual void swap(IteratorImpBase& other) = 0;
    virtual ~IteratorImpBase() = default;
    /// How many bytes `clone` needs.
    virtual std::size_t storage_size() const = 0;
};

namespace detail {

struct no_stored_value {};

template <class Traits, class Imp>
inline constexpr bool stores_value = std::is_reference_v<typename Traits::reference> &&
                                     !std::is_reference_v<decltype(*std::declval<Imp&>())>;

}  // namespace detail

template <class Traits, class Imp>
class IteratorImp final : public IteratorImpBase<Traits> {
    using base = IteratorImpBase<Traits>;
    static constexpr bool stores = detail::stores_value<Traits, Imp>;
    using stored = std::conditional_t<stores, typename Traits::value_type, detail::no_stored_value>;

public:
    explicit IteratorImp(const Imp& imp) : imp_(imp) {}

    typename Traits::reference current() override {
        if constexpr (stores) {
            value_ = *imp_;
            return value_;
        } else {
            return *imp_;
        }
    }
    void next() override { ++imp_; }
    void previous() override {
        if constexpr (requires(Imp & i) { --i; }) --imp_;
    }
    base* clone(void* storage) const override {
        return storage != nullptr ? new (storage) IteratorImp(*this) : nullptr;
    }
    void destroy() override { this->~IteratorImp(); }
    bool equal_to(const base& other) const override {
        return imp_ == static_cast<const IteratorImp&>(other).imp_;
    }
    void swap(base& other) override {
        using std::swap;
        auto& same = static_cast<IteratorImp&>(other);
        swap(imp_, same.imp_);
        swap(value_, same.value_);
    }
    std::size_t storage_size() const override { return sizeof(IteratorImp); }

private:
    Imp imp_;
    [[no_unique_address]] stored value_{};
};

/// Any iterator behind one interface. Small ones live in the 32 bytes of the value itself, so that
/// walking a map allocates nothing; larger ones live on the global heap. A default-made iterator
/// may only be assigned, destroyed and compared with another one.
template <class Traits>
class IteratorT {
public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = typename Traits::value_type;
    using reference = typename Traits::reference;
    using difference_type = std::ptrdiff_t;
    class arrow {
    public:
        explicit arrow(value_type value) : value_(std::move(value)) {}
        const value_type* operator->() const { return &value_; }

    private:
        value_type value_;
    };
    using pointer =
        std::conditional_t<std::is_reference_v<reference>, std::add_pointer_t<reference>, arrow>;

    IteratorT() noexcept = default;
    template <class Imp>
    requires(!std::is_same_v<Imp, IteratorT>) explicit IteratorT(const Imp& iterator) {
        using imp_type = IteratorImp<Traits, Imp>;
        if constexpr (sizeof(imp_type) <= inline_size && alignof(imp_type) <= alignof(void*))
            new (storage_) imp_type(iterator);
        else
            outer_ = new imp_type(iterator);
    }
    IteratorT(const IteratorT& other) { copy(other); }
    IteratorT& operator=(const IteratorT& other) {
        if (this != &other) {
            reset();
            copy(other);
        }
        return *this;
    }
    ~IteratorT() { reset(); }

    reference operator*() const { return imp()->current(); }
    pointer operator->() const {
        if constexpr (std::is_reference_v<reference>)
            return &imp()->current();
        else
            return arrow(imp()->current());
    }
    IteratorT& operator++() {
        imp()->next();
        return *this;
    }
    IteratorT operator++(int) {
        IteratorT before(*this);
        ++*this;
        return before;
    }
    IteratorT& operator--() {
        imp()->previous();
        return *this;
    }
    IteratorT operator--(int) {
        IteratorT before(*this);
        --*this;
        return before;
    }
    friend bool operator==(const IteratorT& a, const IteratorT& b) {
        const auto* left = a.imp();
        const auto* right = b.imp();
        if (left == nullptr || right == nullptr) return left == right;
        return left->equal_to(*right);
    }
    void swap(IteratorT& other) {
        if (imp() != nullptr && other.imp() != nullptr)
            imp()->swap(*other.imp());
        else
            std::swap(*this, other);
    }
    bool valid() const noexcept { return imp() != nullptr; }

private:
    using imp_base = IteratorImpBase<Traits>;
    static constexpr std::size_t inline_size = 32;

    bool is_inline() const noexcept { return storage_[0] != nullptr; }
    imp_base* imp() const noexcept {
        // The first word of the storage is the virtual table of an implementation built there.
        return is_inline() ? std::launder(reinterpret_cast<imp_base*>(const_cast<void**>(storage_)))
                           : outer_;
    }
    void copy(const IteratorT& other) {
        if (other.is_inline()) {
            other.imp()->clone(storage_);
        } else if (other.outer_ != nullptr) {
            void* memory = ::operator new(other.outer_->storage_size());
            try {
                outer_ = other.outer_->clone(memory);
            } catch (...) {
                ::operator delete(memory);
                throw;
            }
        }
    }
    void reset() noexcept {
        if (is_inline()) {
            imp()->destroy();
            storage_[0] = nullptr;
        } else if (outer_ != nullptr) {
            outer_->destroy();
            ::operator delete(std::exchange(outer_, nullptr));
        }
    }

    void* storage_[inline_size / sizeof(void*)] = {};
    imp_base* outer_ = nullptr;
};

/// A pair of iterators, first and past the last.
template <class Iterator>
struct range {
    Iterator first;
    Iterator last;

    Iterator begin() const { return first; }
    Iterator end() const { return last; }
    bool empty() const { return first == last; }
};

/// The range that the system's interfaces hand out for elements of type `T`.
template <class T, class Reference = const T&>
using const_range = range<IteratorT<const_itr_traits<T, Reference>>>;

template <class T, class Reference = const T&, class Imp>
const_range<T, Reference> make_range(const Imp& first, const Imp& last) {
    using wrapped = IteratorT<const_itr_traits<T, Reference>>;
    return {wrapped(first), wrapped(last)};
}

}  // namespace nuo
