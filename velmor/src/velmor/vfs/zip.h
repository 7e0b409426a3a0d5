#pragma once

#include <memory>

#include "velmor/vfs/vfs.h"
#include "velmor/vfs/zip_errors.h"

namespace velmor::fs {

class ZipFsImp;

/// Shows a ZIP, over any archive that can be read at random, as a file system.
//
/// It knows Stored and Deflate entries, 32-bit sizes and one disk; there is no Zip64 and no
/// encryption. The form is told in docs/formats/zip_subset.md. Whoever opens an entry gets a file
/// of the cache: the first open inflates the whole entry into the cache under the entry's own path.
/// Changes stay there until `commit`, which rewrites the ZIP through a temporary file in the cache
/// and puts it back into the same archive. That last step is not atomic: when it fails the archive
/// is damaged, and a further `commit` on the same object repairs it.
//
/// Order of calls: construct, any operations, commit*, destroy. Archives handed out end before the
/// object; `archive` and `cache` outlive it.
class ZipFs : public IVfs {
public:
    /// Reads the central directory; an archive of size 0 is an empty ZIP. Read-only when the
    /// archive has no writer. Raises one of zip_errors.h for what is no readable ZIP, and
    /// not_all_parent_are_dir when a file stands where a folder must be.
    ZipFs(nuo::archive::iarchive& archive, IVfs& cache, nuo::string resource, bool commitOnClose);

    /// Commits when `option_commit_on_close` is set and the ZIP is not read-only; whatever fails
    /// there is lost. Call `commit` to learn of it.
    ~ZipFs() override;

    /// Writes the ZIP. Untouched entries go over as compressed bytes; entries opened for writing
    /// since the last commit are deflated anew. What fails is raised, and a later call starts over.
    /// Raises archive_runtime_error on a read-only ZIP.
    void commit();

    /// How many entries a commit would write. The form tells their number in 16 bits, cut short:
    /// of more than zip_format::max_entries the last are not found again.
    std::uint64_t entryCount() const;

    /// er_permission_denied, the common checks, er_invalid for "", er_not_empty.
    fs_error remove(nuo::string_ref path) override;
    /// er_permission_denied, er_exist, er_invalid for too long a path, er_not_found without a
    /// parent.
    fs_error createDir(nuo::string_ref path) override;
    /// Raises archive_runtime_error when the data of an entry is bad or cannot be cached, or when
    /// more has come out of the ZIP than it may hold: a gigabyte, or 1032 times its size.
    nuo::archive::archive_ptr create(nuo::string_ref path, unsigned mode, unsigned flag) override;
    fs_error copy(nuo::string_ref from, nuo::string_ref to) override;
    /// er_permission_denied, er_not_found, er_not_a_file. Raises as `create` does: the entry is
    /// brought into the cache first.
    fs_error truncate(nuo::string_ref path, std::uint64_t size) override;
    /// Does nothing: only `commit` writes.
    void sync() override {}
    nuo::string resource() const override;
    RootFs* root() const override;
    bool mounted() const override;
    nuo::string mountPoint() const override;
    VfsNodeRange children(nuo::string_ref path) override;
    VfsNodeState state(nuo::string_ref path) override;
    /// Knows `option_read_only` and `option_commit_on_close`.
    nuo::any getopt(unsigned id, const nuo::any& data) override;
    /// Knows `option_commit_on_close`; the result holds true.
    nuo::any setopt(unsigned id, const nuo::any& data, const nuo::any& value) override;
    void setRoot(RootFs* root) override;

private:
    std::unique_ptr<ZipFsImp> imp_;
};

}  // namespace velmor::fs
