#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <korvanet/platform/core/utf8string.h>

#include <memory>
#include <string>

#include "assets/asset/assetdefinition.h"
#include "assets/asset/assettables.h"
#include "assets/library/generallibrary.h"
#include "assets/library/ilibraryhost.h"
#include "assets/localization/localizationmanagerimp.h"
#include "assets/property/halverntypes.h"
#include "assets/schema/schemadefinition.h"
#include "assets/schema/schemamanager.h"
#include "nuo/common/buffer_archive.h"
#include "nuo/common/file_archive.h"
#include "support/paths.h"
#include "velmor/runtime.h"
#include "velmor/start_runtime.h"
#include "velmor/vfs/in_memory_fs.h"
#include "velmor/vfs/local_fs.h"
#include "velmor/vfs/vfs_functions.h"
#include "velmor/vfs/zip.h"

namespace korvanet::platform::assets {

// Everything that a library document needs of the manager, in its plainest form.
class TestHost final : public ILibraryHost, public ISchemaSet {
public:
    TestHost();
    ~TestHost();

    const ModuleContext& Context() override { return context; }
    ISchemaSet& Schemas() override { return *this; }
    bool PromoteSchema(KRVTSchemaDefinition& schema) override { return global->AddSchema(&schema); }
    velmor::fs::IVfs& TempFs() override { return *temp; }
    nuo::string ResolvePath(nuo::string_ref name) override;
    nuo::archive::archive_ptr OpenForeignPart(nuo::string_ref path) override;
    ILegacyContent* Legacy() override { return legacy; }
    KRVTSchemaDefinition* FindGlobalSchema(nuo::string_ref id) override {
        return global->FindOwn(id);
    }
    void PropertyAdded(KRVTSchemaDefinition&, const PropertyBase&) override {}

    velmor::Namespace Slib() { return slib; }
    std::string Folder() const { return folder; }
    // Makes a file in the host's folder and gives its path.
    std::string MakeFile(const std::string& name, const std::string& content) const;

    velmor::Runtime runtime;
    ModuleContext context;
    AssetTables tables;
    ILocalizationManagerImp localization;
    velmor::Namespace slib;
    std::unique_ptr<SchemaManager> global;
    std::string folder;
    std::unique_ptr<velmor::fs::LocalFs> temp;
    // Search paths of ResolvePath.
    std::string search_path;
    // Other libraries that OpenForeignPart asks, by identifier.
    std::map<std::string, GeneralLibrary*> libraries;
    ILegacyContent* legacy = nullptr;
};

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

    // Saves and gives the bytes of the file.
    nuo::buffer<nuo::byte> SavedBytes();
    GeneralLibrary* operator->() { return document.get(); }
    GeneralLibrary& operator*() { return *document; }
    // A record's definition, loaded.
    AssetDefinition& Definition(const std::string& identifier);
    nuo::string Text(const std::string& identifier, const char* property);
    // The bytes of a part; empty when there is none.
    std::string Part(const std::string& path);

    nuo::archive::mem_read_write_archive archive;
    velmor::fs::InMemory scratch{"test"};
    std::unique_ptr<velmor::fs::ZipFs> zip;
    std::unique_ptr<JpkFs> package;
    std::unique_ptr<GeneralLibrary> document;

private:
    void Build();
};

nuo::buffer<nuo::byte> FileBytes(const std::string& path);

// A library with the schemas CommonSchema and PaintSchema, which has a number "p_depth", a URI
// "p_file", a list of textures "p_images" and a property "p_map" that takes several connected
// assets.
std::unique_ptr<TestLibrary> MakePaintLibrary(TestHost& host, const char* identifier = "LIB");
// A definition of PaintSchema stored in it under a name.
AssetDefinition& AddPaint(TestLibrary& library, const char* identifier);

}  // namespace korvanet::platform::assets
