#include "velmor/vfs/rootfs.h"

#include <boost/multi_index/hashed_index.hpp>
#include <boost/multi_index/member.hpp>
#include <boost/multi_index/ordered_index.hpp>
#include <boost/multi_index_container.hpp>

#include "velmor/vfs/vfs_functions.h"

namespace velmor::fs {

namespace {

struct ByPath {};
struct ByFs {};

// Objects lie at multiples of 8 and more, so the lowest bits tell nothing.
struct PointerHash {
    std::size_t operator()(const IVfs* fs) const noexcept {
        const auto p = reinterpret_cast<std::uintptr_t>(fs);
        return p / 8 + p;
    }
};

namespace mi = boost::multi_index;

using MountTable = mi::multi_index_container<
    MountInfo,
    mi::indexed_by<
        mi::ordered_unique<mi::tag<ByPath>, mi::member<MountInfo, nuo::string, &MountInfo::path>,
                           nuo::string_less>,
        mi::hashed_unique<mi::tag<ByFs>, mi::member<MountInfo, IVfs*, &MountInfo::fs>,
                          PointerHash>>>;

nuo::string absolutePath(nuo::string_ref path) {
    return joinPath("/", normalizePath(path));
}

// Whether `path` is `folder` or lies under it, told at a component boundary.
bool liesIn(nuo::string_ref path, nuo::string_ref folder) {
    if (!path.starts_with(folder)) return false;
    return folder.ends_with("/") || path.size() == folder.size() || path[folder.size()] == '/';
}

// What is left of a path behind `head`, without a leading "/".
nuo::string_ref restOf(nuo::string_ref path, nuo::string_ref head) {
    const nuo::string_ref rest = path.substr(head.size());
    return rest.starts_with("/") ? rest.substr(1) : rest;
}

VfsNodeState stateIn(const MountInfo& mount, nuo::string_ref path) {
    VfsNodeState result = mount.fs->state(path);
    return {{nuo::string(path), mount.fs}, result.state, result.size};
}

}  // namespace

class RootFsImp {
public:
    using MountInfoIterator = MountTable::index<ByPath>::type::const_iterator;

    nuo::string resource;
    MountTable mounts;
};

RootFs::RootFs(nuo::string resource) : imp_(std::make_unique<RootFsImp>()) {
    imp_->resource = std::move(resource);
}

RootFs::~RootFs() = default;

nuo::string RootFs::resource() const {
    return imp_->resource;
}

fs_error RootFs::mount(nuo::string_ref path, IVfs& fs) {
    const nuo::string at = absolutePath(path);
    const bool first = imp_->mounts.empty() && at == "/";
    if (!first && locate(at).state != state_directory) return er_not_mount_point;
    if (!imp_->mounts.insert(MountInfo{at, &fs}).second) return er_not_mount_point;
    fs.setRoot(this);
    return er_ok;
}

fs_error RootFs::unmount(nuo::string_ref path) {
    const nuo::string at = absolutePath(path);
    if (containMountPoint(at)) return er_busy_mounted;
    auto& mounts = imp_->mounts.get<ByPath>();
    const auto found = mounts.find(at);
    if (found == mounts.end()) return er_ok;
    found->fs->setRoot(nullptr);
    mounts.erase(found);
    return er_ok;
}

void RootFs::sync() {
    for (const MountInfo& mount : imp_->mounts.get<ByPath>())
        mount.fs->sync();
}

nuo::string RootFs::mountPoint(const IVfs& fs) const {
    const auto& mounts = imp_->mounts.get<ByFs>();
    const auto found = mounts.find(const_cast<IVfs*>(&fs));
    return found != mounts.end() ? found->path : nuo::string();
}

IVfs* RootFs::getFs(nuo::string_ref path) const {
    const auto& mounts = imp_->mounts.get<ByPath>();
    const auto found = mounts.find(absolutePath(path));
    return found != mounts.end() ? found->fs : nullptr;
}

bool RootFs::containMountPoint(nuo::string_ref path) const {
    const nuo::string at = absolutePath(path);
    const auto& mounts = imp_->mounts.get<ByPath>();
    const auto behind = mounts.upper_bound(at);
    // Compared by bytes on purpose: a mount at "/ab" counts for "/a" too.
    return behind != mounts.end() && behind->path.ref().starts_with(at);
}

MountRange RootFs::mounts() const {
    const auto& mounts = imp_->mounts.get<ByPath>();
    const RootFsImp::MountInfoIterator first = mounts.begin();
    const RootFsImp::MountInfoIterator last = mounts.end();
    return nuo::make_range<MountInfo>(first, last);
}

VfsNodeState RootFs::locate(nuo::string_ref path) const {
    const nuo::string at = absolutePath(path);
    const auto& mounts = imp_->mounts.get<ByPath>();
    auto mount = mounts.lower_bound(at);
    // Compared by bytes on purpose, as in containMountPoint.
    if (mount != mounts.end() && mount->path.ref().starts_with(at)) {
        if (mount->path == at) return stateIn(*mount, "");
        return {{nuo::string(restOf(mount->path, at)), mount->fs}, state_mount_point, 0};
    }
    while (mount != mounts.begin()) {
        --mount;
        if (liesIn(at, mount->path)) return stateIn(*mount, restOf(at, mount->path));
    }
    return {};
}

}  // namespace velmor::fs
