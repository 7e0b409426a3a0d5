#pragma once

#include <cstdint>
#include <memory>

#include "velmor/vfs/file_tree.h"
#include "velmor/vfs/vfs.h"

namespace velmor::fs {

/// One entry of a ZIP, in memory.
struct file_header {
    /// The `time` and `date` of an entry that takes those of the next commit.
    static constexpr std::uint16_t time_not_set = 0xFFFF;
    /// The offsets of an entry that is not in the ZIP yet.
    static constexpr std::uint32_t no_offset = 0xFFFFFFFF;

    std::uint16_t flags = 0;
    std::uint16_t method = 0;
    std::uint16_t time = time_not_set;
    std::uint16_t date = time_not_set;
    std::uint32_t crc32 = 0;  // of the uncompressed data
    std::uint32_t compressedSize = 0;
    std::uint32_t uncompressedSize = 0;
    std::uint32_t headerOffset = no_offset;
    std::uint32_t dataOffset = no_offset;
    nuo::string name;  // as the ZIP has it, or the normalized path of a new entry
    int state = state_file;
    nuo::archive::iarchive* source = nullptr;  // where dataOffset points into; not owned
    bool fetched = false;                      // the data stands in the cached file
    bool dirty = false;                        // the cached file is newer than the source
    IVfs* cache = nullptr;                     // not owned
    std::uint32_t id = 0;                      // the order in the ZIP

    bool hasSourceData() const noexcept {
        return source != nullptr && dataOffset != no_offset && compressedSize != 0;
    }
    /// What every change of the data does.
    void touch() noexcept {
        dirty = true;
        time = time_not_set;
    }
};

/// Shared with the archives that were opened on the entry, which may outlive its removal.
using file_header_ptr = std::shared_ptr<file_header>;

/// Folders that no entry stands for have a node without a header.
using ZipTree = private_::file_tree<file_header_ptr>;

}  // namespace velmor::fs
