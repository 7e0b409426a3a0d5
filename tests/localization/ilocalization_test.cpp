#include <korvanet/platform/assets/ilocalization.h>
#include <korvanet/platform/core/utf8string.h>

#include "assets/localization/localizationmanagerimp.h"
#include "localization/message_files.h"

namespace {

using halvern_tests::MessageFolder;
using halvern_tests::Unit;
using halvern_tests::Xlf;
using korvanet::platform::assets::ILocalization;
using korvanet::platform::assets::ILocalizationImp;
using korvanet::platform::assets::ILocalizationManager;
using korvanet::platform::assets::ILocalizationManagerImp;
using korvanet::platform::core::UTF8String;

TEST(ILocalization, IsInvalidUntilItHasATable) {
    ILocalization none;
    UTF8String message("untouched");
    EXPECT_FALSE(none.IsValid());
    EXPECT_FALSE(none.GetLocalizedMessage(message, UTF8String("oak")));
    EXPECT_FALSE(none.HasLocalizedMessage(UTF8String("oak")));
    EXPECT_FALSE(none.AddLocalizedMessage(UTF8String("Oak"), UTF8String("oak")));
    EXPECT_STREQ(message.AsUTF8(), "untouched");
}

TEST(ILocalization, TellsNewMessagesFromReplacedOnes) {
    ILocalizationImp table;
    ILocalization handle(&table);
    UTF8String message;
    EXPECT_TRUE(handle.AddLocalizedMessage(UTF8String("first"), UTF8String("oak")));
    EXPECT_FALSE(handle.AddLocalizedMessage(UTF8String("second"), UTF8String("oak")));
    EXPECT_TRUE(handle.GetLocalizedMessage(message, UTF8String("oak")));
    EXPECT_STREQ(message.AsUTF8(), "second");
}

TEST(ILocalization, LeavesTheMessageUntouchedForAnUnknownKey) {
    ILocalizationImp table;
    ILocalization handle(&table);
    handle.AddLocalizedMessage(UTF8String("Oak"), UTF8String("oak"));
    UTF8String message("untouched");
    EXPECT_FALSE(handle.GetLocalizedMessage(message, UTF8String("elm")));
    EXPECT_STREQ(message.AsUTF8(), "untouched");
    EXPECT_TRUE(handle.HasLocalizedMessage(UTF8String("oak")));
    EXPECT_FALSE(handle.HasLocalizedMessage(UTF8String("elm")));
}

TEST(ILocalization, CopiesThePointerAlone) {
    ILocalizationImp table;
    ILocalization first(&table);
    ILocalization copy(first);
    ILocalization assigned;
    assigned = copy;
    EXPECT_TRUE(assigned.AddLocalizedMessage(UTF8String("Oak"), UTF8String("oak")));
    EXPECT_TRUE(first.HasLocalizedMessage(UTF8String("oak")));
    EXPECT_EQ(sizeof(ILocalization), sizeof(void*));
    EXPECT_EQ(sizeof(ILocalizationManager), sizeof(void*));
}

TEST(ILocalization, CarriesTextBeyondTheBasicPlane) {
    ILocalizationImp table;
    ILocalization handle(&table);
    handle.AddLocalizedMessage(UTF8String("\xf0\x9f\x98\x80"), UTF8String("smile"));
    UTF8String message;
    EXPECT_TRUE(handle.GetLocalizedMessage(message, UTF8String("smile")));
    EXPECT_STREQ(message.AsUTF8(), "\xf0\x9f\x98\x80");
}

TEST(ILocalizationManager, IsInvalidUntilItHasAStore) {
    ILocalizationManager none;
    UTF8String message("untouched");
    EXPECT_FALSE(none.IsValid());
    EXPECT_FALSE(none.GetILocalization(UTF8String("ENG"), UTF8String("")).IsValid());
    EXPECT_FALSE(none.CreateILocalization(UTF8String("ENG"), UTF8String("")).IsValid());
    EXPECT_FALSE(none.GetLocalizedMessage(message, UTF8String("oak"), UTF8String("ENG")));
    EXPECT_STREQ(message.AsUTF8(), "untouched");
}

TEST(ILocalizationManager, GetsATableOnlyAfterItWasCreated) {
    ILocalizationManagerImp store;
    ILocalizationManager manager(&store);
    EXPECT_TRUE(manager.IsValid());
    EXPECT_FALSE(manager.GetILocalization(UTF8String("ENG"), UTF8String("host")).IsValid());
    ILocalization made = manager.CreateILocalization(UTF8String("eng"), UTF8String("host"));
    EXPECT_TRUE(made.IsValid());
    made.AddLocalizedMessage(UTF8String("Oak"), UTF8String("oak"));
    const ILocalization got = manager.GetILocalization(UTF8String("Eng"), UTF8String("host"));
    EXPECT_TRUE(got.HasLocalizedMessage(UTF8String("oak")));
}

TEST(ILocalizationManager, FindsMessagesOfAllDomains) {
    ILocalizationManagerImp store;
    ILocalizationManager manager(&store);
    manager.CreateILocalization(UTF8String("ENG"), UTF8String("host"))
        .AddLocalizedMessage(UTF8String("Oak"), UTF8String("oak"));
    UTF8String message;
    EXPECT_TRUE(manager.GetLocalizedMessage(message, UTF8String("oak"), UTF8String("fra")));
    EXPECT_STREQ(message.AsUTF8(), "Oak");
}

TEST(ILocalizationManager, GivesFalseForAKeyThatNobodyKnows) {
    ILocalizationManagerImp store;
    ILocalizationManager manager(&store);
    UTF8String message("untouched");
    EXPECT_FALSE(manager.GetLocalizedMessage(message, UTF8String("oak"), UTF8String("ENG")));
    EXPECT_FALSE(manager.GetLocalizedMessage(message, UTF8String("oak"), UTF8String("")));
    EXPECT_STREQ(message.AsUTF8(), "untouched");
}

TEST(ILocalizationManager, DoesNotLetABrokenFileOut) {
    ILocalizationManagerImp store;
    const auto folder = std::make_shared<MessageFolder>();
    folder->Put("LIB-ENG.XLF", "<r>" + Unit("oak", "Oak"));
    store.RegisterSource(folder, "lib", "L1");
    ILocalizationManager manager(&store);
    const ILocalization table = manager.CreateILocalization(UTF8String("ENG"), UTF8String("L1"));
    EXPECT_TRUE(table.HasLocalizedMessage(UTF8String("oak")));
}

TEST(ILocalizationManager, KeepsHandlesGoodAfterTheirDomainIsGone) {
    ILocalizationManagerImp store;
    ILocalizationManager manager(&store);
    ILocalization table = manager.CreateILocalization(UTF8String("ENG"), UTF8String("L1"));
    table.AddLocalizedMessage(UTF8String("Oak"), UTF8String("oak"));
    store.UnregisterDomain("L1");
    EXPECT_TRUE(table.IsValid());
    EXPECT_FALSE(table.HasLocalizedMessage(UTF8String("oak")));
}

TEST(ILocalizationManager, MayWriteTheMessageOverTheKey) {
    ILocalizationManagerImp store;
    ILocalizationManager manager(&store);
    manager.CreateILocalization(UTF8String("ENG"), UTF8String(""))
        .AddLocalizedMessage(UTF8String("Oak"), UTF8String("oak"));
    UTF8String text("oak");
    EXPECT_TRUE(manager.GetLocalizedMessage(text, text, UTF8String("ENG")));
    EXPECT_STREQ(text.AsUTF8(), "Oak");
}

}  // namespace
