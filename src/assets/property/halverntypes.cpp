#include "assets/property/halverntypes.h"

#include "assets/property/binaryvalues.h"
#include "assets/property/choicevalues.h"
#include "assets/property/colorvalues.h"
#include "assets/property/connection.h"
#include "assets/property/halvernasset.h"
#include "assets/property/modulecontext.h"
#include "assets/property/numbervalues.h"
#include "assets/property/propertygroup.h"
#include "assets/property/propertymethods.h"
#include "assets/property/referencevalues.h"
#include "assets/property/stringvalues.h"
#include "assets/property/urivalues.h"
#include "velmor/primitive_methods.h"
#include "velmor/start_runtime.h"
#include "velmor/type_builder.h"

namespace korvanet::platform::assets {

namespace {

using MethodsOf = const velmor::TypeMethods& (*)();

struct ValueRow {
    const char* name;
    const char* dataType;
    MethodsOf methods;
};

template <class T>
constexpr ValueRow Row(const char* name, const char* dataType) {
    return {name, dataType, &HalvernPropertyMethods<T>::Instance};
}

// In the order of ValueClass.
constexpr std::array<ValueRow, kEndOfValueClasses - kFirstValueClass> kValueRows{{
    Row<BinaryValue>("BinaryValue", "byte_buffer"),
    Row<BooleanValue>("BooleanValue", "bool"),
    Row<ChoiceValue>("ChoiceValue", "int"),
    Row<ChoiceListValue>("ChoiceListValue", "run.int_array"),
    Row<Color3List>("Color3List", "run.color3_array"),
    Row<Color3Value>("Color3Value", "color3"),
    Row<Color4List>("Color4List", "run.color4_array"),
    Row<Color4Value>("Color4Value", "color4"),
    Row<DateTimeValue>("DateTimeValue", "string"),
    Row<GeneralUnitsValue>("GeneralUnitsValue", "units_value"),
    Row<IntegerList>("IntegerList", "run.int_array"),
    Row<IntegerValue>("IntegerValue", "int"),
    Row<Matrix44Value>("Matrix44Value", "matrix44"),
    Row<ReferenceValue>("ReferenceValue", "halvern.AssetConnection"),
    Row<ScalarList>("ScalarList", "run.double_array"),
    Row<ScalarValue>("ScalarValue", "double"),
    Row<StringList>("StringList", "run.string_array"),
    Row<StringValue>("StringValue", "string"),
    Row<TextureURIValue>("TextureURIValue", "run.string_array"),
    Row<TextureValue>("TextureValue", "halvern.AssetSymbolLink"),
    Row<UnSpecifiedValue>("UnSpecifiedValue", "run.int8_array"),
    Row<UriValue>("UriValue", "string"),
    Row<UriList>("UriList", "run.string_array"),
    Row<UuidValue>("UuidValue", "string"),
    Row<Vector3Value>("Vector3Value", "vector3"),
    Row<Vector4Value>("Vector4Value", "vector4"),
}};

template <class T>
const velmor::TypeMethods& Primitive() {
    return velmor::PrimitiveMethods<T>::instance();
}

struct PlainRow {
    const char* name;
    MethodsOf methods;
    std::size_t position;
};

// In the order of making; a connection comes last of them.
constexpr std::array<PlainRow, 5> kPlainRows{{
    {"PropertyGroup", &Primitive<PropertyGroup>, 4},
    {"PropertySymbolLink", &Primitive<PropertySymbolLink>, 5},
    {"HalvernAsset", &HalvernAssetMethods, 1},
    {"AssetSymbolLink", &Primitive<AssetSymbolLink>, 2},
    {"AssetConnection", &AssetConnectionMethods, 3},
}};

constexpr std::array<const char*, 6> kRunArrayElements{"int8",   "int",    "double",
                                                       "string", "color3", "color4"};

constexpr const char* kRootName = "Halvern";
constexpr const char* kTypesName = "halvern";
constexpr const char* kPartsName = "part";
constexpr const char* kArraysName = "run";

velmor::Type MakeNative(velmor::Namespace owner, const char* name,
                        const velmor::TypeMethods& methods) {
    velmor::TypeBuilder builder;
    builder.begin(&methods).setName(name).endBuild();
    return builder.adoptBy(owner);
}

velmor::Type MakeValue(velmor::Namespace owner, const char* name, velmor::Type operation,
                       velmor::Type link, velmor::Type data) {
    velmor::TypeBuilder builder;
    builder.begin()
        .setName(name)
        .addMember("operation", operation.fullName(), operation)
        .addMember("link", link.fullName(), link)
        .addMember("data", data.fullName(), data)
        .endBuild();
    return builder.adoptBy(owner);
}

}  // namespace

class HalvernTypesBuilder {
public:
    HalvernTypesBuilder(velmor::Namespace root, HalvernTypes& types) : root_(root), types_(types) {}

    void Run() {
        const velmor::Namespace existing = root_.findChild(kRootName);
        if (existing.valid()) {
            TakeOver(existing);
        } else {
            Build();
        }
    }

private:
    void TakeOver(velmor::Namespace existing) {
        types_.namespaces_ = existing;
        const velmor::Namespace types = existing.findChild(kTypesName);
        if (!types.valid()) {
            return;
        }
        for (const PlainRow& row : kPlainRows) {
            types_.types_[row.position] = types.findType(row.name);
        }
        for (std::size_t i = 0; i < kValueRows.size(); ++i) {
            types_.types_[kFirstValueClass + i] = types.findType(kValueRows[i].name);
        }
    }

    void Build() {
        types_.namespaces_ = root_.createChild(kRootName, '.');
        const velmor::Namespace types = types_.namespaces_.createChild(kTypesName, '.');
        const velmor::Namespace parts = types_.namespaces_.createChild(kPartsName, '.');
        for (const PlainRow& row : kPlainRows) {
            types_.types_[row.position] = MakeNative(types, row.name, row.methods());
        }
        const velmor::Type link = velmor::makeArrayType(types, types_.Connection());
        BuildRunArrays();
        for (std::size_t i = 0; i < kValueRows.size(); ++i) {
            const ValueRow& row = kValueRows[i];
            const velmor::Type operation = MakeNative(parts, row.name, row.methods());
            const velmor::Type data = types_.namespaces_.locateType(row.dataType);
            if (data.valid()) {
                types_.types_[kFirstValueClass + i] =
                    MakeValue(types, row.name, operation, link, data);
            }
        }
    }

    // The arrays that the value classes name; they belong to the runtime and not to this layer.
    void BuildRunArrays() {
        const velmor::Namespace arrays = root_.createChild(kArraysName, '.');
        for (const char* element : kRunArrayElements) {
            const velmor::Type type = root_.locateType(element);
            if (type.valid()) {
                velmor::makeArrayType(arrays, type);
            }
        }
    }

    velmor::Namespace root_;
    HalvernTypes& types_;
};

const char* ValueClassName(ValueClass value) {
    return kValueRows[static_cast<std::size_t>(value) - kFirstValueClass].name;
}

void InitializeHalvernTypes(velmor::Namespace root, ModuleContext& context) {
    HalvernTypesBuilder(root, context.types).Run();
}

}  // namespace korvanet::platform::assets
