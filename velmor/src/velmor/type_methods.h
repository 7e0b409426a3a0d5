#pragma once

#include <cstdint>

#include "nuo/common/heap.h"
#include "nuo/common/iarchive.h"
#include "velmor/forward.h"
#include "velmor/typeinfo.h"

namespace velmor {

/// What a type offers beyond its methods.
struct ExtendMethods {
    /// -1, 0 or 1 by the native less-than; both values are of the type that was asked.
    int (*compare)(ConstObject left, ConstObject right) = nullptr;
    /// Nobody fills this one.
    const void* reserved = nullptr;
};

/// The operations behind a type. This class itself treats a value as a record of its items, bases
/// first, and serves every type that has no native class; `PrimitiveMethods` binds a native class.
///
///     record = item...                         no tag, no length, no padding
///
/// Told in docs/formats/reflective_values.md.
///
/// Method objects are statics that are never freed; types only point to them.
class TypeMethods {
public:
    TypeMethods() = default;
    TypeMethods(const TypeMethods&) = delete;
    TypeMethods& operator=(const TypeMethods&) = delete;

    /// Builds a value in the raw bytes of `object`. When it raises, nothing is left to destruct.
    virtual void construct(Object object, nuo::heap* heap, nuo::ext_heap* extHeap) const;
    /// Ends a value; the bytes stay the caller's.
    virtual void destruct(Object object) const;
    /// Copies `source` over the constructed value `destination`. Both are of this type.
    virtual void assign(ConstObject source, Object destination) const;
    /// Fills a constructed value. Raises `nuo::archive::read_failed` when the data ends; what was
    /// read until then stays in the value.
    virtual void deserialize(nuo::archive::reader& reader, Object object, nuo::heap* heap,
                             nuo::ext_heap* extHeap) const;
    virtual void serialize(nuo::archive::writer& writer, ConstObject object) const;
    /// Sets the start of a layout. `offset` is the builder's running offset.
    virtual void beginLayout(std::uint64_t& payload, std::uint64_t& offset,
                             std::uint64_t& alignment, bool& pod) const;
    /// Adds one item to a layout. There is no padding behind the last item.
    virtual void nextLayout(const TypeItem& item, std::uint64_t& payload, std::uint64_t& offset,
                            std::uint64_t& alignment, bool& pod) const;
    virtual const TypeInfoHandle& typeinfo() const;
    /// Null when values of the type do not compare.
    virtual const ExtendMethods* extendMethods() const;
    virtual ~TypeMethods();

    /// The methods of a record of items.
    static const TypeMethods& defaults();
};

/// Compares two values of one type. 0 where the type does not compare.
int compare(ConstObject left, ConstObject right);

}  // namespace velmor
