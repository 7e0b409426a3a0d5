#include "assets/property/stringvalues.h"

#include "assets/localization/localizationmanagerimp.h"
#include "property/fixture.h"

namespace korvanet::platform::assets {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StringValuesTest : public PropertyTest {
protected:
    StringValuesTest() {
        messages.FindOrCreate("FRA", "domain").Set("key", "message");
        context.localization = &messages;
    }

    ILocalizationManagerImp messages;
};

TEST_F(StringValuesTest, ATextComesBackAsItWasSet) {
    PropertyBase& property = Make(ValueClass::kStringValue);
    auto& value = As<IStringValue>(property);
    EXPECT_EQ(TextOf(property), "");
    EXPECT_TRUE(value.SetValue(L"Gr\u00FC\u00DFe \U0001F600"));
    EXPECT_EQ(TextOf(property),
              "Gr\xC3\xBC\xC3\x9F"
              "e \xF0\x9F\x98\x80");
    core::UTF8String text;
    EXPECT_TRUE(value.GetValue(text));
    EXPECT_STREQ(text.AsWide(), L"Gr\u00FC\u00DFe \U0001F600");
}

TEST_F(StringValuesTest, AWrongIndexLeavesTheOutputUntouched) {
    auto& value = MakeValue<IStringValue>(ValueClass::kStringValue);
    core::UTF8String text("before");
    EXPECT_FALSE(value.GetValue(text, 1));
    EXPECT_FALSE(value.GetLocalizedValue(text, L"FRA", 1));
    EXPECT_FALSE(value.SetValue(L"x", 1));
    EXPECT_STREQ(text.AsUTF8(), "before");
    EXPECT_EQ(reports.lines, std::vector<std::string>(3, "error: Invalid dimension"));
}

TEST_F(StringValuesTest, ANullTextIsRefusedInSilence) {
    PropertyBase& property = Make(ValueClass::kStringValue);
    ChangeLog changes;
    property.SetOwner(&changes);
    EXPECT_FALSE(As<IStringValue>(property).SetValue(nullptr));
    EXPECT_THAT(reports.lines, IsEmpty());
    EXPECT_THAT(changes.lines, IsEmpty());
}

TEST_F(StringValuesTest, AListHoldsTextsByIndex) {
    PropertyBase& property = Make(ValueClass::kStringList);
    auto& value = As<IStringValue>(property);
    EXPECT_FALSE(value.SetValue(L"x", 0));
    EXPECT_TRUE(value.SetDimension(2));
    EXPECT_TRUE(value.SetValue(L"b", 1));
    EXPECT_EQ(TextOf(property, 0), "");
    EXPECT_EQ(TextOf(property, 1), "b");
    EXPECT_TRUE(value.SetDimension(1));
    EXPECT_EQ(value.GetDimension(), 1u);
    EXPECT_THAT(reports.lines, ElementsAre("error: Invalid dimension"));
}

TEST_F(StringValuesTest, OnlyLocalTextsAreKeysOfMessages) {
    auto& plain = MakeValue<IStringValue>(ValueClass::kStringValue);
    auto& local = MakeValue<IStringValue>(ValueClass::kStringValue, PropertyFlags::kLocal);
    plain.SetValue(L"key");
    local.SetValue(L"key");
    core::UTF8String text;
    EXPECT_TRUE(plain.GetLocalizedValue(text, L"fra"));
    EXPECT_STREQ(text.AsUTF8(), "key");
    EXPECT_TRUE(local.GetLocalizedValue(text, L"fra"));
    EXPECT_STREQ(text.AsUTF8(), "message");
}

TEST_F(StringValuesTest, AKeyWithoutAMessageReadsAsItself) {
    auto& local = MakeValue<IStringValue>(ValueClass::kStringValue, PropertyFlags::kLocal);
    local.SetValue(L"unknown");
    core::UTF8String text;
    EXPECT_TRUE(local.GetLocalizedValue(text, L"FRA"));
    EXPECT_STREQ(text.AsUTF8(), "unknown");
    EXPECT_TRUE(local.GetLocalizedValue(text, L""));
    EXPECT_STREQ(text.AsUTF8(), "unknown");
    EXPECT_FALSE(local.GetLocalizedValue(text, nullptr));
}

TEST_F(StringValuesTest, TextsAreNotLocalizedWithoutAStore) {
    context.localization = nullptr;
    auto& local = MakeValue<IStringValue>(ValueClass::kStringValue, PropertyFlags::kLocal);
    local.SetValue(L"key");
    core::UTF8String text;
    EXPECT_TRUE(local.GetLocalizedValue(text, L"FRA"));
    EXPECT_STREQ(text.AsUTF8(), "key");
}

TEST_F(StringValuesTest, DatesAndUuidsAreTexts) {
    auto& date = MakeValue<IDateTimeValue>(ValueClass::kDateTimeValue);
    auto& uuid = MakeValue<IUuidValue>(ValueClass::kUuidValue);
    core::UTF8String text;
    EXPECT_TRUE(date.SetValue(L"2009-01-02T03:04:05"));
    EXPECT_TRUE(date.GetValue(text));
    EXPECT_STREQ(text.AsUTF8(), "2009-01-02T03:04:05");
    EXPECT_TRUE(uuid.SetValue(L"314DE259"));
    EXPECT_TRUE(uuid.GetValue(text));
    EXPECT_STREQ(text.AsUTF8(), "314DE259");
}

TEST_F(StringValuesTest, TextsTellTheirOwner) {
    ChangeLog changes;
    for (const ValueClass value : {ValueClass::kStringValue, ValueClass::kStringList,
                                   ValueClass::kDateTimeValue, ValueClass::kUuidValue}) {
        PropertyBase& property = Make(value, ValueClassName(value));
        property.SetOwner(&changes);
        property.GetValue()->SetDimension(1);
        As<IStringValue>(property).SetValue(L"x");
    }
    EXPECT_THAT(changes.lines, ElementsAre("value StringValue", "value StringList",
                                           "value DateTimeValue", "value UuidValue"));
}

}  // namespace
}  // namespace korvanet::platform::assets
