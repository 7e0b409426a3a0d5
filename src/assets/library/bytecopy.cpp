#include "assets/library/bytecopy.h"

#include "nuo/common/archive/primitives.h"
#include "nuo/common/buffer.h"

namespace korvanet::platform::assets {
namespace {

// Chosen: large enough that the calls do not count, small enough for any process.
constexpr std::uint64_t kChunk = 0x10000;

}  // namespace

std::uint64_t CopyAll(nuo::archive::iarchive& source, nuo::archive::iarchive& target) {
    source.query_random()->seek(0);
    nuo::archive::reader& in = *source.query_reader();
    nuo::archive::writer& out = *target.query_writer();
    nuo::buffer<nuo::byte> chunk;
    chunk.resize(kChunk);
    std::uint64_t total = 0;
    while (true) {
        const nuo::byte* last = nuo::archive::read_some(in, {chunk.begin(), chunk.end()});
        if (last == chunk.begin()) return total;
        nuo::archive::write_all(out, {chunk.begin(), last});
        total += static_cast<std::uint64_t>(last - chunk.begin());
    }
}

}  // namespace korvanet::platform::assets
