#include "velmor/vfs/zip_directory.h"

#include <algorithm>
#include <vector>

#include "nuo/common/archive/primitives.h"
#include "velmor/vfs/vfs_functions.h"
#include "velmor/vfs/zip_errors.h"
#include "velmor/vfs/zip_format.h"

// The directory that is read here is told in docs/formats/zip_subset.md.

namespace velmor::fs {

namespace {

using nuo::byte;
using Bytes = nuo::buffer<byte>;

// Folders that no entry stands for cost memory and hardly a byte of the file, so a small file could
// ask for millions of them. Chosen: four for each entry that a ZIP can have, so that all files of
// the largest may lie in folders of their own, in less than a hundred megabytes.
constexpr std::size_t max_nodes = 0x40000;

// No entry takes more of the directory: the fixed part and three texts of 16-bit lengths.
constexpr std::uint64_t max_record = zip_format::central_size + 3 * 0xFFFF;

struct EndRecord {
    std::uint16_t entries;
    std::uint32_t size;
    std::uint32_t offset;
};

Bytes readTail(nuo::archive::iarchive& source) {
    const std::uint64_t size = source.query_random()->size();
    const std::uint64_t count = std::min(size, zip_format::end_search);
    source.query_random()->seek(size - count);
    Bytes tail;
    tail.resize(count);
    if (nuo::archive::read_some(*source.query_reader(), {tail.data(), count}) != tail.end())
        NUO_RAISE(archive_io_fatal_error);
    return tail;
}

// A comment may follow the record, so it is searched for from the end; the last occurrence wins.
const byte* findEnd(const Bytes& tail) {
    for (std::uint64_t at = tail.size() < 4 ? 0 : tail.size() - 3; at-- > 0;)
        if (zip_format::get32(tail.begin() + at) == zip_format::end_signature)
            return tail.begin() + at;
    NUO_RAISE(bad_end_central_dir_signature, "end central dir signature is not found");
}

EndRecord readEnd(nuo::archive::iarchive& source) {
    const Bytes tail = readTail(source);
    const byte* at = findEnd(tail);
    // The comment's length, the last field, is not looked at.
    if (tail.end() - at < static_cast<std::ptrdiff_t>(zip_format::end_size - 2))
        NUO_RAISE(bad_end_central_dir_signature, "end central dir record is cut short");
    return {zip_format::get16(at + 10), zip_format::get32(at + 12), zip_format::get32(at + 16)};
}

Bytes readDirectoryBytes(nuo::archive::iarchive& source, const EndRecord& end) {
    const std::uint64_t size = source.query_random()->size();
    if (std::uint64_t{end.offset} + end.size > size) NUO_RAISE(bad_central_dir_offset_or_size);
    // What lies behind the last entry is never looked at, so it need not be held either.
    const std::uint64_t wanted = std::min<std::uint64_t>(end.size, end.entries * max_record);
    Bytes directory;
    directory.resize(wanted);
    source.query_random()->seek(end.offset);
    if (nuo::archive::read_some(*source.query_reader(), {directory.data(), wanted}) !=
        directory.end())
        NUO_RAISE(bad_central_dir_offset_or_size);
    return directory;
}

// Checks the entries of the directory and puts them into the tree.
class DirectoryReader {
public:
    DirectoryReader(const Bytes& directory, nuo::archive::iarchive& source, IVfs& cache,
                    ZipTree& tree) noexcept
        : at_(directory.begin()),
          end_(directory.end()),
          source_(source),
          cache_(cache),
          tree_(tree) {}

    void read(std::uint32_t count);

private:
    using node = ZipTree::node;

    struct Entry {
        std::uint64_t key;     // the first bytes that differ between entries, in string order
        nuo::string_ref path;  // a view of the directory, as is the record
        const byte* record;
        std::uint32_t id;
    };

    void scanEntry(std::uint32_t id);
    void makeKeys() noexcept;
    static bool sortsBefore(const Entry& a, const Entry& b) noexcept;
    void placeAll(const std::vector<Entry>& entries);
    void place(const Entry& entry);
    node& placeNode(nuo::string_ref path, int state);
    file_header_ptr makeHeader(const Entry& entry) const;

