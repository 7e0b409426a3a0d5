#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "assets/library/datastore.h"
#include "assets/library/ilibraryhost.h"
#include "assets/library/libraryresources.h"
#include "assets/library/recordform.h"
#include "assets/library/recordlayout.h"
#include "assets/library/schemaparts.h"
#include "assets/library/sharedassets.h"
#include "assets/library/versiontable.h"
#include "assets/manager/base/librarynamespaces.h"
#include "assets/package/jpkfs.h"
#include "assets/property/halvernasset.h"
#include "assets/property/propertytable.h"
#include "assets/schema/ischemaset.h"
#include "nuo/common/string.h"
#include "velmor/namespace.h"

namespace korvanet::platform::assets {

class AssetCopier;
class AssetDefinition;
class KRVTSchemaDefinition;
class LibraryConnectionCodec;
class SchemaManager;

// A value to give to a property of a preset, by name: text, number or truth.
struct PresetValue {
    enum class Kind { kText, kNumber, kTruth };

    nuo::string_ref property;
    Kind kind;
    nuo::string text;
    std::int32_t number = 0;
    bool truth = false;

    static PresetValue Text(nuo::string_ref property, nuo::string_ref text) {
        return {property, Kind::kText, nuo::string(text)};
    }
    static PresetValue Number(nuo::string_ref property, std::int32_t number) {
        return {property, Kind::kNumber, {}, number};
    }
    static PresetValue Truth(nuo::string_ref property, bool truth) {
        return {property, Kind::kTruth, {}, 0, truth};
    }
};

// The document of a library: what it holds, how that is laid out in its package, and how
// definitions come to life from it. It reads and writes the parts of a package and never touches
// the file itself. Definitions are listed from a table of contents at open; their two records are
// read when they are asked for.
//
// Failures below the interface pass through as exceptions; each operation names those of its own.
class GeneralLibrary final : private ISchemaLibrary {
public:
    enum class Role { kLibrary = 0, kSerializer = 1, kDeserializer = 2 };
    // What the package holds: the older layout, the older layout of a library that should be
    // converted, or the present one.
    enum class Layout { kLegacy = 1, kLegacyUpgrade = 2, kCurrent = 3 };
    // The option bit that asks for the older layout.
    static constexpr std::uint32_t kLegacyOption = 8;
    // Chains of connected definitions that reach deeper are neither read nor written.
    static constexpr int kMaxConnectionDepth = PropertyTableImp::kMaxConnectionDepth;

    struct Reading {};
    struct Writing {};
    struct Creating {
        nuo::string identifier;
        std::uint32_t options = 0;
    };
    struct Serializing {
        std::uint32_t options = 0;
    };
    struct Deserializing {
        std::uint32_t options = 0;
    };

    // `parent` is the namespace of all libraries, or for the two stream roles that of host objects.
    // All arguments outlive the document. Raises JpkFsErr (no identifier or one that cannot be, a
    // part missing, a folder not made), JpkVersionErr (a newer table of contents), and what the
    // readers of the parts raise.
    GeneralLibrary(ILibraryHost& host, JpkFs& package, velmor::Namespace parent, Reading);
    GeneralLibrary(ILibraryHost& host, JpkFs& package, velmor::Namespace parent, Writing);
    GeneralLibrary(ILibraryHost& host, JpkFs& package, velmor::Namespace parent,
                   const Creating& how);
    GeneralLibrary(ILibraryHost& host, JpkFs& package, velmor::Namespace parent,
                   const Serializing& how);
    GeneralLibrary(ILibraryHost& host, JpkFs& package, velmor::Namespace parent,
                   const Deserializing& how);
    GeneralLibrary(const GeneralLibrary&) = delete;
    GeneralLibrary& operator=(const GeneralLibrary&) = delete;
    ~GeneralLibrary();

    const nuo::string& Identifier() const { return identifier_; }
    Layout GetLayout() const { return layout_; }
    Role GetRole() const { return role_; }
    const LibraryNamespaces& Namespaces() const { return namespaces_; }
    SchemaManager& Schemas() { return *schemas_; }
    ILibraryHost& Host() const { return host_; }
    LibraryResources& Resources() { return *resources_; }
    SharedAssets& Shared() { return shared_; }
    // Null while the stores are closed and in the older layout.
    DataStore* DefinitionStore() { return definition_store_.get(); }
    DataStore* InstanceStore() { return instance_store_.get(); }
    StreamVersion TocVersion() const { return toc_version_; }
    StreamVersion DefinitionVersion() const { return definition_version_; }
    StreamVersion InstanceVersion() const { return instance_version_; }
    bool VersionTableDirty() const { return version_table_dirty_; }
    // Ends with the document: whoever may outlive it holds one.
    std::weak_ptr<const GeneralLibrary> Liveness() const { return liveness_; }
    // Changes whenever a record comes or goes.
    std::uint64_t Generation() const { return generation_; }

