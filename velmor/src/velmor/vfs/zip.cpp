#include "velmor/vfs/zip.h"

#include <algorithm>
#include <vector>

#include "velmor/vfs/vfs_functions.h"
#include "velmor/vfs/zip_codec.h"
#include "velmor/vfs/zip_directory.h"
#include "velmor/vfs/zip_entries.h"
#include "velmor/vfs/zip_format.h"
#include "velmor/vfs/zip_writer.h"

namespace velmor::fs {

namespace {

// What `flags` and `method` of new entries are.
constexpr std::uint16_t new_file_flags = zip_format::flag_utf8 | zip_format::flag_fast;
constexpr std::uint16_t new_directory_flags = zip_format::flag_utf8;

// What the cache takes of the content of one ZIP. Entries may share their bytes, and then a small
// file tells of far more content than it holds. A deflated byte inflates to 1032 at the most (258
// bytes of a match from two bits of code), so that entries with bytes of their own never come to
// this; and a gigabyte is free for any ZIP, however it is made.
constexpr std::uint64_t least_allowance = std::uint64_t{1} << 30;
constexpr std::uint64_t allowance_per_byte = 1032;

nuo::string_ref withoutLeadingSlash(nuo::string_ref path) {
    return path.starts_with("/") ? path.substr(1) : path;
}

void collectHeaders(const ZipTree::node& folder, std::vector<file_header_ptr>& headers) {
    for (const auto& [name, child] : folder.children) {
        if (child->data != nullptr) headers.push_back(child->data);
        collectHeaders(*child, headers);
    }
}

}  // namespace

class ZipFsImp {
public:
    ZipFsImp(nuo::archive::iarchive& zip, IVfs& cached, nuo::string name, bool commits)
        : archive(zip), cache(cached), resource(std::move(name)), commitOnClose(commits) {
        readOnly = archive.query_writer() == nullptr;
    }

    void open();
    void commit();
    ZipTree::node* add(nuo::string_ref path, int state);
    nuo::archive::archive_ptr openNode(ZipTree::node& node, unsigned mode);
    void dropCached(const ZipTree::node& node, nuo::string_ref path);

    nuo::archive::iarchive& archive;
    IVfs& cache;
    nuo::string resource;
    RootFs* root = nullptr;
    ZipTree tree;
    std::uint32_t nextId = 0;
    bool readOnly = false;
    bool commitOnClose = false;

private:
    std::vector<file_header_ptr> entriesInOrder() const;
    void writeTo(ZipWriter& writer) const;
    void putBack(nuo::archive::iarchive& temp);

