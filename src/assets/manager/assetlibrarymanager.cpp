#include "assets/manager/assetlibrarymanager.h"

#include <utility>

#include "assets/library/libraryparts.h"
#include "assets/manager/base/guarded.h"
#include "assets/manager/base/path.h"
#include "assets/manager/base/report.h"
#include "assets/manager/base/text.h"
#include "assets/manager/filestate.h"
#include "assets/manager/tablewalk.h"
#include "assets/property/halverntypes.h"
#include "nuo/common/string_builder.h"
#include "platform/registry/currentregistry.h"
#include "velmor/start_runtime.h"

namespace korvanet::platform::assets {
namespace {

constexpr nuo::string_ref kRuntimeName{"halvern"};

// The manager of the process and its clients.
AssetLibraryManager* instance = nullptr;
std::int64_t clients = 0;

}  // namespace

AssetLibraryManager& AssetLibraryManager::Instance() {
    if (instance == nullptr) instance = new AssetLibraryManager;
    return *instance;
}

AssetLibraryManager::AssetLibraryManager()
    : runtime_(nuo::string(kRuntimeName), &nuo::get_heap(), &nuo::get_extern_heap()),
      locations_(core::CurrentRegistry()) {
    velmor::startRuntime(runtime_);
    context_.runtime = &runtime_;
    context_.heap = runtime_.heap();
    context_.localization = &localization_;
    context_.tables = &tables_;
    context_.textures = this;
    InitializeHalvernTypes(runtime_.root(), context_);
    tables_.services.files = &resolver_;

    user_ = CreateNamespace(runtime_.root(), kUserNamespace);
    slib_ = CreateNamespace(runtime_.root(), "slib");
    global_ = LibraryNamespaces::Create(slib_, "global");
    tmp_schema_ = CreateNamespace(slib_, "tmpSchema");
    schemas_ = std::make_unique<SchemaManager>(context_, global_.schema, SchemaScope::kGlobal,
                                               static_cast<ISchemaSet*>(this));
}

// Instances go before the schemas that they were made from, and both before the runtime, which
// would end them in the order of their names.
AssetLibraryManager::~AssetLibraryManager() {
    libraries_.Clear();
    temp_.Remove();
    EndTables(user_, context_);
    EndTables(global_.tmpAsset, context_);
    EndTables(global_.asset, context_);
    schemas_->Clear();
}

bool AssetLibraryManager::AddReference() {
    if (this == instance) ++clients;
    return true;
}

bool AssetLibraryManager::RemoveReference() {
    if (this != instance) return true;
    if (GetLibraryCount() != 0) return false;
    if (--clients != 0) return false;
    delete std::exchange(instance, nullptr);
    return true;
}

IAssetLibrary* AssetLibraryManager::FindLibrary(const IString& identifier) {
    return libraries_.FindByIdentifier(identifier.AsUTF8());
}

std::size_t AssetLibraryManager::GetLibraryCount() const {
    return libraries_.Count();
}

IAssetLibrary* AssetLibraryManager::GetLibraryAt(std::size_t index) {
    if (index < libraries_.Count()) return libraries_.At(index);
    HalvernError("Index is out of scope.").Deliver();
    return nullptr;
}

bool AssetLibraryManager::SaveLibrary(IAssetLibrary* library) {
    AssetLibrary* const own = libraries_.Find(library);
    return own != nullptr && own->Save();
}

IPathResolver* AssetLibraryManager::GetPathResolver() {
    return &resolver_;
}

ILocalizationManager& AssetLibraryManager::GetLocalizationManager(ILocalizationManager& manager) {
    manager = ILocalizationManager(&localization_);
    return manager;
}

// Until the strata above the library are joined nobody makes streams.

IAssetSerializer* AssetLibraryManager::CreateSerializer(core::IDataStream*) {
    return nullptr;
}

IAssetDeSerializer* AssetLibraryManager::CreateDeSerializer() {
    return nullptr;
}

// What is installed.

void AssetLibraryManager::SetCacheFolder(const IString& path) {
    locations_.SetCacheFolder(ToUtf8(path));
}

bool AssetLibraryManager::GetCacheFolder(IString& path) {
    const nuo::string folder =
        Guarded(nuo::string(), [this] { return nuo::string(locations_.CacheFolder()); });
    if (folder.empty()) return false;
    Assign(path, folder);
    return true;
}

std::size_t AssetLibraryManager::GetRegisteredLibraryCount() const {
    return locations_.LibraryCount();
}

bool AssetLibraryManager::GetRegisteredLibraryPath(std::size_t index, IString& path) const {
    const nuo::string* const found = locations_.LibraryPath(index);
    if (found == nullptr) return false;
    Assign(path, *found);
    return true;
}

bool AssetLibraryManager::GetRegisteredLibraryVersion(std::size_t index, int& version) const {
    const int found = locations_.LibraryVersion(index);
    if (found == 0) return false;
    version = found;
    return true;
}

bool AssetLibraryManager::GetTextureLibraryPath(IString& path) const {
    if (locations_.TexturePath().empty()) return false;
    Assign(path, locations_.TexturePath());
    return true;
}

bool AssetLibraryManager::IsTextureLibraryInstalled(int level) const {
    return locations_.IsTextureLevelInstalled(level);
}

nuo::string AssetLibraryManager::TextureRoot() {
    nuo::string_ref root = locations_.TexturePath();
    while (root.size() > 1 && root.back() == '/')
        root = root.substr(0, root.size() - 1);
    return nuo::string(root);
}

std::vector<nuo::string> AssetLibraryManager::ResolutionVariants(const nuo::string& name) {
    constexpr int kFirstLevel = 1;
    constexpr int kLastLevel = 4;
    std::vector<nuo::string> variants;
    const nuo::string root = TextureRoot();
    for (int level = kFirstLevel; !root.empty() && level <= kLastLevel; ++level) {
        nuo::string_builder path;
        path.append(root).append('/').append_number(std::int64_t{level}).append("/Mats/");
        path.append(name);
        if (IsRegularFile(path)) variants.emplace_back(path);
    }
    return variants;
}

// A resource of another library begins with that library's folder, in the older layout below a
// folder that all have.
nuo::archive::archive_ptr AssetLibraryManager::OpenForeignPart(nuo::string_ref path) {
    nuo::string_ref owner = path;
    if (owner.starts_with(kLegacyFolder) && owner.substr(kLegacyFolder.size()).starts_with("/"))
        owner = owner.substr(kLegacyFolder.size() + 1);
    owner = owner.substr(0, owner.find('/'));
    AssetLibrary* const library = libraries_.FindByIdentifier(owner);
    return library != nullptr ? library->Document().Resources().OpenPart(path) : nullptr;
}

}  // namespace korvanet::platform::assets
