#include "assets/schema/schemadefinition.h"

#include "assets/serialization/io/archivestream.h"
#include "schema/support.h"

namespace korvanet::platform::assets {

namespace {

// A target that fails in the two ways in which a writer can.
class BrokenWriter final : public core::IDataWriter {
public:
    explicit BrokenWriter(bool raises) : raises_(raises) {}
    bool IsOpen() const override { return true; }
    void Close() override {}
    bool CanWrite() const override { return true; }
    std::uint64_t Write(const void*, std::uint64_t) override { return 0; }
    bool WriteExact(const void*, std::uint64_t) override {
        if (raises_) throw std::runtime_error("full");
        return false;
    }
    std::uint64_t Seek(std::int64_t, core::SeekOrigin) override { return 0; }
    std::uint64_t Tell() const override { return 0; }

private:
    bool raises_;
};

}  // namespace

class SchemaDefinitionTest : public SchemaTest {
protected:
    SchemaDefinitionTest() {
        base.AddStringProperty(L"old", 0, L"", L"from base");
        child.AddStringProperty(L"own", 0, L"", L"x");
        child.SetBase(&base);
    }

    KRVTSchemaDefinition& base = NewSchema("Base");
    KRVTSchemaDefinition& child = NewSchema("Child");
    core::UTF8String alias;
    core::UTF8String target;
};

TEST_F(SchemaDefinitionTest, AnAliasLandsOnItsTarget) {
    EXPECT_TRUE(child.AddAlias(L"second", L"own"));
    EXPECT_EQ(child.FindProperty(L"second"), child.FindProperty(L"own"));
    EXPECT_EQ(std::as_const(child).FindProperty(L"second"), child.FindProperty(L"own"));
    EXPECT_TRUE(child.GetAliasTarget(L"second", target));
    EXPECT_STREQ(target.AsUTF8(), "own");
    EXPECT_TRUE(child.GetAliasFor(L"own", alias));
    EXPECT_STREQ(alias.AsUTF8(), "second");
}

TEST_F(SchemaDefinitionTest, AnAliasStandsInNoEnumeration) {
    child.AddAlias(L"second", L"own");
    EXPECT_EQ(NamesOf(child), Lines{"own"});
}

TEST_F(SchemaDefinitionTest, AnUnknownNameIsNull) {
    EXPECT_EQ(child.FindProperty(L"nothing"), nullptr);
    EXPECT_EQ(child.FindProperty(static_cast<const wchar_t*>(nullptr)), nullptr);
    EXPECT_FALSE(child.GetAliasTarget(L"nothing", target));
    EXPECT_FALSE(child.GetAliasFor(L"nothing", alias));
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(SchemaDefinitionTest, ASecondAliasForATargetIsRefused) {
    EXPECT_TRUE(child.AddAlias(L"a", L"own"));
    EXPECT_FALSE(child.AddAlias(L"b", L"own"));
    EXPECT_EQ(child.GetAliasCount(), 1u);
}

TEST_F(SchemaDefinitionTest, AnEmptyNullOrKnownAliasIsRefused) {
    EXPECT_FALSE(child.AddAlias(L"", L"own"));
    EXPECT_FALSE(child.AddAlias(L"a", L""));
    EXPECT_FALSE(child.AddAlias(nullptr, L"own"));
    EXPECT_FALSE(child.AddAlias(L"a", nullptr));
    EXPECT_TRUE(base.AddAlias(L"a", L"old"));
    EXPECT_FALSE(child.AddAlias(L"a", L"own"));
}

TEST_F(SchemaDefinitionTest, ATargetOfTheBaseMayHaveAnotherAliasHere) {
    EXPECT_TRUE(base.AddAlias(L"a", L"old"));
    EXPECT_TRUE(child.AddAlias(L"b", L"old"));
    EXPECT_TRUE(child.GetAliasFor(L"old", alias));
    EXPECT_STREQ(alias.AsUTF8(), "b");
}

TEST_F(SchemaDefinitionTest, AliasesOfTheBaseComeBehindOwnOnes) {
    base.AddAlias(L"of base", L"old");
    child.AddAlias(L"of child", L"own");
    EXPECT_EQ(child.GetAliasCount(), 2u);
    ASSERT_TRUE(child.GetAlias(0, alias, target));
    EXPECT_STREQ(alias.AsUTF8(), "of child");
    EXPECT_STREQ(target.AsUTF8(), "own");
    ASSERT_TRUE(child.GetAlias(1, alias, target));
    EXPECT_STREQ(alias.AsUTF8(), "of base");
    EXPECT_STREQ(target.AsUTF8(), "old");
    EXPECT_FALSE(child.GetAlias(2, alias, target));
    EXPECT_TRUE(child.GetAliasFor(L"old", alias));
    EXPECT_STREQ(alias.AsUTF8(), "of base");
}

TEST_F(SchemaDefinitionTest, TypeAndLocalNamesComeFromTheNearestSchemaThatHasThem) {
    using PropertyFlags::kReadOnly;
    EXPECT_FALSE(child.GetAssetType(target));
    base.AddStringProperty(L"assettype", kReadOnly, L"", L"texture");
    base.AddStringProperty(L"localtype", kReadOnly, L"", L"T");
    base.AddStringProperty(L"localname", kReadOnly, L"", L"N");
    EXPECT_TRUE(child.GetAssetType(target));
    EXPECT_STREQ(target.AsUTF8(), "texture");
    EXPECT_TRUE(child.GetLocalType(target));
    EXPECT_STREQ(target.AsUTF8(), "T");
    EXPECT_TRUE(child.GetLocalName(target));
    EXPECT_STREQ(target.AsUTF8(), "N");
    child.AddStringProperty(L"assettype", kReadOnly, L"", L"own");
    EXPECT_TRUE(child.GetAssetType(target));
    EXPECT_STREQ(target.AsUTF8(), "own");
}

TEST_F(SchemaDefinitionTest, AnAssetTypeThatCanBeWrittenDoesNotCount) {
    child.AddStringProperty(L"assettype", 0, L"", L"x");
    EXPECT_FALSE(child.GetAssetType(target));
}

TEST_F(SchemaDefinitionTest, TellsIdAndBase) {
    child.GetId(target);
    EXPECT_STREQ(target.AsUTF8(), "Child");
    EXPECT_EQ(child.GetBaseSchema(), static_cast<IAssetSchema*>(&base));
    EXPECT_EQ(base.GetBaseSchema(), nullptr);
    EXPECT_EQ(AsSchemaDefinition(&child), &child);
    EXPECT_EQ(AsSchemaDefinition(nullptr), nullptr);
}

TEST_F(SchemaDefinitionTest, TheVersionIs1WhereNoneIsTold) {
    EXPECT_EQ(child.Version(), 1);
    child.AddIntegerProperty(L"SchemaVersion", PropertyFlags::kReadOnly, L"", 7, nullptr);
    EXPECT_EQ(child.Version(), 7);
    base.AddStringProperty(L"SchemaVersion", PropertyFlags::kReadOnly, L"", L"7");
    EXPECT_EQ(base.Version(), 1);
}

TEST_F(SchemaDefinitionTest, WritesToAnOpenStreamOnly) {
    EXPECT_FALSE(child.WriteTo(nullptr));
    WriteArchiveStream closed(nullptr);
    EXPECT_FALSE(child.WriteTo(&closed));
    MemoryStream stream;
    EXPECT_TRUE(child.WriteTo(&stream));
    EXPECT_GT(stream.GetBuffer().size(), 0u);
    MemoryStream untouched;
    EXPECT_FALSE(NewSchema("").WriteTo(&untouched));
    EXPECT_EQ(untouched.GetBuffer().size(), 0u);
}

TEST_F(SchemaDefinitionTest, AWriterThatFailsMakesItFalse) {
    BrokenWriter shortWriter(false);
    BrokenWriter raisingWriter(true);
    EXPECT_FALSE(child.WriteTo(&shortWriter));
    EXPECT_FALSE(child.WriteTo(&raisingWriter));
}

}  // namespace korvanet::platform::assets
