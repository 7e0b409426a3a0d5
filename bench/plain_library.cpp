#include "bench/plain_library.h"

#include <expat.h>
#include <zlib.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace halvern_bench {
namespace {

template <class T>
T Get(const char* at) {
    T value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

// Numbers and texts one after the other.
class Bytes {
public:
    explicit Bytes(const std::string& bytes) : at_(bytes.data()), end_(at_ + bytes.size()) {}

    bool AtEnd() const { return at_ == end_; }
    template <class T>
    T Number() {
        const T value = Get<T>(at_);
        at_ += sizeof value;
        return value;
    }
    std::string Text() {
        const auto size = Number<std::uint32_t>();
        std::string text(at_, size);
        at_ += size;
        return text;
    }
    std::vector<std::string> Texts() {
        std::vector<std::string> texts(Number<std::uint32_t>());
        for (std::string& text : texts)
            text = Text();
        return texts;
    }

private:
    const char* at_;
    const char* end_;
};

std::string Inflate(const std::string& packed, std::uint32_t size) {
    std::string bytes(size, '\0');
    z_stream stream{};
    ::inflateInit2(&stream, -15);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
    stream.avail_in = static_cast<uInt>(packed.size());
    stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
    stream.avail_out = size;
    const int code = ::inflate(&stream, Z_FINISH);
    ::inflateEnd(&stream);
    if (code != Z_STREAM_END) throw std::runtime_error("bad data");
    return bytes;
}

void ParseXml(const std::string& text) {
    const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(
        ::XML_ParserCreate(nullptr), ::XML_ParserFree);
    if (::XML_Parse(parser.get(), text.data(), static_cast<int>(text.size()), 1) != XML_STATUS_OK)
        throw std::runtime_error("bad XML");
}

std::string ReadChain(const std::string& store, std::uint32_t block) {
    constexpr std::uint32_t kNone = 0xFFFFFFFF;
    std::string record;
    while (block != kNone) {
        const char* const at = store.data() + 16 + std::size_t{block} * 136;
        record.append(at + 8, Get<std::uint16_t>(at + 4));
        block = Get<std::uint32_t>(at);
    }
    return record;
}

PlainLibrary::Table ReadListing(const std::string& record, std::string name) {
    Bytes in(record);
    PlainLibrary::Table table;
    table.emplace("name", std::move(name));
    // The listing group of the root schema, in its order.
    table.emplace("BaseSchema", in.Text());
    table.emplace("Hidden", in.Number<char>() != 0);
    table.emplace("UIName", in.Text());
    table.emplace("VersionGUID", in.Text());
    table.emplace("category", in.Texts());
    table.emplace("description", in.Text());
    table.emplace("keyword", in.Texts());
    table.emplace("thumbnail", in.Texts());
    return table;
}

}  // namespace

PlainLibrary::PlainLibrary(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    const char* const zip = bytes.data();
    const char* const end = zip + bytes.rfind("PK\x05\x06");
    const char* at = zip + Get<std::uint32_t>(end + 16);
    for (int left = Get<std::uint16_t>(end + 10); left > 0; --left) {
        const auto name_size = Get<std::uint16_t>(at + 28);
        const char* const head = zip + Get<std::uint32_t>(at + 42);
        const char* const data =
            head + 30 + Get<std::uint16_t>(head + 26) + Get<std::uint16_t>(head + 28);
        entries_.push_back({std::string(at + 46, name_size),
                            std::string(data, Get<std::uint32_t>(at + 20)),
                            Get<std::uint32_t>(at + 24), Get<std::uint16_t>(at + 10) != 0});
        at += 46 + name_size + Get<std::uint16_t>(at + 30) + Get<std::uint16_t>(at + 32);
    }
}

std::uint64_t PlainLibrary::InflatedSize() const {
    std::uint64_t size = 0;
    for (const Entry& entry : entries_)
        size += entry.size;
    return size;
}

std::vector<PlainLibrary::Table> PlainLibrary::List() const {
    std::string contents;
    std::string store;
    for (const Entry& entry : entries_) {
        std::string bytes = entry.deflated ? Inflate(entry.packed, entry.size) : entry.packed;
        if (entry.name.ends_with(".xml")) ParseXml(bytes);
        if (entry.name.ends_with("/AssetTableOfContents.bin"))
            contents = std::move(bytes);
        else if (entry.name.ends_with("/DefinitionIteratorProperties.bin"))
            store = std::move(bytes);
    }
    std::vector<Table> tables;
    for (Bytes in(contents); !in.AtEnd();) {
        std::string name = in.Text();
        in.Text();  // the asset type
        const auto definition = in.Number<std::uint32_t>();
        in.Number<std::uint32_t>();  // the other record
        in.Text();                   // the schema
        tables.push_back(ReadListing(ReadChain(store, definition), std::move(name)));
    }
    return tables;
}

Listed Count(const std::vector<PlainLibrary::Table>& tables) {
    Listed listed;
    for (const auto& table : tables) {
        ++listed.definitions;
        for (const auto& [name, value] : table) {
            if (const auto* text = std::get_if<std::string>(&value))
                listed.characters += text->size();
            else if (const auto* texts = std::get_if<std::vector<std::string>>(&value))
                for (const std::string& one : *texts)
                    listed.characters += one.size();
            else
                listed.characters += std::get<bool>(value) ? 1 : 0;
        }
    }
    return listed;
}

}  // namespace halvern_bench
