#include "velmor/vocabulary.h"

#include <gtest/gtest.h>

#include <limits>

namespace velmor {
namespace {

TEST(Vocabulary, RowsOfDoublesCompareByTheirFirstDifference) {
    EXPECT_EQ(compareNative(Color3{1, 2, 3}, Color3{1, 2, 3}), 0);
    EXPECT_EQ(compareNative(Color3{1, 2, 3}, Color3{1, 3, 0}), -1);
    EXPECT_EQ(compareNative(Color3{2, 0, 0}, Color3{1, 9, 9}), 1);
    EXPECT_EQ(compareNative(Color4{0, 0, 0, 1}, Color4{0, 0, 0, 2}), -1);
    EXPECT_EQ(compareNative(Vector3{0, 0, 5}, Vector3{0, 0, 4}), 1);
    EXPECT_EQ(compareNative(Vector4{0, 0, 0, -1}, Vector4{0, 0, 0, 0}), -1);
    EXPECT_EQ(compareNative(Vector4{1, 2, 3, 4}, Vector4{1, 2, 3, 4}), 0);
}

TEST(Vocabulary, AMatrixComparesToItsLastElement) {
    Matrix44 left{};
    Matrix44 right{};
    EXPECT_EQ(compareNative(left, right), 0);
    right.m[15] = 1;
    EXPECT_EQ(compareNative(left, right), -1);
    left.m[0] = 1;
    EXPECT_EQ(compareNative(left, right), 1);
}

TEST(Vocabulary, TheUnitComesBeforeTheNumber) {
    EXPECT_EQ(compareNative(UnitsValue{1, 9}, UnitsValue{2, 0}), -1);
    EXPECT_EQ(compareNative(UnitsValue{2, 1}, UnitsValue{2, 0}), 1);
    EXPECT_EQ(compareNative(UnitsValue{2, 1}, UnitsValue{2, 1}), 0);
}

TEST(Vocabulary, WhatIsNotANumberIsNeitherLessNorGreater) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(compareNative(Color3{nan, 0, 0}, Color3{1, 0, 0}), 0);
    EXPECT_EQ(compareNative(Color3{nan, 0, 0}, Color3{1, 0, 1}), -1);
}

}  // namespace
}  // namespace velmor
