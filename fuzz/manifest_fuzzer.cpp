// The manifests of a package: the first byte chooses between "cnx.xml" and "core.xml", and whether
// the package lies in a ZIP, so that signature and deflate stand around the part; the rest is the
// part. What can be read can be written, and what was written can be read.

#include <cstdint>
#include <cstdlib>

#include "assets/package/jpkfs.h"
#include "assets/serialization/io/xmlhandler.h"
#include "nuo/common/archive/primitives.h"
#include "nuo/common/buffer_archive.h"
#include "velmor/vfs/in_memory_fs.h"
#include "velmor/vfs/zip.h"

namespace {

using korvanet::platform::assets::JpkFs;
using korvanet::platform::assets::xml_malformed_ex;

void Put(velmor::fs::IVfs& files, const char* path, const std::uint8_t* data, std::size_t size) {
    const auto file = files.create(path, velmor::fs::mode_all, velmor::fs::open_or_create);
    nuo::archive::write_all(*file->query_writer(), {data, size});
}

bool ReadAndWrite(velmor::fs::IVfs& files) {
    try {
        JpkFs package(files, "fuzz");
        package.sync();
        return true;
    } catch (const xml_malformed_ex&) {
        return false;
    }
}

constexpr std::uint8_t kSelectLinks = 1;
constexpr std::uint8_t kInZip = 2;

void Fill(velmor::fs::IVfs& files, std::uint8_t select, const std::uint8_t* data,
          std::size_t size) {
    files.createDir("R");
    Put(files, "R/a.png", data, 0);
    Put(files, (select & kSelectLinks) != 0 ? "cnx.xml" : "R/core.xml", data, size);
}

void Use(velmor::fs::IVfs& files) {
    if (ReadAndWrite(files) && !ReadAndWrite(files)) std::abort();
}

// The same files as a ZIP that was written and is read again.
void UseAsZip(std::uint8_t select, const std::uint8_t* data, std::size_t size) {
    nuo::archive::mem_read_write_archive archive;
    velmor::fs::InMemory cache("cache");
    velmor::fs::ZipFs written(archive, cache, "fuzz", false);
    Fill(written, select, data, size);
    written.commit();
    velmor::fs::InMemory scratch("scratch");
    velmor::fs::ZipFs read(archive, scratch, "fuzz", false);
    Use(read);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    if ((data[0] & kInZip) != 0) {
        UseAsZip(data[0], data + 1, size - 1);
        return 0;
    }
    velmor::fs::InMemory files("fuzz");
    Fill(files, data[0], data + 1, size - 1);
    Use(files);
    return 0;
}
