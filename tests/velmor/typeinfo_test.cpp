#include "velmor/typeinfo.h"

#include <gtest/gtest.h>

#include "tests/support/virtualslots.h"

namespace velmor {
namespace {

TEST(TypeInfo, OperationsKeepTheirOrder) {
    halvern_tests::ExpectOrder(
        0, {halvern_tests::Place(&TypeInfoHandle::equal_to), halvern_tests::kDestructor});
}

TEST(TypeInfo, OneStaticObjectStandsForEachClass) {
    EXPECT_EQ(&TypeInfo<int>::instance(), &TypeInfo<int>::instance());
    EXPECT_EQ(TypeInfo<int>::instance(), TypeInfo<int>::instance());
}

TEST(TypeInfo, ASecondObjectOfTheClassMatchesByItsDynamicClass) {
    const TypeInfo<int> second;
    const TypeInfoHandle& tag = second;
    EXPECT_NE(&tag, &TypeInfo<int>::instance());
    EXPECT_EQ(tag, TypeInfo<int>::instance());
    EXPECT_TRUE(tag.equal_to(TypeInfo<int>::instance()));
}

TEST(TypeInfo, TagsOfDifferentClassesDiffer) {
    const TypeInfoHandle& tag = TypeInfo<int>::instance();
    EXPECT_NE(tag, TypeInfo<unsigned>::instance());
    EXPECT_NE(tag, TypeInfo<void>::instance());
    EXPECT_FALSE(tag.equal_to(TypeInfo<double>::instance()));
}

}  // namespace
}  // namespace velmor
