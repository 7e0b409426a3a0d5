#include "inspect/verify.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <new>
#include <string_view>

#include "assets/library/libraryparts.h"
#include "assets/package/jpkfs.h"
#include "assets/package/packageoptions.h"
#include "assets/serialization/io/xmldefect.h"
#include "inspect/contentscheck.h"
#include "inspect/manifestcheck.h"
#include "inspect/packageparts.h"
#include "inspect/recordcheck.h"
#include "inspect/schemacheck.h"
#include "inspect/storecheck.h"
#include "inspect/versioncheck.h"
#include "inspect/zipdata.h"
#include "inspect/ziplisting.h"
#include "nuo/common/file_archive.h"
#include "velmor/vfs/zip_errors.h"

namespace halvern::inspect {
namespace {

using namespace korvanet::platform::assets;

// The library behind the ZIP, layer by layer. What one layer refuses the next ones do not look at.
class LibraryWalk {
public:
    LibraryWalk(PackageParts& parts, Findings& findings) : parts_(parts), findings_(findings) {}

    void Run() {
        if (!parts_.IsEmpty()) CheckManifests(parts_, findings_);
        if (parts_.Identifier().empty()) {
            findings_.AddClosing({"package.identifier", "", "",
                                  "the package holds no folder, which would be the library"});
            return;
        }
        if (parts_.Identifier() == "." || parts_.Identifier() == "..") {
            findings_.AddClosing({"package.identifier", "", "",
                                  "the folder of the library is named " + parts_.Identifier() +
                                      ", which means another"});
            return;
        }
        if (parts_.IsLegacy()) {
            CheckLegacy();
            return;
        }
        const VersionTable versions = CheckVersionTable(parts_, findings_);
        schemas_.Load(parts_, findings_);
        if (versions.toc.major > kHighestMajor) return;
        entries_ = CheckContents(parts_, versions.toc, findings_);
        CheckRecords(versions);
    }

private:
    void CheckLegacy() {
        const std::string path = Text(kLegacyFolder) + "/" + parts_.Path("objects.xml");
        if (!parts_.IsFile(path))
            findings_.AddClosing({"contents.missing", path, "", "the list of objects is missing"});
        else
            CheckXml(parts_, path, "contents.xml", true, findings_);
    }

    void CheckRecords(const VersionTable& versions) {
        RecordForm form;
        form.has_base_schema = schemas_.HoldsBaseSchema();
        form.has_version_guid =
            !(versions.definitions.major == 3 && versions.definitions.minor < 2);
        StoreCheck listings(parts_, parts_.Path(kDefinitionStorePart), findings_);
        StoreCheck instances(parts_, parts_.Path(kInstanceStorePart), findings_);
        RecordCheck records(parts_, schemas_, form, Names(), findings_);
        if (listings.IsReadable() && instances.IsReadable())
            for (const ContentsEntry& entry : entries_)
                CheckEntry(entry, listings, instances, records);
        // Of a library whose entries are not all known nobody can say which blocks they have.
        if (!findings_.IsClosed()) {
            listings.FindLostBlocks();
            instances.FindLostBlocks();
        }
        records.CheckSharedUris();
    }

    std::set<nuo::string, nuo::string_less> Names() const {
        std::set<nuo::string, nuo::string_less> names;
        for (const ContentsEntry& entry : entries_)
            if (entry.counts) names.insert(entry.entry.identifier);
        return names;
    }

    static void CheckEntry(const ContentsEntry& entry, StoreCheck& listings, StoreCheck& instances,
                           RecordCheck& records) {
        const TocEntry& told = entry.entry;
        if (!entry.counts) {
            listings.SetAside(told.definition_block);
            instances.SetAside(told.instance_block);
            return;
        }
        const std::string identifier = Text(told.identifier);
        const auto instance = instances.TakeRecord(told.instance_block, identifier);
        const auto listing = listings.TakeRecord(told.definition_block, identifier);
        if (!instance) return;
        const SchemaShape* const shape = records.CheckInstance(instances.Path(), entry, *instance);
        if (shape != nullptr && listing)
            records.CheckListing(listings.Path(), entry, *shape, *listing);
    }

