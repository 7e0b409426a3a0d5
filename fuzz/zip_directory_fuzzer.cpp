// Opens any bytes as a ZIP, walks its tree and reads every entry; then does so again with the
// signature of an end record written over the place where one would stand, since a mutation seldom
// keeps it. Seeds: fuzz/corpus/zip_directory/, made by make_zip_directory_seeds.py beside it.
//
// It must never crash, and it must end soon: what is read is bounded here, because a few bytes may
// rightly inflate to a thousand times as many.

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "nuo/common/archive/primitives.h"
#include "nuo/common/buffer_archive.h"
#include "velmor/vfs/in_memory_fs.h"
#include "velmor/vfs/vfs_functions.h"
#include "velmor/vfs/zip.h"

namespace {

namespace fs = velmor::fs;

constexpr std::uint64_t most_bytes = 1 << 24;
constexpr std::size_t end_size = 22;

class Walk {
public:
    explicit Walk(fs::ZipFs& files) : files_(files) {}

    void folder(nuo::string_ref path) {
        for (const fs::VfsNode& child : files_.children(path)) {
            const nuo::string full = fs::joinPath(path, child.path);
            if (files_.state(full).state == fs::state_directory)
                folder(full);
            else if (read_ < most_bytes)
                file(full);
        }
    }

private:
    void file(nuo::string_ref path) {
        try {
            const auto archive = files_.create(path, fs::mode_read, fs::open_existing);
            if (archive == nullptr) __builtin_trap();
            nuo::byte chunk[4096];
            while (archive->query_reader()->readable()) {
                const auto* last =
                    nuo::archive::read_some(*archive->query_reader(), {chunk, sizeof chunk});
                read_ += static_cast<std::uint64_t>(last - chunk);
            }
        } catch (const nuo::exception&) {
            read_ += 4096;  // one bad entry says nothing about the next
        }
    }

    fs::ZipFs& files_;
    std::uint64_t read_ = 0;
};

void open(const nuo::buffer<nuo::byte>& bytes) {
    nuo::archive::mem_read_write_archive archive(bytes);
    fs::InMemory cache("cache");
    try {
        fs::ZipFs files(archive, cache, "fuzz.zip", false);
        Walk(files).folder("");
        files.commit();
    } catch (const nuo::exception&) {
        // What is no ZIP raises, and so does what cannot be copied.
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    nuo::buffer<nuo::byte> bytes(data, data + size);
    open(bytes);
    if (size >= end_size) {
        std::memcpy(bytes.end() - end_size, "PK\x05\x06", 4);
        open(bytes);
    }
    return 0;
}
