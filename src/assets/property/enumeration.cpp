#include "assets/property/enumeration.h"

namespace korvanet::platform::assets {

using Merge = SortedMultiGroupMergeIterator<IProperty*>;

Merge::SortedMultiGroupMergeIterator(const PropertyTableImp& table) {
    for (std::size_t i = 0; i < PropertyTableImp::kGroupCount; ++i) {
        const PropertyGroup& group = table.Group(i);
        if (!group.Empty()) {
            const PropertyGroup::Entry* first = &*group.begin();
            const PropertyGroup::Entry* last = first + (group.Size() - 1);
            cursors_[count_++] = {first, last, first, Place::kBefore};
        }
    }
}

bool Merge::Less(const Cursor& a, const Cursor& b) {
    return a.position->Name() < b.position->Name();
}

IProperty* Merge::First() {
    valid_ = true;
    current_ = 0;
    for (std::size_t i = 0; i < count_; ++i) {
        Cursor& cursor = cursors_[i];
        cursor.position = cursor.first;
        cursor.place = Place::kBefore;
        if (Less(cursor, Selected())) {
            current_ = i;
        }
    }
    Next();
    return Current();
}

IProperty* Merge::Last() {
    valid_ = true;
    current_ = 0;
    for (std::size_t i = 0; i < count_; ++i) {
        Cursor& cursor = cursors_[i];
        cursor.position = cursor.last;
        cursor.place = Place::kPast;
        if (Less(Selected(), cursor)) {
            current_ = i;
        }
    }
    Previous();
    return Current();
}

bool Merge::Next() {
    if (count_ == 0 || Selected().place == Place::kPast) {
        valid_ = false;
        return false;
    }
    Cursor& selected = Selected();
    if (selected.place == Place::kBefore) {
        selected.place = Place::kInside;
    } else if (selected.position == selected.last) {
        selected.place = Place::kPast;
    } else {
        ++selected.position;
    }
    const std::size_t moved = current_;
    for (std::size_t i = 0; i < count_; ++i) {
        if (i != moved && cursors_[i].place != Place::kPast &&
            (Selected().place == Place::kPast || Less(cursors_[i], Selected()))) {
            current_ = i;
        }
    }
    return Settle(Place::kPast, Place::kBefore);
}

bool Merge::Previous() {
    if (count_ == 0 || Selected().place == Place::kBefore) {
        valid_ = false;
        return false;
    }
    Cursor& selected = Selected();
    if (selected.place == Place::kPast) {
        selected.place = Place::kInside;
    } else if (selected.position == selected.first) {
        selected.place = Place::kBefore;
    } else {
        --selected.position;
    }
    const std::size_t moved = current_;
    for (std::size_t i = 0; i < count_; ++i) {
        if (i != moved && cursors_[i].place != Place::kBefore &&
            (Selected().place == Place::kBefore || Less(Selected(), cursors_[i]))) {
            current_ = i;
        }
    }
    return Settle(Place::kBefore, Place::kPast);
}

bool Merge::Settle(Place outside, Place ahead) {
    Cursor& selected = Selected();
    valid_ = selected.place != outside;
    if (selected.place == ahead) {
        selected.place = Place::kInside;
    }
    return valid_;
}

IProperty* Merge::Current() const {
    return valid_ ? &cursors_[current_].position->Property() : nullptr;
}

}  // namespace korvanet::platform::assets
