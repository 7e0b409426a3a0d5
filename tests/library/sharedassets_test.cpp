#include "assets/library/sharedassets.h"

#include <gtest/gtest.h>

namespace korvanet::platform::assets {
namespace {

SharedAssets::Entry Texture(const char* identifier, const char* name) {
    return {"texture", name, identifier, {}};
}

TEST(SharedAssets, OnlyTexturesAndPhysicalMaterialsAreShared) {
    EXPECT_TRUE(SharedAssets::IsShared("texture"));
    EXPECT_TRUE(SharedAssets::IsShared("physicalmaterial"));
    EXPECT_FALSE(SharedAssets::IsShared("materialappearance"));
    EXPECT_FALSE(SharedAssets::IsShared(""));
}

TEST(SharedAssets, AKeyIsTypeColonName) {
    EXPECT_TRUE(SharedAssets::Key("texture", "Brick") == "texture:Brick");
}

TEST(SharedAssets, AnEnteredAssetStandsInAllThreeIndexes) {
    SharedAssets shared;
    shared.Enter(Texture("t1", "Brick"));
    EXPECT_EQ(shared.ByName("texture", "Brick").count("t1"), 1U);
    EXPECT_EQ(shared.ByUiName("texture", "Brick").count("t1"), 1U);
    EXPECT_EQ(shared.ByType("texture").count("t1"), 1U);
    EXPECT_TRUE(shared.ByName("physicalmaterial", "Brick").empty());
}

TEST(SharedAssets, AllNamesOfATypeAreFoundTogether) {
    SharedAssets shared;
    shared.Enter(Texture("t1", "Brick"));
    shared.Enter(Texture("t2", "Oak"));
    shared.Enter({"physicalmaterial", "Steel", "p1", {}});
    EXPECT_EQ(shared.ByNameOfType("texture").size(), 2U);
    EXPECT_EQ(shared.ByUiNameOfType("texture").size(), 2U);
    EXPECT_EQ(shared.ByNameOfType("tex").size(), 0U);
}

TEST(SharedAssets, OthersAreOnlyCountedForWhatTheyName) {
    SharedAssets shared;
    const SharedAssets::Entry paint{"materialappearance", "Paint", "m1", {"t1", "t1", ""}};
    shared.Enter(paint);
    EXPECT_EQ(shared.Count("t1"), 2U);
    EXPECT_EQ(shared.Count(""), 0U);
    EXPECT_TRUE(shared.ByName("materialappearance", "Paint").empty());
    shared.Leave(paint);
    EXPECT_EQ(shared.Count("t1"), 0U);
}

TEST(SharedAssets, LeavingTakesTheIdentifierFromEveryKey) {
    SharedAssets shared;
    shared.Enter(Texture("t1", "Brick"));
    shared.AddName("texture", "Wall", "t1");
    shared.Leave(Texture("t1", "Brick"));
    EXPECT_TRUE(shared.ByNameOfType("texture").empty());
    EXPECT_TRUE(shared.ByUiNameOfType("texture").empty());
    EXPECT_TRUE(shared.ByType("texture").empty());
}

TEST(SharedAssets, AddingANameTwiceIsFalse) {
    SharedAssets shared;
    EXPECT_TRUE(shared.AddName("texture", "Wall", "t1"));
    EXPECT_FALSE(shared.AddName("texture", "Wall", "t1"));
    EXPECT_TRUE(shared.AddName("texture", "Wall", "t2"));
    EXPECT_EQ(shared.ByName("texture", "Wall").size(), 2U);
}

TEST(SharedAssets, RemovingANameTakesTheWholeKey) {
    SharedAssets shared;
    shared.AddName("texture", "Wall", "t1");
    shared.AddName("texture", "Wall", "t2");
    EXPECT_TRUE(shared.RemoveName("texture", "Wall"));
    EXPECT_FALSE(shared.RemoveName("texture", "Wall"));
    EXPECT_TRUE(shared.ByName("texture", "Wall").empty());
}

TEST(SharedAssets, SharingAndUnsharingTakeKeyAndIdentifierFromTheDefinition) {
    SharedAssets shared;
    EXPECT_TRUE(shared.Share(Texture("t1", "Brick")));
    EXPECT_FALSE(shared.Share(Texture("t1", "Brick")));
    EXPECT_TRUE(shared.Unshare(Texture("t1", "Brick")));
    EXPECT_FALSE(shared.Unshare(Texture("t1", "Brick")));
}

TEST(SharedAssets, ClearingForgetsIndexesCountsAndTag) {
    SharedAssets shared;
    shared.SetTag("v1");
    shared.Enter({"texture", "Brick", "t1", {"x"}});
    shared.Clear();
    EXPECT_TRUE(shared.ByNameOfType("texture").empty());
    EXPECT_EQ(shared.Count("x"), 0U);
    EXPECT_TRUE(shared.Tag().empty());
}

}  // namespace
}  // namespace korvanet::platform::assets
