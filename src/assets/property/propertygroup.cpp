#include "assets/property/propertygroup.h"

#include <algorithm>
#include <functional>

namespace korvanet::platform::assets {

namespace {

// The first eight bytes of a name, biased so that they sort as signed bytes do. What is missing
// counts as the smallest byte, as a shorter name sorts first; names of one order are told apart by
// their texts.
std::uint64_t OrderOf(nuo::string_ref name) {
    constexpr std::uint64_t kBytes = 8;
    std::uint64_t order = 0;
    const std::uint64_t present = std::min(name.size(), kBytes);
    for (std::uint64_t i = 0; i < present; ++i) {
        order = order << 8 | (static_cast<std::uint8_t>(name[i]) ^ 0x80u);
    }
    return present == 0 ? 0 : order << 8 * (kBytes - present);
}

std::uint64_t Aligned(std::uint64_t size, std::uint64_t alignment) {
    return (size + alignment - 1) / alignment * alignment;
}

}  // namespace

PropertyGroup::PropertyGroup(const PropertyGroup& other) : heap_(other.heap_) {
    CopyFrom(other);
}

PropertyGroup& PropertyGroup::operator=(const PropertyGroup& other) {
    if (this != &other) {
        Clear();
        CopyFrom(other);
    }
    return *this;
}

PropertyGroup::Iterator PropertyGroup::LowerBound(std::uint64_t order, nuo::string_ref name) const {
    return std::partition_point(entries_.begin(), entries_.end(), [&](const Entry& entry) {
        return entry.order_ < order || (entry.order_ == order && entry.Name().ref() < name);
    });
}

std::vector<PropertyGroup::Entry>::iterator PropertyGroup::LowerBound(std::uint64_t order,
                                                                      nuo::string_ref name) {
    const Iterator found = static_cast<const PropertyGroup*>(this)->LowerBound(order, name);
    return entries_.begin() + (found - entries_.cbegin());
}

PropertyBase* PropertyGroup::Find(nuo::string_ref name) const {
    const Iterator found = LowerBound(OrderOf(name), name);
    return found != entries_.end() && found->Name() == name ? found->object_ : nullptr;
}

void PropertyGroup::Insert(OwnedProperty property) {
    const nuo::string_ref name = property->Name();
    const std::uint64_t order = OrderOf(name);
    const auto found = LowerBound(order, name);
    if (found != entries_.end() && found->Name() == name) {
        PropertyBase& old = *found->object_;
        found->object_ = property.Release();
        Destroy(old);
        return;
    }
    Entry entry;
    entry.order_ = order;
    entry.object_ = property.get();
    entries_.insert(found, entry);
    property.Release();
}

bool PropertyGroup::Remove(nuo::string_ref name) {
    const auto found = LowerBound(OrderOf(name), name);
    if (found == entries_.end() || !(found->Name() == name)) {
        return false;
    }
    PropertyBase& object = *found->object_;
    entries_.erase(found);
    Destroy(object);
    return true;
}

void PropertyGroup::Clear() {
    // An object that goes may release a table that looks into this group; it finds no dead entry.
    while (!entries_.empty()) {
        PropertyBase& object = *entries_.back().object_;
        entries_.pop_back();
        Destroy(object);
    }
    if (block_ != nullptr) {
        heap_->free(block_, block_size_, alignof(std::max_align_t));
        block_ = nullptr;
        block_size_ = 0;
    }
}

void PropertyGroup::CopyFrom(const PropertyGroup& source) {
    if (source.Empty()) {
        return;
    }
    std::uint64_t size = 0;
    for (const Entry& entry : source) {
        size = Aligned(size, entry.Type().alignment()) + entry.Type().payload();
    }
    entries_.reserve(source.Size());
    block_ = static_cast<std::byte*>(heap_->malloc(size, alignof(std::max_align_t), nullptr));
    block_size_ = size;
    try {
        std::uint64_t offset = 0;
        for (const Entry& entry : source) {
            offset = Aligned(offset, entry.Type().alignment());
            Entry copy = entry;
            copy.object_ = &ConstructCopy(*entry.object_, block_ + offset);
            entries_.push_back(copy);
            offset += entry.Type().payload();
        }
    } catch (...) {
        Clear();
        throw;
    }
}

bool PropertyGroup::InBlock(const PropertyBase& object) const {
    const auto* address = reinterpret_cast<const std::byte*>(&object);
    return block_ != nullptr && !std::less<>()(address, block_) &&
           std::less<>()(address, block_ + block_size_);
}

void PropertyGroup::Destroy(PropertyBase& object) {
    const velmor::Type type = object.Descriptor().type;
    DestructProperty(object);
    // The storage of a copied property goes with the block, of which it is a part.
    if (!InBlock(object)) {
        heap_->free(&object, type.payload(), type.alignment());
    }
}

}  // namespace korvanet::platform::assets
