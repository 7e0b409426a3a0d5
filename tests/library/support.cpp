#include "support.h"

#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "assets/library/bytecopy.h"

namespace korvanet::platform::assets {
namespace {

constexpr char kCommonSchema[] = R"(<AssetSchema><UID val="CommonSchema"/>
<String id="BaseSchema" public="false" definitionIteratorData="true"/>
<Integer id="SchemaVersion" val="3" public="false" readonly="true"/>
<String id="AssetLibID"/><String id="assettype"/>
<localtype val="" readonly="true" local="true" public="false"/>
<localname val="" readonly="true" local="true" public="false"/>
<String id="UIName" local="true" definitionIteratorData="true"/>
<String id="keyword" local="true" definitionIteratorData="true" allowmultiplevalues="true" val=""/>
<String id="category" local="true" definitionIteratorData="true" allowmultiplevalues="true" val=""/>
<String id="description" local="true" definitionIteratorData="true"/>
<URL id="thumbnail" definitionIteratorData="true" allowmultiplevalues="true" val=""/>
<Boolean id="Hidden" val="false" definitionIteratorData="true"/>
<Uuid id="VersionGUID" public="false" definitionIteratorData="true"/>
<Integer id="version" val="1"/><Integer id="revision" val="1"/>
<ui id="UIDefinition" val=""/><ui id="AdvancedUIDefinition" val=""/></AssetSchema>)";

constexpr char kPaintSchema[] = R"(<AssetSchema><UID val="PaintSchema"/><Base val="CommonSchema"/>
<type val="materialappearance"/><Float id="p_depth" val="0.5"/><URL id="p_file" val=""/>
<TextureURI id="p_images" val=""/><Float id="p_map" val="0" allowconnectedassets="multiple"/></AssetSchema>)";

KRVTSchemaDefinition& LoadGlobal(TestHost& host, const char* id, const char* xml) {
    if (KRVTSchemaDefinition* known = host.global->FindOwn(id)) return *known;
    nuo::archive::mem_read_write_archive in(nuo::buffer<nuo::byte>(
        reinterpret_cast<const nuo::byte*>(xml),
        reinterpret_cast<const nuo::byte*>(xml) + std::char_traits<char>::length(xml)));
    KRVTSchemaDefinition* const schema = host.global->LoadSchema(in, "");
    EXPECT_NE(schema, nullptr);
    return *schema;
}

}  // namespace

TestHost::TestHost() : runtime("test", &nuo::get_heap(), &nuo::get_extern_heap()) {
    velmor::startRuntime(runtime);
    context.runtime = &runtime;
    context.heap = runtime.heap();
    context.tables = &tables;
    context.localization = &localization;
    InitializeHalvernTypes(runtime.root(), context);
    slib = CreateNamespace(runtime.root(), "slib");
    const auto group = LibraryNamespaces::Create(slib, "global");
    global = std::make_unique<SchemaManager>(context, group.schema, SchemaScope::kGlobal, this);
    char name[] = "/tmp/halvern_library_XXXXXX";
    folder = ::mkdtemp(name);
    ::mkdir((folder + "/temp").c_str(), 0777);
    temp = std::make_unique<velmor::fs::LocalFs>(nuo::string((folder + "/temp").c_str()));
}

TestHost::~TestHost() {
    global.reset();
    std::filesystem::remove_all(folder);
}

nuo::string TestHost::ResolvePath(nuo::string_ref name) {
    const std::string text(name.data(), name.size());
    if (!text.empty() && text[0] == '/')
        return std::filesystem::exists(text) ? nuo::string(name) : nuo::string();
    const std::string below = search_path + "/" + text;
    return !search_path.empty() && std::filesystem::exists(below) ? nuo::string(below.c_str())
                                                                  : nuo::string();
}

nuo::archive::archive_ptr TestHost::OpenForeignPart(nuo::string_ref path) {
    const std::string text(path.data(), path.size());
    const auto other = libraries.find(text.substr(0, text.find('/')));
    return other == libraries.end() ? nullptr : other->second->Resources().OpenPart(path);
}

std::string TestHost::MakeFile(const std::string& name, const std::string& content) const {
    const std::string path = folder + "/" + name;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << content;
    return path;
}

nuo::buffer<nuo::byte> FileBytes(const std::string& path) {
    nuo::archive::file_read_archive file(path.c_str());
    nuo::archive::mem_read_write_archive memory;
    CopyAll(file, memory);
    return memory.get_buffer();
}

TestLibrary::TestLibrary(TestHost& host, const std::string& sample, bool for_writing)
    : TestLibrary(host, FileBytes(halvern_tests::DataFile(sample)), for_writing) {}

TestLibrary::TestLibrary(TestHost& host, nuo::buffer<nuo::byte> bytes, bool for_writing)
    : archive(std::move(bytes)) {
    Build();
    if (for_writing)
        document = std::make_unique<GeneralLibrary>(host, *package, host.Slib(),
                                                    GeneralLibrary::Writing{});
    else
        document = std::make_unique<GeneralLibrary>(host, *package, host.Slib(),
                                                    GeneralLibrary::Reading{});
}

TestLibrary::TestLibrary(TestHost& host, const GeneralLibrary::Creating& how) {
    Build();
    document = std::make_unique<GeneralLibrary>(host, *package, host.Slib(), how);
}

void TestLibrary::Build() {
    zip = std::make_unique<velmor::fs::ZipFs>(archive, scratch, "test", false);
    package = std::make_unique<JpkFs>(*zip, "test");
}

nuo::buffer<nuo::byte> TestLibrary::SavedBytes() {
    EXPECT_TRUE(document->Save());
    package->sync();
    zip->commit();
    return archive.get_buffer();
}

AssetDefinition& TestLibrary::Definition(const std::string& identifier) {
    AssetDefinition* const definition = document->LoadDefinition(identifier.c_str());
    if (definition == nullptr) throw std::runtime_error("no definition " + identifier);
    return *definition;
}

nuo::string TestLibrary::Text(const std::string& identifier, const char* property) {
    for (std::size_t group = 0; group < PropertyTableImp::kGroupCount; ++group)
        if (Definition(identifier).FindInGroup(group, property) != nullptr)
            return Definition(identifier).GetText(group, property);
    return "(none)";
}

std::string TestLibrary::Part(const std::string& path) {
    const auto part = package->create(path.c_str(), velmor::fs::mode_read | velmor::fs::mode_random,
                                      velmor::fs::open_existing);
    if (!part) return {};
    nuo::archive::mem_read_write_archive memory;
    CopyAll(*part, memory);
    const auto& bytes = memory.get_buffer();
    return {reinterpret_cast<const char*>(bytes.begin()), bytes.size()};
}

std::unique_ptr<TestLibrary> MakePaintLibrary(TestHost& host, const char* identifier) {
    auto library = std::make_unique<TestLibrary>(host, GeneralLibrary::Creating{identifier, 0});
    LoadGlobal(host, "CommonSchema", kCommonSchema);
    EXPECT_NE((*library)->EnsureSchema(LoadGlobal(host, "PaintSchema", kPaintSchema)), nullptr);
    return library;
}

AssetDefinition& AddPaint(TestLibrary& library, const char* identifier) {
    KRVTSchemaDefinition& schema = *library->Schemas().FindOwn("PaintSchema");
    AssetDefinition& model = MakeDefinition(schema, velmor::Namespace(), "model");
    model.AddReference();
    AssetDefinition* const made = library->CreatePreset(model, identifier, {});
    model.Release();
    EXPECT_NE(made, nullptr);
    return *made;
}

}  // namespace korvanet::platform::assets
