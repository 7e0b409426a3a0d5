#pragma once

#include <cstdint>

#include "nuo/common/iarchive.h"
#include "nuo/common/string.h"

namespace nuo::archive {

/// The open file behind a file archive, with the position and the size as this process knows it.
class file_record {
public:
    enum class access { read, read_write };

    file_record(string_ref path, access mode, std::uint32_t flag);
    ~file_record();
    file_record(const file_record&) = delete;
    file_record& operator=(const file_record&) = delete;

    byte* read(byte_range range);
    bool readable() const { return position_ < size_; }
    const byte* write(const_byte_range range);
    std::uint64_t truncate(std::uint64_t size);
    view_ptr view(offset_range range, access mode);
    std::uint64_t offset() const { return position_; }
    std::uint64_t size() const { return size_; }
    std::uint64_t seek(std::uint64_t position) { return position_ = position; }

private:
    void create_if_asked(std::uint32_t flag) const;
    void open();

    string path_;
    std::uint64_t position_ = 0;
    access mode_;
    std::uint64_t size_ = 0;
    int file_ = -1;
};

}  // namespace nuo::archive
