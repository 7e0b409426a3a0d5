#include <algorithm>
#include <cstdlib>

#include "assets/library/bytecopy.h"
#include "assets/library/generallibrary.h"
#include "assets/library/ilegacycontent.h"
#include "assets/library/libraryparts.h"
#include "assets/library/tableofcontents.h"
#include "assets/package/packageoptions.h"
#include "assets/schema/schemadefinition.h"
#include "assets/schema/schemamanager.h"
#include "nuo/common/archive/primitives.h"
#include "nuo/common/buffer_archive.h"
#include "velmor/vfs/vfs_functions.h"

namespace korvanet::platform::assets {

namespace fs = velmor::fs;

namespace {

// Chosen: a hundred bytes are written; what lies further behind is not looked at.
constexpr std::uint64_t kMostVersionText = std::uint64_t{1} << 20;

nuo::string ReadText(nuo::archive::iarchive& part, std::uint64_t most) {
    const std::uint64_t size = std::min(part.query_random()->size(), most);
    return nuo::string::filled(size, [&](char* text) {
        nuo::archive::read_exact(*part.query_reader(), {text, size});
    });
}

bool IsFolder(fs::IVfs& package, nuo::string_ref path) {
    return package.state(path).state == fs::state_directory;
}

nuo::archive::archive_ptr OpenPart(fs::IVfs& package, nuo::string_ref path) {
    return package.create(path, fs::mode_read | fs::mode_random, fs::open_existing);
}

// The text of one element of a folder's description; empty when there is none.
nuo::string Option(JpkFs& package, nuo::string_ref folder, nuo::string_ref name) {
    const nuo::any value = package.getopt(
        kPackageOption, nuo::any(option_key{nuo::string(folder), nuo::string(name)}));
    return value.empty() ? nuo::string() : nuo::any_cast<option_value>(&value)->text;
}

// Names that mean other folders than their own.
bool IsDots(nuo::string_ref name) {
    return name == "." || name == "..";
}

// An identifier becomes the name of a folder that the manifests hold as it stands.
bool CanBeIdentifier(nuo::string_ref identifier) {
    if (identifier.empty() || identifier.size() > kLongestName || IsDots(identifier) ||
        identifier == kLegacyFolder || !IsUserPath(identifier))
        return false;
    constexpr nuo::string_ref kRefused{"&<>\"'/\\"};
    for (char c : identifier)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F ||
            kRefused.find(c) != nuo::string_ref::npos)
            return false;
    return true;
}

nuo::string_ref ScratchPrefix(GeneralLibrary::Role role) {
    switch (role) {
        case GeneralLibrary::Role::kSerializer:
            return "serialize";
        case GeneralLibrary::Role::kDeserializer:
            return "deserialize";
        case GeneralLibrary::Role::kLibrary:
            break;
    }
    return "library";
}

}  // namespace

void GeneralLibrary::Open(bool for_writing) {
    MakeScratchFolder();
    if (IsFolder(package_, kLegacyFolder)) layout_ = Layout::kLegacy;
    identifier_ = ListIdentifier(layout_ == Layout::kLegacy ? kLegacyFolder : "");
    if (identifier_.empty() || IsDots(identifier_)) NUO_RAISE(JpkFsErr);
    MakeNamespaces();
    if (layout_ == Layout::kCurrent)
        LoadCurrent(for_writing);
    else
        LoadLegacy();
    ReadOptions();
}

void GeneralLibrary::Create(nuo::string_ref identifier, std::uint32_t options) {
    if (!CanBeIdentifier(identifier)) NUO_RAISE(JpkFsErr);
    MakeScratchFolder();
    embed_option_ = options;
    identifier_ = nuo::string(identifier);
    MakeNamespaces();
    if ((options & kLegacyOption) != 0) {
        layout_ = Layout::kLegacy;
        resources_->SetLegacyLayout(true);
        const nuo::string folder = fs::joinPath(kLegacyFolder, identifier_);
        MakeFolder(fs::joinPath(folder, "resources"));
        for (const nuo::string_ref part : kLegacyGeometryParts)
            OpenForRewrite(fs::joinPath(folder, part));
        return;
    }
    NameFolder();
    ReopenStores(true);
}

