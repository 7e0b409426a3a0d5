#include "inspect/versioncheck.h"

#include <set>

#include "assets/library/libraryparts.h"

namespace halvern::inspect {
namespace {

using namespace korvanet::platform::assets;

constexpr const char* kRule = "version.entry";
bool IsKey(nuo::string_ref key) {
    return key == kTocKey || key == kDefinitionKey || key == kInstanceKey || key == kLibraryKey;
}

bool IsBlank(std::string_view text) {
    return text.find_first_not_of(" \t\n\v\f\r") == std::string_view::npos;
}

// Goes over the entries in the way of the reader, which passes over what it does not understand.
class EntryCheck {
public:
    EntryCheck(const std::string& path, std::string_view text, Findings& findings)
        : path_(path), text_(text), findings_(findings) {}

    void Run() {
        const std::uint64_t end =
            ForEachVersionEntry(text_, [this](std::uint64_t at, nuo::string_ref key,
                                              nuo::string_ref value) { Check(at, key, value); });
        if (!IsBlank(text_.substr(end))) Add(end, "there is text that belongs to no entry");
    }

private:
    void Add(std::uint64_t at, const std::string& what) {
        findings_.Add({kRule, path_, AtOffset(at), what});
    }

    void Check(std::uint64_t at, nuo::string_ref key, nuo::string_ref value) {
        VersionTable ignored;
        const std::string name(key.view());
        if (!IsKey(key))
            Add(at, "the key \"" + name + "\" means nothing");
        else if (!TakeVersionEntry(ignored, key, value))
            Add(at,
                "the value \"" + std::string(value.view()) + "\" of " + name + " is no version");
        else if (!seen_.insert(name).second)
            Add(at, name + " stands a second time");
    }

    const std::string& path_;
    std::string_view text_;
    Findings& findings_;
    std::set<std::string> seen_;
};

std::string VersionText(const StreamVersion& version) {
    return std::to_string(version.major) + "." + std::to_string(version.minor);
}

void CheckStore(const std::string& path, nuo::string_ref key, const StreamVersion& version,
                Findings& findings) {
    if (version.major > kHighestMajor)
        findings.Add({"version.newer", path, "key " + Text(key),
                      Text(key) + " is of version " + VersionText(version) +
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
        findings.AddClosing({"version.newer", path, "key " + Text(kTocKey),
                             "the table of contents is of version " + VersionText(table.toc) +
                                 ", which cannot be read"});
    CheckStore(path, kDefinitionKey, table.definitions, findings);
    CheckStore(path, kInstanceKey, table.instances, findings);
    return table;
}

}  // namespace halvern::inspect
