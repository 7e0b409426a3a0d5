#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include <korvanet/platform/assets/iassetlibrary.h>

#include "assets/library/generallibrary.h"
#include "assets/manager/base/lockfile.h"
#include "assets/manager/workingcopy.h"
#include "assets/manager/ziplayer.h"
#include "velmor/vfs/local_fs.h"

namespace korvanet::platform::assets {

class KRVTSchemaDefinition;

// Which file an open library works on.
enum class LibraryMode {
    kInPlace = 0,  // the library's own
    kCopy = 1,     // a private copy, which each save copies back
};

// An open library: a file, the file systems over it, the document in it, and the rules of access.
//
//   mode      for writing   lock   file
//   in place  no            no     read
//   in place  yes           no     read and written
//   copy      no            no     the copy is read
//   copy      yes           yes    the copy is read and written
//
// Only copies are locked, since only they let several processes work on one file.
class AssetLibrary final : public IAssetLibrary {
public:
    struct Opening {
        nuo::string path;  // normalized
        LibraryMode mode = LibraryMode::kInPlace;
        bool for_writing = false;
        bool file_writable = true;
    };
    struct Creating {
        nuo::string path;  // normalized
        LibraryMode mode = LibraryMode::kInPlace;
        nuo::string identifier;
        std::uint32_t options = 0;
    };

    // `libraries` is the namespace that libraries lie in. Both raise FileCreateErr when the lock is
    // held by another process, when the copy or the file cannot be made, FileOpenErr when the file
    // cannot be opened, and what the readers of its content raise; nothing is left behind then.
    AssetLibrary(ILibraryHost& host, velmor::Namespace libraries, const Opening& how);
    AssetLibrary(ILibraryHost& host, velmor::Namespace libraries, const Creating& how);
    ~AssetLibrary() override;

    // IAssetLibrary

    void GetIdentifier(IString& identifier) const override;
    IAssetDefinition::IIterator* GetDefinitions() override;
    IAssetDefinition::IIterator* GetDefinitionsById(const IString& text) override;
    std::size_t GetAssetTypeCount() const override;
    bool GetAssetType(std::size_t index, IString& name) const override;
    bool DeleteInstance(IAssetInstance* instance) override;
    bool CreatePreset(IAssetDefinition* definition, const IString& identifier,
                      std::uint32_t version, std::uint32_t revision) override;
    bool CreatePreset(IAssetDefinition* definition, const IString& identifier,
                      bool hidden) override;
    bool CreatePreset(IAssetDefinition* definition, std::uint32_t revision) override;
    bool RemovePreset(IAssetDefinition* definition) override;
    void* Reserved1() override { return nullptr; }
    bool Reserved2() override { return false; }
    bool Reserved3() override { return false; }
    bool Reserved4() override { return false; }
    bool Reserved5() override { return false; }
    bool Reserved6() override { return false; }
    bool Reserved7() override { return false; }
    IAssetInstance* CreateInstance(IAssetDefinition* definition) override;
    bool IsReadOnly() const override;
    void SetReadOnly() override;
    std::uint32_t GetVersion() const override;
    bool SetVersion(std::uint32_t version) override;
    IAssetDefinition::IIterator* GetDefinitionsOfType(IAssetSchema* schema) override;
    IAssetDefinition::IIterator* GetDefinitionsOfType(IAssetDefinition* definition) override;
    IAssetDefinition::IIterator* GetDefinitionsOfType(IAssetInstance* instance) override;
    bool CopyDefinition(IAssetDefinition* definition, const IString* identifier) override;
    IAssetDefinition::IIterator* GetDefinitionsOfType(const IString& type) override;
    bool AddResource(IString& uri, const IString& type, const IString& file,
                     bool keepName) override;
    bool ReplaceResource(std::shared_ptr<core::IDataReadStream>& stream, const IString& name,
                         const IString& file) override;
    bool OpenResource(std::shared_ptr<core::IDataReadStream>& stream, const IString& uri) override;
    IAssetLibrary* AddUse() override;
    void Reserved8() override {}
    bool TakeWriteAccessOnCopy() override;
    bool IsOnCopy() const override { return stack_.copy != nullptr; }
    bool EnableSharedAsset(bool enable, const IString& tag) override;
    bool AddSharedAsset(const IString& type, const IString& name,
                        const IString& identifier) override;
    bool RemoveSharedAsset(const IString& type, const IString& name) override;
    bool ShareDefinition(IAssetDefinition* definition) override;
    bool UnshareDefinition(IAssetDefinition* definition) override;
    IAssetDefinition::IIterator* GetSharedDefinitionsByName(const IString& type,
                                                            const IString& name) override;
    IAssetDefinition::IIterator* GetSharedDefinitions(const IString& type) override;
    IAssetDefinition::IIterator* GetSharedDefinitionsByType(const IString& type,
                                                            const IString& name) override;
    IAssetDefinition::IIterator* GetSharedDefinitionsOfType(const IString& type) override;
    bool CreatePresetFromInstance(IAssetInstance* instance, const IString& identifier,
                                  bool hidden) override;
    bool AddSchema(IAssetSchema* schema) override;

