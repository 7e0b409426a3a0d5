// The manifests of a package: the first byte chooses between "cnx.xml" and "core.xml", the rest is
// the part. What can be read can be written, and what was written can be read.

#include <cstdint>
#include <cstdlib>

#include "assets/package/jpkfs.h"
#include "assets/serialization/io/xmlhandler.h"
#include "nuo/common/archive/primitives.h"
#include "velmor/vfs/in_memory_fs.h"

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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    velmor::fs::InMemory files("fuzz");
    files.createDir("R");
    Put(files, "R/a.png", data, 0);
    Put(files, (data[0] & 1) != 0 ? "cnx.xml" : "R/core.xml", data + 1, size - 1);
    if (ReadAndWrite(files) && !ReadAndWrite(files)) std::abort();
    return 0;
}
