#include "assets/property/numbervalues.h"

#include "property/fixture.h"

namespace korvanet::platform::assets {
namespace {

using testing::ElementsAre;

class NumberValuesTest : public PropertyTest {};

TEST_F(NumberValuesTest, AnIntegerStoresAtIndexZero) {
    auto& value = MakeValue<IntegerValue>(ValueClass::kIntegerValue);
    EXPECT_EQ(value.GetValue(0), 0);
    EXPECT_TRUE(value.SetValue(7, 0));
    EXPECT_EQ(value.GetValue(0), 7);
    EXPECT_TRUE(reports.lines.empty());
}

}  // namespace
}  // namespace korvanet::platform::assets
