#include "velmor/runtime.h"

#include <memory>

#include "velmor/support.h"

namespace velmor {
namespace {

using testing::CountingHeap;
using testing::Probe;
using testing::RuntimeTest;
using testing::text;
using Log = std::vector<std::string>;

TEST(Runtime, HasANameHeapsAndAnEmptyRoot) {
    CountingHeap heap;
    Runtime runtime("main", &heap, &nuo::get_extern_heap());
    EXPECT_EQ(text(runtime.name()), "main");
    EXPECT_EQ(runtime.heap(), &heap);
    EXPECT_EQ(runtime.extHeap(), &nuo::get_extern_heap());
    EXPECT_TRUE(runtime.root().empty());
    EXPECT_TRUE(runtime.root().name().empty());
    EXPECT_FALSE(runtime.root().parent().valid());
}

TEST(Runtime, ItsEndRunsTheEndOfEveryObjectChildrenFirst) {
    CountingHeap heap;
    Probe::reset();
    {
        Runtime runtime("main", &heap, nullptr);
        const Namespace root = runtime.root();
        TypeBuilder builder;
        const Type probe = builder.begin(&PrimitiveMethods<Probe>::instance())
                               .setName("Probe")
                               .endBuild()
                               .adoptBy(root);
        ScopedObjectCreator creator(&heap, nullptr);
        const char* places[] = {"", "b", "a", "a.deep"};
        for (const char* place : places) {
            creator.create(probe);
            creator.adoptBy(root.createChild(place, '.'), "x");
        }
        creator.create(probe);
        creator.adoptBy(root, "w");
        Probe::takeLog();
    }
    EXPECT_EQ(Probe::takeLog(), (Log{"end 4", "end 3", "end 2", "end 5", "end 1"}));
    EXPECT_EQ(heap.bytes, 0u);
    EXPECT_EQ(heap.taken, heap.given);
}

TEST_F(RuntimeTest, RemoveObjectEndsFreesAndErases) {
    addObject(root, "probe", probeType());
    EXPECT_EQ(heap.bytes, sizeof(Probe));
    EXPECT_TRUE(runtime.removeObject(root, "probe"));
    EXPECT_EQ(root.findObject("probe").name, nullptr);
    EXPECT_EQ(heap.bytes, 0u);
    EXPECT_EQ(Probe::takeLog(), (Log{"make 1", "end 1"}));
    EXPECT_FALSE(runtime.removeObject(root, "probe"));
}

TEST_F(RuntimeTest, RemoveObjectTakesTheKeyItself) {
    addObject(root, "probe", probeType());
    EXPECT_TRUE(runtime.removeObject(root, *root.findObject("probe").name));
    EXPECT_EQ(root.findObject("probe").name, nullptr);
}

TEST_F(RuntimeTest, RemoveObjectWithItsValueErasesFirst) {
    const Object object = addObject(root, "probe", probeType());
    EXPECT_TRUE(runtime.removeObject(root, "probe", object));
    EXPECT_EQ(root.findObject("probe").name, nullptr);
    EXPECT_EQ(heap.bytes, 0u);
    EXPECT_EQ(Probe::takeLog(), (Log{"make 1", "end 1"}));
}

TEST_F(RuntimeTest, RemoveObjectWithAValueLeavesAnotherValueAlone) {
    const Object first = addObject(root, "first", probeType());
    const Object second = addObject(root, "second", probeType());
    EXPECT_FALSE(runtime.removeObject(root, "nothing", first));
    EXPECT_FALSE(runtime.removeObject(root, "first", second));
    EXPECT_EQ(root.findObject("first").value, first);
    EXPECT_EQ(root.findObject("second").value, second);
    EXPECT_EQ(Probe::takeLog(), (Log{"make 1", "make 2"}));
}

TEST_F(RuntimeTest, DetachObjectLeavesTheValueToTheCaller) {
    const Object object = addObject(root, "probe", probeType());
    EXPECT_EQ(runtime.detachObject(root, "probe"), object);
    EXPECT_EQ(root.findObject("probe").name, nullptr);
    EXPECT_EQ(Probe::takeLog(), (Log{"make 1"}));
    EXPECT_FALSE(runtime.detachObject(root, "probe").valid());
    object.type().methods().destruct(object);
    heap.free(object.data(), object.type().payload(), object.type().alignment());
}

TEST_F(RuntimeTest, RemoveObjectsGoesDepthFirstInTheOrderOfNames) {
    const Namespace space = makeNamespace("space");
    addObject(space, "b", probeType());
    addObject(space, "a", probeType());
    addObject(makeNamespace("space.y"), "o", probeType());
    addObject(makeNamespace("space.x"), "o", probeType());
    const Object kept = addObject(root, "kept", probeType());
    Probe::takeLog();
    runtime.removeObjects(space);
    EXPECT_EQ(Probe::takeLog(), (Log{"end 4", "end 3", "end 2", "end 1"}));
    EXPECT_TRUE(space.findChild("x").valid()) << "namespaces stay";
    EXPECT_TRUE(space.findChild("x").empty());
    EXPECT_EQ(root.findObject("kept").value, kept);
}

/// A value that takes its neighbours out of the namespace when it ends.
struct Neighbour {
    Runtime* runtime = nullptr;
    Namespace space;
    static inline int ended = 0;