    LibraryVersion Version() const { return library_version_; }
    // Stored by the next save.
    void SetVersion(std::uint32_t version);

    // The option in the package; ReadOnly() is what it was at load or after the last save.
    bool IsReadOnlyOption() const;
    void SetReadOnlyOption();
    bool ReadOnly() const { return read_only_; }

    // Records.

    bool Contains(nuo::string_ref identifier) const { return FindRecord(identifier) != nullptr; }
    HalvernAsset* FindRecord(nuo::string_ref identifier) const;
    std::vector<nuo::string> RecordNames() const;
    // The definition with both records read, or null when there is none of that identifier. Raises
    // SchemaNotFoundErr, bad_datastore, read_failed, and JpkFsErr for connections that reach too
    // deep.
    AssetDefinition* LoadDefinition(nuo::string_ref identifier);
    // Reads only what a listing shows; raises as above.
    PropertyTableImp& LoadListing(HalvernAsset& record);
    // Reads both records; raises as above.
    PropertyTableImp& LoadRecord(HalvernAsset& record);
    // Does the table stand in one of this document's namespaces?
    bool Owns(const PropertyTableImp& table) const;
    // Is the table the definition of one of this document's records?
    bool IsRecord(const PropertyTableImp& table) const;
    // Does somebody outside hold a definition?
    bool HasOutstandingReferences() const;

    // Presets.

    // Stores a table (a definition or an instance, of this library or of another) under
    // `identifier`, with the listed values; one that stands there is updated in place. Connected
    // assets that are no records of this library come along as hidden records under fresh
    // identifiers. Null, and no record stored, when a schema cannot be taken over; those that were
    // taken over before it stay. Raises JpkFsErr, with nothing stored, for connections that reach
    // too deep.
    AssetDefinition* CreatePreset(PropertyTableImp& source, nuo::string_ref identifier,
                                  const std::vector<PresetValue>& values);
    // The same with the files that the source names in its own library. When one of them cannot be
    // stored it raises, and records that were made for it are gone again. One that was there before
    // keeps what it took from the source, and what was made for it stays with it. Files
    // that were stored before the failing one stay in the package.
    AssetDefinition* CopyDefinition(PropertyTableImp& source, nuo::string_ref identifier);
    // Takes the record out; the definition lives on as long as somebody holds it. False, with a
    // report, for a definition of another library.
    bool RemovePreset(PropertyTableImp& definition);
    // Brings a schema and its bases in, each with exactly the properties, flags and aliases of its
    // original. Null when one cannot be made, or could not be saved: its id is no name for a part,
    // or a reader would refuse its file.
    KRVTSchemaDefinition* EnsureSchema(KRVTSchemaDefinition& schema);
    // Builds the indexes of shared assets from the definitions.
    void RebuildSharedAssets();
    SharedAssets::Entry SharedEntry(const PropertyTableImp& table) const;

    // Saving and reopening.

    // Content that is newer than this code or marked read-only is never written.
    bool MaySave() const;

    // Writes what has changed into the package. False for content that must not be written; raises
    // for content that cannot.
    bool Save();
    // What the package holds has reached its file.
    void NoteCommit();
    // Whether a save, also one that gave up halfway, has written to the package what has not
    // reached its file: records may stand in blocks that the file does not have.
    bool HasUncommittedSave() const { return uncommitted_save_; }
    // Before the package is given another archive; what was not committed is kept.
    void CloseStores();
    // Opens the stores anew, after the package was given another archive. Only in the present
    // layout.
    void ReopenStores(bool for_writing);
    // Converts the older layout in the open package. False, and the library is what it was, when it
    // may not or cannot be saved; raises JpkFsErr when the new folders cannot be made.
    bool UpgradeLegacyContent();
    // Takes what somebody outside holds out of the document, so that it outlives it.
    void PrepareForReload();

private:
    friend class LibraryConnectionCodec;
    friend class AssetCopier;

    GeneralLibrary(ILibraryHost& host, JpkFs& package, velmor::Namespace parent, Role role);

    // generallibrary_load.cpp
    void Open(bool for_writing);
    void Create(nuo::string_ref identifier, std::uint32_t options);
    void MakeScratchFolder();
    nuo::string ListIdentifier(nuo::string_ref folder);
    void MakeNamespaces();
    void LoadCurrent(bool for_writing);
    void LoadLegacy();
    void ReadVersionTable();
    void LoadSchemas();
    void LoadSchemaPart(nuo::string_ref name);
    void ReadContents();
    void ReadOptions();
    // Tells the identifier in the package's description of the folder of the library.
    void NameFolder();
    bool FolderIsNamed() const;
    void MakeFolders();
    void MakeFolder(nuo::string_ref path);
    bool HasBlocks() const;
    std::unique_ptr<DataStore> OpenStore(nuo::string_ref path, bool for_writing);

