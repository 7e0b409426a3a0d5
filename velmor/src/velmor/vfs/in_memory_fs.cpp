#include "velmor/vfs/in_memory_fs.h"

#include "nuo/common/buffer_archive.h"
#include "nuo/common/multiplex.h"
#include "velmor/vfs/file_tree.h"
#include "velmor/vfs/vfs_functions.h"

namespace velmor::fs {

namespace {

using MemoryFile = nuo::default_deletorT<nuo::archive::mem_read_write_archive>;

// Shared with the archives that are open on the file, which may outlive its removal.
using MemoryFilePtr = std::shared_ptr<nuo::archive::iarchive>;
using MemoryTree = private_::file_tree<MemoryFilePtr>;

nuo::archive::archive_ptr openMemory(const MemoryFilePtr& file, unsigned mode) {
    using namespace nuo::archive;
    switch (mode & (mode_read | mode_write)) {
        case mode_read | mode_write:
            return make_multiplex<multiplex_read_write_archive>(file);
        case mode_read:
            return make_multiplex<multiplex_read_archive>(file);
        case mode_write:
            return make_multiplex<multiplex_write_archive>(file);
        default:
            return {};
    }
}

}  // namespace

class InMemoryImp {
public:
    MemoryTree tree;
    RootFs* root = nullptr;
    nuo::string resource;
    bool readOnly = false;
};

InMemory::InMemory(nuo::string resource, bool readOnly) : imp_(std::make_unique<InMemoryImp>()) {
    imp_->resource = std::move(resource);
    imp_->readOnly = readOnly;
}

InMemory::~InMemory() = default;

fs_error InMemory::remove(nuo::string_ref path) {
    if (imp_->readOnly) return er_permission_denied;
    if (const fs_error refused = checkRemovable(*this, path); refused != er_ok) return refused;
    return imp_->tree.remove(*imp_->tree.locate(path));
}

fs_error InMemory::createDir(nuo::string_ref path) {
    if (imp_->readOnly) return er_permission_denied;
    if (private_::countComponents(path) > max_path_components) return er_invalid;
    const std::size_t before = imp_->tree.size();
    if (imp_->tree.create(path, state_directory, false) == nullptr) return er_not_found;
    return imp_->tree.size() > before ? er_ok : er_exist;
}

nuo::archive::archive_ptr InMemory::create(nuo::string_ref path, unsigned mode, unsigned flag) {
    if ((mode & (mode_read | mode_write)) == 0 || flag > open_or_create) return {};
    if (imp_->readOnly && (mode & mode_write) != 0) return {};
    auto* node = imp_->tree.locate(path);
    if (node != nullptr) {
        if (flag == create_new || node->state != state_file) return {};
        return openMemory(node->data, mode);
    }
    if (flag == open_existing || imp_->readOnly) return {};
    if (private_::countComponents(path) > max_path_components) return {};
    auto file = std::make_shared<MemoryFile>();
    node = imp_->tree.create(path, state_file, false);
    if (node == nullptr) return {};
    node->data = std::move(file);
    return openMemory(node->data, mode);
}

fs_error InMemory::copy(nuo::string_ref from, nuo::string_ref to) {
    return copyInto(*this, from, to);
}

fs_error InMemory::truncate(nuo::string_ref path, std::uint64_t size) {
    if (imp_->readOnly) return er_permission_denied;
    const auto* node = imp_->tree.locate(path);
    if (node == nullptr) return er_not_found;
    if (node->state != state_file) return er_data_error;
    node->data->query_writer()->truncate(size);
    return er_ok;
}

nuo::string InMemory::resource() const {
    return imp_->resource;
}

RootFs* InMemory::root() const {
    return imp_->root;
}

bool InMemory::mounted() const {
    return imp_->root != nullptr;
}

nuo::string InMemory::mountPoint() const {
    return mountPointOf(*this);
}

VfsNodeRange InMemory::children(nuo::string_ref path) {
    return private_::childrenOf<MemoryFilePtr>(imp_->tree.locate(path), *this);
}

VfsNodeState InMemory::state(nuo::string_ref path) {
    VfsNodeState result{{nuo::string(path), this}, state_not_found, 0};
    const auto* node = imp_->tree.locate(path);
    if (node == nullptr) return result;
    result.state = node->state;
    if (node->state == state_file) result.size = node->data->query_sequence()->size();
    return result;
}

void InMemory::setRoot(RootFs* root) {
    imp_->root = root;
}

}  // namespace velmor::fs
