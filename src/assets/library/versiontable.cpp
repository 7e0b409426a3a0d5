#include "assets/library/versiontable.h"

#include "nuo/common/string_algo/number.h"

namespace korvanet::platform::assets {
namespace {

constexpr nuo::string_ref kTocKey{"AssetTableOfContents"};
constexpr nuo::string_ref kDefinitionKey{"DefinitionIteratorProperties"};
constexpr nuo::string_ref kInstanceKey{"InstanceProperties"};
constexpr nuo::string_ref kLibraryKey{"AssetLibVersion"};

bool IsWhiteSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

nuo::string_builder WithoutWhiteSpace(nuo::string_ref text) {
    nuo::string_builder kept;
    for (char c : text)
        if (!IsWhiteSpace(c)) kept.append(c);
    return kept;
}

// An integer, any one character, an integer.
bool ParsePair(nuo::string_ref value, std::int64_t& major, std::int64_t& minor) {
    const auto first = nuo::take_int64(value);
    if (!first || value.empty()) return false;
    nuo::string_ref rest = value.substr(1);
    const auto second = nuo::take_int64(rest);
    if (!second) return false;
    major = *first;
    minor = *second;
    return true;
}

// Remembers which keys were seen while it fills the table.
class TableFiller {
public:
    explicit TableFiller(VersionTable& table) : table_(table) {}

    void Take(nuo::string_ref key, nuo::string_ref value) {
        std::int64_t major = 0;
        std::int64_t minor = 0;
        if (!ParsePair(value, major, minor)) return;
        if (key == kLibraryKey) {
            TakeLibrary(major, minor);
            return;
        }
        const unsigned stream = StreamOf(key);
        if (stream == kStreams || !FitsStream(major) || !FitsStream(minor)) return;
        StreamVersion* const versions[] = {&table_.toc, &table_.definitions, &table_.instances};
        *versions[stream] = {static_cast<std::int32_t>(major), static_cast<std::int32_t>(minor)};
        seen_ |= 1U << stream;
    }

    bool Complete() const { return seen_ == (1U << (kStreams + 1)) - 1; }

private:
    static constexpr unsigned kStreams = 3;

    static unsigned StreamOf(nuo::string_ref key) {
        if (key == kTocKey) return 0;
        if (key == kDefinitionKey) return 1;
        return key == kInstanceKey ? 2 : kStreams;
    }
    static bool FitsStream(std::int64_t number) {
        return number >= INT32_MIN && number <= INT32_MAX;
    }
    void TakeLibrary(std::int64_t version, std::int64_t revision) {
        const auto fits = [](std::int64_t number) { return number >= 0 && number <= UINT32_MAX; };
        if (!fits(version) || !fits(revision)) return;
        table_.library = {static_cast<std::uint32_t>(version),
                          static_cast<std::uint32_t>(revision)};
        seen_ |= 1U << kStreams;
    }

    VersionTable& table_;
    unsigned seen_ = 0;
};

void AppendPair(nuo::string_builder& text, nuo::string_ref key, std::int64_t major,
                std::int64_t minor) {
    text.append(key).append(':').append_number(major).append('.').append_number(minor);
}

}  // namespace

VersionTable ParseVersionTable(nuo::string_ref text) {
    VersionTable table;
    TableFiller filler(table);
    while (true) {
        const std::uint64_t colon = text.find(':');
        if (colon == nuo::string_ref::npos) break;
        const nuo::string_builder key = WithoutWhiteSpace(text.substr(0, colon));
        text = text.substr(colon + 1);
        const std::uint64_t comma = text.find(',');
        const nuo::string_builder value = WithoutWhiteSpace(text.substr(0, comma));
        text = comma == nuo::string_ref::npos ? nuo::string_ref() : text.substr(comma + 1);
        filler.Take(key, value);
    }
    table.complete = filler.Complete();
    return table;
}

nuo::string FormatVersionTable(LibraryVersion library) {
    nuo::string_builder text;
    AppendPair(text, kTocKey, kTocVersion.major, kTocVersion.minor);
    text.append(",\n");
    AppendPair(text, kDefinitionKey, kDefinitionVersion.major, kDefinitionVersion.minor);
    text.append(",\n");
    AppendPair(text, kInstanceKey, kInstanceVersion.major, kInstanceVersion.minor);
    text.append(",\n");
    AppendPair(text, kLibraryKey, library.version, library.revision);
    text.append('\n');
    return nuo::string(text);
}

}  // namespace korvanet::platform::assets
