#include "velmor/scoped_object_creator.h"

#include <utility>

#include "velmor/type_methods.h"

namespace velmor {

ScopedObjectCreator::~ScopedObjectCreator() {
    destroy(type_);
}

Object ScopedObjectCreator::create(Type type) {
    if (!type.valid() || !type.isMemberResolved()) {
        NUO_RAISE(unresolved_type, "type is not resolved.");
    }
    void* const data = heap_->malloc(type.payload(), type.alignment(), nullptr);
    try {
        type.methods().construct(Object(type, data), heap_, extHeap_);
    } catch (...) {
        heap_->free(data, type.payload(), type.alignment());
        throw;
    }
    destroy(type);
    type_ = type;
    data_ = data;
    return get();
}

Object ScopedObjectCreator::adoptBy(Namespace target, const nuo::string& name) {
    target.imp()->objects.insert_or_assign(name, get());
    return release();
}

Object ScopedObjectCreator::release() {
    return Object(type_, std::exchange(data_, nullptr));
}

void ScopedObjectCreator::destroy(Type type) {
    if (data_ == nullptr) return;
    void* const data = std::exchange(data_, nullptr);
    type.methods().destruct(Object(type, data));
    heap_->free(data, type.payload(), type.alignment());
}

}  // namespace velmor
