#include "assets/library/libraryresources.h"

#include "assets/library/bytecopy.h"
#include "assets/library/libraryparts.h"
#include "assets/library/resourceuri.h"
#include "assets/manager/base/path.h"
#include "assets/package/jpkfs.h"
#include "assets/property/urivalues.h"
#include "nuo/common/archive/primitives.h"
#include "nuo/common/buffer_archive.h"
#include "nuo/common/file_archive.h"
#include "nuo/common/fsutility.h"
#include "nuo/common/string_builder.h"
#include "velmor/array.h"
#include "velmor/object.h"
#include "velmor/vfs/vfs_functions.h"

namespace korvanet::platform::assets {

namespace fs = velmor::fs;

namespace {

// Chosen by the layout: after so many names that are taken the file is refused.
constexpr int kMaxNameTries = 100;

nuo::archive::archive_ptr OpenFile(nuo::string_ref path) {
    const auto status = nuo::fsutility::stat_file(path);
    if (!status || !status->is_regular) return nullptr;
    try {
        return nuo::archive::make_archive<nuo::archive::file_read_archive>(path);
    } catch (const nuo::exception&) {  // as good as none
        return nullptr;
    }
}

nuo::archive::archive_ptr OpenForeignPart(ILibraryHost& host, nuo::string_ref path) {
    try {
        return host.OpenForeignPart(path);
    } catch (const nuo::exception&) {  // damage of another library is none of this one
        return nullptr;
    }
}

bool IsRegularFile(nuo::string_ref path) {
    const auto status = nuo::fsutility::stat_file(path);
    return status && status->is_regular;
}

bool LiesBelow(nuo::string_ref path, nuo::string_ref folder) {
    return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

nuo::string_ref ParentOf(nuo::string_ref path) {
    const auto slash = path.rfind('/');
    return slash == nuo::string_ref::npos ? nuo::string_ref() : path.substr(0, slash);
}

// The elements of a URI property: one text, or a list of them.
template <class Visit>
void ForEachText(PropertyBase& property, Visit&& visit) {
    const velmor::Object data = property.DataObject();
    if (auto* text = velmor::bindOrNull<nuo::string>(data)) {
        visit(0, *text);
        return;
    }
    auto* list = velmor::bindOrNull<velmor::Array>(data);
    if (list == nullptr) return;
    for (std::uint64_t index = 0; index < list->size(); ++index)
        visit(index, *static_cast<nuo::string*>((*list)[index].data()));
}

}  // namespace

LibraryResources::LibraryResources(fs::IVfs& package, ILibraryHost& host,
                                   const nuo::string& identifier, const nuo::string& scratch_folder)
    : package_(package), host_(host), identifier_(identifier), scratch_folder_(scratch_folder) {}

nuo::string LibraryResources::FolderOf(nuo::string_ref definition, nuo::string_ref property,
                                       std::uint64_t index) const {
    if (legacy_) return CommonFolder();
    nuo::string_builder path;
    path.append(CommonFolder()).append('/').append(PathComponent(definition)).append('/');
    path.append(PathComponent(property)).append('/').append_number(index);
    return nuo::string(path);
}

nuo::string LibraryResources::CommonFolder() const {
    if (!legacy_) return fs::joinPath(identifier_, "Resources");
    return fs::joinPath(kLegacyFolder, fs::joinPath(identifier_, "resources"));
}

nuo::string LibraryResources::Add(nuo::string_ref source, nuo::string_ref type,
                                  nuo::string_ref folder) {
    if (type.empty()) {
        const auto known = paths_.find(source);
        if (known != paths_.end() &&
            (PartExists(known->second) || taken_out_.count(known->second) != 0))
            return known->second;
    }
    Source opened = OpenSource(source);
    if (!opened.archive) return {};
    const nuo::string name = ResourceFileName(LeafOfPath(opened.name));
    if (name.empty()) return {};
    const nuo::string target = FreeTarget(folder, name);
    if (target.empty()) return {};
    Store(*opened.archive, folder, target);
    paths_.insert_or_assign(nuo::string(source), target);
    return target;
}

bool LibraryResources::Rewrite(PropertyBase& property, nuo::string_ref definition) {
    bool changed = false;
    ForEachText(property, [&](std::uint64_t index, nuo::string& value) {
        const nuo::string uri = Import(value, FolderOf(definition, property.Name(), index));
        if (uri.empty()) return;
        value = uri;
        changed = true;
    });
    auto* const texture = dynamic_cast<TextureURIValue*>(&property);
    if (changed && texture != nullptr) texture->ResetResolutionState();
    return changed;
}

nuo::archive::archive_ptr LibraryResources::OpenPart(nuo::string_ref path) {
    auto copy = nuo::archive::make_archive<nuo::archive::mem_read_write_archive>();
    const auto waiting = taken_out_.find(path);
    if (waiting != taken_out_.end()) {
        nuo::archive::write_all(*copy->query_writer(),
                                {waiting->second.begin(), waiting->second.end()});
    } else {
        const auto part = package_.create(path, fs::mode_read | fs::mode_random, fs::open_existing);
        if (!part) return nullptr;
        CopyAll(*part, *copy);
    }
    copy->query_random()->seek(0);
    return copy;
}

nuo::string LibraryResources::OwnFolder() const {
    return legacy_ ? fs::joinPath(kLegacyFolder, identifier_) : identifier_;
}

bool LibraryResources::IsOwn(nuo::string_ref path) const {
    return LiesBelow(path, OwnFolder());
}

// In either layout: while a library is converted it has both.
bool LibraryResources::IsHere(nuo::string_ref path) const {
    return LiesBelow(path, identifier_) ||
           LiesBelow(path, fs::joinPath(kLegacyFolder, identifier_));
}

LibraryResources::Source LibraryResources::OpenSource(nuo::string_ref source) {
    if (!IsResourceUri(source)) {
        const nuo::string path(WithoutFileScheme(source));
        return {OpenFile(path), path};
    }
    // Hosts are given the paths of resources with the separators of their world.
    const nuo::string path = WithSlashes(ResourcePath(source));
    return {IsHere(path) ? OpenPart(path) : OpenForeignPart(host_, path), path};
}

nuo::string LibraryResources::Import(nuo::string_ref value, nuo::string_ref folder) {
    if (value.empty()) return {};
    nuo::string source;
    if (IsResourceUri(value)) {
        if (IsOwn(WithSlashes(ResourcePath(value)))) return {};
        source = nuo::string(value);
    } else {
        source = host_.ResolvePath(WithoutFileScheme(value));
        if (source.empty() || !IsRegularFile(source)) return {};
    }
    // A type keeps each value a copy of its own, also when the file has changed since another named
    // it.
    const nuo::string path = Add(source, "uri", folder);
    return path.empty() ? nuo::string() : MakeResourceUri(path);
}

nuo::string LibraryResources::FreeTarget(nuo::string_ref folder, const nuo::string& name) {
    const nuo::string target = fs::joinPath(folder, name);
    if (!PartExists(target)) {
        numbers_.insert_or_assign(target, 0);
        return target;
    }
    int& number = numbers_.try_emplace(target, 0).first->second;
    for (int tries = 0; tries < kMaxNameTries; ++tries) {
        const nuo::string other = fs::joinPath(folder, NumberedFileName(name, number + 1 + tries));
        if (PartExists(other)) continue;
        number += 1 + tries;
        return other;
    }
    return {};
}

void LibraryResources::Store(nuo::archive::iarchive& source, nuo::string_ref folder,
                             nuo::string_ref target) {
    fs::recursiveCreateDir(host_.TempFs(), fs::joinPath(scratch_folder_, folder));
    const nuo::string_ref standing = NearestFolder(folder);
    NoteStored(target);
    nuo::archive::archive_ptr part;
    try {
        fs::recursiveCreateDir(package_, folder);
        part = package_.create(target, fs::mode_all, fs::open_or_create);
        if (!part) NUO_RAISE(JpkFsErr);
        part->query_writer()->truncate(0);
        CopyAll(source, *part);
    } catch (...) {  // a part that holds half a file is worse than none
        part.reset();
        RemoveWithFolders(target, standing);
        uncommitted_.erase(nuo::string(target));
        throw;
    }
}

void LibraryResources::NoteCommit() {
    uncommitted_.clear();
    taken_out_.clear();
}

void LibraryResources::DropUncommitted() {
    const auto is_own = [this](const nuo::string& path) { return IsOwn(path); };
    for (const nuo::string& path : uncommitted_)
        if (is_own(path)) RemoveWithFolders(path, OwnFolder());
    std::erase_if(uncommitted_, is_own);
    std::erase_if(taken_out_, [&](const auto& entry) { return is_own(entry.first); });
    std::erase_if(paths_, [&](const auto& entry) { return is_own(entry.second); });
    std::erase_if(numbers_, [&](const auto& entry) { return is_own(entry.first); });
}

void LibraryResources::TakeUncommittedOut() {
    for (const nuo::string& path : uncommitted_) {
        const auto part = OpenPart(path);
        if (!part) continue;
        nuo::buffer<nuo::byte> bytes;
        bytes.resize(part->query_random()->size());
        nuo::archive::read_exact(*part->query_reader(), {bytes.begin(), bytes.end()});
        taken_out_.insert_or_assign(path, std::move(bytes));
    }
}

void LibraryResources::PutUncommittedBack() {
    for (const auto& [path, bytes] : taken_out_) {
        const auto part = fs::recursiveCreate(package_, path, fs::mode_all, fs::open_or_create);
        if (!part) NUO_RAISE(JpkFsErr, path);
        part->query_writer()->truncate(0);
        nuo::archive::write_all(*part->query_writer(), {bytes.begin(), bytes.end()});
    }
    taken_out_.clear();
}

// A file that has the name of a folder is no folder.
void LibraryResources::RemoveWithFolders(nuo::string_ref path, nuo::string_ref upper) {
    package_.remove(path);
    for (path = ParentOf(path); LiesBelow(path, upper); path = ParentOf(path)) {
        const auto state = package_.state(path).state;
        if (state == fs::state_not_found) continue;
        if (state != fs::state_directory || package_.remove(path) != fs::er_ok) return;
    }
}

nuo::string_ref LibraryResources::NearestFolder(nuo::string_ref path) {
    while (!path.empty() && !PartExists(path))
        path = ParentOf(path);
    return path;
}

bool LibraryResources::PartExists(nuo::string_ref path) {
    return package_.state(path).state != fs::state_not_found;
}

}  // namespace korvanet::platform::assets
