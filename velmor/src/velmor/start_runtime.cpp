#include "velmor/start_runtime.h"

#include <cstdint>

#include "velmor/array_methods.h"
#include "velmor/primitive_methods.h"
#include "velmor/type_builder.h"

namespace velmor {
namespace {

struct PrimitiveRow {
    const char* name;
    const TypeMethods& (*methods)();
};

template <class T>
const TypeMethods& of() {
    return PrimitiveMethods<T>::instance();
}

/// In the order of registration. Rows of one native class share its methods, so that no type tag
/// tells them apart. "long" has 32 bits on every system.
constexpr PrimitiveRow kPrimitives[] = {
    {"bool", of<bool>},
    {"short", of<std::int16_t>},
    {"ushort", of<std::uint16_t>},
    {"int", of<std::int32_t>},
    {"uint", of<std::uint32_t>},
    {"long", of<std::int32_t>},
    {"ulong", of<std::uint32_t>},
    {"longlong", of<std::int64_t>},
    {"ulonglong", of<std::uint64_t>},
    {"float", of<float>},
    {"double", of<double>},
    {"int8", of<std::int8_t>},
    {"uint8", of<std::uint8_t>},
    {"int16", of<std::int16_t>},
    {"uint16", of<std::uint16_t>},
    {"int32", of<std::int32_t>},
    {"uint32", of<std::uint32_t>},
    {"int64", of<std::int64_t>},
    {"uint64", of<std::uint64_t>},
    {"byte", of<std::uint8_t>},
    {"pointer", of<void*>},
    {"type", of<Type>},
    {"string", of<nuo::string>},
    {"matrix44", of<Matrix44>},
    {"color3", of<Color3>},
    {"color4", of<Color4>},
    {"units_value", of<UnitsValue>},
    {"vector3", of<Vector3>},
    {"vector4", of<Vector4>},
    {"byte_buffer", of<nuo::buffer<nuo::byte>>},
    {nullptr, nullptr},
};

void adoptWithAlias(TypeBuilder& builder, nuo::string_ref name, Namespace sys) {
    const Type type = builder.setName(name).endBuild().adoptBy(sys);
    TypeAliasBuilder alias;
    alias.setName(name).setTypeName(nuo::string(".sys.", name)).setType(type);
    alias.adoptBy(sys.root());
}

}  // namespace

void startRuntime(Runtime& runtime) {
    const Namespace sys = NamespaceBuilder().setName("sys").adoptBy(runtime.root());
    TypeBuilder builder;
    for (const PrimitiveRow* row = kPrimitives; row->name != nullptr; ++row) {
        adoptWithAlias(builder.begin(&row->methods()), row->name, sys);
    }
    const Type pointer = sys.findType("pointer");
    adoptWithAlias(builder.begin().setArg("ref_type", "").addMember("to", "pointer", pointer),
                   "ref", sys);
    adoptWithAlias(builder.begin()
                       .addMember("type", "type", sys.findType("type"))
                       .addMember("to", "pointer", pointer),
                   "dynamic_ref", sys);
    adoptWithAlias(builder.begin(&PrimitiveMethods<Array>::instance()).setArg("value_type", ""),
                   "array", sys);
}

Type makeArrayType(Namespace target, Type element) {
    const nuo::string name(element.name(), "_array");
    const Type existing = target.findType(name);
    if (existing.valid()) return existing;
    TypeBuilder builder;
    return builder.setName(name)
        .setModel(target.locateType(".sys.array"))
        .setArg("value_type", element.fullName(), element)
        .endBuild()
        .adoptBy(target);
}

}  // namespace velmor
