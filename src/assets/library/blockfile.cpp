#include "assets/library/blockfile.h"

#include "nuo/common/archive/primitives.h"

namespace korvanet::platform::assets {

BlockFile::BlockFile(nuo::archive::archive_ptr archive)
    : archive_(std::move(archive)),
      reader_(nuo::archive::get_reader(archive_.get())),
      writer_(nuo::archive::get_writer(archive_.get())),
      place_(nuo::archive::get_random(archive_.get())) {
    if (reader_ == nullptr || place_ == nullptr)
        NUO_RAISE(bad_datastore, "the archive can't be read");
}

std::uint64_t BlockFile::BlockCount() const {
    const std::uint64_t size = Size();
    return size < sizeof(StoreHeader) ? 0 : (size - sizeof(StoreHeader)) / kBlockSize;
}

std::uint64_t BlockFile::LongestChain() const {
    const std::uint64_t count = BlockCount();
    return count + (BlockOffset(static_cast<std::uint32_t>(count)) < Size() ? 1 : 0);
}

void BlockFile::Resize(std::uint64_t size) {
    if (writer_ == nullptr) NUO_RAISE(bad_datastore, "the store is read-only");
    writer_->truncate(size);
}

std::uint64_t BlockFile::ReadAt(std::uint64_t offset, void* target, std::uint64_t size) const {
    if (offset >= place_->size()) return 0;
    place_->seek(offset);
    const nuo::archive::byte_range range(target, size);
    return static_cast<std::uint64_t>(nuo::archive::read_some(*reader_, range) - range.first);
}

void BlockFile::WriteAt(std::uint64_t offset, const void* source, std::uint64_t size) {
    if (writer_ == nullptr) NUO_RAISE(bad_datastore, "the store is read-only");
    place_->seek(offset);
    nuo::archive::write_all(*writer_, {source, size});
}

bool BlockFile::ReadBlockHeader(std::uint32_t id, BlockHeader& header) const {
    return ReadAt(BlockOffset(id), &header, sizeof header) == sizeof header;
}

BlockChain::BlockChain(BlockFile& file, std::uint32_t first, nuo::string_ref message)
    : file_(file), message_(message), steps_left_(file.LongestChain()) {
    Load(first, kFirstSpan);
    Enter(first);
}

void BlockChain::Load(std::uint32_t id, std::uint32_t blocks) {
    span_first_ = id;
    span_blocks_ = blocks;
    span_bytes_ = file_.ReadAt(BlockOffset(id), span_.data(), std::uint64_t{blocks} * kBlockSize);
    changed_first_ = changed_last_ = 0;
}

void BlockChain::Enter(std::uint32_t id) {
    id_ = id;
    const std::uint64_t position = PositionInSpan();
    // The first test ends a chain that runs in a circle.
    if (steps_left_ == 0 || position + sizeof header_ > span_bytes_)
        NUO_RAISE(bad_datastore, message_);
    --steps_left_;
    std::memcpy(&header_, span_.data() + position, sizeof header_);
}

nuo::archive::const_byte_range BlockChain::Data() const {
    const std::uint64_t first = PositionInSpan() + sizeof(BlockHeader);
    return {span_.data() + first, std::min<std::uint64_t>(kBlockData, span_bytes_ - first)};
}

bool BlockChain::NextIsLoaded() const {
    return header_.next == id_ + 1 && header_.next - span_first_ < span_blocks_;
}

bool BlockChain::Next() {
    if (header_.next == kNoBlock) return false;
    const bool consecutive = header_.next == id_ + 1;
    if (!NextIsLoaded())
        Load(header_.next, consecutive ? std::min(span_blocks_ * 2, kLongestSpan) : kFirstSpan);
    Enter(header_.next);
    return true;
}

void BlockChain::SetData(const void* source, std::uint32_t size) {
    const std::uint64_t first = PositionInSpan() + sizeof(BlockHeader);
    std::memcpy(span_.data() + first, source, size);
    if (changed_first_ == changed_last_) changed_first_ = first;
    changed_last_ = first + size;
    span_bytes_ = std::max(span_bytes_, changed_last_);
}

void BlockChain::WriteBack() {
    if (changed_first_ == changed_last_) return;
    file_.WriteAt(BlockOffset(span_first_) + changed_first_, span_.data() + changed_first_,
                  changed_last_ - changed_first_);
    changed_first_ = changed_last_ = 0;
}

}  // namespace korvanet::platform::assets
