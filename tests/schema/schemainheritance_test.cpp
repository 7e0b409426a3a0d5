#include "assets/schema/schemainheritance.h"

#include "assets/property/bounds.h"
#include "schema/support.h"

namespace korvanet::platform::assets {

using namespace PropertyFlags;

class SchemaInheritanceTest : public SchemaTest {};

TEST_F(SchemaInheritanceTest, TheChildGainsWhatItLacks) {
    KRVTSchemaDefinition& base = ReadElements(
        "<Float id='p' val='0.5' label='L' metadata='true'><Bounds minimum='0'/></Float>"
        "<Choice id='q'><ChoiceValue id='a' val='3'/></Choice>");
    KRVTSchemaDefinition& child = ReadElements("<Float id='own'/>");
    InheritFrom(child, base);
    EXPECT_EQ(NamesOf(child), (Lines{"own", "p", "q"}));
    const PropertyBase& p = Find(child, "p");
    EXPECT_EQ(NumberOf(p), 0.5);
    EXPECT_EQ(p.GetFlags(), kPublic | kMetadata);
    EXPECT_EQ(Str(p.Descriptor().label), "L");
    EXPECT_NE(&p.Descriptor(), &Find(base, "p").Descriptor());
    EXPECT_EQ(p.Descriptor().bounds.get(), Find(base, "p").Descriptor().bounds.get());
    EXPECT_EQ(Find(child, "q").Descriptor().choices.get(),
              Find(base, "q").Descriptor().choices.get());
}

TEST_F(SchemaInheritanceTest, TheValuesOfBaseAndChildAreTheirOwn) {
    KRVTSchemaDefinition& base = ReadElements("<Integer id='p' val='1'/>");
    KRVTSchemaDefinition& child = ReadElements("");
    InheritFrom(child, base);
    As<IIntegerValue>(Find(base, "p")).SetValue(2, 0);
    EXPECT_EQ(IntegerOf(Find(child, "p")), 1);
}

TEST_F(SchemaInheritanceTest, AChildKeepsValueAndLabelAndTakesTheFlagsOfTheBase) {
    KRVTSchemaDefinition& base = ReadElements("<String id='p' val='b' label='B' local='true'/>");
    KRVTSchemaDefinition& child =
        ReadElements("<String id='p' val='c' label='C' metadata='true'/>");
    InheritFrom(child, base);
    EXPECT_EQ(TextOf(Find(child, "p")), "c");
    EXPECT_EQ(Str(Find(child, "p").Descriptor().label), "C");
    EXPECT_EQ(Find(child, "p").GetFlags(), kPublic | kLocal);
}

TEST_F(SchemaInheritanceTest, AChildKeepsItsUriRoles) {
    KRVTSchemaDefinition& base = ReadElements("<URL id='p'/><URL id='q'/>");
    KRVTSchemaDefinition& child =
        ReadElements("<ui id='p' val=''/><implementation id='q' val=''/>");
    InheritFrom(child, base);
    EXPECT_EQ(Find(child, "p").GetFlags(), kPublic | kUIDefinition);
    EXPECT_EQ(Find(child, "q").GetFlags(), kPublic | kImplementation);
}

TEST_F(SchemaInheritanceTest, AChildsPropertyMovesToTheGroupOfItsNewFlags) {
    KRVTSchemaDefinition& base = ReadElements("<String id='p' readonly='true'/>");
    KRVTSchemaDefinition& child = ReadElements("<String id='p' val='c' label='C'/>");
    InheritFrom(child, base);
    EXPECT_EQ(child.FindInGroup(PropertyTableImp::kReadWriteGroup, "p"), nullptr);
    const PropertyBase* moved = child.FindInGroup(PropertyTableImp::kReadOnlyGroup, "p");
    ASSERT_NE(moved, nullptr);
    EXPECT_EQ(TextOf(*moved), "c");
    EXPECT_EQ(Str(moved->Descriptor().label), "C");
}

TEST_F(SchemaInheritanceTest, AliasesAreLookedUpInTheBaseAndNotCopied) {
    KRVTSchemaDefinition& base = ReadElements("<Float id='p'/><PropertyAlias alias='a' id='p'/>");
    KRVTSchemaDefinition& child = ReadElements("");
    child.SetBase(&base);
    InheritFrom(child, base);
    EXPECT_TRUE(child.OwnAliases().empty());
    EXPECT_EQ(child.FindByNameOrAlias("a"), &Find(child, "p"));
}

TEST_F(SchemaInheritanceTest, ASharingCopyHasTheDescriptorOfItsSource) {
    KRVTSchemaDefinition& source = ReadElements("<Float id='p' val='2'/>");
    KRVTSchemaDefinition& target = ReadElements("");
    PropertyBase& copy = AddSharingCopy(target, Find(source, "p"));
    EXPECT_EQ(&copy, &Find(target, "p"));
    EXPECT_EQ(&copy.Descriptor(), &Find(source, "p").Descriptor());
    EXPECT_EQ(NumberOf(copy), 2);
}

TEST_F(SchemaInheritanceTest, ACopyOfASchemaHasAllAndSharesNothing) {
    KRVTSchemaDefinition& schema = ReadElements(
        "<UID val='S'/><Float id='p' val='2'/><ui id='u' val=''/>"
        "<PropertyAlias alias='a' id='p'/>");
    const intrusive_ptr<KRVTSchemaDefinition> copy = CopySchema(schema);
    EXPECT_EQ(Str(copy->Id()), "S");
    EXPECT_EQ(NamesOf(*copy), NamesOf(schema));
    EXPECT_EQ(copy->FindByNameOrAlias("a"), &Find(*copy, "p"));
    EXPECT_NE(&Find(*copy, "u").Descriptor(), &Find(schema, "u").Descriptor());
    EXPECT_FALSE(copy->Registry().valid());
}

TEST_F(SchemaInheritanceTest, ACopyKeepsAnAliasThatOverridesOneOfTheBase) {
    KRVTSchemaDefinition& base = ReadElements("<Float id='p'/><PropertyAlias alias='a' id='p'/>");
    KRVTSchemaDefinition& child = ReadElements("<Float id='q'/><PropertyAlias alias='a' id='q'/>");
    child.SetBase(&base);
    const intrusive_ptr<KRVTSchemaDefinition> copy = CopySchema(child);
    EXPECT_EQ(copy->BaseDefinition(), &base);
    EXPECT_EQ(copy->FindByNameOrAlias("a"), &Find(*copy, "q"));
}

}  // namespace korvanet::platform::assets
