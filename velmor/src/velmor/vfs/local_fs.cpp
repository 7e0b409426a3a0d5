#include "velmor/vfs/local_fs.h"

#include <boost/filesystem/directory.hpp>
#include <boost/filesystem/operations.hpp>

#include "nuo/common/file_archive.h"
#include "nuo/common/fsutility.h"
#include "velmor/vfs/path_walker.h"

namespace velmor::fs {

static_assert(open_existing == nuo::archive::open_existing);
static_assert(create_new == nuo::archive::create_new);
static_assert(open_or_create == nuo::archive::open_or_create);

namespace {

namespace disk = boost::filesystem;
namespace errc = boost::system::errc;

// Nothing outside of the directory may be reached through it, whatever a path from a file says.
bool staysInside(nuo::string_ref path) {
    private_::PathWalker walker(path);
    nuo::string_ref component;
    while (walker.next(component))
        if (component == "..") return false;
    return path.find('\0') == nuo::string_ref::npos;
}

bool isRoot(nuo::string_ref path) {
    return private_::countComponents(path) == 0;
}

bool isTooDeep(nuo::string_ref path) {
    return private_::countComponents(path) > max_path_components;
}

disk::path diskPath(nuo::string_ref path) {
    return disk::path(path.begin(), path.end());
}

bool isLink(nuo::string_ref path) {
    boost::system::error_code failure;
    return disk::is_symlink(disk::symlink_status(diskPath(path), failure));
}

// Yields the leaf names of a directory of the disk.
class LocalFileIterator {
public:
    LocalFileIterator(disk::directory_iterator at, IVfs& owner)
        : at_(std::move(at)), owner_(&owner) {}

    VfsNode operator*() const {
        const disk::path name = at_->path().filename();
        return {nuo::string(name.c_str()), owner_};
    }
    LocalFileIterator& operator++() {
        boost::system::error_code failure;
        at_.increment(failure);
        if (failure) at_ = disk::directory_iterator();
        return *this;
    }
    friend bool operator==(const LocalFileIterator& a, const LocalFileIterator& b) {
        return a.at_ == b.at_;
    }

private:
    disk::directory_iterator at_;
    IVfs* owner_;
};

nuo::archive::archive_ptr openFile(nuo::string_ref path, unsigned mode, unsigned flag) {
    using namespace nuo::archive;
    switch (mode & (mode_read | mode_write)) {
        case mode_read | mode_write:
            return make_archive<file_read_write_archive>(path, flag);
        case mode_read:
            return make_archive<file_read_archive>(path);
        case mode_write:
            return make_archive<file_write_archive>(path, flag);
        default:
            return {};
    }
}

}  // namespace

LocalFs::LocalFs(nuo::string directory) : resource_(std::move(directory)) {}

// The system itself would take a "/" at the end for the claim that a directory stands there.
nuo::string LocalFs::onDisk(nuo::string_ref path) const {
    return joinPath(resource_, normalizePath(path));
}

fs_error LocalFs::remove(nuo::string_ref path) {
    const fs_error refused = checkRemovable(*this, path);
    // A link that leads nowhere is not found by following it, and can be removed all the same.
    const bool dangling = refused == er_not_found && isLink(onDisk(path));
    if (refused != er_ok && !dangling) return refused;
    if (isRoot(path)) return er_invalid;
    boost::system::error_code failure;
    const bool removed = disk::remove(diskPath(onDisk(path)), failure);
    if (failure == errc::directory_not_empty || failure == errc::file_exists) return er_not_empty;
    if (failure) return er_data_error;
    return removed ? er_ok : er_not_found;
}

fs_error LocalFs::createDir(nuo::string_ref path) {
    if (isRoot(path) || isTooDeep(path)) return er_invalid;
    const int present = state(path).state;
    if (present == state_invalid) return er_invalid;
    if (present != state_not_found) return er_exist;
    if (state(folderOf(path)).state != state_directory) return er_not_found;
    boost::system::error_code failure;
    // Somebody else may have made it since.
    const bool made = disk::create_directory(diskPath(onDisk(path)), failure);
    if (failure) return er_data_error;
    return made ? er_ok : er_exist;
}

nuo::archive::archive_ptr LocalFs::create(nuo::string_ref path, unsigned mode, unsigned flag) {
    if (flag > open_or_create || isRoot(path)) return {};
    const int present = state(path).state;
    if (present != state_file && present != state_not_found) return {};
    if (present == state_file && flag == create_new) return {};
    if (present == state_not_found && isTooDeep(path)) return {};
    try {
        return openFile(onDisk(path), mode, flag);
    } catch (const nuo::exception&) {
        return {};  // a file that cannot be opened is no exception to callers
    }
}

fs_error LocalFs::copy(nuo::string_ref from, nuo::string_ref to) {
    return copyInto(*this, from, to);
}

fs_error LocalFs::truncate(nuo::string_ref path, std::uint64_t size) {
    if (state(path).state != state_file) return er_data_error;
    boost::system::error_code failure;
    disk::resize_file(diskPath(onDisk(path)), size, failure);
    return failure ? er_data_error : er_ok;
}

VfsNodeRange LocalFs::children(nuo::string_ref path) {
    disk::directory_iterator first;
    if (state(path).state == state_directory) {
        boost::system::error_code failure;
        first = disk::directory_iterator(diskPath(onDisk(path)), failure);
    }
    return nuo::make_range<VfsNode, VfsNode>(LocalFileIterator(first, *this),
                                             LocalFileIterator({}, *this));
}

VfsNodeState LocalFs::state(nuo::string_ref path) {
    VfsNodeState result{{nuo::string(path), this}, state_invalid, 0};
    if (!staysInside(path)) return result;
    const auto found = nuo::fsutility::stat_file(onDisk(path));
    if (!found) {
        result.state = state_not_found;
    } else if (found->is_directory) {
        result.state = state_directory;
    } else if (found->is_regular) {
        result.state = state_file;
        result.size = found->size;
    }
    return result;
}

}  // namespace velmor::fs
