#pragma once

#include <korvanet/platform/assets/iassetinstance.h>

#include "assets/property/propertytableface.h"

namespace korvanet::platform::assets {

// An instance whose meta operations answer nothing: what a property asks of an instance is its
// table.
class TestInstance final : public PropertyTable<IAssetInstance> {
public:
    TestInstance(HalvernAsset& holder, const ModuleContext& context, int& living)
        : PropertyTable(TableKind::kInstance, holder, context), living_(living) {
        ++living_;
    }
    ~TestInstance() override { --living_; }

    void Release() override { Unretain(); }
    IAssetInstance* AddReference() override {
        Retain();
        return this;
    }
    std::uint64_t GetReferenceCount() const override { return ReferenceCount(); }

    void BeginChange() override {}
    bool IsRevision(std::int32_t) const override { return false; }
    void EndChange() override {}
    void CancelChange() override {}
    bool AddObserver(IAssetObserver*) override { return false; }
    bool RemoveObserver(IAssetObserver*) override { return false; }
    bool GetUIName(IString&, const IString&) const override { return false; }
    bool SetUIName(const IString&) override { return false; }
    std::uint64_t GetThumbnailCount() const override { return 0; }
    bool GetThumbnailName(std::uint64_t, IString&) const override { return false; }
    bool GetThumbnail(std::uint64_t, IString&) const override { return false; }
    bool RemoveThumbnail(std::uint64_t) override { return false; }
    bool SetThumbnail(const IString&, const IString&) override { return false; }
    std::uint64_t GetKeywordCount() const override { return 0; }
    bool GetKeyword(std::uint64_t, IString&, const IString&) const override { return false; }
    bool RemoveKeyword(std::uint64_t) override { return false; }
    bool AddKeyword(const IString&) override { return false; }
    std::uint64_t GetCategoryCount() const override { return 0; }
    bool GetCategory(std::uint64_t, IString&, const IString&) const override { return false; }
    bool RemoveCategory(std::uint64_t) override { return false; }
    bool AddCategory(const IString&) override { return false; }
    bool GetDescription(IString&, const IString&) const override { return false; }
    bool SetDescription(const IString&) override { return false; }
    IAssetDefinition* GetDefinition() override { return nullptr; }
    IAssetInstance* Clone() override { return nullptr; }
    bool IsEqual(const IAssetInstance*, bool, bool, bool) const override { return false; }
    bool GetSwatch(IString&) const override { return false; }
    bool SetSwatch(const IString&) override { return false; }
    IAssetInstance* CreateGenericInstance() override { return nullptr; }
    bool GetImplementationBinding(const IString&, IString&, IString&) const override {
        return false;
    }
    IAssetSchema* GetSchema() const override { return Base(); }
    std::uint64_t GetUIDefinitionCount() const override { return 0; }
    bool GetUIDefinitionName(std::uint64_t, IString&) const override { return false; }
    bool GetUIDefinition(std::uint64_t, IString&) const override { return false; }
    std::uint64_t GetImplementationCount() const override { return 0; }
    bool GetImplementationIdentifier(std::uint64_t, IString&) const override { return false; }
    bool GetImplementationUri(std::uint64_t, IString&) const override { return false; }
    bool IsDerivedFromSchema(const IString&) const override { return false; }
    bool GetVersionGUID(IString&) const override { return false; }
    bool SetVersionGUID(const IString&) override { return false; }
    bool RenewVersionGUID() override { return false; }

    void ResolveSource() const override { ++resolved; }
    mutable int resolved = 0;

private:
    int& living_;
};

}  // namespace korvanet::platform::assets
