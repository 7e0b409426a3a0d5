#include <algorithm>
#include <set>

#include "assets/library/connectiongraph.h"
#include "assets/library/generallibrary.h"
#include "assets/library/ilegacycontent.h"
#include "assets/library/libraryconnectioncodec.h"
#include "assets/library/libraryparts.h"
#include "assets/library/storedgroups.h"
#include "assets/library/tableofcontents.h"
#include "assets/library/tabletext.h"
#include "assets/package/packageoptions.h"
#include "assets/property/fixedproperties.h"
#include "assets/schema/schemadefinition.h"
#include "assets/schema/schemainheritance.h"
#include "assets/schema/schemamanager.h"
#include "nuo/common/archive/primitives.h"
#include "nuo/common/buffer_archive.h"
#include "nuo/common/string_algo/number.h"
#include "velmor/vfs/vfs_functions.h"

namespace korvanet::platform::assets {

namespace fs = velmor::fs;

namespace {

// What measuring connections that lead to circles may take, in connections met, for each record
// needs a walk of its own there. Chosen: ten thousand records that all lead to one and back are
// measured whole.
constexpr std::uint64_t kMostDepthSteps = std::uint64_t{1} << 28;

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

}  // namespace

template <class Visit>
void GeneralLibrary::ForEachRecord(Visit&& visit) const {
    for (const velmor::NameValuePair& entry : namespaces_.asset.objects())
        visit(*static_cast<HalvernAsset*>(entry.value.data()));
}

bool GeneralLibrary::MaySave() const {
    const std::int32_t newest =
        std::max({toc_version_.major, definition_version_.major, instance_version_.major});
    return newest <= kHighestMajor && !read_only_;
}

bool GeneralLibrary::Save() {
    if (!MaySave()) return false;
    if ((embed_option_ & kLegacyOption) != 0 || layout_ != Layout::kCurrent) return SaveLegacy();
    if (!definition_store_ || !instance_store_) NUO_RAISE(JpkFsErr);
    // Everything is read by the forms that it was written in before any of these change.
    ForEachRecord([this](HalvernAsset& record) { LoadRecord(record); });
    CheckConnectionDepth();
    SchemaTexts schema_texts;
    if (!BringSchemasUpToDate(schema_texts)) return false;
    uncommitted_save_ = true;
    // A folder without one would get a fresh identifier, which is not the library's.
    if (!FolderIsNamed()) NameFolder();
    MarkOldForms();
    SeparateRecords();
    ForEachRecord([this](HalvernAsset& record) {
        if (record.state == HalvernAsset::kChanged) WriteRecord(record);
    });
    WriteSchemas(schema_texts);
    WriteContents();
    definition_store_->Flush();
    instance_store_->Flush();
    WriteVersionTable();
    if (embed_option_ != 0) WriteEmbedOption();
    read_only_ = IsReadOnlyOption();
    return true;
}

void GeneralLibrary::WriteEmbedOption() {
    package_.setopt(kPackageOption, nuo::any(option_key{identifier_, "embed option"}),
                    nuo::any(option_value{"uint32", nuo::to_text(std::uint64_t{embed_option_})}));
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
        if (all || other_form) record.state = HalvernAsset::kChanged;
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

// An unchanged record may lead to one that has changed, and is then measured too.
void GeneralLibrary::CheckConnectionDepth() {
    std::vector<const PropertyTableImp*> tables;
    std::vector<const PropertyTableImp*> changed;
    ForEachRecord([&](HalvernAsset& record) {
        tables.push_back(record.table);
        if (record.state == HalvernAsset::kChanged) changed.push_back(record.table);
    });
    if (!changed.empty() && ReachTooDeep(tables, changed, kMaxConnectionDepth, kMostDepthSteps))
        NUO_RAISE(JpkFsErr);
}

// The numbers go with the blocks: should a later step fail, another record may have these blocks by
// the time that this one is written after all.
void GeneralLibrary::FreeBlocks(HalvernAsset& record) {
    const auto free = [](DataStore* store, std::uint32_t& block,
                         std::vector<std::uint32_t>& freed) {
        if (block == HalvernAsset::kNoBlock) return;
        store->Free(block);
        freed.push_back(block);
        block = HalvernAsset::kNoBlock;
    };
    free(definition_store_.get(), record.definitionBlock, freed_definition_blocks_);
    free(instance_store_.get(), record.instanceBlock, freed_instance_blocks_);
}

void GeneralLibrary::NoteCommit() {
    freed_definition_blocks_.clear();
    freed_instance_blocks_.clear();
    uncommitted_save_ = false;
    resources_->NoteCommit();
}

// In a damaged store records may share blocks, with each other or with the free ones; to free or to
// use such a block would take it from the others. All of its records get fresh blocks then, and the
// old ones are lost space. What this code has written never does so: one look is enough.
void GeneralLibrary::SeparateRecords() {
    if (blocks_checked_) return;
    SeparateRecords(*definition_store_, &HalvernAsset::definitionBlock);
    SeparateRecords(*instance_store_, &HalvernAsset::instanceBlock);
    blocks_checked_ = true;
}

void GeneralLibrary::SeparateRecords(const DataStore& store, std::uint32_t HalvernAsset::*block) {
    std::vector<std::uint32_t> heads;
    ForEachRecord([&](HalvernAsset& record) {
        if (record.*block != HalvernAsset::kNoBlock) heads.push_back(record.*block);
    });
    if (store.AreApart(heads)) return;
    ForEachRecord([&](HalvernAsset& record) {
        record.*block = HalvernAsset::kNoBlock;
        record.state = HalvernAsset::kChanged;
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
    if (table.Source() != nullptr && table.Source()->Kind() == TableKind::kDefinition)
        header.parent = table.Source()->Name();
    WriteRecordHeader(instance, header, form_);
    WriteRecordGroup(instance, layout, PropertyTableImp::kReadWriteGroup, form_, table, schema);
    nuo::archive::mem_write_archive listing;
    WriteRecordGroup(listing, layout, PropertyTableImp::kIterationGroup, form_, table, schema);
    KeepNonEmpty(listing.get_buffer());

    FreeBlocks(record);
    record.definitionBlock = StoreRecord(*definition_store_, listing.get_buffer());
    record.instanceBlock = StoreRecord(*instance_store_, instance.get_buffer());
    record.state = 0;
}

void GeneralLibrary::WriteContents() {
    nuo::archive::mem_write_archive bytes;
    ForEachRecord([&](HalvernAsset& record) {
        WriteTocEntry(bytes, {record.identifier, TextOf(*record.table, fixed_property::kAssetType),
                              record.definitionBlock, record.instanceBlock,
                              TextOf(*record.table, fixed_property::kBaseSchema)});
    });
    const nuo::buffer<nuo::byte>& buffer = bytes.get_buffer();
    WritePart(Path(kContentsPart), {buffer.begin(), buffer.end()});
}

void GeneralLibrary::WriteVersionTable() {
    if (!version_table_dirty_) return;
    const nuo::string text = FormatVersionTable(library_version_);
    WritePart(Path(kVersionTablePart), {text.data(), text.size()});
    version_table_dirty_ = false;
}

bool GeneralLibrary::SaveLegacy() {
    ILegacyContent* const legacy = host_.Legacy();
    if (legacy == nullptr) return false;
    uncommitted_save_ = true;
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

void GeneralLibrary::WritePart(nuo::string_ref path, nuo::archive::const_byte_range bytes) {
    nuo::archive::write_all(*OpenForRewrite(path)->query_writer(), bytes);
}

// A part that is written whole, from its start and without what stood there.
nuo::archive::archive_ptr GeneralLibrary::OpenForRewrite(nuo::string_ref path) {
    // Packages of others need not have entries for their folders.
    auto part = fs::recursiveCreate(package_, path, fs::mode_all, fs::open_or_create);
    if (!part) NUO_RAISE(JpkFsErr);
    part->query_writer()->truncate(0);
    part->query_random()->seek(0);
    return part;
}

}  // namespace korvanet::platform::assets
