// Opens any bytes as a block store and then reads, frees and allocates records in it. The first 16
// bytes of an input choose what is done; the rest is the file. Seeds: fuzz/corpus/block_store/.

#include <cstddef>
#include <cstdint>

#include "assets/library/datastore.h"
#include "nuo/common/buffer_archive.h"

namespace {

namespace assets = korvanet::platform::assets;

constexpr std::size_t kSteps = 16;

// From one byte to more than what is written at once: six bits choose, small ones finely.
std::uint32_t SizeOf(std::uint32_t argument) {
    return 1 + argument * argument * 17;
}

// For one of two readers, so that some blocks are shared and others are not.
void Read(assets::DataStore& store, std::uint32_t id) {
    static constexpr char kReaders[2] = {};
    store.ReadAll(id, &kReaders[id % 2]);
}

void Write(assets::DataStore& store, std::uint32_t size) {
    assets::DataRecord made = store.Allocate(size);
    nuo::buffer<nuo::byte> bytes;
    bytes.resize(size);
    made.Write({bytes.begin(), bytes.end()});
    Read(store, made.Id());
}

void Step(assets::DataStore& store, std::uint8_t step) {
    const std::uint32_t argument = step >> 2;
    switch (step & 3) {
        case 0:
            Read(store, argument);
            break;
        case 1:
            store.Free(argument);
            break;
        case 2:
            Write(store, SizeOf(argument));
            break;
        default:
            store.AreApart({0, 1, argument});
            store.Flush();
            break;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < kSteps) return 0;
    nuo::archive::mem_read_write_archive source(nuo::buffer<nuo::byte>(data + kSteps, data + size));
    try {
        assets::DataStore store(source);
        for (std::size_t at = 0; at < kSteps; ++at) {
            try {
                Step(store, data[at]);
            } catch (const nuo::exception&) {
                // A bad record leaves the store as it was.
            }
        }
    } catch (const nuo::exception&) {
        // What is no store raises.
    }
    return 0;
}
