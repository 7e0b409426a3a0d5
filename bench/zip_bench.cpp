#include <benchmark/benchmark.h>
#include <zlib.h>

#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "bench/compare.h"
#include "nuo/common/archive/primitives.h"
#include "nuo/common/buffer_archive.h"
#include "velmor/vfs/in_memory_fs.h"
#include "velmor/vfs/vfs_functions.h"
#include "velmor/vfs/zip.h"

// ZIP files as file systems: the directory of large ones, and the data of many entries.

namespace halvern_bench {
namespace {

namespace fs = velmor::fs;
using Memory = nuo::archive::mem_read_write_archive;

class OpenZip {
public:
    explicit OpenZip(nuo::archive::iarchive& archive)
        : zip(std::make_unique<fs::ZipFs>(archive, cache, "bench", false)) {}

    fs::InMemory cache{"bench"};
    std::unique_ptr<fs::ZipFs> zip;
};

void AddEntry(fs::IVfs& zip, const std::string& path, const std::string& text) {
    const auto file = zip.create(path.c_str(), fs::mode_all, fs::create_new);
    nuo::archive::write_all(*file->query_writer(), {text.data(), text.size()});
}

// Short files in the order of their numbers, so many to a folder.
void FillDirectory(Memory& target, int entries, int in_folder) {
    OpenZip made(target);
    for (int i = 0; i < entries; ++i) {
        const std::string folder = "folder" + std::to_string(i / in_folder);
        if (i % in_folder == 0) made.zip->createDir(folder.c_str());
        AddEntry(*made.zip, folder + "/entry" + std::to_string(i) + ".bin", "x");
    }
    made.zip->commit();
}

std::size_t CountFiles(fs::IVfs& zip, const nuo::string& folder) {
    std::size_t count = 0;
    for (const fs::VfsNode& node : zip.children(folder)) {
        const nuo::string path = fs::joinPath(folder, node.path);
        if (zip.state(path).state == fs::state_directory)
            count += CountFiles(zip, path);
        else
            ++count;
    }
    return count;
}

// Seconds for an entry. Starts on an even heap: the last turn left as much behind as it had
// entries, and who finds that would pay for its clearing up.
double OpenAndList(Memory& archive, std::size_t entries) {
    std::unique_ptr<OpenZip> opened;
    std::size_t found = 0;
    std::make_unique<OpenZip>(archive);
    const double seconds = Time([&] {
        opened = std::make_unique<OpenZip>(archive);
        found = CountFiles(*opened->zip, {});
    });
    if (found != entries) throw std::runtime_error("entries are missing");
    return seconds / static_cast<double>(entries);
}

void ZipDirectoryPerEntry(benchmark::State& state) {
    constexpr int kMany = 60000;
    constexpr int kFew = 10000;
    Memory many;
    Memory few;
    const auto in_folder = static_cast<int>(state.range(0));
    FillDirectory(many, kMany, in_folder);
    FillDirectory(few, kFew, in_folder);
    CompareInTurn(
        state, 1.5, [&] { return OpenAndList(many, kMany); },
        [&] { return OpenAndList(few, kFew); });
}
BENCHMARK(ZipDirectoryPerEntry)
    ->ArgName("in_folder")
    ->Arg(100)
    ->Arg(100000)
    ->UseManualTime()
    ->Iterations(25)
    ->Unit(benchmark::kNanosecond);

constexpr int kTexts = 2000;
constexpr std::size_t kTextSize = 32 * 1024;

// Words with noise among them, which deflate to about half.
std::string MakeText(std::mt19937& random) {
    std::string text;
    text.reserve(kTextSize + 16);
    while (text.size() < kTextSize) {
        if (random() % 2 == 0) {
            text += "property" + std::to_string(random() % 500) + " = ";
        } else {
            for (int i = 0; i < 9; ++i)
                text += static_cast<char>('a' + random() % 26);
            text += '\n';
        }
    }
    text.resize(kTextSize);
    return text;
}

std::string TextPath(int i) {
    return "texts/text" + std::to_string(i) + ".txt";
}

// The deflated bytes of each entry, as the plain side finds them.
std::vector<std::string> DeflateAll(const std::vector<std::string>& texts) {
    std::vector<std::string> packed;
    for (const std::string& text : texts) {
        z_stream stream{};
        ::deflateInit2(&stream, 1, Z_DEFLATED, -15, 9, Z_DEFAULT_STRATEGY);
        std::string bytes(::deflateBound(&stream, text.size()), '\0');
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
        stream.avail_in = static_cast<uInt>(text.size());
        stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
        stream.avail_out = static_cast<uInt>(bytes.size());
        ::deflate(&stream, Z_FINISH);
        bytes.resize(stream.total_out);
        ::deflateEnd(&stream);
        packed.push_back(std::move(bytes));
    }
    return packed;
}

double InflatePlainly(const std::vector<std::string>& packed) {
    return Time([&] {
        for (const std::string& bytes : packed) {
            const std::unique_ptr<unsigned char[]> target(new unsigned char[kTextSize]);
            z_stream stream{};
            ::inflateInit2(&stream, -15);
            stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
            stream.avail_in = static_cast<uInt>(bytes.size());
            stream.next_out = target.get();
            stream.avail_out = kTextSize;
            ::inflate(&stream, Z_FINISH);
            ::inflateEnd(&stream);
            benchmark::DoNotOptimize(target[0]);
        }
    });
}

double ReadThroughZip(Memory& archive) {
    OpenZip opened(archive);
    std::vector<nuo::byte> target(kTextSize);
    return Time([&] {
        for (int i = 0; i < kTexts; ++i) {
            const auto file = opened.zip->create(
                TextPath(i).c_str(), fs::mode_read | fs::mode_random, fs::open_existing);
            nuo::archive::read_exact(*file->query_reader(), {target.data(), target.size()});
            benchmark::DoNotOptimize(target[0]);
        }
    });
}

void ZipReadTexts(benchmark::State& state) {
    std::mt19937 random(1);
    std::vector<std::string> texts;
    Memory archive;
    {
        OpenZip made(archive);
        made.zip->createDir("texts");
        for (int i = 0; i < kTexts; ++i) {
            texts.push_back(MakeText(random));
            AddEntry(*made.zip, TextPath(i), texts.back());
        }
        made.zip->commit();
    }
    const std::vector<std::string> packed = DeflateAll(texts);
    double packed_size = 0;
    for (const std::string& bytes : packed)
        packed_size += static_cast<double>(bytes.size());
    CompareInTurn(
        state, 1.5, [&] { return ReadThroughZip(archive); },
        [&] { return InflatePlainly(packed); });
    state.counters["packed_to"] = packed_size / (static_cast<double>(kTexts) * kTextSize);
}
BENCHMARK(ZipReadTexts)->UseManualTime()->Iterations(15)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace halvern_bench