    ~Neighbour() {
        ++ended;
        if (runtime == nullptr) return;
        runtime->removeObject(space, "b");
        runtime->removeObject(space, "a");
    }
};

class NeighbourTest : public RuntimeTest {
protected:
    NeighbourTest() {
        TypeBuilder builder;
        const Type neighbour = builder.begin(&PrimitiveMethods<Neighbour>::instance())
                                   .setName("Neighbour")
                                   .endBuild()
                                   .adoptBy(root);
        space = makeNamespace("space");
        for (const char* name : {"a", "b", "c"}) {
            auto* const made = bind<Neighbour>(addObject(space, name, neighbour));
            made->space = space;
        }
        Neighbour::ended = 0;
    }
    void letRemove(const char* name) {
        bind<Neighbour>(space.findObject(name).value)->runtime = &runtime;
    }

    Namespace space;
};

TEST_F(NeighbourTest, AValueMayRemoveItsNeighboursWhileAllAreRemoved) {
    letRemove("a");
    runtime.removeObjects(space);
    EXPECT_EQ(Neighbour::ended, 3);
    EXPECT_TRUE(space.empty());
    EXPECT_EQ(heap.bytes, 0u);
}

TEST_F(NeighbourTest, AValueMayRemoveItsNeighboursWhileItIsRemoved) {
    letRemove("c");
    EXPECT_TRUE(runtime.removeObject(space, "c", space.findObject("c").value));
    EXPECT_EQ(Neighbour::ended, 3);
    EXPECT_TRUE(space.empty());
}

/// A value that takes its own entry out of the namespace when it ends, as a counted table does.
struct SelfEraser {
    Runtime* runtime = nullptr;

    ~SelfEraser() {
        if (runtime != nullptr) runtime->detachObject(runtime->root(), "self");
    }
};

TEST_F(RuntimeTest, AValueMayEraseItsOwnEntryWhileItIsRemoved) {
    TypeBuilder builder;
    const Type eraser = builder.begin(&PrimitiveMethods<SelfEraser>::instance())
                            .setName("SelfEraser")
                            .endBuild()
                            .adoptBy(root);
    bind<SelfEraser>(addObject(root, "self", eraser))->runtime = &runtime;
    EXPECT_TRUE(runtime.removeObject(root, "self"));
    EXPECT_EQ(root.findObject("self").name, nullptr);
    EXPECT_EQ(heap.bytes, 0u);
}

/// A value that looks itself up when it ends.
struct SelfSeeker {
    Namespace space;
    static inline std::vector<bool> found;