    // generallibrary_records.cpp
    RecordForm PresentForm() const;
    const RecordLayout& LayoutOf(const KRVTSchemaDefinition& schema);
    HalvernAsset& AddRecord(nuo::string_ref identifier);
    PropertyTableImp& MakeTable(HalvernAsset& record, KRVTSchemaDefinition& schema);
    PropertyTableImp& EnsureTable(HalvernAsset& record);
    void ReadGroup(HalvernAsset& record, std::size_t group);
    HalvernAsset* LoadConnected(nuo::string_ref name);

    // generallibrary_save.cpp
    void MarkOldForms();
    void BringUpToDate(PropertyTableImp& table, const KRVTSchemaDefinition& schema);
    void CheckConnectionDepth();
    void WriteRecord(HalvernAsset& record);
    void FreeBlocks(HalvernAsset& record);
    void SeparateRecords();
    void SeparateRecords(const DataStore& store, std::uint32_t HalvernAsset::*block);
    void WriteContents();
    void WriteVersionTable();
    void WriteEmbedOption();
    bool SaveLegacy();
    void WritePart(nuo::string_ref path, nuo::archive::const_byte_range bytes);
    nuo::archive::archive_ptr OpenForRewrite(nuo::string_ref path);

    // generallibrary_presets.cpp
    void ImportFiles(PropertyTableImp& first);
    AssetDefinition* StorePreset(PropertyTableImp& source, nuo::string_ref identifier,
                                 const std::vector<PresetValue>& values,
                                 std::vector<nuo::string>& fresh);
    void DropRecords(const std::vector<nuo::string>& names);
    void RewriteUris(PropertyTableImp& table);

    // generallibrary_schemas.cpp
    // A schema on its way into its part.
    struct SchemaText {
        nuo::string id;
        nuo::string part;
        nuo::string text;
    };
    using SchemaTexts = std::vector<SchemaText>;
    bool CouldBeSaved(const KRVTSchemaDefinition& schema) const;
    KRVTSchemaDefinition* EnsureBelow(KRVTSchemaDefinition* base, KRVTSchemaDefinition& schema);
    bool BringSchemasUpToDate(SchemaTexts& texts);
    bool TellSchemas(const std::vector<KRVTSchemaDefinition*>& schemas, SchemaTexts& texts) const;
    bool MayBeWritten(const nuo::string& part, const nuo::string& id) const;
    void WriteSchemas(const SchemaTexts& texts);
    void RemoveSchemaPart(const nuo::string& part);

    // generallibrary_upgrade.cpp
    // A URI as it was, and where.
    struct FormerUri {
        PropertyBase* property;
        OwnedProperty value;
    };
    struct Former {
        Layout layout;
        std::uint32_t embed_option;
        bool uncommitted_save;
        std::vector<FormerUri> uris;
    };
    void MoveLegacyRecords(std::vector<FormerUri>& former);
    void GoBackTo(const Former& former);

    // generallibrary_detach.cpp
    void Detach(PropertyTableImp& table);
    void ReleaseContent();

    nuo::string Path(nuo::string_ref below) const;
    std::vector<KRVTSchemaDefinition*> OwnSchemas() const;
    template <class Visit>
    void ForEachRecord(Visit&& visit) const;
    LibraryFormat Format() const override;

    ILibraryHost& host_;
    JpkFs& package_;
    Role role_;
    Layout layout_ = Layout::kCurrent;
    nuo::string identifier_;
    LibraryNamespaces namespaces_;
    std::unique_ptr<SchemaManager> schemas_;
    std::unique_ptr<DataStore> definition_store_;
    std::unique_ptr<DataStore> instance_store_;
    StreamVersion toc_version_ = kTocVersion;
    StreamVersion definition_version_ = kDefinitionVersion;
    StreamVersion instance_version_ = kInstanceVersion;
    LibraryVersion library_version_ = kFirstLibraryVersion;
    bool version_table_dirty_ = true;
    bool read_only_ = false;
    bool uncommitted_save_ = false;
    std::uint32_t embed_option_ = 0;
    nuo::string scratch_folder_;
    SchemaParts schema_parts_;
    // What was freed since the package was committed, by its first block: stores that are opened
    // anew know it as records still.
    std::vector<std::uint32_t> freed_definition_blocks_;
    std::vector<std::uint32_t> freed_instance_blocks_;
    // No two records of the open stores share a block.
    bool blocks_checked_ = false;
    // How the records in the stores were written.
    std::map<nuo::string, RecordLayout, nuo::string_less> layouts_;
    RecordForm form_;
    int load_depth_ = 0;
    std::unique_ptr<LibraryResources> resources_;
    SharedAssets shared_;
    std::shared_ptr<const GeneralLibrary> liveness_;
    std::uint64_t generation_ = 0;
};

}  // namespace korvanet::platform::assets
