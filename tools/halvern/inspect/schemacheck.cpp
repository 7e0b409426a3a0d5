#include "inspect/schemacheck.h"

#include <algorithm>
#include <map>
#include <set>

#include <korvanet/platform/assets/reportsink.h>

#include "assets/library/libraryparts.h"
#include "assets/manager/base/guarded.h"
#include "assets/manager/base/librarynamespaces.h"
#include "assets/package/jpkfs.h"
#include "assets/schema/schemagrammar.h"
#include "assets/serialization/io/xmlhandler.h"
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

// The properties that a schema file tells, in the order of the file.
class ToldProperties final : public IXmlCallBack {
public:
    void OnXml(XmlDriverState& driver, const nuo::string& name, const nuo::string&,
               const XmlAttributes& attributes, bool start) override {
        if (!start || driver.elements.size() != 2 ||
            grammar::KindOfElement(name) == PropertyType::kUnspecified)
            return;
        const auto id = attributes.find("id");
        if (id != attributes.end()) ids.push_back(Text(id->second));
    }

    std::vector<std::string> ids;
};

// The property that a report names, as a place; empty when it names none.
std::string PlaceOf(const std::string& report) {
    constexpr std::string_view kBefore = "Node: ";
    const std::size_t at = report.find(kBefore);
    if (at == std::string::npos) return {};
    const std::size_t from = at + kBefore.size();
    return "property " + report.substr(from, report.find(',', from) - from);
}

// What a schema file of that name should hold.
nuo::string StemOf(const std::string& name) {
    const nuo::string_ref file = Ref(name);
    return file.ends_with(kSchemaExtension)
               ? nuo::string(file.substr(0, file.size() - kSchemaExtension.size()))
               : nuo::string(file);
}

using BaseOf = std::map<nuo::string, nuo::string, nuo::string_less>;

// The schemas that come again among their bases, in one pass: each has one base.
std::set<nuo::string, nuo::string_less> InCircles(const BaseOf& base_of) {
    std::map<nuo::string, std::size_t, nuo::string_less> walk_of;
    std::set<nuo::string, nuo::string_less> circles;
    std::size_t walk = 0;
    for (auto start = base_of.begin(); start != base_of.end(); ++start) {
        ++walk;
        auto at = start;
        while (at != base_of.end() && walk_of.emplace(at->first, walk).second)
            at = base_of.find(at->second);
        if (at == base_of.end() || walk_of[at->first] != walk) continue;
        while (circles.insert(at->first).second)
            at = base_of.find(at->second);
    }
    return circles;
}

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
        if (Ref(name).ends_with(kSchemaExtension)) ids.push_back(StemOf(name));
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
    if (!IsUserPath(Ref(name))) return;
    if (!CheckXml(parts, path, "schema.xml", true, findings)) {
        broken_.insert(StemOf(name));
        return;
    }
    const nuo::archive::archive_ptr part = parts.Open(path);
    const Reports reports;
    // It raises where the schemas are too large together, and is told like one that is so alone.
    const KRVTSchemaDefinition* const schema =
        Guarded(nullptr, [&]() -> KRVTSchemaDefinition* { return schemas_->LoadSchema(*part); });
    for (const std::string& line : reports.lines)
        findings.Add({"schema.report", path, PlaceOf(line), line});
    if (schema == nullptr) {
        broken_.insert(StemOf(name));
        findings.AddClosing(
            {"schema.none", path, "",
             "the part holds no schema: it has no UID, names no base, or is too large"});
        return;
    }
    loaded_.emplace(path, schema);
    CheckProperties(parts, path, *schema, reports.lines, findings);
    const std::string id = Text(schema->Id());
    if (reports.lines.empty() && name != id + Text(kSchemaExtension))
        findings.Add({"schema.name", path, "", "the part holds the schema " + id});
}

// What the reader of schemas leaves out without a word.
void SchemaCheck::CheckProperties(PackageParts& parts, const std::string& path,
                                  const KRVTSchemaDefinition& schema,
                                  const std::vector<std::string>& reports, Findings& findings) {
    ToldProperties told;
    XmlDriverState driver(told);
    const nuo::archive::archive_ptr part = parts.Open(path);
    ParseXml(driver, *part);
    std::set<std::string> seen;
    for (const std::string& id : told.ids) {
        const std::string where = "property " + id;
        const bool reported =
            std::any_of(reports.begin(), reports.end(),
                        [&](const std::string& report) { return PlaceOf(report) == where; });
        if (!seen.insert(id).second)
            findings.Add({"schema.property", path, where,
                          "the property stands a second time, and is passed over"});
        else if (!reported && schema.FindByNameOrAlias(Ref(id)) == nullptr)
            findings.Add({"schema.property", path, where,
                          "the property is left out: its default is not one it may have"});
    }
}

// A schema whose base is broken itself says nothing new.
void SchemaCheck::FindPending(Findings& findings) {
    BaseOf base_of;
    for (const auto& [path, schema] : loaded_)
        if (schemas_->IsPending(schema->Id())) base_of.emplace(schema->Id(), schema->BaseId());
    const auto circles = InCircles(base_of);
    for (const auto& [path, schema] : loaded_) {
        if (base_of.count(schema->Id()) == 0) continue;
        const nuo::string base = schema->BaseId();
        if (circles.contains(schema->Id()))
            findings.Add({"schema.base", path, "", "the bases of the schema run in a circle"});
        else if (!broken_.contains(base) && base_of.count(base) == 0)
            findings.Add({"schema.base", path, "",
                          "the base " + Text(base) + " of the schema is not in the library"});
        broken_.insert(schema->Id());
    }
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
