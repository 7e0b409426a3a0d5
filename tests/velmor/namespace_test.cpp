#include "velmor/namespace.h"

#include <string>
#include <vector>

#include "velmor/support.h"

namespace velmor {
namespace {

using testing::raises;
using testing::RuntimeTest;
using testing::text;
using testing::textOf;

class NamespaceTest : public RuntimeTest {
protected:
    Type addType(Namespace space, const char* name) {
        TypeBuilder builder;
        return builder.begin().setName(name).endBuild().adoptBy(space);
    }
    void addAlias(Namespace space, const char* name, Type target) {
        TypeAliasBuilder aliases;
        aliases.setName(name).setType(target).adoptBy(space);
    }
};

TEST(Namespace, TheNullHandleIsInvalid) {
    EXPECT_FALSE(Namespace().valid());
    EXPECT_EQ(Namespace(), Namespace());
}

TEST_F(NamespaceTest, TheRootHasNoNameAndIsItsOwnRoot) {
    EXPECT_TRUE(root.name().empty());
    EXPECT_EQ(text(root.fullName()), ".");
    EXPECT_FALSE(root.parent().valid());
    EXPECT_EQ(root.root(), root);
}

TEST_F(NamespaceTest, TheFullNameStartsWithADot) {
    const Namespace b = makeNamespace("a.b");
    EXPECT_EQ(text(b.name()), "b");
    EXPECT_EQ(text(b.fullName()), ".a.b");
    EXPECT_EQ(text(b.parent().fullName()), ".a");
    EXPECT_EQ(b.root(), root);
}

TEST_F(NamespaceTest, IsEmptyWithoutAnyOfTheFourKinds) {
    EXPECT_TRUE(makeNamespace("empty").empty());
    makeNamespace("child.x");
    EXPECT_FALSE(root.findChild("child").empty());
    addType(makeNamespace("type"), "t");
    EXPECT_FALSE(root.findChild("type").empty());
    addAlias(makeNamespace("alias"), "a", Type());
    EXPECT_FALSE(root.findChild("alias").empty());
    addObject(makeNamespace("object"), "o", type("int"));
    EXPECT_FALSE(root.findChild("object").empty());
}

TEST_F(NamespaceTest, TheFourKindsHaveNamesOfTheirOwn) {
    const Namespace space = makeNamespace("space");
    const Namespace child = makeNamespace("space.name");
    const Type made = addType(space, "name");
    addAlias(space, "name", type("int"));
    const Object object = addObject(space, "name", type("double"));
    EXPECT_EQ(space.findChild("name"), child);
    EXPECT_EQ(space.findType("name"), made);
    EXPECT_EQ(space.findAlias("name").type(), type("int"));
    EXPECT_EQ(space.findObject("name").value, object);
    EXPECT_EQ(text(*space.findObject("name").name), "name");
}

TEST_F(NamespaceTest, WhatIsAbsentIsInvalid) {
    EXPECT_FALSE(root.findType("nothing").valid());
    EXPECT_FALSE(root.findChild("nothing").valid());
    EXPECT_FALSE(root.findAlias("nothing").valid());
    EXPECT_EQ(root.findObject("nothing").name, nullptr);
    EXPECT_FALSE(root.findObject("nothing").value.valid());
    EXPECT_FALSE(root.findRealType("nothing").valid());
}

TEST_F(NamespaceTest, ARealTypeIsATypeBeforeTheTargetOfAnAlias) {
    const Namespace space = makeNamespace("space");
    const Type made = addType(space, "both");
    addAlias(space, "both", type("int"));
    addAlias(space, "alias", type("int"));
    addAlias(space, "open", Type());
    EXPECT_EQ(space.findRealType("both"), made);
    EXPECT_EQ(space.findRealType("alias"), type("int"));
    EXPECT_FALSE(space.findRealType("open").valid());
}

TEST_F(NamespaceTest, ContentsAreInTheOrderOfSignedBytes) {
    const Namespace space = makeNamespace("space");
    for (const char* name : {"b", "a", "Z", "\xC3\xA4", "ab"}) {
        NamespaceBuilder().setName(name).adoptBy(space);
        addType(space, name);
        addAlias(space, name, Type());
        addObject(space, name, type("int"));
    }
    const std::vector<std::string> wanted{"\xC3\xA4", "Z", "a", "ab", "b"};
    std::vector<std::string> children, types, aliases, objects;
    for (const Namespace child : space.children())
        children.push_back(text(child.name()));
    for (const Type each : space.types())
        types.push_back(text(each.name()));
    for (const TypeAlias each : space.aliases())
        aliases.push_back(text(each.name()));
    for (const NameValuePair& each : space.objects())
        objects.push_back(text(*each.name));
    EXPECT_EQ(children, wanted);
    EXPECT_EQ(types, wanted);
    EXPECT_EQ(aliases, wanted);
    EXPECT_EQ(objects, wanted);
}

TEST_F(NamespaceTest, ARangeCanBeWalkedBackwards) {
    const Namespace space = makeNamespace("space");
    makeNamespace("space.a");
    makeNamespace("space.b");
    auto at = space.children().end();
    EXPECT_EQ(text((*--at).name()), "b");
    EXPECT_EQ(text((*--at).name()), "a");
    EXPECT_EQ(at, space.children().begin());
}

TEST_F(NamespaceTest, LocateNamespaceFindsTheRootByADot) {
    EXPECT_EQ(root.locateNamespace("."), root);
    EXPECT_EQ(makeNamespace("a.b.c").locateNamespace("."), root);
}

TEST_F(NamespaceTest, LocateNamespaceFindsItselfByNoPath) {
    const Namespace b = makeNamespace("a.b");
    EXPECT_EQ(b.locateNamespace(""), b);
    EXPECT_EQ(root.locateNamespace(""), root);
}

TEST_F(NamespaceTest, LocateNamespaceStartsAtTheRootForAnAbsolutePath) {
    const Namespace b = makeNamespace("a.b");
    makeNamespace("c.a");
    EXPECT_EQ(makeNamespace("c").locateNamespace(".a.b"), b);
    EXPECT_FALSE(makeNamespace("c").locateNamespace(".b").valid());
}

TEST_F(NamespaceTest, LocateNamespaceGoesUpForTheFirstNameOnly) {
    const Namespace inner = makeNamespace("a.b.c");
    const Namespace near = makeNamespace("a.x");
    makeNamespace("x.y");
    EXPECT_EQ(inner.locateNamespace("x"), near);
    EXPECT_EQ(inner.locateNamespace("a.b"), inner.parent());
    EXPECT_FALSE(inner.locateNamespace("x.y").valid()) << "the nearer x hides the one of the root";
    EXPECT_FALSE(inner.locateNamespace("nothing").valid());
}

TEST_F(NamespaceTest, LocateNamespaceRefusesEmptyNamesInsideAPath) {
    makeNamespace("a.b");
    EXPECT_FALSE(root.locateNamespace("a.").valid());
    EXPECT_FALSE(root.locateNamespace("a..b").valid());
    EXPECT_FALSE(root.locateNamespace("..").valid());
}

TEST_F(NamespaceTest, LocateTypeFindsNothingByNoPath) {
    EXPECT_FALSE(root.locateType("").valid());
    EXPECT_FALSE(root.locateType(".").valid());
}

TEST_F(NamespaceTest, LocateTypeFindsAnAbsolutePathFromAnywhere) {
    const Type ref = root.findChild("sys").findType("ref");
    EXPECT_EQ(root.locateType(".sys.ref"), ref);
    EXPECT_EQ(makeNamespace("a.b").locateType(".sys.ref"), ref);
    EXPECT_EQ(makeNamespace("a.b").locateType("sys.ref"), ref);
    EXPECT_FALSE(root.locateType(".sys.nothing").valid());
    EXPECT_FALSE(root.locateType(".nothing.ref").valid());
}

TEST_F(NamespaceTest, LocateTypeFindsThroughAnAliasUnlessANearerNamespaceHoldsTheName) {
    const Namespace b = makeNamespace("a.b");
    EXPECT_EQ(b.locateType("ref"), type(".sys.ref"));
    const Type nearer = addType(makeNamespace("a"), "ref");
    EXPECT_EQ(b.locateType("ref"), nearer);
}

TEST_F(NamespaceTest, LocateTypeFindsNothingOffTheChainToTheRoot) {
    addType(makeNamespace("a"), "t");
    EXPECT_FALSE(makeNamespace("b").locateType("t").valid());
}

TEST_F(NamespaceTest, ANearerNamespaceHidesATypeOfItsName) {
    addType(root, "b");
    const Namespace a = makeNamespace("a");
    EXPECT_TRUE(a.locateType("b").valid());
    makeNamespace("a.b");
    EXPECT_FALSE(a.locateType("b").valid());
}

TEST_F(NamespaceTest, AChildHidesATypeOfItsNameInTheSamePlace) {
    addType(root, "x");
    makeNamespace("x");
    EXPECT_FALSE(root.locateType("x").valid());
    EXPECT_FALSE(root.locateType(".x").valid());
    const Type inside = addType(makeNamespace("x"), "x");
    EXPECT_EQ(root.locateType("x.x"), inside);
    EXPECT_FALSE(root.locateType("x").valid()) << "the path ends at the namespace, not inside it";
}

TEST_F(NamespaceTest, AnAliasWithoutATargetStopsTheSearch) {
    addType(root, "t");
    const Namespace a = makeNamespace("a");
    addAlias(a, "t", Type());
    EXPECT_FALSE(a.locateType("t").valid());
}

TEST_F(NamespaceTest, TokensBehindATypeSelectItsArguments) {
    makeArrayType(root, type("int"));
    EXPECT_EQ(root.locateType("int_array.value_type"), type("int"));
    EXPECT_EQ(root.locateType(".int_array.value_type"), type("int"));
    EXPECT_FALSE(root.locateType("int_array.other").valid());
    EXPECT_FALSE(root.locateType("int_array.value_type.more").valid());
    EXPECT_FALSE(root.locateType("array.value_type").valid()) << "the argument is open";
    EXPECT_FALSE(root.locateType("array.value_type.more").valid());
}

TEST_F(NamespaceTest, CreateChildMakesWhatIsMissing) {
    const Namespace made = root.createChild("a/b.c", '/');
    EXPECT_EQ(text(made.name()), "b.c");
    EXPECT_EQ(root.createChild("a/b.c", '/'), made);
    EXPECT_EQ(root.findChild("a").findChild("b.c"), made);
    EXPECT_EQ(made.parent(), root.findChild("a"));
}

TEST_F(NamespaceTest, CreateChildMakesNothingForNoPath) {
    const Namespace space = makeNamespace("space");
    EXPECT_EQ(space.createChild("", '.'), space);
    EXPECT_TRUE(space.empty());
}

TEST_F(NamespaceTest, CreateChildRefusesAnEmptyNameAndKeepsWhatItMadeBefore) {
    const Namespace space = makeNamespace("space");
    EXPECT_EQ(textOf<invalid_namespace_path>([&] { space.createChild("x..y", '.'); }),
              "path contains empty name.x..y");
    EXPECT_TRUE(space.findChild("x").valid());
    EXPECT_FALSE(space.findChild("y").valid());
    EXPECT_TRUE(space.findChild("x").empty());
}

TEST_F(NamespaceTest, CreateChildTakesNoAbsolutePath) {
    EXPECT_EQ(textOf<invalid_namespace_path>([&] { root.createChild(".a", '.'); }),
              "path contains empty name..a");
    EXPECT_EQ(textOf<invalid_namespace_path>([&] { root.createChild("a.", '.'); }),
              "path contains empty name.a.");
    EXPECT_EQ(textOf<invalid_namespace_path>([&] { root.createChild(".", '.'); }),
              "path contains empty name..");
}

TEST_F(NamespaceTest, ShortcutsAdoptAndGiveTheNamespace) {
    const Namespace space = makeNamespace("space");
    TypeBuilder types;
    types.begin().setName("t").endBuild();
    NamespaceBuilder children;
    children.setName("c");
    TypeAliasBuilder aliases;
    aliases.setName("a");
    EXPECT_EQ(space.adoptType(types).adoptChild(children).adoptAlias(aliases), space);
    EXPECT_EQ(space.findType("t").parent(), space);
    EXPECT_EQ(space.findChild("c").parent(), space);
    EXPECT_EQ(space.findAlias("a").parent(), space);
}

TEST_F(NamespaceTest, ABuilderStartsWithAnEmptyRecord) {
    NamespaceBuilder builder;
    EXPECT_TRUE(builder.get().valid());
    EXPECT_TRUE(builder.get().empty());
    EXPECT_TRUE(builder.get().name().empty());
    EXPECT_FALSE(builder.get().parent().valid());
}

TEST_F(NamespaceTest, ABuilderHandsItsRecordToTheParentThatWasSet) {
    NamespaceBuilder builder;
    builder.setName("a").setParent(root);
    EXPECT_FALSE(root.findChild("a").valid()) << "a parent alone inserts nothing";
    const Namespace made = builder.adoptBy();
    EXPECT_EQ(root.findChild("a"), made);
    EXPECT_NE(builder.get(), made);
    EXPECT_TRUE(builder.get().name().empty());
}

TEST_F(NamespaceTest, ATakenNameKeepsItsChildAndTheNewOneBelongsToNobody) {
    const Namespace first = makeNamespace("a");
    const Namespace second = NamespaceBuilder().setName("a").adoptBy(root);
    const std::unique_ptr<NamespaceImp> orphan(second.imp());
    EXPECT_NE(first, second);
    EXPECT_EQ(root.findChild("a"), first);
}

class MovingNamespaceTest : public NamespaceTest {
protected:
    MovingNamespaceTest() {
        builder.setName("source");
        NamespaceBuilder().setName("child").adoptBy(builder.get());
        addType(builder.get(), "type");
        addAlias(builder.get(), "alias", type("int"));
        object = addObject(builder.get(), "object", type("int"));
        target = makeNamespace("target");
    }
    ~MovingNamespaceTest() override { runtime.removeObjects(builder.get()); }

