#include "assets/property/propertyfactory.h"

#include <cstddef>
#include <cstring>
#include <new>

#include "assets/property/modulecontext.h"
#include "assets/property/urivalues.h"
#include "velmor/runtime.h"

namespace korvanet::platform::assets {

namespace {

std::byte* At(void* memory, std::uint64_t offset) {
    return static_cast<std::byte*>(memory) + offset;
}

nuo::ext_heap* ExtHeapOf(const ModuleContext& context) {
    return context.runtime->extHeap();
}

// Builds the value class in `memory`; the members are left raw.
PropertyBase& ConstructOperation(const PropertyDescriptor& descriptor, void* memory) {
    const velmor::Type type = descriptor.operationType;
    type.methods().construct({type, memory}, descriptor.context->heap,
                             ExtHeapOf(*descriptor.context));
    return *static_cast<PropertyBase*>(memory);
}

void DestructOperation(const PropertyDescriptor& descriptor, void* memory) {
    const velmor::Type type = descriptor.operationType;
    type.methods().destruct({type, memory});
}

void ConstructData(const PropertyDescriptor& descriptor, void* place) {
    descriptor.dataType.methods().construct({descriptor.dataType, place}, descriptor.context->heap,
                                            ExtHeapOf(*descriptor.context));
}

void CopyOtherData(const PropertyDescriptor& descriptor, const void* source, void* place) {
    const velmor::Type type = descriptor.dataType;
    ConstructData(descriptor, place);
    try {
        type.methods().assign({type, source}, {type, place});
    } catch (...) {
        type.methods().destruct({type, place});
        throw;
    }
}

void CopyData(const PropertyDescriptor& descriptor, const void* source, void* place) {
    switch (descriptor.dataForm) {
        case DataForm::kPod:
            std::memcpy(place, source, descriptor.dataType.payload());
            break;
        case DataForm::kString:
            ::new (place) nuo::string(*static_cast<const nuo::string*>(source));
            break;
        case DataForm::kArray:
            ::new (place) velmor::Array(*static_cast<const velmor::Array*>(source));
            break;
        case DataForm::kOther:
            CopyOtherData(descriptor, source, place);
            break;
    }
}

// An empty row of connections is left unbound, which saves its record.
void CopyLink(const velmor::Array& source, void* place) {
    if (source.empty()) {
        ::new (place) velmor::Array();
    } else {
        ::new (place) velmor::Array(source);
    }
}

void CopyMembers(const PropertyBase& source, void* memory) {
    const PropertyDescriptor& descriptor = source.Descriptor();
    void* link = At(memory, descriptor.linkOffset);
    CopyLink(source.Link(), link);
    try {
        CopyData(descriptor, source.DataObject().data(), At(memory, descriptor.dataOffset));
    } catch (...) {
        static_cast<velmor::Array*>(link)->~Array();
        throw;
    }
}

void* Allocate(const PropertyDescriptor& descriptor) {
    const velmor::Type type = descriptor.type;
    return descriptor.context->heap->malloc(type.payload(), type.alignment(), nullptr);
}

void Free(const PropertyDescriptor& descriptor, void* memory) {
    const velmor::Type type = descriptor.type;
    descriptor.context->heap->free(memory, type.payload(), type.alignment());
}

}  // namespace

OwnedProperty::~OwnedProperty() {
    if (property_ != nullptr) {
        const velmor::Type type = property_->Descriptor().type;
        DestructProperty(*property_);
        heap_->free(property_, type.payload(), type.alignment());
    }
}

OwnedProperty MakeProperty(const ModuleContext& context, ValueClass value, nuo::string name,
                           nuo::string label, std::uint32_t flags) {
    const velmor::Type type = context.types.Value(value);
    if (!type.valid()) {
        return {};
    }
    const intrusive_ptr<PropertyDescriptor> descriptor(
        new PropertyDescriptor(context, type, std::move(name), std::move(label), flags));
    return MakeProperty(*descriptor);
}

OwnedProperty MakeProperty(PropertyDescriptor& descriptor) {
    void* memory = Allocate(descriptor);
    try {
        PropertyBase& property = ConstructOperation(descriptor, memory);
        property.SetDescriptor(&descriptor);
        ::new (At(memory, descriptor.linkOffset)) velmor::Array();
        try {
            ConstructData(descriptor, At(memory, descriptor.dataOffset));
        } catch (...) {
            DestructOperation(descriptor, memory);
            throw;
        }
        return {property, *descriptor.context->heap};
    } catch (...) {
        Free(descriptor, memory);
        throw;
    }
}

OwnedProperty CopyProperty(const PropertyBase& source) {
    return CopyProperty(source, source.Descriptor());
}

OwnedProperty CopyProperty(const PropertyBase& source, PropertyDescriptor& descriptor) {
    const intrusive_ptr<PropertyDescriptor> held(&descriptor);
    void* memory = Allocate(descriptor);
    try {
        PropertyBase& property = ConstructCopy(source, memory);
        property.SetDescriptor(held);
        return {property, *descriptor.context->heap};
    } catch (...) {
        Free(descriptor, memory);
        throw;
    }
}

void CopyValue(const PropertyBase& source, PropertyBase& target) {
    const velmor::Type type = target.Descriptor().dataType;
    type.methods().assign(source.DataObject(), target.DataObject());
    ForgetResolutions(target);
}

PropertyBase& ConstructCopy(const PropertyBase& source, void* memory) {
    const PropertyDescriptor& descriptor = source.Descriptor();
    PropertyBase& property = ConstructOperation(descriptor, memory);
    try {
        const velmor::Type type = descriptor.operationType;
        type.methods().assign({type, &source}, {type, memory});
        CopyMembers(source, memory);
    } catch (...) {
        DestructOperation(descriptor, memory);
        throw;
    }
    return property;
}

void DestructProperty(PropertyBase& property) {
    const velmor::Object object = property.AsObject();
    object.type().methods().destruct(object);
}

}  // namespace korvanet::platform::assets
