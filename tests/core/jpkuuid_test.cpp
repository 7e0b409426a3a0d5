#include <korvanet/platform/core/jpkuuid.h>
#include <korvanet/platform/core/utf8string.h>
#include <sys/wait.h>
#include <unistd.h>

#include <set>
#include <thread>

namespace {

using korvanet::platform::core::JPKUUID;
using korvanet::platform::core::UTF8String;

std::string Text(const JPKUUID& uuid) {
    char text[JPKUUID::kTextLength + 1];
    uuid.ToChars(text);
    return text;
}

TEST(JPKUUID, IsRandomOfVersionFourInUpperCase) {
    for (int i = 0; i != 1000; ++i) {
        const std::string text = Text(JPKUUID());
        ASSERT_EQ(text.size(), 36u);
        EXPECT_EQ(text.find_first_not_of("0123456789ABCDEF-"), std::string::npos) << text;
        EXPECT_EQ(text[8], '-');
        EXPECT_EQ(text[13], '-');
        EXPECT_EQ(text[14], '4');
        EXPECT_EQ(text[18], '-');
        EXPECT_NE(std::string("89AB").find(text[19]), std::string::npos) << text;
        EXPECT_EQ(text[23], '-');
    }
}

TEST(JPKUUID, BothTextFormsAreTheSame) {
    const JPKUUID uuid;
    UTF8String text;
    uuid.ToString(text);
    EXPECT_EQ(text.AsUTF8(), Text(uuid));
    EXPECT_TRUE(JPKUUID::IsValid(text));
}

TEST(JPKUUID, IsFreshEveryTime) {
    std::set<std::string> seen;
    for (int i = 0; i != 10000; ++i)
        seen.insert(Text(JPKUUID()));
    EXPECT_EQ(seen.size(), 10000u);
    const JPKUUID one;
    const JPKUUID two;
    EXPECT_FALSE(one == two);
    EXPECT_TRUE(one == one);
}

TEST(JPKUUID, AForkedChildMakesOthersThanItsParent) {
    Text(JPKUUID());  // fetches random bytes that the child inherits
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
        const std::string text = Text(JPKUUID());
        _exit(write(ends[1], text.data(), text.size()) == 36 ? 0 : 1);
    }
    const std::string own = Text(JPKUUID());
    char from_child[37] = {};
    ASSERT_EQ(read(ends[0], from_child, 36), 36);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_NE(own, from_child);
    close(ends[0]);
    close(ends[1]);
}

TEST(JPKUUID, AnotherThreadMakesOthers) {
    const std::string own = Text(JPKUUID());
    std::string other;
    std::thread([&] { other = Text(JPKUUID()); }).join();
    EXPECT_NE(own, other);
}

TEST(JPKUUID, TellsWhatIsOne) {
    EXPECT_TRUE(JPKUUID::IsValid(UTF8String("314DE259-5443-4621-BFBD-1730C6CC9AE9")));
    EXPECT_TRUE(JPKUUID::IsValid(UTF8String("314de259-5443-4621-bfbd-1730c6cc9ae9")));
    for (const char* text :
         {"", "314DE259-5443-4621-BFBD-1730C6CC9AE", "{314DE259-5443-4621-BFBD-1730C6CC9AE9}",
          "314DE259+5443-4621-BFBD-1730C6CC9AE9", "314DE259-5443-4621-BFBD-1730C6CC9AEG",
          "314DE25-95443-4621-BFBD-1730C6CC9AE9"})
        EXPECT_FALSE(JPKUUID::IsValid(UTF8String(text))) << text;
}

}  // namespace
