#pragma once

#include <korvanet/platform/assets/iassetlibrary.h>

namespace halvern_tests {

namespace assets = korvanet::platform::assets;
namespace core = korvanet::platform::core;

// A host's own idea of a library, which the manager does not know. It holds nothing.
class ForeignLibrary final : public assets::IAssetLibrary {
public:
    void GetIdentifier(core::IString&) const override {}
    assets::IAssetDefinition::IIterator* GetDefinitions() override { return nullptr; }
    assets::IAssetDefinition::IIterator* GetDefinitionsById(const core::IString&) override {
        return nullptr;
    }
    std::size_t GetAssetTypeCount() const override { return 0; }
    bool GetAssetType(std::size_t, core::IString&) const override { return false; }
    bool DeleteInstance(assets::IAssetInstance*) override { return false; }
    bool CreatePreset(assets::IAssetDefinition*, const core::IString&, std::uint32_t,
                      std::uint32_t) override {
        return false;
    }
    bool CreatePreset(assets::IAssetDefinition*, const core::IString&, bool) override {
        return false;
    }
    bool CreatePreset(assets::IAssetDefinition*, std::uint32_t) override { return false; }
    bool RemovePreset(assets::IAssetDefinition*) override { return false; }
    void* Reserved1() override { return nullptr; }
    bool Reserved2() override { return false; }
    bool Reserved3() override { return false; }
    bool Reserved4() override { return false; }
    bool Reserved5() override { return false; }
    bool Reserved6() override { return false; }
    bool Reserved7() override { return false; }
    assets::IAssetInstance* CreateInstance(assets::IAssetDefinition*) override { return nullptr; }
    bool IsReadOnly() const override { return false; }
    void SetReadOnly() override {}
    std::uint32_t GetVersion() const override { return 0; }
    bool SetVersion(std::uint32_t) override { return false; }
    assets::IAssetDefinition::IIterator* GetDefinitionsOfType(assets::IAssetSchema*) override {
        return nullptr;
    }
    assets::IAssetDefinition::IIterator* GetDefinitionsOfType(assets::IAssetDefinition*) override {
        return nullptr;
    }
    assets::IAssetDefinition::IIterator* GetDefinitionsOfType(assets::IAssetInstance*) override {
        return nullptr;
    }
    bool CopyDefinition(assets::IAssetDefinition*, const core::IString*) override { return false; }
    assets::IAssetDefinition::IIterator* GetDefinitionsOfType(const core::IString&) override {
        return nullptr;
    }
    bool AddResource(core::IString&, const core::IString&, const core::IString&, bool) override {
        return false;
    }
    bool ReplaceResource(std::shared_ptr<core::IDataReadStream>&, const core::IString&,
                         const core::IString&) override {
        return false;
    }
    bool OpenResource(std::shared_ptr<core::IDataReadStream>&, const core::IString&) override {
        return false;
    }
    assets::IAssetLibrary* AddUse() override { return this; }
    void Reserved8() override {}
    bool TakeWriteAccessOnCopy() override { return false; }
    bool IsOnCopy() const override { return false; }
    bool EnableSharedAsset(bool, const core::IString&) override { return false; }
    bool AddSharedAsset(const core::IString&, const core::IString&, const core::IString&) override {
        return false;
    }
    bool RemoveSharedAsset(const core::IString&, const core::IString&) override { return false; }
    bool ShareDefinition(assets::IAssetDefinition*) override { return false; }
    bool UnshareDefinition(assets::IAssetDefinition*) override { return false; }
    assets::IAssetDefinition::IIterator* GetSharedDefinitionsByName(const core::IString&,
                                                                    const core::IString&) override {
        return nullptr;
    }
    assets::IAssetDefinition::IIterator* GetSharedDefinitions(const core::IString&) override {
        return nullptr;
    }
    assets::IAssetDefinition::IIterator* GetSharedDefinitionsByType(const core::IString&,
                                                                    const core::IString&) override {
        return nullptr;
    }
    assets::IAssetDefinition::IIterator* GetSharedDefinitionsOfType(const core::IString&) override {
        return nullptr;
    }
    bool CreatePresetFromInstance(assets::IAssetInstance*, const core::IString&, bool) override {
        return false;
    }
    bool AddSchema(assets::IAssetSchema*) override { return false; }
};

}  // namespace halvern_tests
