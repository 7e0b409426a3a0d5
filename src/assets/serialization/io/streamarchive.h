#pragma once

#include <korvanet/platform/core/idatastream.h>
#include <cstdint>
#include <memory>
#include <utility>

#include "nuo/common/exception.h"
#include "nuo/common/iarchive.h"

namespace korvanet::platform::assets {

// A stream that is not open, where an archive was to be made over it.
NUO_DECLARE_EXCEPTION(stream_open_failed);

// Archives over streams of the host. All of them raise `stream_open_failed`, "stream can not
// open!!", when the stream is not open at construction, and close it when they are destroyed.
// Position and size are kept here: the stream is told only of seeks, and nobody else may use it
// meanwhile.
//
// A stream that answers no byte before the size it told ends there: the size shrinks to the
// position, so that loops over `readable()` end.

// Reads. `seek` stops at the size.
class ReadStreamArchive
    : public nuo::archive::archiveT<nuo::archive::reader, nuo::archive::random> {
public:
    explicit ReadStreamArchive(core::IDataReadStream& stream);
    ~ReadStreamArchive() override;
    ReadStreamArchive(const ReadStreamArchive&) = delete;
    ReadStreamArchive& operator=(const ReadStreamArchive&) = delete;

    nuo::byte* read(nuo::archive::byte_range range) override;
    bool readable() override { return position_ < size_; }
    nuo::archive::view_ptr view_rd(nuo::archive::offset_range) override { return nullptr; }
    bool viewable() override { return false; }
    std::uint64_t offset() override { return position_; }
    std::uint64_t size() override { return size_; }
    std::uint64_t seek(std::uint64_t position) override;

private:
    core::IDataReadStream* stream_;
    std::uint64_t position_ = 0;
    std::uint64_t size_ = 0;
};

// Writes from position 0; the size counts what was written here. `seek` may go behind the size.
// `truncate` cannot shorten a write stream: it leaves everything as it is and returns the size. A
// stream that takes less than it was given raises `archive_append_failed`.
class WriteStreamArchive
    : public nuo::archive::archiveT<nuo::archive::writer, nuo::archive::random> {
public:
    explicit WriteStreamArchive(core::IDataWriteStream& stream);
    ~WriteStreamArchive() override;
    WriteStreamArchive(const WriteStreamArchive&) = delete;
    WriteStreamArchive& operator=(const WriteStreamArchive&) = delete;

    const nuo::byte* write(nuo::archive::const_byte_range range) override;
    std::uint64_t truncate(std::uint64_t) override { return size_; }
    bool writable() override { return true; }
    void sync() override {}
    nuo::archive::view_ptr view_wr(nuo::archive::offset_range) override { return nullptr; }
    bool viewable() override { return false; }
    std::uint64_t offset() override { return position_; }
    std::uint64_t size() override { return size_; }
    std::uint64_t seek(std::uint64_t position) override;

private:
    core::IDataWriteStream* stream_;
    std::uint64_t position_ = 0;
    std::uint64_t size_ = 0;
};

// Reads and writes with one position. `seek` may go behind the size. `truncate` returns a size
// other than the wanted one when the stream cannot be cut.
class ReadWriteStreamArchive
    : public nuo::archive::archiveT<nuo::archive::reader, nuo::archive::writer,
                                    nuo::archive::random> {
public:
    explicit ReadWriteStreamArchive(core::IDataStream& stream);
    ~ReadWriteStreamArchive() override;
    ReadWriteStreamArchive(const ReadWriteStreamArchive&) = delete;
    ReadWriteStreamArchive& operator=(const ReadWriteStreamArchive&) = delete;

    nuo::byte* read(nuo::archive::byte_range range) override;
    bool readable() override { return position_ < size_; }
    nuo::archive::view_ptr view_rd(nuo::archive::offset_range) override { return nullptr; }
    const nuo::byte* write(nuo::archive::const_byte_range range) override;
    std::uint64_t truncate(std::uint64_t size) override;
    bool writable() override { return true; }
    void sync() override;
    nuo::archive::view_ptr view_wr(nuo::archive::offset_range) override { return nullptr; }
    bool viewable() override { return false; }
    std::uint64_t offset() override { return position_; }
    std::uint64_t size() override { return size_; }
    std::uint64_t seek(std::uint64_t position) override;

private:
    core::IDataStream* stream_;
    std::uint64_t position_ = 0;
    std::uint64_t size_ = 0;
};

namespace detail {

// A base that outlives the archive built over what it holds.
template <class Stream>
struct OwnedStream {
    std::unique_ptr<Stream> stream;
};

}  // namespace detail

// The forms that own the stream: it is closed and then deleted. When the constructor raises it is
// deleted alone.
template <class Archive, class Stream>
class OwnStreamArchive : private detail::OwnedStream<Stream>, public Archive {
public:
    explicit OwnStreamArchive(std::unique_ptr<Stream> owned)
        : detail::OwnedStream<Stream>{std::move(owned)}, Archive(*this->stream) {}
};

using OwnReadStreamArchive = OwnStreamArchive<ReadStreamArchive, core::IDataReadStream>;
using OwnWriteStreamArchive = OwnStreamArchive<WriteStreamArchive, core::IDataWriteStream>;
using OwnReadWriteStreamArchive = OwnStreamArchive<ReadWriteStreamArchive, core::IDataStream>;

}  // namespace korvanet::platform::assets
