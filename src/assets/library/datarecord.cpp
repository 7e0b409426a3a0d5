#include "assets/library/datarecord.h"

#include <algorithm>
#include <cstring>

#include "assets/library/blockfile.h"
#include "assets/library/datastore.h"

namespace korvanet::platform::assets {

std::uint32_t DataRecord::Size() {
    if (size_ != kUnknownSize) return size_;
    std::uint64_t size = 0;
    BlockChain chain(store_->file_, id_, kBadRecordId);
    do {
        if (chain.Header().used > kBlockData) NUO_RAISE(bad_datastore, kBadRecordId);
        size += chain.Header().used;
    } while (chain.Next());
    if (size >= kUnknownSize) NUO_RAISE(bad_datastore, kBadRecordId);
    return size_ = static_cast<std::uint32_t>(size);
}

nuo::byte* DataRecord::Read(nuo::archive::byte_range range) {
    std::uint64_t remaining = std::min<std::uint64_t>(Size(), range.size());
    nuo::byte* at = range.first;
    if (remaining == 0) return at;
    BlockChain chain(store_->file_, id_, kBadRecordId);
    do {
        const std::uint64_t wanted = std::min<std::uint64_t>(remaining, kBlockData);
        const auto data = chain.Data();
        const std::uint64_t there = std::min(wanted, data.size());
        std::memcpy(at, data.first, there);
        at += there;
        remaining -= there;
        if (there < wanted) break;  // the file ends within the block
    } while (remaining != 0 && chain.Next());
    return at;
}

void DataRecord::Write(nuo::archive::const_byte_range range) {
    if (range.size() != Size()) NUO_RAISE(bad_datastore, "incorrect record size");
    const nuo::byte* at = range.first;
    if (range.empty()) return;
    BlockChain chain(store_->file_, id_, kBadRecordId);
    for (;;) {
        const auto size = static_cast<std::uint32_t>(
            std::min<std::uint64_t>(static_cast<std::uint64_t>(range.last - at), kBlockData));
        chain.SetData(at, size);
        at += size;
        const bool done = at == range.last;
        if (done || !chain.NextIsLoaded()) chain.WriteBack();
        if (done || !chain.Next()) return;
    }
}

}  // namespace korvanet::platform::assets
