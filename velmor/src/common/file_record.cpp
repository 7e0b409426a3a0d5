#include "file_record.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <boost/numeric/conversion/cast.hpp>
#include <cerrno>
#include <limits>

#include "file_view.h"
#include "nuo/common/file_archive.h"
#include "nuo/common/fsutility.h"

namespace nuo::archive {
namespace {

constexpr std::uint64_t longest_file = std::numeric_limits<off_t>::max();

/// pread and pwrite until all is done; a result short of `size` is the end of the file, a negative
/// one a failure.
template <class Byte, class Call>
ssize_t transfer(Call call, int file, Byte* bytes, std::uint64_t size, std::uint64_t offset) {
    std::uint64_t done = 0;
    while (done < size) {
        const ssize_t count =
            call(file, bytes + done, size - done, static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return -1;
        if (count == 0) break;
        done += static_cast<std::uint64_t>(count);
    }
    return static_cast<ssize_t>(done);
}

bool length_of(int file, std::uint64_t& size) {
    struct stat found;
    if (::fstat(file, &found) != 0) return false;
    size = static_cast<std::uint64_t>(found.st_size);
    return true;
}

}  // namespace

file_record::file_record(string_ref path, access mode, std::uint32_t flag)
    : path_(path), mode_(mode) {
    create_if_asked(flag);
    open();
    if (!length_of(file_, size_)) {
        ::close(file_);
        NUO_RAISE(archive_stat_file_failed);
    }
}

file_record::~file_record() {
    ::close(file_);
}

void file_record::create_if_asked(std::uint32_t flag) const {
    const auto found = fsutility::stat_file(path_);
    if (found && flag == create_new) NUO_RAISE(archive_create_file_failed);
    // A pipe would block when it is opened, and a folder has no bytes.
    if (found && !found->is_regular) NUO_RAISE(archive_open_file_failed);
    if (found) return;
    if (flag == open_existing) NUO_RAISE(archive_open_file_failed);
    if (!fsutility::create_file(path_, flag == create_new)) NUO_RAISE(archive_create_file_failed);
}

void file_record::open() {
    file_ = fsutility::open_file(path_, mode_ == access::read ? O_RDONLY : O_RDWR);
    if (file_ < 0) NUO_RAISE(archive_open_file_failed);
}

byte* file_record::read(byte_range range) {
    if (range.empty() || position_ >= size_) return range.first;
    const std::uint64_t wanted = std::min(range.size(), size_ - position_);
    const ssize_t count = transfer(::pread, file_, range.first, wanted, position_);
    if (count < 0) NUO_RAISE(read_failed);
    // Somebody has cut the file: what readable() tells must end a reader's loop.
    if (count == 0) size_ = position_;
    position_ += static_cast<std::uint64_t>(count);
    return range.first + count;
}

const byte* file_record::write(const_byte_range range) {
    if (range.size() > longest_file || position_ > longest_file - range.size())
        NUO_RAISE(archive_append_failed);
    const std::uint64_t end = position_ + range.size();
    if (range.empty()) {
        if (end > size_) truncate(end);
        return range.last;
    }
    const ssize_t count = transfer(::pwrite, file_, range.first, range.size(), position_);
    if (count < 0 || static_cast<std::uint64_t>(count) != range.size()) {
        // Bytes behind the old end would be half of what was asked for.
        if (end > size_ && ::ftruncate(file_, static_cast<off_t>(size_)) != 0)
            length_of(file_, size_);
        NUO_RAISE(archive_append_failed);
    }
    size_ = std::max(size_, end);
    position_ = end;
    return range.last;
}

std::uint64_t file_record::truncate(std::uint64_t size) {
    if (size > longest_file) NUO_RAISE(archive_append_failed);
    int result;
    do {
        result = ::ftruncate(file_, static_cast<off_t>(size));
    } while (result != 0 && errno == EINTR);
    std::uint64_t length = 0;
    if (!length_of(file_, length) || length != size) NUO_RAISE(archive_append_failed);
    size_ = size;
    position_ = std::min(position_, size);
    return size;
}

view_ptr file_record::view(offset_range range, access mode) {
    const auto first = boost::numeric_cast<std::uint64_t>(range.first);
    auto last = boost::numeric_cast<std::uint64_t>(range.last);
    if (last > size_) {
        if (mode == access::read)
            last = size_;
        else
            truncate(last);
    }
    const std::uint64_t size = first < last ? last - first : 0;
    return std::make_unique<file_view_imp>(file_, mode == access::read_write, first, size);
}

}  // namespace nuo::archive
