#pragma once

#include <korvanet/platform/core/idatastream.h>
#include <cstdint>
#include <utility>

#include "nuo/common/buffer_archive.h"
#include "nuo/common/iarchive.h"

namespace korvanet::platform::assets {

namespace detail {

// The work of all archive streams: the capabilities of one archive, looked up once. Where the
// archive is null or lacks a capability, nothing is read or written and nothing moves.
class ArchiveCursor {
public:
    explicit ArchiveCursor(nuo::archive::iarchive* archive);

    bool CanRead() const;
    bool CanWrite() const;
    std::uint64_t Read(void* buffer, std::uint64_t length) const;
    bool ReadExact(void* buffer, std::uint64_t length) const;
    std::uint64_t Write(const void* buffer, std::uint64_t length) const;
    // `SeekWithin` stops at the size, `SeekAnywhere` does not; neither goes before the start.
    std::uint64_t SeekWithin(std::int64_t offset, core::SeekOrigin origin) const;
    std::uint64_t SeekAnywhere(std::int64_t offset, core::SeekOrigin origin) const;
    bool TruncateHere() const;

private:
    std::uint64_t Target(std::int64_t offset, core::SeekOrigin origin) const;

    nuo::archive::reader* reader_;
    nuo::archive::writer* writer_;
    nuo::archive::random* position_;
};

// A base that is made before the stream over what it holds.
struct OwnedArchive {
    nuo::archive::archive_ptr archive;
};

struct OwnedMemory {
    nuo::archive::mem_read_write_archive memory;
};

}  // namespace detail

// Streams over archives. They are open as long as they have an archive: `Close` lets go of nothing,
// so that what was written through a stream can be read through it afterwards. Exceptions of the
// archive pass through.

// Reads an archive that somebody else owns; null makes a stream that is not open.
class ReadArchiveStream : public core::IDataReadStream {
public:
    explicit ReadArchiveStream(nuo::archive::iarchive* archive)
        : open_(archive != nullptr), cursor_(archive) {}

    bool IsOpen() const override { return open_; }
    void Close() override {}
    bool CanRead() const override { return cursor_.CanRead(); }
    std::uint64_t Read(void* buffer, std::uint64_t length) override {
        return cursor_.Read(buffer, length);
    }
    bool ReadExact(void* buffer, std::uint64_t length) override {
        return cursor_.ReadExact(buffer, length);
    }
    std::uint64_t Seek(std::int64_t offset, core::SeekOrigin origin) override {
        return cursor_.SeekWithin(offset, origin);
    }
    std::uint64_t Tell() const override {
        return cursor_.SeekWithin(0, core::SeekOrigin::kCurrent);
    }

private:
    bool open_;
    detail::ArchiveCursor cursor_;
};

// Writes an archive that somebody else owns.
class WriteArchiveStream : public core::IDataWriteStream {
public:
    explicit WriteArchiveStream(nuo::archive::iarchive* archive)
        : open_(archive != nullptr), cursor_(archive) {}

    bool IsOpen() const override { return open_; }
    void Close() override {}
    bool CanWrite() const override { return cursor_.CanWrite(); }
    std::uint64_t Write(const void* buffer, std::uint64_t length) override {
        return cursor_.Write(buffer, length);
    }
    bool WriteExact(const void* buffer, std::uint64_t length) override {
        return cursor_.Write(buffer, length) == length;
    }
    std::uint64_t Seek(std::int64_t offset, core::SeekOrigin origin) override {
        return cursor_.SeekAnywhere(offset, origin);
    }
    std::uint64_t Tell() const override {
        return cursor_.SeekAnywhere(0, core::SeekOrigin::kCurrent);
    }

private:
    bool open_;
    detail::ArchiveCursor cursor_;
};

// Reads and writes an archive that somebody else owns, with the archive's own position.
class ReadWriteArchiveStream : public core::IDataStream {
public:
    explicit ReadWriteArchiveStream(nuo::archive::iarchive* archive)
        : open_(archive != nullptr), cursor_(archive) {}

    bool IsOpen() const override { return open_; }
    void Close() override {}
    bool CanRead() const override { return cursor_.CanRead(); }
    std::uint64_t Read(void* buffer, std::uint64_t length) override {
        return cursor_.Read(buffer, length);
    }
    bool ReadExact(void* buffer, std::uint64_t length) override {
        return cursor_.ReadExact(buffer, length);
    }
    bool CanWrite() const override { return cursor_.CanWrite(); }
    std::uint64_t Write(const void* buffer, std::uint64_t length) override {
        return cursor_.Write(buffer, length);
    }
    bool WriteExact(const void* buffer, std::uint64_t length) override {
        return cursor_.Write(buffer, length) == length;
    }
    std::uint64_t Seek(std::int64_t offset, core::SeekOrigin origin) override {
        return cursor_.SeekAnywhere(offset, origin);
    }
    std::uint64_t Tell() const override {
        return cursor_.SeekAnywhere(0, core::SeekOrigin::kCurrent);
    }
    void Flush() override {}
    void Reserved() override {}
    bool TruncateHere() override { return cursor_.TruncateHere(); }

private:
    bool open_;
    detail::ArchiveCursor cursor_;
};

// The forms that own the archive and end it with themselves.
template <class Stream>
class OwnArchiveStream : private detail::OwnedArchive, public Stream {
public:
    explicit OwnArchiveStream(nuo::archive::archive_ptr owned)
        : detail::OwnedArchive{std::move(owned)}, Stream(archive.get()) {}
};

using OwnReadArchiveStream = OwnArchiveStream<ReadArchiveStream>;
using OwnWriteArchiveStream = OwnArchiveStream<WriteArchiveStream>;
using OwnReadWriteArchiveStream = OwnArchiveStream<ReadWriteArchiveStream>;

// A stream over memory of its own, empty or begun with a copy of some bytes; the position starts
// at 0.
class MemoryStream : private detail::OwnedMemory, public ReadWriteArchiveStream {
public:
    MemoryStream() : ReadWriteArchiveStream(&memory) {}
    explicit MemoryStream(nuo::buffer<nuo::byte> start)
        : detail::OwnedMemory{nuo::archive::mem_read_write_archive(std::move(start))},
          ReadWriteArchiveStream(&memory) {}

    const nuo::buffer<nuo::byte>& GetBuffer() const { return memory.get_buffer(); }
};

}  // namespace korvanet::platform::assets
