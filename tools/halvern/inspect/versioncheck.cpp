#include "inspect/versioncheck.h"

#include <algorithm>
#include <array>
#include <set>

#include "assets/library/libraryparts.h"

namespace halvern::inspect {
namespace {

using namespace korvanet::platform::assets;

constexpr const char* kRule = "version.entry";
constexpr const char* kTocKey = "AssetTableOfContents";
constexpr const char* kDefinitionKey = "DefinitionIteratorProperties";
constexpr const char* kInstanceKey = "InstanceProperties";
constexpr const char* kLibraryKey = "AssetLibVersion";

std::string WithoutWhiteSpace(std::string_view text) {
    std::string kept;
    for (char c : text)
        if (c != ' ' && (c < '\t' || c > '\r')) kept += c;
    return kept;
}

// An integer, any one character, an integer.
bool IsPair(const std::string& value) {
    const auto number = [&](std::size_t from) {
        std::size_t at = from;
        if (at < value.size() && (value[at] == '-' || value[at] == '+')) ++at;
        const std::size_t digits = at;
        while (at < value.size() && value[at] >= '0' && value[at] <= '9')
            ++at;
        return at == digits || at - digits > 10 ? std::string::npos : at;
    };
    const std::size_t first = number(0);
    return first != std::string::npos && first < value.size() && number(first + 1) == value.size();
}

// Goes over the entries in the way of the reader, which passes over what it does not understand.
class EntryCheck {
public:
    EntryCheck(const std::string& path, std::string_view text, Findings& findings)
        : path_(path), text_(text), findings_(findings) {}

    void Run() {
        for (std::size_t at = 0; at < text_.size();) {
            const std::size_t colon = text_.find(':', at);
            if (colon == std::string_view::npos) {
                if (!WithoutWhiteSpace(text_.substr(at)).empty())
                    Add(at, "there is text that belongs to no entry");
                return;
            }
            const std::size_t comma = std::min(text_.find(',', colon), text_.size());
            Check(at, WithoutWhiteSpace(text_.substr(at, colon - at)),
                  WithoutWhiteSpace(text_.substr(colon + 1, comma - colon - 1)));
            at = comma + 1;
        }
    }

private:
    void Add(std::size_t at, const std::string& what) {
        findings_.Add({kRule, path_, AtOffset(at), what});
    }

    void Check(std::size_t at, const std::string& key, const std::string& value) {
        static constexpr std::array<std::string_view, 4> kKeys{kTocKey, kDefinitionKey,
                                                               kInstanceKey, kLibraryKey};
        if (std::find(kKeys.begin(), kKeys.end(), key) == kKeys.end())
            Add(at, "the key \"" + key + "\" means nothing");
        else if (!IsPair(value))
            Add(at, "the value \"" + value + "\" of " + key + " is no version");
        else if (!seen_.insert(key).second)
            Add(at, key + " stands a second time");
    }

    const std::string& path_;
    std::string_view text_;
    Findings& findings_;
    std::set<std::string> seen_;
};

std::string VersionText(const StreamVersion& version) {
    return std::to_string(version.major) + "." + std::to_string(version.minor);
}

void CheckStore(const std::string& path, const char* key, const StreamVersion& version,
                Findings& findings) {
    if (version.major > kHighestMajor)
        findings.Add({"version.newer", path, std::string("key ") + key,
                      std::string(key) + " is of version " + VersionText(version) +
                          ": the library can be read and not be saved"});
}

}  // namespace

VersionTable CheckVersionTable(PackageParts& parts, Findings& findings) {
    const std::string path = parts.Path(kVersionTablePart);
    const auto bytes = parts.Read(path);
    if (!bytes) return {};
    const std::string_view text(reinterpret_cast<const char*>(bytes->begin()), bytes->size());
    EntryCheck(path, text, findings).Run();
    const VersionTable table = ParseVersionTable(text);
    if (table.toc.major > kHighestMajor)
        findings.AddClosing({"version.newer", path, std::string("key ") + kTocKey,
                             "the table of contents is of version " + VersionText(table.toc) +
                                 ", which cannot be read"});
    CheckStore(path, kDefinitionKey, table.definitions, findings);
    CheckStore(path, kInstanceKey, table.instances, findings);
    return table;
}

}  // namespace halvern::inspect