    PackageParts& parts_;
    Findings& findings_;
    SchemaCheck schemas_;
    std::vector<ContentsEntry> entries_;
};

void WalkFile(nuo::archive::iarchive& file, Findings& findings) {
    const ZipListing listing = ListZip(file, findings);
    if (findings.IsClosed()) return;
    std::set<std::string> unreadable = CheckZipData(file, listing, findings);
    std::unique_ptr<PackageParts> parts;
    try {
        parts = std::make_unique<PackageParts>(file, std::move(unreadable), findings);
    } catch (const nuo::exception& failure) {
        findings.AddClosing({"zip.names", "", "",
                             "the names in the ZIP make no tree of folders: " + Words(failure)});
        return;
    }
    LibraryWalk(*parts, findings).Run();
}

std::string WhyUnreadable(const std::string& path) {
    struct stat state {};
    if (::stat(path.c_str(), &state) != 0 && (errno == ENOENT || errno == ENOTDIR))
        return "there is no such file";
    if (S_ISDIR(state.st_mode)) return "this is a folder and no file";
    if (state.st_mode != 0 && !S_ISREG(state.st_mode)) return "this is no regular file";
    return "the file cannot be read";
}

Findings Walk(const std::string& path) {
    Findings findings;
    try {
        nuo::archive::file_read_archive file(Ref(path));
        WalkFile(file, findings);
    } catch (const std::bad_alloc&) {
        findings.AddClosing({"limit", "", "", "reading the file takes more memory than there is"});
    } catch (const nuo::exception&) {
        findings.AddClosing({kFileRule, "", "", WhyUnreadable(path)});
    }
    return findings;
}

// What stands in the way of nothing, and so is no cause of a failure.
bool MayBeCause(const Finding& finding) {
    static constexpr std::array<std::string_view, 14> kHarmless{
        "connection",    "contents.schema", "contents.twice", "contents.type", "schema.name",
        "schema.report", "schema.property", "store.free",     "store.lost",    "store.size",
        "uri",           "version.entry",   "version.newer",  "zip.crc"};
    return !finding.rule.starts_with("package.") &&
           std::find(kHarmless.begin(), kHarmless.end(), finding.rule) == kHarmless.end();
}

std::string FirstOf(const std::vector<Finding>& findings) {
    auto found = std::find_if(findings.begin(), findings.end(),
                              [](const Finding& finding) { return finding.closes; });
    if (found == findings.end()) found = std::find_if(findings.begin(), findings.end(), MayBeCause);
    return found != findings.end() ? Describe(*found) : std::string();
}

// REQUIRES: nothing closes the file.
bool IsMarkedReadOnly(const std::string& path) {
    nuo::archive::file_read_archive file(Ref(path));
    velmor::fs::InMemory cache("inspect");
    velmor::fs::ZipFs zip(file, cache, "inspect", false);
    JpkFs package(zip, "inspect");
    const nuo::any value = package.getopt(kPackageOption, nuo::any(option_key{"", "read only"}));
    return !value.empty() && nuo::any_cast<option_value>(&value)->text == "1";
}

}  // namespace

std::vector<Finding> Verify(const std::string& path) {
    return Walk(path).Take();
}

std::string WhyNotOpened(const std::string& path) {
    return FirstOf(Verify(path));
}

std::string WhyNotRead(const std::string& path, const std::string& identifier) {
    const std::vector<Finding> findings = Verify(path);
    const std::string record = "record " + identifier;
    for (const Finding& finding : findings)
        if (finding.where == record || finding.where.starts_with(record + ","))
            return Describe(finding);
    return FirstOf(findings);
}

std::string WhyNoSchema(const std::string& path) {
    try {
        nuo::archive::file_read_archive file(Ref(path));
        const auto defect = FindXmlDefect(ReadAll(file));
        if (!defect) return {};
        return Text(defect->what) + ", line " + std::to_string(defect->line);
    } catch (const nuo::exception&) {
        return "the file cannot be read";
    }
}

std::string WhyNotSaved(const std::string& path) {
    const std::vector<Finding> findings = Verify(path);
    const auto closing = std::find_if(findings.begin(), findings.end(),
                                      [](const Finding& finding) { return finding.closes; });
    if (closing != findings.end()) return Describe(*closing);
    if (IsMarkedReadOnly(path))
        return "the library is marked as read-only, in core.xml, element read only";
    const auto newer = std::find_if(findings.begin(), findings.end(), [](const Finding& finding) {
        return finding.rule == "version.newer";
    });
    return newer != findings.end() ? Describe(*newer) : std::string();
}

}  // namespace halvern::inspect
