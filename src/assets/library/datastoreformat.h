#pragma once

#include <cstdint>

#include "nuo/common/string_ref.h"

// A block store, little-endian and unsigned, as docs/formats/block_store.md tells it.
//
//   store  = header block*
//   header = size:uint32(136) first_free:uint32 last_free:uint32 version:uint32(0)
//   block  = next:uint32 used:uint16 head:uint16 data:byte{128}        block ID at 16 + 136 * ID
//
//   next   is the following block of the record or of the free chain, NONE at the end
//   used   1..128 in a record, 0 in a free block
//   head   1 in the first block of a record, else 0

namespace korvanet::platform::assets {

struct StoreHeader {
    std::uint32_t block_size;
    std::uint32_t first_free;
    std::uint32_t last_free;
    std::uint32_t version;
};
static_assert(sizeof(StoreHeader) == 16);

struct BlockHeader {
    std::uint32_t next;
    std::uint16_t used;
    std::uint16_t head;
};
static_assert(sizeof(BlockHeader) == 8);

inline constexpr std::uint32_t kNoBlock = 0xFFFFFFFF;
inline constexpr std::uint32_t kStoreVersion = 0;
inline constexpr std::uint32_t kBlockData = 128;
inline constexpr std::uint32_t kBlockSize = sizeof(BlockHeader) + kBlockData;
static_assert(kBlockSize == 136);

constexpr std::uint64_t BlockOffset(std::uint32_t id) {
    return sizeof(StoreHeader) + std::uint64_t{kBlockSize} * id;
}

constexpr std::uint32_t BlocksFor(std::uint32_t size) {
    return (size - 1) / kBlockData + 1;
}

// The misspelling is kept on purpose, here and in the store's own messages: programs know it.
inline constexpr nuo::string_ref kBadFreeId = "correpted data: incorrect free block id";
inline constexpr nuo::string_ref kBadRecordId =
    "incorrect record id. may data corrupted or internal error";

}  // namespace korvanet::platform::assets
