#include "assets/serialization/io/archivestream.h"

#include <algorithm>
#include <limits>

#include "nuo/common/archive/primitives.h"

namespace korvanet::platform::assets::detail {
namespace {

using core::SeekOrigin;

constexpr std::uint64_t kFarthest = std::numeric_limits<std::int64_t>::max();

// `base` moved by `offset`, held at the start and at what an offset can tell.
std::uint64_t Moved(std::uint64_t base, std::int64_t offset) {
    if (offset < 0) {
        const std::uint64_t back = std::uint64_t{0} - static_cast<std::uint64_t>(offset);
        return back > base ? 0 : base - back;
    }
    const auto ahead = static_cast<std::uint64_t>(offset);
    return base > kFarthest - ahead ? kFarthest : base + ahead;
}

}  // namespace

ArchiveCursor::ArchiveCursor(nuo::archive::iarchive* archive)
    : reader_(nuo::archive::get_reader(archive)),
      writer_(nuo::archive::get_writer(archive)),
      position_(nuo::archive::get_random(archive)) {}

bool ArchiveCursor::CanRead() const {
    return reader_ != nullptr && reader_->readable();
}

bool ArchiveCursor::CanWrite() const {
    return writer_ != nullptr && writer_->writable();
}

std::uint64_t ArchiveCursor::Read(void* buffer, std::uint64_t length) const {
    if (reader_ == nullptr || length == 0) {
        return 0;
    }
    const nuo::archive::byte_range range(buffer, length);
    return static_cast<std::uint64_t>(reader_->read(range) - range.first);
}

bool ArchiveCursor::ReadExact(void* buffer, std::uint64_t length) const {
    if (length == 0) {
        return true;
    }
    const nuo::archive::byte_range range(buffer, length);
    return reader_ != nullptr && nuo::archive::read_some(*reader_, range) == range.last;
}

std::uint64_t ArchiveCursor::Write(const void* buffer, std::uint64_t length) const {
    if (writer_ == nullptr || length == 0) {
        return 0;
    }
    nuo::archive::write_all(*writer_, {buffer, length});
    return length;
}

std::uint64_t ArchiveCursor::Target(std::int64_t offset, SeekOrigin origin) const {
    switch (origin) {
        case SeekOrigin::kBegin:
            return Moved(0, offset);
        case SeekOrigin::kCurrent:
            return Moved(position_->offset(), offset);
        case SeekOrigin::kEnd:
            return Moved(position_->size(), offset);
    }
    // A host may pass any number for an origin; nothing moves then.
    return position_->offset();
}

std::uint64_t ArchiveCursor::SeekWithin(std::int64_t offset, SeekOrigin origin) const {
    if (position_ == nullptr) {
        return 0;
    }
    return position_->seek(std::min(Target(offset, origin), position_->size()));
}

std::uint64_t ArchiveCursor::SeekAnywhere(std::int64_t offset, SeekOrigin origin) const {
    return position_ == nullptr ? 0 : position_->seek(Target(offset, origin));
}

bool ArchiveCursor::TruncateHere() const {
    if (writer_ == nullptr || position_ == nullptr) {
        return false;
    }
    const std::uint64_t here = position_->offset();
    return writer_->truncate(here) == here;
}

}  // namespace korvanet::platform::assets::detail
