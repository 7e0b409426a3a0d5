#include "assets/localization/localizationmanagerimp.h"

#include <filesystem>
#include <fstream>

#include "localization/message_files.h"

namespace {

using halvern_tests::MessageFolder;
using halvern_tests::Unit;
using halvern_tests::Xlf;
using korvanet::platform::assets::ILocalizationImp;
using korvanet::platform::assets::ILocalizationManagerImp;

class LocalizationManagerTest : public testing::Test {
protected:
    std::string Lookup(const char* key, const char* locale, const char* domain = "") {
        const nuo::string text = store.Lookup(key, locale, nuo::string(key), domain, found);
        return text.data();
    }
    std::shared_ptr<MessageFolder> Register(const char* base, const char* domain) {
        auto folder = std::make_shared<MessageFolder>();
        EXPECT_TRUE(store.RegisterSource(folder, base, domain));
        return folder;
    }

    ILocalizationManagerImp store;
    bool found = false;
};

TEST_F(LocalizationManagerTest, FindsAMessageOfTheLocaleInTheDomain) {
    const auto folder = Register("lib.jpk", "L1");
    folder->Put("LIB-FRA.XLF", Xlf(Unit("oak", "ch\xc3\xaane")));
    EXPECT_EQ(Lookup("oak", "FRA", "L1"), "ch\xc3\xaane");
    EXPECT_TRUE(found);
}

TEST_F(LocalizationManagerTest, TakesALocaleInLowerCase) {
    const auto folder = Register("lib.jpk", "L1");
    folder->Put("lib-Fra.xlf", Xlf(Unit("oak", "chene")));
    EXPECT_EQ(Lookup("oak", "fra", "L1"), "chene");
    EXPECT_NE(store.Find("fRa", "L1"), nullptr);
}

TEST_F(LocalizationManagerTest, FallsBackToEnglish) {
    const auto folder = Register("lib.jpk", "L1");
    folder->Put("LIB-FRA.XLF", Xlf(Unit("pine", "pin")));
    folder->Put("LIB-ENG.XLF", Xlf(Unit("oak", "Oak")));
    EXPECT_EQ(Lookup("oak", "FRA", "L1"), "Oak");
    EXPECT_TRUE(found);
}

TEST_F(LocalizationManagerTest, GivesTheDefaultForAKeyThatNobodyKnows) {
    const auto folder = Register("lib.jpk", "L1");
    folder->Put("LIB-ENG.XLF", Xlf(Unit("oak", "Oak")));
    const nuo::string text = store.Lookup("elm", "FRA", "the default", "L1", found);
    EXPECT_STREQ(text.data(), "the default");
    EXPECT_FALSE(found);
}

TEST_F(LocalizationManagerTest, GivesTheDefaultForAnEmptyLocaleWithoutReading) {
    const auto folder = Register("lib.jpk", "L1");
    folder->Put("LIB-ENG.XLF", Xlf(Unit("oak", "Oak")));
    EXPECT_EQ(Lookup("oak", "", "L1"), "oak");
    EXPECT_FALSE(found);
    EXPECT_EQ(folder->listings, 0);
    EXPECT_EQ(folder->opens, 0);
}

TEST_F(LocalizationManagerTest, SearchesOtherDomainsOfTheLocaleBeforeEnglish) {
    const auto own = Register("own.jpk", "L1");
    own->Put("OWN-ENG.XLF", Xlf(Unit("oak", "own English")));
    const auto other = Register("other.jpk", "L0");
    other->Put("OTHER-FRA.XLF", Xlf(Unit("oak", "other French")));
    EXPECT_EQ(Lookup("oak", "FRA", "L1"), "other French");
}

TEST_F(LocalizationManagerTest, SearchesOtherDomainsInTheirOrder) {
    const auto last = Register("a.jpk", "L3");
    last->Put("A-ENG.XLF", Xlf(Unit("oak", "of L3")));
    const auto first = Register("b.jpk", "L2");
    first->Put("B-ENG.XLF", Xlf(Unit("oak", "of L2")));
    EXPECT_EQ(Lookup("oak", "ENG", "L1"), "of L2");
    EXPECT_EQ(Lookup("oak", "ENG", "L3"), "of L3");
}

TEST_F(LocalizationManagerTest, PrefersTheDomainInEnglishToOthersInEnglish) {
    const auto own = Register("own.jpk", "L1");
    own->Put("OWN-ENG.XLF", Xlf(Unit("oak", "own")));
    const auto other = Register("other.jpk", "L0");
    other->Put("OTHER-ENG.XLF", Xlf(Unit("oak", "other")));
    EXPECT_EQ(Lookup("oak", "FRA", "L1"), "own");
    EXPECT_EQ(Lookup("oak", "FRA", "unknown"), "other");
}

TEST_F(LocalizationManagerTest, GoesOnWhenATableOfTheDomainLacksTheKey) {
    store.FindOrCreate("FRA", "L1").Set("pine", "pin");
    store.FindOrCreate("FRA", "L2").Set("oak", "chene");
    EXPECT_EQ(Lookup("oak", "FRA", "L1"), "chene");
}

TEST_F(LocalizationManagerTest, CountsTablesWithoutASourceAsDomains) {
    store.FindOrCreate("ENG", "host").Set("oak", "Oak");
    EXPECT_EQ(Lookup("oak", "FRA", "L1"), "Oak");
}

TEST_F(LocalizationManagerTest, ListsAFolderOncePerLocale) {
    const auto folder = Register("lib.jpk", "L1");
    folder->Put("LIB-FRA.XLF", Xlf(Unit("pine", "pin")));
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(Lookup("oak", "fra", "L1"), "oak");
        EXPECT_EQ(Lookup("oak", "fra", "L2"), "oak");
    }
    EXPECT_EQ(folder->listings, 2);
    EXPECT_EQ(folder->opens, 1);
}

