#pragma once

#include <cstdint>
#include <vector>

#include "assets/library/blockfile.h"
#include "assets/library/blockruns.h"
#include "assets/library/datarecord.h"
#include "nuo/common/buffer.h"
#include "nuo/common/iarchive.h"

namespace korvanet::platform::assets {

// A record file: byte records of any length in blocks of 128 bytes, each with a 32-bit id, in one
// archive. Freed blocks are used again; the file never shrinks. See datastoreformat.h for the
// bytes.
//
//   (Allocate | Open | Free | IsFree)* Flush
//
// Nothing is flushed by the destructor: without Flush the list of free blocks is lost, and a store
// that began empty has no header. A failure of an operation leaves the free blocks as they were.
//
// Both constructors raise bad_datastore for a file that is no block store, and read_failed for one
// that ends within the header.
class DataStore {
public:
    // Works on a copy of the source in memory.
    explicit DataStore(nuo::archive::iarchive& source);
    // Takes the archive over. Without a writer the store is read-only; an empty read-only archive
    // is an empty store.
    explicit DataStore(nuo::archive::archive_ptr archive);
    DataStore(const DataStore&) = delete;
    DataStore& operator=(const DataStore&) = delete;

    // A new record of `size` bytes, whose content is not set. Raises bad_datastore for a size of 0,
    // for a store that would pass 4 GiB, and for a read-only store.
    DataRecord Allocate(std::uint32_t size);
    // Raises bad_datastore when no record begins at the block.
    DataRecord Open(std::uint32_t id);
    // All bytes of a record; read_failed where the file ends within its last block. `reader` stands
    // for whom they are read for. In a damaged store any number of these may share a block: what is
    // read of blocks that were read for another one before is limited to 16 times the store and a
    // mebibyte, bad_datastore beyond, so that a small file cannot fill the memory.
    nuo::buffer<nuo::byte> ReadAll(std::uint32_t id, const void* reader);
    // Gives the blocks of a record back. Until Flush they can still be opened. A damaged chain is
    // followed up to the first block that is free already or past the end.
    void Free(std::uint32_t id);
    bool IsFree(std::uint32_t id) const { return free_.Contains(id); }
    // Has each of these records blocks of its own, none of them free? False also for a damaged
    // chain.
    bool AreApart(const std::vector<std::uint32_t>& ids) const;
    // Writes the free chain and the header; nothing on a read-only store.
    void Flush();

    const BlockRuns& FreeBlocks() const { return free_; }
    std::uint64_t BlockCount() const { return file_.BlockCount(); }
    // The archive that holds the file, complete after Flush.
    nuo::archive::iarchive& Archive() const { return file_.Archive(); }

private:
    friend class DataRecord;

    void OpenFile();
    void CountShared(std::uint32_t id, const void* reader);
    void CheckHeader(const StoreHeader& header) const;
    void ReadFreeChain(std::uint32_t first);
    std::uint32_t AppendBlocks(std::uint32_t count);
    void WriteFreeRun(BlockRun run, std::uint32_t following);

    BlockFile file_;
    BlockRuns free_;
    // Of each block whom it was read for first.
    std::vector<const void*> readers_;
    std::uint64_t shared_blocks_ = 0;
};

}  // namespace korvanet::platform::assets
