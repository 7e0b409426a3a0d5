#include "assets/asset/assetdefinition.h"
#include "assets/library/generallibrary.h"
#include "assets/library/libraryconnectioncodec.h"
#include "assets/library/librarymarkers.h"
#include "assets/library/libraryparts.h"
#include "assets/library/tabletext.h"
#include "assets/property/fixedproperties.h"
#include "assets/property/itablefactory.h"
#include "assets/schema/schemadefinition.h"
#include "assets/schema/schemamanager.h"
#include "nuo/common/buffer_archive.h"
#include "velmor/object.h"
#include "velmor/runtime.h"
#include "velmor/scoped_object_creator.h"

namespace korvanet::platform::assets {
namespace {

// A mark that is taken back when the work that it announces fails.
class TentativeMark {
public:
    explicit TentativeMark(bool& mark) : mark_(mark) { mark_ = true; }
    TentativeMark(const TentativeMark&) = delete;
    TentativeMark& operator=(const TentativeMark&) = delete;
    ~TentativeMark() {
        if (!kept_) mark_ = false;
    }
    void Keep() { kept_ = true; }

private:
    bool& mark_;
    bool kept_ = false;
};

class DepthCount {
public:
    explicit DepthCount(int& depth) : depth_(depth) { ++depth_; }
    DepthCount(const DepthCount&) = delete;
    DepthCount& operator=(const DepthCount&) = delete;
    ~DepthCount() { --depth_; }

private:
    int& depth_;
};

nuo::buffer<nuo::byte> ReadChain(DataStore* store, const HalvernAsset& record,
                                 std::uint32_t HalvernAsset::*block) {
    if (store == nullptr) NUO_RAISE(JpkFsErr);  // a reopening that failed has left it closed
    return store->ReadAll(record.*block, &record);
}

}  // namespace

HalvernAsset* GeneralLibrary::FindRecord(nuo::string_ref identifier) const {
    const velmor::NameValuePair found = namespaces_.asset.findObject(identifier);
    return found.name != nullptr ? static_cast<HalvernAsset*>(found.value.data()) : nullptr;
}

std::vector<nuo::string> GeneralLibrary::RecordNames() const {
    std::vector<nuo::string> names;
    for (const velmor::NameValuePair& entry : namespaces_.asset.objects())
        names.push_back(*entry.name);
    return names;
}

AssetDefinition* GeneralLibrary::LoadDefinition(nuo::string_ref identifier) {
    HalvernAsset* const record = FindRecord(identifier);
    return record != nullptr ? &static_cast<AssetDefinition&>(LoadRecord(*record)) : nullptr;
}

PropertyTableImp& GeneralLibrary::LoadListing(HalvernAsset& record) {
    PropertyTableImp& table = EnsureTable(record);
    if (!record.definitionLoaded) ReadGroup(record, PropertyTableImp::kIterationGroup);
    return table;
}

PropertyTableImp& GeneralLibrary::LoadRecord(HalvernAsset& record) {
    PropertyTableImp& table = LoadListing(record);
    if (!record.instanceLoaded) {
        ReadGroup(record, PropertyTableImp::kReadWriteGroup);
        if (role_ != Role::kDeserializer)
            static_cast<AssetDefinition&>(table).SetAssetLibId(identifier_);
    }
    return table;
}

bool GeneralLibrary::Owns(const PropertyTableImp& table) const {
    const velmor::Namespace registry = table.Registry();
    return registry.valid() && (registry == namespaces_.asset || registry == namespaces_.tmpAsset ||
                                registry == namespaces_.schema);
}

bool GeneralLibrary::IsRecord(const PropertyTableImp& table) const {
    return table.Registry().valid() && table.Registry() == namespaces_.asset;
}

// The form that records are written in by now, and were read in when all versions were the present
// ones.
RecordForm GeneralLibrary::PresentForm() const {
    RecordForm form;
    form.has_parent = role_ != Role::kLibrary;
    const KRVTSchemaDefinition* const common = schemas_->FindOwn(kCommonSchema);
    form.has_base_schema = common == nullptr || common->BaseId().empty();
    return form;
}

const RecordLayout& GeneralLibrary::LayoutOf(const KRVTSchemaDefinition& schema) {
    const auto known = layouts_.find(schema.Id());
    if (known != layouts_.end()) return known->second;
    return layouts_.emplace(schema.Id(), RecordLayout(schema)).first->second;
}

HalvernAsset& GeneralLibrary::AddRecord(nuo::string_ref identifier) {
    const ModuleContext& context = host_.Context();
    velmor::ScopedObjectCreator creator(context.heap, context.runtime->extHeap());
    auto& record = *static_cast<HalvernAsset*>(creator.create(context.types.Asset()).data());
    record.identifier = nuo::string(identifier);
    record.registry = namespaces_.asset;
    creator.adoptBy(namespaces_.asset, record.identifier);
    ++generation_;
    return record;
}

// The groups come with their records: a listing needs only one of them.
PropertyTableImp& GeneralLibrary::MakeTable(HalvernAsset& record, KRVTSchemaDefinition& schema) {
    const ModuleContext& context = host_.Context();
    PropertyTableImp& table = *context.tables->MakeTable(TableKind::kDefinition, record, context);
    table.SetBase(&schema);
    table.SetSource(&schema);
    table.TakeGroup(PropertyTableImp::kReadOnlyGroup, schema);
    table.Enter(namespaces_.asset, record.identifier);
    table.SetPinned(true);
    return table;
}

PropertyTableImp& GeneralLibrary::EnsureTable(HalvernAsset& record) {
    if (record.table != nullptr) return *record.table;
    const nuo::buffer<nuo::byte> bytes =
        ReadChain(instance_store_.get(), record, &HalvernAsset::instanceBlock);
    nuo::archive::buffer_in in(bytes);
    const RecordHeader header = ReadRecordHeader(in, form_);
    // The library's own counts also while it waits for its base: a namesake of the shared set would
    // read the record by another form.
    KRVTSchemaDefinition* const schema =
        schemas_->IsPending(header.schema) ? nullptr : schemas_->Find(header.schema);
    if (schema == nullptr) NUO_RAISE(SchemaNotFoundErr, record.identifier);
    // One of the shared set becomes the library's own, so that the record keeps its shape whatever
    // else is open, and is saved with it.
    KRVTSchemaDefinition* const own = EnsureSchema(*schema);
    return MakeTable(record, own != nullptr ? *own : *schema);
}

void GeneralLibrary::ReadGroup(HalvernAsset& record, std::size_t group) {
    const bool listing = group == PropertyTableImp::kIterationGroup;
    // Marked first: a definition that is connected to itself, over whatever others, is met again on
    // the way.
    TentativeMark mark(listing ? record.definitionLoaded : record.instanceLoaded);
    PropertyTableImp& table = *record.table;
    const auto& schema = static_cast<const KRVTSchemaDefinition&>(*table.Base());
    table.TakeGroup(group, schema);
    const nuo::buffer<nuo::byte> bytes =
        listing ? ReadChain(definition_store_.get(), record, &HalvernAsset::definitionBlock)
                : ReadChain(instance_store_.get(), record, &HalvernAsset::instanceBlock);
    nuo::archive::buffer_in in(bytes);
    if (!listing) ReadRecordHeader(in, form_);
    const LibraryConnectionCodec codec(*this);
    ReadRecordGroup(in, LayoutOf(schema), group, form_, table);
    // A table of contents before 3.1 does not tell it; the record's own schema does.
    if (listing && !form_.has_base_schema)
        SetText(table, fixed_property::kBaseSchema,
                record.baseSchema.empty() ? schema.Id() : record.baseSchema);
    mark.Keep();
}

HalvernAsset* GeneralLibrary::LoadConnected(nuo::string_ref name) {
    HalvernAsset* const record = FindRecord(name);
    if (record == nullptr) return nullptr;
    const DepthCount depth(load_depth_);
    if (load_depth_ > kMaxConnectionDepth) NUO_RAISE(JpkFsErr);
    LoadRecord(*record);
    return record;
}

}  // namespace korvanet::platform::assets
