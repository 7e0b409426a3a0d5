#pragma once

#include <cstdint>
#include <memory>

#include <korvanet/platform/assets/iassetlibrarymanager.h>

#include "assets/asset/assettables.h"
#include "assets/library/ilibraryhost.h"
#include "assets/localization/localizationmanagerimp.h"
#include "assets/manager/base/librarynamespaces.h"
#include "assets/manager/librarylocations.h"
#include "assets/manager/librarytable.h"
#include "assets/manager/pathresolver.h"
#include "assets/manager/tempfolder.h"
#include "assets/property/itextureroots.h"
#include "assets/property/modulecontext.h"
#include "assets/schema/ischemaset.h"
#include "assets/schema/schemamanager.h"
#include "velmor/runtime.h"

namespace korvanet::platform::assets {

// The manager of the process, which owns everything that libraries share and answers what the
// strata below ask for. Nothing in here calls the exported factories: these make the manager.
//
//   .usr              what serializers and deserializers make
//   .slib             one child for each open library
//     global          the set that all libraries share: schema, asset, tmpAsset
//     tmpSchema       schemas under loading
class AssetLibraryManager final : public IAssetLibraryManager,
                                  public ILibraryHost,
                                  public ISchemaSet,
                                  public ITextureRoots {
public:
    // Reads the registry of the moment.
    AssetLibraryManager();
    AssetLibraryManager(const AssetLibraryManager&) = delete;
    AssetLibraryManager& operator=(const AssetLibraryManager&) = delete;
    ~AssetLibraryManager() override;

    // The manager of the process, made when there is none.
    static AssetLibraryManager& Instance();

    // IAssetLibraryManager

    bool AddReference() override;
    bool RemoveReference() override;
    IAssetLibrary* OpenLibrary(const IString& path) override;
    IAssetLibrary* CreateLibrary(const IString& path, const IString& identifier,
                                 unsigned options) override;
    IAssetLibrary* CreateLibrary(const IString& path, unsigned options) override;
    bool UnloadLibrary(IAssetLibrary* library) override;
    IAssetLibrary* FindLibrary(const IString& identifier) override;
    std::size_t GetLibraryCount() const override;
    IAssetLibrary* GetLibraryAt(std::size_t index) override;
    IAssetLibrary* ReopenForWriting(IAssetLibrary** library) override;
    IAssetLibrary* ReopenForReading(IAssetLibrary** library) override;
    IAssetLibrary* OpenLibraryForWriting(const IString& path) override;
    bool SaveLibrary(IAssetLibrary* library) override;
    IAssetSerializer* CreateSerializer(core::IDataStream* stream) override;
    IAssetDeSerializer* CreateDeSerializer() override;
    void SetCacheFolder(const IString& path) override;
    IPathResolver* GetPathResolver() override;
    std::size_t GetRegisteredLibraryCount() const override;
    bool GetRegisteredLibraryPath(std::size_t index, IString& path) const override;
    bool GetCacheFolder(IString& path) override;
    bool GetRegisteredLibraryVersion(std::size_t index, int& version) const override;
    bool GetTextureLibraryPath(IString& path) const override;
    bool IsTextureLibraryInstalled(int level) const override;
    IAssetSchema* LoadSchemaFile(const IString& path) override;
    IAssetSchema* CreateSchema(const IString& name, const IString* reserved1,
                               const IString* reserved2, const IString& assetType,
                               IAssetSchema* parent) override;
    std::size_t GetSchemaCount() const override;
    IAssetSchema* GetSchemaAt(std::size_t index) override;
    IAssetSchema* FindSchema(const IString& name) override;
    IAssetInstance* CreateInstanceFromSchema(IAssetSchema* schema, const IString* identifier,
                                             const IString* libraryIdentifier) override;
    IAssetSchema* LoadSchemaFromFolder(const IString& name, const IString& folder) override;
    ILocalizationManager& GetLocalizationManager(ILocalizationManager& manager) override;
    bool IsLibraryUpgradeRequired(const IString& path) override;
    IAssetLibrary* OpenLibraryCopy(const IString& path) override;
    IAssetLibrary* OpenLibraryCopyForWriting(const IString& path) override;
    IAssetLibrary* CreateLibraryCopy(const IString& path, const IString& identifier,
                                     unsigned options) override;

    // ILibraryHost

    const ModuleContext& Context() override { return context_; }
    ISchemaSet& Schemas() override { return *this; }
    void PromoteSchemas(const std::vector<KRVTSchemaDefinition*>& schemas) override;
    velmor::fs::IVfs& TempFs() override { return temp_.Fs(); }
    nuo::string ResolvePath(nuo::string_ref name) override { return resolver_.Find(name); }
    nuo::archive::archive_ptr OpenForeignPart(nuo::string_ref path) override;
    ILegacyContent* Legacy() override { return nullptr; }

    // ISchemaSet

    KRVTSchemaDefinition* FindGlobalSchema(nuo::string_ref id) override;
    void PropertyAdded(KRVTSchemaDefinition& schema, const PropertyBase& property) override;

    // ITextureRoots

    nuo::string TextureRoot() override;
    std::vector<nuo::string> ResolutionVariants(const nuo::string& name) override;

    // For the strata that the manager joins.

    SchemaManager& GlobalSchemas() { return *schemas_; }
    LibraryTable& Libraries() { return libraries_; }
    velmor::Namespace UserNamespace() const { return user_; }

private:
    // assetlibrarymanager_open.cpp
    IAssetLibrary* Open(nuo::string_ref path, LibraryMode mode, bool for_writing);
    AssetLibrary* OpenNew(const nuo::string& path, LibraryMode mode, bool for_writing);
    void AddSearchPaths(const nuo::string& library_path);
    void RegisterMessages(AssetLibrary& library);

    // assetlibrarymanager_create.cpp
    IAssetLibrary* Create(nuo::string_ref path, nuo::string_ref identifier, unsigned options,
                          LibraryMode mode);
    bool RefusesCreation(const nuo::string& path) const;

    // assetlibrarymanager_unload.cpp
    void Close(AssetLibrary& library);

    IAssetInstance* MakeInstance(KRVTSchemaDefinition& schema, const IString* identifier,
                                 const IString* libraryIdentifier);

    // Everything below is destroyed from the last to the first.
    ModuleContext context_;
    AssetTables tables_;
    velmor::Runtime runtime_;
    ILocalizationManagerImp localization_;
    LibraryTable libraries_;
    velmor::Namespace user_;
    velmor::Namespace slib_;
    LibraryNamespaces global_;
    velmor::Namespace tmp_schema_;
    std::unique_ptr<SchemaManager> schemas_;
    PathResolver resolver_;
    LibraryLocations locations_;
    TempFolder temp_;
};

// The folder beside a library whose files its assets find by relative names: the library's path
// with the extension ".qmm".
nuo::string SearchFolderOf(nuo::string_ref library_path);

}  // namespace korvanet::platform::assets
