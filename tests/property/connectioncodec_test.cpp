#include "assets/property/connectioncodec.h"

#include <gtest/gtest.h>

namespace korvanet::platform::assets {
namespace {

class NoTables final : public IConnectionCodec {
public:
    nuo::string Encode(const PropertyTableImp&) override { return {}; }
    PropertyTableImp* Decode(nuo::string_ref) override { return nullptr; }
};

TEST(ConnectionCodecTest, ScopesNest) {
    NoTables outer;
    NoTables inner;
    EXPECT_EQ(ConnectionCodecScope::Current(), nullptr);
    {
        const ConnectionCodecScope first(outer);
        {
            const ConnectionCodecScope second(inner);
            EXPECT_EQ(ConnectionCodecScope::Current(), &inner);
        }
        EXPECT_EQ(ConnectionCodecScope::Current(), &outer);
    }
    EXPECT_EQ(ConnectionCodecScope::Current(), nullptr);
}

TEST(ConnectionCodecTest, AStoredConnectionNamesLibraryAndTable) {
    EXPECT_TRUE(StoredConnection("LIB", "A") == ".slib.LIB.asset.A");
    EXPECT_TRUE(StoredConnection("", "") == ".slib..asset.");
}

TEST(ConnectionCodecTest, ThePrefixOfTheOwnLibraryIsStripped) {
    EXPECT_TRUE(ConnectedName("LIB", ".slib.LIB.asset.A") == "A");
    EXPECT_TRUE(ConnectedName("LIB", ".slib.LIB.asset.A.asset.B") == "A.asset.B");
    EXPECT_TRUE(ConnectedName("LIB", ".slib.LIB.asset.") == "");
}

TEST(ConnectionCodecTest, OfOtherTextsTheTableFollowsTheLastAssetPart) {
    EXPECT_TRUE(ConnectedName("LIB", ".slib.OTHER.asset.A") == "A");
    EXPECT_TRUE(ConnectedName("LIB", ".slib.OTHER.asset.A.asset.B") == "B");
    EXPECT_TRUE(ConnectedName("LIB", "x.asset.asset.A") == "A");
}

TEST(ConnectionCodecTest, ATextWithoutThatPartIsTheName) {
    EXPECT_TRUE(ConnectedName("LIB", "A") == "A");
    EXPECT_TRUE(ConnectedName("LIB", "") == "");
    EXPECT_TRUE(ConnectedName("LIB", ".slib.LIB.asset") == ".slib.LIB.asset");
}

}  // namespace
}  // namespace korvanet::platform::assets
