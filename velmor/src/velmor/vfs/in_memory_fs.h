#pragma once

#include <memory>

#include "velmor/vfs/vfs.h"

namespace velmor::fs {

class InMemoryImp;

/// A tree of files in memory; the usual cache behind a ZIP file. Listings come in string order.
//
/// Owns its files. An archive that is still open on a removed file keeps that file's bytes alive.
class InMemory : public IVfs {
public:
    /// A read-only one is empty and stays so.
    explicit InMemory(nuo::string resource, bool readOnly = false);
    ~InMemory() override;

    /// er_permission_denied, er_invalid for "", er_not_empty for a directory with entries.
    fs_error remove(nuo::string_ref path) override;
    /// er_permission_denied, er_exist, er_invalid for too deep a path, er_not_found without a
    /// parent.
    fs_error createDir(nuo::string_ref path) override;
    nuo::archive::archive_ptr create(nuo::string_ref path, unsigned mode, unsigned flag) override;
    fs_error copy(nuo::string_ref from, nuo::string_ref to) override;
    /// er_permission_denied, er_not_found, er_data_error for a directory.
    fs_error truncate(nuo::string_ref path, std::uint64_t size) override;
    void sync() override {}
    nuo::string resource() const override;
    RootFs* root() const override;
    bool mounted() const override;
    nuo::string mountPoint() const override;
    VfsNodeRange children(nuo::string_ref path) override;
    VfsNodeState state(nuo::string_ref path) override;
    void setRoot(RootFs* root) override;

private:
    std::unique_ptr<InMemoryImp> imp_;
};

}  // namespace velmor::fs
