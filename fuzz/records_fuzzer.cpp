// Puts any bytes in place of one part of a small library, opens that, lists and loads its
// definitions and saves it. The first byte of an input chooses the part (table of contents, version
// table, either store) and whether the library lies in a ZIP, so that signature and deflate stand
// around the part; the rest is the part. Seeds: fuzz/corpus/records/.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "assets/library/bytecopy.h"
#include "assets/library/definitioniterator.h"
#include "assets/library/libraryparts.h"
#include "nuo/common/archive/primitives.h"
#include "nuo/common/buffer_archive.h"
#include "tests/support/libraryhost.h"
#include "velmor/vfs/in_memory_fs.h"
#include "velmor/vfs/vfs_functions.h"
#include "velmor/vfs/zip.h"

namespace {

namespace fs = velmor::fs;
using namespace korvanet::platform::assets;

constexpr nuo::string_ref kParts[] = {kContentsPart, kInstanceStorePart, kDefinitionStorePart,
                                      kVersionTablePart};
constexpr std::uint8_t kInZip = 4;

AssetDefinition& AddPaint(GeneralLibrary& library, nuo::string_ref name) {
    AssetDefinition& model =
        MakeDefinition(*library.Schemas().FindOwn("PaintSchema"), velmor::Namespace(), "model");
    model.AddReference();
    AssetDefinition* const made = library.CreatePreset(model, name, {});
    model.Release();
    return *made;
}

// The library whose parts are replaced: two definitions, the one connected to the other.
void WriteModel(TestHost& host, fs::IVfs& files) {
    JpkFs package(files, "model");
    GeneralLibrary library(host, package, host.Slib(), GeneralLibrary::Creating{"LIB", 0});
    LoadGlobal(host, "CommonSchema", kCommonSchemaXml);
    library.EnsureSchema(*LoadGlobal(host, "PaintSchema", kPaintSchemaXml));
    AssetDefinition& wall = AddPaint(library, "Wall");
    wall.FindProperty(nuo::string_ref("p_map"))->AppendConnection(AddPaint(library, "Spots"));
    library.Save();
    package.sync();
}

// A file system as a list, folders before what lies in them.
struct Entry {
    nuo::string path;
    bool folder;
    nuo::buffer<nuo::byte> bytes;
};
using Entries = std::vector<Entry>;

void List(fs::IVfs& files, nuo::string_ref folder, Entries& entries) {
    for (const fs::VfsNode& node : files.children(folder)) {
        const nuo::string path = fs::joinPath(folder, node.path);
        if (files.state(path).state == fs::state_directory) {
            entries.push_back({path, true, nuo::buffer<nuo::byte>()});
            List(files, path, entries);
            continue;
        }
        const auto from = files.create(path, fs::mode_read | fs::mode_random, fs::open_existing);
        nuo::archive::mem_read_write_archive bytes;
        CopyAll(*from, bytes);
        entries.push_back({path, false, bytes.get_buffer()});
    }
}

void Write(fs::IVfs& files, const Entries& entries) {
    for (const Entry& entry : entries) {
        if (entry.folder) {
            files.createDir(entry.path);
            continue;
        }
        const auto out = files.create(entry.path, fs::mode_all, fs::open_or_create);
        nuo::archive::write_all(*out->query_writer(), {entry.bytes.begin(), entry.bytes.end()});
    }
}

Entries MakeModel(TestHost& host) {
    fs::InMemory files("model");
    WriteModel(host, files);
    Entries entries;
    List(files, "", entries);
    return entries;
}

void Use(TestHost& host, fs::IVfs& files) {
    try {
        JpkFs package(files, "fuzz");
        GeneralLibrary library(host, package, host.Slib(), GeneralLibrary::Writing{});
        AssetDefinitionDataIterator walk(library, AllDefinitions(library));
        korvanet::platform::core::UTF8String text;
        for (; !walk.IsAtEnd(); walk.Next()) {
            walk.GetUIName(text, korvanet::platform::core::UTF8String("ENG"));
            if (IAssetDefinition* definition = walk.GetDefinition()) definition->Release();
        }
        library.Save();
    } catch (const nuo::exception&) {
        // Bad parts raise.
    }
}

// The same files as a ZIP that was written and is read again.
void UseAsZip(TestHost& host, const Entries& entries) {
    nuo::archive::mem_read_write_archive archive;
    fs::InMemory cache("cache");
    fs::ZipFs zip(archive, cache, "zip", false);
    Write(zip, entries);
    zip.commit();
    fs::InMemory scratch("scratch");
    fs::ZipFs again(archive, scratch, "zip", false);
    Use(host, again);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    static auto* const host = new TestHost;
    static auto* const model = new Entries(MakeModel(*host));
    Entries entries = *model;
    const nuo::string part = fs::joinPath("LIB", kParts[data[0] & 3]);
    for (Entry& entry : entries)
        if (entry.path == part) entry.bytes = nuo::buffer<nuo::byte>(data + 1, data + size);
    if ((data[0] & kInZip) != 0) {
        UseAsZip(*host, entries);
        return 0;
    }
    fs::InMemory files("library");
    Write(files, entries);
    Use(*host, files);
    return 0;
}
