#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "nuo/common/buffer_archive.h"
#include "nuo/common/file_archive.h"
#include "support/paths.h"
#include "tests/support/libraryhost.h"
#include "velmor/vfs/in_memory_fs.h"
#include "velmor/vfs/vfs_functions.h"
#include "velmor/vfs/zip.h"

namespace korvanet::platform::assets {

// A package over bytes in memory, and the document in it. The order of the members is that of their
// lives.
class TestLibrary {
public:
    // Opens a sample of tests/data/.
    TestLibrary(TestHost& host, const std::string& sample, bool for_writing);
    // Opens the bytes of a library.
    TestLibrary(TestHost& host, nuo::buffer<nuo::byte> bytes, bool for_writing);
    // Creates an empty one.
    TestLibrary(TestHost& host, const GeneralLibrary::Creating& how);
    // Those of streams: what one writes, and the bytes of it that another reads.
    TestLibrary(TestHost& host, const GeneralLibrary::Serializing& how);
    TestLibrary(TestHost& host, nuo::buffer<nuo::byte> bytes,
                const GeneralLibrary::Deserializing& how);

    // Saves and gives the bytes of the file.
    nuo::buffer<nuo::byte> SavedBytes();
    // The same without saving: the parts as they are.
    nuo::buffer<nuo::byte> CommittedBytes();
    GeneralLibrary* operator->() { return document.get(); }
    GeneralLibrary& operator*() { return *document; }
    // A record's definition, loaded.
    AssetDefinition& Definition(const std::string& identifier);
    nuo::string Text(const std::string& identifier, const char* property);
    // The bytes of a part; empty when there is none.
    std::string Part(const std::string& path);
    // Makes or replaces a part.
    void Write(const std::string& path, const std::string& bytes);

    nuo::archive::mem_read_write_archive archive;
    velmor::fs::InMemory scratch{"test"};
    std::unique_ptr<velmor::fs::ZipFs> zip;
    std::unique_ptr<JpkFs> package;
    std::unique_ptr<GeneralLibrary> document;

private:
    void Build();
};

nuo::buffer<nuo::byte> FileBytes(const std::string& path);

// A library with the two schemas of the test host.
std::unique_ptr<TestLibrary> MakePaintLibrary(TestHost& host, const char* identifier = "LIB");
// A definition of PaintSchema stored in it under a name.
AssetDefinition& AddPaint(TestLibrary& library, const char* identifier);

}  // namespace korvanet::platform::assets
