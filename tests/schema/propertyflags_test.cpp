#include "assets/schema/propertyflags.h"

#include "schema/support.h"

namespace korvanet::platform::assets {

using namespace PropertyFlags;

TEST(PropertyFlagsTest, FittingFlagsHaveNoCode) {
    EXPECT_EQ(CheckPropertyFlags(PropertyType::kString, 0), 0u);
    EXPECT_EQ(CheckPropertyFlags(PropertyType::kString, kPublic | kReadOnly | kLocal), 0u);
    EXPECT_EQ(CheckPropertyFlags(PropertyType::kScalar, kUnits | kMetadata), 0u);
}

TEST(PropertyFlagsTest, UnknownBitsAreCode1) {
    EXPECT_EQ(CheckPropertyFlags(PropertyType::kString, 0x1000), 1u);
    EXPECT_EQ(CheckPropertyFlags(PropertyType::kString, 0x80000000), 1u);
    EXPECT_EQ(CheckPropertyFlags(PropertyType::kUri, 0xFFF & ~0x4E2u), 0u);
}

TEST(PropertyFlagsTest, ReadOnlyIteratorDataIsCode2) {
    EXPECT_EQ(CheckPropertyFlags(PropertyType::kString, kReadOnly | kDefinitionIteratorData), 2u);
}

TEST(PropertyFlagsTest, ListsOfKindsWithoutListClassAreCode4) {
    for (std::uint32_t kind = 0; kind <= 12; ++kind) {
        const bool hasList =
            kind == 2 || kind == 4 || kind == 6 || kind == 7 || kind == 8 || kind == 10;
        const bool isReference = kind == 9 || kind == 12;
        const std::uint32_t connections = isReference ? kAllowConnectedAsset : 0;
        EXPECT_EQ(
            CheckPropertyFlags(static_cast<PropertyType>(kind), kAllowMultipleValues | connections),
            hasList ? 0u : 4u)
            << kind;
    }
}

TEST(PropertyFlagsTest, AUnitOnOtherThanANumberIsCode8) {
    EXPECT_EQ(CheckPropertyFlags(PropertyType::kInteger, kUnits), 8u);
    EXPECT_EQ(CheckPropertyFlags(PropertyType::kScalar, kUnits), 0u);
}

TEST(PropertyFlagsTest, AUriRoleOnOtherThanAUriIsCode16) {
    for (const std::uint32_t role : {kUIDefinition, kImplementation, kTextureURI}) {
        EXPECT_EQ(CheckPropertyFlags(PropertyType::kString, role), 16u);
        EXPECT_EQ(CheckPropertyFlags(PropertyType::kUri, role), 0u);
    }
}

TEST(PropertyFlagsTest, BothKindsOfConnectionsAreCode32) {
    EXPECT_EQ(CheckPropertyFlags(PropertyType::kColor, kConnectionMask), 32u);
}

TEST(PropertyFlagsTest, AReferenceOrTextureWithoutConnectionsIsCode32) {
    EXPECT_EQ(CheckPropertyFlags(PropertyType::kReference, 0), 32u);
    EXPECT_EQ(CheckPropertyFlags(PropertyType::kTexture, 0), 32u);
    EXPECT_EQ(CheckPropertyFlags(PropertyType::kReference, kAllowConnectedAssets), 0u);
    EXPECT_EQ(CheckPropertyFlags(PropertyType::kTexture, kAllowConnectedAsset), 0u);
}

TEST(PropertyFlagsTest, CodesAddUp) {
    EXPECT_EQ(CheckPropertyFlags(PropertyType::kBoolean, 0xFFFF), 1u + 2 + 4 + 8 + 16 + 32);
}

TEST(PropertyFlagsTest, AConflictIsReportedWithIdAndCode) {
    ReportLines reports;
    WarnFlagConflict("wobble", 6);
    EXPECT_EQ(reports.Take(),
              (Lines{"warning: Property flags conflict in Node: wobble, ErrorCode: 6"}));
}

class RequiredPropertiesTest : public SchemaTest {};

TEST_F(RequiredPropertiesTest, ARootSchemaWithAllOfThemPasses) {
    EXPECT_TRUE(HasRequiredProperties(Read(CommonXml())));
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(RequiredPropertiesTest, EachMissingOneFails) {
    const char* const names[] = {"BaseSchema",
                                 "SchemaVersion",
                                 "AssetLibID",
                                 "assettype",
                                 "localtype",
                                 "localname",
                                 "UIName",
                                 "keyword",
                                 "category",
                                 "description",
                                 "thumbnail",
                                 "Hidden",
                                 "VersionGUID",
                                 "version",
                                 "revision",
                                 "UIDefinition",
                                 "AdvancedUIDefinition"};
    for (const char* name : names) {
        KRVTSchemaDefinition& schema = Read(CommonXml());
        const std::uint32_t flags = Find(schema, name).GetFlags();
        schema.Group(PropertyTableImp::GroupOf(flags)).Remove(name);
        EXPECT_FALSE(HasRequiredProperties(schema)) << name;
    }
}

TEST_F(RequiredPropertiesTest, EachOneInTheWrongPlaceFails) {
    const KRVTSchemaDefinition& whole = Read(CommonXml());
    for (const std::string& name : NamesOf(whole)) {
        for (const std::uint32_t flag :
             {kReadOnly, kAllowMultipleValues, kDefinitionIteratorData}) {
            KRVTSchemaDefinition& schema = Read(CommonXml());
            Find(schema, name.c_str()).Descriptor().flags ^= flag;
            EXPECT_FALSE(HasRequiredProperties(schema)) << name << " " << flag;
        }
    }
}

TEST_F(RequiredPropertiesTest, OtherFlagsDoNotCount) {
    KRVTSchemaDefinition& schema = Read(CommonXml());
    Find(schema, "version").Descriptor().flags ^= kPublic | kMetadata | kLocal;
    EXPECT_TRUE(HasRequiredProperties(schema));
}

}  // namespace korvanet::platform::assets
