#pragma once

#include "nuo/common/heap.h"
#include "nuo/common/string.h"
#include "velmor/namespace.h"
#include "velmor/object.h"

namespace velmor {

/// Owns a tree of namespaces and releases the values in it. Values come from `heap()`.
///
/// Destroying the runtime ends every value of the tree, those of the children first, and then the
/// tree itself.
class Runtime {
public:
    Runtime(nuo::string name, nuo::heap* heap, nuo::ext_heap* extHeap);
    Runtime(const Runtime&) = delete;
    Runtime& operator=(const Runtime&) = delete;
    ~Runtime();

    const nuo::string& name() const { return name_; }
    nuo::heap* heap() const { return heap_; }
    nuo::ext_heap* extHeap() const { return extHeap_; }
    Namespace root() { return Namespace(&root_); }

    /// Ends and frees the value of that name, then erases the entry. False when there is none.
    bool removeObject(Namespace from, nuo::string_ref name);
    /// Erases the entry first, then ends and frees the value. False, and nothing is touched, when
    /// the name is absent or holds another value by now.
    bool removeObject(Namespace from, nuo::string_ref name, Object object);
    /// Takes the entry out and leaves the value to the caller. Invalid when absent.
    Object detachObject(Namespace from, nuo::string_ref name);
    /// Ends and frees every value of the namespace and below, children first. Each entry is out of
    /// its map before its value ends, so that a value may look itself or a neighbour up meanwhile.
    void removeObjects(Namespace from);

    /// Removes a child with all its values and types. False when there is none.
    bool removeChild(Namespace from, nuo::string_ref name);
    void removeChildren(Namespace from);

private:
    void release(Object object);

    nuo::string name_;
    nuo::heap* heap_;
    nuo::ext_heap* extHeap_;
    NamespaceImp root_;
};

}  // namespace velmor
