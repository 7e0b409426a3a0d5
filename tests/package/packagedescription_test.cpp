#include "assets/package/packagedescription.h"

#include "assets/package/manifestwords.h"
#include "vfs/fixed_clock.h"

namespace {

namespace words = korvanet::platform::assets::words;

using korvanet::platform::assets::PackageDescription;
using korvanet::platform::assets::PropertyMap;

std::vector<std::string> Keys(const PropertyMap& elements) {
    std::vector<std::string> keys;
    for (const auto& [key, text] : elements) {
        keys.push_back(std::string(key.type.data()) + "/" + key.name.data());
    }
    return keys;
}

TEST(PropertyMap, IsSortedByTypeAndThenByNameWithHighBytesFirst) {
    PropertyMap map;
    map.Set({"string", "b"}, "");
    map.Set({"bool", "z"}, "");
    map.Set({"string", "\xc3\xa4"}, "");
    map.Set({"string", ""}, "");
    EXPECT_THAT(Keys(map),
                testing::ElementsAre("bool/z", "string/", "string/\xc3\xa4", "string/b"));
}

TEST(PropertyMap, GivesTheFirstElementOfANameOfAnyType) {
    PropertyMap map;
    map.Set({"string", "x"}, "s");
    map.Set({"bool", "x"}, "b");
    EXPECT_STREQ(map.FindByName("x")->second.data(), "b");
    EXPECT_EQ(map.FindByName("y"), nullptr);
}

TEST(PropertyMap, SetsOneElementAndLeavesOthersOfItsName) {
    PropertyMap map;
    map.Set({"string", "x"}, "s");
    map.Set({"bool", "x"}, "b");
    map.Set({"bool", "x"}, "c");
    EXPECT_THAT(Keys(map), testing::ElementsAre("bool/x", "string/x"));
    EXPECT_STREQ(map.FindByName("x")->second.data(), "c");
}

TEST(PropertyMap, SetsAnElementAloneOfItsName) {
    PropertyMap map;
    map.Set({"string", "x"}, "s");
    map.Set({"bool", "x"}, "b");
    map.Set({"bool", "y"}, "b");
    map.SetAlone("uuid", "x", "u");
    map.SetAlone("", "z", "n");
    EXPECT_THAT(Keys(map), testing::ElementsAre("bool/y", "name/z", "uuid/x"));
}

// Of the place where the package is written, and of the moment of each call.
TEST(PackageDescription, TellsTimesOfTheLocalClockAnewForEachFolder) {
    PackageDescription description;
    vfs_tests::FixedClock clock(0, "XYZ-2");
    description.CompleteFolder("A", "A");
    clock.Set(86400);
    description.CompleteFolder("B", "B");
    const auto created = [&](const char* folder) {
        return description.FindNode(folder)->FindByName(words::Created().name)->second;
    };
    EXPECT_STREQ(created("A").data(), "1970-01-01T02:00:00");
    EXPECT_STREQ(created("B").data(), "1970-01-02T02:00:00");
}

TEST(PackageDescription, CompletesOnlyWhatIsMissing) {
    PackageDescription description;
    description.NodeOf("R").Set({"uuid", "identifier"}, "MINE");
    description.CompleteFolder("R", "R");
    description.CompleteFolder("R", "ignored");
    EXPECT_STREQ(description.FindNode("R")->FindByName("identifier")->second.data(), "MINE");
    EXPECT_STREQ(description.FindNode("R")->FindByName("name")->second.data(), "R");
}

TEST(PackageDescription, ForgetsAPathAsFolderAndAsChild) {
    PackageDescription description;
    description.CompleteEntry("", "R");
    description.CompleteEntry("", "S");
    description.CompleteFolder("R", "R");
    description.CompleteEntry("R", "a");
    description.Forget("R", "", "R");
    description.Forget("unknown/path", "unknown", "path");
    EXPECT_EQ(description.FindNode("R"), nullptr);
    EXPECT_EQ(description.FindEntry("R", "a"), nullptr);
    EXPECT_EQ(description.FindEntry("", "R"), nullptr);
    EXPECT_NE(description.FindEntry("", "S"), nullptr);
}

}  // namespace
