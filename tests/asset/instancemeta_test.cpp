#include "asset/support.h"

#include <korvanet/platform/core/jpkuuid.h>

namespace korvanet::platform::assets {

class InstanceMetaTest : public AssetTest {
protected:
    InstanceMetaTest() { instance.AddObserver(&log); }
    ~InstanceMetaTest() override { instance.RemoveObserver(&log); }

    static core::UTF8String S(const char* text) { return core::UTF8String(text); }

    AssetInstance& instance = NewInstance(NewDefinition(*material, "DEF"));
    ObserverLog log;
};

TEST_F(InstanceMetaTest, AnswersWithItsOwnMetaValues) {
    AssetDefinition& definition = *instance.Definition();
    for (const char* name :
         {"UIName", "keyword", "category", "thumbnail", "description", "swatch", "VersionGUID"}) {
        PutText(definition, name, "of the definition");
        PutText(instance, name, (std::string("own ") + name + " ").c_str());
    }
    PutText(instance, "keyword", "second", 1);
    PutText(instance, "thumbnail", "second.png", 1);
    const auto answer = [this](bool found) { return found ? text.AsUTF8() : "(none)"; };
    EXPECT_STREQ(answer(instance.GetUIName(text, noLocale)), "own UIName");
    EXPECT_EQ(instance.GetKeywordCount(), 2u);
    EXPECT_STREQ(answer(instance.GetKeyword(0, text, noLocale)), "own keyword ");
    EXPECT_STREQ(answer(instance.GetKeyword(1, text, noLocale)), "second");
    EXPECT_EQ(instance.GetCategoryCount(), 1u);
    EXPECT_STREQ(answer(instance.GetCategory(0, text, noLocale)), "own category ");
    EXPECT_EQ(instance.GetThumbnailCount(), 1u);
    EXPECT_STREQ(answer(instance.GetThumbnailName(0, text)), "thumbnail");
    EXPECT_STREQ(answer(instance.GetThumbnail(0, text)), "own thumbnail ");
    EXPECT_STREQ(answer(instance.GetDescription(text, noLocale)), "own description ");
    EXPECT_STREQ(answer(instance.GetSwatch(text)), "own swatch ");
    EXPECT_STREQ(answer(instance.GetVersionGUID(text)), "own VersionGUID ");
    EXPECT_EQ(reports.Take(), Lines{});
    EXPECT_EQ(log.Take(), Lines{});
}

TEST_F(InstanceMetaTest, MessagesComeFromTheDomainOfTheInstance) {
    localization.FindOrCreate("ENG", "A").Set("KEY", "from A ");
    localization.FindOrCreate("ENG", "B").Set("KEY", "from B ");
    instance.SetAssetLibId("B");
    for (const char* name : {"UIName", "keyword", "category", "description"})
        PutText(instance, name, "KEY");
    const auto english = S("ENG");
    EXPECT_TRUE(instance.GetUIName(text, english));
    EXPECT_STREQ(text.AsUTF8(), "from B");
    EXPECT_TRUE(instance.GetKeyword(0, text, english));
    EXPECT_STREQ(text.AsUTF8(), "from B ");
    EXPECT_TRUE(instance.GetCategory(0, text, english));
    EXPECT_STREQ(text.AsUTF8(), "from B ");
    EXPECT_TRUE(instance.GetDescription(text, english));
    EXPECT_STREQ(text.AsUTF8(), "from B ");
}

TEST_F(InstanceMetaTest, AnswersWithTheUiDefinitionsAndImplementationsOfItsSchema) {
    KRVTSchemaDefinition* schema = LoadXml(
        *world.global, DerivedXml("Ui", "CommonSchema",
                                  "<ui id='UIDefinition' val='ui.xml'/>"
                                  "<ui id='AdvancedUIDefinition' val='more.xml'/>"
                                  "<implementation id='ImplementationGeneric' val='generic.xml'/>"
                                  "<implementation id='ImplementationCGFX' val='cgfx.xml'/>"));
    AssetInstance& made = NewInstance(NewDefinition(*schema, "UI"));
    const auto answer = [this](bool found) { return found ? text.AsUTF8() : "(none)"; };
    EXPECT_EQ(made.GetUIDefinitionCount(), 2u);
    EXPECT_STREQ(answer(made.GetUIDefinitionName(1, text)), "AdvancedUIDefinition");
    EXPECT_STREQ(answer(made.GetUIDefinition(0, text)), "ui.xml");
    EXPECT_STREQ(answer(made.GetUIDefinition(1, text)), "more.xml");
    EXPECT_EQ(made.GetImplementationCount(), 2u);
    EXPECT_STREQ(answer(made.GetImplementationIdentifier(0, text)), "ImplementationCGFX");
    EXPECT_STREQ(answer(made.GetImplementationUri(0, text)), "cgfx.xml");
    EXPECT_STREQ(answer(made.GetImplementationIdentifier(1, text)), "ImplementationGeneric");
    EXPECT_STREQ(answer(made.GetImplementationUri(1, text)), "generic.xml");
}

TEST_F(InstanceMetaTest, AnIndexPastTheCountIsReportedByEveryGetterThatHasOne) {
    text.AssignUTF8("kept");
    EXPECT_FALSE(instance.GetKeyword(1, text, noLocale));
    EXPECT_FALSE(instance.GetCategory(1, text, noLocale));
    EXPECT_FALSE(instance.GetThumbnailName(0, text));
    EXPECT_FALSE(instance.GetThumbnail(0, text));
    EXPECT_FALSE(instance.GetUIDefinitionName(2, text));
    EXPECT_FALSE(instance.GetUIDefinition(2, text));
    EXPECT_FALSE(instance.GetImplementationIdentifier(1, text));
    EXPECT_FALSE(instance.GetImplementationUri(1, text));
    EXPECT_EQ(reports.Take(), Lines(8, "error: Index is out of bound."));
    EXPECT_STREQ(text.AsUTF8(), "kept");
}

TEST_F(InstanceMetaTest, SetsTheUiName) {
    EXPECT_TRUE(instance.SetUIName(S("Name ")));
    EXPECT_EQ(TextOf(Find(instance, "UIName")), "Name ");
    EXPECT_EQ(log.Take(), Lines{"asset"});
    instance.GetUIName(text, noLocale);
    EXPECT_STREQ(text.AsUTF8(), "Name");
}

TEST_F(InstanceMetaTest, AnEmptyUiNameIsReported) {
    instance.SetUIName(S("Name"));
    log.Take();
    EXPECT_FALSE(instance.SetUIName(S("")));
    EXPECT_EQ(reports.Take(), Lines{"error: Can't set UI Name, the Name's empty"});
    EXPECT_EQ(TextOf(Find(instance, "UIName")), "Name");
    EXPECT_EQ(log.Take(), Lines{});
}

TEST_F(InstanceMetaTest, ANameThatIsAKeyReadsBackAsItsMessage) {
    localization.FindOrCreate("ENG", "").Set("KEY", "Oak");
    instance.SetUIName(S("KEY"));
    instance.GetUIName(text, S("ENG"));
    EXPECT_STREQ(text.AsUTF8(), "Oak");
}

TEST_F(InstanceMetaTest, AddsAndRemovesKeywords) {
    instance.RemoveKeyword(0);
    log.Take();
    EXPECT_TRUE(instance.AddKeyword(S("a")));
    EXPECT_TRUE(instance.AddKeyword(S("b")));
    EXPECT_EQ(TextsOf(Find(instance, "keyword")), (Lines{"a", "b"}));
    EXPECT_TRUE(instance.RemoveKeyword(0));
    EXPECT_EQ(TextsOf(Find(instance, "keyword")), Lines{"b"});
    EXPECT_EQ(log.Take(), (Lines{"asset", "asset", "asset"}));
    EXPECT_FALSE(instance.RemoveKeyword(1));
    EXPECT_EQ(reports.Take(), Lines{"error: Index is out of bound."});
    EXPECT_EQ(log.Take(), Lines{});
}

TEST_F(InstanceMetaTest, AnEmptyKeywordIsReportedAndLeavesTheCount) {
    const std::uint64_t count = instance.GetKeywordCount();
    EXPECT_FALSE(instance.AddKeyword(S("")));
    EXPECT_EQ(reports.Take(), Lines{"error: Can't add localized keyword, the keword is empty."});
    EXPECT_EQ(instance.GetKeywordCount(), count);
}

TEST_F(InstanceMetaTest, AddsAndRemovesCategories) {
    instance.RemoveCategory(0);
    log.Take();
    EXPECT_TRUE(instance.AddCategory(S("a")));
    EXPECT_EQ(TextsOf(Find(instance, "category")), Lines{"a"});
    EXPECT_TRUE(instance.RemoveCategory(0));
    EXPECT_EQ(log.Take(), (Lines{"asset", "asset"}));
    EXPECT_FALSE(instance.RemoveCategory(0));
    EXPECT_FALSE(instance.AddCategory(S("")));
    EXPECT_EQ(reports.Take(),
              (Lines{"error: Index is out of bound.",
                     "error: Can't add localized category, the category is empty."}));
    EXPECT_EQ(log.Take(), Lines{});
}

TEST_F(InstanceMetaTest, AThumbnailIsAddedToAnEmptyListAndElseReplaced) {
    Find(instance, "thumbnail").GetValue()->SetDimension(0);
    log.Take();
    EXPECT_TRUE(instance.SetThumbnail(S("thumbnail"), S("a.png")));
    EXPECT_EQ(TextsOf(Find(instance, "thumbnail")), Lines{"a.png"});
    PutText(instance, "thumbnail", "second.png", 1);
    EXPECT_TRUE(instance.SetThumbnail(S("thumbnail"), S("b.png")));
    EXPECT_EQ(TextsOf(Find(instance, "thumbnail")), (Lines{"b.png", "second.png"}));
    EXPECT_EQ(log.Take(), (Lines{"asset", "asset"}));
}

TEST_F(InstanceMetaTest, AThumbnailOfAnotherNameIsRefusedInSilence) {
    EXPECT_FALSE(instance.SetThumbnail(S("Thumbnail"), S("a.png")));
    EXPECT_FALSE(instance.SetThumbnail(S(""), S("a.png")));
    EXPECT_EQ(reports.Take(), Lines{});
    EXPECT_EQ(log.Take(), Lines{});
}

TEST_F(InstanceMetaTest, AThumbnailIsRemovedWithinTheCountThatHostsSee) {
    PutText(instance, "thumbnail", "a.png");
    PutText(instance, "thumbnail", "b.png", 1);
    EXPECT_FALSE(instance.RemoveThumbnail(1));
    EXPECT_TRUE(instance.RemoveThumbnail(0));
    EXPECT_EQ(TextsOf(Find(instance, "thumbnail")), Lines{"b.png"});
    EXPECT_EQ(reports.Take(), Lines{"error: Index is out of bound."});
    EXPECT_EQ(log.Take(), Lines{"asset"});
}

TEST_F(InstanceMetaTest, DescriptionAndSwatchMayBeEmpty) {
    EXPECT_TRUE(instance.SetDescription(S("d")));
    EXPECT_TRUE(instance.SetSwatch(S("s")));
    EXPECT_EQ(TextOf(Find(instance, "description")), "d");
    EXPECT_EQ(TextOf(Find(instance, "swatch")), "s");
    EXPECT_TRUE(instance.SetDescription(S("")));
    EXPECT_TRUE(instance.SetSwatch(S("")));
    EXPECT_EQ(TextOf(Find(instance, "description")), "");
    EXPECT_EQ(log.Take(), Lines(4, "asset"));
}

TEST_F(InstanceMetaTest, SetsAndRenewsTheVersionGuid) {
    EXPECT_FALSE(instance.SetVersionGUID(S("")));
    EXPECT_EQ(log.Take(), Lines{});
    EXPECT_TRUE(instance.SetVersionGUID(S("mine")));
    instance.GetVersionGUID(text);
    EXPECT_STREQ(text.AsUTF8(), "mine");
    EXPECT_TRUE(instance.RenewVersionGUID());
    instance.GetVersionGUID(text);
    EXPECT_TRUE(core::JPKUUID::IsValid(text));
    EXPECT_EQ(TextOf(Find(instance, "VersionGUID")), text.AsUTF8());
    EXPECT_EQ(log.Take(), (Lines{"asset", "asset"}));
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(InstanceMetaTest, ARemovalWithoutItsPropertyIsPastTheCount) {
    for (const char* name : {"keyword", "category", "thumbnail"}) {
        instance.Group(PropertyTableImp::kIterationGroup).Remove(name);
    }
    EXPECT_FALSE(instance.RemoveKeyword(0));
    EXPECT_FALSE(instance.RemoveCategory(0));
    EXPECT_FALSE(instance.RemoveThumbnail(0));
    EXPECT_EQ(reports.Take(), Lines(3, "error: Index is out of bound."));
    EXPECT_EQ(log.Take(), Lines{});
}

TEST_F(InstanceMetaTest, ASetterWithoutItsPropertyFailsInSilence) {
    for (const char* name :
         {"UIName", "keyword", "category", "description", "thumbnail", "VersionGUID"}) {
        instance.Group(PropertyTableImp::kIterationGroup).Remove(name);
    }
    instance.Group(PropertyTableImp::kReadWriteGroup).Remove("swatch");
    EXPECT_FALSE(instance.SetUIName(S("x")));
    EXPECT_FALSE(instance.AddKeyword(S("x")));
    EXPECT_FALSE(instance.AddCategory(S("x")));
    EXPECT_FALSE(instance.SetDescription(S("x")));
    EXPECT_FALSE(instance.SetThumbnail(S("thumbnail"), S("x")));
    EXPECT_FALSE(instance.SetVersionGUID(S("x")));
    EXPECT_FALSE(instance.RenewVersionGUID());
    EXPECT_FALSE(instance.SetSwatch(S("x")));
    EXPECT_EQ(reports.Take(), Lines{});
    EXPECT_EQ(log.Take(), Lines{});
}

}  // namespace korvanet::platform::assets
