#include "velmor/vfs/zip_directory.h"

#include <algorithm>

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
// ask for millions of them.
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

// Takes the entries of the directory one by one into the tree.
class DirectoryReader {
public:
    DirectoryReader(const Bytes& directory, nuo::archive::iarchive& source, IVfs& cache,
                    ZipTree& tree) noexcept
        : at_(directory.begin()),
          end_(directory.end()),
          source_(source),
          cache_(cache),
          tree_(tree) {}

    void readEntry(std::uint32_t id);

private:
    using node = ZipTree::node;

    std::uint64_t left() const noexcept { return static_cast<std::uint64_t>(end_ - at_); }
    void readFixedPart(file_header& header);
    void readName(file_header& header);
    void checkDepth(nuo::string_ref path);
    node& place(nuo::string_ref path, int state);

    const byte* at_;
    const byte* end_;
    nuo::archive::iarchive& source_;
    IVfs& cache_;
    ZipTree& tree_;
    // Entries of one folder mostly stand together.
    nuo::string_ref folderPath_;
    node* folder_ = nullptr;
};

void DirectoryReader::readFixedPart(file_header& header) {
    using namespace zip_format;
    if (left() >= 4 && get32(at_) != central_signature)
        NUO_RAISE(bad_central_file_header_signature);
    if (left() < central_size) NUO_RAISE(bad_no_enough_head_content);
    header.flags = get16(at_ + 8);
    header.method = get16(at_ + 10);
    header.time = get16(at_ + 12);
    header.date = get16(at_ + 14);
    header.crc32 = get32(at_ + 16);
    header.compressedSize = get32(at_ + 20);
    header.uncompressedSize = get32(at_ + 24);
    header.state = (get32(at_ + 38) & attribute_directory) != 0 ? state_directory : state_file;
    header.headerOffset = get32(at_ + 42);
}

void DirectoryReader::readName(file_header& header) {
    using namespace zip_format;
    const std::uint64_t nameSize = get16(at_ + 28);
    const std::uint64_t extraSize = get16(at_ + 30);
    const std::uint64_t commentSize = get16(at_ + 32);
    at_ += central_size;
    if (nameSize + extraSize + commentSize > left()) NUO_RAISE(bad_no_enough_head_content);
    // The local header is never read: its extra field is taken to be as long as this one.
    const std::uint64_t data =
        std::uint64_t{header.headerOffset} + local_size + nameSize + extraSize;
    if (data >= file_header::no_offset) NUO_RAISE(bad_central_dir_offset_or_size);
    header.dataOffset = static_cast<std::uint32_t>(data);
    header.name = nuo::string_ref(reinterpret_cast<const char*>(at_), nameSize);
    at_ += nameSize + extraSize + commentSize;
}

void DirectoryReader::checkDepth(nuo::string_ref path) {
    // Half as many characters cannot hold more components.
    if (path.size() / 2 < max_path_components) return;
    if (private_::countComponents(path) > max_path_components)
        NUO_RAISE(archive_runtime_error, "too many folders in the name:", path);
}

DirectoryReader::node& DirectoryReader::place(nuo::string_ref path, int state) {
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

void DirectoryReader::readEntry(std::uint32_t id) {
    auto header = std::make_shared<file_header>();
    readFixedPart(*header);
    const byte* name = at_ + zip_format::central_size;
    readName(*header);
    header->id = id;
    header->source = &source_;
    header->cache = &cache_;
    // A view of the buffer, since it must outlive the header for the next entry's comparison.
    const nuo::string_ref path(reinterpret_cast<const char*>(name), header->name.size());
    checkDepth(path);
    nuo::string_ref component;
    if (!private_::PathWalker(path).next(component)) return;  // "" and "/" name the root
    node& at = place(path, header->state);
    if (at.data != nullptr || at.state != header->state)
        NUO_RAISE(duplicated_file_name, header->name);
    at.data = std::move(header);
    if (tree_.size() > max_nodes) NUO_RAISE(archive_runtime_error, "too many folders");
}

}  // namespace

std::uint32_t readZipDirectory(nuo::archive::iarchive& source, IVfs& cache, ZipTree& tree) {
    const EndRecord end = readEnd(source);
    const Bytes directory = readDirectoryBytes(source, end);
    DirectoryReader reader(directory, source, cache, tree);
    for (std::uint32_t id = 0; id < end.entries; ++id)
        reader.readEntry(id);
    return end.entries;
}

}  // namespace velmor::fs
