#include "assets/property/propertystream.h"

#include "assets/property/connection.h"
#include "assets/property/connectioncodec.h"
#include "assets/property/propertyaccess.h"
#include "nuo/common/buffer_archive.h"
#include "property/fixture.h"
#include "velmor/primitive_methods.h"

namespace korvanet::platform::assets {
namespace {

using testing::ElementsAre;

// A codec of a library "LIB" that knows one table.
class OneTable final : public IConnectionCodec {
public:
    explicit OneTable(PropertyTableImp& table) : table_(table) {}
    nuo::string Encode(const PropertyTableImp& table) override {
        return StoredConnection("LIB", table.Name());
    }
    PropertyTableImp* Decode(nuo::string_ref text) override {
        return ConnectedName("LIB", text) == table_.Name() ? &table_ : nullptr;
    }

private:
    PropertyTableImp& table_;
};

class PropertyStreamTest : public PropertyTest {
protected:
    static std::string Written(void (*write)(nuo::archive::writer&, const PropertyBase&),
                               const PropertyBase& property) {
        nuo::archive::mem_write_archive archive;
        write(archive, property);
        const auto& bytes = archive.get_buffer();
        return {bytes.begin(), bytes.end()};
    }
    // Gives the number of bytes that were left.
    static std::uint64_t Read(void (*read)(nuo::archive::reader&, PropertyBase&),
                              PropertyBase& property, const std::string& text) {
        nuo::buffer<nuo::byte> bytes;
        const auto* first = reinterpret_cast<const nuo::byte*>(text.data());
        bytes.append(first, first + text.size());
        nuo::archive::buffer_in archive(bytes);
        read(archive, property);
        return archive.size() - archive.offset();
    }
    static std::string Bytes(std::initializer_list<int> values) {
        return {values.begin(), values.end()};
    }
};

TEST_F(PropertyStreamTest, ABodyIsTheFormOfItsDataType) {
    PropertyBase& integer = Make(ValueClass::kIntegerValue);
    As<IIntegerValue>(integer).SetValue(0x01020304);
    EXPECT_EQ(Written(WriteBody, integer), Bytes({4, 3, 2, 1}));
    PropertyBase& boolean = Make(ValueClass::kBooleanValue);
    As<IBooleanValue>(boolean).SetValue(true);
    EXPECT_EQ(Written(WriteBody, boolean), Bytes({1}));
    PropertyBase& text = Make(ValueClass::kStringValue);
    As<IStringValue>(text).SetValue(L"ab");
    EXPECT_EQ(Written(WriteBody, text), Bytes({2, 0, 0, 0, 'a', 'b'}));
    PropertyBase& scalar = Make(ValueClass::kScalarValue);
    As<IScalarValue>(scalar).SetValue(1.0);
    EXPECT_EQ(Written(WriteBody, scalar), Bytes({0, 0, 0, 0, 0, 0, 0xF0, 0x3F}));
    PropertyBase& units = Make(ValueClass::kGeneralUnitsValue);
    units.GetValue()->SetUnits(8193);
    EXPECT_EQ(Written(WriteBody, units), Bytes({1, 0x20, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    PropertyBase& bytes = Make(ValueClass::kBinaryValue);
    As<IBinaryValue>(bytes).SetData("xyz", 3);
    EXPECT_EQ(Written(WriteBody, bytes), Bytes({3, 0, 0, 0, 'x', 'y', 'z'}));
}

TEST_F(PropertyStreamTest, AListIsItsCountAndItsElements) {
    PropertyBase& list = Make(ValueClass::kStringList);
    EXPECT_EQ(Written(WriteBody, list), Bytes({0, 0, 0, 0}));
    list.GetValue()->SetDimension(2);
    As<IStringValue>(list).SetValue(L"a", 0);
    EXPECT_EQ(Written(WriteBody, list), Bytes({2, 0, 0, 0, 1, 0, 0, 0, 'a', 0, 0, 0, 0}));
    PropertyBase& numbers = Make(ValueClass::kIntegerList);
    numbers.GetValue()->SetDimension(1);
    EXPECT_EQ(Written(WriteBody, numbers), Bytes({1, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(PropertyStreamTest, ReferencesAndTexturesHaveNoBody) {
    for (const ValueClass value : {ValueClass::kReferenceValue, ValueClass::kTextureValue}) {
        PropertyBase& property = Make(value);
        EXPECT_FALSE(HasBody(property));
        EXPECT_EQ(Written(WriteBody, property), "");
        EXPECT_EQ(Read(ReadBody, property, "abc"), 3u);
    }
    EXPECT_TRUE(HasBody(Make(ValueClass::kScalarValue)));
}

TEST_F(PropertyStreamTest, EveryBodyReadsBackEqual) {
    for (std::size_t i = kFirstValueClass; i < kEndOfValueClasses; ++i) {
        const auto value = static_cast<ValueClass>(i);
        SCOPED_TRACE(ValueClassName(value));
        PropertyBase& source = Make(value);
        source.GetValue()->SetDimension(3);
        if (auto* text = ElementOf<nuo::string>(source)) {
            *text = nuo::string("text");
        }
        if (auto* number = ElementOf<double>(source)) {
            *number = 2.5;
        }
        PropertyBase& target = Make(value);
        EXPECT_EQ(Read(ReadBody, target, Written(WriteBody, source)), 0u);
        EXPECT_EQ(target.GetValue()->GetDimension(), source.GetValue()->GetDimension());
        EXPECT_EQ(velmor::compare(target.DataObject(), source.DataObject()), 0);
    }
}

TEST_F(PropertyStreamTest, ACutBodyRaises) {
    PropertyBase& scalar = Make(ValueClass::kScalarValue);
    EXPECT_THROW(Read(ReadBody, scalar, "1234567"), nuo::archive::read_failed);
    PropertyBase& list = Make(ValueClass::kStringList);
    EXPECT_THROW(Read(ReadBody, list, Bytes({0xFF, 0xFF, 0xFF, 0x7F, 0})),
                 nuo::archive::read_failed);
}

TEST_F(PropertyStreamTest, UrisThatAreReadForgetWhatTheListWas) {
    PropertyBase& source = Make(ValueClass::kTextureURIValue);
    source.GetValue()->SetDimension(1);
    As<IStringValue>(source).SetValue(L"/textures/1/Mats/a");
    PropertyBase& target = Make(ValueClass::kTextureURIValue);
    EXPECT_FALSE(As<ITextureURIValue>(target).IsResolutionSet());
    Read(ReadBody, target, Written(WriteBody, source));
    EXPECT_TRUE(As<ITextureURIValue>(target).IsResolutionSet());
}

// What a type's methods write is what is stored.
class LoudText final : public velmor::PrimitiveMethods<nuo::string> {
public:
    void serialize(nuo::archive::writer& writer, velmor::ConstObject object) const override {
        writer << nuo::string(native(object), "!");
    }
};

TEST_F(PropertyStreamTest, TheMethodsOfTheDataTypeMakeTheBody) {
    static const LoudText loud;
    PropertyBase& text = Make(ValueClass::kStringValue);
    As<IStringValue>(text).SetValue(L"a");
    text.Descriptor().dataType.imp()->methods = &loud;
    EXPECT_EQ(Written(WriteBody, text), Bytes({2, 0, 0, 0, 'a', '!'}));
}

class LoudConnection final : public velmor::PrimitiveMethods<AssetConnection> {
public:
    void serialize(nuo::archive::writer& writer, velmor::ConstObject) const override {
        writer << nuo::string("!");
    }
};

TEST_F(PropertyStreamTest, TheMethodsOfTheConnectionMakeTheTail) {
    static const LoudConnection loud;
    PropertyBase& place = Make(ValueClass::kReferenceValue, "p", 0x20);
    place.AppendConnection(NewAsset("texture"));
    const velmor::TypeMethods* own = &context.types.Connection().methods();
    context.types.Connection().imp()->methods = &loud;
    EXPECT_EQ(Written(WriteConnections, place), Bytes({1, 1, 1, 0, 0, 0, 1, 0, 0, 0, '!'}));
    context.types.Connection().imp()->methods = own;
}

TEST_F(PropertyStreamTest, ATailWithoutConnectionsIsOneByte) {
    PropertyBase& single = Make(ValueClass::kScalarValue, "p", 0x20);
    PropertyBase& multiple = Make(ValueClass::kScalarValue, "p", 0x40);
    EXPECT_EQ(Written(WriteConnections, single), Bytes({0}));
    EXPECT_EQ(Written(WriteConnections, multiple), Bytes({0}));
    EXPECT_EQ(Read(ReadConnections, single, Bytes({0, 9})), 1u);
}

TEST_F(PropertyStreamTest, AnotherSchemasTailIsReadAndDroppedWhereNoneIsTaken) {
    PropertyTableImp& asset = NewAsset("texture");
    asset.SetName("A");
    OneTable codec(asset);
    const ConnectionCodecScope scope(codec);
    PropertyBase& property = Make(ValueClass::kScalarValue);
    const std::string tail = Bytes({1, 1, 1, 0, 0, 0, 1, 0, 0, 0}) + "A";
    EXPECT_EQ(Read(ReadConnections, property, tail + "rest"), 4u);
    EXPECT_EQ(property.GetConnectedAssetCount(), 0u);
    EXPECT_EQ(Written(WriteConnections, property), Bytes({0}));
}

TEST_F(PropertyStreamTest, ATailTellsTheMarkTheCountAndTheConnections) {
    PropertyTableImp& asset = NewAsset("texture");
    asset.SetName("A");
    OneTable codec(asset);
    const ConnectionCodecScope scope(codec);
    PropertyBase& place = Make(ValueClass::kReferenceValue, "p", 0x40);
    place.AppendConnection(asset);
    place.SetMarked(false);
    const std::string stored = ".slib.LIB.asset.A";
    const std::string tail = Bytes({1, 0, 1, 0, 0, 0, 17, 0, 0, 0}) + stored;
    EXPECT_EQ(Written(WriteConnections, place), tail);
    PropertyBase& target = Make(ValueClass::kReferenceValue, "p", 0x40);
    asset.SetName("A");
    EXPECT_EQ(Read(ReadConnections, target, tail), 0u);
    EXPECT_FALSE(target.IsMarked());
    ASSERT_EQ(target.GetConnectedAssetCount(), 1u);
    EXPECT_EQ(target.ConnectedTable(0), &asset);
    EXPECT_TRUE(target.ConnectionAt(0).link == ".A");
    EXPECT_EQ(asset.ReferenceCount(), 3u);
}

TEST_F(PropertyStreamTest, AConnectionToNoTableIsDropped) {
    PropertyTableImp& asset = NewAsset("texture");
    asset.SetName("A");
    OneTable codec(asset);
    const ConnectionCodecScope scope(codec);
    PropertyBase& target = Make(ValueClass::kReferenceValue, "p", 0x40);
    const std::string tail =
        Bytes({1, 1, 2, 0, 0, 0}) + Bytes({1, 0, 0, 0}) + "B" + Bytes({1, 0, 0, 0}) + "A";
    EXPECT_EQ(Read(ReadConnections, target, tail), 0u);
    ASSERT_EQ(target.GetConnectedAssetCount(), 1u);
    EXPECT_EQ(target.ConnectedTable(0), &asset);
}

TEST_F(PropertyStreamTest, ATailReplacesTheConnectionsThatWereThere) {
    PropertyBase& target = Make(ValueClass::kReferenceValue, "p", 0x40);
    target.AppendConnection(NewAsset("texture"));
    Read(ReadConnections, target, Bytes({0}));
    EXPECT_EQ(target.GetConnectedAssetCount(), 0u);
}

TEST_F(PropertyStreamTest, ACountThatLiesRaisesWhereTheDataEnds) {
    PropertyBase& target = Make(ValueClass::kReferenceValue, "p", 0x40);
    EXPECT_THROW(Read(ReadConnections, target, Bytes({1, 1, 0xFF, 0xFF, 0xFF, 0xFF, 1, 0, 0, 0})),
                 nuo::archive::read_failed);
    EXPECT_THROW(Read(ReadConnections, target, Bytes({1, 1, 1})), nuo::archive::read_failed);
    EXPECT_THROW(Read(ReadConnections, target, Bytes({1})), nuo::archive::read_failed);
    EXPECT_THROW(Read(ReadConnections, target, ""), nuo::archive::read_failed);
}

TEST_F(PropertyStreamTest, WithoutACodecAConnectionIsItsLinkText) {
    PropertyTableImp& asset = NewAsset("texture");
    asset.SetName("A");
    PropertyBase& place = Make(ValueClass::kReferenceValue, "p", 0x40);
    place.AppendConnection(asset);
    EXPECT_EQ(Written(WriteConnections, place), Bytes({1, 1, 1, 0, 0, 0, 2, 0, 0, 0, '.', 'A'}));
}

}  // namespace
}  // namespace korvanet::platform::assets
