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
    if (auto* const sized = reader.place()) {
        const std::uint64_t size = sized->size();
        const std::uint64_t offset = sized->offset();
        const std::uint64_t left = offset < size ? size - offset : 0;
        if (left < count) NUO_RAISE(nuo::archive::read_failed);
    }
    if (!Array::fits(type, count)) NUO_RAISE(nuo::archive::read_failed);
}

template <class... Natives>
bool isAnyOf(const TypeMethods& methods) {
    return ((&methods == &PrimitiveMethods<Natives>::instance()) || ...);
}

/// True when the stored form of an element is its memory, so that a row goes in one piece. A bool
/// is not among them: a stored byte need not be a bool.
bool storesMemory(Type type) {
    return isAnyOf<std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t,
                   std::uint32_t, std::int64_t, std::uint64_t, float, double, Matrix44, Color3,
                   Color4, Vector3, Vector4>(type.methods());
}

/// Fills the elements from `from` up to `to`.
void readElements(nuo::archive::reader& reader, const Array& array, std::uint64_t from,
                  std::uint64_t to, nuo::heap* heap, nuo::ext_heap* extHeap) {
    const Type type = array.type();
    if (storesMemory(type)) {
        nuo::archive::read_exact(reader, {array[from].data(), (to - from) * type.payload()});
        return;
    }
    for (std::uint64_t i = from; i < to; ++i) {
        type.methods().deserialize(reader, array[i], heap, extHeap);
    }
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
    if (!array.bound()) NUO_RAISE(nuo::archive::read_failed);
    const Type type = array.type();
    const auto count = nuo::archive::read_value<std::uint32_t>(reader);
    checkCount(reader, type, count);
    if (array.size() > count) array.resize(count);

    const std::uint64_t stride = std::max<std::uint64_t>(type.payload(), 1);
    const std::uint64_t ahead = std::max<std::uint64_t>(kReadAhead / stride, 1);
    for (std::uint64_t from = 0; from < count; from += ahead) {
        const std::uint64_t to = std::min<std::uint64_t>(from + ahead, count);
        if (array.size() < to) array.resize(to);
        readElements(reader, array, from, to, heap, extHeap);
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
