#pragma once

#include <cstdint>

#include "assets/property/halverntypes.h"
#include "assets/property/property.h"
#include "assets/property/propertydescriptor.h"
#include "nuo/common/heap.h"

namespace korvanet::platform::assets {

struct ModuleContext;

// Owner of one property object in a block of its own.
class OwnedProperty {
public:
    OwnedProperty() = default;
    OwnedProperty(PropertyBase& property, nuo::heap& heap) : property_(&property), heap_(&heap) {}
    OwnedProperty(OwnedProperty&& other) noexcept
        : property_(std::exchange(other.property_, nullptr)), heap_(other.heap_) {}
    OwnedProperty& operator=(OwnedProperty&& other) noexcept {
        std::swap(property_, other.property_);
        std::swap(heap_, other.heap_);
        return *this;
    }
    ~OwnedProperty();

    PropertyBase* get() const { return property_; }
    PropertyBase& operator*() const { return *property_; }
    PropertyBase* operator->() const { return property_; }
    explicit operator bool() const { return property_ != nullptr; }

    // The heap that the block came from.
    nuo::heap& Heap() const { return *heap_; }
    // Gives the object up: whoever takes it destructs it and frees its block.
    PropertyBase* Release() { return std::exchange(property_, nullptr); }

private:
    PropertyBase* property_ = nullptr;
    nuo::heap* heap_ = nullptr;
};

// Makes a property of a value class with a descriptor of its own. The value has the default of its
// data type, the mark is set, and nothing is connected. Null when the runtime lacks the type.
OwnedProperty MakeProperty(const ModuleContext& context, ValueClass value, nuo::string name,
                           nuo::string label, std::uint32_t flags);

// Makes a property that shares `descriptor`.
OwnedProperty MakeProperty(PropertyDescriptor& descriptor);

// A copy with the same value, mark and connections (to the same tables) that shares the descriptor
// of `source`, or has `descriptor`, which is of the same type.
OwnedProperty CopyProperty(const PropertyBase& source);
OwnedProperty CopyProperty(const PropertyBase& source, PropertyDescriptor& descriptor);

// Copies the value alone; both properties are of one value class.
void CopyValue(const PropertyBase& source, PropertyBase& target);

// The two steps for those who bring the memory: a copy in `memory`, which has the size and
// alignment of the source's type, and its end.
PropertyBase& ConstructCopy(const PropertyBase& source, void* memory);
void DestructProperty(PropertyBase& property);

}  // namespace korvanet::platform::assets
