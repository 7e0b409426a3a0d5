#include "nuo/common/any.h"

#include <gtest/gtest.h>

#include <string>

#include "nuo/common/string.h"
#include "tests/support/virtualslots.h"

namespace {

using nuo::any;
using nuo::any_cast;

TEST(Any, OperationsOfAPlaceholderKeepTheirOrder) {
    using halvern_tests::Place;
    halvern_tests::ExpectOrder(0, {halvern_tests::kDestructor, Place(&any::placeholder::type),
                                   Place(&any::placeholder::clone)});
}

TEST(Any, EmptyOneHasTheTypeOfVoid) {
    const any empty;
    EXPECT_TRUE(empty.empty());
    EXPECT_EQ(empty.type(), typeid(void));
}

TEST(Any, GivesTheAddressOfTheHeldValue) {
    any value(true);
    *any_cast<bool>(&value) = false;
    EXPECT_FALSE(*any_cast<bool>(&value));
    const any text(nuo::string("abc"));
    EXPECT_EQ(*any_cast<nuo::string>(&text), "abc");
}

TEST(Any, CopyClonesTheValue) {
    any first(nuo::string("abc"));
    any second(first);
    *any_cast<nuo::string>(&second) = "xyz";
    EXPECT_EQ(*any_cast<nuo::string>(&first), "abc");
    first = second;
    EXPECT_EQ(*any_cast<nuo::string>(&first), "xyz");
    first = any();
    EXPECT_TRUE(first.empty());
    EXPECT_TRUE(any(first).empty());
}

TEST(Any, MovingHandsTheValueOver) {
    any first(5);
    const int* held = any_cast<int>(&first);
    any second(std::move(first));
    EXPECT_EQ(any_cast<int>(&second), held);
    any third;
    third.swap(second);
    EXPECT_EQ(any_cast<int>(&third), held);
}

TEST(Any, CastRaisesForAnotherTypeAnEmptyOneAndANullPointer) {
    any value(5);
    any empty;
    EXPECT_THROW(any_cast<unsigned>(&value), nuo::bad_any_cast);
    EXPECT_THROW(any_cast<int>(&empty), nuo::bad_any_cast);
    EXPECT_THROW(any_cast<int>(static_cast<any*>(nullptr)),
                 nuo::context_exception<nuo::bad_any_cast>);
    EXPECT_THROW(any_cast<int>(static_cast<const any*>(nullptr)), nuo::bad_any_cast);
}

TEST(Any, FailureHasNoTextBehindThePosition) {
    try {
        any_cast<int>(static_cast<any*>(nullptr));
        FAIL();
    } catch (const nuo::bad_any_cast& failure) {
        EXPECT_EQ(std::string(failure.what()).back(), ')');
    }
}

}  // namespace
