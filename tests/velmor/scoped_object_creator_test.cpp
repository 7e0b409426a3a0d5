#include "velmor/scoped_object_creator.h"

#include "velmor/support.h"

namespace velmor {
namespace {

using testing::Probe;
using testing::RuntimeTest;
using testing::textOf;
using Log = std::vector<std::string>;

class ScopedObjectCreatorTest : public RuntimeTest {
protected:
    ScopedObjectCreatorTest() : taken(heap.taken) {}

    std::uint64_t taken;
};

TEST_F(ScopedObjectCreatorTest, StartsWithoutAValue) {
    const ScopedObjectCreator creator(&heap, nullptr);
    EXPECT_FALSE(creator.get().valid());
}

TEST_F(ScopedObjectCreatorTest, EndsAndFreesTheValueItStillOwns) {
    {
        ScopedObjectCreator creator(&heap, nullptr);
        const Object object = creator.create(probeType());
        EXPECT_TRUE(object.valid());
        EXPECT_EQ(object.type(), probeType());
        EXPECT_EQ(creator.get(), object);
        EXPECT_EQ(heap.bytes, sizeof(Probe));
    }
    EXPECT_EQ(Probe::takeLog(), (Log{"make 1", "end 1"}));
    EXPECT_EQ(heap.bytes, 0u);
    EXPECT_EQ(heap.taken, heap.given);
}

TEST_F(ScopedObjectCreatorTest, ASecondValueTakesThePlaceOfTheFirst) {
    ScopedObjectCreator creator(&heap, nullptr);
    creator.create(probeType());
    creator.create(probeType());
    EXPECT_EQ(Probe::takeLog(), (Log{"make 1", "make 2", "end 1"}));
    EXPECT_EQ(heap.bytes, sizeof(Probe));
}

TEST_F(ScopedObjectCreatorTest, TheFirstValueIsEndedAsOneOfTheNewType) {
    TypeBuilder builder;
    const Type silent = builder.begin().setName("silent").endBuild().adoptBy(root);
    ScopedObjectCreator creator(&heap, nullptr);
    creator.create(probeType());
    creator.create(silent);
    EXPECT_EQ(Probe::takeLog(), (Log{"make 1"}));
}

TEST_F(ScopedObjectCreatorTest, AFailedConstructionFreesTheBlockAndKeepsTheOldValue) {
    ScopedObjectCreator creator(&heap, nullptr);
    const Object first = creator.create(probeType());
    Probe::failAt = 2;
    EXPECT_THROW(creator.create(probeType()), std::bad_alloc);
    EXPECT_EQ(creator.get(), first);
    EXPECT_EQ(heap.bytes, sizeof(Probe));
    EXPECT_EQ(Probe::takeLog(), (Log{"make 1"}));
}

TEST_F(ScopedObjectCreatorTest, AnInvalidOrUnfinishedTypeIsRefused) {
    ScopedObjectCreator creator(&heap, nullptr);
    EXPECT_EQ(textOf<unresolved_type>([&] { creator.create(Type()); }), "type is not resolved.");
    TypeBuilder builder;
    const Type lost =
        builder.begin().setName("lost").addMember("x", "nowhere").endBuild().adoptBy(root);
    EXPECT_EQ(textOf<unresolved_type>([&] { creator.create(lost); }), "type is not resolved.");
    EXPECT_EQ(heap.taken, taken);
}

TEST_F(ScopedObjectCreatorTest, ANamespaceAdoptsTheValue) {
    Object object;
    {
        ScopedObjectCreator creator(&heap, nullptr);
        creator.create(probeType());
        object = creator.adoptBy(root, "probe");
        EXPECT_FALSE(creator.get().valid());
    }
    EXPECT_TRUE(object.valid());
    EXPECT_EQ(root.findObject("probe").value, object);
    EXPECT_EQ(Probe::takeLog(), (Log{"make 1"}));
}

TEST_F(ScopedObjectCreatorTest, AnOlderValueUnderTheNameIsOverwrittenAndNotReleased) {
    ScopedObjectCreator creator(&heap, nullptr);
    creator.create(probeType());
    const Object older = creator.adoptBy(root, "probe");
    creator.create(probeType());
    const Object newer = creator.adoptBy(root, "probe");
    EXPECT_EQ(root.findObject("probe").value, newer);
    EXPECT_EQ(Probe::takeLog(), (Log{"make 1", "make 2"}));
    // Nobody owns the older value any more.
    older.type().methods().destruct(older);
    heap.free(older.data(), older.type().payload(), older.type().alignment());
}

TEST_F(ScopedObjectCreatorTest, ReleaseGivesTheValueUp) {
    Object object;
    {
        ScopedObjectCreator creator(&heap, nullptr);
        creator.create(probeType());
        object = creator.release();
        EXPECT_FALSE(creator.get().valid());
    }
    EXPECT_EQ(Probe::takeLog(), (Log{"make 1"}));
    object.type().methods().destruct(object);
    heap.free(object.data(), object.type().payload(), object.type().alignment());
}

/// A pod whose end is seen.
class EndedInt : public PrimitiveMethods<std::int32_t> {
public:
    void destruct(Object) const override { ++ended; }
    static inline int ended = 0;
};

TEST_F(ScopedObjectCreatorTest, EvenAPodIsEndedByTheCreator) {
    static const EndedInt methods;
    TypeBuilder builder;
    const Type pod = builder.begin(&methods).setName("pod").endBuild().adoptBy(root);
    EndedInt::ended = 0;
    {
        ScopedObjectCreator creator(&heap, nullptr);
        creator.create(pod);
    }
    EXPECT_EQ(EndedInt::ended, 1);
    addObject(root, "pod", pod);
    EXPECT_TRUE(runtime.removeObject(root, "pod"));
    EXPECT_EQ(EndedInt::ended, 1) << "the runtime spares a pod";
}

}  // namespace
}  // namespace velmor
