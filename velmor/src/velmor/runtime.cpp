#include "velmor/runtime.h"

#include <utility>

#include "velmor/type_methods.h"

namespace velmor {

Runtime::Runtime(nuo::string name, nuo::heap* heap, nuo::ext_heap* extHeap)
    : name_(std::move(name)), heap_(heap), extHeap_(extHeap) {}

Runtime::~Runtime() {
    removeObjects(root());
    root_.clear();
}

bool Runtime::removeObject(Namespace from, nuo::string_ref name) {
    auto& objects = from.imp()->objects;
    const auto found = objects.find(name);
    if (found == objects.end()) return false;
    const nuo::string key = found->first;
    const Object object = found->second;
    release(object);
    // The value may have erased its own entry, or another may stand there, by now.
    const auto left = objects.find(key);
    if (left != objects.end() && left->second == object) objects.erase(left);
    return true;
}

bool Runtime::removeObject(Namespace from, nuo::string_ref name, Object object) {
    auto& objects = from.imp()->objects;
    const auto found = objects.find(name);
    if (found == objects.end() || found->second != object) return false;
    objects.erase(found);
    release(object);
    return true;
}

Object Runtime::detachObject(Namespace from, nuo::string_ref name) {
    auto& objects = from.imp()->objects;
    const auto found = objects.find(name);
    if (found == objects.end()) return Object();
    const Object object = found->second;
    objects.erase(found);
    return object;
}

void Runtime::removeObjects(Namespace from) {
    for (const auto& [name, child] : from.imp()->children)
        removeObjects(Namespace(child));
    auto& objects = from.imp()->objects;
    while (!objects.empty()) {
        const Object object = objects.begin()->second;
        objects.erase(objects.begin());
        release(object);
    }
}

bool Runtime::removeChild(Namespace from, nuo::string_ref name) {
    auto& children = from.imp()->children;
    const auto found = children.find(name);
    if (found == children.end()) return false;
    NamespaceImp* const child = found->second;
    removeObjects(Namespace(child));
    children.erase(found);
    delete child;
    return true;
}

void Runtime::removeChildren(Namespace from) {
    auto& children = from.imp()->children;
    while (!children.empty()) {
        const auto first = children.begin();
        NamespaceImp* const child = first->second;
        removeObjects(Namespace(child));
        // Out of the map before it goes: values of the others may look for it.
        children.erase(first);
        delete child;
    }
}

void Runtime::release(Object object) {
    if (!object.valid()) return;
    const Type type = object.type();
    if (!type.isPod()) type.methods().destruct(object);
    heap_->free(object.data(), type.payload(), type.alignment());
}

}  // namespace velmor
