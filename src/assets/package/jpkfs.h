#pragma once

#include <memory>

#include "assets/package/packageerrors.h"
#include "assets/package/packageoptions.h"
#include "velmor/vfs/vfs.h"

namespace korvanet::platform::assets {

class JpkFsImp;

// A design package over another file system, a ZIP file or a folder. Callers see their own files
// and folders; the manifests beside them are hidden, follow every change in memory, and are written
// by `sync`. The names of the manifests are reserved in every folder.
//
// Order of calls: any, then `sync` before each commit of the file system below, which is the
// caller's. Destruction writes nothing.
class JpkFs : public velmor::fs::IVfs {
public:
    // Reads the manifests of every folder of `inner`, which must outlive the package. Missing ones
    // are no failure. Raises `xml_malformed_ex` for one that is not well formed, and `JpkFsErr` for
    // folders nested deeper than file systems allow.
    JpkFs(velmor::fs::IVfs& inner, nuo::string resource);
    ~JpkFs() override;

    // er_not_found for a reserved name, er_not_empty for a folder that holds files or folders of
    // the user. An empty folder goes with its manifests.
    velmor::fs::fs_error remove(nuo::string_ref path) override;
    // er_invalid for a reserved name.
    velmor::fs::fs_error createDir(nuo::string_ref path) override;
    // Null for a reserved name.
    nuo::archive::archive_ptr create(nuo::string_ref path, unsigned mode, unsigned flag) override;
    // er_invalid for a reserved target, er_open_failed for a reserved source.
    velmor::fs::fs_error copy(nuo::string_ref from, nuo::string_ref to) override;
    // er_invalid for a reserved name.
    velmor::fs::fs_error truncate(nuo::string_ref path, std::uint64_t size) override;
    // Describes what has no description yet, writes all manifests and syncs the file system below;
    // does nothing at all when that one says that it is read-only. Raises `jpk_package_error` with
    // the path of a manifest that cannot be written.
    void sync() override;
    nuo::string resource() const override;
    velmor::fs::RootFs* root() const override;
    bool mounted() const override;
    nuo::string mountPoint() const override;
    velmor::fs::VfsNodeRange children(nuo::string_ref path) override;
    // A reserved name is not found.
    velmor::fs::VfsNodeState state(nuo::string_ref path) override;
    // `kPackageOption` and `kPartOption`: an `option_value` for an `option_key`, or an empty any
    // when there is no such element or `data` is something else.
    nuo::any getopt(unsigned id, const nuo::any& data) override;
    // Sets an element, also of a folder or file that does not exist yet. Always an empty any.
    nuo::any setopt(unsigned id, const nuo::any& data, const nuo::any& value) override;
    void setRoot(velmor::fs::RootFs* root) override;

    // Goes on over another file system that holds the same files. Nothing is read again.
    void setInner(velmor::fs::IVfs& inner);

private:
    std::unique_ptr<JpkFsImp> imp_;
};

// False for a path whose last component is reserved.
bool IsUserPath(nuo::string_ref path);

}  // namespace korvanet::platform::assets
