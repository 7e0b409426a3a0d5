#include "assets/library/versiontable.h"

#include <set>

#include "nuo/common/string_algo/number.h"

namespace korvanet::platform::assets {
namespace {

constexpr std::size_t kKeys = 4;

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

bool FitsStream(std::int64_t number) {
    return number >= INT32_MIN && number <= INT32_MAX;
}

bool FitsLibrary(std::int64_t number) {
    return number >= 0 && number <= UINT32_MAX;
}

StreamVersion* StreamOf(VersionTable& table, nuo::string_ref key) {
    if (key == kTocKey) return &table.toc;
    if (key == kDefinitionKey) return &table.definitions;
    return key == kInstanceKey ? &table.instances : nullptr;
}

void AppendPair(nuo::string_builder& text, nuo::string_ref key, std::int64_t major,
                std::int64_t minor) {
    text.append(key).append(':').append_number(major).append('.').append_number(minor);
}

}  // namespace

std::uint64_t ForEachVersionEntry(
    nuo::string_ref text,
    const std::function<void(std::uint64_t, nuo::string_ref, nuo::string_ref)>& visit) {
    std::uint64_t at = 0;
    while (at < text.size()) {
        const nuo::string_ref rest = text.substr(at);
        const std::uint64_t colon = rest.find(':');
        if (colon == nuo::string_ref::npos) break;
        const nuo::string_builder key = WithoutWhiteSpace(rest.substr(0, colon));
        const nuo::string_ref behind = rest.substr(colon + 1);
        const std::uint64_t comma = behind.find(',');
        const nuo::string_builder value = WithoutWhiteSpace(behind.substr(0, comma));
        visit(at, key, value);
        at = comma == nuo::string_ref::npos ? text.size() : at + colon + 1 + comma + 1;
    }
    return at;
}

bool TakeVersionEntry(VersionTable& table, nuo::string_ref key, nuo::string_ref value) {
    std::int64_t major = 0;
    std::int64_t minor = 0;
    if (!ParsePair(value, major, minor)) return false;
    if (key == kLibraryKey) {
        if (!FitsLibrary(major) || !FitsLibrary(minor)) return false;
        table.library = {static_cast<std::uint32_t>(major), static_cast<std::uint32_t>(minor)};
        return true;
    }
    StreamVersion* const stream = StreamOf(table, key);
    if (stream == nullptr || !FitsStream(major) || !FitsStream(minor)) return false;
    *stream = {static_cast<std::int32_t>(major), static_cast<std::int32_t>(minor)};
    return true;
}

VersionTable ParseVersionTable(nuo::string_ref text) {
    VersionTable table;
    std::set<nuo::string, nuo::string_less> seen;
    ForEachVersionEntry(text, [&](std::uint64_t, nuo::string_ref key, nuo::string_ref value) {
        if (TakeVersionEntry(table, key, value)) seen.insert(nuo::string(key));
    });
    table.complete = seen.size() == kKeys;
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
