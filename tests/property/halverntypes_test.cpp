#include "assets/property/halverntypes.h"

#include <cstring>

#include "assets/property/colorvalues.h"
#include "assets/property/numbervalues.h"
#include "assets/property/propertymethods.h"
#include "nuo/common/buffer_archive.h"
#include "property/fixture.h"
#include "velmor/start_runtime.h"

namespace korvanet::platform::assets {
namespace {

class HalvernTypesTest : public PropertyTest {
protected:
    // The type of the native part of a value class.
    velmor::Type NativeOf(ValueClass value) const {
        return context.types.Value(value).items()[0].type();
    }
};

TEST_F(HalvernTypesTest, ACompositeHasOperationLinkAndDataInThisOrder) {
    for (std::size_t i = kFirstValueClass; i < kEndOfValueClasses; ++i) {
        const velmor::Type type = context.types.At(i);
        const char* name = ValueClassName(static_cast<ValueClass>(i));
        SCOPED_TRACE(name);
        ASSERT_TRUE(type.valid());
        EXPECT_TRUE(type.name() == name);
        ASSERT_EQ(type.items().size(), 3u);
        EXPECT_TRUE(type.items()[0].name() == "operation");
        EXPECT_TRUE(type.items()[1].name() == "link");
        EXPECT_TRUE(type.items()[2].name() == "data");
        EXPECT_EQ(Str(type.fullName()), std::string(".Halvern.halvern.") + name);
        EXPECT_EQ(Str(type.items()[0].type().fullName()), std::string(".Halvern.part.") + name);
        EXPECT_EQ(Str(type.items()[1].type().fullName()), ".Halvern.halvern.AssetConnection_array");
        EXPECT_EQ(type.items()[0].offset(), 0u);
        EXPECT_EQ(type.items()[1].offset(), type.items()[0].type().payload());
    }
}

TEST_F(HalvernTypesTest, PositionsFollowTheTableOfClasses) {
    const char* const names[] = {
        "BinaryValue",      "BooleanValue", "ChoiceValue",   "ChoiceListValue", "Color3List",
        "Color3Value",      "Color4List",   "Color4Value",   "DateTimeValue",   "GeneralUnitsValue",
        "IntegerList",      "IntegerValue", "Matrix44Value", "ReferenceValue",  "ScalarList",
        "ScalarValue",      "StringList",   "StringValue",   "TextureURIValue", "TextureValue",
        "UnSpecifiedValue", "UriValue",     "UriList",       "UuidValue",       "Vector3Value",
        "Vector4Value"};
    ASSERT_EQ(std::size(names), kEndOfValueClasses - kFirstValueClass);
    for (std::size_t i = 0; i < std::size(names); ++i) {
        EXPECT_STREQ(ValueClassName(static_cast<ValueClass>(kFirstValueClass + i)), names[i]);
    }
}

TEST_F(HalvernTypesTest, PlainTypesHaveTheirPositions) {
    EXPECT_EQ(Str(context.types.At(1).fullName()), ".Halvern.halvern.HalvernAsset");
    EXPECT_EQ(Str(context.types.At(2).fullName()), ".Halvern.halvern.AssetSymbolLink");
    EXPECT_EQ(Str(context.types.At(3).fullName()), ".Halvern.halvern.AssetConnection");
    EXPECT_EQ(Str(context.types.At(4).fullName()), ".Halvern.halvern.PropertyGroup");
    EXPECT_EQ(Str(context.types.At(5).fullName()), ".Halvern.halvern.PropertySymbolLink");
    EXPECT_EQ(context.types.Asset(), context.types.At(1));
    EXPECT_EQ(context.types.Connection(), context.types.At(3));
    EXPECT_EQ(Str(context.types.Namespaces().fullName()), ".Halvern");
}

TEST_F(HalvernTypesTest, TheArraysOfTheClassesAreInstancesOfTheGeneric) {
    for (const char* element : {"int8", "int", "double", "string", "color3", "color4"}) {
        const nuo::string path(nuo::string(nuo::string_ref("run."), element), "_array");
        const velmor::Type type = context.types.Namespaces().locateType(path);
        ASSERT_TRUE(type.valid()) << element;
        EXPECT_TRUE(type.modelName() == "array");
        EXPECT_EQ(type.arg("value_type")->type(), runtime.root().locateType(element));
        EXPECT_EQ(type.unresolvedArgs(), 0u);
    }
}

TEST_F(HalvernTypesTest, EveryValueObjectMadeByItsTypeStartsMarked) {
    for (std::size_t i = kFirstValueClass; i < kEndOfValueClasses; ++i) {
        const velmor::Type type = context.types.At(i);
        SCOPED_TRACE(ValueClassName(static_cast<ValueClass>(i)));
        void* memory = heap.malloc(type.payload(), type.alignment(), nullptr);
        const velmor::Object object(type, memory);
        type.methods().construct(object, &heap, nullptr);
        EXPECT_TRUE(static_cast<PropertyBase*>(memory)->IsMarked());
        EXPECT_EQ(static_cast<PropertyBase*>(memory)->SharedDescriptor().get(), nullptr);
        type.methods().destruct(object);
        heap.free(memory, type.payload(), type.alignment());
    }
}

TEST_F(HalvernTypesTest, AssigningAValueObjectCopiesMarkDescriptorAndMembers) {
    PropertyBase& source = Make(ValueClass::kStringValue, "source");
    PropertyBase& target = Make(ValueClass::kStringValue, "target");
    As<IStringValue>(source).SetValue(L"text");
    source.SetMarked(false);
    const velmor::Type type = source.Descriptor().type;
    type.methods().assign(source.AsObject(), target.AsObject());
    EXPECT_FALSE(target.IsMarked());
    EXPECT_EQ(&target.Descriptor(), &source.Descriptor());
    EXPECT_EQ(TextOf(target), "text");
    type.methods().assign(target.AsObject(), target.AsObject());
    EXPECT_EQ(TextOf(target), "text");
}

TEST_F(HalvernTypesTest, TheNativePartHasNoOwnerOnceItIsConstructed) {
    for (std::size_t i = kFirstValueClass; i < kEndOfValueClasses; ++i) {
        const velmor::Type native = NativeOf(static_cast<ValueClass>(i));
        SCOPED_TRACE(ValueClassName(static_cast<ValueClass>(i)));
        void* memory = heap.malloc(native.payload(), native.alignment(), nullptr);
        std::memset(memory, 0xFF, native.payload());
        const velmor::Object object(native, memory);
        native.methods().construct(object, &heap, nullptr);
        EXPECT_EQ(static_cast<PropertyBase*>(memory)->Owner(), nullptr);
        native.methods().destruct(object);
        heap.free(memory, native.payload(), native.alignment());
    }
}

TEST_F(HalvernTypesTest, TheNativePartWritesAndReadsNothing) {
    const nuo::byte bytes[] = {0, 1, 2, 3};
    nuo::buffer<nuo::byte> stored;
    stored.append(bytes, bytes + std::size(bytes));
    for (std::size_t i = kFirstValueClass; i < kEndOfValueClasses; ++i) {
        const auto value = static_cast<ValueClass>(i);
        SCOPED_TRACE(ValueClassName(value));
        PropertyBase& property = Make(value);
        const PropertyDescriptor* const descriptor = &property.Descriptor();
        const velmor::Type native = NativeOf(value);
        const velmor::Object part(native, &property);
        nuo::archive::mem_write_archive written;
        native.methods().serialize(written, part);
        EXPECT_EQ(written.size(), 0u);
        nuo::archive::buffer_in read(stored);
        native.methods().deserialize(read, part, &heap, nullptr);
        EXPECT_EQ(read.offset(), 0u);
        EXPECT_TRUE(property.IsMarked());
        EXPECT_EQ(&property.Descriptor(), descriptor);
    }
}

TEST_F(HalvernTypesTest, NoItemChangesTheLayoutOfTheNativePart) {
    const velmor::TypeItem& item = context.types.Value(ValueClass::kScalarValue).items()[2];
    ASSERT_TRUE(item.valid());
    std::uint64_t payload = 3, offset = 5, alignment = 2;
    bool pod = true;
    NativeOf(ValueClass::kStringValue).methods().nextLayout(item, payload, offset, alignment, pod);
    EXPECT_EQ(payload, 3u);
    EXPECT_EQ(offset, 5u);
    EXPECT_EQ(alignment, 2u);
    EXPECT_TRUE(pod);
}

TEST_F(HalvernTypesTest, TheNativePartIsKnownByTheTagOfItsClass) {
    const auto tag = [this](ValueClass value) { return &NativeOf(value).methods().typeinfo(); };
    EXPECT_EQ(tag(ValueClass::kScalarValue), &velmor::TypeInfo<ScalarValue>::instance());
    EXPECT_EQ(tag(ValueClass::kVector3Value), &velmor::TypeInfo<Vector3Value>::instance());
    EXPECT_EQ(tag(ValueClass::kColor4List), &velmor::TypeInfo<Color4List>::instance());
    EXPECT_EQ(&HalvernPropertyMethods<BooleanValue>::Instance().typeinfo(),
              &velmor::TypeInfo<BooleanValue>::instance());
    for (std::size_t i = kFirstValueClass; i < kEndOfValueClasses; ++i) {
        for (std::size_t j = kFirstValueClass; j < i; ++j)
            EXPECT_NE(*tag(static_cast<ValueClass>(i)), *tag(static_cast<ValueClass>(j)));
    }
}

TEST_F(HalvernTypesTest, TheNativePartComparesByItsInterfaceAlone) {
    const velmor::Type native = context.types.Value(ValueClass::kScalarValue).items()[0].type();
    EXPECT_EQ(native.methods().extendMethods(), nullptr);
    EXPECT_FALSE(native.isPod());
    EXPECT_EQ(native.payload(), kValueObjectSize);
}

TEST_F(HalvernTypesTest, ASecondContextOverOneRootTakesTheTypesOver) {
    ModuleContext second;
    InitializeHalvernTypes(runtime.root(), second);
    for (std::size_t i = 1; i < kEndOfValueClasses; ++i) {
        EXPECT_EQ(second.types.At(i), context.types.At(i)) << i;
    }
    EXPECT_EQ(second.types.Namespaces(), context.types.Namespaces());
}

TEST_F(HalvernTypesTest, WithoutADataTypeTheHandleIsNull) {
    velmor::Runtime bare("bare", &heap, nullptr);
    velmor::startRuntime(bare);
    // A namespace hides the type of its name.
    bare.root().createChild("vector3", '.');
    ModuleContext lacking;
    lacking.runtime = &bare;
    lacking.heap = &heap;
    InitializeHalvernTypes(bare.root(), lacking);
    EXPECT_FALSE(lacking.types.Value(ValueClass::kVector3Value).valid());
    EXPECT_TRUE(lacking.types.Value(ValueClass::kVector4Value).valid());
    EXPECT_FALSE(MakeProperty(lacking, ValueClass::kVector3Value, "p", "", 0));
}

}  // namespace
}  // namespace korvanet::platform::assets
