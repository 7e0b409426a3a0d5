#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "velmor/vfs/in_memory_fs.h"
#include "velmor/vfs/zip.h"
#include "vfs/support.h"
#include "vfs/zip_bytes.h"

namespace vfs_tests {

// A ZIP over memory, with its cache.
class ZipTest : public testing::Test {
protected:
    // Opens these bytes; what an earlier call opened is closed before.
    fs::ZipFs& Open(std::string_view bytes, bool commitOnClose = false) {
        Close();
        archive_ = std::make_unique<nuo::archive::mem_read_write_archive>(Buffer(bytes));
        zip_ = std::make_unique<fs::ZipFs>(*archive_, cache_, "test.zip", commitOnClose);
        return *zip_;
    }
    // Opens again what stands in the archive, with a cache of its own.
    fs::ZipFs& Reopen() {
        zip_.reset();
        secondCache_ = std::make_unique<fs::InMemory>("second cache");
        zip_ = std::make_unique<fs::ZipFs>(*archive_, *secondCache_, "test.zip", false);
        return *zip_;
    }
    void Close() { zip_.reset(); }
    std::string Content() { return Bytes(*archive_); }

    // The text behind the position of the failure that opening these bytes raises.
    template <class Marker>
    std::string OpeningRaises(std::string_view bytes) {
        return RaisedText<Marker>([&] { Open(bytes); });
    }

    fs::InMemory cache_{"cache"};
    std::unique_ptr<fs::InMemory> secondCache_;
    std::unique_ptr<nuo::archive::mem_read_write_archive> archive_;
    std::unique_ptr<fs::ZipFs> zip_;
};

// The same bytes for reading alone.
class ReadOnlyArchive : private nuo::buffer<nuo::byte>, public nuo::archive::buffer_in {
public:
    explicit ReadOnlyArchive(std::string_view bytes)
        : nuo::buffer<nuo::byte>(Buffer(bytes)),
          buffer_in(static_cast<const nuo::buffer<nuo::byte>&>(*this)) {}
};

}  // namespace vfs_tests