    const byte* at_;
    const byte* end_;
    nuo::archive::iarchive& source_;
    IVfs& cache_;
    ZipTree& tree_;
    std::vector<Entry> entries_;
    // Entries of one folder mostly stand together.
    nuo::string_ref folderPath_;
    node* folder_ = nullptr;
};

std::uint64_t dataOffsetOf(const byte* record) noexcept {
    // The local header is never read: its extra field is taken to be as long as the central one.
    return std::uint64_t{zip_format::get32(record + 42)} + zip_format::local_size +
           zip_format::get16(record + 28) + zip_format::get16(record + 30);
}

int stateOf(const byte* record) noexcept {
    const std::uint32_t attributes = zip_format::get32(record + 38);
    return (attributes & zip_format::attribute_directory) != 0 ? state_directory : state_file;
}

void checkDepth(nuo::string_ref path) {
    // Half as many characters cannot hold more components.
    if (path.size() / 2 < max_path_components) return;
    if (private_::countComponents(path) > max_path_components)
        NUO_RAISE(archive_runtime_error, "too many folders in the name:", path);
}

bool namesTheRoot(nuo::string_ref path) noexcept {
    nuo::string_ref component;
    return !private_::PathWalker(path).next(component);
}

void DirectoryReader::scanEntry(std::uint32_t id) {
    using namespace zip_format;
    const auto left = static_cast<std::uint64_t>(end_ - at_);
    if (left >= 4 && get32(at_) != central_signature) NUO_RAISE(bad_central_file_header_signature);
    if (left < central_size) NUO_RAISE(bad_no_enough_head_content);
    const std::uint64_t nameSize = get16(at_ + 28);
    const std::uint64_t size = central_size + nameSize + get16(at_ + 30) + get16(at_ + 32);
    if (size > left) NUO_RAISE(bad_no_enough_head_content);
    if (dataOffsetOf(at_) >= file_header::no_offset) NUO_RAISE(bad_central_dir_offset_or_size);
    const nuo::string_ref path(reinterpret_cast<const char*>(at_ + central_size), nameSize);
    entries_.push_back({0, path, at_, id});
    at_ += size;
}

file_header_ptr DirectoryReader::makeHeader(const Entry& entry) const {
    using namespace zip_format;
    auto header = std::make_shared<file_header>();
    header->flags = get16(entry.record + 8);
    header->method = get16(entry.record + 10);
    header->time = get16(entry.record + 12);
    header->date = get16(entry.record + 14);
    header->crc32 = get32(entry.record + 16);
    header->compressedSize = get32(entry.record + 20);
    header->uncompressedSize = get32(entry.record + 24);
    header->headerOffset = get32(entry.record + 42);
    header->dataOffset = static_cast<std::uint32_t>(dataOffsetOf(entry.record));
    header->name = nuo::string(entry.path);
    header->state = stateOf(entry.record);
    header->source = &source_;
    header->cache = &cache_;
    header->id = entry.id;
    return header;
}

DirectoryReader::node& DirectoryReader::placeNode(nuo::string_ref path, int state) {
    while (path.ends_with("/"))
        path = path.substr(0, path.size() - 1);
    const std::uint64_t cut = path.rfind('/');
    const std::uint64_t nameAt = cut == nuo::string_ref::npos ? 0 : cut + 1;
    const nuo::string_ref folder = path.substr(0, nameAt);
    if (folder_ == nullptr || folder != folderPath_) {
        folder_ = tree_.create(folder, state_directory, true);
        if (folder_->state != state_directory) NUO_RAISE(not_all_parent_are_dir);
        folderPath_ = folder;
    }
    return tree_.obtain(*folder_, path.substr(nameAt), state);
}

void DirectoryReader::place(const Entry& entry) {
    checkDepth(entry.path);
    if (namesTheRoot(entry.path)) return;
    const int state = stateOf(entry.record);
    node& at = placeNode(entry.path, state);
    if (at.data != nullptr || at.state != state) NUO_RAISE(duplicated_file_name, entry.path);
    at.data = makeHeader(entry);
    if (tree_.size() > max_nodes) NUO_RAISE(archive_runtime_error, "too many folders");
}

void DirectoryReader::placeAll(const std::vector<Entry>& entries) {
    folder_ = nullptr;
    for (const Entry& entry : entries)
        place(entry);
}

// Names of one package begin alike, so the keys begin behind what all of them share.
void DirectoryReader::makeKeys() noexcept {
    if (entries_.empty()) return;
    const nuo::string_ref first = entries_.front().path;
    std::uint64_t shared = first.size();
    for (const Entry& entry : entries_) {
        const std::uint64_t most = std::min(shared, entry.path.size());
        shared = 0;
        while (shared < most && entry.path[shared] == first[shared])
            ++shared;
    }
    for (Entry& entry : entries_) {
        for (std::uint64_t i = shared; i < shared + sizeof entry.key; ++i) {
            // Turned over, signed bytes sort as unsigned ones.
            const int next = i < entry.path.size() ? entry.path[i] ^ 0x80 : 0;
            entry.key = entry.key << 8 | static_cast<unsigned char>(next);
        }
    }
}

bool DirectoryReader::sortsBefore(const Entry& a, const Entry& b) noexcept {
    return a.key != b.key ? a.key < b.key : a.path < b.path;
}

// The tree is built in string order, where each node goes behind the one before and all of them lie
// in memory as they are walked later. In the order of a large directory every step would lead to
// memory that is no longer at hand.
void DirectoryReader::read(std::uint32_t count) {
    try {
        entries_.reserve(std::min<std::uint64_t>(
            count, static_cast<std::uint64_t>(end_ - at_) / zip_format::central_size));
        for (std::uint32_t id = 0; id < count; ++id)
            scanEntry(id);
    } catch (const nuo::exception&) {
        placeAll(entries_);  // what an earlier entry breaks is told first
        throw;
    }
    makeKeys();
    if (std::is_sorted(entries_.begin(), entries_.end(), sortsBefore)) return placeAll(entries_);
    std::vector<Entry> sorted = entries_;
    std::sort(sorted.begin(), sorted.end(), sortsBefore);
    try {
        placeAll(sorted);
    } catch (const nuo::exception&) {
        // Which entry is at fault, and how, is told by the order of the directory.
        tree_.clear();
        placeAll(entries_);
    }
}

}  // namespace

std::uint32_t readZipDirectory(nuo::archive::iarchive& source, IVfs& cache, ZipTree& tree) {
    const EndRecord end = readEnd(source);
    const Bytes directory = readDirectoryBytes(source, end);
    DirectoryReader reader(directory, source, cache, tree);
    reader.read(end.entries);
    return end.entries;
}

}  // namespace velmor::fs
