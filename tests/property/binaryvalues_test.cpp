#include "assets/property/binaryvalues.h"

#include "nuo/common/buffer.h"
#include "property/fixture.h"

namespace korvanet::platform::assets {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class BinaryValuesTest : public PropertyTest {};

TEST_F(BinaryValuesTest, BytesComeBackAsTheyWereSet) {
    auto& value = MakeValue<IBinaryValue>(ValueClass::kBinaryValue);
    EXPECT_EQ(value.GetSize(), 0u);
    EXPECT_TRUE(value.SetData("a\0b", 3));
    EXPECT_EQ(value.GetSize(), 3u);
    EXPECT_EQ(std::memcmp(value.GetData(), "a\0b", 3), 0);
    EXPECT_TRUE(value.SetData("z", 1));
    EXPECT_EQ(value.GetSize(), 1u);
    EXPECT_TRUE(value.SetData(nullptr, 0));
    EXPECT_EQ(value.GetSize(), 0u);
}

TEST_F(BinaryValuesTest, TheBufferGrowsByDoublingOrByHalfOfTheSize) {
    PropertyBase& property = Make(ValueClass::kBinaryValue);
    auto& value = As<IBinaryValue>(property);
    const auto& bytes = *static_cast<nuo::buffer<nuo::byte>*>(property.DataObject().data());
    const std::string data(200, 'x');
    value.SetData(data.data(), 10);
    EXPECT_EQ(bytes.capacity(), 15u);
    value.SetData(data.data(), 16);
    EXPECT_EQ(bytes.capacity(), 30u);
    value.SetData(data.data(), 100);
    EXPECT_EQ(bytes.capacity(), 150u);
    value.SetData(data.data(), 150 - 1);
    EXPECT_EQ(bytes.capacity(), 150u);
}

TEST_F(BinaryValuesTest, APartOfTheValueCanBecomeTheValue) {
    auto& value = MakeValue<IBinaryValue>(ValueClass::kBinaryValue);
    value.SetData("abcdef", 6);
    EXPECT_TRUE(value.SetData(static_cast<const char*>(value.GetData()) + 1, 5));
    EXPECT_EQ(std::memcmp(value.GetData(), "bcdef", 5), 0);
}

TEST_F(BinaryValuesTest, OtherIndicesAreReported) {
    auto& value = MakeValue<IBinaryValue>(ValueClass::kBinaryValue);
    EXPECT_FALSE(value.SetData("a", 1, 1));
    EXPECT_EQ(value.GetSize(), 0u);
    EXPECT_THAT(reports.lines, ElementsAre("error: Invalid dimension"));
}

TEST_F(BinaryValuesTest, SizesBeyondTheLimitAreRefused) {
    auto& value = MakeValue<IBinaryValue>(ValueClass::kBinaryValue);
    EXPECT_FALSE(value.SetData("a", (std::uint64_t{1} << 31) + 1));
    EXPECT_FALSE(value.SetData("a", ~std::uint64_t{0}));
    EXPECT_FALSE(value.SetData(nullptr, 1));
    EXPECT_EQ(value.GetSize(), 0u);
}

TEST_F(BinaryValuesTest, NewBytesAreToldToNobody) {
    ChangeLog changes;
    PropertyBase& property = Make(ValueClass::kBinaryValue);
    property.SetOwner(&changes);
    EXPECT_TRUE(As<IBinaryValue>(property).SetData("a", 1));
    EXPECT_THAT(changes.lines, IsEmpty());
}

}  // namespace
}  // namespace korvanet::platform::assets
