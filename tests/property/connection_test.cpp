#include "assets/property/connection.h"

#include "assets/property/connectioncodec.h"
#include "nuo/common/buffer_archive.h"
#include "property/fixture.h"

namespace korvanet::platform::assets {
namespace {

class OneTable final : public IConnectionCodec {
public:
    explicit OneTable(PropertyTableImp* table) : table_(table) {}
    nuo::string Encode(const PropertyTableImp& table) override {
        return nuo::string("to ", table.Name());
    }
    PropertyTableImp* Decode(nuo::string_ref) override { return table_; }

private:
    PropertyTableImp* table_;
};

class ConnectionTest : public PropertyTest {
protected:
    ConnectionTest() : table(NewTable()) { table.SetName("A"); }

    std::string Written(const AssetConnection& connection) {
        nuo::archive::mem_write_archive archive;
        type().methods().serialize(archive, {type(), &connection});
        const auto& bytes = archive.get_buffer();
        return {bytes.begin(), bytes.end()};
    }
    void Read(AssetConnection& connection, const std::string& text) {
        nuo::buffer<nuo::byte> bytes;
        const auto* first = reinterpret_cast<const nuo::byte*>(text.data());
        bytes.append(first, first + text.size());
        nuo::archive::buffer_in archive(bytes);
        type().methods().deserialize(archive, {type(), &connection}, &heap, nullptr);
    }
    velmor::Type type() const { return context.types.Connection(); }

    PropertyTableImp& table;
};

TEST_F(ConnectionTest, TheReflectedTypeIsTheNativeClass) {
    EXPECT_EQ(type().payload(), sizeof(AssetConnection));
    EXPECT_EQ(sizeof(AssetConnection), 32u);
    EXPECT_FALSE(type().isPod());
    EXPECT_TRUE(velmor::isNative<AssetConnection>(type()));
}

int Order(velmor::Type type, const AssetConnection& left, const AssetConnection& right) {
    return velmor::compare({type, &left}, {type, &right});
}

TEST_F(ConnectionTest, ConnectionsAndLinksAreOrderedByWhatTheyLinkTo) {
    const AssetConnection a{"a", &table, 0};
    const AssetConnection b{"b", nullptr, 0};
    EXPECT_EQ(Order(type(), a, b), -1);
    EXPECT_EQ(Order(type(), b, a), 1);
    EXPECT_EQ(Order(type(), a, AssetConnection{"a", nullptr, 1}), 0);
    EXPECT_EQ(compareNative(AssetSymbolLink{"a"}, AssetSymbolLink{"b"}), -1);
    EXPECT_EQ(compareNative(PropertySymbolLink{"b"}, PropertySymbolLink{"a"}), 1);
}

TEST_F(ConnectionTest, TheFormIsOneStringOfTheCodec) {
    const AssetConnection connection{"link", &table, 0};
    EXPECT_EQ(Written(connection), std::string("\4\0\0\0link", 8));
    OneTable codec(&table);
    const ConnectionCodecScope scope(codec);
    EXPECT_EQ(Written(connection), std::string("\4\0\0\0to A", 8));
    EXPECT_EQ(Written(AssetConnection{"link", nullptr, 0}), std::string("\4\0\0\0link", 8));
}

TEST_F(ConnectionTest, ReadingBindsTheTableOfTheCodecAndTakesItsPresentName) {
    AssetConnection connection;
    {
        OneTable codec(&table);
        const ConnectionCodecScope scope(codec);
        Read(connection, std::string("\1\0\0\0x", 5));
    }
    EXPECT_EQ(connection.data.get(), &table);
    EXPECT_EQ(table.ReferenceCount(), 2u);
    EXPECT_TRUE(connection.link == ".A");
    OneTable none(nullptr);
    const ConnectionCodecScope scope(none);
    Read(connection, std::string("\1\0\0\0x", 5));
    EXPECT_FALSE(connection.data);
    EXPECT_TRUE(connection.link == "x");
}

TEST_F(ConnectionTest, AssignmentCountsTheTable) {
    const AssetConnection source{"link", &table, 0};
    AssetConnection target;
    type().methods().assign({type(), &source}, {type(), &target});
    EXPECT_EQ(table.ReferenceCount(), 3u);
    EXPECT_TRUE(target.link == "link");
}

}  // namespace
}  // namespace korvanet::platform::assets
