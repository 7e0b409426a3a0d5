#include "assets/property/bounds.h"

#include <limits>

#include <gtest/gtest.h>

namespace korvanet::platform::assets {
namespace {

constexpr double kStep = 2.220446049250313e-16;

struct Ends {
    bool has_minimum = true;
    bool minimum_in = true;
    bool has_maximum = true;
    bool maximum_in = true;
};

intrusive_ptr<KRVTBounds> Make(double minimum, double maximum, Ends ends = {}) {
    return MakeBounds(ends.has_minimum, minimum, ends.minimum_in, ends.has_maximum, maximum,
                      ends.maximum_in, 0.5, false);
}

TEST(BoundsTest, FieldsComeBackAsGiven) {
    const intrusive_ptr<KRVTBounds> bounds(
        MakeBounds(true, -1.0, false, false, 7.0, true, 2.0, false));
    EXPECT_TRUE(bounds->HasMinimum());
    EXPECT_EQ(bounds->GetMinimum(), -1.0);
    EXPECT_FALSE(bounds->MinimumIsInclusive());
    EXPECT_FALSE(bounds->HasMaximum());
    EXPECT_EQ(bounds->GetMaximum(), 7.0);
    EXPECT_TRUE(bounds->MaximumIsInclusive());
    EXPECT_EQ(bounds->GetIncrementSize(), 2.0);
    EXPECT_FALSE(bounds->IsPercentage());
}

TEST(BoundsTest, AFactoryResultIsCountedByNobody) {
    KRVTBounds* bounds = MakeBounds(false, 0, false, false, 0, false, 0, false);
    EXPECT_EQ(bounds->ReferenceCount(), 0u);
    delete static_cast<IBounds*>(bounds);
}

TEST(BoundsTest, APercentageDiscardsTheOtherArguments) {
    const intrusive_ptr<KRVTBounds> bounds(
        MakeBounds(false, 5.0, false, false, 7.0, false, 2.0, true));
    EXPECT_TRUE(bounds->HasMinimum());
    EXPECT_EQ(bounds->GetMinimum(), 0.0);
    EXPECT_TRUE(bounds->MinimumIsInclusive());
    EXPECT_TRUE(bounds->HasMaximum());
    EXPECT_EQ(bounds->GetMaximum(), 1.0);
    EXPECT_TRUE(bounds->MaximumIsInclusive());
    EXPECT_EQ(bounds->GetIncrementSize(), 1.0);
    EXPECT_TRUE(bounds->IsPercentage());
}

TEST(BoundsTest, InclusiveEndsBelongToTheRange) {
    const auto bounds = Make(0, 1);
    EXPECT_TRUE(bounds->IsInBounds(0));
    EXPECT_TRUE(bounds->IsInBounds(1));
    EXPECT_FALSE(bounds->IsInBounds(-kStep));
    EXPECT_FALSE(bounds->IsInBounds(1.5));
}

TEST(BoundsTest, ExclusiveEndsDoNot) {
    const auto bounds = Make(0, 1, {.minimum_in = false, .maximum_in = false});
    EXPECT_FALSE(bounds->IsInBounds(0));
    EXPECT_FALSE(bounds->IsInBounds(1));
    EXPECT_TRUE(bounds->IsInBounds(kStep));
}

TEST(BoundsTest, AMissingEndLimitsNothing) {
    EXPECT_TRUE(Make(0, 1, {.has_minimum = false})->IsInBounds(-100));
    EXPECT_FALSE(Make(0, 1, {.has_minimum = false})->IsInBounds(2));
    EXPECT_TRUE(Make(0, 1, {.has_maximum = false})->IsInBounds(100));
    EXPECT_FALSE(Make(0, 1, {.has_maximum = false})->IsInBounds(-1));
    EXPECT_TRUE(Make(0, 1, {.has_minimum = false, .has_maximum = false})->IsInBounds(100));
}

TEST(BoundsTest, ANumberThatIsNoneIsOutOfBounds) {
    EXPECT_FALSE(Make(0, 1)->IsInBounds(std::numeric_limits<double>::quiet_NaN()));
}

TEST(BoundsTest, ClampKeepsWhatIsInBounds) {
    EXPECT_EQ(Make(0, 1)->Clamp(0.25), 0.25);
    EXPECT_EQ(Make(0, 10)->Clamp(3), 3);
}

TEST(BoundsTest, ClampGivesTheInclusiveEnd) {
    EXPECT_EQ(Make(0, 1)->Clamp(-5.0), 0.0);
    EXPECT_EQ(Make(0, 1)->Clamp(5.0), 1.0);
    EXPECT_EQ(Make(0, 10)->Clamp(-5), 0);
    EXPECT_EQ(Make(0, 10)->Clamp(50), 10);
}

TEST(BoundsTest, ClampMissesAnExclusiveEndByTheEpsilonAsItIs) {
    const auto bounds = Make(0, 1, {.minimum_in = false, .maximum_in = false});
    EXPECT_EQ(bounds->Clamp(-1.0), kStep);
    EXPECT_EQ(bounds->Clamp(0.0), kStep);
    EXPECT_EQ(bounds->Clamp(1.0), 1.0 - kStep);
    EXPECT_EQ(bounds->Clamp(9.0), 1.0 - kStep);
    // Absolute: at this size it is lost.
    EXPECT_EQ(Make(100, 200, {.minimum_in = false})->Clamp(5.0), 100.0);
}

TEST(BoundsTest, ClampMissesAnExclusiveEndOfIntegersByOne) {
    const auto bounds = Make(0, 10, {.minimum_in = false, .maximum_in = false});
    EXPECT_EQ(bounds->Clamp(20), 9);
    EXPECT_EQ(bounds->Clamp(10), 9);
    EXPECT_EQ(bounds->Clamp(0), 1);
    EXPECT_EQ(bounds->Clamp(-3), 1);
}

TEST(BoundsTest, ClampOfIntegersCutsTheFraction) {
    EXPECT_EQ(Make(0.75, 9.75)->Clamp(20), 9);
    EXPECT_EQ(Make(-3.75, 9)->Clamp(-20), -3);
}

TEST(BoundsTest, ClampOfIntegersStaysWithinWhatAnIntegerHolds) {
    EXPECT_EQ(Make(1e10, 2e10)->Clamp(5), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(Make(-2e10, -1e10)->Clamp(5), std::numeric_limits<std::int32_t>::min());
}

TEST(BoundsTest, EqualEndsAreTheAnswerWhateverIsAsked) {
    EXPECT_EQ(Make(3, 3, {.minimum_in = false, .maximum_in = false})->Clamp(-1.0), 3.0);
    EXPECT_EQ(Make(3, 3, {.minimum_in = false, .maximum_in = false})->Clamp(3.0), 3.0);
    EXPECT_EQ(Make(3, 3)->Clamp(99), 3);
}

TEST(BoundsTest, EqualityComparesAllEightFields) {
    const auto make = [](int changed) {
        return intrusive_ptr<KRVTBounds>(
            MakeBounds(changed != 0, changed == 1 ? 9 : 0, changed != 2, changed != 3,
                       changed == 4 ? 9 : 1, changed != 5, changed == 6 ? 9 : 1, changed == 7));
    };
    const auto base = make(-1);
    EXPECT_TRUE(base->Equals(*make(-1)));
    for (int changed = 0; changed < 8; ++changed) {
        EXPECT_FALSE(base->Equals(*make(changed))) << changed;
    }
}

TEST(BoundsTest, MissingBoundsEqualMissingOnes) {
    const auto bounds = Make(0, 1);
    EXPECT_TRUE(SameBounds(nullptr, nullptr));
    EXPECT_FALSE(SameBounds(bounds.get(), nullptr));
    EXPECT_FALSE(SameBounds(nullptr, bounds.get()));
    EXPECT_TRUE(SameBounds(bounds.get(), Make(0, 1).get()));
}

}  // namespace
}  // namespace korvanet::platform::assets