TEST_F(LocalizationManagerTest, DoesNotLookAgainForAFileThatCameLater) {
    const auto folder = Register("lib.jpk", "L1");
    EXPECT_EQ(Lookup("oak", "ENG", "L1"), "oak");
    folder->Put("LIB-ENG.XLF", Xlf(Unit("oak", "Oak")));
    EXPECT_EQ(Lookup("oak", "ENG", "L1"), "oak");
}

TEST_F(LocalizationManagerTest, LoadsATableThatAHostMadeBeforeItsSourceCame) {
    store.FindOrCreate("ENG", "L1").Set("pine", "Pine");
    const auto folder = Register("lib.jpk", "L1");
    folder->Put("LIB-ENG.XLF", Xlf(Unit("oak", "Oak") + Unit("pine", "not this")));
    EXPECT_EQ(Lookup("oak", "ENG", "L1"), "Oak");
    EXPECT_EQ(Lookup("pine", "ENG", "L1"), "Pine");
}

TEST_F(LocalizationManagerTest, KeepsTheFirstSourceOfADomain) {
    const auto first = Register("one.jpk", "L1");
    first->Put("ONE-ENG.XLF", Xlf(Unit("oak", "first")));
    const auto second = std::make_shared<MessageFolder>();
    second->Put("TWO-ENG.XLF", Xlf(Unit("oak", "second")));
    EXPECT_FALSE(store.RegisterSource(second, "two.jpk", "L1"));
    EXPECT_EQ(Lookup("oak", "ENG", "L1"), "first");
}

TEST_F(LocalizationManagerTest, ReplacesASourceWhoseFilesAreGone) {
    Register("one.jpk", "L1");
    const auto second = Register("two.jpk", "L1");
    second->Put("TWO-ENG.XLF", Xlf(Unit("oak", "second")));
    EXPECT_EQ(Lookup("oak", "ENG", "L1"), "second");
}

TEST_F(LocalizationManagerTest, LoadsATableThatWasMadeWhileTheFilesWereGone) {
    Register("one.jpk", "L1");
    store.FindOrCreate("ENG", "L1");
    const auto second = Register("two.jpk", "L1");
    second->Put("TWO-ENG.XLF", Xlf(Unit("oak", "second")));
    EXPECT_EQ(Lookup("oak", "ENG", "L1"), "second");
}

TEST_F(LocalizationManagerTest, LoadsNothingFromASourceWhoseFilesAreGone) {
    Register("lib.jpk", "L1");
    EXPECT_EQ(Lookup("oak", "ENG", "L1"), "oak");
    EXPECT_FALSE(found);
}

TEST_F(LocalizationManagerTest, KeepsWhatABrokenFileGaveAndDoesNotReadItAgain) {
    const auto folder = Register("lib.jpk", "L1");
    folder->Put("LIB-ENG.XLF", "<r>" + Unit("oak", "Oak") + Unit("pine", "&broken;"));
    EXPECT_EQ(Lookup("oak", "ENG", "L1"), "Oak");
    EXPECT_EQ(Lookup("pine", "ENG", "L1"), "pine");
    EXPECT_EQ(folder->opens, 1);
}

TEST_F(LocalizationManagerTest, TreatsAnEmptyFileAsNoMessages) {
    const auto folder = Register("lib.jpk", "L1");
    folder->Put("LIB-ENG.XLF", "");
    EXPECT_EQ(Lookup("oak", "ENG", "L1"), "oak");
    EXPECT_FALSE(found);
}

