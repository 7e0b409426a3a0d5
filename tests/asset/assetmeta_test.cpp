#include "assets/asset/assetmeta.h"

#include "asset/support.h"

namespace korvanet::platform::assets {

class AssetMetaTest : public AssetTest {
protected:
    static constexpr std::size_t kReadWrite = PropertyTableImp::kReadWriteGroup;
    static constexpr std::size_t kIteration = PropertyTableImp::kIterationGroup;

    AssetDefinition& definition = NewDefinition(*material, "DEF");
};

TEST_F(AssetMetaTest, APropertyIsLookedUpInItsGroupAlone) {
    PutText(definition, "UIName", "x");
    EXPECT_EQ(Str(definition.GetText(kIteration, "UIName")), "x");
    EXPECT_EQ(Str(definition.GetText(kReadWrite, "UIName")), "");
    EXPECT_EQ(asset_meta::TextCount(definition, kIteration, "UIName"), 1u);
    EXPECT_EQ(asset_meta::TextCount(definition, kReadWrite, "UIName"), 0u);
}

TEST_F(AssetMetaTest, NamesAreExact) {
    PutText(definition, "UIName", "x");
    EXPECT_EQ(Str(definition.GetText(kIteration, "uiname")), "");
}

TEST_F(AssetMetaTest, APropertyOfAnotherKindReadsAsNothing) {
    EXPECT_EQ(asset_meta::Integer(definition, kIteration, "UIName"), 0);
    EXPECT_FALSE(asset_meta::Boolean(definition, kIteration, "UIName"));
    EXPECT_EQ(Str(definition.GetText(kReadWrite, "version")), "");
}

TEST_F(AssetMetaTest, OnlyTheStoredProceduralTypeIsRenamed) {
    EXPECT_EQ(Str(asset_meta::AssetTypeForHosts("RPCGeometry")), "proceduralgeometry");
    EXPECT_EQ(Str(asset_meta::AssetTypeForHosts("rpcgeometry")), "rpcgeometry");
    EXPECT_EQ(Str(asset_meta::AssetTypeForHosts("")), "");
}

TEST_F(AssetMetaTest, OnlyBlanksAreCutFromTheEndOfAUiName) {
    PutText(definition, "UIName", " a \t ");
    EXPECT_EQ(Str(asset_meta::UiName(definition, noLocale, "")), " a \t");
    PutText(definition, "UIName", "   ");
    EXPECT_EQ(Str(asset_meta::UiName(definition, noLocale, "")), "");
}

TEST_F(AssetMetaTest, AnUnlocalizedKeyReadsAsItself) {
    localization.FindOrCreate("ENG", "LIB").Set("KEY", "message");
    const core::UTF8String english("eng");
    EXPECT_EQ(Str(asset_meta::Localized(world.context, "KEY", english, "LIB")), "message");
    EXPECT_EQ(Str(asset_meta::Localized(world.context, "OTHER", english, "LIB")), "OTHER");
    EXPECT_EQ(Str(asset_meta::Localized(world.context, "KEY", noLocale, "LIB")), "KEY");
}

}  // namespace korvanet::platform::assets
