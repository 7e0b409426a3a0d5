#include "assets/manager/base/path.h"

namespace {

using korvanet::platform::assets::AppendPath;
using korvanet::platform::assets::FolderOfPath;
using korvanet::platform::assets::IsAbsolutePath;
using korvanet::platform::assets::LeafOfPath;
using korvanet::platform::assets::NormalizePath;
using korvanet::platform::assets::WithSlashes;

TEST(AbsolutePath, BeginsWithASeparatorOrHoldsAColon) {
    for (const char* path :
         {"/", "\\", "/a", "\\a", "//a", "C:", "C:a", "C:/a", "http://a", "a/b:c", ":"})
        EXPECT_TRUE(IsAbsolutePath(path)) << path;
    for (const char* path : {"", "a", "a/b", "./a", "../a", "a\\b"})
        EXPECT_FALSE(IsAbsolutePath(path)) << path;
}

struct Form {
    const char* path;
    const char* normalized;
};

void ExpectForms(std::initializer_list<Form> forms) {
    for (const Form& form : forms) {
        const nuo::string normalized = NormalizePath(form.path);
        EXPECT_STREQ(normalized.c_str(), form.normalized) << form.path;
        EXPECT_STREQ(NormalizePath(normalized).c_str(), form.normalized) << form.path;
    }
}

TEST(NormalizedPath, TakesBothSeparators) {
    ExpectForms({{"C:\\lib\\..\\lib\\a", "C:/lib/a"}, {"C:/lib/a", "C:/lib/a"}});
}

TEST(NormalizedPath, KeepsOneLeadingSeparatorAsTheRoot) {
    ExpectForms({{"/home/u/l", "/home/u/l"},
                 {"\\home\\u", "/home/u"},
                 {"/", "/"},
                 {"/.", "/"},
                 {"/a/..", "/"},
                 {"/a:b/../c", "/c"}});  // the root wins over the colon
}

TEST(NormalizedPath, KeepsADoubleRoot) {
    ExpectForms({{"//server/share/x", "//server/share/x"},
                 {"\\\\server\\share", "//server/share"},
                 {"//a/..", "//"},
                 {"///a", "//a"}});
}

TEST(NormalizedPath, TakesTheFirstComponentAsDriveWhenThereIsAColon) {
    ExpectForms({{"C:", "C:"},
                 {"C:\\", "C:"},
                 {"C:/a/../..//b", ""},
                 {"C:a/b/..", "C:a"},
                 {"http://host/a/../b", "http:/host/b"}});
}

TEST(NormalizedPath, DropsEmptyComponentsAndDots) {
    ExpectForms({{"/a//b///c", "/a/b/c"},
                 {"/a/./b/.", "/a/b"},
                 {"/a/b/", "/a/b"},
                 {"a/./", "a"},
                 {".", ""},
                 {"", ""}});
}

TEST(NormalizedPath, ResolvesParentFolders) {
    ExpectForms({{"/a/b/../../c", "/c"},
                 {"/a/b/../c/../d", "/a/d"},
                 {"a/..", ""},
                 {"a/b/../..", ""},
                 {"/a/...", "/a/..."},
                 {"/a/..b", "/a/..b"}});
}

TEST(NormalizedPath, KeepsParentFoldersAboveARelativePath) {
    ExpectForms(
        {{"..", ".."}, {"../..", "../.."}, {"a/../../b", "../b"}, {"../a/../../b", "../../b"}});
}

TEST(NormalizedPath, IsEmptyAboveARoot) {
    ExpectForms({{"/..", ""}, {"/a/../..", ""}, {"//..", ""}, {"C:\\..", ""}, {"/../a", ""}});
}

TEST(AppendedPath, HasExactlyOneSeparatorBetween) {
    EXPECT_EQ(AppendPath("/a", "b"), "/a/b");
    EXPECT_EQ(AppendPath("/a/", "b"), "/a/b");
    EXPECT_EQ(AppendPath("/a", "/b"), "/a/b");
    EXPECT_EQ(AppendPath("/a\\/", "\\/b"), "/a/b");
    EXPECT_EQ(AppendPath("/", "b"), "/b");
    EXPECT_EQ(AppendPath("C:", "b/c"), "C:/b/c");
}

TEST(AppendedPath, IsOneOfThemWhenTheOtherIsEmpty) {
    EXPECT_EQ(AppendPath("", "b"), "b");
    EXPECT_EQ(AppendPath("/a", ""), "/a");
    EXPECT_EQ(AppendPath("", ""), "");
}

TEST(FolderOfPath, IsCutAtTheLastSeparatorOfEitherKind) {
    EXPECT_EQ(FolderOfPath("/a/b.jpk"), "/a");
    EXPECT_EQ(FolderOfPath("C:\\a\\b.jpk"), "C:\\a");
    EXPECT_EQ(FolderOfPath("/a\\b/c"), "/a\\b");
    EXPECT_EQ(FolderOfPath("/a"), "/");
    EXPECT_EQ(FolderOfPath("/a/"), "/a");
    EXPECT_EQ(FolderOfPath("a"), "");
    EXPECT_EQ(FolderOfPath(""), "");
}

TEST(LeafOfPath, StandsBehindTheLastSeparator) {
    EXPECT_EQ(LeafOfPath("/a/b.jpk"), "b.jpk");
    EXPECT_EQ(LeafOfPath("C:\\a\\b"), "b");
    EXPECT_EQ(LeafOfPath("a"), "a");
    EXPECT_EQ(LeafOfPath("/a/"), "");
    EXPECT_EQ(LeafOfPath(""), "");
}

TEST(WithSlashes, TurnsEveryBackslash) {
    EXPECT_EQ(WithSlashes("C:\\a\\\\b/c"), "C:/a//b/c");
    EXPECT_EQ(WithSlashes(""), "");
}

}  // namespace
