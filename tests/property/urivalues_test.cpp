#include "assets/property/urivalues.h"

#include "property/fixture.h"

namespace korvanet::platform::assets {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UriValuesTest : public PropertyTest {
protected:
    ITextureURIValue& Texture(std::initializer_list<const wchar_t*> uris) {
        auto& value = MakeValue<ITextureURIValue>(ValueClass::kTextureURIValue);
        value.SetDimension(uris.size());
        std::uint64_t index = 0;
        for (const wchar_t* uri : uris) {
            value.SetValue(uri, index++);
        }
        return value;
    }
    static std::string UriAt(const ITextureURIValue& value, std::uint64_t index) {
        core::UTF8String text;
        value.GetValue(text, index);
        return text.AsUTF8();
    }
};

struct ResolutionCase {
    const wchar_t* uri;
    std::uint32_t resolution;
};

TEST_F(UriValuesTest, TheFirstFolderOfAUriTellsItsResolution) {
    auto& single = MakeValue<IUriValue>(ValueClass::kUriValue);
    auto& list = MakeValue<IUriValue>(ValueClass::kUriList);
    list.SetDimension(1);
    for (const ResolutionCase& each : {ResolutionCase{L"1/a", 0},
                                       {L"2/", 1},
                                       {L"3/x", 2},
                                       {L"4/Mats/x", 3},
                                       {L"5/x", 4},
                                       {L"0/x", 4},
                                       {L"1", 4},
                                       {L"", 4},
                                       {L"/", 4},
                                       {L"12/x", 4},
                                       {L"a/1/", 4}}) {
        for (IUriValue* value : {&single, &list}) {
            value->SetValue(each.uri);
            std::uint32_t resolution = 99;
            EXPECT_EQ(value->GetResolution(resolution), each.resolution != 4);
            EXPECT_EQ(resolution, each.resolution) << each.uri;
        }
    }
    EXPECT_THAT(reports.lines, IsEmpty());
}

TEST_F(UriValuesTest, AWrongIndexHasNoResolution) {
    auto& list = MakeValue<IUriValue>(ValueClass::kUriList);
    auto& texture = Texture({});
    std::uint32_t resolution = 0;
    EXPECT_FALSE(list.GetResolution(resolution, 0));
    EXPECT_FALSE(texture.GetResolution(resolution, 0));
    EXPECT_EQ(resolution, 4u);
    EXPECT_THAT(reports.lines, ElementsAre("error: Invalid dimension", "error: Invalid dimension"));
}

TEST_F(UriValuesTest, ATextureTellsItsResolutionByItsFolders) {
    auto& value = Texture({L""});
    for (const ResolutionCase& each : {ResolutionCase{L"1/Mats/a.png", 0},
                                       {L"2/Mats/a.png", 1},
                                       {L"3/Mats/", 2},
                                       {L"4/Mats/b/c", 3},
                                       {L"5/Mats/a", 4},
                                       {L"1/Mats", 4},
                                       {L"1/mats/a", 4},
                                       {L"x/1/Mats/a", 4},
                                       {L"", 4},
                                       {L"1", 4},
                                       {L"Environments/SunAndSky/Presets/3/a.hdr", 0},
                                       {L"Environments/SunAndSky/Presets/4/a.hdr", 1},
                                       {L"Environments/SunAndSky/Presets/x/5/a.hdr", 2},
                                       {L"Environments/SunAndSky/Presets/1/a.hdr", 4},
                                       {L"Environments/SunAndSky/Presets/6/a.hdr", 4},
                                       {L"Environments/SunAndSky/Presets/", 4},
                                       {L"Environments/SunAndSky/Presets/a.hdr", 4}}) {
        value.SetValue(each.uri);
        std::uint32_t resolution = 99;
        EXPECT_EQ(value.GetResolution(resolution), each.resolution != 4);
        EXPECT_EQ(resolution, each.resolution) << each.uri;
    }
}

TEST_F(UriValuesTest, AnEmptyTextureIsAPlainList) {
    EXPECT_FALSE(Texture({}).IsResolutionSet());
    core::UTF8String uri("before");
    EXPECT_FALSE(Texture({}).GetBaseUri(uri));
    EXPECT_STREQ(uri.AsUTF8(), "before");
}

TEST_F(UriValuesTest, UrisBelowTheFoldersOfTheLevelsMakeAResolutionSet) {
    auto& value = Texture({L"/textures/1/Mats/a", L"/textures/4/Mats/a",
                           L"/textures/Environments/SunAndSky/Presets/3/a"});
    EXPECT_TRUE(value.IsResolutionSet());
    core::UTF8String uri;
    EXPECT_TRUE(value.GetBaseUri(uri));
    EXPECT_STREQ(uri.AsUTF8(), "/textures/1/Mats/a");
}

TEST_F(UriValuesTest, SkyPresetsMakeAResolutionSetUpToTheFourthLevel) {
    EXPECT_TRUE(Texture({L"/textures/Environments/SunAndSky/Presets/1/a",
                         L"/textures/Environments/SunAndSky/Presets/4/a"})
                    .IsResolutionSet());
    EXPECT_FALSE(Texture({L"/textures/Environments/SunAndSky/Presets/5/a"}).IsResolutionSet());
    EXPECT_FALSE(Texture({L"/textures/Environments/SunAndSky/Presets/5"}).IsResolutionSet());
}

TEST_F(UriValuesTest, OneUriElsewhereMakesAPlainList) {
    EXPECT_FALSE(Texture({L"/textures/1/Mats/a", L"/other/a"}).IsResolutionSet());
    EXPECT_FALSE(Texture({L"/textures/5/Mats/a"}).IsResolutionSet());
    EXPECT_FALSE(Texture({L"/textures/1/Matsx/a"}).IsResolutionSet());
}

TEST_F(UriValuesTest, WithoutATextureLibraryTheRootIsEmpty) {
    context.textures = nullptr;
    EXPECT_TRUE(Texture({L"/1/Mats/a"}).IsResolutionSet());
    EXPECT_FALSE(Texture({L"/textures/1/Mats/a"}).IsResolutionSet());
}

TEST_F(UriValuesTest, AChangeOfTheListAsksAnew) {
    auto& value = Texture({L"/textures/1/Mats/a", L"/textures/2/Mats/a"});
    EXPECT_TRUE(value.IsResolutionSet());
    value.SetValue(L"elsewhere", 1);
    EXPECT_FALSE(value.IsResolutionSet());
    value.SetDimension(1);
    EXPECT_TRUE(value.IsResolutionSet());
}

TEST_F(UriValuesTest, SettingABaseTakesItsVariants) {
    textures.variants = {"/textures/2/Mats/a", "/textures/3/Mats/a"};
    auto& value = Texture({});
    EXPECT_TRUE(value.SetBaseUri(L"a"));
    EXPECT_EQ(value.GetDimension(), 2u);
    EXPECT_EQ(UriAt(value, 1), "/textures/3/Mats/a");
    EXPECT_TRUE(value.IsResolutionSet());
    core::UTF8String uri;
    EXPECT_TRUE(value.GetBaseUri(uri));
    EXPECT_STREQ(uri.AsUTF8(), "/textures/2/Mats/a");
}

TEST_F(UriValuesTest, ABaseWithoutVariantsIsAPlainListOfItself) {
    auto& value = Texture({L"x", L"y"});
    EXPECT_TRUE(value.SetBaseUri(L"a"));
    EXPECT_EQ(value.GetDimension(), 1u);
    EXPECT_EQ(UriAt(value, 0), "a");
    EXPECT_FALSE(value.IsResolutionSet());
    EXPECT_FALSE(value.SetBaseUri(nullptr));
}

TEST_F(UriValuesTest, ABaseThatFindsNoMemoryIsRefusedAndToldToNobody) {
    textures.variants = {"/textures/2/Mats/a", "/textures/3/Mats/a"};
    ChangeLog changes;
    PropertyBase& property = Make(ValueClass::kTextureURIValue);
    property.SetOwner(&changes);
    heap.full = true;
    EXPECT_FALSE(As<ITextureURIValue>(property).SetBaseUri(L"a"));
    heap.full = false;
    EXPECT_THAT(changes.lines, IsEmpty());
}

TEST_F(UriValuesTest, VariantsAreAskedForOncePerName) {
    textures.variants = {"/textures/2/Mats/a"};
    auto& first = Texture({});
    auto& second = Texture({});
    first.SetBaseUri(L"a");
    second.SetBaseUri(L"a");
    EXPECT_EQ(textures.questions, 1);
    EXPECT_EQ(UriAt(second, 0), "/textures/2/Mats/a");
    second.SetBaseUri(L"b");
    EXPECT_EQ(textures.questions, 2);
}

TEST_F(UriValuesTest, SettingABaseTellsTheOwner) {
    ChangeLog changes;
    PropertyBase& property = Make(ValueClass::kTextureURIValue);
    property.SetOwner(&changes);
    As<ITextureURIValue>(property).SetBaseUri(L"a");
    EXPECT_THAT(changes.lines, ElementsAre("value p"));
}

}  // namespace
}  // namespace korvanet::platform::assets
