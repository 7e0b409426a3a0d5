#include "assets/schema/schemamerge.h"

#include "assets/property/bounds.h"
#include "assets/schema/ischemaset.h"
#include "assets/schema/schemainheritance.h"
#include "schema/support.h"

namespace korvanet::platform::assets {

using namespace PropertyFlags;

namespace {

class OldLibrary final : public ISchemaLibrary {
public:
    explicit OldLibrary(LibraryFormat format) : format_(format) {}
    LibraryFormat Format() const override { return format_; }

private:
    LibraryFormat format_;
};

std::string Version(int version) {
    return "<Integer id='SchemaVersion' val='" + std::to_string(version) +
           "' readonly='true' public='false'/>";
}

}  // namespace

class SchemaMergeTest : public SchemaTest {
protected:
    KRVTSchemaDefinition& Make(const std::string& elements) {
        return ReadElements("<UID val='S'/>" + elements);
    }
    MergeResult Merge(KRVTSchemaDefinition& source, KRVTSchemaDefinition& target) {
        return MergeInto(source, &target);
    }
    bool Merges(const std::string& source, const std::string& target) {
        return Merge(Make(source), Make(target)).merged;
    }
};

TEST_F(SchemaMergeTest, NoTargetIsFalse) {
    EXPECT_FALSE(MergeInto(Make(""), nullptr).merged);
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(SchemaMergeTest, DifferentIdsAreRefusedWithAWarning) {
    EXPECT_FALSE(Merge(Make("<Float id='p'/>"), ReadElements("<UID val='T'/>")).merged);
    EXPECT_EQ(reports.Take(),
              Lines{"warning: Cannot merge two asset schemas which have different IDs."});
}

TEST_F(SchemaMergeTest, ASchemaMergesIntoItselfWithoutAChange) {
    KRVTSchemaDefinition& schema = Make("<Float id='p'/>");
    const MergeResult result = Merge(schema, schema);
    EXPECT_TRUE(result.merged);
    EXPECT_FALSE(result.changed);
}

TEST_F(SchemaMergeTest, TheTargetGainsWhatItLacks) {
    KRVTSchemaDefinition& target = Make("<Float id='a'/>");
    const MergeResult result =
        Merge(Make("<Float id='a'/><String id='b' val='x' public='false' label='L'/>"), target);
    EXPECT_TRUE(result.merged);
    EXPECT_TRUE(result.changed);
    EXPECT_TRUE(result.layoutChanged);
    EXPECT_EQ(NamesOf(target), (Lines{"a", "b"}));
    EXPECT_EQ(TextOf(Find(target, "b")), "x");
    EXPECT_EQ(Find(target, "b").GetFlags(), 0u);
    EXPECT_EQ(Str(Find(target, "b").Descriptor().label), "L");
}

TEST_F(SchemaMergeTest, AnAddedReadOnlyPropertyLeavesRecordsAsTheyAre) {
    const MergeResult result = Merge(Make("<String id='b' readonly='true'/>"), Make(""));
    EXPECT_TRUE(result.changed);
    EXPECT_FALSE(result.layoutChanged);
}

TEST_F(SchemaMergeTest, EqualSchemasMergeWithoutAChange) {
    const std::string all =
        "<Float id='a' val='1'><Bounds minimum='0'/></Float><URL id='u' val='x'/>"
        "<Choice id='c' val='k'><ChoiceValue id='k' val='1'/></Choice>";
    KRVTSchemaDefinition& source = Make(all);
    const MergeResult result = Merge(source, Make(all));
    EXPECT_TRUE(result.merged);
    EXPECT_FALSE(result.changed);
    EXPECT_FALSE(result.layoutChanged);
    EXPECT_FALSE(source.IsInconsistent());
}

TEST_F(SchemaMergeTest, WithEqualVersionsDefaultsMustBeEqual) {
    EXPECT_FALSE(Merges("<Float id='p' val='1'/>", "<Float id='p' val='2'/>"));
    EXPECT_FALSE(
        Merges(Version(2) + "<Float id='p' val='1'/>", Version(2) + "<Float id='p' val='2'/>"));
    // A schema without a version counts as one of version 1.
    EXPECT_FALSE(Merges(Version(1) + "<Float id='p' val='1'/>", "<Float id='p' val='2'/>"));
}

TEST_F(SchemaMergeTest, WithEqualVersionsFlagsAreNotCompared) {
    EXPECT_TRUE(Merges("<Float id='p'/>", "<Float id='p' metadata='true'/>"));
}

TEST_F(SchemaMergeTest, AFailureStopsBeforeWhatFollowsAndKeepsWhatWasMerged) {
    KRVTSchemaDefinition& target = Make("<Float id='p' val='2'/>");
    const MergeResult result =
        Merge(Make(Version(1) + "<Float id='a'/><Float id='p' val='1'/><Float id='z'/>"
                                "<PropertyAlias alias='x' id='a'/>"),
              target);
    EXPECT_FALSE(result.merged);
    EXPECT_TRUE(result.changed);
    EXPECT_EQ(NamesOf(target), (Lines{"a", "p"}));
    EXPECT_TRUE(target.OwnAliases().empty());
}

TEST_F(SchemaMergeTest, AGreaterVersionBringsItsDefaults) {
    KRVTSchemaDefinition& target = Make(Version(1) + "<Float id='p' val='1' label='old'/>");
    const MergeResult result =
        Merge(Make(Version(2) + "<Float id='p' val='2' label='new'><Bounds minimum='0'/></Float>"),
              target);
    EXPECT_TRUE(result.merged);
    EXPECT_TRUE(result.changed);
    EXPECT_FALSE(result.layoutChanged);
    EXPECT_EQ(NumberOf(Find(target, "p")), 2);
    EXPECT_EQ(Str(Find(target, "p").Descriptor().label), "new");
    EXPECT_NE(Find(target, "p").Descriptor().bounds.get(), nullptr);
    EXPECT_EQ(target.Version(), 2);
}

TEST_F(SchemaMergeTest, AGreaterVersionWithTheSameDefaultKeepsTheLabel) {
    KRVTSchemaDefinition& target = Make(Version(1) + "<Float id='p' val='1' label='old'/>");
    const MergeResult result =
        Merge(Make(Version(2) + "<Float id='p' val='1' label='new'/>"), target);
    EXPECT_TRUE(result.merged);
    EXPECT_FALSE(result.changed);
    EXPECT_EQ(Str(Find(target, "p").Descriptor().label), "old");
    EXPECT_EQ(target.Version(), 2);
}

TEST_F(SchemaMergeTest, AGreaterVersionBringsItsMark) {
    KRVTSchemaDefinition& source = Make(Version(2) + "<Float id='p' val='1'/>");
    KRVTSchemaDefinition& target = Make(Version(1) + "<Float id='p' val='1'/>");
    Find(source, "p").SetMarked(false);
    EXPECT_TRUE(Merge(source, target).changed);
    EXPECT_FALSE(Find(target, "p").IsMarked());
}

TEST_F(SchemaMergeTest, ALowerVersionChangesNothing) {
    KRVTSchemaDefinition& target = Make(Version(3) + "<Float id='p' val='1'/>");
    const MergeResult result = Merge(Make(Version(2) + "<Float id='p' val='2'/>"), target);
    EXPECT_TRUE(result.merged);
    EXPECT_FALSE(result.changed);
    EXPECT_EQ(NumberOf(Find(target, "p")), 1);
    EXPECT_EQ(target.Version(), 3);
}

TEST_F(SchemaMergeTest, WithDifferentVersionsKindsFlagsAndUnitsMustMatch) {
    EXPECT_FALSE(Merges(Version(2) + "<Float id='p'/>", "<Integer id='p'/>"));
    EXPECT_FALSE(Merges(Version(2) + "<Float id='p'/>", "<Float id='p' metadata='true'/>"));
    EXPECT_FALSE(Merges(Version(2) + "<Float id='p' unit='mm'/>", "<Float id='p' unit='cm'/>"));
    EXPECT_FALSE(Merges("<Float id='p'/>", Version(2) + "<Integer id='p'/>"));
    EXPECT_TRUE(Merges(Version(2) + "<Float id='p' unit='mm'/>", "<Float id='p' unit='mm'/>"));
}

TEST_F(SchemaMergeTest, AVersionIsAddedToATargetWithoutOne) {
    KRVTSchemaDefinition& target = Make("");
    EXPECT_TRUE(
        Merge(Make("<Integer id='SchemaVersion' val='4' label='V' readonly='true'/>"), target)
            .merged);
    EXPECT_EQ(target.Version(), 4);
    EXPECT_EQ(Find(target, "SchemaVersion").GetFlags(), kReadOnly);
    EXPECT_EQ(Str(Find(target, "SchemaVersion").Descriptor().label), "");
}

TEST_F(SchemaMergeTest, AVersionThatIsNotGreaterIsNotAdded) {
    KRVTSchemaDefinition& target = Make("");
    EXPECT_TRUE(Merge(Make(Version(1)), target).merged);
    EXPECT_FALSE(Has(target, "SchemaVersion"));
}

TEST_F(SchemaMergeTest, AVersionThatIsAListCountsAndIsSetByItsFirstElement) {
    const std::string more = "' readonly='true' public='false' allowmultiplevalues='true'/>";
    KRVTSchemaDefinition& target = Make("<Integer id='SchemaVersion' val='2,9" + more);
    EXPECT_TRUE(Merge(Make(Version(1)), target).merged);
    EXPECT_EQ(target.Version(), 2);
    EXPECT_TRUE(Merge(Make(Version(3)), target).merged);
    EXPECT_EQ(IntegerOf(Find(target, "SchemaVersion"), 0), 3);
    EXPECT_EQ(IntegerOf(Find(target, "SchemaVersion"), 1), 9);
    KRVTSchemaDefinition& single = Make(Version(3));
    EXPECT_TRUE(Merge(Make("<Integer id='SchemaVersion' val='4,1" + more), single).merged);
    EXPECT_EQ(single.Version(), 4);
}

TEST_F(SchemaMergeTest, AnInheritedDefaultTakesTheMarkToo) {
    KRVTSchemaDefinition& base = ReadElements("<UID val='B'/><Float id='p' val='1'/>");
    KRVTSchemaDefinition& source = Make("<Float id='p' val='5'/>");
    source.SetBase(&base);
    Find(source, "p").SetMarked(false);
    KRVTSchemaDefinition& target = Make("<Float id='p' val='1'/>");
    EXPECT_TRUE(Merge(source, target).merged);
    EXPECT_EQ(NumberOf(Find(target, "p")), 5);
    EXPECT_FALSE(Find(target, "p").IsMarked());
}

TEST_F(SchemaMergeTest, AValueWithAnotherMarkIsNoInheritedDefault) {
    KRVTSchemaDefinition& base = ReadElements("<UID val='B'/><Float id='p' val='1'/>");
    KRVTSchemaDefinition& source = Make("<Float id='p' val='5'/>");
    source.SetBase(&base);
    KRVTSchemaDefinition& target = Make("<Float id='p' val='1'/>");
    Find(target, "p").SetMarked(false);
    // With equal versions its own default must be equal then.
    EXPECT_FALSE(Merge(source, target).merged);
    EXPECT_EQ(NumberOf(Find(target, "p")), 1);
}

TEST_F(SchemaMergeTest, TheVersionCanWaitForAChange) {
    KRVTSchemaDefinition& same = Make(Version(1) + "<Float id='p'/>");
    EXPECT_TRUE(
        MergeInto(Make(Version(2) + "<Float id='p'/>"), &same, VersionPolicy::kWithChange).merged);
    EXPECT_EQ(same.Version(), 1);
    KRVTSchemaDefinition& changed = Make(Version(1) + "<Float id='p'/>");
    MergeInto(Make(Version(2) + "<Float id='p' val='3'/>"), &changed, VersionPolicy::kWithChange);
    EXPECT_EQ(changed.Version(), 2);
}

TEST_F(SchemaMergeTest, AnInheritedDefaultOfTheTargetIsReplacedWhateverTheVersions) {
    KRVTSchemaDefinition& base = ReadElements("<UID val='B'/><Float id='p' val='1'/>");
    KRVTSchemaDefinition& source = Make("<Float id='p' val='5' label='mine'/>");
    source.SetBase(&base);
    KRVTSchemaDefinition& target = Make(Version(9) + "<Float id='p' val='1' metadata='true'/>");
    const MergeResult result = Merge(source, target);
    EXPECT_TRUE(result.merged);
    EXPECT_TRUE(result.changed);
    EXPECT_EQ(NumberOf(Find(target, "p")), 5);
    EXPECT_EQ(Find(target, "p").GetFlags(), kPublic);
    EXPECT_EQ(Str(Find(target, "p").Descriptor().label), "mine");
}

TEST_F(SchemaMergeTest, AnInheritedDefaultMayChangeKindAndGroup) {
    KRVTSchemaDefinition& base =
        ReadElements("<UID val='B'/><Float id='p' val='1'/><Float id='q' val='1'/>");
    KRVTSchemaDefinition& source =
        Make("<String id='p' val='x'/><Float id='q' val='2' readonly='true'/>");
    source.SetBase(&base);
    KRVTSchemaDefinition& target = Make("<Float id='p' val='1'/><Float id='q' val='1'/>");
    const MergeResult result = Merge(source, target);
    EXPECT_TRUE(result.merged);
    EXPECT_TRUE(result.layoutChanged);
    EXPECT_EQ(TextOf(Find(target, "p")), "x");
    EXPECT_NE(target.FindInGroup(PropertyTableImp::kReadOnlyGroup, "q"), nullptr);
    EXPECT_EQ(target.FindInGroup(PropertyTableImp::kReadWriteGroup, "q"), nullptr);
}

TEST_F(SchemaMergeTest, BaseSchemaMustMatchApartFromItsPlace) {
    const std::string listed = "<String id='BaseSchema' val='B' definitionIteratorData='true'/>";
    EXPECT_TRUE(Merges(listed, listed));
    EXPECT_TRUE(Merges(listed, "<String id='BaseSchema' val='B'/>"));
    EXPECT_FALSE(Merges(listed, "<String id='BaseSchema' val='C'/>"));
    EXPECT_FALSE(Merges(listed, "<String id='BaseSchema' val='B' metadata='true'/>"));
    EXPECT_FALSE(Merges(listed, "<URL id='BaseSchema' val='B'/>"));
    // A greater version does not help.
    EXPECT_FALSE(Merges(Version(2) + listed, "<String id='BaseSchema' val='C'/>"));
    KRVTSchemaDefinition& unmarked = Make(listed);
    Find(unmarked, "BaseSchema").SetMarked(false);
    EXPECT_FALSE(Merge(Make(listed), unmarked).merged);
}

TEST_F(SchemaMergeTest, UrisMayDifferInTheirText) {
    KRVTSchemaDefinition& source = Make("<URL id='p' val='a'/>");
    KRVTSchemaDefinition& target = Make("<URL id='p' val='b'/>");
    const MergeResult result = Merge(source, target);
    EXPECT_TRUE(result.merged);
    EXPECT_FALSE(result.changed);
    EXPECT_EQ(TextOf(Find(source, "p")), "a");
    EXPECT_EQ(TextOf(Find(target, "p")), "b");
}

TEST_F(SchemaMergeTest, TheSourceTakesOverAResourcePathOfTheTarget) {
    const std::string list = " allowmultiplevalues='true'/>";
    KRVTSchemaDefinition& source = Make("<URL id='p' val='a,b,jpk:?asset=/s'" + list);
    KRVTSchemaDefinition& target = Make("<URL id='p' val='jpk:?asset=/t,c,jpk:?asset=/u'" + list);
    EXPECT_TRUE(Merge(source, target).merged);
    EXPECT_EQ(TextsOf(Find(source, "p")), (Lines{"jpk:?asset=/t", "b", "jpk:?asset=/s"}));
    EXPECT_EQ(TextsOf(Find(target, "p")), (Lines{"jpk:?asset=/t", "c", "jpk:?asset=/u"}));
}

TEST_F(SchemaMergeTest, UrisMustMatchInKindFlagsMarkAndDimension) {
    EXPECT_FALSE(Merges("<URL id='p'/>", "<String id='p'/>"));
    EXPECT_FALSE(Merges("<URL id='p'/>", "<URL id='p' metadata='true'/>"));
    EXPECT_FALSE(Merges("<URL id='p' val='a,b' allowmultiplevalues='true'/>",
                        "<URL id='p' val='a' allowmultiplevalues='true'/>"));
    KRVTSchemaDefinition& unmarked = Make("<URL id='p'/>");
    Find(unmarked, "p").SetMarked(false);
    EXPECT_FALSE(Merge(Make("<URL id='p'/>"), unmarked).merged);
}

TEST_F(SchemaMergeTest, InAPackagedLibraryATextureMayBeOneUriOrASet) {
    const std::string set = "<TextureURI id='p' val='a'/>";
    const std::string one = "<URL id='p' val='a'/>";
    EXPECT_FALSE(Merges(set, one));
    const OldLibrary library({3, 0, 3, 2});
    KRVTSchemaDefinition& source = Make(set);
    source.SetLibrary(&library);
    EXPECT_TRUE(Merge(source, Make(one)).merged);
    KRVTSchemaDefinition& plain = Make(one);
    plain.SetLibrary(&library);
    EXPECT_FALSE(Merge(plain, Make("<URL id='p' val='a' metadata='true'/>")).merged);
    const OldLibrary other({2, 0, 3, 2});
    source.SetLibrary(&other);
    EXPECT_FALSE(Merge(source, Make(one)).merged);
}

TEST_F(SchemaMergeTest, LibrariesOf3130LoseTheirMetadataFlags) {
    const OldLibrary library({3, 1, 3, 0});
    KRVTSchemaDefinition& source = Make(Version(2) + "<Float id='p' metadata='true'/>");
    source.SetLibrary(&library);
    EXPECT_TRUE(Merge(source, Make("<Float id='p'/>")).merged);
    EXPECT_EQ(Find(source, "p").GetFlags(), kPublic);

    const OldLibrary later({3, 1, 3, 1});
    KRVTSchemaDefinition& kept = Make(Version(2) + "<Float id='p' metadata='true'/>");
    kept.SetLibrary(&later);
    EXPECT_FALSE(Merge(kept, Make("<Float id='p'/>")).merged);
    EXPECT_EQ(Find(kept, "p").GetFlags(), kPublic | kMetadata);
}

TEST_F(SchemaMergeTest, APropertyThatTheSourceLacksMakesItInconsistent) {
    KRVTSchemaDefinition& source = Make("<Float id='p'/>");
    KRVTSchemaDefinition& target = Make("<Float id='p'/><Float id='q'/>");
    EXPECT_TRUE(Merge(source, target).merged);
    EXPECT_TRUE(source.IsInconsistent());
    EXPECT_FALSE(target.IsInconsistent());
}

TEST_F(SchemaMergeTest, OwnAliasesAreAddedWhereTheyFit) {
    KRVTSchemaDefinition& target =
        Make("<Float id='p'/><Float id='q'/><PropertyAlias alias='old' id='p'/>");
    EXPECT_TRUE(Merge(Make("<Float id='p'/><Float id='q'/><PropertyAlias alias='new' id='p'/>"
                           "<PropertyAlias alias='queue' id='q'/>"),
                      target)
                    .merged);
    EXPECT_EQ(target.GetAliasCount(), 2u);
    EXPECT_EQ(target.AliasTarget("new"), nullptr);
    ASSERT_NE(target.AliasTarget("queue"), nullptr);
    EXPECT_EQ(Str(*target.AliasTarget("queue")), "q");
}

TEST_F(SchemaMergeTest, ATrialTellsWhetherAMergeIsCleanAndChangesNothing) {
    KRVTSchemaDefinition& source =
        Make(Version(2) + "<Float id='p' val='2'/><Float id='r'/><URL id='u' val='a'/>");
    KRVTSchemaDefinition& target =
        Make(Version(1) + "<Float id='p' val='1'/><URL id='u' val='jpk:?asset=/u'/>");
    EXPECT_TRUE(MergesClean(source, target));
    EXPECT_FALSE(Has(target, "r"));
    EXPECT_EQ(NumberOf(Find(target, "p")), 1);
    EXPECT_EQ(target.Version(), 1);
    EXPECT_EQ(TextOf(Find(source, "u")), "a");
    EXPECT_FALSE(MergesClean(source, Make("<Integer id='p'/>")));
    EXPECT_FALSE(MergesClean(source, Make("<Float id='more'/>")));
    EXPECT_FALSE(source.IsInconsistent());
}

}  // namespace korvanet::platform::assets
