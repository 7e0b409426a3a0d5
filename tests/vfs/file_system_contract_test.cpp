#include "vfs/contract/file_system_contract.h"

#include "nuo/common/buffer_archive.h"
#include "nuo/common/file_archive.h"
#include "velmor/vfs/in_memory_fs.h"
#include "velmor/vfs/local_fs.h"
#include "velmor/vfs/zip.h"
#include "vfs/support.h"

namespace {

using namespace vfs_tests;
using vfs_contract::Stage;

class LocalStage : public Stage {
public:
    fs::IVfs& files() override { return files_; }

private:
    DiskFolder folder_;
    fs::LocalFs files_{folder_.path().c_str()};
};

class MemoryStage : public Stage {
public:
    fs::IVfs& files() override { return files_; }

private:
    fs::InMemory files_{"memory"};
};

class ZipOverFileStage : public Stage {
public:
    fs::IVfs& files() override { return files_; }

private:
    DiskFolder folder_;
    nuo::archive::file_read_write_archive archive_{folder_.file("a.zip").c_str(),
                                                   nuo::archive::create_new};
    fs::InMemory cache_{"cache"};
    fs::ZipFs files_{archive_, cache_, "a.zip", true};
};

// The cache lies on the disk, as that of a large library does.
class ZipOverMemoryStage : public Stage {
public:
    fs::IVfs& files() override { return files_; }

private:
    DiskFolder folder_;
    nuo::archive::mem_read_write_archive archive_;
    fs::LocalFs cache_{folder_.path().c_str()};
    fs::ZipFs files_{archive_, cache_, "memory.zip", false};
};

template <class T>
std::unique_ptr<Stage> Make() {
    return std::make_unique<T>();
}

const bool registered = vfs_contract::Register({
    {"LocalFs",
     Make<LocalStage>,
     {{"ReadingCanMakeTheFile", "a file of the disk is made by those alone who may write"}}},
    {"InMemory", Make<MemoryStage>, {}},
    {"ZipOverFile", Make<ZipOverFileStage>, {}},
    {"ZipOverMemory", Make<ZipOverMemoryStage>, {}},
});

}  // namespace
