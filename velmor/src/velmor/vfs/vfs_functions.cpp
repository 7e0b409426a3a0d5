#include "velmor/vfs/vfs_functions.h"

#include <memory>
#include <vector>

#include "nuo/common/archive/primitives.h"
#include "nuo/common/file_archive.h"
#include "velmor/vfs/path_walker.h"
#include "velmor/vfs/rootfs.h"

namespace velmor::fs {

namespace {

constexpr std::size_t copy_chunk = 0x10000;

std::uint64_t copyBytes(nuo::archive::reader& from, nuo::archive::writer& to) {
    const auto chunk = std::make_unique<nuo::byte[]>(copy_chunk);
    std::uint64_t copied = 0;
    for (;;) {
        const nuo::byte* last = nuo::archive::read_some(from, {chunk.get(), copy_chunk});
        if (last == chunk.get()) return copied;
        nuo::archive::write_all(to, {chunk.get(), last});
        copied += static_cast<std::uint64_t>(last - chunk.get());
    }
}

fs_error copyArchive(nuo::archive::iarchive& from, nuo::archive::iarchive& to) {
    nuo::archive::reader* in = from.query_reader();
    nuo::archive::writer* out = to.query_writer();
    if (in == nullptr || out == nullptr) return er_open_failed;
    try {
        const std::uint64_t copied = copyBytes(*in, *out);
        out->truncate(copied);
        nuo::archive::sequence* sized = from.query_sequence();
        return sized == nullptr || sized->size() == copied ? er_ok : er_data_error;
    } catch (const nuo::archive::archive_append_failed&) {
        return er_data_error;
    } catch (const nuo::archive::read_failed&) {
        return er_data_error;
    }
}

// The names are taken down first: removing while a directory is read loses entries.
std::vector<nuo::string> childNames(IVfs& fs, nuo::string_ref path) {
    std::vector<nuo::string> names;
    for (const VfsNode& child : fs.children(path))
        names.push_back(child.path);
    return names;
}

}  // namespace

fs_error recursiveRemove(IVfs& fs, nuo::string_ref path) {
    // Tried on directories too: this takes empty ones, and links without what they lead to.
    const fs_error plain = fs.remove(path);
    // The top cannot be removed, but what it holds goes.
    if (plain != er_not_empty && plain != er_invalid) return plain;
    for (const nuo::string& name : childNames(fs, path)) {
        const fs_error result = recursiveRemove(fs, joinPath(path, name));
        if (result != er_ok) return result;
    }
    return fs.remove(path);
}

fs_error recursiveCreateDir(IVfs& fs, nuo::string_ref path) {
    // Most of the way is there mostly, so it is looked for from below.
    nuo::string_ref present = path;
    int state = fs.state(present).state;
    while (state == state_not_found && private_::countComponents(present) > 1) {
        present = folderOf(present);
        state = fs.state(present).state;
    }
    if (state != state_directory && state != state_not_found) return er_invalid;
    const char* missing = state == state_directory ? present.end() : path.begin();
    private_::PathWalker walker({missing, path.end()});
    nuo::string_ref component;
    while (walker.next(component)) {
        const nuo::string_ref prefix(path.begin(), component.end());
        const fs_error result = fs.createDir(prefix);
        // Another process may have made it since.
        if (result == er_exist && fs.state(prefix).state == state_directory) continue;
        if (result != er_ok) return result;
    }
    return er_ok;
}

nuo::archive::archive_ptr recursiveCreate(IVfs& fs, nuo::string_ref path, unsigned mode,
                                          unsigned flag) {
    // The parents are there more often than not.
    if (auto archive = fs.create(path, mode, flag)) return archive;
    // What no file system makes needs no folders.
    if ((mode & (mode_read | mode_write)) == 0 ||
        private_::countComponents(path) > max_path_components)
        return {};
    if (recursiveCreateDir(fs, folderOf(path)) != er_ok) return {};
    return fs.create(path, mode, flag);
}

fs_error copyFile(const VfsNode& from, const VfsNode& to) {
    const auto source = from.owner->create(from.path, mode_read, open_existing);
    if (source == nullptr) return er_open_failed;
    const auto target = to.owner->create(to.path, mode_write | mode_random, open_or_create);
    if (target == nullptr) return er_open_failed;
    return copyArchive(*source, *target);
}

fs_error copyInto(IVfs& fs, nuo::string_ref from, nuo::string_ref to) {
    const VfsNode target{nuo::string(to), &fs};
    if (!from.starts_with("/")) return copyFile({nuo::string(from), &fs}, target);
    if (fs.root() == nullptr) return er_not_found;
    const VfsNodeState found = fs.root()->locate(from);
    // The node of a path above a mount names another place.
    if (found.node.owner == nullptr || found.state == state_mount_point) return er_not_found;
    return copyFile(found.node, target);
}

nuo::string normalizePath(nuo::string_ref path) {
    nuo::string_builder normal;
    private_::PathWalker walker(path);
    nuo::string_ref component;
    if (path.starts_with("/")) normal.append('/');
    for (bool first = true; walker.next(component); first = false) {
        if (!first) normal.append('/');
        normal.append(component);
    }
    return nuo::string(normal);
}

nuo::string joinPath(nuo::string_ref folder, nuo::string_ref path) {
    while (path.starts_with("/"))
        path = path.substr(1);
    if (folder.empty()) return nuo::string(path);
    while (folder.ends_with("/"))
        folder = folder.substr(0, folder.size() - 1);
    if (path.empty()) return folder.empty() ? nuo::string("/") : nuo::string(folder);
    nuo::string_builder joined;
    joined.append(folder).append('/').append(path);
    return nuo::string(joined);
}

nuo::string_ref folderOf(nuo::string_ref path) {
    while (path.size() > 1 && path.ends_with("/"))
        path = path.substr(0, path.size() - 1);
    const std::uint64_t cut = path.rfind('/');
    if (cut == nuo::string_ref::npos) return {};
    nuo::string_ref folder = path.substr(0, cut);
    while (folder.ends_with("/"))
        folder = folder.substr(0, folder.size() - 1);
    return folder.empty() ? path.substr(0, 1) : folder;
}

fs_error checkRemovable(IVfs& fs, nuo::string_ref path) {
    if (fs.mounted()) {
        const nuo::string full = joinPath(fs.mountPoint(), normalizePath(path));
        const IVfs* there = fs.root()->getFs(full);
        if (fs.root()->containMountPoint(full) || (there != nullptr && there != &fs))
            return er_busy_mounted;
    }
    switch (fs.state(path).state) {
        case state_invalid:
            return er_invalid;
        case state_not_found:
            return er_not_found;
        default:
            return er_ok;
    }
}

nuo::string mountPointOf(const IVfs& fs) {
    return fs.mounted() ? fs.root()->mountPoint(fs) : nuo::string();
}

}  // namespace velmor::fs
