#include "assets/manager/pathresolver.h"

#include <filesystem>

#include "tests/support/managertest.h"

namespace halvern_tests {
namespace {

using testing::ElementsAre;

std::vector<std::string> asked;

bool Finder(const core::IString& name, core::IString& resolved) {
    asked.push_back(std::string("finder ") + name.AsUTF8());
    if (std::string(name.AsUTF8()).find("known") == std::string::npos) return false;
    resolved.Assign(L"/found/by/the/host");
    return true;
}

bool Other(const core::IString& name, core::IString&) {
    asked.push_back(std::string("other ") + name.AsUTF8());
    return false;
}

class Resolving : public ManagerTest {
protected:
    Resolving() { asked.clear(); }

    bool Add(const std::string& path) { return resolver_.AddSearchPath(Text(path)); }
    std::string At(std::size_t index) {
        core::UTF8String path("unchanged");
        return resolver_.GetSearchPath(index, path) ? path.AsUTF8() : "none";
    }
    // The answer, or "no" when there is none and the string was left alone.
    std::string Resolve(const std::string& name) {
        core::UTF8String resolved("unchanged");
        if (resolver_.Resolve(Text(name), resolved)) return resolved.AsUTF8();
        return resolved == core::UTF8String("unchanged") ? "no" : "no, but changed";
    }
    static core::UTF8String Text(const std::string& text) { return core::UTF8String(text.c_str()); }
    void MakeFile(const std::string& name) {
        std::filesystem::create_directories(std::filesystem::path(Path(name)).parent_path());
        WriteFile(Path(name), "");
    }

