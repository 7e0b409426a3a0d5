#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "assets/schema/schemamanager.h"
#include "assets/serialization/io/archivestream.h"
#include "schema/support.h"
#include "support/paths.h"

namespace korvanet::platform::assets {

using namespace PropertyFlags;

class SchemaLoadingTest : public SchemaTest {
protected:
    SchemaLoadingTest() {
        char pattern[] = "/tmp/schemas_XXXXXX";
        folder = mkdtemp(pattern);
    }
    ~SchemaLoadingTest() override { std::filesystem::remove_all(folder); }

    void Put(const std::string& name, const std::string& text) {
        std::ofstream(folder + "/" + name) << text;
    }
    KRVTSchemaDefinition* LoadFromFolder(const char* id) {
        return batch.LoadFromFolder(folder.c_str(), id);
    }

    std::string folder;
    SchemaManager& global = *world.global;
    SchemaManager library{world.context, world.MakeNamespace("lib"), SchemaScope::kLibrary, &world};
    SchemaManager batch{world.context, world.MakeNamespace("batch"), SchemaScope::kBatch, &world};
};

TEST_F(SchemaLoadingTest, ASourceThatCannotBeReadIsNull) {
    EXPECT_EQ(global.LoadSchema(static_cast<core::IDataReader*>(nullptr)), nullptr);
    ReadArchiveStream closed(nullptr);
    EXPECT_EQ(global.LoadSchema(static_cast<core::IDataReader*>(&closed)), nullptr);
    EXPECT_EQ(global.LoadFromFile("/nowhere/at/all.xml"), nullptr);
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(SchemaLoadingTest, AMalformedFileIsNullAndTheNextOneIsRead) {
    EXPECT_EQ(Load(global, ""), nullptr);
    EXPECT_EQ(Load(global, "not xml"), nullptr);
    EXPECT_EQ(Load(global, "<AssetSchema><UID val='CommonSchema'/>"), nullptr);
    EXPECT_EQ(global.GetSchemaCount(), 0u);
    EXPECT_NE(Load(global, CommonXml()), nullptr);
}

TEST_F(SchemaLoadingTest, AFileOfFarTooManyBytesIsNull) {
    EXPECT_EQ(Load(library, "<AssetSchema><UID val='CommonSchema'/>" + std::string(5 << 20, ' ') +
                                "</AssetSchema>"),
              nullptr);
    EXPECT_NE(Load(library, "<AssetSchema><UID val='CommonSchema'/>" + std::string(3 << 20, ' ') +
                                "</AssetSchema>"),
              nullptr);
}

TEST_F(SchemaLoadingTest, HostileFilesEndInNull) {
    std::string deep;
    for (int i = 0; i < 100000; ++i)
        deep += "<a>";
    EXPECT_EQ(Load(global, deep), nullptr);
    std::string wide = "<AssetSchema>";
    for (int i = 0; i < 100000; ++i)
        wide += "<Float id='p" + std::to_string(i) + "'/>";
    EXPECT_EQ(Load(global, wide + "</AssetSchema>"), nullptr);
    EXPECT_EQ(Load(global, "<AssetSchema><String id='p' allowmultiplevalues='true' val='" +
                               std::string(3 << 20, '|') + "'/></AssetSchema>"),
              nullptr);
}

TEST_F(SchemaLoadingTest, ASchemaThatWaitsIsFinishedWhenItsBaseIsMadeByACall) {
    LoadGlobal(CommonXml());
    KRVTSchemaDefinition* leaf = LoadGlobal(DerivedXml("Leaf", "Mid", "<Float id='l'/>"));
    KRVTSchemaDefinition* tip = LoadGlobal(DerivedXml("Tip", "Leaf", ""));
    ASSERT_NE(leaf, nullptr);
    EXPECT_EQ(global.FindOwn("Leaf"), nullptr);
    KRVTSchemaDefinition* mid = global.CreateSchema("Mid", "", nullptr);
    EXPECT_EQ(global.FindOwn("Leaf"), leaf);
    EXPECT_EQ(leaf->BaseDefinition(), mid);
    EXPECT_TRUE(Has(*leaf, "UIName"));
    EXPECT_EQ(global.FindOwn("Tip"), tip);
    EXPECT_TRUE(Has(*tip, "l"));
    EXPECT_FALSE(global.HasPending());
}

TEST_F(SchemaLoadingTest, ASchemaThatWaitsIsFinishedWhenItsBaseComesFromALibrary) {
    LoadGlobal(CommonXml());
    KRVTSchemaDefinition* leaf = LoadGlobal(DerivedXml("Leaf", "Mid", ""));
    Load(library, CommonXml());
    EXPECT_TRUE(
        global.AddSchema(Load(library, DerivedXml("Mid", "CommonSchema", "<Float id='m'/>"))));
    EXPECT_EQ(global.FindOwn("Leaf"), leaf);
    EXPECT_TRUE(Has(*leaf, "m"));
    EXPECT_FALSE(global.HasPending());
}

TEST_F(SchemaLoadingTest, ASchemaThatWaitsGivesWayToOneThatTookItsId) {
    LoadGlobal(CommonXml());
    const KRVTSchemaDefinition* late = LoadGlobal(DerivedXml("Leaf", "Mid", "<Float id='l'/>"));
    KRVTSchemaDefinition* made = global.CreateSchema("Leaf", "", nullptr);
    ASSERT_NE(made, nullptr);
    LoadGlobal(DerivedXml("Mid", "CommonSchema", ""));
    EXPECT_EQ(global.FindOwn("Leaf"), made);
    EXPECT_FALSE(Has(*made, "l"));
    EXPECT_FALSE(late->IsPinned());
    EXPECT_FALSE(Has(*late, "UIName"));
    EXPECT_EQ(global.GetSchemaCount(), 3u);
    EXPECT_FALSE(global.HasPending());
}

TEST_F(SchemaLoadingTest, ASchemaWithoutIdOrWithoutBaseIsNull) {
    EXPECT_EQ(Load(library, "<AssetSchema><Float id='p'/></AssetSchema>"), nullptr);
    EXPECT_EQ(Load(library, "<AssetSchema><UID val='S'/><Float id='p'/></AssetSchema>"), nullptr);
    EXPECT_EQ(library.GetSchemaCount(), 0u);
    EXPECT_FALSE(library.HasPending());
}

TEST_F(SchemaLoadingTest, AMissingVersionIs1) {
    LoadGlobal(CommonXml());
    KRVTSchemaDefinition* schema = LoadGlobal(DerivedXml("S", "CommonSchema", ""));
    ASSERT_NE(schema, nullptr);
    EXPECT_EQ(schema->Version(), 1);
    EXPECT_EQ(Find(*schema, "SchemaVersion").GetFlags(), kReadOnly);
    EXPECT_EQ(Str(Find(*schema, "SchemaVersion").Descriptor().label), "");
}

TEST_F(SchemaLoadingTest, TheRootSchemaGetsWhatFilesLeaveOut) {
    KRVTSchemaDefinition* common =
        Load(library, "<AssetSchema><UID val='CommonSchema'/></AssetSchema>");
    ASSERT_NE(common, nullptr);
    EXPECT_EQ(NamesOf(*common),
              (Lines{"AssetLibID", "SchemaVersion", "VersionGUID", "localname", "localtype"}));
    EXPECT_EQ(Find(*common, "AssetLibID").GetFlags(), kPublic);
    EXPECT_EQ(Find(*common, "VersionGUID").GetFlags(), kDefinitionIteratorData);
    EXPECT_EQ(Find(*common, "VersionGUID").GetType(), PropertyType::kUuid);
    EXPECT_EQ(Find(*common, "localtype").GetFlags(), 0x12u);
    EXPECT_EQ(Find(*common, "localname").GetFlags(), 0x12u);
    for (const char* name : {"AssetLibID", "VersionGUID", "localtype", "localname"}) {
        EXPECT_EQ(TextOf(Find(*common, name)), "") << name;
    }
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(SchemaLoadingTest, WhatTheRootSchemaGetsHasNoLabelAlsoWhereItIsPublic) {
    KRVTSchemaDefinition* common =
        Load(library, "<AssetSchema><UID val='CommonSchema'/></AssetSchema>");
    ASSERT_NE(common, nullptr);
    for (const char* name :
         {"SchemaVersion", "AssetLibID", "VersionGUID", "localtype", "localname"})
        EXPECT_EQ(Str(Find(*common, name).Descriptor().label), "") << name;
}

TEST_F(SchemaLoadingTest, TheRootSchemaKeepsWhatItHas) {
    KRVTSchemaDefinition* common =
        Load(library, "<AssetSchema><UID val='CommonSchema'/><localname val='N'/></AssetSchema>");
    ASSERT_NE(common, nullptr);
    EXPECT_EQ(TextOf(Find(*common, "localname")), "N");
    EXPECT_EQ(Find(*common, "localname").GetFlags(), kPublic);
}

TEST_F(SchemaLoadingTest, ARootSchemaBelowVersion3LosesItsKeywordsAndCategories) {
    const auto common = [](int version) {
        return "<AssetSchema><UID val='CommonSchema'/><Integer id='SchemaVersion' val='" +
               std::to_string(version) +
               "' readonly='true'/><String id='keyword' val='a,b' allowmultiplevalues='true'/>"
               "<String id='category' val='c' allowmultiplevalues='true'/></AssetSchema>";
    };
    KRVTSchemaDefinition* old = Load(library, common(2));
    ASSERT_NE(old, nullptr);
    EXPECT_EQ(TextsOf(Find(*old, "keyword")), Lines{""});
    EXPECT_EQ(TextsOf(Find(*old, "category")), Lines{""});
    KRVTSchemaDefinition* current = Load(batch, common(3));
    ASSERT_NE(current, nullptr);
    EXPECT_EQ(TextsOf(Find(*current, "keyword")), (Lines{"a", "b"}));
    EXPECT_EQ(TextsOf(Find(*current, "category")), Lines{"c"});
}

TEST_F(SchemaLoadingTest, TheGlobalSetTestsItsRootSchema) {
    EXPECT_EQ(LoadGlobal("<AssetSchema><UID val='CommonSchema'/></AssetSchema>"), nullptr);
    EXPECT_EQ(global.GetSchemaCount(), 0u);
    EXPECT_NE(LoadGlobal(CommonXml()), nullptr);
}

TEST_F(SchemaLoadingTest, AnIdThatIsLoadedGivesTheFirstWithAWarning) {
    KRVTSchemaDefinition* first = LoadGlobal(CommonXml());
    EXPECT_EQ(LoadGlobal(CommonXml("<Float id='p'/>")), first);
    EXPECT_FALSE(Has(*first, "p"));
    EXPECT_EQ(reports.Take(), Lines{"warning: Try to load a loaded schema."});
}

TEST_F(SchemaLoadingTest, AnIdThatIsPendingGivesTheFirstToo) {
    KRVTSchemaDefinition* first = Load(library, DerivedXml("S", "Missing", ""));
    EXPECT_EQ(Load(library, DerivedXml("S", "Missing", "<Float id='p'/>")), first);
    EXPECT_EQ(reports.Take(), Lines{"warning: Try to load a loaded schema."});
}

TEST_F(SchemaLoadingTest, AnIdOfTheGlobalSetIsNoDuplicateInALibrary) {
    KRVTSchemaDefinition* shared = LoadGlobal(CommonXml());
    EXPECT_NE(Load(library, CommonXml()), shared);
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(SchemaLoadingTest, ASchemaWaitsForItsBase) {
    KRVTSchemaDefinition* leaf = Load(library, DerivedXml("Leaf", "Middle", "<Float id='l'/>"));
    KRVTSchemaDefinition* middle =
        Load(library, DerivedXml("Middle", "CommonSchema", "<Float id='m'/>"));
    ASSERT_NE(leaf, nullptr);
    EXPECT_TRUE(library.IsPending("Leaf"));
    EXPECT_TRUE(library.IsPending("Middle"));
    EXPECT_EQ(library.GetSchemaCount(), 0u);
    EXPECT_EQ(library.Find("Leaf"), nullptr);

    KRVTSchemaDefinition* common = Load(library, CommonXml());
    EXPECT_FALSE(library.HasPending());
    EXPECT_EQ(library.FindOwn("Leaf"), leaf);
    EXPECT_EQ(leaf->BaseDefinition(), middle);
    EXPECT_EQ(middle->BaseDefinition(), common);
    EXPECT_TRUE(Has(*leaf, "m"));
    EXPECT_TRUE(Has(*leaf, "UIName"));
    EXPECT_TRUE(leaf->IsPinned());
    EXPECT_EQ(leaf->ReferenceCount(), 0u);
}

TEST_F(SchemaLoadingTest, TheOrderOfFilesDoesNotMatter) {
    const std::vector<std::string> files = {
        CommonXml(), DerivedXml("A", "CommonSchema", "<Float id='a' val='1'/>"),
        DerivedXml("B", "A", "<Float id='a' val='2'/>"), DerivedXml("C", "B", "<Float id='c'/>")};
    std::vector<std::size_t> order = {0, 1, 2, 3};
    int round = 0;
    do {
        SchemaManager set(world.context,
                          world.MakeNamespace(("order" + std::to_string(round++)).c_str()),
                          SchemaScope::kLibrary, &world);
        for (const std::size_t file : order)
            ASSERT_NE(Load(set, files[file]), nullptr);
        ASSERT_FALSE(set.HasPending());
        ASSERT_EQ(set.GetSchemaCount(), 4u);
        EXPECT_EQ(NumberOf(Find(*set.FindOwn("C"), "a")), 2);
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(SchemaLoadingTest, ACircleOfBasesStaysPending) {
    Load(library, CommonXml());
    Load(library, DerivedXml("A", "B", ""));
    Load(library, DerivedXml("B", "A", ""));
    Load(library, DerivedXml("Self", "Self", ""));
    library.RetryPending();
    EXPECT_TRUE(library.IsPending("A"));
    EXPECT_TRUE(library.IsPending("B"));
    EXPECT_TRUE(library.IsPending("Self"));
    EXPECT_EQ(library.GetSchemaCount(), 1u);
}

TEST_F(SchemaLoadingTest, ABatchTakesABaseOfTheGlobalSetAtOnce) {
    KRVTSchemaDefinition* shared = LoadGlobal(CommonXml());
    KRVTSchemaDefinition* schema = Load(batch, DerivedXml("S", "CommonSchema", ""));
    EXPECT_EQ(schema->BaseDefinition(), shared);
    EXPECT_FALSE(batch.HasPending());
}

TEST_F(SchemaLoadingTest, ALibraryWaitsForABaseThatItHasAFileOf) {
    KRVTSchemaDefinition* shared = LoadGlobal(CommonXml());
    library.ExpectFiles({"CommonSchema", "S"});
    KRVTSchemaDefinition* schema = Load(library, DerivedXml("S", "CommonSchema", ""));
    EXPECT_TRUE(library.IsPending("S"));
    library.RetryPending();
    EXPECT_TRUE(library.IsPending("S"));
    KRVTSchemaDefinition* own = Load(library, CommonXml());
    EXPECT_EQ(schema->BaseDefinition(), own);
    EXPECT_NE(own, shared);
}

TEST_F(SchemaLoadingTest, ALibraryTakesAnAbsentBaseFromTheGlobalSet) {
    KRVTSchemaDefinition* shared = LoadGlobal(CommonXml());
    library.ExpectFiles({"S"});
    EXPECT_EQ(Load(library, DerivedXml("S", "CommonSchema", ""))->BaseDefinition(), shared);
}

TEST_F(SchemaLoadingTest, RetryFinishesWhatWaitsForTheGlobalSet) {
    KRVTSchemaDefinition* a = Load(library, DerivedXml("A", "CommonSchema", ""));
    KRVTSchemaDefinition* b = Load(library, DerivedXml("B", "A", ""));
    KRVTSchemaDefinition* shared = LoadGlobal(CommonXml());
    EXPECT_TRUE(library.HasPending());
    library.RetryPending();
    EXPECT_FALSE(library.HasPending());
    EXPECT_EQ(a->BaseDefinition(), shared);
    EXPECT_EQ(b->BaseDefinition(), a);
}

TEST_F(SchemaLoadingTest, AFolderGivesASchemaWithItsBases) {
    Put("CommonSchema.xml", CommonXml());
    Put("Middle.xml", DerivedXml("Middle", "CommonSchema", ""));
    Put("Leaf.xml", DerivedXml("Leaf", "Middle", ""));
    Put("Other.xml", DerivedXml("Other", "CommonSchema", ""));
    KRVTSchemaDefinition* leaf = LoadFromFolder("Leaf");
    ASSERT_NE(leaf, nullptr);
    EXPECT_EQ(batch.GetSchemaCount(), 3u);
    EXPECT_EQ(leaf->BaseDefinition(), batch.FindOwn("Middle"));
}

TEST_F(SchemaLoadingTest, AFolderIsNotAskedForABaseThatIsKnown) {
    KRVTSchemaDefinition* shared = LoadGlobal(CommonXml());
    Put("CommonSchema.xml", CommonXml());
    Put("S.xml", DerivedXml("S", "CommonSchema", ""));
    KRVTSchemaDefinition* schema = LoadFromFolder("S");
    ASSERT_NE(schema, nullptr);
    EXPECT_EQ(schema->BaseDefinition(), shared);
    EXPECT_EQ(batch.GetSchemaCount(), 1u);
}

TEST_F(SchemaLoadingTest, AFolderWithoutTheSchemaOrItsBaseGivesNull) {
    EXPECT_EQ(LoadFromFolder("S"), nullptr);
    EXPECT_EQ(LoadFromFolder(""), nullptr);
    Put("S.xml", DerivedXml("S", "Missing", ""));
    EXPECT_EQ(LoadFromFolder("S"), nullptr);
}

TEST_F(SchemaLoadingTest, FilesThatNameEachOtherEndInNull) {
    Put("A.xml", DerivedXml("A", "B", ""));
    Put("B.xml", DerivedXml("B", "A", ""));
    EXPECT_EQ(LoadFromFolder("A"), nullptr);
    Put("C.xml", DerivedXml("C", "D", ""));
    Put("D.xml", DerivedXml("E", "D", ""));
    EXPECT_EQ(LoadFromFolder("C"), nullptr);
}

TEST_F(SchemaLoadingTest, AnIdThatIsAPathIsNotLoaded) {
    std::filesystem::create_directory(folder + "/inner");
    Put("CommonSchema.xml", CommonXml());
    Put("S.xml", DerivedXml("S", "inner/../CommonSchema", ""));
    EXPECT_EQ(LoadFromFolder("inner/../CommonSchema"), nullptr);
    EXPECT_EQ(LoadFromFolder("inner\\CommonSchema"), nullptr);
    EXPECT_EQ(LoadFromFolder(".."), nullptr);
    EXPECT_EQ(LoadFromFolder("S"), nullptr);
    EXPECT_NE(LoadFromFolder("CommonSchema"), nullptr);
}

TEST_F(SchemaLoadingTest, TheSampleSchemasLoad) {
    const std::string samples = halvern_tests::DataFile("schemas");
    for (const char* id : {"EveryKindSchema", "UnifiedBitmapSchema"}) {
        KRVTSchemaDefinition* schema = batch.LoadFromFolder(samples.c_str(), id);
        ASSERT_NE(schema, nullptr) << id;
        EXPECT_TRUE(global.AddSchema(schema)) << id;
    }
    EXPECT_EQ(global.GetSchemaCount(), 4u);
    EXPECT_EQ(reports.Take(), Lines{});
}

}  // namespace korvanet::platform::assets
