#pragma once

#include <cstdint>
#include <memory>

#include "nuo/common/exception.h"
#include "nuo/common/iarchive.h"
#include "nuo/common/string.h"

namespace nuo::archive {

NUO_DECLARE_EXCEPTION(archive_open_file_failed);
NUO_DECLARE_EXCEPTION(archive_create_file_failed);
NUO_DECLARE_EXCEPTION(archive_stat_file_failed);
NUO_DECLARE_EXCEPTION(archive_append_failed);

/// How a file archive for writing treats the path.
enum open_flag : std::uint32_t {
    open_existing = 0,
    create_new = 1,
    open_or_create = 2,
};

class file_record;

/// A file of the local disk. Paths are UTF-8 and reach the system as they are. Nothing is buffered
/// in the process: each `read` and `write` goes to the file. The file is closed with the archive.
///
/// Opening raises `archive_open_file_failed` (absent or refused), `archive_create_file_failed`
/// (exists already with `create_new`, or can't be created) or `archive_stat_file_failed`. `write`
/// and `truncate` raise `archive_append_failed` when the file can't take the bytes, `view_rd` and
/// `view_wr` `archive_open_file_failed` when they can't be mapped.
class file_read_archive : public archiveT<reader, random> {
public:
    explicit file_read_archive(string_ref path);
    ~file_read_archive() override;

    byte* read(byte_range range) override;
    bool readable() override;
    view_ptr view_rd(offset_range range) override;
    bool viewable() override;
    std::uint64_t offset() override;
    std::uint64_t size() override;
    std::uint64_t seek(std::uint64_t position) override;

private:
    std::shared_ptr<file_record> record_;
};

class file_write_archive : public archiveT<writer, random> {
public:
    explicit file_write_archive(string_ref path, std::uint32_t flag = open_existing);
    ~file_write_archive() override;

    const byte* write(const_byte_range range) override;
    std::uint64_t truncate(std::uint64_t size) override;
    bool writable() override;
    void sync() override;
    view_ptr view_wr(offset_range range) override;
    bool viewable() override;
    std::uint64_t offset() override;
    std::uint64_t size() override;
    std::uint64_t seek(std::uint64_t position) override;

private:
    std::shared_ptr<file_record> record_;
};

class file_read_write_archive : public archiveT<reader, writer, random> {
public:
    explicit file_read_write_archive(string_ref path, std::uint32_t flag = open_existing);
    ~file_read_write_archive() override;

    byte* read(byte_range range) override;
    bool readable() override;
    view_ptr view_rd(offset_range range) override;
    const byte* write(const_byte_range range) override;
    std::uint64_t truncate(std::uint64_t size) override;
    bool writable() override;
    void sync() override;
    view_ptr view_wr(offset_range range) override;
    bool viewable() override;
    std::uint64_t offset() override;
    std::uint64_t size() override;
    std::uint64_t seek(std::uint64_t position) override;

private:
    std::shared_ptr<file_record> record_;
};

}  // namespace nuo::archive
