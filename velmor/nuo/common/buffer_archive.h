#pragma once

#include <cstdint>
#include <utility>

#include "nuo/common/buffer.h"
#include "nuo/common/iarchive.h"

namespace nuo::archive {

/// Reads a buffer that somebody else owns. `seek` stops at the end of the buffer.
class buffer_in : public archiveT<reader, random> {
public:
    explicit buffer_in(const buffer<byte>& source) noexcept : buffer_(&source) {}

    byte* read(byte_range range) override;
    bool readable() override;
    sequence* place() override { return this; }
    view_ptr view_rd(offset_range range) override;
    bool viewable() override;
    std::uint64_t offset() override;
    std::uint64_t size() override;
    std::uint64_t seek(std::uint64_t position) override;

private:
    std::uint64_t position_ = 0;
    const buffer<byte>* buffer_;
};

/// Writes a buffer that somebody else owns. `seek` may go behind the end; the next `write` fills up
/// to it.
class buffer_out : public archiveT<writer, random> {
public:
    explicit buffer_out(buffer<byte>& target) noexcept : buffer_(&target) {}

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
    std::uint64_t position_ = 0;
    buffer<byte>* buffer_;
};

/// Reads and writes a buffer that somebody else owns, with one position for both. `seek` may go
/// behind the end, where nothing can be read.
class buffer_io : public archiveT<reader, writer, random> {
public:
    explicit buffer_io(buffer<byte>& target) noexcept : buffer_(&target) {}

    byte* read(byte_range range) override;
    bool readable() override;
    sequence* place() override { return this; }
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
    std::uint64_t position_ = 0;
    buffer<byte>* buffer_;
};

namespace detail {
/// A base that is made before the archive which points into it.
struct owned_buffer {
    buffer<byte> bytes;
};
}  // namespace detail

/// A memory file for writing that owns its bytes.
class mem_write_archive : private detail::owned_buffer, public buffer_out {
public:
    mem_write_archive() : buffer_out(bytes) {}
    mem_write_archive(const mem_write_archive&) = delete;
    mem_write_archive& operator=(const mem_write_archive&) = delete;

    const buffer<byte>& get_buffer() const noexcept { return bytes; }
    buffer<byte>& get_buffer() noexcept { return bytes; }
};

/// A memory file that owns its bytes; it can start from a copy of a buffer.
class mem_read_write_archive : private detail::owned_buffer, public buffer_io {
public:
    mem_read_write_archive() : buffer_io(bytes) {}
    explicit mem_read_write_archive(buffer<byte> start)
        : owned_buffer{std::move(start)}, buffer_io(bytes) {}
    mem_read_write_archive(const mem_read_write_archive&) = delete;
    mem_read_write_archive& operator=(const mem_read_write_archive&) = delete;

    const buffer<byte>& get_buffer() const noexcept { return bytes; }
    buffer<byte>& get_buffer() noexcept { return bytes; }
};

}  // namespace nuo::archive
