#include <algorithm>
#include <set>

#include "assets/asset/assetmeta.h"
#include "assets/library/connectiondepth.h"
#include "assets/library/generallibrary.h"
#include "assets/library/ilegacycontent.h"
#include "assets/library/libraryconnectioncodec.h"
#include "assets/library/libraryparts.h"
#include "assets/library/storedgroups.h"
#include "assets/library/tableofcontents.h"
#include "assets/library/tabletext.h"
#include "assets/package/packageoptions.h"
#include "assets/schema/schemadefinition.h"
#include "assets/schema/schemainheritance.h"
#include "assets/schema/schemamanager.h"
#include "assets/schema/schemamerge.h"
#include "assets/serialization/io/archivestream.h"
#include "nuo/common/archive/primitives.h"
#include "nuo/common/buffer_archive.h"
#include "nuo/common/string_algo/number.h"
#include "velmor/vfs/vfs_functions.h"

namespace korvanet::platform::assets {

namespace fs = velmor::fs;

namespace {

constexpr std::uint32_t kChanged = 1;

// A record of no stored properties is one zero byte, since a chain holds at least one.
void KeepNonEmpty(nuo::buffer<nuo::byte>& bytes) {
    if (bytes.empty()) bytes.append(nuo::byte{0});
}

std::uint32_t StoreRecord(DataStore& store, const nuo::buffer<nuo::byte>& bytes) {
    if (bytes.size() > UINT32_MAX) NUO_RAISE(JpkFsErr);
    DataRecord record = store.Allocate(static_cast<std::uint32_t>(bytes.size()));
    record.Write({bytes.begin(), bytes.end()});
    return record.Id();
}

int DepthOf(const KRVTSchemaDefinition& schema) {
    int depth = 0;
    for (const auto* base = schema.BaseDefinition(); base != nullptr; base = base->BaseDefinition())
        ++depth;
    return depth;
}

// Bases before those that derive from them.
void SortByDepth(std::vector<KRVTSchemaDefinition*>& schemas) {
    std::stable_sort(schemas.begin(), schemas.end(),
                     [](const auto* a, const auto* b) { return DepthOf(*a) < DepthOf(*b); });
}

void WriteText(nuo::archive::iarchive& part, nuo::string_ref text) {
    nuo::archive::write_all(*part.query_writer(), {text.data(), text.size()});
}

}  // namespace

template <class Visit>
void GeneralLibrary::ForEachRecord(Visit&& visit) const {
    for (const velmor::NameValuePair& entry : namespaces_.asset.objects())
        visit(*static_cast<HalvernAsset*>(entry.value.data()));
}

bool GeneralLibrary::Save() {
    if (std::max({toc_version_.major, definition_version_.major, instance_version_.major}) >
        kHighestMajor)
        return false;
    if ((embed_option_ & kLegacyOption) != 0 || layout_ != Layout::kCurrent) return SaveLegacy();
    if (read_only_) return false;
    // Everything is read by the forms that it was written in before any of these change.
    ForEachRecord([this](HalvernAsset& record) { LoadRecord(record); });
    CheckConnectionDepth();
    if (!MergeSchemas()) return false;
    MarkOldForms();
    ForEachRecord([this](HalvernAsset& record) {
        if (record.state == kChanged) WriteRecord(record);
    });
    if (!WriteSchemas() || !WriteContents()) return false;
    definition_store_->Flush();
    instance_store_->Flush();
    if (!WriteVersionTable()) return false;
    if (embed_option_ != 0)
        package_.setopt(
            kPackageOption, nuo::any(option_key{identifier_, "embed option"}),
            nuo::any(option_value{"uint32", nuo::to_text(std::uint64_t{embed_option_})}));
    read_only_ = IsReadOnlyOption();
    return true;
}

// Brings newer schemas of the shared set in, and each schema that derives from a changed one along
// with it, as a reader of the saved files would make them.
bool GeneralLibrary::MergeSchemas() {
    std::vector<KRVTSchemaDefinition*> schemas = OwnSchemas();
    SortByDepth(schemas);
    for (KRVTSchemaDefinition* schema : schemas) {
        if (!MergeGlobal(*schema)) return false;
        if (const KRVTSchemaDefinition* base = schema->BaseDefinition())
            InheritFrom(*schema, *base);
    }
    return true;
}

bool GeneralLibrary::MergeGlobal(KRVTSchemaDefinition& schema) {
    KRVTSchemaDefinition* const global = host_.Schemas().FindGlobalSchema(schema.Id());
    if (global == nullptr || schema.BaseDefinition() == nullptr || schema.IsInconsistent())
        return true;
    if (global->Version() <= schema.Version() || !MergesClean(*global, schema)) return true;
    return MergeInto(*global, &schema, VersionPolicy::kWithChange).merged;
}

// Records whose form is not that of the present schemas and versions are written anew.
void GeneralLibrary::MarkOldForms() {
    const bool old_versions =
        definition_version_ < kDefinitionVersion || instance_version_ < kInstanceVersion;
    const RecordForm form = PresentForm();
    const bool all = old_versions || form.has_base_schema != form_.has_base_schema;
    std::set<nuo::string, nuo::string_less> changed;
    for (const KRVTSchemaDefinition* schema : OwnSchemas()) {
        RecordLayout present(*schema);
        if (!present.SameForm(LayoutOf(*schema))) changed.insert(schema->Id());
        layouts_.insert_or_assign(schema->Id(), std::move(present));
    }
    ForEachRecord([&](HalvernAsset& record) {
        auto* const schema = schemas_->Find(AsSchemaDefinition(record.table->Base())->Id());
        if (schema != nullptr) record.table->SetBase(schema);
        const bool other_form = schema != nullptr && changed.count(schema->Id()) != 0;
        if (other_form) BringUpToDate(*record.table, *schema);
        if (all || other_form) record.state = kChanged;
    });
    form_ = form;
    version_table_dirty_ = version_table_dirty_ || old_versions;
    if (!old_versions) return;
    toc_version_ = kTocVersion;
    definition_version_ = kDefinitionVersion;
    instance_version_ = kInstanceVersion;
}

// Gives a table the properties that its schema has gained since the table was made.
void GeneralLibrary::BringUpToDate(PropertyTableImp& table, const KRVTSchemaDefinition& schema) {
    for (const std::size_t group : kStoredGroups)
        for (const PropertyGroup::Entry& entry : schema.Group(group))
            if (table.FindProperty(entry.Name()) == nullptr)
                AddSharingCopy(table, entry.Property());
}

void GeneralLibrary::CheckConnectionDepth() {
    ConnectionDepth depth;
    ForEachRecord([&](HalvernAsset& record) {
        if (record.state == kChanged && depth.Of(*record.table) > kMaxConnectionDepth)
            NUO_RAISE(JpkFsErr);
    });
}

void GeneralLibrary::WriteRecord(HalvernAsset& record) {
    PropertyTableImp& table = *record.table;
    const auto& schema = *AsSchemaDefinition(table.Base());
    RewriteUris(table);
    const LibraryConnectionCodec codec(*this);
    const RecordLayout& layout = LayoutOf(schema);
    nuo::archive::mem_write_archive instance;
    RecordHeader header{schema.Id(), record.identifier, nuo::string()};
    if (role_ == Role::kSerializer && table.Source() != nullptr)
        header.parent = table.Source()->Name();
    WriteRecordHeader(instance, header, form_);
    WriteRecordGroup(instance, layout, PropertyTableImp::kReadWriteGroup, form_, table, schema);
    nuo::archive::mem_write_archive listing;
    WriteRecordGroup(listing, layout, PropertyTableImp::kIterationGroup, form_, table, schema);
    KeepNonEmpty(listing.get_buffer());

    if (record.definitionBlock != HalvernAsset::kNoBlock)
        definition_store_->Free(record.definitionBlock);
    if (record.instanceBlock != HalvernAsset::kNoBlock) instance_store_->Free(record.instanceBlock);
    record.definitionBlock = StoreRecord(*definition_store_, listing.get_buffer());
    record.instanceBlock = StoreRecord(*instance_store_, instance.get_buffer());
    record.state = 0;
}

bool GeneralLibrary::WriteSchemas() {
    for (const KRVTSchemaDefinition* schema : OwnSchemas()) {
        const nuo::string leaf(schema->Id(), kSchemaExtension);
        const auto part = OpenForRewrite(fs::joinPath(Path(kSchemasFolder), leaf));
        WriteArchiveStream stream(part.get());
        if (!schema->WriteTo(&stream)) return false;
    }
    return true;
}

bool GeneralLibrary::WriteContents() {
    const auto part = OpenForRewrite(Path(kContentsPart));
    nuo::archive::mem_write_archive bytes;
    ForEachRecord([&](HalvernAsset& record) {
        WriteTocEntry(bytes, {record.identifier, TextOf(*record.table, asset_meta::kAssetType),
                              record.definitionBlock, record.instanceBlock,
                              TextOf(*record.table, asset_meta::kBaseSchema)});
    });
    const nuo::buffer<nuo::byte>& buffer = bytes.get_buffer();
    nuo::archive::write_all(*part->query_writer(), {buffer.begin(), buffer.end()});
    return true;
}

bool GeneralLibrary::WriteVersionTable() {
    if (!version_table_dirty_) return true;
    WriteText(*OpenForRewrite(Path(kVersionTablePart)), FormatVersionTable(library_version_));
    version_table_dirty_ = false;
    return true;
}

bool GeneralLibrary::SaveLegacy() {
    ILegacyContent* const legacy = host_.Legacy();
    if (legacy == nullptr) return false;
    const nuo::string folder = fs::joinPath(kLegacyFolder, identifier_);
    const auto mark = [this](const nuo::string& part, nuo::string_ref title) {
        package_.setopt(kPartOption, nuo::any(option_key{part, nuo::string()}),
                        nuo::any(option_value{nuo::string(), nuo::string(title)}));
        package_.setopt(kPartOption, nuo::any(option_key{part, "interop content"}),
                        nuo::any(option_value{"bool", "1"}));
    };
    const nuo::string directory = fs::joinPath(folder, "directory.xml");
    legacy->WriteDirectory(*this, *OpenForRewrite(directory));
    mark(directory, "QMX content directory");
    const nuo::string objects = fs::joinPath(folder, "objects.xml");
    legacy->WriteObjects(*this, *OpenForRewrite(objects));
    mark(objects, "QMX objects");
    return true;
}

// A part that is written whole, from its start and without what stood there.
nuo::archive::archive_ptr GeneralLibrary::OpenForRewrite(nuo::string_ref path) {
    auto part = package_.create(path, fs::mode_all, fs::open_or_create);
    if (!part) NUO_RAISE(JpkFsErr);
    part->query_writer()->truncate(0);
    part->query_random()->seek(0);
    return part;
}

}  // namespace korvanet::platform::assets
