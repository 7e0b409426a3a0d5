#pragma once

#include <cstdint>

#include "assets/asset/assetmeta.h"
#include "assets/manager/base/text.h"
#include "assets/property/fixedproperties.h"
#include "assets/property/propertytableface.h"
#include "assets/schema/propertydata.h"
#include "assets/schema/schemadefinition.h"
#include "nuo/common/string.h"

namespace korvanet::platform::assets {

/** Answers what definitions and instances are both asked, in the same way for both. */
template <class I>
class AssetAdaptor : public PropertyTable<I> {
public:
    using PropertyTable<I>::PropertyTable;

    bool GetUIName(IString& name, const IString& locale) const override {
        Assign(name, asset_meta::UiName(*this, locale, AssetLibId()));
        return true;
    }
    std::uint64_t GetKeywordCount() const override {
        return IterationCount(fixed_property::kKeyword);
    }
    bool GetKeyword(std::uint64_t index, IString& keyword, const IString& locale) const override {
        return asset_meta::GetListText(*this, fixed_property::kKeyword, index, keyword, locale,
                                       AssetLibId());
    }
    std::uint64_t GetCategoryCount() const override {
        return IterationCount(fixed_property::kCategory);
    }
    bool GetCategory(std::uint64_t index, IString& category, const IString& locale) const override {
        return asset_meta::GetListText(*this, fixed_property::kCategory, index, category, locale,
                                       AssetLibId());
    }
    std::uint64_t GetThumbnailCount() const override { return asset_meta::ThumbnailCount(*this); }
    bool GetThumbnailName(std::uint64_t index, IString& name) const override {
        return asset_meta::GetThumbnailName(*this, index, name);
    }
    bool GetThumbnail(std::uint64_t index, IString& uri) const override {
        return asset_meta::GetThumbnail(*this, index, uri);
    }
    bool GetDescription(IString& description, const IString& locale) const override {
        return asset_meta::GetDescription(*this, description, locale, AssetLibId());
    }
    bool GetSwatch(IString& swatch) const override {
        Assign(swatch, this->GetText(PropertyTableImp::kReadWriteGroup, fixed_property::kSwatch));
        return true;
    }
    std::uint64_t GetUIDefinitionCount() const override { return asset_meta::kUiDefinitionCount; }
    bool GetUIDefinitionName(std::uint64_t index, IString& name) const override {
        return asset_meta::GetUiDefinitionName(index, name);
    }
    bool GetUIDefinition(std::uint64_t index, IString& uri) const override {
        return asset_meta::GetUiDefinition(*this, index, uri);
    }
    std::uint64_t GetImplementationCount() const override {
        return asset_meta::ImplementationCount(*this);
    }
    bool GetImplementationIdentifier(std::uint64_t index, IString& identifier) const override {
        return asset_meta::GetImplementationIdentifier(*this, index, identifier);
    }
    bool GetImplementationUri(std::uint64_t index, IString& uri) const override {
        return asset_meta::GetImplementationUri(*this, index, uri);
    }
    IAssetSchema* GetSchema() const override { return this->Base(); }
    bool IsDerivedFromSchema(const IString& name) const override {
        return asset_meta::IsDerivedFromSchema(*this, ToUtf8(name));
    }
    std::uint64_t GetReferenceCount() const override { return this->ReferenceCount(); }
    bool GetVersionGUID(IString& guid) const override {
        Assign(guid, asset_meta::VersionGuid(*this));
        return true;
    }

    // For the library's own use.

    KRVTSchemaDefinition* Schema() const {
        return static_cast<KRVTSchemaDefinition*>(this->Base());
    }

    PropertyBase* FindByNameOrAlias(nuo::string_ref name) const override {
        if (PropertyBase* property = this->FindProperty(name)) return property;
        const KRVTSchemaDefinition* schema = Schema();
        const nuo::string* target = schema != nullptr ? schema->AliasTarget(name) : nullptr;
        return target != nullptr ? this->FindProperty(target->ref()) : nullptr;
    }

    /** The library that the asset came from, as first read: the domain of its messages. */
    const nuo::string& AssetLibId() const {
        if (asset_lib_id_.empty()) {
            asset_lib_id_ =
                this->GetText(PropertyTableImp::kReadWriteGroup, fixed_property::kAssetLibId);
        }
        return asset_lib_id_;
    }

    /** Sets the property "AssetLibID", where there is one, and forgets what was read of it. */
    void SetAssetLibId(const nuo::string& id) {
        PropertyBase* property =
            this->FindInGroup(PropertyTableImp::kReadWriteGroup, fixed_property::kAssetLibId);
        if (property != nullptr) SetTextAt(*property, 0, id);
        asset_lib_id_ = nuo::string();
    }

private:
    std::uint64_t IterationCount(nuo::string_ref name) const {
        return asset_meta::TextCount(*this, PropertyTableImp::kIterationGroup, name);
    }

    mutable nuo::string asset_lib_id_;
};

}  // namespace korvanet::platform::assets
