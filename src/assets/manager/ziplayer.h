#pragma once

#include "nuo/common/iarchive.h"
#include "nuo/common/string.h"
#include "velmor/vfs/in_memory_fs.h"
#include "velmor/vfs/zip.h"
#include "velmor/vfs/zip_format.h"

namespace korvanet::platform::assets {

// The file of a library, open, with the ZIP in it and the memory that changes wait in. The package
// stands on `zip`. Nothing is written before `Commit()`.
struct ZipLayer {
    // Raises what ZipFs raises for a file that is no ZIP.
    ZipLayer(nuo::archive::archive_ptr file, nuo::string scratch_name, nuo::string resource)
        : archive(std::move(file)),
          scratch(std::move(scratch_name)),
          zip(*archive, scratch, std::move(resource), false) {}

    bool Writable() const { return nuo::archive::get_writer(archive.get()) != nullptr; }

    // Writes the ZIP; raises before anything is written when it would hold more entries than can be
    // read again, and what ZipFs raises.
    void Commit() {
        if (zip.entryCount() > velmor::fs::zip_format::max_entries)
            NUO_RAISE(velmor::fs::archive_runtime_error, "too many entries");
        zip.commit();
    }

    nuo::archive::archive_ptr archive;
    velmor::fs::InMemory scratch;
    velmor::fs::ZipFs zip;
};

}  // namespace korvanet::platform::assets
