#include "assets/library/datastore.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "nuo/common/archive/primitives.h"
#include "nuo/common/buffer_archive.h"

namespace korvanet::platform::assets {
namespace {

using nuo::archive::get_random;
using nuo::archive::get_reader;

// Chosen: far above what the damage of honest stores makes records share.
constexpr std::uint64_t kMostSharing = 16;
constexpr std::uint64_t kSharedAnyway = (1U << 20) / kBlockData;

nuo::buffer<nuo::byte> BytesOf(nuo::archive::iarchive& source) {
    constexpr std::uint64_t kStep = 64 * 1024;
    nuo::archive::reader* reader = get_reader(source);
    if (reader == nullptr) NUO_RAISE(bad_datastore, "the archive can't be read");
    nuo::buffer<nuo::byte> bytes;
    if (nuo::archive::random* place = get_random(source)) {
        place->seek(0);
        bytes.reserve(place->size());
    }
    while (reader->readable()) {
        const std::uint64_t before = bytes.size();
        bytes.resize(before + kStep);
        const nuo::byte* end = nuo::archive::read_some(*reader, {bytes.data() + before, kStep});
        bytes.resize(static_cast<std::uint64_t>(end - bytes.data()));
    }
    return bytes;
}

bool OneIsMissing(const StoreHeader& header) {
    return (header.first_free == kNoBlock) != (header.last_free == kNoBlock);
}

}  // namespace

DataStore::DataStore(nuo::archive::iarchive& source)
    : file_(nuo::archive::make_archive<nuo::archive::mem_read_write_archive>(BytesOf(source))) {
    OpenFile();
}

DataStore::DataStore(nuo::archive::archive_ptr archive) : file_(std::move(archive)) {
    OpenFile();
}

void DataStore::OpenFile() {
    if (file_.Size() == 0) {
        if (file_.IsWritable()) file_.Resize(sizeof(StoreHeader));
        return;
    }
    StoreHeader header;
    if (file_.ReadAt(0, &header, sizeof header) != sizeof header)
        NUO_RAISE(nuo::archive::read_failed);
    CheckHeader(header);
    if (header.first_free != kNoBlock) ReadFreeChain(header.first_free);
}

void DataStore::CheckHeader(const StoreHeader& header) const {
    if (header.block_size != kBlockSize) NUO_RAISE(bad_datastore, "incorrect block size");
    if (header.version != kStoreVersion) NUO_RAISE(bad_datastore, "unknown datastore version");
    if (OneIsMissing(header))
        NUO_RAISE(bad_datastore, "correpted data: mismatch free block id and last free block id");
    if (header.first_free == kNoBlock) return;
    // Computed in 32 bits, on purpose; the walk of the chain catches what wraps.
    const bool past_end =
        static_cast<std::uint32_t>(BlockOffset(header.first_free)) >= file_.Size();
    if (past_end) NUO_RAISE(bad_datastore, kBadFreeId);
    // The first id once more, on purpose: a last one past the end is not noticed, and never used.
    if (past_end) NUO_RAISE(bad_datastore, "correpted data: incorrect last free block id");
}

void DataStore::ReadFreeChain(std::uint32_t first) {
    std::vector<std::uint32_t> ids;
    BlockChain chain(file_, first, kBadFreeId);
    do {
        ids.push_back(chain.Id());
    } while (chain.Next());
    std::sort(ids.begin(), ids.end());
    for (std::size_t i = 0; i < ids.size();) {
        const std::uint32_t begin = ids[i];
        std::uint32_t end = begin;
        while (i < ids.size() && ids[i] == end) {
            ++i;
            ++end;
        }
        free_.Insert({begin, end});
    }
}

std::uint32_t DataStore::AppendBlocks(std::uint32_t count) {
    // Behind a last block that was cut, which may be a record's still.
    const std::uint64_t first = file_.LongestChain();
    const std::uint64_t grown = BlockOffset(static_cast<std::uint32_t>(first + count));
    if (grown > std::numeric_limits<std::uint32_t>::max())
        NUO_RAISE(bad_datastore, "the store is full");
    file_.Resize(grown);
    return static_cast<std::uint32_t>(first);
}

DataRecord DataStore::Allocate(std::uint32_t size) {
    if (size == 0) NUO_RAISE(bad_datastore, "a record has at least one byte");
    const std::uint32_t count = BlocksFor(size);
    const auto reused = free_.Find(count);
    const std::uint32_t first = reused ? *reused : AppendBlocks(count);
    WriteBlockHeaders(file_, first, count, [&](std::uint32_t i) {
        const std::uint32_t remaining = size - i * kBlockData;
        const bool last = remaining <= kBlockData;
        return BlockHeader{last ? kNoBlock : first + i + 1,
                           static_cast<std::uint16_t>(std::min(remaining, kBlockData)),
                           static_cast<std::uint16_t>(i == 0 ? 1 : 0)};
    });
    if (reused) free_.Take(first, count);
    return Open(first);
}

DataRecord DataStore::Open(std::uint32_t id) {
    BlockHeader header;
    if (!file_.ReadBlockHeader(id, header) || header.head != 1 || header.used > kBlockData)
        NUO_RAISE(bad_datastore, kBadRecordId);
    return DataRecord(*this, id);
}

nuo::buffer<nuo::byte> DataStore::ReadAll(std::uint32_t id, const void* reader) {
    DataRecord record = Open(id);
    CountShared(id, reader);
    nuo::buffer<nuo::byte> bytes;
    bytes.resize(record.Size());
    if (record.Read({bytes.begin(), bytes.end()}) != bytes.end())
        NUO_RAISE(nuo::archive::read_failed);
    return bytes;
}

void DataStore::CountShared(std::uint32_t id, const void* reader) {
    const std::uint64_t blocks = file_.LongestChain();
    if (readers_.size() < blocks) readers_.resize(blocks);
    BlockChain chain(file_, id, kBadRecordId);
    do {
        const void*& first = readers_[chain.Id()];
        if (first == nullptr) first = reader;
        if (first != reader && ++shared_blocks_ > kMostSharing * blocks + kSharedAnyway)
            NUO_RAISE(bad_datastore, "too many records share blocks");
    } while (chain.Next());
}

void DataStore::Free(std::uint32_t id) {
    BlockHeader header;
    while (id != kNoBlock && !IsFree(id) && file_.ReadBlockHeader(id, header)) {
        BlockRun run{id, id + 1};
        BlockHeader following;
        while (header.next == run.end && !IsFree(run.end) &&
               file_.ReadBlockHeader(run.end, following)) {
            header = following;
            ++run.end;
        }
        // A run goes in before the chain leads elsewhere, so that a circle meets its own blocks.
        free_.Insert(run);
        id = header.next;
    }
}

bool DataStore::AreApart(const std::vector<std::uint32_t>& ids) const {
    std::vector<bool> taken(file_.LongestChain());
    const auto take = [&taken](std::uint32_t id) {
        const bool untaken = id < taken.size() && !taken[id];
        if (untaken) taken[id] = true;
        return untaken;
    };
    for (const BlockRun& run : free_.Runs())
        for (std::uint32_t id = run.first; id != run.end; ++id)
            take(id);
    BlockHeader header;
    for (std::uint32_t id : ids) {
        for (; id != kNoBlock; id = header.next)
            if (!take(id) || !file_.ReadBlockHeader(id, header)) return false;
    }
    return true;
}

void DataStore::WriteFreeRun(BlockRun run, std::uint32_t following) {
    WriteBlockHeaders(file_, run.first, run.Count(), [&](std::uint32_t i) {
        const std::uint32_t next = run.first + i + 1;
        return BlockHeader{next == run.end ? following : next, 0, 0};
    });
}

void DataStore::Flush() {
    if (!file_.IsWritable()) return;
    StoreHeader header{kBlockSize, kNoBlock, kNoBlock, kStoreVersion};
    if (!free_.IsEmpty()) {
        header.first_free = free_.Runs().begin()->first;
        header.last_free = free_.Runs().rbegin()->end - 1;
    }
    std::uint32_t following = kNoBlock;
    for (auto run = free_.Runs().rbegin(); run != free_.Runs().rend(); ++run) {
        WriteFreeRun(*run, following);
        following = run->first;
    }
    file_.WriteAt(0, &header, sizeof header);
}

}  // namespace korvanet::platform::assets
