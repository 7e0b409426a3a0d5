#include <gmock/gmock.h>
#include <sys/stat.h>

#include <fstream>
#include <iterator>

#include "assets/library/ilegacycontent.h"
#include "assets/manager/assetlibrary.h"
#include "assets/manager/tempfolder.h"
#include "nuo/common/file_archive.h"
#include "tests/support/libraryhost.h"
#include "velmor/vfs/in_memory_fs.h"
#include "velmor/vfs/vfs_functions.h"
#include "velmor/vfs/zip.h"

namespace korvanet::platform::assets {
namespace {

// Reads one paint "Old" from any file, and writes files that say nothing.
class PlainLegacy final : public ILegacyContent {
public:
    explicit PlainLegacy(TestHost& host) : host_(host) {}

    bool LoadObjects(GeneralLibrary& document, nuo::archive::iarchive&) override {
        LoadGlobal(host_, "CommonSchema", kCommonSchemaXml);
        KRVTSchemaDefinition& paint = *LoadGlobal(host_, "PaintSchema", kPaintSchemaXml);
        AssetDefinition& model =
            MakeDefinition(*document.EnsureSchema(paint), velmor::Namespace(), "model");
        model.AddReference();
        document.CreatePreset(model, "Old", {});
        model.Release();
        return true;
    }
    void WriteDirectory(const GeneralLibrary&, nuo::archive::iarchive&) override {}
    void WriteObjects(const GeneralLibrary&, nuo::archive::iarchive&) override {}

private:
    TestHost& host_;
};

// A file of the older layout, which every way of opening would like to convert.
class Upgrading : public testing::Test {
protected:
    Upgrading() : legacy_(host_), path_((host_.Folder() + "/old.jpk").c_str()) {
        host_.legacy = &legacy_;
        host_.temp->createDir(kCopyFolder);
        AssetLibrary made(host_, host_.Slib(),
                          AssetLibrary::Creating{path_, LibraryMode::kInPlace, "OLD",
                                                 GeneralLibrary::kLegacyOption});
        EXPECT_TRUE(made.Save());
    }

    std::unique_ptr<AssetLibrary> Open(LibraryMode mode, bool for_writing, bool writable = true) {
        return std::make_unique<AssetLibrary>(
            host_, host_.Slib(), AssetLibrary::Opening{path_, mode, for_writing, writable});
    }
    std::string Bytes() const {
        std::ifstream in(path_.c_str(), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    bool IsLocked() const {
        struct stat status {};
        return ::stat(nuo::string(path_, ".lck").c_str(), &status) == 0;
    }
    // In the present layout nobody needs to read the older one.
    void ExpectConvertedFile() {
        host_.legacy = nullptr;
        const auto again = Open(LibraryMode::kInPlace, false);
        EXPECT_EQ(again->Document().GetLayout(), GeneralLibrary::Layout::kCurrent);
        EXPECT_NE(again->Document().LoadDefinition("Old"), nullptr);
    }

    TestHost host_;
    PlainLegacy legacy_;
    nuo::string path_;
};

TEST_F(Upgrading, OpeningForReadingConvertsTheFileAndLeavesTheLibraryForReading) {
    auto library = Open(LibraryMode::kInPlace, false);
    EXPECT_EQ(library->Document().GetLayout(), GeneralLibrary::Layout::kCurrent);
    EXPECT_FALSE(library->IsForWriting());
    EXPECT_FALSE(library->Save());
    EXPECT_NE(library->Document().LoadDefinition("Old"), nullptr);
    library.reset();
    ExpectConvertedFile();
}

TEST_F(Upgrading, OpeningForWritingConvertsTheFileAndLeavesTheLibraryForWriting) {
    auto library = Open(LibraryMode::kInPlace, true);
    EXPECT_EQ(library->Document().GetLayout(), GeneralLibrary::Layout::kCurrent);
    EXPECT_TRUE(library->IsForWriting());
    library.reset();
    ExpectConvertedFile();
}

TEST_F(Upgrading, OnACopyTheSourceStaysAndAReaderGivesTheLockBack) {
    const std::string bytes = Bytes();
    for (const bool for_writing : {false, true}) {
        const auto library = Open(LibraryMode::kCopy, for_writing);
        EXPECT_EQ(library->Document().GetLayout(), GeneralLibrary::Layout::kCurrent);
        EXPECT_EQ(IsLocked(), for_writing);
        EXPECT_EQ(Bytes(), bytes);
    }
    EXPECT_FALSE(IsLocked());
}

TEST_F(Upgrading, AFileThatMayNotBeWrittenStaysInTheOlderLayoutAndOpen) {
    const std::string bytes = Bytes();
    ASSERT_EQ(::chmod(path_.c_str(), 0444), 0);
    for (const LibraryMode mode : {LibraryMode::kInPlace, LibraryMode::kCopy}) {
        const auto library = Open(mode, false, false);
        EXPECT_EQ(library->Document().GetLayout(), GeneralLibrary::Layout::kLegacyUpgrade);
        EXPECT_TRUE(library->IsReadOnly());
        EXPECT_TRUE(library->Document().Contains("Old"));
    }
    EXPECT_EQ(Bytes(), bytes);
}

TEST_F(Upgrading, RefreshingACopyConvertsItToo) {
    std::unique_ptr<AssetLibrary> library;
    {
        LockFile held;
        ASSERT_EQ(held.Take(nuo::string(path_, ".lck")), assets::LockResult::kTaken);
        library = Open(LibraryMode::kCopy, false);
    }
    EXPECT_EQ(library->Document().GetLayout(), GeneralLibrary::Layout::kLegacyUpgrade);
    EXPECT_TRUE(library->TakeWriteAccessOnCopy());
    EXPECT_EQ(library->Document().GetLayout(), GeneralLibrary::Layout::kCurrent);
    EXPECT_FALSE(library->IsForWriting());
    EXPECT_FALSE(IsLocked());
}

// What cannot be converted can be read, and is nobody's to write.
TEST_F(Upgrading, ARefreshWhoseConversionFailsLeavesACopyForReading) {
    std::unique_ptr<AssetLibrary> library;
    {
        LockFile held;
        ASSERT_EQ(held.Take(nuo::string(path_, ".lck")), assets::LockResult::kTaken);
        library = Open(LibraryMode::kCopy, false);
    }
    {
        nuo::archive::file_read_write_archive file(path_);
        velmor::fs::InMemory cache("test");
        velmor::fs::ZipFs zip(file, cache, "test", false);
        ASSERT_EQ(velmor::fs::recursiveCreateDir(zip, "OLD/Schemas"), velmor::fs::er_ok);
        zip.commit();
    }
    EXPECT_TRUE(library->TakeWriteAccessOnCopy());
    EXPECT_EQ(library->Document().GetLayout(), GeneralLibrary::Layout::kLegacyUpgrade);
    EXPECT_FALSE(library->IsForWriting());
    EXPECT_FALSE(IsLocked());
}

TEST_F(Upgrading, ALockThatIsHeldLeavesACopyInTheOlderLayout) {
    LockFile held;
    ASSERT_EQ(held.Take(nuo::string(path_, ".lck")), assets::LockResult::kTaken);
    const auto library = Open(LibraryMode::kCopy, false);
    EXPECT_EQ(library->Document().GetLayout(), GeneralLibrary::Layout::kLegacyUpgrade);
    EXPECT_TRUE(library->Document().Contains("Old"));
    EXPECT_TRUE(IsLocked());
}

}  // namespace
}  // namespace korvanet::platform::assets
