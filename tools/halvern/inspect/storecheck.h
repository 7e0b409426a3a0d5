#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "assets/library/blockfile.h"
#include "inspect/findings.h"
#include "inspect/packageparts.h"

namespace halvern::inspect {

// One block store, and to which record each of its blocks belongs; see docs/formats/block_store.md.
//
//     StoreCheck store(...); store.TakeRecord(...)*; store.FindLostBlocks();
class StoreCheck {
public:
    // Checks the header and the free chain.
    StoreCheck(PackageParts& parts, std::string path, Findings& findings);

    const std::string& Path() const { return path_; }
    // False when there is no store to take records from.
    bool IsReadable() const { return file_ != nullptr; }

    // The bytes of the record that begins at a block; nothing, with a finding, when its chain is
    // damaged or meets a block of another record.
    std::optional<Bytes> TakeRecord(std::uint32_t first, const std::string& identifier);
    // Takes the blocks of a record that readers pass over, so that they are not found lost. Without
    // a number nobody knows them, and no block is found lost at all.
    void SetAside(std::uint32_t first);
    // Every byte of the file belongs to a record or to the free chain. Says nothing when something
    // else was found in the store, since blocks behind a damaged place look lost.
    void FindLostBlocks();

private:
    bool CheckHeader();
    bool CheckFreeIds(const korvanet::platform::assets::StoreHeader& header);
    bool WalkFreeChain(const korvanet::platform::assets::StoreHeader& header);
    bool CheckFreeBlock(std::uint32_t id, const korvanet::platform::assets::BlockHeader& block);
    void Close(std::uint64_t offset, const std::string& what);
    void Add(const char* rule, const std::string& where, const std::string& what);
    std::string OwnerOf(std::uint32_t id) const;
    std::optional<std::string> RefuseBlock(std::uint32_t id, bool is_first,
                                           korvanet::platform::assets::BlockHeader& block) const;
    void AppendData(std::uint32_t id, std::uint32_t used, Bytes& bytes) const;

    std::string path_;
    Findings& findings_;
    std::unique_ptr<korvanet::platform::assets::BlockFile> file_;
    // By block: nobody, the free chain, or two more than an index in `records_`.
    std::vector<std::uint32_t> owners_;
    std::vector<std::string> records_;
    bool knows_all_ = true;
};

}  // namespace halvern::inspect
