#include "inspect/storecheck.h"

#include "assets/library/datastoreformat.h"

namespace halvern::inspect {

using namespace korvanet::platform::assets;

namespace {

constexpr std::uint32_t kNobody = 0;
constexpr std::uint32_t kFree = 1;
constexpr std::uint32_t kFirstRecord = 2;

std::string AtBlock(std::uint32_t id) {
    return "block " + std::to_string(id) + ", " + AtOffset(BlockOffset(id));
}

}  // namespace

StoreCheck::StoreCheck(PackageParts& parts, std::string path, Findings& findings)
    : path_(std::move(path)), findings_(findings) {
    if (!parts.IsFile(path_)) {
        findings_.AddClosing({"store.missing", path_, "", "the block store is missing"});
        return;
    }
    nuo::archive::archive_ptr part = parts.Open(path_);
    if (!part) return;
    file_ = std::make_unique<BlockFile>(std::move(part));
    owners_.resize(file_->LongestChain(), kNobody);
    if (file_->Size() != 0 && !CheckHeader()) file_.reset();
}

void StoreCheck::Close(std::uint64_t offset, const std::string& what) {
    findings_.AddClosing({"store.header", path_, AtOffset(offset), what});
}

void StoreCheck::Add(const char* rule, const std::string& where, const std::string& what) {
    findings_.Add({rule, path_, where, what});
}

bool StoreCheck::CheckHeader() {
    StoreHeader header{};
    if (file_->ReadAt(0, &header, sizeof header) != sizeof header) {
        Close(0, "the block store ends within its header");
        return false;
    }
    if (header.block_size != kBlockSize) {
        Close(0, "the block size is " + std::to_string(header.block_size) + " in place of 136");
        return false;
    }
    if (header.version != kStoreVersion) {
        Close(12, "the block store is of version " + std::to_string(header.version) +
                      ", which cannot be read");
        return false;
    }
    if (const std::uint64_t rest = (file_->Size() - sizeof header) % kBlockSize)
        Add("store.size", AtOffset(file_->Size() - rest),
            "the last block has " + std::to_string(rest) + " of its 136 bytes");
    return CheckFreeIds(header) && WalkFreeChain(header);
}

bool StoreCheck::CheckFreeIds(const StoreHeader& header) {
    if ((header.first_free == kNoBlock) != (header.last_free == kNoBlock)) {
        Close(4, header.first_free == kNoBlock ? "there is a last free block and no first one"
                                               : "there is a first free block and no last one");
        return false;
    }
    if (header.first_free != kNoBlock && header.first_free >= owners_.size()) {
        Close(4,
              "the first free block " + std::to_string(header.first_free) + " lies past the end");
        return false;
    }
    return true;
}

bool StoreCheck::CheckFreeBlock(std::uint32_t id, const BlockHeader& block) {
    if (block.used != 0 || block.head != 0)
        Add("store.free", AtBlock(id), "a free block says that it belongs to a record");
    if (block.next == kNoBlock) return true;
    if (block.next < owners_.size() && owners_[block.next] == kNobody) return true;
    findings_.AddClosing({"store.free", path_, AtBlock(id),
                          block.next < owners_.size()
                              ? "the chain of free blocks runs in a circle"
                              : "the chain of free blocks leaves the file"});
    return false;
}

bool StoreCheck::WalkFreeChain(const StoreHeader& header) {
    std::uint32_t last = kNoBlock;
    for (std::uint32_t id = header.first_free; id != kNoBlock;) {
        BlockHeader block{};
        file_->ReadBlockHeader(id, block);
        owners_[id] = kFree;
        if (!CheckFreeBlock(id, block)) return false;
        last = id;
        id = block.next;
    }
    if (header.last_free == last) return true;
    Add("store.free", AtOffset(8),
        header.last_free >= owners_.size()
            ? "the last free block " + std::to_string(header.last_free) + " lies past the end"
            : "the last free block is told to be " + std::to_string(header.last_free) +
                  ", and the chain ends with " + std::to_string(last));
    return true;
}

std::string StoreCheck::OwnerOf(std::uint32_t id) const {
    return owners_[id] == kFree ? "the chain of free blocks"
                                : "the record of " + records_[owners_[id] - kFirstRecord];
}

// Why a block cannot be the next of a record; nothing when it can.
std::optional<std::string> StoreCheck::RefuseBlock(std::uint32_t id, bool is_first,
                                                   BlockHeader& block) const {
    if (id >= owners_.size())
        return is_first ? "the record would begin past the end" : "the record leaves the file";
    if (owners_[id] == kFirstRecord + records_.size() - 1) return "the record runs in a circle";
    if (owners_[id] != kNobody) return "the block is also in " + OwnerOf(id);
    file_->ReadBlockHeader(id, block);
    if (block.head != (is_first ? 1 : 0))
        return is_first ? "no record begins at the block" : "another record begins at the block";
    if (block.used == 0 || block.used > kBlockData)
        return "the block tells of " + std::to_string(block.used) + " bytes";
    return std::nullopt;
}

void StoreCheck::AppendData(std::uint32_t id, std::uint32_t used, Bytes& bytes) const {
    nuo::byte data[kBlockData];
    const std::uint64_t there = file_->ReadAt(BlockOffset(id) + sizeof(BlockHeader), data, used);
    bytes.append(data, data + there);
}

std::optional<Bytes> StoreCheck::TakeRecord(std::uint32_t first, const std::string& identifier) {
    records_.push_back(identifier);
    Bytes bytes;
    for (std::uint32_t id = first;;) {
        BlockHeader block{};
        if (const auto why = RefuseBlock(id, id == first && bytes.empty(), block)) {
            Add("store.chain", "record " + identifier + ", " + AtBlock(id), *why);
            return std::nullopt;
        }
        owners_[id] = static_cast<std::uint32_t>(kFirstRecord + records_.size() - 1);
        AppendData(id, block.used, bytes);
        if (block.next == kNoBlock) return bytes;
        id = block.next;
    }
}

void StoreCheck::SetAside(std::uint32_t first) {
    if (first == kNoBlock) knows_all_ = false;
    records_.push_back("an entry that is passed over");
    BlockHeader block{};
    for (std::uint32_t id = first; id < owners_.size() && owners_[id] == kNobody; id = block.next) {
        file_->ReadBlockHeader(id, block);
        if (block.head != (id == first ? 1 : 0)) return;
        owners_[id] = static_cast<std::uint32_t>(kFirstRecord + records_.size() - 1);
    }
}

void StoreCheck::FindLostBlocks() {
    if (!IsReadable() || !knows_all_ || findings_.Has(path_)) return;
    for (std::uint32_t id = 0; id < owners_.size();) {
        if (owners_[id] != kNobody) {
            ++id;
            continue;
        }
        const std::uint32_t first = id;
        while (id < owners_.size() && owners_[id] == kNobody)
            ++id;
        const std::string range = id - first == 1 ? ""
                                                  : "blocks " + std::to_string(first) + " to " +
                                                        std::to_string(id - 1) + ", ";
        Add("store.lost", range.empty() ? AtBlock(first) : range + AtOffset(BlockOffset(first)),
            "space that is neither in a record nor free");
    }
}

}  // namespace halvern::inspect
