#include "assets/serialization/io/streamarchive.h"

#include <algorithm>
#include <limits>

#include "nuo/common/file_archive.h"

namespace korvanet::platform::assets {
namespace {

using core::SeekOrigin;

// A stream counts its offsets in signed numbers.
constexpr std::uint64_t kFarthest = std::numeric_limits<std::int64_t>::max();

template <class Stream>
Stream* OpenStream(Stream& stream) {
    if (!stream.IsOpen()) {
        NUO_RAISE(stream_open_failed, "stream can not open!!");
    }
    return &stream;
}

// For destructors, which have nobody to tell what a host's stream raises.
template <class Stream>
void CloseQuietly(Stream& stream) noexcept {
    try {
        stream.Close();
    } catch (...) {  // the archive is gone, whatever became of the stream
    }
}

template <class Stream>
std::uint64_t SizeOf(Stream& stream) {
    const std::uint64_t size = stream.Seek(0, SeekOrigin::kEnd);
    stream.Seek(0, SeekOrigin::kBegin);
    return size;
}

template <class Stream>
std::uint64_t SeekTo(Stream& stream, std::uint64_t position) {
    const std::uint64_t target = std::min(position, kFarthest);
    stream.Seek(static_cast<std::int64_t>(target), SeekOrigin::kBegin);
    return target;
}

template <class Stream>
nuo::byte* ReadRange(Stream& stream, nuo::archive::byte_range range, std::uint64_t& position,
                     std::uint64_t& size) {
    if (range.empty()) {
        return range.first;
    }
    const std::uint64_t count = std::min(stream.Read(range.first, range.size()), range.size());
    position += count;
    if (count == 0) {
        size = std::min(size, position);
    }
    return range.first + count;
}

template <class Stream>
const nuo::byte* WriteRange(Stream& stream, nuo::archive::const_byte_range range,
                            std::uint64_t& position, std::uint64_t& size) {
    // A host's stream is not troubled with nothing, which may come with a null address.
    if (range.empty()) {
        return range.last;
    }
    const std::uint64_t count = std::min(stream.Write(range.first, range.size()), range.size());
    position += count;
    size = std::max(size, position);
    if (count != range.size()) {
        NUO_RAISE(nuo::archive::archive_append_failed);
    }
    return range.last;
}

}  // namespace

ReadStreamArchive::ReadStreamArchive(core::IDataReadStream& stream)
    : stream_(OpenStream(stream)), size_(SizeOf(stream)) {}

ReadStreamArchive::~ReadStreamArchive() {
    CloseQuietly(*stream_);
}

nuo::byte* ReadStreamArchive::read(nuo::archive::byte_range range) {
    return ReadRange(*stream_, range, position_, size_);
}

std::uint64_t ReadStreamArchive::seek(std::uint64_t position) {
    return position_ = SeekTo(*stream_, std::min(position, size_));
}

WriteStreamArchive::WriteStreamArchive(core::IDataWriteStream& stream)
    : stream_(OpenStream(stream)) {}

WriteStreamArchive::~WriteStreamArchive() {
    CloseQuietly(*stream_);
}

const nuo::byte* WriteStreamArchive::write(nuo::archive::const_byte_range range) {
    return WriteRange(*stream_, range, position_, size_);
}

std::uint64_t WriteStreamArchive::seek(std::uint64_t position) {
    return position_ = SeekTo(*stream_, position);
}

ReadWriteStreamArchive::ReadWriteStreamArchive(core::IDataStream& stream)
    : stream_(OpenStream(stream)), size_(SizeOf(stream)) {}

ReadWriteStreamArchive::~ReadWriteStreamArchive() {
    CloseQuietly(*stream_);
}

nuo::byte* ReadWriteStreamArchive::read(nuo::archive::byte_range range) {
    return ReadRange(*stream_, range, position_, size_);
}

const nuo::byte* ReadWriteStreamArchive::write(nuo::archive::const_byte_range range) {
    return WriteRange(*stream_, range, position_, size_);
}

std::uint64_t ReadWriteStreamArchive::truncate(std::uint64_t size) {
    const std::uint64_t target = SeekTo(*stream_, size);
    if (stream_->TruncateHere()) {
        size_ = target;
    }
    position_ = SeekTo(*stream_, std::min(position_, size_));
    return size_;
}

void ReadWriteStreamArchive::sync() {
    stream_->Flush();
}

std::uint64_t ReadWriteStreamArchive::seek(std::uint64_t position) {
    return position_ = SeekTo(*stream_, position);
}

}  // namespace korvanet::platform::assets
