#include "inspect/ziplisting.h"

#include <algorithm>
#include <map>
#include <optional>

#include "nuo/common/archive/primitives.h"
#include "nuo/common/buffer.h"
#include "velmor/vfs/zip_file_header.h"
#include "velmor/vfs/zip_format.h"

namespace halvern::inspect {
namespace {

namespace format = velmor::fs::zip_format;
using Bytes = nuo::buffer<nuo::byte>;

constexpr const char* kEndRule = "zip.end";
constexpr const char* kDirectoryRule = "zip.directory";

struct EndRecord {
    std::uint64_t offset = 0;
    std::uint16_t entries = 0;
    std::uint32_t size = 0;
    std::uint32_t directory = 0;
};

Bytes ReadAt(nuo::archive::iarchive& file, std::uint64_t offset, std::uint64_t size) {
    Bytes bytes;
    bytes.resize(size);
    file.query_random()->seek(offset);
    const nuo::byte* const end =
        nuo::archive::read_some(*file.query_reader(), {bytes.begin(), bytes.end()});
    bytes.resize(static_cast<std::uint64_t>(end - bytes.begin()));
    return bytes;
}

// The last occurrence of the signature counts, as for every reader.
std::optional<std::uint64_t> FindSignature(const Bytes& tail) {
    for (std::uint64_t at = tail.size() < 4 ? 0 : tail.size() - 3; at-- > 0;)
        if (format::get32(tail.begin() + at) == format::end_signature) return at;
    return std::nullopt;
}

std::optional<EndRecord> FindEnd(nuo::archive::iarchive& file, Findings& findings) {
    const std::uint64_t size = file.query_random()->size();
    const std::uint64_t searched = std::min(size, format::end_search);
    const Bytes tail = ReadAt(file, size - searched, searched);
    const auto found = FindSignature(tail);
    if (!found) {
        findings.AddClosing({kEndRule, "", AtOffset(size),
                             "this is no ZIP: the record that ends its directory is missing"});
        return std::nullopt;
    }
    const nuo::byte* const at = tail.begin() + *found;
    EndRecord end;
    end.offset = size - searched + *found;
    const std::uint64_t left = size - end.offset;
    if (left < format::end_size - 2) {
        findings.AddClosing({kEndRule, "", AtOffset(end.offset),
                             "the record that ends the directory of the ZIP is cut short"});
        return std::nullopt;
    }
    end.entries = format::get16(at + 10);
    end.size = format::get32(at + 12);
    end.directory = format::get32(at + 16);
    if (format::get16(at + 4) != 0 || format::get16(at + 6) != 0 ||
        format::get16(at + 8) != end.entries)
        findings.Add({kEndRule, "", AtOffset(end.offset + 4),
                      "the ZIP says that it is spread over several disks"});
    const std::uint64_t comment = left < format::end_size ? 0 : format::get16(at + 20);
    if (left != format::end_size + comment)
        findings.Add({kEndRule, "", AtOffset(end.offset + format::end_size - 2),
                      "the comment of the ZIP does not end where the file ends"});
    return end;
}

// Reads the directory header by header and stops where it can no longer be followed.
class DirectoryWalk {
public:
    DirectoryWalk(const Bytes& bytes, const EndRecord& end, Findings& findings)
        : bytes_(bytes), end_(end), findings_(findings) {}

    std::vector<ZipEntry> Entries() {
        std::vector<ZipEntry> entries;
        for (std::uint32_t index = 0; index < end_.entries; ++index) {
            ZipEntry entry;
            if (!ReadEntry(index, entry)) return entries;
            entries.push_back(std::move(entry));
        }
        if (at_ != end_.size)
            findings_.Add({kDirectoryRule, "", AtOffset(Offset()),
                           "the directory of the ZIP has " + std::to_string(end_.size) +
                               " bytes, and its entries take " + std::to_string(at_)});
        return entries;
    }

private:
    std::uint64_t Offset() const { return end_.directory + at_; }
    bool Refuse(std::uint32_t index, const std::string& what) {
        findings_.AddClosing({kDirectoryRule, "", AtOffset(Offset()),
                              what + " " + std::to_string(index + 1) + " of " +
                                  std::to_string(end_.entries) + " of the directory of the ZIP"});
        return false;
    }

    bool ReadEntry(std::uint32_t index, ZipEntry& entry) {
        const std::uint64_t left = bytes_.size() - at_;
        const nuo::byte* const head = bytes_.begin() + at_;
        if (left >= 4 && format::get32(head) != format::central_signature)
            return Refuse(index, "there is no entry header where there should be entry");
        if (left < format::central_size) return Refuse(index, "the directory ends within entry");
        entry.central_offset = Offset();
        entry.flags = format::get16(head + 8);
        entry.method = format::get16(head + 10);
        entry.crc = format::get32(head + 16);
        entry.packed_size = format::get32(head + 20);
        entry.size = format::get32(head + 24);
        entry.is_folder = (format::get32(head + 38) & format::attribute_directory) != 0;
        entry.header_offset = format::get32(head + 42);
        const std::uint64_t name = format::get16(head + 28);
        const std::uint64_t extra = format::get16(head + 30);
        const std::uint64_t whole = format::central_size + name + extra + format::get16(head + 32);
        if (whole > left) return Refuse(index, "the directory ends within entry");
        entry.name.assign(reinterpret_cast<const char*>(head) + format::central_size, name);
        entry.data_offset = entry.header_offset + format::local_size + name + extra;
        if (entry.data_offset >= velmor::fs::file_header::no_offset)
            return Refuse(index, "the data lies past the end of the file for entry");
        at_ += whole;
        return true;
    }

    const Bytes& bytes_;
    const EndRecord& end_;
    Findings& findings_;
    std::uint64_t at_ = 0;
};

void FindTwins(const std::vector<ZipEntry>& entries, Findings& findings) {
    std::map<std::string, const ZipEntry*> seen;
    for (const ZipEntry& entry : entries) {
        const std::string name = PlainName(entry.name);
        if (name.empty()) {
            findings.Add({"zip.name", "", AtOffset(entry.central_offset),
                          "an entry of the ZIP has no name"});
            continue;
        }
        if (!seen.emplace(name, &entry).second)
            findings.AddClosing({"zip.duplicate", name, AtOffset(entry.central_offset),
                                 "a second entry of the ZIP has this name"});
    }
}

}  // namespace

std::string PlainName(const std::string& name) {
    std::string plain;
    for (char c : name)
        if (c != '/' || (!plain.empty() && plain.back() != '/')) plain += c;
    while (!plain.empty() && plain.back() == '/')
        plain.pop_back();
    return plain;
}

ZipListing ListZip(nuo::archive::iarchive& file, Findings& findings) {
    ZipListing listing;
    const std::uint64_t size = file.query_random()->size();
    if (size == 0) return listing;
    const auto end = FindEnd(file, findings);
    if (!end) return listing;
    if (std::uint64_t{end->directory} + end->size > size) {
        findings.AddClosing({kEndRule, "", AtOffset(end->offset + 12),
                             "the directory of the ZIP (" + std::to_string(end->size) +
                                 " bytes from offset " + std::to_string(end->directory) +
                                 ") reaches past the end of the file"});
        return listing;
    }
    listing.directory_offset = end->directory;
    const Bytes bytes = ReadAt(file, end->directory, end->size);
    listing.entries = DirectoryWalk(bytes, *end, findings).Entries();
    FindTwins(listing.entries, findings);
    return listing;
}

}  // namespace halvern::inspect