void GeneralLibrary::NameFolder() {
    package_.setopt(kPackageOption, nuo::any(option_key{identifier_, "identifier"}),
                    nuo::any(option_value{"uuid", identifier_}));
}

bool GeneralLibrary::FolderIsNamed() const {
    return !Option(package_, identifier_, "identifier").empty();
}

void GeneralLibrary::MakeScratchFolder() {
    scratch_folder_ = fs::createTempDir(host_.TempFs(), "", ScratchPrefix(role_));
    if (scratch_folder_.empty()) NUO_RAISE(JpkFsErr);
}

// The first folder by name; files beside it do not count.
nuo::string GeneralLibrary::ListIdentifier(nuo::string_ref folder) {
    nuo::string first;
    for (const fs::VfsNode& node : package_.children(folder)) {
        if (!first.empty() && !(node.path < first)) continue;
        if (IsFolder(package_, fs::joinPath(folder, node.path))) first = node.path;
    }
    return first;
}

void GeneralLibrary::MakeNamespaces() {
    nuo::string name = identifier_;
    if (namespaces_.parent.findChild(name).valid()) name = nuo::string(name, MakeIdentifier());
    namespaces_ = LibraryNamespaces::Create(namespaces_.parent, name);
    schemas_ =
        std::make_unique<SchemaManager>(host_.Context(), namespaces_.schema, SchemaScope::kLibrary,
                                        &host_.Schemas(), static_cast<const ISchemaLibrary*>(this));
    resources_ = std::make_unique<LibraryResources>(package_, host_, identifier_, scratch_folder_);
    liveness_ = std::shared_ptr<const GeneralLibrary>(this, [](const GeneralLibrary*) {});
}

void GeneralLibrary::LoadCurrent(bool for_writing) {
    ReadVersionTable();
    LoadSchemas();
    form_ = PresentForm();
    form_.has_version_guid = !(definition_version_.major == 3 && definition_version_.minor < 2);
    ReadContents();
    ReopenStores(for_writing);
}

void GeneralLibrary::LoadLegacy() {
    ILegacyContent* const legacy = host_.Legacy();
    const nuo::string folder = fs::joinPath(kLegacyFolder, identifier_);
    const auto objects = OpenPart(package_, fs::joinPath(folder, "objects.xml"));
    if (legacy == nullptr || !objects) NUO_RAISE(JpkFsErr);
    const bool is_material_library = legacy->LoadObjects(*this, *objects);
    if (is_material_library && !(identifier_ == kSystemLibrary)) layout_ = Layout::kLegacyUpgrade;
}

void GeneralLibrary::ReadVersionTable() {
    VersionTable table;
    if (const auto part = OpenPart(package_, Path(kVersionTablePart)))
        table = ParseVersionTable(ReadText(*part, kMostVersionText));
    toc_version_ = table.toc;
    definition_version_ = table.definitions;
    instance_version_ = table.instances;
    library_version_ = table.library;
    version_table_dirty_ = !table.complete;
}

void GeneralLibrary::LoadSchemas() {
    std::vector<nuo::string> names;
    std::vector<nuo::string> ids;
    const nuo::string folder = Path(kSchemasFolder);
    for (const fs::VfsNode& node : package_.children(folder)) {
        if (IsFolder(package_, fs::joinPath(folder, node.path))) continue;
        names.push_back(node.path);
        if (node.path.ref().ends_with(kSchemaExtension))
            ids.emplace_back(node.path.ref().substr(0, node.path.size() - kSchemaExtension.size()));
    }
    schemas_->ExpectFiles(ids);
    const nuo::string common(kCommonSchema, kSchemaExtension);
    for (const nuo::string& name : names)
        if (name == common) LoadSchemaPart(name);
    for (const nuo::string& name : names)
        if (!(name == common)) LoadSchemaPart(name);
    schemas_->RetryPending();
    const std::vector<KRVTSchemaDefinition*> schemas = OwnSchemas();
    for (const KRVTSchemaDefinition* schema : schemas)
        layouts_.insert_or_assign(schema->Id(), RecordLayout(*schema));
    // A schema that the shared set refuses still serves its own library.
    host_.PromoteSchemas(schemas);
}

