#include "vfs/contract/file_system_contract.h"

#include "assets/package/jpkfs.h"
#include "nuo/common/buffer_archive.h"
#include "velmor/vfs/in_memory_fs.h"
#include "velmor/vfs/local_fs.h"
#include "velmor/vfs/zip.h"
#include "vfs/support.h"

namespace {

using namespace vfs_tests;
using korvanet::platform::assets::JpkFs;
using vfs_contract::Stage;

class PackageOverMemoryStage : public Stage {
public:
    fs::IVfs& files() override { return files_; }

private:
    fs::InMemory inner_{"inner"};
    JpkFs files_{inner_, "memory.jpk"};
};

class PackageOverFolderStage : public Stage {
public:
    fs::IVfs& files() override { return files_; }

private:
    DiskFolder folder_;
    fs::LocalFs inner_{folder_.path().c_str()};
    JpkFs files_{inner_, "folder"};
};

class PackageOverZipStage : public Stage {
public:
    fs::IVfs& files() override { return files_; }

private:
    nuo::archive::mem_read_write_archive archive_;
    fs::InMemory cache_{"cache"};
    fs::ZipFs inner_{archive_, cache_, "a.jpk", false};
    JpkFs files_{inner_, "a.jpk"};
};

// The manifests of the first half of its life are there, hidden.
class SyncedPackageStage : public Stage {
public:
    SyncedPackageStage() { files_.sync(); }
    fs::IVfs& files() override { return files_; }

private:
    fs::InMemory inner_{"inner"};
    JpkFs files_{inner_, "synced.jpk"};
};

template <class T>
std::unique_ptr<Stage> Make() {
    return std::make_unique<T>();
}

const bool registered = vfs_contract::Register({
    {"PackageOverMemory", Make<PackageOverMemoryStage>, {}},
    {"PackageOverFolder",
     Make<PackageOverFolderStage>,
     {{"ReadingCanMakeTheFile", "a file of the disk is made by those alone who may write"}}},
    {"PackageOverZip", Make<PackageOverZipStage>, {}},
    {"SyncedPackage", Make<SyncedPackageStage>, {}},
});

}  // namespace
