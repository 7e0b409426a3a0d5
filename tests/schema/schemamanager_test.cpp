#include "assets/schema/schemamanager.h"

#include "assets/schema/schemamerge.h"
#include "assets/schema/schemaxmlreader.h"
#include "schema/support.h"
#include "support/raised.h"

namespace korvanet::platform::assets {

using namespace PropertyFlags;

class SchemaManagerTest : public SchemaTest {
protected:
    SchemaManager& global = *world.global;
    SchemaManager library{world.context, world.MakeNamespace("lib"), SchemaScope::kLibrary, &world};
    SchemaManager batch{world.context, world.MakeNamespace("batch"), SchemaScope::kBatch, &world};

    static nuo::string Text(const char* text) { return text; }
};

TEST_F(SchemaManagerTest, AnEmptySetHasNoSchemas) {
    EXPECT_EQ(global.GetSchemaCount(), 0u);
    EXPECT_EQ(global.GetSchema(0), nullptr);
    EXPECT_EQ(global.Find("CommonSchema"), nullptr);
    EXPECT_FALSE(global.HasPending());
}

TEST_F(SchemaManagerTest, SchemasStandInTheOrderOfTheirIds) {
    KRVTSchemaDefinition* common = LoadGlobal(CommonXml());
    KRVTSchemaDefinition* a = LoadGlobal(DerivedXml("A", "CommonSchema", ""));
    KRVTSchemaDefinition* z = LoadGlobal(DerivedXml("Z", "CommonSchema", ""));
    EXPECT_EQ(global.GetSchemaCount(), 3u);
    EXPECT_EQ(global.GetSchema(0), a);
    EXPECT_EQ(global.GetSchema(1), common);
    EXPECT_EQ(global.GetSchema(2), z);
    EXPECT_EQ(global.GetSchema(3), nullptr);
    EXPECT_TRUE(common->IsPinned());
    EXPECT_EQ(common->ReferenceCount(), 0u);
}

TEST_F(SchemaManagerTest, FindLooksInTheOwnSetAndThenInTheGlobalOne) {
    KRVTSchemaDefinition* shared = LoadGlobal(CommonXml());
    EXPECT_EQ(library.Find("CommonSchema"), shared);
    EXPECT_EQ(library.FindOwn("CommonSchema"), nullptr);
    KRVTSchemaDefinition* own = Load(library, CommonXml());
    EXPECT_EQ(library.Find("CommonSchema"), own);
    EXPECT_NE(own, shared);
    EXPECT_EQ(global.Find("CommonSchema"), shared);
}

TEST_F(SchemaManagerTest, CreateSchemaGivesAnExistingOne) {
    KRVTSchemaDefinition* common = LoadGlobal(CommonXml());
    EXPECT_EQ(global.CreateSchema("CommonSchema", "other", nullptr), common);
}

TEST_F(SchemaManagerTest, CreateSchemaNeedsAnId) {
    LoadGlobal(CommonXml());
    EXPECT_EQ(global.CreateSchema("", "t", nullptr), nullptr);
}

TEST_F(SchemaManagerTest, ANewSchemaStandsOnTheRootUnlessToldOtherwise) {
    EXPECT_EQ(global.CreateSchema("S", "t", nullptr), nullptr);
    KRVTSchemaDefinition* common = LoadGlobal(CommonXml());
    KRVTSchemaDefinition* schema = global.CreateSchema("S", "t", nullptr);
    ASSERT_NE(schema, nullptr);
    EXPECT_EQ(schema->BaseDefinition(), common);
    EXPECT_EQ(TextOf(Find(*schema, "BaseSchema")), "CommonSchema");
    EXPECT_EQ(Find(*schema, "BaseSchema").GetFlags(), kDefinitionIteratorData);
    EXPECT_EQ(TextOf(Find(*schema, "assettype")), "t");
    EXPECT_EQ(Find(*schema, "assettype").GetFlags(), kReadOnly);
    EXPECT_EQ(Str(Find(*schema, "assettype").Descriptor().label), "assettype");
    EXPECT_TRUE(Has(*schema, "UIName"));
    EXPECT_EQ(global.FindOwn("S"), schema);
    EXPECT_TRUE(schema->IsPinned());
}

TEST_F(SchemaManagerTest, TheAssetTypeMustBeThatOfTheBase) {
    LoadGlobal(CommonXml());
    KRVTSchemaDefinition* base = global.CreateSchema("B", "texture", nullptr);
    EXPECT_EQ(global.CreateSchema("S", "light", base), nullptr);
    EXPECT_EQ(global.CreateSchema("S", "", base), nullptr);
    EXPECT_NE(global.CreateSchema("S", "texture", base), nullptr);
}

TEST_F(SchemaManagerTest, ABaseOfAnotherSetIsReplacedByTheOneOfItsId) {
    KRVTSchemaDefinition* shared = LoadGlobal(CommonXml());
    KRVTSchemaDefinition* own = Load(library, CommonXml());
    KRVTSchemaDefinition* schema = global.CreateSchema("S", "t", own);
    ASSERT_NE(schema, nullptr);
    EXPECT_EQ(schema->BaseDefinition(), shared);
    KRVTSchemaDefinition* stranger = Load(library, DerivedXml("X", "CommonSchema", ""));
    EXPECT_EQ(global.CreateSchema("T", "", stranger), nullptr);
}

TEST_F(SchemaManagerTest, TheGlobalSetRefusesAnEmptyRootSchema) {
    EXPECT_EQ(global.CreateSchema("CommonSchema", "", nullptr), nullptr);
    EXPECT_NE(library.CreateSchema("CommonSchema", "", nullptr), nullptr);
}

TEST_F(SchemaManagerTest, AddSchemaMakesTwinsBasesFirst) {
    Load(library, CommonXml());
    KRVTSchemaDefinition* middle =
        Load(library, DerivedXml("Middle", "CommonSchema",
                                 "<type val=\"t\"/><Float id=\"m\" val=\"2\"/>"
                                 "<PropertyAlias alias=\"em\" id=\"m\"/>"));
    KRVTSchemaDefinition* leaf =
        Load(library, DerivedXml("Leaf", "Middle", "<type val=\"t\"/><Float id=\"m\" val=\"3\"/>"));
    EXPECT_TRUE(global.AddSchema(leaf));
    EXPECT_EQ(global.GetSchemaCount(), 3u);
    KRVTSchemaDefinition* twin = global.FindOwn("Leaf");
    ASSERT_NE(twin, nullptr);
    EXPECT_NE(twin, leaf);
    EXPECT_EQ(twin->BaseDefinition(), global.FindOwn("Middle"));
    EXPECT_EQ(NumberOf(Find(*twin, "m")), 3);
    EXPECT_EQ(NumberOf(Find(*global.FindOwn("Middle"), "m")), 2);
    EXPECT_EQ(twin->FindByNameOrAlias("em"), &Find(*twin, "m"));
    EXPECT_EQ(NamesOf(*twin), NamesOf(*leaf));
    EXPECT_FALSE(twin->IsRegistered());
    EXPECT_FALSE(leaf->IsInconsistent());
    EXPECT_FALSE(middle->IsInconsistent());
    for (const PropertyBase* property : leaf->Properties()) {
        EXPECT_EQ(Find(*twin, property->Name().c_str()).GetFlags(), property->GetFlags())
            << Str(property->Name());
    }
}

// The twin inherits more from the base of its set than the schema that it is made from.
TEST_F(SchemaManagerTest, AddSchemaOfANewOneEndsConsistent) {
    LoadGlobal(CommonXml("<Float id=\"more\"/>"));
    KRVTSchemaDefinition* const common = Load(library, CommonXml());
    KRVTSchemaDefinition* const schema = Load(library, DerivedXml("S", "CommonSchema", ""));
    EXPECT_TRUE(global.AddSchema(schema));
    EXPECT_TRUE(Has(*global.FindOwn("S"), "more"));
    EXPECT_FALSE(Has(*schema, "more"));
    EXPECT_FALSE(schema->IsInconsistent());
    // One that was there already is merged into and no more.
    EXPECT_TRUE(common->IsInconsistent());
}

TEST_F(SchemaManagerTest, AddSchemaOfAGlobalSchemaIsTrueAtOnce) {
    KRVTSchemaDefinition* common = LoadGlobal(CommonXml());
    EXPECT_TRUE(global.AddSchema(common));
    EXPECT_FALSE(global.AddSchema(nullptr));
}

TEST_F(SchemaManagerTest, AddSchemaOnAGlobalBaseMergesNothingIntoTheBase) {
    LoadGlobal(CommonXml());
    KRVTSchemaDefinition* schema = Load(batch, DerivedXml("S", "CommonSchema", ""));
    ASSERT_EQ(schema->BaseDefinition(), global.FindOwn("CommonSchema"));
    EXPECT_TRUE(global.AddSchema(schema));
    EXPECT_EQ(global.FindOwn("S")->BaseDefinition(), global.FindOwn("CommonSchema"));
}

TEST_F(SchemaManagerTest, AddSchemaRefusesARootSchemaThatLacksSomething) {
    KRVTSchemaDefinition* common =
        Load(library, "<AssetSchema><UID val=\"CommonSchema\"/></AssetSchema>");
    ASSERT_NE(common, nullptr);
    EXPECT_FALSE(global.AddSchema(common));
    EXPECT_EQ(global.GetSchemaCount(), 0u);
}

TEST_F(SchemaManagerTest, AddSchemaMergesIntoTheOneThatIsThere) {
    LoadGlobal(CommonXml());
    KRVTSchemaDefinition* there = LoadGlobal(DerivedXml("S", "CommonSchema", ""));
    KRVTSchemaDefinition* more =
        Load(batch, DerivedXml("S", "CommonSchema", "<Float id=\"p\" val=\"2\"/>"));
    EXPECT_TRUE(global.AddSchema(more));
    EXPECT_EQ(global.FindOwn("S"), there);
    EXPECT_EQ(NumberOf(Find(*there, "p")), 2);
    KRVTSchemaDefinition* conflicting =
        Load(library, DerivedXml("S", "CommonSchema", "<Float id=\"p\" val=\"3\"/>"));
    EXPECT_FALSE(global.AddSchema(conflicting));
    EXPECT_EQ(NumberOf(Find(*there, "p")), 2);
}

TEST_F(SchemaManagerTest, AddSchemaRefusesAnotherBase) {
    LoadGlobal(CommonXml());
    LoadGlobal(DerivedXml("B", "CommonSchema", ""));
    LoadGlobal(DerivedXml("S", "CommonSchema", ""));
    EXPECT_FALSE(global.AddSchema(Load(batch, DerivedXml("S", "B", ""))));
}

TEST_F(SchemaManagerTest, ANewSchemaThatIsRefusedLeavesNothingBehind) {
    LoadGlobal(CommonXml());
    // The base has another asset type than its child.
    LoadGlobal(DerivedXml("B", "CommonSchema", "<type val=\"texture\"/>"));
    EXPECT_FALSE(global.AddSchema(Load(batch, DerivedXml("S", "B", "<type val=\"light\"/>"))));
    EXPECT_EQ(global.FindOwn("S"), nullptr);
    EXPECT_EQ(global.GetSchemaCount(), 2u);
}

TEST_F(SchemaManagerTest, ALongChainOfBasesIsAdded) {
    Load(library, CommonXml());
    std::string base = "CommonSchema";
    for (int i = 0; i < 300; ++i) {
        const std::string id = "S" + std::to_string(i);
        ASSERT_NE(Load(library, DerivedXml(id, base, "")), nullptr);
        base = id;
    }
    EXPECT_TRUE(global.AddSchema(library.FindOwn(nuo::string(base.c_str()))));
    EXPECT_EQ(global.GetSchemaCount(), 301u);
}

// A root schema so large that a set has room for 16 schemas below it.
std::string LargeCommonXml() {
    std::string more;
    for (int i = 0; i < 16000; ++i)
        more += "<URL id=\"u" + std::to_string(i) + "\"/>";
    return CommonXml(more);
}

TEST_F(SchemaManagerTest, ASchemaThatTheSetHasNoRoomToInheritForIsRefused) {
    ASSERT_NE(Load(library, LargeCommonXml()), nullptr);
    for (int i = 0; i < 16; ++i)
        ASSERT_NE(Load(library, DerivedXml("S" + std::to_string(i), "CommonSchema", "")), nullptr);
    const std::string last = DerivedXml("S16", "CommonSchema", "");
    EXPECT_EQ(halvern_tests::Raised<schema_too_large>([&] { Load(library, last); }),
              "The schemas inherit too much.");
    EXPECT_EQ(library.GetSchemaCount(), 17u);
    EXPECT_FALSE(library.HasPending());
    library.Clear();
    ASSERT_NE(Load(library, CommonXml()), nullptr);
    EXPECT_NE(Load(library, last), nullptr);
}

TEST_F(SchemaManagerTest, OneThatWaitedAndFindsNoRoomStaysPendingAndItsBaseIsTaken) {
    for (int i = 0; i < 17; ++i)
        ASSERT_NE(Load(library, DerivedXml("S" + std::to_string(i), "CommonSchema", "")), nullptr);
    const KRVTSchemaDefinition* const common = Load(library, LargeCommonXml());
    ASSERT_NE(common, nullptr);
    EXPECT_EQ(common, library.FindOwn("CommonSchema"));
    EXPECT_EQ(library.GetSchemaCount(), 17u);
    EXPECT_FALSE(library.IsPending("S15"));
    EXPECT_TRUE(library.IsPending("S16"));
    EXPECT_EQ(halvern_tests::Raised<schema_too_large>([&] { library.RetryPending(); }),
              "The schemas inherit too much.");
    EXPECT_TRUE(library.IsPending("S16"));
}

TEST_F(SchemaManagerTest, NeitherIsOneMadeNorReservedThatTheSetHasNoRoomToInheritFor) {
    KRVTSchemaDefinition* const common = Load(library, LargeCommonXml());
    ASSERT_NE(common, nullptr);
    for (int i = 0; i < 15; ++i)
        ASSERT_NE(library.CreateSchema(Text(("S" + std::to_string(i)).c_str()), "", nullptr),
                  nullptr);
    EXPECT_TRUE(library.ReserveBelow(*common));
    EXPECT_FALSE(library.ReserveBelow(*common));
    EXPECT_EQ(library.CreateSchema("S16", "", nullptr), nullptr);
    EXPECT_EQ(library.GetSchemaCount(), 16u);
}

// A process may open any number of libraries one after the other.
TEST_F(SchemaManagerTest, TheSharedSetHasRoomForWhatAllLibrariesBring) {
    ASSERT_NE(LoadGlobal(LargeCommonXml()), nullptr);
    for (int i = 0; i < 17; ++i)
        ASSERT_NE(global.CreateSchema(Text(("S" + std::to_string(i)).c_str()), "", nullptr),
                  nullptr);
    KRVTSchemaDefinition* stranger = Load(library, DerivedXml("Stranger", "CommonSchema", ""));
    ASSERT_NE(stranger, nullptr);
    EXPECT_TRUE(global.AddSchema(stranger));
    EXPECT_EQ(global.GetSchemaCount(), 19u);
}

// Merges ask the library of their source for its version, once each.
class CountingLibrary final : public ISchemaLibrary {
public:
    LibraryFormat Format() const override {
        ++merges;
        return {};
    }