    ~SelfSeeker() {
        if (space.valid()) found.push_back(space.findObject("self").name != nullptr);
    }
};

TEST_F(RuntimeTest, AValueFindsItselfWhileItIsRemovedByNameAloneAndNotOtherwise) {
    TypeBuilder builder;
    const Type seeker = builder.begin(&PrimitiveMethods<SelfSeeker>::instance())
                            .setName("SelfSeeker")
                            .endBuild()
                            .adoptBy(root);
    SelfSeeker::found.clear();
    bind<SelfSeeker>(addObject(root, "self", seeker))->space = root;
    EXPECT_TRUE(runtime.removeObject(root, "self"));
    EXPECT_EQ(SelfSeeker::found, std::vector<bool>{true});
    const Object object = addObject(root, "self", seeker);
    bind<SelfSeeker>(object)->space = root;
    EXPECT_TRUE(runtime.removeObject(root, "self", object));
    EXPECT_EQ(SelfSeeker::found, (std::vector<bool>{true, false}));
}

TEST_F(RuntimeTest, RemoveChildEndsItsObjectsAndTypes) {
    const Namespace child = makeNamespace("child");
    addObject(child, "o", probeType());
    addObject(makeNamespace("child.deep"), "o", probeType());
    TypeBuilder().begin().setName("t").endBuild().adoptBy(child);
    Probe::takeLog();
    EXPECT_TRUE(runtime.removeChild(root, "child"));
    EXPECT_EQ(Probe::takeLog(), (Log{"end 2", "end 1"}));
    EXPECT_FALSE(root.findChild("child").valid());
    EXPECT_FALSE(runtime.removeChild(root, "child"));
    EXPECT_EQ(heap.bytes, 0u);
}

TEST_F(RuntimeTest, RemoveChildrenEmptiesTheMap) {
    const Namespace space = makeNamespace("space");
    addObject(makeNamespace("space.a"), "o", probeType());
    addObject(makeNamespace("space.b"), "o", probeType());
    addObject(space, "own", probeType());
    Probe::takeLog();
    runtime.removeChildren(space);
    EXPECT_EQ(Probe::takeLog(), (Log{"end 1", "end 2"}));
    EXPECT_TRUE(space.imp()->children.empty());
    EXPECT_NE(space.findObject("own").name, nullptr);
}

/// A value that looks for the namespace "space.a" when it ends.
class Looking : public PrimitiveMethods<std::int32_t> {
public:
    void destruct(Object) const override { found.push_back(place.findChild("a").valid()); }
    void beginLayout(std::uint64_t& payload, std::uint64_t& offset, std::uint64_t& alignment,
                     bool& pod) const override {
        PrimitiveMethods::beginLayout(payload, offset, alignment, pod);
        pod = false;
    }

    static inline Namespace place;
    static inline std::vector<bool> found;
};

TEST_F(RuntimeTest, AChildThatIsGoneIsNotFoundByTheValuesOfTheOthers) {
    static const Looking methods;
    TypeBuilder builder;
    const Type looking = builder.begin(&methods).setName("looking").endBuild().adoptBy(root);
    Looking::place = makeNamespace("space");
    makeNamespace("space.a");
    addObject(makeNamespace("space.b"), "o", looking);
    Looking::found.clear();
    runtime.removeChildren(Looking::place);
    EXPECT_EQ(Looking::found, std::vector<bool>{false});
}

TEST_F(RuntimeTest, AnEntryWithoutAValueIsErased) {
    ScopedObjectCreator(&heap, nullptr).adoptBy(root, "nothing");
    EXPECT_NE(root.findObject("nothing").name, nullptr);
    EXPECT_TRUE(runtime.removeObject(root, "nothing"));
    EXPECT_EQ(root.findObject("nothing").name, nullptr);
}

}  // namespace
}  // namespace velmor
