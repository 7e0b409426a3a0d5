#include "inspect/contentscheck.h"

#include <cstring>
#include <set>

#include "assets/library/datastoreformat.h"
#include "assets/library/libraryparts.h"
#include "nuo/common/string_builder.h"

namespace halvern::inspect {
namespace {

using namespace korvanet::platform::assets;

class EntryReader {
public:
    EntryReader(const std::string& path, const Bytes& bytes, StreamVersion version,
                Findings& findings)
        : path_(path), bytes_(bytes), version_(version), findings_(findings) {}

    std::vector<ContentsEntry> Entries() {
        std::vector<ContentsEntry> entries;
        while (at_ < bytes_.size()) {
            ContentsEntry entry;
            entry.offset = at_;
            entry.number = ++number_;
            if (!ReadEntry(entry.entry)) break;
            entry.counts = Counts(entry);
            if (entry.counts || ++passed_over_ < Findings::kMost)
                entries.push_back(std::move(entry));
            else if (passed_over_ == Findings::kMost)
                entries.emplace_back();
        }
        return entries;
    }

private:
    // Do readers take the entry? With a finding when not.
    bool Counts(const ContentsEntry& entry) {
        const TocEntry& told = entry.entry;
        if (told.definition_block == kNoBlock || told.instance_block == kNoBlock) {
            findings_.Add({"contents.block", path_, entry.Where(),
                           std::string("an entry without a block of its ") +
                               (told.instance_block == kNoBlock ? "instance" : "definition") +
                               " properties is passed over"});
            return false;
        }
        if (seen_.insert(told.identifier).second) return true;
        findings_.Add({"contents.twice", path_, entry.Where(),
                       "the identifier stands a second time, and the entry is passed over"});
        return false;
    }

    bool ReadEntry(TocEntry& entry) {
        return ReadText(entry.identifier, "identifier") &&
               ReadText(entry.asset_type, "asset type") &&
               ReadNumber(entry.definition_block, "definition block") &&
               ReadNumber(entry.instance_block, "instance block") &&
               (version_.minor < 1 || ReadText(entry.base_schema, "base schema"));
    }

    bool ReadNumber(std::uint32_t& number, const char* field) {
        if (bytes_.size() - at_ < sizeof number)
            return Refuse(std::string("the file ends within the ") + field);
        std::memcpy(&number, bytes_.begin() + at_, sizeof number);
        at_ += sizeof number;
        return true;
    }

    bool ReadText(nuo::string& text, const char* field) {
        const std::uint64_t start = at_;
        std::uint32_t length = 0;
        if (!ReadNumber(length, field)) return false;
        if (length > bytes_.size() - at_) {
            at_ = start;
            return Refuse("the length " + std::to_string(length) + " of the " + field +
                          " reaches past the end");
        }
        text = nuo::string_ref(reinterpret_cast<const char*>(bytes_.begin()) + at_, length);
        at_ += length;
        return true;
    }

    bool Refuse(const std::string& what) {
        findings_.AddClosing({"contents.entry", path_,
                              "entry " + std::to_string(number_) + ", " + AtOffset(at_), what});
        return false;
    }

    const std::string& path_;
    const Bytes& bytes_;
    StreamVersion version_;
    Findings& findings_;
    std::uint64_t at_ = 0;
    std::uint64_t number_ = 0;
    std::size_t passed_over_ = 0;
    std::set<nuo::string, nuo::string_less> seen_;
};

}  // namespace

std::string ContentsEntry::Where() const {
    return "entry " + std::to_string(number) + " (" + Text(entry.identifier) + "), " +
           AtOffset(offset);
}

std::vector<ContentsEntry> CheckContents(PackageParts& parts, StreamVersion version,
                                         Findings& findings) {
    const std::string path = parts.Path(kContentsPart);
    if (!parts.IsFile(path)) {
        findings.AddClosing({"contents.missing", path, "", "the table of contents is missing"});
        return {};
    }
    const auto bytes = parts.Read(path);
    if (!bytes) return {};
    return EntryReader(path, *bytes, version, findings).Entries();
}

}  // namespace halvern::inspect