    mutable int merges = 0;
};

TEST_F(SchemaManagerTest, OneRunMergesEachSchemaOfAChainOnce) {
    CountingLibrary counting;
    SchemaManager chain(world.context, world.MakeNamespace("chain"), SchemaScope::kLibrary, &world,
                        &counting);
    Load(chain, CommonXml());
    std::string base = "CommonSchema";
    for (int i = 0; i < 50; ++i) {
        const std::string id = "S" + std::to_string(i);
        ASSERT_NE(Load(chain, DerivedXml(id, base, "")), nullptr);
        base = id;
    }
    SchemaManager::Added met;
    for (std::uint64_t i = 0; i < chain.GetSchemaCount(); ++i)
        EXPECT_TRUE(global.AddSchema(chain.GetSchema(i), met));
    EXPECT_EQ(counting.merges, 51);
    EXPECT_EQ(global.GetSchemaCount(), 51u);
}

TEST_F(SchemaManagerTest, WhatDerivesFromARefusedSchemaIsRefusedInTheSameRun) {
    Load(library, "<AssetSchema><UID val=\"CommonSchema\"/></AssetSchema>");
    Load(library, DerivedXml("B", "CommonSchema", ""));
    Load(library, DerivedXml("A", "B", ""));
    SchemaManager::Added met;
    EXPECT_FALSE(global.AddSchema(library.FindOwn("B"), met));
    LoadGlobal(CommonXml());
    EXPECT_FALSE(global.AddSchema(library.FindOwn("A"), met));
    EXPECT_EQ(global.GetSchemaCount(), 1u);
}

TEST_F(SchemaManagerTest, ClearDestroysAllSchemasAndWhatIsPending) {
    Load(library, CommonXml());
    Load(library, DerivedXml("S", "Missing", ""));
    EXPECT_TRUE(library.HasPending());
    library.Clear();
    EXPECT_EQ(library.GetSchemaCount(), 0u);
    EXPECT_FALSE(library.HasPending());
}

}  // namespace korvanet::platform::assets
