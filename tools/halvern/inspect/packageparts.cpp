#include "inspect/packageparts.h"

#include "assets/library/libraryparts.h"
#include "assets/serialization/io/xmldefect.h"
#include "nuo/common/archive/primitives.h"

namespace halvern::inspect {

namespace fs = velmor::fs;
namespace assets = korvanet::platform::assets;

std::string Words(const nuo::exception& failure) {
    const std::string text = WithoutPosition(failure.what());
    return text.empty() ? "it cannot be read" : text;
}

PackageParts::PackageParts(nuo::archive::iarchive& file, std::set<std::string> unreadable,
                           Findings& findings)
    : cache_("inspect"),
      zip_(file, cache_, "inspect", false),
      unreadable_(std::move(unreadable)),
      findings_(findings) {
    const std::string legacy = Text(assets::kLegacyFolder);
    legacy_ = zip_.state(Ref(legacy)).state == fs::state_directory;
    const std::vector<std::string> folders = Folders(legacy_ ? legacy : "");
    if (!folders.empty()) identifier_ = folders.front();
}

std::vector<std::string> PackageParts::Children(const std::string& folder, int state) {
    std::vector<std::string> names;
    const std::string prefix = folder.empty() ? "" : folder + "/";
    for (const fs::VfsNode& node : zip_.children(Ref(folder)))
        if (zip_.state(Ref(prefix + Text(node.path))).state == state)
            names.push_back(Text(node.path));
    return names;
}

std::uint64_t PackageParts::Size(const std::string& path) {
    return zip_.state(Ref(path)).size;
}

std::vector<std::string> PackageParts::Files(const std::string& folder) {
    return Children(folder, fs::state_file);
}

std::vector<std::string> PackageParts::Folders(const std::string& folder) {
    return Children(folder, fs::state_directory);
}

bool PackageParts::IsFile(const std::string& path) {
    return zip_.state(Ref(path)).state == fs::state_file;
}

nuo::archive::archive_ptr PackageParts::Open(const std::string& path) {
    if (IsUnreadable(path)) return nullptr;
    try {
        return zip_.create(Ref(path), fs::mode_read | fs::mode_random, fs::open_existing);
    } catch (const nuo::exception& failure) {
        MarkUnreadable(path);
        findings_.AddClosing({"zip.data", path, "", Words(failure)});
        return nullptr;
    }
}

std::optional<Bytes> PackageParts::Read(const std::string& path) {
    const nuo::archive::archive_ptr part = Open(path);
    if (!part) return std::nullopt;
    return ReadAll(*part);
}

Bytes ReadAll(nuo::archive::iarchive& file) {
    Bytes bytes;
    bytes.resize(file.query_random()->size());
    file.query_random()->seek(0);
    const nuo::byte* const end =
        nuo::archive::read_some(*file.query_reader(), {bytes.begin(), bytes.end()});
    bytes.resize(static_cast<std::uint64_t>(end - bytes.begin()));
    return bytes;
}

bool CheckXml(PackageParts& parts, const std::string& path, const char* rule, bool closes,
              Findings& findings) {
    const auto text = parts.Read(path);
    if (!text) return false;
    const auto defect = assets::FindXmlDefect(*text);
    if (!defect) return true;
    parts.MarkUnreadable(path);
    findings.Add({rule, path,
                  "line " + std::to_string(defect->line) + ", " + AtOffset(defect->offset),
                  "the part is not well-formed XML: " + Text(defect->what), closes});
    return false;
}

}  // namespace halvern::inspect