    NamespaceBuilder builder;
    Namespace target;
    Object object;
};

TEST_F(MovingNamespaceTest, EverythingMovesIntoTheTarget) {
    builder.adoptChildrenBy(target);
    EXPECT_EQ(target.findChild("child").parent(), target);
    EXPECT_EQ(target.findType("type").parent(), target);
    EXPECT_EQ(target.findAlias("alias").parent(), target);
    EXPECT_EQ(target.findObject("object").value, object);
    EXPECT_TRUE(builder.get().empty());
    EXPECT_EQ(text(builder.get().name()), "source");
    EXPECT_EQ(text(target.findType("type").fullName()), ".target.type");
}

TEST_F(MovingNamespaceTest, TheBuilderCanBeUsedAgain) {
    builder.adoptChildrenBy(target);
    addType(builder.get(), "second");
    builder.adoptChildrenBy(target);
    EXPECT_TRUE(target.findType("second").valid());
    EXPECT_TRUE(target.findType("type").valid());
    const Namespace source = builder.adoptBy(root);
    EXPECT_EQ(root.findChild("source"), source);
}

TEST_F(MovingNamespaceTest, ATakenNameOfTheSameKindMovesNothing) {
    const Type taken = addType(target, "type");
    EXPECT_EQ(textOf<conflict_namespace_child_name>([&] { builder.adoptChildrenBy(target); }),
              "name existed in target namesapcetype");
    EXPECT_EQ(target.findType("type"), taken);
    EXPECT_FALSE(target.findChild("child").valid());
    EXPECT_FALSE(target.findAlias("alias").valid());
    EXPECT_EQ(target.findObject("object").name, nullptr);
    EXPECT_EQ(builder.get().findType("type").parent(), builder.get());
    EXPECT_TRUE(builder.get().findChild("child").valid());
}

TEST_F(MovingNamespaceTest, EachKindIsHeldAgainstItsOwnKind) {
    makeNamespace("target.child");
    EXPECT_EQ(textOf<conflict_namespace_child_name>([&] { builder.adoptChildrenBy(target); }),
              "name existed in target namesapcechild");
}

TEST_F(MovingNamespaceTest, ATakenAliasMovesNothing) {
    addAlias(target, "alias", Type());
    EXPECT_EQ(textOf<conflict_namespace_child_name>([&] { builder.adoptChildrenBy(target); }),
              "name existed in target namesapcealias");
    EXPECT_FALSE(target.findType("type").valid());
}

TEST_F(MovingNamespaceTest, ATakenObjectMovesNothing) {
    addObject(target, "object", type("int"));
    EXPECT_EQ(textOf<conflict_namespace_child_name>([&] { builder.adoptChildrenBy(target); }),
              "name existed in target namesapceobject");
    EXPECT_FALSE(target.findType("type").valid());
    EXPECT_EQ(builder.get().findObject("object").value, object);
}

TEST_F(MovingNamespaceTest, OfConflictsInSeveralKindsTypesAreToldFirstThenChildrenThenAliases) {
    const auto told = [this] {
        return textOf<conflict_namespace_child_name>([this] { builder.adoptChildrenBy(target); });
    };
    addObject(target, "object", type("int"));
    addAlias(target, "alias", Type());
    EXPECT_EQ(told(), "name existed in target namesapcealias");
    makeNamespace("target.child");
    EXPECT_EQ(told(), "name existed in target namesapcechild");
    addType(target, "type");
    EXPECT_EQ(told(), "name existed in target namesapcetype");
}

TEST_F(MovingNamespaceTest, OfConflictsInOneKindTheFirstNameIsTold) {
    for (const char* name : {"b", "a"}) {
        addType(builder.get(), name);
        addType(target, name);
    }
    EXPECT_EQ(textOf<conflict_namespace_child_name>([&] { builder.adoptChildrenBy(target); }),
              "name existed in target namesapcea");
}

TEST_F(MovingNamespaceTest, OneNameForDifferentKindsDoesNotConflict) {
    addType(target, "child");
    makeNamespace("target.type");
    builder.adoptChildrenBy(target);
    EXPECT_TRUE(target.findChild("child").valid());
    EXPECT_TRUE(target.findType("child").valid());
}

TEST_F(NamespaceTest, ClearingForgetsNameAndParentButNoObject) {
    NamespaceImp imp;
    const Namespace space(&imp);
    imp.name = "cleared";
    imp.parent = root.imp();
    addType(space, "t");
    addAlias(space, "a", type("int"));
    space.createChild("x.y", '.');
    addObject(space, "o", type("int"));
    imp.clear();
    EXPECT_TRUE(imp.name.empty());
    EXPECT_EQ(imp.parent, nullptr);
    EXPECT_TRUE(imp.types.empty());
    EXPECT_TRUE(imp.children.empty());
    EXPECT_TRUE(imp.aliases.empty());
    EXPECT_EQ(imp.objects.size(), 1u);
    runtime.removeObjects(space);
}

/// Notes that a text from it goes.
class NotingHeap : public nuo::plain_heap {
public:
    NotingHeap(const char* what, std::vector<std::string>& log) : what_(what), log_(log) {}
    void free(void* block, std::uint64_t size, std::uint64_t alignment) override {
        log_.emplace_back(what_);
        plain_heap::free(block, size, alignment);
    }

private:
    const char* what_;
    std::vector<std::string>& log_;
};

TEST(Namespace, ClearingEndsTheNameThenChildrenThenTypesThenAliases) {
    std::vector<std::string> log;
    NotingHeap names("name", log), children("child", log), inner("type of the child", log),
        types("type", log), aliases("alias", log);
    const auto named = [](auto* record, NotingHeap& heap) {
        nuo::string("x", heap).swap(record->name);
        return record;
    };
    NamespaceImp imp;
    named(&imp, names);
    imp.aliases.emplace("x", named(new TypeAliasImp, aliases));
    imp.types.emplace("x", named(new TypeImp, types));
    NamespaceImp* const child = named(new NamespaceImp, children);
    child->types.emplace("x", named(new TypeImp, inner));
    imp.children.emplace("x", child);
    imp.clear();
    EXPECT_EQ(log,
              (std::vector<std::string>{"name", "child", "type of the child", "type", "alias"}));
}

TEST_F(NamespaceTest, ARaisedPathTellsWhereItWasRaised) {
    try {
        root.createChild("..", '.');
        FAIL() << "an empty name was taken";
    } catch (const nuo::exception& failure) {
        const std::string what = failure.what();
        EXPECT_NE(what.find("velmor/src/velmor/namespace.cpp("), std::string::npos) << what;
    }
    EXPECT_TRUE(raises<invalid_namespace_path>([&] { root.createChild("..", '.'); }));
}

}  // namespace
}  // namespace velmor
