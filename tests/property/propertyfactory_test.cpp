#include "assets/property/propertyfactory.h"

#include "assets/property/connection.h"
#include "assets/property/numbervalues.h"
#include "assets/property/propertyaccess.h"
#include "property/fixture.h"
#include "velmor/array.h"

namespace korvanet::platform::assets {
namespace {

class PropertyFactoryTest : public PropertyTest {};

TEST_F(PropertyFactoryTest, AMadePropertyHasItsOwnDescriptor) {
    const OwnedProperty property =
        MakeProperty(context, ValueClass::kScalarValue, "name", "label", 0x400);
    const PropertyDescriptor& descriptor = property->Descriptor();
    EXPECT_TRUE(descriptor.name == "name");
    EXPECT_TRUE(descriptor.label == "label");
    EXPECT_EQ(descriptor.flags, 0x400u);
    EXPECT_EQ(descriptor.type, context.types.Value(ValueClass::kScalarValue));
    EXPECT_EQ(descriptor.context, &context);
    EXPECT_EQ(descriptor.ReferenceCount(), 1u);
    EXPECT_FALSE(descriptor.bounds);
    EXPECT_FALSE(descriptor.choices);
}

TEST_F(PropertyFactoryTest, APropertyIsOneBlockAndGivesItBack) {
    const int blocks = heap.blocks;
    {
        const OwnedProperty property =
            MakeProperty(context, ValueClass::kScalarValue, "name", "", 0);
        EXPECT_EQ(heap.blocks, blocks + 1);
    }
    EXPECT_EQ(heap.blocks, blocks);
}

TEST_F(PropertyFactoryTest, ACopySharesTheDescriptorUntilTheLastPropertyGoes) {
    OwnedProperty first = MakeProperty(context, ValueClass::kScalarValue, "name", "", 0);
    OwnedProperty second = CopyProperty(*first);
    const intrusive_ptr<PropertyDescriptor> descriptor(&first->Descriptor());
    EXPECT_EQ(&second->Descriptor(), descriptor.get());
    EXPECT_EQ(descriptor->ReferenceCount(), 3u);
    first = OwnedProperty();
    EXPECT_EQ(descriptor->ReferenceCount(), 2u);
    second = OwnedProperty();
    EXPECT_EQ(descriptor->ReferenceCount(), 1u);
}

TEST_F(PropertyFactoryTest, ACopyHasTheValueOfEveryClass) {
    for (std::size_t i = kFirstValueClass; i < kEndOfValueClasses; ++i) {
        const auto value = static_cast<ValueClass>(i);
        SCOPED_TRACE(ValueClassName(value));
        PropertyBase& source = Make(value, "p", 0x60);
        source.GetValue()->SetDimension(2);
        source.SetMarked(false);
        if (auto* text = ElementOf<nuo::string>(source)) {
            *text = nuo::string("text");
        }
        if (auto* number = ElementOf<double>(source)) {
            *number = 2.5;
        }
        const OwnedProperty copy = CopyProperty(source);
        EXPECT_FALSE(copy->IsMarked());
        EXPECT_EQ(copy->GetValue()->GetDimension(), source.GetValue()->GetDimension());
        EXPECT_EQ(velmor::compare(copy->DataObject(), source.DataObject()), 0);
        EXPECT_EQ(copy->Owner(), nullptr);
    }
}

TEST_F(PropertyFactoryTest, ACopiedTextSharesItsBlockUntilOneIsSet) {
    PropertyBase& source = Make(ValueClass::kStringValue);
    As<IStringValue>(source).SetValue(L"text");
    const OwnedProperty copy = CopyProperty(source);
    EXPECT_EQ(ElementOf<nuo::string>(*copy)->data(), ElementOf<nuo::string>(source)->data());
    As<IStringValue>(*copy).SetValue(L"other");
    EXPECT_EQ(TextOf(source), "text");
}

TEST_F(PropertyFactoryTest, ACopyIsConnectedToTheSameTables) {
    PropertyTableImp& asset = NewAsset("texture");
    PropertyBase& source = Make(ValueClass::kReferenceValue, "p", 0x20);
    source.AppendConnection(asset);
    {
        const OwnedProperty copy = CopyProperty(source);
        EXPECT_EQ(copy->ConnectedTable(0), &asset);
        EXPECT_EQ(asset.ReferenceCount(), 3u);
    }
    EXPECT_EQ(asset.ReferenceCount(), 2u);
}

TEST_F(PropertyFactoryTest, ACopyCanHaveADescriptorOfItsOwn) {
    PropertyBase& source = Make(ValueClass::kIntegerValue, "p", 0x1);
    const intrusive_ptr<KRVTBounds> bounds(MakeBounds(true, 0, true, true, 9, true, 1, false));
    As<IntegerValue>(source).SetBounds(bounds.get());
    As<IntegerValue>(source).SetValue(4, 0);
    const OwnedProperty copy = CopyProperty(source, *source.Descriptor().Copy());
    EXPECT_NE(&copy->Descriptor(), &source.Descriptor());
    EXPECT_EQ(copy->Name(), source.Name());
    EXPECT_EQ(copy->GetFlags(), 0x1u);
    EXPECT_EQ(copy->Descriptor().bounds.get(), bounds.get());
    EXPECT_EQ(As<IIntegerValue>(*copy).GetValue(), 4);
    EXPECT_EQ(copy->Descriptor().ReferenceCount(), 1u);
}

TEST_F(PropertyFactoryTest, CopyingAValueLeavesTheRestAlone) {
    PropertyBase& source = Make(ValueClass::kStringList, "source");
    PropertyBase& target = Make(ValueClass::kStringList, "target");
    source.GetValue()->SetDimension(1);
    source.SetMarked(false);
    As<IStringValue>(source).SetValue(L"a");
    CopyValue(source, target);
    EXPECT_EQ(TextOf(target), "a");
    EXPECT_TRUE(target.IsMarked());
    EXPECT_TRUE(target.Name() == "target");
}

TEST_F(PropertyFactoryTest, CopyingUrisForgetsWhatTheListWas) {
    PropertyBase& source = Make(ValueClass::kTextureURIValue);
    PropertyBase& target = Make(ValueClass::kTextureURIValue);
    EXPECT_FALSE(As<ITextureURIValue>(target).IsResolutionSet());
    source.GetValue()->SetDimension(1);
    As<IStringValue>(source).SetValue(L"/textures/1/Mats/a");
    CopyValue(source, target);
    EXPECT_TRUE(As<ITextureURIValue>(target).IsResolutionSet());
}

TEST_F(PropertyFactoryTest, ElementsAreReachedByIndexAndClass) {
    PropertyBase& list = Make(ValueClass::kStringList);
    list.GetValue()->SetDimension(2);
    EXPECT_NE(ElementOf<nuo::string>(list, 1), nullptr);
    EXPECT_EQ(ElementOf<nuo::string>(list, 2), nullptr);
    EXPECT_EQ(ElementOf<double>(list, 0), nullptr);
    const PropertyBase& single = Make(ValueClass::kScalarValue);
    EXPECT_NE(ElementOf<double>(single), nullptr);
    EXPECT_EQ(ElementOf<double>(single, 1), nullptr);
    EXPECT_EQ(ElementOf<nuo::string>(single), nullptr);
}

}  // namespace
}  // namespace korvanet::platform::assets