    ZipCodec codec_;
    // The whole ZIP, after it could not be put back into the archive; the entries' source then.
    TempFile rescued_;
};

void ZipFsImp::open() {
    nuo::archive::random* random = archive.query_random();
    if (random == nullptr) NUO_RAISE(archive_io_fatal_error);
    if (random->size() == 0) return;  // how a new ZIP starts
    if (archive.query_reader() == nullptr) NUO_RAISE(archive_io_fatal_error);
    nextId = readZipDirectory(archive, cache, tree);
    codec_.setAllowance(std::max(least_allowance, random->size() * allowance_per_byte));
}

std::vector<file_header_ptr> ZipFsImp::entriesInOrder() const {
    std::vector<file_header_ptr> headers;
    collectHeaders(tree.root(), headers);
    std::sort(headers.begin(), headers.end(),
              [](const auto& a, const auto& b) { return a->id < b->id; });
    return headers;
}

void ZipFsImp::writeTo(ZipWriter& writer) const {
    for (const file_header_ptr& header : entriesInOrder())
        writer.writeEntry(header);
    writer.writeDirectory();
}

void ZipFsImp::putBack(nuo::archive::iarchive& temp) {
    temp.query_random()->seek(0);
    archive.query_random()->seek(0);
    const std::uint64_t size = temp.query_random()->size();
    const std::uint64_t copied = codec_.copy(*temp.query_reader(), *archive.query_writer(), size);
    // What was longer and cannot be cut would keep an end record behind this one.
    const std::uint64_t left = archive.query_writer()->truncate(copied);
    if (copied != size || left != size) NUO_RAISE(archive_io_fatal_error);
}

void ZipFsImp::commit() {
    if (readOnly) NUO_RAISE(archive_runtime_error, "the archive is read-only.");
    TempFile temp = createTempFile(cache, "", "TMP", mode_all, create_new);
    const auto discard = [this](TempFile& file) {
        file.archive.reset();
        if (!file.path.empty()) cache.remove(file.path);
        file.path.clear();
    };
    ZipWriter writer(*temp.archive, codec_);
    try {
        writeTo(writer);
    } catch (...) {
        discard(temp);
        throw;
    }
    try {
        putBack(*temp.archive);
    } catch (...) {
        // Nothing but the temporary file is whole now: it stays, and the next commit reads from it.
        writer.adopt(*temp.archive);
        std::swap(rescued_, temp);
        discard(temp);
        throw;
    }
    writer.adopt(archive);
    discard(temp);
    discard(rescued_);
}

ZipTree::node* ZipFsImp::add(nuo::string_ref path, int state) {
    if (path.size() > zip_format::max_name_size) return nullptr;
    if (private_::countComponents(path) > max_path_components) return nullptr;
    auto header = std::make_shared<file_header>();
    header->flags = state == state_file ? new_file_flags : new_directory_flags;
    header->method = state == state_file ? zip_format::method_deflate : zip_format::method_stored;
    header->name = nuo::string(withoutLeadingSlash(normalizePath(path)));
    header->state = state;
    header->source = &archive;
    header->cache = &cache;
    header->id = nextId;
    ZipTree::node* node = tree.create(path, state, false);
    if (node == nullptr) return nullptr;
    node->data = std::move(header);
    ++nextId;
    return node;
}

nuo::archive::archive_ptr ZipFsImp::openNode(ZipTree::node& node, unsigned mode) {
    auto cached = openCachedFile(*node.data, codec_);
    if ((mode & mode_write) != 0) node.data->touch();
    return openEntry(node.data, std::move(cached), mode);
}

// Another entry of this path must find its place free. What cannot be removed does no harm before.
void ZipFsImp::dropCached(const ZipTree::node& node, nuo::string_ref path) {
    if (node.state == state_directory) {
        if (cache.state(path).state == state_directory) recursiveRemove(cache, path);
    } else if (node.data->fetched) {
        cache.remove(node.data->name);
    }
}

ZipFs::ZipFs(nuo::archive::iarchive& archive, IVfs& cache, nuo::string resource, bool commitOnClose)
    : imp_(std::make_unique<ZipFsImp>(archive, cache, std::move(resource), commitOnClose)) {
    imp_->open();
}

ZipFs::~ZipFs() {
    if (!imp_->commitOnClose || imp_->readOnly) return;
    try {
        imp_->commit();
    } catch (...) {
        // A destructor has nobody to tell; who wants to know calls commit.
    }
}

void ZipFs::commit() {
    imp_->commit();
}

std::uint64_t ZipFs::entryCount() const {
    std::vector<file_header_ptr> headers;
    collectHeaders(imp_->tree.root(), headers);
    return headers.size();
}

fs_error ZipFs::remove(nuo::string_ref path) {
    if (imp_->readOnly) return er_permission_denied;
    if (const fs_error refused = checkRemovable(*this, path); refused != er_ok) return refused;
    ZipTree::node& node = *imp_->tree.locate(path);
    if (node.parent == nullptr) return er_invalid;
    if (!node.children.empty()) return er_not_empty;
    imp_->dropCached(node, path);
    return imp_->tree.remove(node);
}

fs_error ZipFs::createDir(nuo::string_ref path) {
    if (imp_->readOnly) return er_permission_denied;
    if (imp_->tree.locate(path) != nullptr) return er_exist;
    if (path.size() > zip_format::max_name_size ||
        private_::countComponents(path) > max_path_components)
        return er_invalid;
    return imp_->add(path, state_directory) != nullptr ? er_ok : er_not_found;
}

nuo::archive::archive_ptr ZipFs::create(nuo::string_ref path, unsigned mode, unsigned flag) {
    if ((mode & (mode_read | mode_write)) == 0 || flag > open_or_create) return {};
    if (imp_->readOnly && (mode & mode_write) != 0) return {};
    if (ZipTree::node* node = imp_->tree.locate(path)) {
        if (flag == create_new || node->state != state_file) return {};
        return imp_->openNode(*node, mode);
    }
    if (flag == open_existing || imp_->readOnly) return {};
    ZipTree::node* made = imp_->add(path, state_file);
    if (made == nullptr) return {};
    try {
        return imp_->openNode(*made, mode);
    } catch (...) {
        imp_->tree.remove(*made);
        throw;
    }
}

fs_error ZipFs::copy(nuo::string_ref from, nuo::string_ref to) {
    return copyInto(*this, from, to);
}

fs_error ZipFs::truncate(nuo::string_ref path, std::uint64_t size) {
    if (imp_->readOnly) return er_permission_denied;
    const ZipTree::node* node = imp_->tree.locate(path);
    if (node == nullptr) return er_not_found;
    if (node->state != state_file) return er_not_a_file;
    create(path, mode_write | mode_random, open_existing)->query_writer()->truncate(size);
    return er_ok;
}

nuo::string ZipFs::resource() const {
    return imp_->resource;
}

RootFs* ZipFs::root() const {
    return imp_->root;
}

bool ZipFs::mounted() const {
    return imp_->root != nullptr;
}

nuo::string ZipFs::mountPoint() const {
    return mountPointOf(*this);
}

VfsNodeRange ZipFs::children(nuo::string_ref path) {
    return private_::childrenOf<file_header_ptr>(imp_->tree.locate(path), *this);
}

VfsNodeState ZipFs::state(nuo::string_ref path) {
    VfsNodeState result{{nuo::string(path), this}, state_not_found, 0};
    const ZipTree::node* node = imp_->tree.locate(path);
    if (node == nullptr) return result;
    result.state = node->state;
    if (node->state != state_file) return result;
    // The header tells the size that was last written.
    result.size = node->data->fetched && node->data->dirty
                      ? imp_->cache.state(node->data->name).size
                      : node->data->uncompressedSize;
    return result;
}

nuo::any ZipFs::getopt(unsigned id, const nuo::any&) {
    switch (id) {
        case option_read_only:
            return nuo::any(imp_->readOnly);
        case option_commit_on_close:
            return nuo::any(imp_->commitOnClose);
        default:
            return {};
    }
}

nuo::any ZipFs::setopt(unsigned id, const nuo::any& data, const nuo::any&) {
    if (id != option_commit_on_close || data.type() != typeid(bool)) return {};
    imp_->commitOnClose = *nuo::any_cast<bool>(&data);
    return nuo::any(true);
}

void ZipFs::setRoot(RootFs* root) {
    imp_->root = root;
}

}  // namespace velmor::fs