TEST_F(LocalizationManagerTest, FindsOnlyTablesThatWereMade) {
    const auto folder = Register("lib.jpk", "L1");
    folder->Put("LIB-ENG.XLF", Xlf(Unit("oak", "Oak")));
    EXPECT_EQ(store.Find("ENG", "L1"), nullptr);
    EXPECT_EQ(folder->listings, 0);
    Lookup("oak", "ENG", "L1");
    EXPECT_NE(store.Find("ENG", "L1"), nullptr);
    EXPECT_EQ(store.Find("ENG", "L2"), nullptr);
}

TEST_F(LocalizationManagerTest, MakesATableOnceAndFillsIt) {
    const auto folder = Register("lib.jpk", "L1");
    folder->Put("LIB-ENG.XLF", Xlf(Unit("oak", "Oak")));
    ILocalizationImp& table = store.FindOrCreate("eng", "L1");
    EXPECT_STREQ(table.Find("oak")->data(), "Oak");
    EXPECT_EQ(&store.FindOrCreate("ENG", "L1"), &table);
    EXPECT_EQ(store.Find("ENG", "L1"), &table);
    EXPECT_EQ(folder->listings, 1);
}

TEST_F(LocalizationManagerTest, ForgetsADomainWithAllItsTables) {
    const auto folder = Register("lib.jpk", "L1");
    folder->Put("LIB-ENG.XLF", Xlf(Unit("oak", "Oak")));
    folder->Put("LIB-FRA.XLF", Xlf(Unit("oak", "chene")));
    EXPECT_EQ(Lookup("oak", "FRA", "L1"), "chene");
    EXPECT_EQ(Lookup("oak", "ENG", "L1"), "Oak");
    store.UnregisterDomain("L1");
    EXPECT_EQ(Lookup("oak", "FRA", "L1"), "oak");
    EXPECT_EQ(store.Find("FRA", "L1"), nullptr);
    EXPECT_TRUE(store.RegisterSource(folder, "lib.jpk", "L1"));
    EXPECT_EQ(Lookup("oak", "FRA", "L1"), "chene");
}

TEST_F(LocalizationManagerTest, EmptiesATableThatAHostHoldsAndKeepsItOutOfReach) {
    ILocalizationImp& table = store.FindOrCreate("ENG", "L1");
    table.Set("oak", "Oak");
    store.UnregisterDomain("L1");
    EXPECT_EQ(table.Find("oak"), nullptr);
    EXPECT_TRUE(table.Set("oak", "Oak"));
    EXPECT_EQ(Lookup("oak", "ENG", "L1"), "oak");
    EXPECT_NE(&store.FindOrCreate("ENG", "L1"), &table);
}

TEST_F(LocalizationManagerTest, IgnoresADomainThatWasNeverRegistered) {
    store.UnregisterDomain("unknown");
    EXPECT_EQ(Lookup("oak", "ENG"), "oak");
}

class LocalizationFolderTest : public LocalizationManagerTest {
protected:
    void SetUp() override {
        char name[] = "/tmp/halvern_messages_XXXXXX";
        folder = mkdtemp(name);
        std::ofstream(folder + "/Texts-ENG.xlf") << Xlf(Unit("oak", "Oak"));
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    std::string folder;
};

TEST_F(LocalizationFolderTest, TakesADomainThatIsAPathAsThePlaceOfItsFiles) {
    const std::string domain = folder + "/texts";
    EXPECT_STREQ(store.FindOrCreate("eng", domain.c_str()).Find("oak")->data(), "Oak");
    EXPECT_EQ(Lookup("oak", "FRA"), "Oak");
}

TEST_F(LocalizationFolderTest, KeepsThatFolderForOtherLocales) {
    const std::string domain = folder + "/texts";
    store.FindOrCreate("FRA", domain.c_str());
    EXPECT_EQ(Lookup("oak", "FRA"), "Oak");
}

TEST_F(LocalizationFolderTest, MakesAnEmptyTableForAPathInNoFolder) {
    const std::string missing = folder + "/missing/texts";
    EXPECT_EQ(store.FindOrCreate("ENG", missing.c_str()).Find("oak"), nullptr);
    const std::string only_folder = folder + "/";
    EXPECT_EQ(store.FindOrCreate("ENG", only_folder.c_str()).Find("oak"), nullptr);
    EXPECT_EQ(store.FindOrCreate("ENG", "texts").Find("oak"), nullptr);
    EXPECT_EQ(store.FindOrCreate("ENG", "").Find("oak"), nullptr);
}

TEST_F(LocalizationFolderTest, KeepsTheRegisteredSourceOfADomainThatIsAPath) {
    const std::string domain = folder + "/texts";
    const auto registered = Register("other", domain.c_str());
    registered->Put("OTHER-ENG.XLF", Xlf(Unit("oak", "registered")));
    EXPECT_STREQ(store.FindOrCreate("ENG", domain.c_str()).Find("oak")->data(), "registered");
}

}  // namespace
