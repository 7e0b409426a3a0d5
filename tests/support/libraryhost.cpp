#include "tests/support/libraryhost.h"

#include <stdlib.h>
#include <sys/stat.h>

#include <cstring>
#include <filesystem>
#include <fstream>

#include "assets/manager/base/librarynamespaces.h"
#include "nuo/common/buffer_archive.h"
#include "velmor/start_runtime.h"

namespace korvanet::platform::assets {

extern const char kCommonSchemaXml[] = R"(<AssetSchema><UID val="CommonSchema"/>
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

extern const char kPaintSchemaXml[] =
    R"(<AssetSchema><UID val="PaintSchema"/><Base val="CommonSchema"/>
<type val="materialappearance"/><Float id="p_depth" val="0.5"/><URL id="p_file" val=""/>
<TextureURI id="p_images" val=""/><Float id="p_map" val="0" allowconnectedassets="multiple"/></AssetSchema>)";

KRVTSchemaDefinition* LoadGlobal(TestHost& host, const char* id, const char* xml) {
    if (KRVTSchemaDefinition* known = host.global->FindOwn(id)) return known;
    const auto* first = reinterpret_cast<const nuo::byte*>(xml);
    nuo::archive::mem_read_write_archive in(
        nuo::buffer<nuo::byte>(first, first + std::strlen(xml)));
    return host.global->LoadSchema(in);
}

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

void TestHost::PromoteSchemas(const std::vector<KRVTSchemaDefinition*>& schemas) {
    SchemaManager::Added met;
    for (KRVTSchemaDefinition* schema : schemas)
        global->AddSchema(schema, met);
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

}  // namespace korvanet::platform::assets
