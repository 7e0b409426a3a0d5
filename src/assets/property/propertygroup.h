#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "assets/property/property.h"
#include "assets/property/propertyfactory.h"
#include "nuo/common/heap.h"
#include "nuo/common/string.h"
#include "velmor/object.h"

namespace korvanet::platform::assets {

// The properties of one group of a table, by name in ascending order of their signed bytes.
//
// It behaves as an ordered map from name to object and is a sorted vector: the names are those of
// the properties' descriptors. A group has some tens of properties, so that running through a row
// of hashes beats a search by comparing names; a far larger one is searched. The objects of a
// copied group lie in one block; those that are added one by one have blocks of their own.
class PropertyGroup {
public:
    class Entry {
    public:
        const nuo::string& Name() const { return object_->Name(); }
        velmor::Type Type() const { return object_->Descriptor().type; }
        PropertyBase& Property() const { return *object_; }
        velmor::Object Object() const { return object_->AsObject(); }

    private:
        friend class PropertyGroup;

        explicit Entry(PropertyBase& object) : object_(&object) {}

        PropertyBase* object_;
    };

    // A name to look up, with its hash, which a search through several groups makes once.
    class Key {
    public:
        Key(nuo::string_ref name);

        nuo::string_ref Name() const { return name_; }
        std::uint32_t Hash() const { return hash_; }

    private:
        nuo::string_ref name_;
        std::uint32_t hash_;
    };
    using Iterator = std::vector<Entry>::const_iterator;

    PropertyGroup() : PropertyGroup(nuo::get_heap()) {}
    explicit PropertyGroup(nuo::heap& heap) : heap_(&heap) {}
    // A copy has objects of its own, which share the descriptors.
    PropertyGroup(const PropertyGroup& other);
    PropertyGroup& operator=(const PropertyGroup& other);
    ~PropertyGroup() { Clear(); }

    bool Empty() const { return entries_.empty(); }
    std::size_t Size() const { return entries_.size(); }
    Iterator begin() const { return entries_.begin(); }
    Iterator end() const { return entries_.end(); }

    // Null when there is none of that name.
    PropertyBase* Find(const Key& key) const;
    PropertyBase* Find(nuo::string_ref name) const { return Find(Key(name)); }

    // Takes the property over; one of the same name is destroyed first.
    void Insert(OwnedProperty property);
    // Destroys the property of that name; false when there is none.
    bool Remove(nuo::string_ref name);
    // Destroys all properties.
    void Clear();

private:
    // Where a property of that name stands or belongs.
    std::size_t PlaceOf(nuo::string_ref name) const;
    bool HasNameAt(std::size_t place, nuo::string_ref name) const;
    void CopyFrom(const PropertyGroup& source);
    void Destroy(PropertyBase& object);
    bool InBlock(const PropertyBase& object) const;

    nuo::heap* heap_;
    std::vector<Entry> entries_;
    // Of the names, in the order of the entries: a row that a lookup runs through without touching
    // the objects.
    std::vector<std::uint32_t> hashes_;
    std::byte* block_ = nullptr;
    std::uint64_t block_size_ = 0;
};

// By names, then by kinds of value, then by data; a group that goes on sorts behind one that ends.
int compareNative(const PropertyGroup& left, const PropertyGroup& right);

}  // namespace korvanet::platform::assets
