#include "assets/localization/messagefile.h"

#include "localization/message_files.h"

namespace {

using halvern_tests::MessageFolder;
using korvanet::platform::assets::MessageSource;
using korvanet::platform::assets::UpperText;

std::string Upper(const char* text) {
    return nuo::string(UpperText(text).Ref()).data();
}

// The content of the file that the source opens.
std::string Opened(const std::shared_ptr<MessageFolder>& folder, const char* base_name,
                   const char* locale) {
    const MessageSource source(folder, base_name);
    const auto file = source.Open(*folder, locale);
    if (!file) return "none";
    std::string text(static_cast<std::size_t>(file->query_random()->size()), '?');
    nuo::archive::read_exact(*file->query_reader(), {text.data(), text.size()});
    return text;
}

TEST(UpperText, FoldsTheLettersOfAscii) {
    EXPECT_EQ(Upper("fra"), "FRA");
    EXPECT_EQ(Upper("Fra-9_z{`@["), "FRA-9_Z{`@[");
    EXPECT_EQ(Upper("m\xc3\xa4rz"), "M\xc3\xa4RZ");
}

TEST(UpperText, ViewsATextThatIsUpperCaseAlready) {
    const nuo::string text("FRA-9");
    EXPECT_EQ(UpperText(text).Ref().data(), text.data());
}

TEST(MessageSource, FindsTheFileByTheStemOfTheBaseName) {
    const auto folder = std::make_shared<MessageFolder>();
    folder->Put("STARTER-ENG.XLF", "by stem");
    folder->Put("STARTER.JPK-ENG.XLF", "by name");
    EXPECT_EQ(Opened(folder, "starter.jpk", "ENG"), "by stem");
}

TEST(MessageSource, FindsTheFileByTheWholeBaseNameOtherwise) {
    const auto folder = std::make_shared<MessageFolder>();
    folder->Put("Starter.jpk-eng.xlf", "by name");
    EXPECT_EQ(Opened(folder, "starter.jpk", "ENG"), "by name");
    EXPECT_EQ(Opened(folder, "starter", "ENG"), "none");
}

TEST(MessageSource, CutsTheLastExtensionAlone) {
    const auto folder = std::make_shared<MessageFolder>();
    folder->Put("A.B-ENG.XLF", "of a.b");
    folder->Put(".C-ENG.XLF", "of .c");
    EXPECT_EQ(Opened(folder, "a.b.c", "ENG"), "of a.b");
    EXPECT_EQ(Opened(folder, ".c", "ENG"), "of .c");
}

TEST(MessageSource, MatchesAnyCaseAndTakesTheFirstByName) {
    const auto folder = std::make_shared<MessageFolder>();
    folder->Put("starter-eng.xlf", "lower");
    folder->Put("Starter-Eng.Xlf", "mixed");
    EXPECT_EQ(Opened(folder, "STARTER.jpk", "ENG"), "mixed");
}

TEST(MessageSource, FindsNoFileOfAnotherNameOrLocale) {
    const auto folder = std::make_shared<MessageFolder>();
    folder->Put("STARTER-FRA.XLF", "x");
    folder->Put("STARTER-ENG.XLF2", "x");
    folder->Put("STARTER-ENG", "x");
    EXPECT_EQ(Opened(folder, "starter", "ENG"), "none");
}

TEST(MessageSource, OpensNoFolderOfThatName) {
    const auto folder = std::make_shared<MessageFolder>();
    EXPECT_EQ(folder->createDir("STARTER-ENG.XLF"), velmor::fs::er_ok);
    EXPECT_EQ(Opened(folder, "starter", "ENG"), "none");
}

TEST(MessageSource, LetsGoOfFilesWithTheirOwner) {
    auto folder = std::make_shared<MessageFolder>();
    const MessageSource source(folder, "starter");
    EXPECT_EQ(source.Files(), folder);
    folder.reset();
    EXPECT_EQ(source.Files(), nullptr);
}

}  // namespace
