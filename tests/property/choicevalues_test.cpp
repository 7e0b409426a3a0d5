#include "assets/property/choicevalues.h"

#include "property/fixture.h"

namespace korvanet::platform::assets {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ChoiceValuesTest : public PropertyTest {
protected:
    intrusive_ptr<KRVTChoiceList> List(std::initializer_list<int> values) {
        intrusive_ptr<KRVTChoiceList> list(MakeChoiceList(&context));
        for (const int value : values) {
            const std::string id = "id" + std::to_string(value);
            list->AddChoice(
                MakeChoice(core::UTF8String("label"), value, core::UTF8String(id.c_str())));
        }
        return list;
    }
};

TEST_F(ChoiceValuesTest, AChoiceTakesTheValueOfAnEntry) {
    auto& value = MakeValue<ChoiceValue>(ValueClass::kChoiceValue);
    const auto list = List({3, 5});
    value.SetChoices(list.get());
    EXPECT_EQ(value.GetChoices(), static_cast<IChoiceList*>(list.get()));
    EXPECT_TRUE(value.SetValue(5, 0));
    EXPECT_FALSE(value.SetValue(4, 0));
    EXPECT_EQ(value.GetValue(0), 5);
    EXPECT_THAT(reports.lines, IsEmpty());
}

TEST_F(ChoiceValuesTest, WithoutEntriesNothingIsTaken) {
    auto& value = MakeValue<ChoiceValue>(ValueClass::kChoiceValue);
    EXPECT_FALSE(value.SetValue(0, 0));
    const auto empty = List({});
    value.SetChoices(empty.get());
    EXPECT_FALSE(value.SetValue(0, 0));
    EXPECT_THAT(reports.lines, IsEmpty());
}

TEST_F(ChoiceValuesTest, OtherIndicesAreReported) {
    auto& value = MakeValue<ChoiceValue>(ValueClass::kChoiceValue);
    const auto list = List({3});
    value.SetChoices(list.get());
    EXPECT_FALSE(value.SetValue(3, 1));
    EXPECT_THAT(reports.lines, ElementsAre("error: Invalid dimension"));
}

TEST_F(ChoiceValuesTest, AListOfChoicesTestsEachElement) {
    auto& value = MakeValue<ChoiceListValue>(ValueClass::kChoiceListValue);
    const auto list = List({3, 5});
    value.SetChoices(list.get());
    EXPECT_TRUE(value.SetDimension(2));
    EXPECT_TRUE(value.SetValue(5, 1));
    EXPECT_FALSE(value.SetValue(6, 0));
    EXPECT_THAT(reports.lines, IsEmpty());
    EXPECT_FALSE(value.SetValue(5, 2));
    EXPECT_EQ(value.GetValue(0), 0);
    EXPECT_EQ(value.GetValue(1), 5);
    EXPECT_THAT(reports.lines, ElementsAre("error: Invalid dimension"));
}

TEST_F(ChoiceValuesTest, BoundsAreNotAsked) {
    auto& value = MakeValue<ChoiceValue>(ValueClass::kChoiceValue);
    const auto list = List({30});
    const intrusive_ptr<KRVTBounds> bounds(MakeBounds(true, 0, true, true, 1, true, 1, false));
    value.SetChoices(list.get());
    value.SetBounds(bounds.get());
    EXPECT_EQ(value.GetBounds(), static_cast<IBounds*>(bounds.get()));
    EXPECT_TRUE(value.IsOutOfBounds(30));
    EXPECT_TRUE(value.SetValue(30, 0));
}

TEST_F(ChoiceValuesTest, NullChoicesKeepTheOldOnes) {
    auto& value = MakeValue<ChoiceValue>(ValueClass::kChoiceValue);
    const auto list = List({3});
    value.SetChoices(list.get());
    value.SetChoices(nullptr);
    EXPECT_EQ(value.GetChoices(), static_cast<IChoiceList*>(list.get()));
}

TEST_F(ChoiceValuesTest, EqualityNeedsListsOnBothSides) {
    PropertyBase& a = Make(ValueClass::kChoiceValue);
    PropertyBase& b = Make(ValueClass::kChoiceValue);
    auto& left = As<ChoiceValue>(a);
    auto& right = As<ChoiceValue>(b);
    EXPECT_FALSE(a.IsEqual(&b));
    EXPECT_FALSE(a.IsEqual(&a));
    const auto list = List({3, 5});
    left.SetChoices(list.get());
    EXPECT_FALSE(a.IsEqual(&b));
    EXPECT_FALSE(b.IsEqual(&a));
    const auto same = List({3, 5});
    right.SetChoices(same.get());
    EXPECT_TRUE(a.IsEqual(&b));
    right.SetValue(5, 0);
    EXPECT_FALSE(a.IsEqual(&b));
    left.SetValue(5, 0);
    EXPECT_TRUE(a.IsEqual(&b));
    const auto other = List({3, 6});
    right.SetChoices(other.get());
    EXPECT_FALSE(a.IsEqual(&b));
}

TEST_F(ChoiceValuesTest, AChoiceTellsItsOwner) {
    ChangeLog changes;
    PropertyBase& property = Make(ValueClass::kChoiceValue);
    property.SetOwner(&changes);
    const auto list = List({3});
    As<ChoiceValue>(property).SetChoices(list.get());
    As<ChoiceValue>(property).SetValue(4, 0);
    EXPECT_THAT(changes.lines, IsEmpty());
    As<ChoiceValue>(property).SetValue(3, 0);
    EXPECT_THAT(changes.lines, ElementsAre("value p"));
}

}  // namespace
}  // namespace korvanet::platform::assets
