#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "assets/library/datastoreformat.h"
#include "nuo/common/exception.h"
#include "nuo/common/iarchive.h"

namespace korvanet::platform::assets {

// A block store that can't be read as one, or a use of it that can't be served. Nothing else is
// raised by the store itself; the archive below raises its own.
NUO_DECLARE_EXCEPTION(bad_datastore);

// The archive of a store, addressed by block. Owns the archive.
class BlockFile {
public:
    // Raises bad_datastore when the archive can't be read at any position.
    explicit BlockFile(nuo::archive::archive_ptr archive);

    nuo::archive::iarchive& Archive() const { return *archive_; }
    bool IsWritable() const { return writer_ != nullptr; }
    std::uint64_t Size() const { return place_->size(); }
    // Whole blocks behind the header.
    std::uint64_t BlockCount() const;
    // No chain is longer: all blocks, and a last one that was cut.
    std::uint64_t LongestChain() const;
    // Raises bad_datastore without a writer.
    void Resize(std::uint64_t size);

    // Returns how many bytes there were.
    std::uint64_t ReadAt(std::uint64_t offset, void* target, std::uint64_t size) const;
    void WriteAt(std::uint64_t offset, const void* source, std::uint64_t size);
    // False when the file ends before or within the header.
    bool ReadBlockHeader(std::uint32_t id, BlockHeader& header) const;

private:
    nuo::archive::archive_ptr archive_;
    nuo::archive::reader* reader_;
    nuo::archive::writer* writer_;
    nuo::archive::random* place_;
};

// Follows a chain of blocks. Blocks that lie one behind the other are read in one go, and written
// in one go; `next` alone decides where the chain leads.
//
//   BlockChain chain(file, first, kBadRecordId);
//   do { chain.Header() ... chain.Data() ... } while (chain.Next());
//
// A chain that leaves the file, or has more blocks than the file, raises bad_datastore with the
// given message, which outlives the chain.
class BlockChain {
public:
    BlockChain(BlockFile& file, std::uint32_t first, nuo::string_ref message);
    BlockChain(const BlockChain&) = delete;
    BlockChain& operator=(const BlockChain&) = delete;

    std::uint32_t Id() const { return id_; }
    const BlockHeader& Header() const { return header_; }
    // The bytes of the block that the file has: 128 of them, but for a last block that was cut.
    nuo::archive::const_byte_range Data() const;
    // False at the end of the chain.
    bool Next();

    // Puts `size` bytes into the block; they reach the file with the next WriteBack.
    void SetData(const void* source, std::uint32_t size);
    // To be called before `Next` leads away from blocks that were changed, and at the end.
    bool NextIsLoaded() const;
    void WriteBack();

private:
    static constexpr std::uint32_t kFirstSpan = 8;
    static constexpr std::uint32_t kLongestSpan = 64;

    void Load(std::uint32_t id, std::uint32_t blocks);
    void Enter(std::uint32_t id);
    std::uint64_t PositionInSpan() const { return std::uint64_t{id_ - span_first_} * kBlockSize; }

    BlockFile& file_;
    nuo::string_ref message_;
    std::uint64_t steps_left_;
    std::uint32_t id_;
    BlockHeader header_;
    std::uint32_t span_first_ = 0;
    std::uint32_t span_blocks_ = 0;
    std::uint64_t span_bytes_ = 0;
    std::uint64_t changed_first_ = 0;
    std::uint64_t changed_last_ = 0;
    std::array<nuo::byte, kLongestSpan * kBlockSize> span_;
};

// Writes headers over `count` consecutive blocks and leaves their data as it is. `make(i)` gives
// the header of block `first + i`.
template <class Make>
void WriteBlockHeaders(BlockFile& file, std::uint32_t first, std::uint32_t count, Make make) {
    constexpr std::uint32_t kSpan = 64;
    std::array<nuo::byte, kSpan * kBlockSize> span{};
    for (std::uint32_t done = 0; done < count; done += kSpan) {
        const std::uint32_t blocks = std::min(kSpan, count - done);
        const std::uint64_t offset = BlockOffset(first + done);
        const std::uint64_t there =
            file.ReadAt(offset, span.data(), std::uint64_t{blocks} * kBlockSize);
        for (std::uint32_t i = 0; i < blocks; ++i) {
            const BlockHeader header = make(done + i);
            std::memcpy(span.data() + i * kBlockSize, &header, sizeof header);
        }
        // The file may end within the data of the last block, but not within its header.
        file.WriteAt(offset, span.data(), there);
    }
}

}  // namespace korvanet::platform::assets
