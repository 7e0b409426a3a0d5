#include "velmor/array_methods.h"

#include <algorithm>

namespace velmor {
namespace {

/// How many bytes of elements are made ahead of the data that fills them.
constexpr std::uint64_t kReadAhead = 64 * 1024;

Array& arrayOf(Object object) {
    return *static_cast<Array*>(object.data());
}
const Array& arrayOf(ConstObject object) {
    return *static_cast<const Array*>(object.data());
}

/// Raises unless `count` elements may follow: each of them is taken for one byte at least.
void checkCount(nuo::archive::reader& reader, Type type, std::uint64_t count) {
    if (auto* const sized = dynamic_cast<nuo::archive::sequence*>(&reader)) {
        const std::uint64_t size = sized->size();
        const std::uint64_t offset = sized->offset();
        const std::uint64_t left = offset < size ? size - offset : 0;
        if (left < count) NUO_RAISE(nuo::archive::read_failed);
    }
    if (!Array::fits(type, count)) NUO_RAISE(nuo::archive::read_failed);
}

}  // namespace

void PrimitiveMethods<Array>::construct(Object object, nuo::heap* heap,
                                        nuo::ext_heap* extHeap) const {
    ::new (object.data()) Array(object.type().imp()->args.front().type(), heap, extHeap);
}

void PrimitiveMethods<Array>::destruct(Object object) const {
    arrayOf(object).~Array();
}

void PrimitiveMethods<Array>::assign(ConstObject source, Object destination) const {
    arrayOf(destination) = arrayOf(source);
}

void PrimitiveMethods<Array>::deserialize(nuo::archive::reader& reader, Object object,
                                          nuo::heap* heap, nuo::ext_heap* extHeap) const {
    Array& array = arrayOf(object);
    const Type type = array.type();
    const auto count = nuo::archive::read_value<std::uint32_t>(reader);
    checkCount(reader, type, count);
    array.resize(std::min<std::uint64_t>(array.size(), count));

    const std::uint64_t stride = std::max<std::uint64_t>(type.payload(), 1);
    const std::uint64_t ahead = std::max<std::uint64_t>(kReadAhead / stride, 1);
    for (std::uint64_t i = 0; i < count; ++i) {
        if (i == array.size()) array.resize(std::min<std::uint64_t>(i + ahead, count));
        type.methods().deserialize(reader, array[i], heap, extHeap);
    }
}

void PrimitiveMethods<Array>::serialize(nuo::archive::writer& writer, ConstObject object) const {
    const Array& array = arrayOf(object);
    const std::uint64_t count = array.size();
    writer << static_cast<std::uint32_t>(count);
    for (std::uint64_t i = 0; i < count; ++i)
        array.type().methods().serialize(writer, array[i]);
}

void PrimitiveMethods<Array>::beginLayout(std::uint64_t& payload, std::uint64_t& offset,
                                          std::uint64_t& alignment, bool& pod) const {
    payload = sizeof(Array);
    offset = 0;
    alignment = alignof(Array);
    pod = false;
}

const ExtendMethods* PrimitiveMethods<Array>::extendMethods() const {
    static constexpr ExtendMethods record{[](ConstObject left, ConstObject right) {
                                              return compareArrays(arrayOf(left), arrayOf(right));
                                          },
                                          nullptr};
    return &record;
}

}  // namespace velmor
