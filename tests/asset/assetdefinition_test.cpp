#include "assets/asset/assetdefinition.h"

#include <korvanet/platform/core/jpkuuid.h>

#include "asset/support.h"
#include "tests/support/virtualslots.h"

namespace korvanet::platform::assets {

class AssetDefinitionTest : public AssetTest {
protected:
    AssetDefinition& definition = NewDefinition(*material, "DEF");
};

TEST_F(AssetDefinitionTest, TheOperationsOfItsTableStandBehindItsOwn) {
    using Table = PropertyTable<IAssetDefinition>;
    using Enumerate = IEnumeration<IProperty*>* (Table::*)(bool);
    using EnumerateConst = IEnumeration<const IProperty*>* (Table::*)(bool) const;
    using Release = void (Table::*)(IEnumeration<IProperty*>*);
    using ReleaseConst = void (Table::*)(IEnumeration<const IProperty*>*) const;
    using Find = IProperty* (Table::*)(const wchar_t*);
    using FindConst = const IProperty* (Table::*)(const wchar_t*) const;
    using namespace halvern_tests;
    ExpectOrder(Place(&IAssetDefinition::GetVersionGUID),
                {Place(&Table::GetVersionGUID), kDestructor,
                 Place(static_cast<EnumerateConst>(&Table::GetProperties)),
                 Place(static_cast<Enumerate>(&Table::GetProperties)),
                 Place(static_cast<ReleaseConst>(&Table::ReleaseEnumeration)),
                 Place(static_cast<Release>(&Table::ReleaseEnumeration)),
                 Place(static_cast<FindConst>(&Table::FindProperty)),
                 Place(static_cast<Find>(&Table::FindProperty))});
}

TEST_F(AssetDefinitionTest, TakesTheSchemasValuesAndSharesItsReadOnlyGroup) {
    EXPECT_EQ(definition.Kind(), TableKind::kDefinition);
    EXPECT_EQ(definition.GetSchema(), static_cast<IAssetSchema*>(material));
    EXPECT_EQ(definition.Source(), material);
    EXPECT_EQ(&definition.Group(PropertyTableImp::kReadOnlyGroup),
              &material->Group(PropertyTableImp::kReadOnlyGroup));
    EXPECT_NE(&Find(definition, "gloss"), &Find(*material, "gloss"));
    EXPECT_EQ(&Find(definition, "gloss").Descriptor(), &Find(*material, "gloss").Descriptor());
    EXPECT_EQ(NumberOf(Find(definition, "gloss")), 0.5);
    EXPECT_EQ(definition.ReferenceCount(), 0u);
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(AssetDefinitionTest, NamesItsSchemaAndNotTheSchemasBase) {
    EXPECT_EQ(TextOf(Find(definition, "BaseSchema")), "MaterialSchema");
    EXPECT_EQ(TextOf(Find(*material, "BaseSchema")), "CommonSchema");
}

TEST_F(AssetDefinitionTest, StandsInItsRegistryUnderItsIdentifier) {
    EXPECT_TRUE(library.asset.findObject("DEF").value.valid());
    EXPECT_TRUE(definition.GetName(text));
    EXPECT_STREQ(text.AsUTF8(), "DEF");
}

TEST_F(AssetDefinitionTest, WithoutAnIdentifierItGetsAFreshOne) {
    const intrusive_ptr<AssetDefinition> loose(&MakeDefinition(*material, {}, ""));
    loose->GetName(text);
    EXPECT_TRUE(core::JPKUUID::IsValid(text)) << text.AsUTF8();
    EXPECT_FALSE(loose->Registry().valid());
}

TEST_F(AssetDefinitionTest, TheUiNameIsLocalizedWithoutTrailingBlanks) {
    PutText(definition, "UIName", "KEY  ");
    definition.GetUIName(text, noLocale);
    EXPECT_STREQ(text.AsUTF8(), "KEY");
    localization.FindOrCreate("FRA", "LIB").Set("KEY  ", " nom   ");
    definition.SetAssetLibId("LIB");
    EXPECT_TRUE(definition.GetUIName(text, core::UTF8String("fra")));
    EXPECT_STREQ(text.AsUTF8(), " nom");
}

TEST_F(AssetDefinitionTest, MessagesComeFromTheDomainOfTheAsset) {
    localization.FindOrCreate("ENG", "A").Set("KEY", "from A");
    localization.FindOrCreate("ENG", "B").Set("KEY", "from B");
    PutText(definition, "description", "KEY");
    definition.SetAssetLibId("B");
    definition.GetDescription(text, core::UTF8String("ENG"));
    EXPECT_STREQ(text.AsUTF8(), "from B");
    definition.SetAssetLibId("A");
    definition.GetDescription(text, core::UTF8String("ENG"));
    EXPECT_STREQ(text.AsUTF8(), "from A");
}

TEST_F(AssetDefinitionTest, WithoutALocalizationStoreKeysReadAsThemselves) {
    world.context.localization = nullptr;
    PutText(definition, "UIName", "KEY");
    definition.GetUIName(text, core::UTF8String("ENG"));
    EXPECT_STREQ(text.AsUTF8(), "KEY");
}

TEST_F(AssetDefinitionTest, KeywordsAndCategoriesKeepTheirBlanks) {
    PutText(definition, "keyword", "metal   ");
    PutText(definition, "keyword", "shiny", 1);
    PutText(definition, "category", "Floor ");
    EXPECT_EQ(definition.GetKeywordCount(), 2u);
    EXPECT_TRUE(definition.GetKeyword(0, text, noLocale));
    EXPECT_STREQ(text.AsUTF8(), "metal   ");
    EXPECT_TRUE(definition.GetKeyword(1, text, noLocale));
    EXPECT_STREQ(text.AsUTF8(), "shiny");
    EXPECT_EQ(definition.GetCategoryCount(), 1u);
    EXPECT_TRUE(definition.GetCategory(0, text, noLocale));
    EXPECT_STREQ(text.AsUTF8(), "Floor ");
}

TEST_F(AssetDefinitionTest, AnIndexPastTheCountIsReportedByEveryGetterThatHasOne) {
    text.AssignUTF8("kept");
    EXPECT_FALSE(definition.GetKeyword(1, text, noLocale));
    EXPECT_FALSE(definition.GetCategory(1, text, noLocale));
    EXPECT_FALSE(definition.GetThumbnailName(0, text));
    EXPECT_FALSE(definition.GetThumbnail(0, text));
    EXPECT_FALSE(definition.GetUIDefinitionName(2, text));
    EXPECT_FALSE(definition.GetUIDefinition(2, text));
    EXPECT_FALSE(definition.GetImplementationIdentifier(1, text));
    EXPECT_FALSE(definition.GetImplementationUri(1, text));
    EXPECT_EQ(reports.Take(), Lines(8, "error: Index is out of bound."));
    EXPECT_STREQ(text.AsUTF8(), "kept");
}

TEST_F(AssetDefinitionTest, ThreeThumbnailsCountAsOne) {
    PutText(definition, "thumbnail", "a.png");
    PutText(definition, "thumbnail", "b.png", 1);
    PutText(definition, "thumbnail", "c.png", 2);
    EXPECT_EQ(definition.GetThumbnailCount(), 1u);
    EXPECT_TRUE(definition.GetThumbnailName(0, text));
    EXPECT_STREQ(text.AsUTF8(), "thumbnail");
    EXPECT_TRUE(definition.GetThumbnail(0, text));
    EXPECT_STREQ(text.AsUTF8(), "a.png");
    EXPECT_FALSE(definition.GetThumbnail(1, text));
}

TEST_F(AssetDefinitionTest, AnEmptyFirstThumbnailCountsAsNone) {
    PutText(definition, "thumbnail", "");
    PutText(definition, "thumbnail", "b.png", 1);
    EXPECT_EQ(definition.GetThumbnailCount(), 0u);
}

TEST_F(AssetDefinitionTest, TheStoredProceduralTypeHasAnotherNameForHosts) {
    KRVTSchemaDefinition* schema = LoadXml(
        *world.global, DerivedXml("RpcSchema", "CommonSchema", "<type val='RPCGeometry'/>"));
    AssetDefinition& rpc = NewDefinition(*schema, "RPC");
    EXPECT_TRUE(rpc.GetAssetType(text));
    EXPECT_STREQ(text.AsUTF8(), "proceduralgeometry");
    EXPECT_EQ(TextOf(dynamic_cast<PropertyBase&>(*rpc.FindProperty(L"assettype"))), "RPCGeometry");
    definition.GetAssetType(text);
    EXPECT_STREQ(text.AsUTF8(), "materialappearance");
}

TEST_F(AssetDefinitionTest, VersionAndRevisionAreNumbers) {
    PutNumber(definition, "version", 7);
    PutNumber(definition, "revision", -2);
    EXPECT_EQ(definition.GetVersion(), 7);
    EXPECT_EQ(definition.GetRevision(), -2);
}

TEST_F(AssetDefinitionTest, ASwatchIsAText) {
    PutText(definition, "swatch", "Swatch-Cube");
    EXPECT_TRUE(definition.GetSwatch(text));
    EXPECT_STREQ(text.AsUTF8(), "Swatch-Cube");
}

TEST_F(AssetDefinitionTest, MissingPropertiesReadAsEmpty) {
    KRVTSchemaDefinition* bare = LoadXml(*world.global, DerivedXml("Bare", "CommonSchema", ""));
    AssetDefinition& nothing = NewDefinition(*bare, "NOTHING");
    for (const char* name :
         {"UIName", "keyword", "category", "thumbnail", "Hidden", "VersionGUID"}) {
        nothing.Group(PropertyTableImp::kIterationGroup).Remove(name);
    }
    for (const char* name : {"version", "revision", "AssetLibID"}) {
        nothing.Group(PropertyTableImp::kReadWriteGroup).Remove(name);
    }
    text.AssignUTF8("former");
    EXPECT_TRUE(nothing.GetUIName(text, noLocale));
    EXPECT_STREQ(text.AsUTF8(), "");
    EXPECT_TRUE(nothing.GetSwatch(text));
    EXPECT_STREQ(text.AsUTF8(), "");
    EXPECT_EQ(nothing.GetKeywordCount(), 0u);
    EXPECT_EQ(nothing.GetCategoryCount(), 0u);
    EXPECT_EQ(nothing.GetThumbnailCount(), 0u);
    EXPECT_EQ(nothing.GetVersion(), 0);
    EXPECT_EQ(nothing.GetRevision(), 0);
    EXPECT_FALSE(nothing.IsHidden());
    EXPECT_FALSE(nothing.GetAssetLibID(text));
    EXPECT_TRUE(nothing.GetVersionGUID(text));
    nothing.SetAssetLibId("LIB");
    EXPECT_FALSE(nothing.GetAssetLibID(text));
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(AssetDefinitionTest, ThereAreTwoUiDefinitionsWhetherTheyExistOrNot) {
    EXPECT_EQ(definition.GetUIDefinitionCount(), 2u);
    EXPECT_TRUE(definition.GetUIDefinitionName(0, text));
    EXPECT_STREQ(text.AsUTF8(), "UIDefinition");
    EXPECT_TRUE(definition.GetUIDefinitionName(1, text));
    EXPECT_STREQ(text.AsUTF8(), "AdvancedUIDefinition");
    const intrusive_ptr<PropertyTableImp> empty(&MakeTable(world.context, TableKind::kDefinition));
    const auto& bare = static_cast<const AssetDefinition&>(*empty);
    EXPECT_EQ(bare.GetUIDefinitionCount(), 2u);
    EXPECT_TRUE(bare.GetUIDefinition(1, text));
    EXPECT_STREQ(text.AsUTF8(), "");
}

TEST_F(AssetDefinitionTest, AUiDefinitionIsItsPath) {
    KRVTSchemaDefinition* schema =
        LoadXml(*world.global,
                DerivedXml("Ui", "CommonSchema", "<ui id='UIDefinition' val='UI/a,b.xml'/>"));
    AssetDefinition& withUi = NewDefinition(*schema, "UI");
    EXPECT_TRUE(withUi.GetUIDefinition(0, text));
    EXPECT_STREQ(text.AsUTF8(), "UI/a,b.xml");
}

TEST_F(AssetDefinitionTest, ImplementationsNumberThoseThatExist) {
    EXPECT_EQ(definition.GetImplementationCount(), 1u);
    EXPECT_TRUE(definition.GetImplementationIdentifier(0, text));
    EXPECT_STREQ(text.AsUTF8(), "ImplementationGeneric");
    EXPECT_TRUE(definition.GetImplementationUri(0, text));
    EXPECT_STREQ(text.AsUTF8(), "generic.xml");
}

TEST_F(AssetDefinitionTest, ImplementationsComeInTheOrderOfTheirTable) {
    const char* const names[] = {"ImplementationPreview", "ImplementationMentalRay",
                                 "ImplementationCGFX",    "ImplementationHLSL",
                                 "ImplementationHZR",     "ImplementationFleetRT",
                                 "ImplementationGeneric"};
    std::string elements;
    for (const char* name : names) {
        // Upside down, and with an empty path, which counts too.
        elements = "<implementation id='" + std::string(name) + "' val=''/>" + elements;
    }
    KRVTSchemaDefinition* schema =
        LoadXml(*world.global, DerivedXml("All", "CommonSchema", elements));
    AssetDefinition& all = NewDefinition(*schema, "ALL");
    ASSERT_EQ(all.GetImplementationCount(), 7u);
    for (std::uint64_t i = 0; i < 7; ++i) {
        EXPECT_TRUE(all.GetImplementationIdentifier(i, text));
        EXPECT_STREQ(text.AsUTF8(), names[i]);
        EXPECT_TRUE(all.GetImplementationUri(i, text));
        EXPECT_STREQ(text.AsUTF8(), "");
    }
}

TEST_F(AssetDefinitionTest, AMissingDescriptionIsReportedAndEmptiesTheText) {
    text.AssignUTF8("former");
    EXPECT_FALSE(definition.GetDescription(text, noLocale));
    EXPECT_STREQ(text.AsUTF8(), "");
    EXPECT_EQ(reports.Take(), Lines{"error: No desctiption property on this asset."});
    PutText(definition, "description", "fine  ");
    EXPECT_TRUE(definition.GetDescription(text, noLocale));
    EXPECT_STREQ(text.AsUTF8(), "fine  ");
}

TEST_F(AssetDefinitionTest, AnAssetWithoutTheDescriptionPropertyReportsTheSame) {
    ASSERT_TRUE(definition.Group(PropertyTableImp::kIterationGroup).Remove("description"));
    text.AssignUTF8("former");
    EXPECT_FALSE(definition.GetDescription(text, noLocale));
    EXPECT_STREQ(text.AsUTF8(), "");
    EXPECT_EQ(reports.Take(), Lines{"error: No desctiption property on this asset."});
}

TEST_F(AssetDefinitionTest, HiddenIsABoolean) {
    EXPECT_FALSE(definition.IsHidden());
    As<IBooleanValue>(Find(definition, "Hidden")).SetValue(true);
    EXPECT_TRUE(definition.IsHidden());
}

TEST_F(AssetDefinitionTest, TheLibraryIdIsReadOnceAndAnewWhenItIsSet) {
    text.AssignUTF8("kept");
    EXPECT_FALSE(definition.GetAssetLibID(text));
    EXPECT_STREQ(text.AsUTF8(), "kept");
    PutText(definition, "AssetLibID", "first");
    EXPECT_TRUE(definition.GetAssetLibID(text));
    PutText(definition, "AssetLibID", "second");
    definition.GetAssetLibID(text);
    EXPECT_STREQ(text.AsUTF8(), "first");
    definition.SetAssetLibId("third");
    definition.GetAssetLibID(text);
    EXPECT_STREQ(text.AsUTF8(), "third");
}

TEST_F(AssetDefinitionTest, AnEmptyVersionGuidReadsAsAFreshOneEachTime) {
    core::UTF8String other;
    definition.GetVersionGUID(text);
    definition.GetVersionGUID(other);
    EXPECT_TRUE(core::JPKUUID::IsValid(text));
    EXPECT_STRNE(text.AsUTF8(), other.AsUTF8());
    EXPECT_EQ(TextOf(Find(definition, "VersionGUID")), "");
    PutText(definition, "VersionGUID", "mine");
    definition.GetVersionGUID(text);
    EXPECT_STREQ(text.AsUTF8(), "mine");
}

TEST_F(AssetDefinitionTest, FindsPropertiesByNameAndByAlias) {
    EXPECT_EQ(definition.FindProperty(L"shine"), &Find(definition, "gloss"));
    EXPECT_EQ(std::as_const(definition).FindProperty(L"gloss"), &Find(definition, "gloss"));
    EXPECT_EQ(definition.FindProperty(L"nothing"), nullptr);
    EXPECT_EQ(definition.FindProperty(static_cast<const wchar_t*>(nullptr)), nullptr);
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(AssetDefinitionTest, IsDerivedFromItsSchemaAndThatOnesBases) {
    EXPECT_TRUE(definition.IsDerivedFromSchema(core::UTF8String("MaterialSchema")));
    EXPECT_TRUE(definition.IsDerivedFromSchema(core::UTF8String("CommonSchema")));
    EXPECT_FALSE(definition.IsDerivedFromSchema(core::UTF8String("TextureSchema")));
    EXPECT_FALSE(definition.IsDerivedFromSchema(core::UTF8String("")));
}

TEST_F(AssetDefinitionTest, APinnedDefinitionOutlivesItsReferences) {
    EXPECT_EQ(definition.AddReference(), static_cast<IAssetDefinition*>(&definition));
    EXPECT_EQ(definition.GetReferenceCount(), 1u);
    definition.Release();
    EXPECT_EQ(definition.GetReferenceCount(), 0u);
    definition.Release();
    EXPECT_EQ(definition.GetReferenceCount(), 0u);
    EXPECT_TRUE(library.asset.findObject("DEF").value.valid());
}

TEST_F(AssetDefinitionTest, AnUnpinnedDefinitionGoesWithItsLastReference) {
    AssetDefinition& loose = MakeDefinition(*material, library.asset, "LOOSE");
    loose.AddReference();
    loose.Release();
    EXPECT_FALSE(library.asset.findObject("LOOSE").value.valid());
}

TEST_F(AssetDefinitionTest, InstancesOfALibrarysDefinitionStandBesideIt) {
    AssetInstance& instance = NewInstance(definition);
    EXPECT_EQ(instance.Registry(), library.tmpAsset);
    EXPECT_TRUE(library.tmpAsset.findObject(instance.Name()).value.valid());
    const intrusive_ptr<AssetDefinition> loose(&MakeDefinition(*material, {}, "LOOSE"));
    EXPECT_FALSE(NewInstance(*loose).Registry().valid());
}

}  // namespace korvanet::platform::assets
