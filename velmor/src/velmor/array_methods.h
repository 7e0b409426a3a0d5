#pragma once

#include "velmor/array.h"
#include "velmor/primitive_methods.h"

namespace velmor {

/// The methods behind the generic `array` and its instances.
///
///     array = count:uint32 element{count}      each element in the form of the element type
///
/// Told in docs/formats/reflective_values.md.
template <>
class PrimitiveMethods<Array> : public TypeMethods {
public:
    /// The element type is the first argument of the value's type, which has to be bound.
    void construct(Object object, nuo::heap* heap, nuo::ext_heap* extHeap) const override;
    void destruct(Object object) const override;
    void assign(ConstObject source, Object destination) const override;
    /// Raises `nuo::archive::read_failed` before any element is made when the archive knows its
    /// size and has fewer bytes left than elements, or when the count is beyond what an array may
    /// hold. Elements are made as the data is read, not ahead of it, so that a count alone cannot
    /// claim memory.
    void deserialize(nuo::archive::reader& reader, Object object, nuo::heap* heap,
                     nuo::ext_heap* extHeap) const override;
    void serialize(nuo::archive::writer& writer, ConstObject object) const override;
    void beginLayout(std::uint64_t& payload, std::uint64_t& offset, std::uint64_t& alignment,
                     bool& pod) const override;
    void nextLayout(const TypeItem&, std::uint64_t&, std::uint64_t&, std::uint64_t&,
                    bool&) const override {}
    const TypeInfoHandle& typeinfo() const override { return TypeInfo<Array>::instance(); }
    const ExtendMethods* extendMethods() const override;

    static const PrimitiveMethods& instance() {
        static const auto* const only = new PrimitiveMethods<Array>;
        return *only;
    }
};

}  // namespace velmor
