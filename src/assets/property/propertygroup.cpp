#include "assets/property/propertygroup.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <functional>

#include "velmor/primitive_methods.h"

namespace korvanet::platform::assets {

namespace {

// In a longer row of hashes a search by comparing names is the quicker one.
constexpr std::size_t kLongestRow = 256;

// The eight bytes at `position`, or those that are there.
std::uint64_t Word(nuo::string_ref name, std::uint64_t position) {
    std::uint64_t word = 0;
    std::memcpy(&word, name.data() + position,
                std::min<std::uint64_t>(sizeof word, name.size() - position));
    return word;
}

// Looks at the two ends and the middle, where names of one family differ; names that agree there
// are told apart by their texts. Held in memory alone.
std::uint32_t HashOf(nuo::string_ref name) {
    constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15;
    const std::uint64_t size = name.size();
    std::uint64_t hash = (Word(name, 0) ^ size) * kMultiplier;
    if (size > sizeof(std::uint64_t)) {
        hash = (hash ^ hash >> 32 ^ Word(name, size - sizeof(std::uint64_t))) * kMultiplier;
        hash = (hash ^ hash >> 32 ^ Word(name, size / 2 - sizeof(std::uint64_t) / 2)) * kMultiplier;
    }
    return static_cast<std::uint32_t>(hash >> 32);
}

std::uint64_t Aligned(std::uint64_t size, std::uint64_t alignment) {
    return (size + alignment - 1) / alignment * alignment;
}

int Order(const PropertyGroup::Entry& left, const PropertyGroup::Entry& right) {
    if (const int order = velmor::compareNative(left.Name(), right.Name())) return order;
    if (!(left.Type() == right.Type()))
        return velmor::compareNative(left.Type().name(), right.Type().name());
    return velmor::compare(left.Property().DataObject(), right.Property().DataObject());
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

PropertyGroup::Key::Key(nuo::string_ref name) : name_(name), hash_(HashOf(name)) {}

std::size_t PropertyGroup::PlaceOf(nuo::string_ref name) const {
    const auto place =
        std::partition_point(entries_.begin(), entries_.end(),
                             [name](const Entry& entry) { return entry.Name().ref() < name; });
    return static_cast<std::size_t>(place - entries_.begin());
}

bool PropertyGroup::HasNameAt(std::size_t place, nuo::string_ref name) const {
    return place < entries_.size() && entries_[place].Name() == name;
}

PropertyBase* PropertyGroup::Find(const Key& key) const {
    const std::size_t count = hashes_.size();
    if (count > kLongestRow) {
        const std::size_t place = PlaceOf(key.Name());
        return HasNameAt(place, key.Name()) ? entries_[place].object_ : nullptr;
    }
    const std::uint32_t* hashes = hashes_.data();
    for (std::size_t i = 0; i < count; ++i) {
        if (hashes[i] == key.Hash() && HasNameAt(i, key.Name())) {
            return entries_[i].object_;
        }
    }
    return nullptr;
}

void PropertyGroup::Insert(OwnedProperty property) {
    assert(&property.Heap() == heap_);
    const Key key(property->Name());
    const std::size_t place = PlaceOf(key.Name());
    if (HasNameAt(place, key.Name())) {
        PropertyBase& old = *entries_[place].object_;
        entries_[place] = Entry(*property.Release());
        Destroy(old);
        return;
    }
    const auto offset = static_cast<std::ptrdiff_t>(place);
    // Room first, so that nothing fails between the two rows.
    if (hashes_.size() == hashes_.capacity()) {
        hashes_.reserve(2 * hashes_.size() + 1);
    }
    entries_.insert(entries_.begin() + offset, Entry(*property));
    hashes_.insert(hashes_.begin() + offset, key.Hash());
    property.Release();
}

bool PropertyGroup::Remove(nuo::string_ref name) {
    const std::size_t place = PlaceOf(name);
    if (!HasNameAt(place, name)) {
        return false;
    }
    PropertyBase& object = *entries_[place].object_;
    const auto offset = static_cast<std::ptrdiff_t>(place);
    entries_.erase(entries_.begin() + offset);
    hashes_.erase(hashes_.begin() + offset);
    Destroy(object);
    return true;
}

void PropertyGroup::Clear() {
    // An object that goes may release a table that looks into this group; it finds no dead entry.
    while (!entries_.empty()) {
        PropertyBase& object = *entries_.back().object_;
        entries_.pop_back();
        hashes_.pop_back();
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
    hashes_.reserve(source.Size());
    block_ = static_cast<std::byte*>(heap_->malloc(size, alignof(std::max_align_t), nullptr));
    block_size_ = size;
    try {
        std::uint64_t offset = 0;
        for (const Entry& entry : source) {
            offset = Aligned(offset, entry.Type().alignment());
            entries_.push_back(Entry(ConstructCopy(*entry.object_, block_ + offset)));
            hashes_.push_back(source.hashes_[hashes_.size()]);
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

int compareNative(const PropertyGroup& left, const PropertyGroup& right) {
    auto a = left.begin();
    auto b = right.begin();
    for (; a != left.end() && b != right.end(); ++a, ++b)
        if (const int order = Order(*a, *b)) return order;
    return velmor::compareNative(left.Size(), right.Size());
}

}  // namespace korvanet::platform::assets
