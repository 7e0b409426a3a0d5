#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Copies of sample libraries that tests damage: the parts of a package as texts, and the bytes of a
// file as one text.

namespace halvern_tests {

// All bytes of a file, and a file of these bytes.
std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, const std::string& bytes);

// Little-endian numbers inside of bytes.
std::uint16_t Get16(const std::string& bytes, std::size_t at);
std::uint32_t Get32(const std::string& bytes, std::size_t at);
void Put16(std::string& bytes, std::size_t at, std::uint16_t number);
void Put32(std::string& bytes, std::size_t at, std::uint32_t number);

// `text` with the first `from` replaced by `to`; a test that does not find it fails.
std::string Replaced(const std::string& text, const std::string& from, const std::string& to);

// The parts of a sample, written back as a sound ZIP of stored entries.
class SampleFile {
public:
    // `name` is that of a file in tests/data/.
    explicit SampleFile(const std::string& name);

    // The folder of the library.
    const std::string& Identifier() const { return identifier_; }
    // The path of a part below that folder.
    std::string Path(const std::string& below) const { return identifier_ + "/" + below; }
    // The bytes of a part, to be changed in place.
    std::string& Part(const std::string& path);
    void Remove(const std::string& path);
    void Add(const std::string& path, const std::string& data);

    std::string Bytes() const;

private:
    struct Entry {
        std::string name;
        std::string data;
        bool is_folder;
    };

    std::vector<Entry> entries_;
    std::string identifier_;
};

// A block store in the bytes of its part.
class StoreBytes {
public:
    explicit StoreBytes(std::string& bytes) : bytes_(bytes) {}

    static std::size_t OffsetOf(std::uint32_t block) { return 16 + std::size_t{136} * block; }
    std::uint32_t Count() const { return static_cast<std::uint32_t>((bytes_.size() - 16) / 136); }
    std::uint32_t Next(std::uint32_t block) const { return Get32(bytes_, OffsetOf(block)); }
    std::uint16_t Used(std::uint32_t block) const { return Get16(bytes_, OffsetOf(block) + 4); }
    std::uint16_t Head(std::uint32_t block) const { return Get16(bytes_, OffsetOf(block) + 6); }
    void SetNext(std::uint32_t block, std::uint32_t next) { Put32(bytes_, OffsetOf(block), next); }
    void SetUsed(std::uint32_t block, std::uint16_t used) {
        Put16(bytes_, OffsetOf(block) + 4, used);
    }
    void SetHead(std::uint32_t block, std::uint16_t head) {
        Put16(bytes_, OffsetOf(block) + 6, head);
    }
    std::uint32_t FirstFree() const { return Get32(bytes_, 4); }
    std::uint32_t LastOf(std::uint32_t block) const;

private:
    std::string& bytes_;
};

// One entry of a table of contents.
struct TocRow {
    std::string identifier;
    std::uint32_t definition_block;
    std::uint32_t instance_block;
    std::size_t offset;         // of the entry
    std::size_t type_offset;    // of the asset type's length
    std::size_t blocks_offset;  // of the definition block
    std::size_t schema_offset;  // of the base schema's length
    std::size_t end;
};
std::vector<TocRow> ReadToc(const std::string& bytes);

}  // namespace halvern_tests
