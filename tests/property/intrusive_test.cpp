#include "assets/property/intrusive.h"

#include <gtest/gtest.h>

namespace korvanet::platform::assets {
namespace {

class Counted : public IntrusiveCounter {
public:
    explicit Counted(int& living) : living_(living) { ++living_; }
    ~Counted() override { --living_; }

private:
    int& living_;
};

TEST(IntrusiveTest, TheLastReleaseDestroysTheObject) {
    int living = 0;
    {
        const intrusive_ptr<Counted> first(new Counted(living));
        EXPECT_EQ(first->ReferenceCount(), 1u);
        intrusive_ptr<Counted> second = first;
        EXPECT_EQ(first->ReferenceCount(), 2u);
        EXPECT_TRUE(first == second);
        second.reset();
        EXPECT_FALSE(second);
        EXPECT_EQ(first->ReferenceCount(), 1u);
        EXPECT_EQ(living, 1);
    }
    EXPECT_EQ(living, 0);
}

TEST(IntrusiveTest, AReleaseOfWhatNobodyHoldsDoesNothing) {
    int living = 0;
    auto* object = new Counted(living);
    object->Unretain();
    EXPECT_EQ(object->ReferenceCount(), 0u);
    EXPECT_EQ(living, 1);
    delete object;
}

TEST(IntrusiveTest, MovingHandsTheReferenceOver) {
    int living = 0;
    intrusive_ptr<Counted> first(new Counted(living));
    intrusive_ptr<Counted> second(std::move(first));
    EXPECT_FALSE(first);
    EXPECT_EQ(second->ReferenceCount(), 1u);
    first = std::move(second);
    EXPECT_EQ(first->ReferenceCount(), 1u);
    first = new Counted(living);
    EXPECT_EQ(living, 1);
}

TEST(IntrusiveTest, AssigningAnObjectToItselfKeepsIt) {
    int living = 0;
    intrusive_ptr<Counted> pointer(new Counted(living));
    pointer = pointer.get();
    EXPECT_EQ(pointer->ReferenceCount(), 1u);
    EXPECT_EQ(living, 1);
}

}  // namespace
}  // namespace korvanet::platform::assets
