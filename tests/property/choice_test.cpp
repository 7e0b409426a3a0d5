#include "assets/property/choice.h"

#include "assets/localization/localizationmanagerimp.h"
#include "property/fixture.h"

namespace korvanet::platform::assets {
namespace {

using testing::ElementsAre;

class ChoiceTest : public PropertyTest {
protected:
    ChoiceTest() : list(MakeChoiceList(&context)) {}

    static intrusive_ptr<KRVTChoice> Choice(const char* id, int value, const char* label = "L") {
        return MakeChoice(core::UTF8String(label), value, core::UTF8String(id));
    }

    intrusive_ptr<KRVTChoiceList> list;
};

TEST_F(ChoiceTest, FactoryResultsAreCountedByNobody) {
    KRVTChoice* choice = MakeChoice(core::UTF8String("a"), 1, core::UTF8String("b"));
    KRVTChoiceList* made = MakeChoiceList(&context);
    EXPECT_EQ(choice->ReferenceCount(), 0u);
    EXPECT_EQ(made->ReferenceCount(), 0u);
    delete choice;
    delete made;
}

TEST_F(ChoiceTest, AChoiceGivesItsFields) {
    const auto choice = Choice("red", 4, "Red");
    core::UTF8String text;
    choice->GetId(text);
    EXPECT_STREQ(text.AsUTF8(), "red");
    EXPECT_EQ(choice->GetValue(), 4);
    choice->GetLabel(text, L"FRA");
    EXPECT_STREQ(text.AsUTF8(), "Red");
}

TEST_F(ChoiceTest, TheListKeepsTheOrderOfAdding) {
    const auto b = Choice("b", 2);
    const auto a = Choice("a", 1);
    EXPECT_TRUE(list->AddChoice(b.get()));
    EXPECT_TRUE(list->AddChoice(a.get()));
    EXPECT_EQ(list->GetCount(), 2u);
    EXPECT_EQ(list->GetChoice(0), static_cast<IChoice*>(b.get()));
    EXPECT_EQ(list->GetChoice(1), static_cast<IChoice*>(a.get()));
    EXPECT_EQ(b->ReferenceCount(), 2u);
}

TEST_F(ChoiceTest, NullAKnownIdAndAKnownValueAreRefused) {
    const auto first = Choice("a", 1);
    const auto same_id = Choice("a", 2);
    const auto same_value = Choice("b", 1);
    EXPECT_FALSE(list->AddChoice(nullptr));
    EXPECT_TRUE(list->AddChoice(first.get()));
    EXPECT_FALSE(list->AddChoice(same_id.get()));
    EXPECT_FALSE(list->AddChoice(same_value.get()));
    EXPECT_FALSE(list->AddChoice(first.get()));
    EXPECT_EQ(list->GetCount(), 1u);
    EXPECT_EQ(same_value->ReferenceCount(), 1u);
}

TEST_F(ChoiceTest, AnIndexPastTheEndIsReported) {
    EXPECT_EQ(list->GetChoice(0), nullptr);
    EXPECT_THAT(reports.lines, ElementsAre("error: Invalid index"));
}

TEST_F(ChoiceTest, ChoicesAreFoundById) {
    const auto choice = Choice("a", 1);
    list->AddChoice(choice.get());
    EXPECT_EQ(list->FindById("a"), choice.get());
    EXPECT_EQ(list->FindById("b"), nullptr);
    EXPECT_TRUE(list->HasValue(1));
    EXPECT_FALSE(list->HasValue(2));
}

TEST_F(ChoiceTest, TheLabelIsTheMessageOfListAndId) {
    ILocalizationManagerImp messages;
    messages.FindOrCreate("FRA", "any").Set("colour:red", "rouge");
    context.localization = &messages;
    const auto choice = Choice("red", 1, "Red");
    list->SetName("colour");
    list->AddChoice(choice.get());
    core::UTF8String label;
    choice->GetLabel(label, L"fra");
    EXPECT_STREQ(label.AsUTF8(), "rouge");
    choice->GetLabel(label, L"DEU");
    EXPECT_STREQ(label.AsUTF8(), "Red");
    choice->GetLabel(label, nullptr);
    EXPECT_STREQ(label.AsUTF8(), "Red");
}

TEST_F(ChoiceTest, AChoiceOutlivesItsList) {
    const auto choice = Choice("red", 1, "Red");
    list->AddChoice(choice.get());
    list.reset();
    core::UTF8String label;
    choice->GetLabel(label, L"FRA");
    EXPECT_STREQ(label.AsUTF8(), "Red");
}

TEST_F(ChoiceTest, EqualChoicesHaveEqualFields) {
    const auto choice = Choice("a", 1, "A");
    EXPECT_FALSE(choice->IsEqual(nullptr));
    EXPECT_TRUE(choice->IsEqual(Choice("a", 1, "A").get()));
    EXPECT_FALSE(choice->IsEqual(Choice("b", 1, "A").get()));
    EXPECT_FALSE(choice->IsEqual(Choice("a", 2, "A").get()));
    EXPECT_FALSE(choice->IsEqual(Choice("a", 1, "B").get()));
}

TEST_F(ChoiceTest, EqualListsHaveEqualNamesAndEntries) {
    const intrusive_ptr<KRVTChoiceList> other(MakeChoiceList(&context));
    EXPECT_FALSE(list->IsEqual(nullptr));
    EXPECT_TRUE(list->IsEqual(other.get()));
    other->SetName("x");
    EXPECT_FALSE(list->IsEqual(other.get()));
    list->SetName("x");
    list->AddChoice(Choice("a", 1).get());
    other->AddChoice(Choice("a", 2).get());
    EXPECT_FALSE(list->IsEqual(other.get()));
}

TEST_F(ChoiceTest, AnOtherListThatIsLongerEquals) {
    const intrusive_ptr<KRVTChoiceList> longer(MakeChoiceList(&context));
    list->AddChoice(Choice("a", 1).get());
    longer->AddChoice(Choice("a", 1).get());
    longer->AddChoice(Choice("b", 2).get());
    EXPECT_TRUE(list->IsEqual(longer.get()));
    EXPECT_FALSE(longer->IsEqual(list.get()));
}

}  // namespace
}  // namespace korvanet::platform::assets
