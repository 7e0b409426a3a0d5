#include <filesystem>

#include "tests/support/managertest.h"

namespace halvern_tests {
namespace {

using testing::IsEmpty;

class Resources : public ManagerTest {
protected:
    assets::IAssetLibrary& Library() {
        if (library_ == nullptr) library_ = Create(Path("a.jpk"), "ID");
        return *library_;
    }
    // The path that the library gives for a file, or "no" when it left the string alone.
    std::string Add(const std::string& file, const char* type = "") {
        core::UTF8String uri("unchanged");
        const bool added = Library().AddResource(uri, core::UTF8String(type),
                                                 core::UTF8String(file.c_str()), false);
        if (added) return uri.AsUTF8();
        return uri == core::UTF8String("unchanged") ? "no" : "no, but changed";
    }
    // What is in a resource, or "no" with an empty handle.
    static std::string Content(assets::IAssetLibrary& library, const std::string& uri) {
        auto stream = std::make_shared<Stub>();
        std::shared_ptr<core::IDataReadStream> handle = stream;
        if (!library.OpenResource(handle, core::UTF8String(uri.c_str())))
            return handle == nullptr ? "no" : "no, but a stream";
        return ReadAll(*handle);
    }
    static std::string ReadAll(core::IDataReadStream& stream) {
        std::string bytes(stream.Seek(0, core::SeekOrigin::kEnd), '\0');
        stream.Seek(0, core::SeekOrigin::kBegin);
        return stream.ReadExact(bytes.data(), bytes.size()) ? bytes : "failed";
    }
    std::string Content(const std::string& uri) { return Content(Library(), uri); }
    std::string MakeFile(const std::string& name, const std::string& text) {
        std::filesystem::create_directories(std::filesystem::path(Path(name)).parent_path());
        WriteFile(Path(name), text);
        return Path(name);
    }
    std::string Replace(const std::string& name, const std::string& file) {
        std::shared_ptr<core::IDataReadStream> handle = std::make_shared<Stub>();
        if (!Library().ReplaceResource(handle, core::UTF8String(name.c_str()),
                                       core::UTF8String(file.c_str())))
            return handle == nullptr ? "no" : "no, but a stream";
        return ReadAll(*handle);
    }

private:
    // What stood in the handle before.
    class Stub final : public core::IDataReadStream {
    public:
        bool IsOpen() const override { return false; }
        void Close() override {}
        bool CanRead() const override { return false; }
        std::uint64_t Read(void*, std::uint64_t) override { return 0; }
        bool ReadExact(void*, std::uint64_t) override { return false; }
        std::uint64_t Seek(std::int64_t, core::SeekOrigin) override { return 0; }
        std::uint64_t Tell() const override { return 0; }
    };