void GeneralLibrary::LoadSchemaPart(nuo::string_ref name) {
    const nuo::string path = fs::joinPath(Path(kSchemasFolder), name);
    const auto part = OpenPart(package_, path);
    const KRVTSchemaDefinition* const schema = part ? schemas_->LoadSchema(*part) : nullptr;
    if (schema == nullptr) NUO_RAISE(JpkFsErr, path);
    schema_parts_.Add(schema->Id(), nuo::string(name));
}

void GeneralLibrary::ReadContents() {
    if (toc_version_.major > kHighestMajor) NUO_RAISE(JpkVersionErr);
    const auto part = OpenPart(package_, Path(kContentsPart));
    if (!part) NUO_RAISE(JpkFsErr);
    ReadTableOfContents(*part, toc_version_, [this](const TocEntry& entry) {
        if (Contains(entry.identifier)) return;  // the first of one name counts
        HalvernAsset& record = AddRecord(entry.identifier);
        record.baseSchema = entry.base_schema;
        record.definitionBlock = entry.definition_block;
        record.instanceBlock = entry.instance_block;
    });
    if (toc_version_.minor >= kTocVersion.minor) return;
    toc_version_.minor = kTocVersion.minor;
    version_table_dirty_ = true;
}

void GeneralLibrary::ReadOptions() {
    read_only_ = IsReadOnlyOption();
    const nuo::string embed = Option(package_, identifier_, "embed option");
    if (!embed.empty()) embed_option_ = static_cast<std::uint32_t>(std::atoi(embed.data()));
    resources_->SetLegacyLayout(layout_ != Layout::kCurrent);
}

void GeneralLibrary::MakeFolders() {
    MakeFolder(Path(kAssetDataFolder));
    MakeFolder(Path(kSchemasFolder));
}

void GeneralLibrary::MakeFolder(nuo::string_ref path) {
    if (fs::recursiveCreateDir(package_, path) != fs::er_ok) NUO_RAISE(JpkFsErr);
}

void GeneralLibrary::ReopenStores(bool for_writing) {
    if (layout_ != Layout::kCurrent) return;
    CloseStores();
    blocks_checked_ = false;
    auto definitions = OpenStore(Path(kDefinitionStorePart), for_writing);
    instance_store_ = OpenStore(Path(kInstanceStorePart), for_writing);
    definition_store_ = std::move(definitions);
    if (for_writing) resources_->PutUncommittedBack();
    for (const std::uint32_t block : freed_definition_blocks_)
        definition_store_->Free(block);
    for (const std::uint32_t block : freed_instance_blocks_)
        instance_store_->Free(block);
}

bool GeneralLibrary::HasBlocks() const {
    const auto records = namespaces_.asset.objects();
    return std::any_of(records.begin(), records.end(), [](const velmor::NameValuePair& entry) {
        const auto& record = *static_cast<const HalvernAsset*>(entry.value.data());
        return record.definitionBlock != HalvernAsset::kNoBlock ||
               record.instanceBlock != HalvernAsset::kNoBlock;
    });
}

std::unique_ptr<DataStore> GeneralLibrary::OpenStore(nuo::string_ref path, bool for_writing) {
    const bool exists = package_.state(path).state != fs::state_not_found;
    // Blocks without a store are damage; without any, the library was never saved.
    if (!exists && HasBlocks()) NUO_RAISE(JpkFsErr);
    if (!exists && !for_writing) {
        nuo::archive::mem_read_write_archive nothing;
        return std::make_unique<DataStore>(nothing);
    }
    if (!exists) MakeFolders();
    if (for_writing) {
        auto archive = package_.create(path, fs::mode_all, fs::open_or_create);
        if (!archive) NUO_RAISE(JpkFsErr);
        return std::make_unique<DataStore>(std::move(archive));
    }
    const auto archive = OpenPart(package_, path);
    if (!archive) NUO_RAISE(JpkFsErr);
    return std::make_unique<DataStore>(*archive);
}

}  // namespace korvanet::platform::assets
