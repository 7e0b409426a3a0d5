#include "assets/package/jpkfs.h"

#include <utility>

#include "assets/package/jpkfsimp.h"
#include "assets/package/opcfsiterator.h"
#include "assets/package/packagepath.h"
#include "velmor/vfs/vfs_functions.h"

namespace korvanet::platform::assets {
namespace {

using velmor::fs::fs_error;
using velmor::fs::VfsNodeState;

bool Exists(const VfsNodeState& state) {
    return state.state == velmor::fs::state_file || state.state == velmor::fs::state_directory;
}

bool IsReadOnly(velmor::fs::IVfs& fs) {
    const nuo::any answer = fs.getopt(velmor::fs::option_read_only, nuo::any());
    return answer.type() == typeid(bool) && *nuo::any_cast<bool>(&answer);
}

const option_key* KeyIn(const nuo::any& data) {
    return data.type() == typeid(option_key) ? nuo::any_cast<option_key>(&data) : nullptr;
}

const option_value* ValueIn(const nuo::any& data) {
    return data.type() == typeid(option_value) ? nuo::any_cast<option_value>(&data) : nullptr;
}

}  // namespace

JpkFs::JpkFs(velmor::fs::IVfs& inner, nuo::string resource)
    : imp_(std::make_unique<JpkFsImp>(inner, std::move(resource))) {
    LoadManifests(inner, imp_->description);
}

JpkFs::~JpkFs() = default;

fs_error JpkFs::remove(nuo::string_ref path) {
    // A reserved name is not found here, like everywhere.
    const fs_error refused = velmor::fs::checkRemovable(*this, path);
    if (refused != velmor::fs::er_ok) {
        return refused;
    }
    const PackagePath at(path);
    if (at.IsRoot()) {
        return velmor::fs::er_invalid;
    }
    const bool is_folder = state(at.Ref()).state == velmor::fs::state_directory;
    if (is_folder) {
        const velmor::fs::VfsNodeRange entries = children(at.Ref());
        if (!(entries.first == entries.last)) {
            return velmor::fs::er_not_empty;
        }
    }
    const fs_error result = is_folder ? velmor::fs::recursiveRemove(*imp_->inner, at.Ref())
                                      : imp_->inner->remove(at.Ref());
    if (result == velmor::fs::er_ok) {
        imp_->description.Forget(at.Ref(), at.Folder(), at.Leaf());
    }
    return result;
}

fs_error JpkFs::createDir(nuo::string_ref path) {
    const PackagePath at(path);
    if (at.IsReserved()) {
        return velmor::fs::er_invalid;
    }
    const fs_error result = imp_->inner->createDir(path);
    if (result == velmor::fs::er_ok) {
        imp_->description.CompleteEntry(at.Folder(), at.Leaf());
        imp_->description.CompleteFolder(at.Ref(), at.Leaf());
    }
    return result;
}

nuo::archive::archive_ptr JpkFs::create(nuo::string_ref path, unsigned mode, unsigned flag) {
    const PackagePath at(path);
    if (at.IsReserved()) {
        return nullptr;
    }
    nuo::archive::archive_ptr file = imp_->inner->create(path, mode, flag);
    if (file) {
        imp_->description.CompleteEntry(at.Folder(), at.Leaf());
    }
    return file;
}

fs_error JpkFs::copy(nuo::string_ref from, nuo::string_ref to) {
    const PackagePath target(to);
    if (target.IsReserved()) {
        return velmor::fs::er_invalid;
    }
    if (from.starts_with("/")) {
        return velmor::fs::copyInto(*this, from, to);
    }
    if (!IsUserPath(from)) {
        return velmor::fs::er_open_failed;
    }
    const bool was_there = Exists(imp_->inner->state(to));
    const fs_error result = imp_->inner->copy(from, to);
    if (result == velmor::fs::er_ok && !was_there) {
        imp_->description.CompleteEntry(target.Folder(), target.Leaf());
    }
    return result;
}

fs_error JpkFs::truncate(nuo::string_ref path, std::uint64_t size) {
    return IsUserPath(path) ? imp_->inner->truncate(path, size) : velmor::fs::er_invalid;
}

void JpkFs::sync() {
    if (!IsReadOnly(*imp_->inner)) {
        WriteManifests(*imp_->inner, imp_->description);
        imp_->inner->sync();
    }
}

nuo::string JpkFs::resource() const {
    return imp_->resource;
}

velmor::fs::RootFs* JpkFs::root() const {
    return imp_->root;
}

bool JpkFs::mounted() const {
    return imp_->root != nullptr;
}

nuo::string JpkFs::mountPoint() const {
    return velmor::fs::mountPointOf(*this);
}

velmor::fs::VfsNodeRange JpkFs::children(nuo::string_ref path) {
    return OpcFsIterator::Filter(*this, imp_->inner->children(path));
}

VfsNodeState JpkFs::state(nuo::string_ref path) {
    if (!IsUserPath(path)) {
        return {{nuo::string(path), this}, velmor::fs::state_not_found, 0};
    }
    VfsNodeState result = imp_->inner->state(path);
    result.node.owner = this;
    return result;
}

nuo::any JpkFs::getopt(unsigned id, const nuo::any& data) {
    const option_key* const key = KeyIn(data);
    if (key == nullptr || (id != kPackageOption && id != kPartOption)) {
        return nuo::any();
    }
    const PackagePath at(key->path);
    const PropertyMap* const elements = id == kPackageOption
                                            ? imp_->description.FindNode(at.Ref())
                                            : imp_->description.FindEntry(at.Folder(), at.Leaf());
    const auto* const found = elements == nullptr ? nullptr : elements->FindByName(key->name);
    return found == nullptr ? nuo::any() : nuo::any(option_value{found->first.type, found->second});
}

nuo::any JpkFs::setopt(unsigned id, const nuo::any& data, const nuo::any& value) {
    const option_key* const key = KeyIn(data);
    const option_value* const wanted = ValueIn(value);
    if (key == nullptr || wanted == nullptr || (id != kPackageOption && id != kPartOption)) {
        return nuo::any();
    }
    const PackagePath at(key->path);
    PropertyMap& elements = id == kPackageOption
                                ? imp_->description.NodeOf(at.Ref())
                                : imp_->description.EntryOf(at.Folder(), at.Leaf()).properties;
    elements.SetAlone(wanted->type, key->name, wanted->text);
    return nuo::any();
}

void JpkFs::setRoot(velmor::fs::RootFs* root) {
    imp_->root = root;
}

void JpkFs::setInner(velmor::fs::IVfs& inner) {
    imp_->inner = &inner;
}

bool IsUserPath(nuo::string_ref path) {
    return !PackagePath(path).IsReserved();
}

}  // namespace korvanet::platform::assets
