#include "assets/schema/schemabatchloader.h"

#include "assets/serialization/io/archivestream.h"
#include "nuo/common/archive/primitives.h"
#include "schema/support.h"

namespace korvanet::platform::assets {

class SchemaBatchLoaderTest : public SchemaTest {
protected:
    ~SchemaBatchLoaderTest() override {
        if (loader != nullptr) loader->Release();
    }

    IAssetSchema* LoadInto(const std::string& xml) {
        MemoryStream stream;
        stream.WriteExact(xml.data(), xml.size());
        return loader->LoadSchema(&stream);
    }
    std::size_t Batches() { return world.runtime.root().findChild("usr").imp()->children.size(); }

    SchemaManager& global = *world.global;
    ISchemaBatchLoader* loader = new SchemaBatchLoader(world.context, global, &world);
};

TEST_F(SchemaBatchLoaderTest, ChildThenBaseThenCommitSucceeds) {
    EXPECT_NE(LoadInto(DerivedXml("S", "CommonSchema", "<Float id='p' val='2'/>")), nullptr);
    EXPECT_NE(LoadInto(CommonXml()), nullptr);
    EXPECT_EQ(global.GetSchemaCount(), 0u);
    EXPECT_TRUE(loader->Commit());
    ASSERT_EQ(global.GetSchemaCount(), 2u);
    EXPECT_EQ(NumberOf(Find(*global.FindOwn("S"), "p")), 2);
    EXPECT_EQ(global.FindOwn("S")->BaseDefinition(), global.FindOwn("CommonSchema"));
}

TEST_F(SchemaBatchLoaderTest, AMissingBaseRefusesTheCommitAndTheBatchMayGo) {
    EXPECT_NE(LoadInto(CommonXml()), nullptr);
    EXPECT_NE(LoadInto(DerivedXml("S", "Missing", "")), nullptr);
    EXPECT_FALSE(loader->Commit());
    EXPECT_EQ(global.GetSchemaCount(), 0u);
    loader->Release();
    loader = nullptr;
    EXPECT_EQ(global.GetSchemaCount(), 0u);
}

TEST_F(SchemaBatchLoaderTest, ARefusedCommitMayBeRepeatedOnceTheBaseIsThere) {
    LoadInto(CommonXml());
    LoadInto(DerivedXml("S", "Late", ""));
    EXPECT_FALSE(loader->Commit());
    LoadInto(DerivedXml("Late", "CommonSchema", ""));
    EXPECT_TRUE(loader->Commit());
    EXPECT_EQ(global.GetSchemaCount(), 3u);
}

TEST_F(SchemaBatchLoaderTest, ASecondFileOfAnIdWarnsAndTheFirstIsKept) {
    IAssetSchema* first = LoadInto(CommonXml("<Float id='p' val='1'/>"));
    EXPECT_EQ(LoadInto(CommonXml("<Float id='p' val='2'/>")), first);
    EXPECT_EQ(reports.Take(), Lines{"warning: Try to load a loaded schema."});
    EXPECT_TRUE(loader->Commit());
    EXPECT_EQ(NumberOf(Find(*global.FindOwn("CommonSchema"), "p")), 1);
}

TEST_F(SchemaBatchLoaderTest, ASchemaThatTheManagerHasIsNoDuplicate) {
    KRVTSchemaDefinition* shared = LoadGlobal(CommonXml());
    EXPECT_NE(LoadInto(CommonXml("<Float id='p'/>")), static_cast<IAssetSchema*>(shared));
    EXPECT_TRUE(loader->Commit());
    EXPECT_TRUE(Has(*shared, "p"));
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(SchemaBatchLoaderTest, WhatWasAddedBeforeAFailureStays) {
    LoadGlobal(CommonXml());
    LoadGlobal(DerivedXml("B", "CommonSchema", "<Float id='p' val='1'/>"));
    LoadInto(DerivedXml("A", "CommonSchema", ""));
    LoadInto(DerivedXml("B", "CommonSchema", "<Float id='p' val='2'/>"));
    LoadInto(DerivedXml("C", "CommonSchema", ""));
    EXPECT_FALSE(loader->Commit());
    loader->Release();
    loader = nullptr;
    EXPECT_NE(global.FindOwn("A"), nullptr);
    EXPECT_EQ(global.FindOwn("C"), nullptr);
    EXPECT_EQ(NumberOf(Find(*global.FindOwn("B"), "p")), 1);
}

TEST_F(SchemaBatchLoaderTest, ACommittedLoaderIsSpent) {
    LoadInto(CommonXml());
    EXPECT_TRUE(loader->Commit());
    EXPECT_EQ(LoadInto(DerivedXml("S", "CommonSchema", "")), nullptr);
    EXPECT_TRUE(loader->Commit());
    EXPECT_EQ(global.GetSchemaCount(), 1u);
}

TEST_F(SchemaBatchLoaderTest, AFileThatIsNoSchemaIsNullAndTheBatchGoesOn) {
    EXPECT_EQ(LoadInto("<broken"), nullptr);
    EXPECT_EQ(loader->LoadSchema(nullptr), nullptr);
    EXPECT_NE(LoadInto(CommonXml()), nullptr);
    EXPECT_TRUE(loader->Commit());
}

TEST_F(SchemaBatchLoaderTest, AStreamThatRaisesIsNull) {
    class RaisingStream final : public MemoryStream {
    public:
        std::uint64_t Read(void*, std::uint64_t) override { throw std::runtime_error("gone"); }
    } stream;
    EXPECT_EQ(loader->LoadSchema(&stream), nullptr);
}

TEST_F(SchemaBatchLoaderTest, AStreamThatNeverEndsIsNull) {
    class EndlessStream final : public MemoryStream {
    public:
        std::uint64_t Read(void*, std::uint64_t length) override { return length; }
    } stream;
    EXPECT_EQ(loader->LoadSchema(&stream), nullptr);
}

TEST_F(SchemaBatchLoaderTest, EachLoaderHasANamespaceOfItsOwnThatGoesWithIt) {
    EXPECT_EQ(Batches(), 1u);
    ISchemaBatchLoader* second = new SchemaBatchLoader(world.context, global, &world);
    EXPECT_EQ(Batches(), 2u);
    second->Release();
    EXPECT_EQ(Batches(), 1u);
    LoadInto(CommonXml());
    EXPECT_TRUE(loader->Commit());
    EXPECT_EQ(Batches(), 0u);
}

}  // namespace korvanet::platform::assets
