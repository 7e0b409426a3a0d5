#pragma once

#include <cstdint>
#include <map>
#include <set>

#include "assets/library/ilibraryhost.h"
#include "assets/property/property.h"
#include "nuo/common/buffer.h"
#include "nuo/common/iarchive.h"
#include "nuo/common/string.h"
#include "velmor/vfs/vfs.h"

namespace korvanet::platform::assets {

// The files that a library keeps beside its records: textures, thumbnails and what a host adds. See
// docs/formats/library_layout.md for where they lie.
class LibraryResources {
public:
    // `scratch_folder` is a folder of the host's temporary file system. All arguments outlive the
    // object.
    LibraryResources(velmor::fs::IVfs& package, ILibraryHost& host, const nuo::string& identifier,
                     const nuo::string& scratch_folder);

    // In the older layout all files lie in one folder.
    void SetLegacyLayout(bool legacy) { legacy_ = legacy; }

    // Where the values of a property of a definition go, and where files without a property go.
    nuo::string FolderOf(nuo::string_ref definition, nuo::string_ref property,
                         std::uint64_t index) const;
    nuo::string CommonFolder() const;

    // Copies a file into a folder of the package and gives its path there; empty when there is no
    // such file, when its name is none, or after a hundred names that are taken. `source` is a
    // path, a "file:///" URI or a "jpk:" URI. With an empty `type` a source that was added before
    // gives the path that it got then. Raises JpkFsErr when the part cannot be made, and what the
    // archives raise; nothing of it is left then, nor of folders that were made for it.
    nuo::string Add(nuo::string_ref source, nuo::string_ref type, nuo::string_ref folder);

    // Brings the files that a URI property names into the package, and the property to their new
    // URIs. Values that are empty, name this library already or name nothing found stay as they
    // are. True when a value changed. Raises as Add.
    bool Rewrite(PropertyBase& property, nuo::string_ref definition);

    // Parts that have come in since the package was committed are lost when it is given another
    // archive, unless they are taken out before. They can be read meanwhile, and are put back into
    // an archive that can be written.
    void NoteStored(nuo::string_ref path) { uncommitted_.insert(nuo::string(path)); }
    void NoteCommit();
    // Removes those of them that lie in the layout that is in force, with folders that hold nothing
    // else.
    void DropUncommitted();
    void TakeUncommittedOut();
    void PutUncommittedBack();

    // The bytes of a part, in memory of their own; null when there is no such part.
    nuo::archive::archive_ptr OpenPart(nuo::string_ref path);

private:
    struct Source {
        nuo::archive::archive_ptr archive;
        nuo::string name;
    };

    bool IsOwn(nuo::string_ref path) const;
    bool IsHere(nuo::string_ref path) const;
    Source OpenSource(nuo::string_ref source);
    // The URI of the file that `value` names after it was brought in, or an empty string.
    nuo::string Import(nuo::string_ref value, nuo::string_ref folder);
    nuo::string FreeTarget(nuo::string_ref folder, const nuo::string& name);
    void Store(nuo::archive::iarchive& source, nuo::string_ref folder, nuo::string_ref target);
    // The folders below `upper` too that hold nothing else.
    void RemoveWithFolders(nuo::string_ref path, nuo::string_ref upper);
    // What is there of a path, from its start.
    nuo::string_ref NearestFolder(nuo::string_ref path);
    nuo::string OwnFolder() const;
    bool PartExists(nuo::string_ref path);

    velmor::fs::IVfs& package_;
    ILibraryHost& host_;
    const nuo::string& identifier_;
    const nuo::string& scratch_folder_;
    bool legacy_ = false;
    std::set<nuo::string, nuo::string_less> uncommitted_;
    // What was taken out, by path.
    std::map<nuo::string, nuo::buffer<nuo::byte>, nuo::string_less> taken_out_;
    std::map<nuo::string, nuo::string, nuo::string_less>
        paths_;                                             // source text to path in the package
    std::map<nuo::string, int, nuo::string_less> numbers_;  // target to the last number used for it
};

}  // namespace korvanet::platform::assets
