#include "nuo/common/multiplex.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "nuo/common/archive/primitives.h"
#include "nuo/common/buffer_archive.h"
#include "nuo/temp_folder.h"

namespace {

using namespace nuo::archive;
using nuo_tests::Bytes;
using nuo_tests::Text;

std::string Read(reader& in, std::size_t count) {
    std::string text(count, '\0');
    nuo::byte* const first = reinterpret_cast<nuo::byte*>(text.data());
    text.resize(static_cast<std::size_t>(in.read({first, count}) - first));
    return text;
}

TEST(Multiplex, CursorsAlternateWithoutDisturbingEachOther) {
    mem_read_write_archive file(Bytes("abcdefgh"));
    multiplex_read_archive first(file), second(file);
    EXPECT_EQ(Read(first, 2), "ab");
    EXPECT_EQ(Read(second, 3), "abc");
    EXPECT_EQ(Read(first, 2), "cd");
    EXPECT_EQ(first.offset(), 4u);
    EXPECT_EQ(second.offset(), 3u);
    second.seek(6);
    EXPECT_EQ(Read(first, 1), "e");
    EXPECT_EQ(Read(second, 9), "gh");
    EXPECT_FALSE(second.readable());
    EXPECT_TRUE(first.readable());
}

TEST(Multiplex, WriterAndReaderShareTheBytes) {
    mem_read_write_archive file(Bytes("abc"));
    multiplex_write_archive out(file);
    multiplex_read_archive in(file);
    out.seek(3);
    write_all(out, {"def", 3});
    EXPECT_EQ(in.size(), 6u);
    EXPECT_EQ(Read(in, 9), "abcdef");
    EXPECT_EQ(out.truncate(2), 2u);
    EXPECT_EQ(out.offset(), 2u);
    EXPECT_EQ(in.size(), 2u);
    EXPECT_FALSE(in.readable());
}

TEST(Multiplex, SeekPastTheEndIsAllowed) {
    mem_read_write_archive file(Bytes("abc"));
    multiplex_read_archive in(file);
    EXPECT_EQ(in.seek(10), 10u);
    EXPECT_EQ(in.offset(), 10u);
    EXPECT_FALSE(in.readable());
}

TEST(Multiplex, SeekStoresWhatTheArchiveMadeOfIt) {
    const auto source = Bytes("abc");
    buffer_in file(source);
    multiplex_read_archive in(file);
    EXPECT_EQ(in.seek(10), 3u);
    EXPECT_EQ(in.offset(), 3u);
}

class Failing : public mem_read_write_archive {
public:
    using mem_read_write_archive::mem_read_write_archive;
    nuo::byte* read(byte_range) override { throw std::runtime_error("read"); }
    void sync() override { throw std::runtime_error("sync"); }
};

TEST(Multiplex, FailureRestoresTheUnderlyingPositionAndKeepsTheCursor) {
    Failing file(Bytes("abcdef"));
    multiplex_read_write_archive cursor(file);
    cursor.seek(4);
    file.seek(1);
    nuo::byte target[1];
    EXPECT_THROW(cursor.read({target, 1}), std::runtime_error);
    EXPECT_EQ(file.offset(), 1u);
    EXPECT_THROW(cursor.sync(), std::runtime_error);
    EXPECT_EQ(file.offset(), 1u);
    EXPECT_EQ(cursor.offset(), 4u);
}

TEST(Multiplex, MissingCapabilityRaisesCreateFailed) {
    nuo::buffer<nuo::byte> bytes;
    buffer_in in(bytes);
    buffer_out out(bytes);
    EXPECT_THROW(multiplex_write_archive{in}, create_failed);
    EXPECT_THROW(multiplex_read_write_archive{in}, create_failed);
    EXPECT_THROW(multiplex_read_archive{out}, nuo::context_exception<create_failed>);
    EXPECT_THROW(make_multiplex<multiplex_read_archive>(nullptr), create_failed);
}

class Watched : public mem_read_write_archive {
public:
    explicit Watched(std::shared_ptr<int> token) : token_(std::move(token)) {}

private:
    std::shared_ptr<int> token_;
};

TEST(MultiplexOwner, ReleasesTheArchiveWithTheLastCursor) {
    const auto token = std::make_shared<int>();
    std::shared_ptr<iarchive> file = make_archive<Watched>(token);
    archive_ptr out = make_multiplex<multiplex_read_write_archive>(file);
    archive_ptr in = make_multiplex<multiplex_read_archive>(file);
    file.reset();
    write_all(*get_writer(*out), {"abc", 3});
    out.reset();
    EXPECT_EQ(Read(*get_reader(*in), 9), "abc");
    EXPECT_EQ(token.use_count(), 2);
    in.reset();
    EXPECT_EQ(token.use_count(), 1);
}

}  // namespace
