#include "inspect/schemacheck.h"

#include <korvanet/platform/assets/reportsink.h>

#include "assets/library/libraryparts.h"
#include "assets/manager/base/librarynamespaces.h"
#include "assets/package/jpkfs.h"
#include "velmor/start_runtime.h"

namespace halvern::inspect {

using namespace korvanet::platform::assets;

namespace {

// Keeps what the readers say while it lives.
class Reports final : public IReportSink {
public:
    Reports() : former_(SetReportSink(this)) {}
    Reports(const Reports&) = delete;
    Reports& operator=(const Reports&) = delete;
    ~Reports() override { SetReportSink(former_); }

    void Trace(const korvanet::platform::core::WideString&, std::uint32_t, std::uint32_t) override {
    }
    void Information(const korvanet::platform::core::WideString&, std::uint32_t,
                     std::uint32_t) override {}
    void Warning(const korvanet::platform::core::WideString& text, std::uint32_t,
                 std::uint32_t) override {
        lines.emplace_back(text.AsUTF8());
    }
    void Error(const korvanet::platform::core::WideString& text, std::uint32_t,
               std::uint32_t) override {
        lines.emplace_back(text.AsUTF8());
    }

    std::vector<std::string> lines;

private:
    IReportSink* former_;
};

std::vector<SchemaShape::Item> ItemsOf(const RecordLayout& layout, std::size_t group,
                                       const RecordForm& form) {
    std::vector<SchemaShape::Item> items;
    for (const RecordLayout::Item& item : layout.Group(group))
        if (InForm(item, group, form)) items.push_back({item, MakeProperty(*item.descriptor)});
    return items;
}

}  // namespace

SchemaCheck::SchemaCheck() : runtime_("inspect", &heap_, &nuo::get_extern_heap()) {
    velmor::startRuntime(runtime_);
    context_.runtime = &runtime_;
    context_.heap = &heap_;
    context_.tables = &tables_;
    InitializeHalvernTypes(runtime_.root(), context_);
    schemas_ = std::make_unique<SchemaManager>(context_, CreateNamespace(runtime_.root(), "schema"),
                                               SchemaScope::kLibrary, nullptr);
}

SchemaCheck::~SchemaCheck() {
    shapes_.clear();
    schemas_->Clear();
}

void SchemaCheck::Load(PackageParts& parts, Findings& findings) {
    std::vector<std::string> names = parts.Files(parts.Path(kSchemasFolder));
    std::vector<nuo::string> ids;
    for (const std::string& name : names)
        if (nuo::string_ref(name).ends_with(kSchemaExtension))
            ids.emplace_back(
                nuo::string_ref(name).substr(0, name.size() - kSchemaExtension.size()));
    schemas_->ExpectFiles(ids);
    const std::string common = Text(kCommonSchema) + Text(kSchemaExtension);
    for (const std::string& name : names)
        if (name == common) LoadPart(parts, name, findings);
    for (const std::string& name : names)
        if (name != common) LoadPart(parts, name, findings);
    FindPending(findings);
}

void SchemaCheck::LoadPart(PackageParts& parts, const std::string& name, Findings& findings) {
    const std::string path = parts.Path(kSchemasFolder) + "/" + name;
    // The manifests of the folder are no schemas.
    if (!IsUserPath(Ref(name)) || !CheckXml(parts, path, "schema.xml", true, findings)) return;
    const nuo::archive::archive_ptr part = parts.Open(path);
    const Reports reports;
    const KRVTSchemaDefinition* schema = schemas_->LoadSchema(*part, nuo::string_ref(path));
    for (const std::string& line : reports.lines)
        findings.Add({"schema.report", path, "", line});
    if (schema == nullptr) {
        findings.AddClosing(
            {"schema.none", path, "",
             "the part holds no schema: it has no UID, names no base, or is too large"});
        return;
    }
    loaded_.emplace(path, schema);
    const std::string id = Text(schema->Id());
    if (reports.lines.empty() && name != id + Text(kSchemaExtension))
        findings.Add({"schema.name", path, "", "the part holds the schema " + id});
}

void SchemaCheck::FindPending(Findings& findings) {
    for (const auto& [path, schema] : loaded_)
        if (schemas_->IsPending(schema->Id()))
            findings.Add({"schema.base", path, "",
                          "the base " + Text(schema->BaseId()) +
                              " of the schema is not in the "
                              "library"});
}

const SchemaShape* SchemaCheck::Find(nuo::string_ref id, const RecordForm& form) {
    const auto known = shapes_.find(id);
    if (known != shapes_.end()) return &known->second;
    const KRVTSchemaDefinition* const schema = schemas_->FindOwn(id);
    if (schema == nullptr) return nullptr;
    const RecordLayout layout(*schema);
    SchemaShape shape;
    shape.schema = schema;
    shape.instance = ItemsOf(layout, PropertyTableImp::kReadWriteGroup, form);
    shape.listing = ItemsOf(layout, PropertyTableImp::kIterationGroup, form);
    return &shapes_.emplace(nuo::string(id), std::move(shape)).first->second;
}

std::vector<const KRVTSchemaDefinition*> SchemaCheck::All() const {
    std::vector<const KRVTSchemaDefinition*> all;
    for (std::uint64_t at = 0; at < schemas_->GetSchemaCount(); ++at)
        all.push_back(schemas_->GetSchema(at));
    return all;
}

bool SchemaCheck::HoldsBaseSchema() const {
    const KRVTSchemaDefinition* const common = schemas_->FindOwn(kCommonSchema);
    return common == nullptr || common->BaseId().empty();
}

}  // namespace halvern::inspect
