#pragma once

#include <cstdint>

#include "nuo/common/iarchive.h"

namespace korvanet::platform::assets {

class DataStore;

// One record of a store: a small value that its caller holds. It must not outlive the store, nor
// the freeing of the record. Every walk over a damaged chain raises bad_datastore.
class DataRecord {
public:
    DataRecord(DataStore& store, std::uint32_t id) : store_(&store), id_(id) {}

    // The id of the first block, by which DataStore::Open finds the record again.
    std::uint32_t Id() const { return id_; }
    // In bytes; walks the chain once.
    std::uint32_t Size();
    // Reads from the start and returns the end of the filled part.
    nuo::byte* Read(nuo::archive::byte_range range);
    // Replaces all bytes: the range is as long as the record, else bad_datastore.
    void Write(nuo::archive::const_byte_range range);

private:
    static constexpr std::uint32_t kUnknownSize = 0xFFFFFFFF;

    DataStore* store_;
    std::uint32_t id_;
    std::uint32_t size_ = kUnknownSize;
};

}  // namespace korvanet::platform::assets
