#include "schema/support.h"

#include <korvanet/platform/assets/ivalue.h>

#include "assets/manager/base/librarynamespaces.h"
#include "assets/property/propertytable.h"
#include "assets/schema/propertydata.h"
#include "assets/schema/schemaxmlreader.h"
#include "assets/serialization/io/archivestream.h"
#include "nuo/common/archive/primitives.h"
#include "nuo/common/buffer_archive.h"
#include "velmor/start_runtime.h"

namespace korvanet::platform::assets {

namespace {

nuo::buffer<nuo::byte> BytesOf(const std::string& text) {
    nuo::archive::mem_write_archive archive;
    nuo::archive::write_all(archive, {text.data(), text.size()});
    return archive.get_buffer();
}

}  // namespace

PropertyTableImp* SchemaTables::MakeTable(TableKind, HalvernAsset& holder,
                                          const ModuleContext& context) {
    return new KRVTSchemaDefinition(holder, context);
}

SchemaWorld::SchemaWorld(ITableFactory& tables)
    : runtime("test", &nuo::get_heap(), &nuo::get_extern_heap()) {
    velmor::startRuntime(runtime);
    context.runtime = &runtime;
    context.heap = &nuo::get_heap();
    context.tables = &tables;
    InitializeHalvernTypes(runtime.root(), context);
    slib = CreateNamespace(runtime.root(), "slib");
    const LibraryNamespaces shared = LibraryNamespaces::Create(slib, "global");
    global = std::make_unique<SchemaManager>(context, shared.schema, SchemaScope::kGlobal, this);
}

SchemaWorld::~SchemaWorld() = default;

KRVTSchemaDefinition* SchemaWorld::FindGlobalSchema(nuo::string_ref id) {
    return global->FindOwn(id);
}

void SchemaWorld::PropertyAdded(KRVTSchemaDefinition& schema, const PropertyBase& property) {
    added.push_back(Str(schema.Id()) + " " + Str(property.Name()));
}

velmor::Namespace SchemaWorld::MakeNamespace(const char* name) {
    return CreateNamespace(slib, name);
}

KRVTSchemaDefinition& SchemaTest::NewSchema(const char* id) {
    auto& schema = static_cast<KRVTSchemaDefinition&>(MakeTable(world.context, TableKind::kSchema));
    schema.SetName(id);
    schema.SetSet(&world);
    held_.emplace_back(&schema);
    return schema;
}

KRVTSchemaDefinition& SchemaTest::Read(const std::string& xml) {
    KRVTSchemaDefinition& schema = NewSchema("");
    SchemaManagerXmlData reader(schema);
    XmlDriverState driver(reader);
    const nuo::buffer<nuo::byte> bytes = BytesOf(xml);
    nuo::archive::buffer_in archive(bytes);
    ParseXml(driver, archive);
    return schema;
}

KRVTSchemaDefinition* LoadXml(SchemaManager& manager, const std::string& xml) {
    MemoryStream stream(BytesOf(xml));
    return manager.LoadSchema(static_cast<core::IDataReader*>(&stream));
}

std::string CommonXml(const std::string& more) {
    return "<AssetSchema><UID val=\"CommonSchema\"/>"
           "<String id=\"BaseSchema\" public=\"false\" definitionIteratorData=\"true\"/>"
           "<Integer id=\"SchemaVersion\" val=\"3\" public=\"false\" readonly=\"true\"/>"
           "<String id=\"AssetLibID\"/>"
           "<String id=\"assettype\"/>"
           "<localtype val=\"\" readonly=\"true\" local=\"true\" public=\"false\"/>"
           "<localname val=\"\" readonly=\"true\" local=\"true\" public=\"false\"/>"
           "<String id=\"UIName\" local=\"true\" definitionIteratorData=\"true\" label=\"Name\"/>"
           "<String id=\"keyword\" local=\"true\" definitionIteratorData=\"true\""
           " allowmultiplevalues=\"true\" val=\"\"/>"
           "<String id=\"category\" local=\"true\" definitionIteratorData=\"true\""
           " allowmultiplevalues=\"true\" val=\"\"/>"
           "<String id=\"description\" local=\"true\" definitionIteratorData=\"true\"/>"
           "<URL id=\"thumbnail\" definitionIteratorData=\"true\" allowmultiplevalues=\"true\""
           " val=\"\"/>"
           "<Boolean id=\"Hidden\" val=\"false\" definitionIteratorData=\"true\"/>"
           "<Uuid id=\"VersionGUID\" public=\"false\" definitionIteratorData=\"true\"/>"
           "<Integer id=\"version\" val=\"1\"/><Integer id=\"revision\" val=\"1\"/>"
           "<ui id=\"UIDefinition\" val=\"\"/><ui id=\"AdvancedUIDefinition\" val=\"\"/>" +
           more + "</AssetSchema>";
}

std::string DerivedXml(const std::string& id, const std::string& base,
                       const std::string& elements) {
    return "<AssetSchema><UID val=\"" + id + "\"/><Base val=\"" + base + "\"/>" + elements +
           "</AssetSchema>";
}

std::string Str(const nuo::string& text) {
    return {text.begin(), text.end()};
}

PropertyBase& Find(const PropertyTableImp& table, const char* name) {
    PropertyBase* property = table.FindProperty(nuo::string_ref(name));
    if (property == nullptr) throw std::runtime_error(std::string("no property ") + name);
    return *property;
}

bool Has(const PropertyTableImp& table, const char* name) {
    return table.FindProperty(nuo::string_ref(name)) != nullptr;
}

Lines TextsOf(const PropertyBase& property) {
    Lines texts;
    for (std::uint64_t i = 0; i < TextCount(property); ++i) {
        texts.push_back(Str(*TextAt(property, i)));
    }
    return texts;
}

std::string TextOf(const PropertyBase& property) {
    const nuo::string* text = TextAt(property, 0);
    return text != nullptr ? Str(*text) : "no text";
}

std::int32_t IntegerOf(const PropertyBase& property, std::uint64_t index) {
    return dynamic_cast<const IIntegerValue&>(*property.GetValue()).GetValue(index);
}

double NumberOf(const PropertyBase& property, std::uint64_t index) {
    return dynamic_cast<const IScalarValue&>(*property.GetValue()).GetValue(index);
}

std::vector<double> ColorOf(const PropertyBase& property, std::uint64_t index) {
    std::vector<double> rgba(4);
    dynamic_cast<const IColorValue&>(*property.GetValue())
        .GetValue(rgba[0], rgba[1], rgba[2], rgba[3], index);
    return rgba;
}

Lines NamesOf(const KRVTSchemaDefinition& schema) {
    Lines names;
    for (const PropertyBase* property : schema.Properties()) {
        names.push_back(Str(property->Name()));
    }
    return names;
}

}  // namespace korvanet::platform::assets