    assets::IAssetLibrary* library_ = nullptr;
};

TEST_F(Resources, AFileIsStoredUnderItsNameAndOpens) {
    const std::string file = MakeFile("in/a.png", "bytes of a");
    EXPECT_EQ(Add(file), "ID\\Resources\\a.png");
    EXPECT_EQ(Content("jpk:?asset=/ID/Resources/a.png"), "bytes of a");
    EXPECT_EQ(Content("jpk:?asset=/ID\\Resources\\a.png"), "bytes of a");
}

TEST_F(Resources, TheSameFileTwiceGivesTheSamePath) {
    const std::string file = MakeFile("in/a.png", "a");
    EXPECT_EQ(Add(file), Add(file));
    EXPECT_EQ(Content("jpk:?asset=/ID/Resources/a(1).png"), "no");
}

TEST_F(Resources, TwoFilesOfOneNameAreBothKept) {
    EXPECT_EQ(Add(MakeFile("one/a.png", "first")), "ID\\Resources\\a.png");
    EXPECT_EQ(Add(MakeFile("two/a.png", "second")), "ID\\Resources\\a(1).png");
    EXPECT_EQ(Content("jpk:?asset=/ID/Resources/a.png"), "first");
    EXPECT_EQ(Content("jpk:?asset=/ID/Resources/a(1).png"), "second");
}

TEST_F(Resources, SignsThatMeanSomethingInAUriAreEscaped) {
    EXPECT_EQ(Add(MakeFile("a#b&c.png", "x")), "ID\\Resources\\a%23b%26c.png");
}

TEST_F(Resources, AMissingFileAndAFolderAreRefused) {
    EXPECT_EQ(Add(Path("missing.png")), "no");
    EXPECT_EQ(Add(Folder()), "no");
    EXPECT_EQ(Add(""), "no");
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(Resources, ALibraryOpenForReadingTakesNone) {
    assets::IAssetLibrary* const library = Open(CopySample("starter.jpk"));
    core::UTF8String uri("unchanged");
    EXPECT_FALSE(library->AddResource(uri, core::UTF8String(""),
                                      core::UTF8String(MakeFile("a.png", "a").c_str()), false));
    EXPECT_STREQ(uri.AsUTF8(), "unchanged");
}

TEST_F(Resources, AreThereAfterASaveAndOutliveTheirLibrary) {
    Add(MakeFile("a.png", "bytes of a"));
    ASSERT_TRUE(Manager().SaveLibrary(&Library()));
    ASSERT_TRUE(Unload(&Library()));
    assets::IAssetLibrary* const library = Open(Path("a.jpk"));
    ASSERT_NE(library, nullptr);
    std::shared_ptr<core::IDataReadStream> stream;
    ASSERT_TRUE(library->OpenResource(stream, core::UTF8String("jpk:?asset=/ID/Resources/a.png")));
    EXPECT_TRUE(Unload(library));
    EXPECT_TRUE(stream->IsOpen());
    EXPECT_EQ(ReadAll(*stream), "bytes of a");
}

TEST_F(Resources, AnotherTextIsTheNameOfAnOrdinaryFile) {
    EXPECT_EQ(Content(MakeFile("plain.txt", "plain")), "plain");
    EXPECT_EQ(Content(Path("missing.txt")), "no");
    EXPECT_EQ(Content(Folder()), "no");
    EXPECT_EQ(Content(""), "no");
}

TEST_F(Resources, ANameThatThePackageLacksLeavesTheHandleEmpty) {
    EXPECT_EQ(Content("jpk:?asset=/ID/Resources/missing.png"), "no");
    EXPECT_EQ(Content("jpk:?asset=/ID/Resources"), "no");
    EXPECT_EQ(Content("jpk:?asset=/"), "no");
    EXPECT_EQ(Content("jpk:?asset=/../a.jpk"), "no");
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(Resources, ReplacingPutsAnotherFileInThePlaceOfOne) {
    Add(MakeFile("a.png", "a longer text"));
    const std::string other = MakeFile("b.png", "short");
    EXPECT_EQ(Replace("jpk:?asset=/ID/Resources/a.png", other), "short");
    EXPECT_EQ(Content("jpk:?asset=/ID/Resources/a.png"), "short");
    EXPECT_EQ(Replace("ID\\Resources\\a.png", MakeFile("c.png", "third")), "third");
    EXPECT_EQ(Replace("a.png", other), "short");
    EXPECT_EQ(Replace("new#.png", other), "short");
    EXPECT_EQ(Content("jpk:?asset=/ID/Resources/new%23.png"), "short");
    EXPECT_EQ(Replace("ID/Resources/deep/er/d.png", other), "short");
    EXPECT_EQ(Content("jpk:?asset=/ID/Resources/deep/er/d.png"), "short");
    ASSERT_TRUE(Manager().SaveLibrary(&Library()));
    ASSERT_TRUE(Unload(&Library()));
    assets::IAssetLibrary* const library = Open(Path("a.jpk"));
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(Content(*library, "jpk:?asset=/ID/Resources/a.png"), "short");
}

TEST_F(Resources, ReplacingWithoutAFileOpensWhatIsThere) {
    Add(MakeFile("a.png", "a"));
    EXPECT_EQ(Replace("jpk:?asset=/ID/Resources/a.png", ""), "a");
    EXPECT_EQ(Replace("jpk:?asset=/ID/Resources/missing.png", ""), "no");
}

TEST_F(Resources, ReplacingReachesNothingElseOfTheLibrary) {
    const std::string file = MakeFile("b.png", "harm");
    for (const char* name : {"jpk:?asset=/ID/AssetData/AssetTableOfContents.bin",
                             "ID/Resources/../AssetData/AssetTableOfContents.bin", "ID/Resources",
                             "../x", "..", ".", "jpk:?asset=/", "/etc/x"})
        EXPECT_EQ(Replace(name, file), "no") << name;
    EXPECT_EQ(Replace("a.png", Path("missing")), "no");
    EXPECT_EQ(Content("jpk:?asset=/ID/Resources/a.png"), "no");
    ASSERT_TRUE(Manager().SaveLibrary(&Library()));
    ASSERT_TRUE(Unload(&Library()));
    EXPECT_NE(Open(Path("a.jpk")), nullptr);
}

}  // namespace
}  // namespace halvern_tests
