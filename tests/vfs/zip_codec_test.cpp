#include "velmor/vfs/zip_codec.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include "velmor/vfs/zip_errors.h"
#include "vfs/failing_zlib.h"
#include "vfs/support.h"
#include "vfs/zip_bytes.h"

namespace {

using namespace vfs_tests;

std::string Inflated(fs::ZipCodec& codec, const std::string& packed) {
    nuo::archive::mem_read_write_archive from(Buffer(packed));
    nuo::archive::mem_read_write_archive to;
    codec.inflateTo(from, packed.size(), to);
    return Bytes(to);
}

TEST(ZipCodecTest, AStreamThatCannotStartRaisesAndTheNextOneMay) {
    fs::ZipCodec codec;
    const std::string packed = RawDeflate("text");
    {
        const NoZlib broken;
        EXPECT_EQ(RaisedText<fs::archive_runtime_error>([&] { Inflated(codec, packed); }),
                  "inflate cannot start");
    }
    EXPECT_EQ(Inflated(codec, packed), "text");
}

TEST(ZipCodecTest, EachFailureOfInflatingIsBadData) {
    fs::ZipCodec codec;
    const std::string packed = RawDeflate("text");
    for (const int code : {Z_DATA_ERROR, Z_MEM_ERROR, Z_NEED_DICT}) {
        const InflateFails broken(code);
        EXPECT_EQ(RaisedText<fs::archive_runtime_error>([&] { Inflated(codec, packed); }),
                  "inflate bad data");
    }
    EXPECT_EQ(Inflated(codec, packed), "text");
}

TEST(ZipCodecTest, ADeflaterThatCannotStartRaisesAndTheNextOneMay) {
    fs::ZipCodec codec;
    nuo::archive::mem_read_write_archive from(Buffer("text"));
    nuo::archive::mem_read_write_archive to;
    {
        const NoZlib broken;
        EXPECT_EQ(RaisedText<fs::archive_runtime_error>([&] { codec.deflateTo(from, to); }),
                  "deflate cannot start");
    }
    EXPECT_EQ(codec.deflateTo(from, to).uncompressedSize, 4u);
}

TEST(ZipCodecTest, AnAllowanceEndsWhatComesOutOfAllEntriesTogether) {
    fs::ZipCodec codec;
    const std::string packed = RawDeflate(std::string(1000, 'x'));
    codec.setAllowance(2500);
    EXPECT_EQ(Inflated(codec, packed).size(), 1000u);
    codec.spend(500);
    EXPECT_EQ(Inflated(codec, packed).size(), 1000u);
    EXPECT_EQ(RaisedText<fs::archive_runtime_error>([&] { Inflated(codec, packed); }),
              "too much data");
    EXPECT_EQ(RaisedText<fs::archive_runtime_error>([&] { codec.spend(1); }), "too much data");
    codec.spend(0);
}

// Zeros, deflated: as many whole pieces of 16 MiB and as many single bytes as asked for.
class DeflatedZeros : public nuo::archive::archiveT<nuo::archive::reader> {
public:
    DeflatedZeros(std::uint64_t pieces, std::uint64_t rest)
        : piece_(Piece(16u << 20)), pieces_(pieces), tail_(Piece(rest).append(end_of_stream)) {}

    std::uint64_t Size() const { return pieces_ * piece_.size() + tail_.size(); }

    nuo::byte* read(nuo::archive::byte_range range) override {
        while (!range.empty() && readable()) {
            const std::string& source = pieces_ != 0 ? piece_ : tail_;
            const std::uint64_t count = std::min<std::uint64_t>(range.size(), source.size() - at_);
            std::copy_n(source.begin() + static_cast<std::ptrdiff_t>(at_), count, range.first);
            range.first += count;
            at_ += count;
            if (at_ == source.size() && pieces_ != 0) {
                --pieces_;
                at_ = 0;
            }
        }
        return range.first;
    }
    bool readable() override { return pieces_ != 0 || at_ < tail_.size(); }
    nuo::archive::view_ptr view_rd(nuo::archive::offset_range) override { return nullptr; }
    bool viewable() override { return false; }

private:
    // A final block without content, of fixed codes.
    static constexpr std::string_view end_of_stream{"\x03\0", 2};

    // Ends at a byte and without the end of the stream, so that another piece may follow.
    static std::string Piece(std::uint64_t zeros) {
        const std::string content(zeros, '\0');
        std::string packed(zeros / 50 + 100, '\0');
        z_stream stream{};
        ::deflateInit2(&stream, 1, Z_DEFLATED, -15, 9, Z_DEFAULT_STRATEGY);
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(content.data()));
        stream.avail_in = static_cast<uInt>(content.size());
        stream.next_out = reinterpret_cast<Bytef*>(packed.data());
        stream.avail_out = static_cast<uInt>(packed.size());
        ::deflate(&stream, Z_FULL_FLUSH);
        packed.erase(packed.size() - stream.avail_out);
        ::deflateEnd(&stream);
        return packed;
    }

    const std::string piece_;
    std::uint64_t pieces_;
    const std::string tail_;
    std::uint64_t at_ = 0;
};

class Counter : public nuo::archive::archiveT<nuo::archive::writer> {
public:
    const nuo::byte* write(nuo::archive::const_byte_range range) override {
        count += range.size();
        return range.last;
    }
    bool writable() override { return true; }
    bool viewable() override { return false; }
    void sync() override {}
    std::uint64_t truncate(std::uint64_t size) override { return size; }
    nuo::archive::view_ptr view_wr(nuo::archive::offset_range) override { return nullptr; }

    std::uint64_t count = 0;
};

TEST(ZipCodecTest, InflatesAsMuchAsAnEntryCanHoldAndNoByteMore) {
    constexpr std::uint64_t most = 0xFFFFFFFF;
    fs::ZipCodec codec;
    for (const std::uint64_t too_many : {0u, 1u}) {
        DeflatedZeros zeros(255, (16u << 20) - 1 + too_many);
        const std::uint64_t size = zeros.Size();
        Counter made;
        const auto inflate = [&] { codec.inflateTo(zeros, size, made); };
        if (too_many == 0)
            inflate();
        else
            EXPECT_EQ(RaisedText<fs::archive_runtime_error>(inflate), "inflate bad data");
        EXPECT_EQ(made.count, most + too_many);
    }
}

}  // namespace
