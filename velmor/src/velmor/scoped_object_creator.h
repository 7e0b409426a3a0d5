#pragma once

#include "nuo/common/exception.h"
#include "nuo/common/heap.h"
#include "nuo/common/string.h"
#include "velmor/namespace.h"
#include "velmor/object.h"

namespace velmor {

/// Raised by `ScopedObjectCreator::create` for a type that is invalid or has no finished layout.
NUO_DECLARE_EXCEPTION(unresolved_type);

/// Makes one value at a time on a heap and owns it until a namespace adopts it or `release`.
class ScopedObjectCreator {
public:
    ScopedObjectCreator(nuo::heap* heap, nuo::ext_heap* extHeap) : heap_(heap), extHeap_(extHeap) {}
    ScopedObjectCreator(const ScopedObjectCreator&) = delete;
    ScopedObjectCreator& operator=(const ScopedObjectCreator&) = delete;
    ~ScopedObjectCreator();

    /// A new value of `type`, owned by the creator; the value that it held goes. The second value
    /// has to be of a type with the size, alignment and methods of the first: the old one is ended
    /// as if it were of the new type. When construction raises, the creator keeps its old value.
    Object create(Type type);

    /// Enters the value in the namespace, whose runtime owns it from then on. A value that stood
    /// under the name is overwritten and not released.
    Object adoptBy(Namespace target, const nuo::string& name);

    /// Gives up ownership; the value stays.
    Object release();

    Object get() const { return Object(type_, data_); }

private:
    void destroy(Type type);

    Type type_;
    nuo::heap* heap_;
    nuo::ext_heap* extHeap_;
    void* data_ = nullptr;
};

}  // namespace velmor
