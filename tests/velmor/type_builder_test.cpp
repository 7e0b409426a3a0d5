#include "velmor/type_builder.h"

#include <memory>

#include "velmor/support.h"
#include "velmor/type_methods.h"

namespace velmor {
namespace {

using testing::RuntimeTest;
using testing::text;

class TypeBuilderTest : public RuntimeTest {
protected:
    TypeBuilder builder;
};

TEST_F(TypeBuilderTest, ANewRecordKnowsNothing) {
    const TypeImp& imp = *builder.get().imp();
    EXPECT_TRUE(imp.items.empty());
    EXPECT_TRUE(imp.args.empty());
    EXPECT_TRUE(imp.name.empty());
    EXPECT_TRUE(imp.modelName.empty());
    EXPECT_FALSE(imp.model.valid());
    EXPECT_EQ(imp.payload, kUnknown);
    EXPECT_EQ(imp.alignment, 0u);
    EXPECT_EQ(imp.baseCount, 0u);
    EXPECT_EQ(imp.unresolvedArgs, 0u);
    EXPECT_TRUE(imp.pod);
    EXPECT_EQ(imp.parent, nullptr);
    EXPECT_EQ(imp.methods, nullptr);
}

TEST_F(TypeBuilderTest, ATypeWithoutMembersHasNoBytes) {
    const Type built = builder.begin().setName("nothing").endBuild().adoptBy(root);
    EXPECT_EQ(built.payload(), 0u);
    EXPECT_EQ(built.alignment(), 1u);
    EXPECT_TRUE(built.isPod());
    EXPECT_TRUE(built.isMemberResolved());
    EXPECT_EQ(&built.methods(), &TypeMethods::defaults());
}

TEST_F(TypeBuilderTest, AMemberIsAlignedBehindASmallerOne) {
    builder.begin().addMember("flag", "bool", type("bool"));
    EXPECT_EQ(builder.get().payload(), 1u);
    builder.addMember("number", "double", type("double"));
    const Type built = builder.endBuild().setName("pair").adoptBy(root);
    EXPECT_EQ(built.items()[0].offset(), 0u);
    EXPECT_EQ(built.items()[1].offset(), 8u);
    EXPECT_EQ(built.payload(), 16u);
    EXPECT_EQ(built.alignment(), 8u);
    EXPECT_TRUE(built.isPod());
}

TEST_F(TypeBuilderTest, NoPaddingStandsBehindTheLastMember) {
    const Type built = builder.begin()
                           .addMember("number", "double", type("double"))
                           .addMember("flag", "bool", type("bool"))
                           .setName("pair")
                           .endBuild()
                           .adoptBy(root);
    EXPECT_EQ(built.payload(), 9u);
    EXPECT_EQ(built.alignment(), 8u);
    EXPECT_EQ(built.items()[1].offset(), 8u);
}

TEST_F(TypeBuilderTest, OneMemberThatIsNotPodMakesTheTypeNotPod) {
    const Type built = builder.begin()
                           .addMember("a", "int", type("int"))
                           .addMember("b", "string", type("string"))
                           .addMember("c", "int", type("int"))
                           .setName("mixed")
                           .endBuild()
                           .adoptBy(root);
    EXPECT_FALSE(built.isPod());
    EXPECT_EQ(built.payload(), 28u);
    EXPECT_EQ(built.items()[1].offset(), 8u);
    EXPECT_EQ(built.items()[2].offset(), 24u);
}

TEST_F(TypeBuilderTest, AMemberOfNoTypeLeavesTheLayoutUnknown) {
    builder.begin().addMember("lost", "nowhere");
    const TypeImp& imp = *builder.get().imp();
    EXPECT_EQ(imp.payload, kUnknown);
    EXPECT_EQ(imp.alignment, kUnknown);
    EXPECT_EQ(imp.items[0].offset(), kUnknown);
    EXPECT_FALSE(imp.items[0].valid());
}

TEST_F(TypeBuilderTest, AnUnresolvedTypeIsAdoptedAllTheSame) {
    const Type built =
        builder.begin().setName("lost").addMember("x", "nowhere").endBuild().adoptBy(root);
    EXPECT_EQ(root.findType("lost"), built);
    EXPECT_EQ(built.payload(), kUnknown);
    EXPECT_FALSE(built.isMemberResolved());
}

TEST_F(TypeBuilderTest, AMemberOfAnUnresolvedTypeIsUnresolved) {
    const Type lost =
        builder.begin().setName("lost").addMember("x", "nowhere").endBuild().adoptBy(root);
    const Type outer = builder.begin()
                           .setName("outer")
                           .addMember("a", "int", type("int"))
                           .addMember("b", "lost", lost)
                           .addMember("c", "int", type("int"))
                           .endBuild()
                           .adoptBy(root);
    EXPECT_FALSE(outer.isMemberResolved());
    EXPECT_EQ(outer.items()[1].offset(), kUnknown);
    EXPECT_EQ(outer.items()[2].offset(), kUnknown);
}

TEST_F(TypeBuilderTest, EndBuildFindsMembersByTheirPath) {
    const Type built = builder.begin()
                           .setName("late")
                           .setParent(root)
                           .addMember("number", "double")
                           .addMember("flag", ".sys.bool")
                           .endBuild()
                           .adoptBy();
    EXPECT_EQ(built.payload(), 9u);
    EXPECT_EQ(built.items()[0].type(), type("double"));
    EXPECT_EQ(built.items()[1].type(), type("bool"));
    EXPECT_EQ(built.items()[1].offset(), 8u);
    EXPECT_EQ(root.findType("late"), built);
}

TEST_F(TypeBuilderTest, ALateLayoutTakesOffsetsBeforeThePadding) {
    const Type built = builder.begin()
                           .setName("late")
                           .setParent(root)
                           .addMember("flag", "bool")
                           .addMember("number", "double", type("double"))
                           .endBuild()
                           .adoptBy();
    EXPECT_EQ(built.payload(), 16u);
    EXPECT_EQ(built.items()[0].offset(), 0u);
    EXPECT_EQ(built.items()[1].offset(), 1u);
}

TEST_F(TypeBuilderTest, ALateLayoutStopsAtTheFirstMemberThatStaysUnknown) {
    const Type built = builder.begin()
                           .setName("late")
                           .setParent(root)
                           .addMember("a", "int")
                           .addMember("b", "nowhere")
                           .addMember("c", "int")
                           .endBuild()
                           .adoptBy();
    EXPECT_EQ(built.payload(), kUnknown);
    EXPECT_TRUE(built.items()[0].valid());
    EXPECT_FALSE(built.items()[1].type().valid());
    EXPECT_FALSE(built.items()[2].type().valid());
}

TEST_F(TypeBuilderTest, EndBuildFindsAMemberThroughTheArguments) {
    const Type built = builder.begin()
                           .setName("box")
                           .setArg("value_type", "double", type("double"))
                           .addMember("value", "value_type")
                           .endBuild()
                           .adoptBy(root);
    EXPECT_EQ(built.payload(), 8u);
    EXPECT_EQ(built.items()[0].type(), type("double"));
}

TEST_F(TypeBuilderTest, EndBuildLeavesAFinishedLayoutAlone) {
    builder.begin()
        .addMember("flag", "bool", type("bool"))
        .addMember("number", "double", type("double"));
    builder.endBuild().endBuild();
    EXPECT_EQ(builder.get().items()[1].offset(), 8u);
    EXPECT_EQ(builder.get().payload(), 16u);
}

TEST_F(TypeBuilderTest, AnArgumentIsOpenUntilItHasAType) {
    builder.begin().setArg("value_type", "");
    EXPECT_EQ(builder.get().unresolvedArgs(), 1u);
    builder.setArg("value_type", "");
    EXPECT_EQ(builder.get().unresolvedArgs(), 1u);
    builder.setArg("value_type", "int", type("int"));
    EXPECT_EQ(builder.get().unresolvedArgs(), 0u);
    EXPECT_EQ(builder.get().imp()->args.size(), 1u);
    EXPECT_EQ(text(builder.get().arg("value_type")->typeName()), "int");
}

TEST_F(TypeBuilderTest, ABoundArgumentCanBeOpenedAgain) {
    builder.begin().setArg("a", "int", type("int")).setArg("b", "");
    EXPECT_EQ(builder.get().unresolvedArgs(), 1u);
    builder.setArg("a", "");
    EXPECT_EQ(builder.get().unresolvedArgs(), 2u);
}

TEST_F(TypeBuilderTest, ABaseComesFirstAndHasNoName) {
    const Type base =
        builder.begin().setName("base").addMember("n", "int", type("int")).endBuild().adoptBy(root);
    const Type built = builder.begin()
                           .setName("derived")
                           .addBase("base", base)
                           .addMember("d", "double", type("double"))
                           .endBuild()
                           .adoptBy(root);
    ASSERT_EQ(built.items().size(), 2u);
    EXPECT_EQ(built.items()[0].kind(), TypeItem::kBase);
    EXPECT_EQ(static_cast<std::uint32_t>(built.items()[0].kind()), 1u);
    EXPECT_TRUE(built.items()[0].name().empty());
    EXPECT_EQ(text(built.items()[0].typeName()), "base");
    EXPECT_EQ(built.items()[0].index(), 0u);
    EXPECT_EQ(built.items()[0].offset(), 0u);
    EXPECT_EQ(built.items()[1].kind(), TypeItem::kMember);
    EXPECT_EQ(built.items()[1].index(), 1u);
    EXPECT_EQ(built.items()[1].offset(), 8u);
    EXPECT_EQ(built.payload(), 16u);
    EXPECT_EQ(built.imp()->baseCount, 1u);
}

TEST_F(TypeBuilderTest, ABaseBehindMembersDropsThem) {
    builder.begin()
        .addMember("a", "int", type("int"))
        .addMember("b", "int", type("int"))
        .addBase("double", type("double"));
    const Type made = builder.get();
    ASSERT_EQ(made.items().size(), 1u);
    EXPECT_EQ(made.items()[0].kind(), TypeItem::kBase);
    EXPECT_TRUE(made.items()[0].name().empty());
    EXPECT_EQ(made.items()[0].type(), type("double"));
}

TEST_F(TypeBuilderTest, AModelIsTakenOverButForNameAndParent) {
    const Type generic = type("array");
    const Type made = builder.begin()
                          .setName("ints")
                          .setModel(generic)
                          .setArg("value_type", "int", type("int"))
                          .endBuild()
                          .adoptBy(root);
    EXPECT_EQ(text(made.name()), "ints");
    EXPECT_EQ(made.parent(), root);
    EXPECT_EQ(made.model(), generic);
    EXPECT_EQ(text(made.modelName()), "array");
    EXPECT_EQ(made.payload(), generic.payload());
    EXPECT_EQ(made.alignment(), generic.alignment());
    EXPECT_EQ(made.isPod(), generic.isPod());
    EXPECT_EQ(&made.methods(), &generic.methods());
    EXPECT_EQ(made.unresolvedArgs(), 0u);
    EXPECT_EQ(generic.unresolvedArgs(), 1u);
}

TEST_F(TypeBuilderTest, AnInstanceOfAModelSkipsTheModelsBasesWhenAMemberIsNamed) {
    const Type model = builder.begin()
                           .setName("model")
                           .addBase("double", type("double"))
                           .addMember("n", "int", type("int"))
                           .endBuild()
                           .adoptBy(root);
    const Type made = builder.begin().setName("made").setModel(model).endBuild().adoptBy(root);
    ASSERT_EQ(made.items().size(), 2u);
    EXPECT_EQ(made.member(""), nullptr) << "the base has an empty name";
    EXPECT_EQ(made.member("n"), &made.items()[1]);
    EXPECT_EQ(made.items()[0].kind(), TypeItem::kBase);
}

TEST_F(TypeBuilderTest, AnInstanceOfAnInstancePointsToTheFirstGeneric) {
    const Type generic = type("array");
    const Type first = builder.begin().setName("first").setModel(generic).endBuild().adoptBy(root);
    const Type second = builder.begin().setName("second").setModel(first).endBuild().adoptBy(root);
    EXPECT_EQ(second.model(), generic);
    EXPECT_EQ(text(second.modelName()), "array");
}

TEST_F(TypeBuilderTest, TheLayoutOfAModelOfUnknownSizeIsMadeWithItsArguments) {
    const Type generic = builder.begin()
                             .setName("box")
                             .setArg("value_type", "")
                             .addMember("value", "value_type")
                             .endBuild()
                             .adoptBy(root);
    EXPECT_FALSE(generic.isMemberResolved());
    const Type made = builder.begin()
                          .setName("double_box")
                          .setModel(generic)
                          .setArg("value_type", "double", type("double"))
                          .endBuild()
                          .adoptBy(root);
    EXPECT_EQ(made.payload(), 8u);
}

TEST_F(TypeBuilderTest, EachStepLeavesItsPhase) {
    using Phase = TypeBuilder::Phase;
    EXPECT_EQ(builder.phase(), Phase::kInitialized);
    EXPECT_EQ(builder.begin().phase(), Phase::kInitialized);
    EXPECT_EQ(builder.setModel(type("array")).phase(), Phase::kModel);
    EXPECT_EQ(builder.setName("n").phase(), Phase::kModel);
    EXPECT_EQ(builder.setArg("value_type", "int", type("int")).phase(), Phase::kArgs);
    EXPECT_EQ(builder.addBase("int", type("int")).phase(), Phase::kBases);
    EXPECT_EQ(builder.addMember("m", "int", type("int")).phase(), Phase::kMembers);
    EXPECT_EQ(builder.endBuild().phase(), Phase::kFinished);
    builder.adoptBy(root);
    EXPECT_EQ(builder.phase(), Phase::kInitialized);
    int number = 0;
    for (const Phase phase : {Phase::kInitialized, Phase::kModel, Phase::kArgs, Phase::kBases,
                              Phase::kMembers, Phase::kFinished})
        EXPECT_EQ(static_cast<int>(phase), number++);
}

TEST_F(TypeBuilderTest, BeginDropsTheRecordInTheMaking) {
    builder.begin().setName("old").addMember("m", "int", type("int"));
    builder.begin();
    EXPECT_TRUE(builder.get().name().empty());
    EXPECT_TRUE(builder.get().items().empty());
    EXPECT_EQ(builder.get().payload(), 0u);
}

TEST_F(TypeBuilderTest, AdoptionStartsAFreshRecord) {
    const Type built = builder.begin().setName("one").endBuild().adoptBy(root);
    EXPECT_NE(builder.get(), built);
    EXPECT_EQ(builder.get().payload(), kUnknown);
    EXPECT_EQ(built.parent(), root);
}

TEST_F(TypeBuilderTest, ATakenNameKeepsItsTypeAndTheNewOneBelongsToNobody) {
    const Type first = builder.begin().setName("one").endBuild().adoptBy(root);
    const Type second = builder.begin().setName("one").endBuild().adoptBy(root);
    const std::unique_ptr<TypeImp> orphan(second.imp());
    EXPECT_NE(first, second);
    EXPECT_EQ(root.findType("one"), first);
    EXPECT_EQ(second.parent(), root);
}

TEST(TypeBuilder, ARecordThatIsNeverAdoptedGoesWithItsBuilder) {
    TypeBuilder builder;
    builder.begin().setName("nobody");
    EXPECT_EQ(text(builder.get().name()), "nobody");
}

TEST_F(TypeBuilderTest, AnAliasHasAPathAndATarget) {
    TypeAliasBuilder aliases;
    const TypeAlias alias = aliases.begin()
                                .setName("number")
                                .setTypeName(".sys.double")
                                .setType(type("double"))
                                .adoptBy(root);
    EXPECT_EQ(root.findAlias("number"), alias);
    EXPECT_EQ(text(alias.name()), "number");
    EXPECT_EQ(text(alias.typeName()), ".sys.double");
    EXPECT_EQ(alias.type(), type("double"));
    EXPECT_EQ(alias.parent(), root);
}

TEST_F(TypeBuilderTest, BeginOfAnAliasDropsTheOneInTheMaking) {
    TypeAliasBuilder aliases;
    aliases.setName("old").setType(type("double"));
    const TypeAlias alias = aliases.begin().setName("new").adoptBy(root);
    EXPECT_EQ(text(alias.name()), "new");
    EXPECT_FALSE(alias.type().valid());
}

TEST_F(TypeBuilderTest, ATakenAliasKeepsItsTarget) {
    TypeAliasBuilder aliases;
    const TypeAlias first = aliases.begin().setName("n").setType(type("int")).adoptBy(root);
    const TypeAlias second = aliases.begin().setName("n").setType(type("double")).adoptBy(root);
    const std::unique_ptr<TypeAliasImp> orphan(second.imp());
    EXPECT_EQ(root.findAlias("n"), first);
}

}  // namespace
}  // namespace velmor
