#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include <korvanet/platform/assets/ipropertytable.h>

#include "assets/property/propertytable.h"

namespace korvanet::platform::assets {

// Walks the groups of a table as one sequence in ascending order of names. It holds positions, not
// contents.
//
// Turning round in the middle of a walk is not a step back: a cursor that the walk has not selected
// yet stands on the element that it would give next in the direction walked so far. First() and
// Last() start afresh.
template <class T>
class SortedMultiGroupMergeIterator;

template <>
class SortedMultiGroupMergeIterator<IProperty*> {
public:
    explicit SortedMultiGroupMergeIterator(const PropertyTableImp& table);

    IProperty* First();
    IProperty* Last();
    bool Next();
    bool Previous();
    bool IsValid() const { return valid_; }
    // The selected property; null when the position is not valid.
    IProperty* Current() const;

private:
    enum class Place : std::uint8_t { kInside, kBefore, kPast };

    // One per group that is not empty.
    struct Cursor {
        const PropertyGroup::Entry* first;
        const PropertyGroup::Entry* last;
        const PropertyGroup::Entry* position;
        Place place;
    };

    Cursor& Selected() { return cursors_[current_]; }
    static bool Less(const Cursor& a, const Cursor& b);
    bool Settle(Place outside, Place ahead);

    std::array<Cursor, PropertyTableImp::kGroupCount> cursors_;
    std::size_t count_ = 0;
    std::size_t current_ = 0;
    bool valid_ = false;
};

// Accepts the properties that hosts are to see.
struct SelectPublic {
    bool operator()(const IProperty& property) const {
        return (property.GetFlags() & PropertyFlags::kPublic) != 0;
    }
};

// A walk over what `Select` accepts, or over everything.
template <class Inner, class T, class Select>
class FilterIterator final : public IEnumeration<T> {
public:
    FilterIterator(Inner inner, bool publicOnly) : inner_(inner), public_only_(publicOnly) {}

    T First() override {
        inner_.First();
        SkipForward();
        return Current();
    }
    T Last() override {
        inner_.Last();
        SkipBackward();
        return Current();
    }
    T Current() override { return valid_ ? inner_.Current() : nullptr; }
    bool Next() override {
        if (valid_) {
            inner_.Next();
            SkipForward();
        }
        return valid_;
    }
    bool Previous() override {
        if (valid_) {
            inner_.Previous();
            SkipBackward();
        }
        return valid_;
    }
    bool IsValid() override { return valid_; }

private:
    bool IsRejected() const { return public_only_ && !Select()(*inner_.Current()); }
    void SkipForward() {
        while (inner_.IsValid() && IsRejected()) {
            inner_.Next();
        }
        valid_ = inner_.IsValid();
    }
    void SkipBackward() {
        while (inner_.IsValid() && IsRejected()) {
            inner_.Previous();
        }
        valid_ = inner_.IsValid();
    }

    Inner inner_;
    bool public_only_;
    bool valid_ = false;
};

}  // namespace korvanet::platform::assets
