// Damaged copies of three samples, from a fixed seed: half of them damaged anywhere in the file,
// half inside one part with the ZIP whole. Each must end in a named exception, or open; what opens
// must list, load and save or raise again by name.
//
// The suite runs a thousand; HALVERN_MUTANTS in the environment asks for another number.

#include <cstdlib>
#include <random>

#include "assets/library/definitioniterator.h"
#include "nuo/common/archive/primitives.h"
#include "support.h"

namespace korvanet::platform::assets {
namespace {

namespace fs = velmor::fs;

using Bytes = nuo::buffer<nuo::byte>;
using Random = std::mt19937_64;

constexpr const char* kSamples[] = {"starter.jpk", "aged.jpk", "every-kind.jpk"};
constexpr int kMutants = 1000;
constexpr std::uint64_t kSeed = 20261121;

int MutantCount() {
    const char* const asked = std::getenv("HALVERN_MUTANTS");
    return asked != nullptr ? std::atoi(asked) : kMutants;
}

std::uint64_t Below(Random& random, std::uint64_t limit) {
    return limit == 0 ? 0 : random() % limit;
}

// One damage of the kinds that files meet: a flipped bit, a strange number, a cut, a doubled or a
// blanked stretch.
void Damage(Bytes& bytes, Random& random) {
    if (bytes.empty()) return;
    const std::uint64_t at = Below(random, bytes.size());
    const std::uint64_t length = std::min<std::uint64_t>(1 + Below(random, 64), bytes.size() - at);
    switch (Below(random, 6)) {
        case 0:
            bytes[at] = static_cast<nuo::byte>(bytes[at] ^ (1U << Below(random, 8)));
            break;
        case 1:
            bytes[at] = static_cast<nuo::byte>(Below(random, 256));
            break;
        case 2: {
            constexpr std::uint32_t kNumbers[] = {0,      1,          0x7F,       0xFF,
                                                  0xFFFF, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
            const std::uint32_t number = kNumbers[Below(random, 8)];
            std::memcpy(&bytes[at], &number, std::min<std::uint64_t>(4, bytes.size() - at));
            break;
        }
        case 3:
            bytes.resize(at);
            break;
        case 4: {
            const Bytes copy(&bytes[at], &bytes[at] + length);
            bytes.insert(&bytes[at], copy.begin(), copy.end());
            break;
        }
        default:
            std::memset(&bytes[at], 0, length);
            break;
    }
}

void FindFiles(fs::IVfs& files, nuo::string_ref folder, std::vector<nuo::string>& found) {
    for (const fs::VfsNode& node : files.children(folder)) {
        const nuo::string path = fs::joinPath(folder, node.path);
        if (files.state(path).state == fs::state_directory)
            FindFiles(files, path, found);
        else
            found.push_back(path);
    }
}

// Damages one part in the cache of the ZIP, as if the ZIP had held it so.
void DamagePart(fs::ZipFs& zip, Random& random) {
    std::vector<nuo::string> parts;
    FindFiles(zip, "", parts);
    const auto part =
        zip.create(parts[Below(random, parts.size())], fs::mode_all, fs::open_existing);
    Bytes bytes;
    bytes.resize(part->query_random()->size());
    nuo::archive::read_exact(*part->query_reader(), {bytes.begin(), bytes.end()});
    const std::uint64_t times = 1 + Below(random, 3);
    for (std::uint64_t time = 0; time < times; ++time)
        Damage(bytes, random);
    part->query_writer()->truncate(0);
    part->query_random()->seek(0);
    nuo::archive::write_all(*part->query_writer(), {bytes.begin(), bytes.end()});
}

// Only named exceptions may leave `work`.
template <class Work>
void Named(const Work& work) {
    try {
        work();
    } catch (const nuo::exception&) {
    }
}

void UseAll(TestHost& host, JpkFs& package) {
    GeneralLibrary library(host, package, host.Slib(), GeneralLibrary::Writing{});
    core::UTF8String text;
    const core::UTF8String locale("ENG");
    AssetDefinitionDataIterator walk(library, AllDefinitions(library));
    for (; !walk.IsAtEnd(); walk.Next()) {
        walk.GetUIName(text, locale);
        walk.GetDescription(text, locale);
    }
    for (const nuo::string& name : library.RecordNames())
        Named([&] { library.LoadDefinition(name); });
    Named([&] { library.Save(); });
}

void Mutant(TestHost& host, const Bytes& sample, bool whole_zip, Random& random) {
    Bytes bytes = sample;
    if (!whole_zip) Damage(bytes, random);
    Named([&] {
        nuo::archive::mem_read_write_archive archive(bytes);
        fs::InMemory cache("cache");
        fs::ZipFs zip(archive, cache, "mutant", false);
        if (whole_zip) DamagePart(zip, random);
        JpkFs package(zip, "mutant");
        UseAll(host, package);
    });
}

TEST(Mutants, EndInANamedExceptionOrInASoundLibrary) {
    Random random(kSeed);
    std::vector<Bytes> samples;
    for (const char* name : kSamples)
        samples.push_back(FileBytes(halvern_tests::DataFile(name)));
    TestHost host;
    const int count = MutantCount();
    for (int index = 0; index < count; ++index) {
        SCOPED_TRACE(index);
        ASSERT_NO_THROW(
            Mutant(host, samples[Below(random, samples.size())], index % 2 == 1, random));
    }
    EXPECT_TRUE(host.temp->children("").empty()) << "a scratch folder is left";
}

}  // namespace
}  // namespace korvanet::platform::assets