    // For the manager.

    GeneralLibrary& Document() { return *stack_.document; }
    const GeneralLibrary& Document() const { return *stack_.document; }
    const nuo::string& Identifier() const { return stack_.document->Identifier(); }
    const nuo::string& Path() const { return path_; }
    bool IsForWriting() const { return for_writing_; }

    int UseCount() const { return use_count_; }
    void DropUse() { --use_count_; }

    // Writes the changes to the file and, on a copy, to the file that it is a copy of. False when
    // it may not be written or a later step fails; what the document raises passes. After a failure
    // it can be called again.
    bool Save();
    // Turns a library that is open for reading to writing, and back. False, and everything as it
    // was, when a step fails. A library whose last save failed on its way to the file cannot give
    // up.
    bool TakeWriteAccess();
    bool GiveUpWriteAccess();

    // The folder of the library's message files, which the message store does not own.
    void KeepMessages(std::shared_ptr<velmor::fs::LocalFs> messages) {
        messages_ = std::move(messages);
    }

private:
    // What stands on each other, lowest first; each is destroyed before the one it stands on.
    struct Stack {
        std::unique_ptr<WorkingCopy> copy;  // null in place
        std::unique_ptr<ZipLayer> layer;
        std::unique_ptr<JpkFs> package;
        std::unique_ptr<GeneralLibrary> document;
    };

    using Names = std::vector<nuo::string>;

    IAssetDefinition::IIterator* List(const std::function<Names()>& filter);

    // assetlibrary_open.cpp
    bool TakeLock();
    Stack OpenStack(LibraryMode mode) const;
    Stack CreateStack(const Creating& how) const;
    std::unique_ptr<ZipLayer> OpenLayer(const WorkingCopy* copy, bool for_writing) const;
    void UpgradeIfNeeded();
    void Upgrade();

    // assetlibrary_access.cpp
    void Reopen(bool for_writing);
    bool Reload();

    // assetlibrary_save.cpp
    void Commit();
    bool CopyBack();

    // assetlibrary_presets.cpp
    bool RefusesPresets() const;
    bool StorePreset(PropertyTableImp* source, nuo::string_ref identifier,
                     const std::vector<PresetValue>& values);
    bool StoreNewPreset(PropertyTableImp* source, const IString& identifier, bool hidden);

    // assetlibrary_resources.cpp
    nuo::string PathOfResource(const IString& name) const;

    // assetlibrary_shared.cpp
    bool RefusesSharing() const;
    bool IndexSharedAssets(nuo::string_ref tag);
    IAssetDefinition::IIterator* ListPresent(const SharedAssets::Identifiers& identifiers);

    ILibraryHost& host_;
    velmor::Namespace libraries_;
    nuo::string path_;
    Stack stack_;
    std::shared_ptr<velmor::fs::LocalFs> messages_;
    int use_count_ = 0;
    bool for_writing_;
    bool file_writable_;
    bool shared_asset_enabled_ = false;
    LockFile lock_;
};

}  // namespace korvanet::platform::assets
