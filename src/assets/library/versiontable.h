#pragma once

#include <cstdint>
#include <functional>

#include "nuo/common/string.h"
#include "nuo/common/string_builder.h"

// The text part that tells the versions of a library's binary streams; see
// docs/formats/version_table.md.
//
//   table := entry*
//   entry := key ":" value ("," | end)
//   value := integer character integer        white space inside a key or a value is dropped

namespace korvanet::platform::assets {

struct StreamVersion {
    std::int32_t major;
    std::int32_t minor;

    friend bool operator==(const StreamVersion& a, const StreamVersion& b) {
        return a.major == b.major && a.minor == b.minor;
    }
    friend bool operator<(const StreamVersion& a, const StreamVersion& b) {
        return a.major != b.major ? a.major < b.major : a.minor < b.minor;
    }
};

// Version and revision of a library as its author counts them.
struct LibraryVersion {
    std::uint32_t version;
    std::uint32_t revision;
};

// What this code writes, whatever it has read.
inline constexpr StreamVersion kTocVersion{3, 1};
inline constexpr StreamVersion kDefinitionVersion{3, 2};
inline constexpr StreamVersion kInstanceVersion{3, 1};
inline constexpr LibraryVersion kFirstLibraryVersion{1, 0};

// A stream of a higher major version is not rewritten, and a table of contents of one not read.
inline constexpr std::int32_t kHighestMajor = 3;

struct VersionTable {
    StreamVersion toc = kTocVersion;
    StreamVersion definitions = kDefinitionVersion;
    StreamVersion instances = kInstanceVersion;
    LibraryVersion library = kFirstLibraryVersion;
    bool complete = false;  // all four keys were read
};

// The keys of the table.
inline constexpr nuo::string_ref kTocKey{"AssetTableOfContents"};
inline constexpr nuo::string_ref kDefinitionKey{"DefinitionIteratorProperties"};
inline constexpr nuo::string_ref kInstanceKey{"InstanceProperties"};
inline constexpr nuo::string_ref kLibraryKey{"AssetLibVersion"};

// Gives each entry with its offset in the text, key and value without their white space. Returns
// where the last entry ends.
std::uint64_t ForEachVersionEntry(
    nuo::string_ref text,
    const std::function<void(std::uint64_t, nuo::string_ref key, nuo::string_ref value)>& visit);

// Takes one entry into the table. False, and nothing is changed, for another key and for a value
// that is no version or out of range.
bool TakeVersionEntry(VersionTable& table, nuo::string_ref key, nuo::string_ref value);

// Never fails: what cannot be read keeps its default.
VersionTable ParseVersionTable(nuo::string_ref text);

// The written form, with the three constants above.
nuo::string FormatVersionTable(LibraryVersion library);

}  // namespace korvanet::platform::assets
