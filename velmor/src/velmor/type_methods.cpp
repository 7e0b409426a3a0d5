#include "velmor/type_methods.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "velmor/object.h"
#include "velmor/type.h"

namespace velmor {
namespace {

Object part(Object whole, const TypeItem& item) {
    return Object(item.type(), static_cast<std::byte*>(whole.data()) + item.offset());
}

ConstObject part(ConstObject whole, const TypeItem& item) {
    return ConstObject(item.type(), static_cast<const std::byte*>(whole.data()) + item.offset());
}

/// Ends the first `count` items, the last first.
void destructItems(Object object, std::size_t count) {
    const std::vector<TypeItem>& items = object.type().items();
    while (count-- > 0) {
        const Type type = items[count].type();
        if (!type.isPod()) type.methods().destruct(part(object, items[count]));
    }
}

}  // namespace

void TypeMethods::construct(Object object, nuo::heap* heap, nuo::ext_heap* extHeap) const {
    const std::vector<TypeItem>& items = object.type().items();
    std::size_t done = 0;
    try {
        for (; done < items.size(); ++done) {
            items[done].type().methods().construct(part(object, items[done]), heap, extHeap);
        }
    } catch (...) {
        destructItems(object, done);
        throw;
    }
}

void TypeMethods::destruct(Object object) const {
    if (!object.type().isPod()) destructItems(object, object.type().items().size());
}

void TypeMethods::assign(ConstObject source, Object destination) const {
    const Type type = destination.type();
    if (type.isPod()) {
        if (source.data() != destination.data()) {
            std::memcpy(destination.data(), source.data(), type.payload());
        }
        return;
    }
    for (const TypeItem& item : type.items()) {
        item.type().methods().assign(part(source, item), part(destination, item));
    }
}

void TypeMethods::deserialize(nuo::archive::reader& reader, Object object, nuo::heap* heap,
                              nuo::ext_heap* extHeap) const {
    for (const TypeItem& item : object.type().items()) {
        item.type().methods().deserialize(reader, part(object, item), heap, extHeap);
    }
}

void TypeMethods::serialize(nuo::archive::writer& writer, ConstObject object) const {
    for (const TypeItem& item : object.type().items()) {
        item.type().methods().serialize(writer, part(object, item));
    }
}

void TypeMethods::beginLayout(std::uint64_t& payload, std::uint64_t& offset,
                              std::uint64_t& alignment, bool& pod) const {
    payload = 0;
    offset = 0;
    alignment = 1;
    pod = true;
}

void TypeMethods::nextLayout(const TypeItem& item, std::uint64_t& payload, std::uint64_t& offset,
                             std::uint64_t& alignment, bool& pod) const {
    if (payload == kUnknown) return;
    if (!item.valid()) {
        payload = offset = alignment = kUnknown;
        return;
    }
    const Type type = item.type();
    const std::uint64_t wanted = std::max<std::uint64_t>(type.alignment(), 1);
    const std::uint64_t past = payload % wanted;
    payload += type.payload() + (past != 0 ? wanted - past : 0);
    offset = payload;
    pod = pod && type.isPod();
    alignment = std::max(alignment, wanted);
}

const TypeInfoHandle& TypeMethods::typeinfo() const {
    return TypeInfo<void>::instance();
}

const ExtendMethods* TypeMethods::extendMethods() const {
    return nullptr;
}

TypeMethods::~TypeMethods() = default;

const TypeMethods& TypeMethods::defaults() {
    static const auto* const only = new TypeMethods;
    return *only;
}

int compare(ConstObject left, ConstObject right) {
    const ExtendMethods* const extend = left.type().methods().extendMethods();
    return extend != nullptr && extend->compare != nullptr ? extend->compare(left, right) : 0;
}

}  // namespace velmor
