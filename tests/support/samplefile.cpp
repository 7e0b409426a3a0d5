#include "support/samplefile.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "nuo/common/archive/primitives.h"
#include "nuo/common/file_archive.h"
#include "tests/support/paths.h"
#include "velmor/vfs/in_memory_fs.h"
#include "velmor/vfs/zip.h"
#include "velmor/vfs/zip_codec.h"

namespace halvern_tests {
namespace {

namespace fs = velmor::fs;

std::string Text(nuo::string_ref text) {
    return {text.begin(), text.end()};
}

void Append16(std::string& bytes, std::uint32_t number) {
    bytes += static_cast<char>(number & 0xFF);
    bytes += static_cast<char>(number >> 8 & 0xFF);
}

void Append32(std::string& bytes, std::uint32_t number) {
    Append16(bytes, number & 0xFFFF);
    Append16(bytes, number >> 16);
}

std::string ReadPart(fs::IVfs& zip, const std::string& path) {
    const auto part = zip.create(nuo::string_ref(std::string_view(path)),
                                 fs::mode_read | fs::mode_random, fs::open_existing);
    std::string data(part->query_random()->size(), '\0');
    nuo::archive::read_some(*part->query_reader(), {data.data(), data.size()});
    return data;
}

}  // namespace

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open()) throw std::runtime_error("no file " + path);
    return {std::istreambuf_iterator<char>(file), {}};
}

void WriteFile(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

std::uint16_t Get16(const std::string& bytes, std::size_t at) {
    std::uint16_t number = 0;
    std::memcpy(&number, bytes.data() + at, sizeof number);
    return number;
}

std::uint32_t Get32(const std::string& bytes, std::size_t at) {
    std::uint32_t number = 0;
    std::memcpy(&number, bytes.data() + at, sizeof number);
    return number;
}

void Put16(std::string& bytes, std::size_t at, std::uint16_t number) {
    std::memcpy(bytes.data() + at, &number, sizeof number);
}

void Put32(std::string& bytes, std::size_t at, std::uint32_t number) {
    std::memcpy(bytes.data() + at, &number, sizeof number);
}

std::string Replaced(const std::string& text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    if (at == std::string::npos) throw std::runtime_error("no \"" + from + "\" to replace");
    return std::string(text).replace(at, from.size(), to);
}

SampleFile::SampleFile(const std::string& name) {
    nuo::archive::file_read_archive file(nuo::string_ref(std::string_view(DataFile(name))));
    fs::InMemory cache("test");
    fs::ZipFs zip(file, cache, "test", false);
    std::vector<std::string> folders{""};
    while (!folders.empty()) {
        const std::string folder = folders.back();
        folders.pop_back();
        for (const fs::VfsNode& node : zip.children(nuo::string_ref(std::string_view(folder)))) {
            const std::string path = (folder.empty() ? "" : folder + "/") + Text(node.path);
            const bool is_folder =
                zip.state(nuo::string_ref(std::string_view(path))).state == fs::state_directory;
            if (is_folder) {
                folders.push_back(path);
                if (folder.empty()) identifier_ = path;
            }
            entries_.push_back({path, is_folder ? "" : ReadPart(zip, path), is_folder});
        }
    }
    std::sort(entries_.begin(), entries_.end(),
              [](const Entry& a, const Entry& b) { return a.name < b.name; });
}

std::string& SampleFile::Part(const std::string& path) {
    for (Entry& entry : entries_)
        if (entry.name == path) return entry.data;
    throw std::runtime_error("no part " + path);
}

void SampleFile::Remove(const std::string& path) {
    Part(path);
    std::erase_if(entries_, [&](const Entry& entry) { return entry.name == path; });
}

void SampleFile::Add(const std::string& path, const std::string& data) {
    entries_.push_back({path, data, false});
}

std::string SampleFile::Bytes() const {
    std::string bytes;
    std::string directory;
    for (const Entry& entry : entries_) {
        const std::uint32_t crc = fs::zipChecksum(0, {entry.data.data(), entry.data.size()});
        const auto size = static_cast<std::uint32_t>(entry.data.size());
        std::string head;  // what both headers have
        for (const std::uint32_t number : {20U, 0x800U, 0U, 0U, 0x5C6EU})
            Append16(head, number);
        for (const std::uint32_t number : {crc, size, size})
            Append32(head, number);
        Append16(head, static_cast<std::uint32_t>(entry.name.size()));
        Append16(head, 0);
        Append32(directory, 0x02014b50);
        Append16(directory, 20);
        directory += head;
        for (int field = 0; field < 3; ++field)
            Append16(directory, 0);
        Append32(directory, entry.is_folder ? 16 : 0);
        Append32(directory, static_cast<std::uint32_t>(bytes.size()));
        directory += entry.name;
        Append32(bytes, 0x04034b50);
        bytes += head + entry.name + entry.data;
    }
    const auto start = static_cast<std::uint32_t>(bytes.size());
    bytes += directory;
    Append32(bytes, 0x06054b50);
    Append32(bytes, 0);
    Append16(bytes, static_cast<std::uint32_t>(entries_.size()));
    Append16(bytes, static_cast<std::uint32_t>(entries_.size()));
    Append32(bytes, static_cast<std::uint32_t>(directory.size()));
    Append32(bytes, start);
    Append16(bytes, 0);
    return bytes;
}

std::uint32_t StoreBytes::LastOf(std::uint32_t block) const {
    while (Next(block) != 0xFFFFFFFF)
        block = Next(block);
    return block;
}

std::vector<TocRow> ReadToc(const std::string& bytes) {
    std::vector<TocRow> rows;
    for (std::size_t at = 0; at < bytes.size();) {
        TocRow row{};
        row.offset = at;
        row.identifier = bytes.substr(at + 4, Get32(bytes, at));
        row.type_offset = at + 4 + row.identifier.size();
        row.blocks_offset = row.type_offset + 4 + Get32(bytes, row.type_offset);
        row.definition_block = Get32(bytes, row.blocks_offset);
        row.instance_block = Get32(bytes, row.blocks_offset + 4);
        row.schema_offset = row.blocks_offset + 8;
        at = row.end = row.schema_offset + 4 + Get32(bytes, row.schema_offset);
        rows.push_back(row);
    }
    return rows;
}

}  // namespace halvern_tests