    assets::PathResolver resolver_;
};

TEST_F(Resolving, ASeparatorAtTheEndOfASearchPathIsDropped) {
    EXPECT_TRUE(Add("C:/a/"));
    EXPECT_TRUE(Add("C:\\b\\"));
    EXPECT_TRUE(Add("/c//"));
    EXPECT_EQ(At(0), "C:/a");
    EXPECT_EQ(At(1), "C:\\b");
    EXPECT_EQ(At(2), "/c/");
}

TEST_F(Resolving, ASearchPathOfOneCharacterIsKept) {
    EXPECT_TRUE(Add("/"));
    EXPECT_EQ(At(0), "/");
}

TEST_F(Resolving, RelativePathsAndFilesAreNoSearchPaths) {
    MakeFile("file");
    EXPECT_FALSE(Add("a/b"));
    EXPECT_FALSE(Add(""));
    EXPECT_FALSE(Add(Path("file")));
    EXPECT_FALSE(Add(Path("file/")));
    EXPECT_FALSE(resolver_.InsertSearchPath(0, Text("a")));
    EXPECT_EQ(resolver_.GetSearchPathCount(), 0u);
}

TEST_F(Resolving, FoldersAndAbsolutePathsWhereNothingIsAreSearchPaths) {
    EXPECT_TRUE(Add(Folder()));
    EXPECT_TRUE(Add(Path("nothing/here")));
    EXPECT_EQ(resolver_.GetSearchPathCount(), 2u);
}

TEST_F(Resolving, InsertingGoesBeforeTheIndexAndPastTheEndBehind) {
    EXPECT_TRUE(resolver_.InsertSearchPath(5, Text("/a")));
    EXPECT_TRUE(resolver_.InsertSearchPath(0, Text("/b/")));
    EXPECT_TRUE(resolver_.InsertSearchPath(2, Text("/c")));
    EXPECT_TRUE(resolver_.InsertSearchPath(1, Text("/d")));
    EXPECT_EQ(At(0), "/b");
    EXPECT_EQ(At(1), "/d");
    EXPECT_EQ(At(2), "/a");
    EXPECT_EQ(At(3), "/c");
    EXPECT_EQ(At(4), "none");
}

TEST_F(Resolving, RemovingMovesTheRestDownAndIsFalseAtTheCount) {
    EXPECT_TRUE(Add("/a") && Add("/b") && Add("/c"));
    EXPECT_FALSE(resolver_.RemoveSearchPath(3));
    EXPECT_TRUE(resolver_.RemoveSearchPath(1));
    EXPECT_EQ(At(0), "/a");
    EXPECT_EQ(At(1), "/c");
    EXPECT_FALSE(resolver_.RemoveSearchPath(2));
    EXPECT_EQ(resolver_.GetSearchPathCount(), 2u);
}

TEST_F(Resolving, AnEmptyNameIsFalseAndAsksNobody) {
    EXPECT_TRUE(resolver_.AddResolver(&Finder));
    EXPECT_EQ(Resolve(""), "no");
    EXPECT_TRUE(asked.empty());
}

TEST_F(Resolving, ARelativeNameIsLookedForFromTheFirstSearchPathToTheLast) {
    MakeFile("one/b.png");
    MakeFile("two/a.png");
    MakeFile("two/b.png");
    EXPECT_TRUE(Add(Path("zero")) && Add(Path("one")) && Add(Path("two")));
    EXPECT_EQ(Resolve("a.png"), Path("two/a.png"));
    EXPECT_EQ(Resolve("b.png"), Path("one/b.png"));
    EXPECT_EQ(Resolve("b.png/"), Path("one/b.png"));
    EXPECT_EQ(Resolve("x\\..\\b.png"), "no");
    EXPECT_EQ(Resolve("..\\two\\.\\b.png"), Path("two/b.png"));
    EXPECT_EQ(Resolve("c.png"), "no");
}

TEST_F(Resolving, AFolderIsFoundToo) {
    MakeFile("one/textures/b.png");
    EXPECT_TRUE(Add(Path("one")));
    EXPECT_EQ(Resolve("textures"), Path("one/textures"));
    EXPECT_EQ(Resolve("textures/"), Path("one/textures"));
}

TEST_F(Resolving, AnAbsoluteNameStandsForItselfAndIsNormalized) {
    MakeFile("one/b.png");
    EXPECT_EQ(Resolve(Path("one/../one//b.png")), Path("one/b.png"));
    EXPECT_EQ(Resolve(Path("one")), Path("one"));
    EXPECT_EQ(Resolve(Path("two")), "no");
}

TEST_F(Resolving, ANameThatOnlyAResolverKnowsIsLookedForOnTheDiskFirst) {
    EXPECT_TRUE(resolver_.AddResolver(&Other));
    EXPECT_TRUE(resolver_.AddResolver(&Finder));
    EXPECT_TRUE(Add(Path("one")));
    EXPECT_EQ(Resolve("known.png"), "/found/by/the/host");
    EXPECT_THAT(asked, ElementsAre("other known.png", "finder known.png"));
    asked.clear();
    // All search paths come before any resolver.
    EXPECT_TRUE(Add(Path("two")) && Add(Path("three")));
    MakeFile("one/known.png");
    EXPECT_EQ(Resolve("known.png"), Path("one/known.png"));
    EXPECT_EQ(Resolve(Path("one/known.png")), Path("one/known.png"));
    EXPECT_TRUE(asked.empty());
    EXPECT_EQ(Resolve("/absolute/known.png"), "/found/by/the/host");
}

TEST_F(Resolving, AResolverAddedTwiceRunsOnceAndTheFirstThatKnowsEndsTheSearch) {
    EXPECT_TRUE(resolver_.AddResolver(&Finder));
    EXPECT_TRUE(resolver_.AddResolver(&Other));
    EXPECT_TRUE(resolver_.AddResolver(&Finder));
    EXPECT_EQ(Resolve("nobody"), "no");
    EXPECT_THAT(asked, ElementsAre("finder nobody", "other nobody"));
    asked.clear();
    EXPECT_EQ(Resolve("known"), "/found/by/the/host");
    EXPECT_THAT(asked, ElementsAre("finder known"));
}

TEST_F(Resolving, ANullResolverIsNotKept) {
    EXPECT_TRUE(resolver_.AddResolver(nullptr));
    EXPECT_EQ(Resolve("known"), "no");
}

TEST_F(Resolving, TheLibraryItselfAsksInItsOwnTexts) {
    MakeFile("one/b.png");
    EXPECT_TRUE(resolver_.Add(nuo::string(Path("one").c_str())));
    EXPECT_TRUE(resolver_.AddResolver(&Finder));
    EXPECT_EQ(resolver_.Find("b.png"), nuo::string(Path("one/b.png").c_str()));
    EXPECT_EQ(resolver_.Find("known"), nuo::string("/found/by/the/host"));
    EXPECT_TRUE(resolver_.Find("unheard").empty());
    EXPECT_TRUE(resolver_.Find("").empty());
    nuo::string path("kept");
    EXPECT_FALSE(resolver_.Locate("unheard", path));
    EXPECT_EQ(path, nuo::string("kept"));
    EXPECT_TRUE(resolver_.Locate("b.png", path));
    EXPECT_EQ(path, nuo::string(Path("one/b.png").c_str()));
    EXPECT_FALSE(resolver_.Remove("/x"));
    EXPECT_TRUE(resolver_.Remove(nuo::string(Path("one").c_str())));
    EXPECT_TRUE(resolver_.Find("b.png").empty());
}

}  // namespace
}  // namespace halvern_tests
