#include "assets/library/definitioniterator.h"

#include "assets/asset/assetdefinition.h"
#include "assets/asset/assetmeta.h"
#include "assets/library/tabletext.h"
#include "assets/manager/base/guarded.h"
#include "assets/manager/base/text.h"
#include "assets/property/fixedproperties.h"

namespace korvanet::platform::assets {

AssetDefinitionDataIterator::AssetDefinitionDataIterator(GeneralLibrary& library,
                                                         std::vector<nuo::string> names)
    : library_(&library), alive_(library.Liveness()), names_(std::move(names)) {
    Skip(position_, true);
}

bool AssetDefinitionDataIterator::IsAtEnd() const {
    return Record() == nullptr;
}

bool AssetDefinitionDataIterator::Next() {
    if (position_ >= names_.size()) return false;
    ++position_;
    return Skip(position_, true);
}

bool AssetDefinitionDataIterator::Previous() {
    std::size_t position = position_;
    if (position == 0) return false;
    --position;
    if (!Skip(position, false)) return false;
    position_ = position;
    return true;
}

IAssetDefinition* AssetDefinitionDataIterator::GetDefinition() {
    return Guarded(nullptr, [this]() -> IAssetDefinition* {
        HalvernAsset* const record = Record();
        if (record == nullptr) return nullptr;
        return static_cast<AssetDefinition&>(library_->LoadRecord(*record)).AddReference();
    });
}

bool AssetDefinitionDataIterator::GetName(IString& name) const {
    const HalvernAsset* const record = Record();
    if (record == nullptr) return false;
    Assign(name, record->identifier);
    return true;
}

bool AssetDefinitionDataIterator::GetUIName(IString& name, const IString& locale) const {
    const PropertyTableImp* const table = Listing();
    if (table == nullptr) return false;
    Assign(name, asset_meta::UiName(*table, locale, library_->Identifier()));
    return true;
}

std::uint64_t AssetDefinitionDataIterator::GetKeywordCount() const {
    const PropertyTableImp* const table = Listing();
    return table == nullptr ? 0
                            : asset_meta::TextCount(*table, PropertyTableImp::kIterationGroup,
                                                    fixed_property::kKeyword);
}

bool AssetDefinitionDataIterator::GetKeyword(std::uint64_t index, IString& keyword,
                                             const IString& locale) const {
    const PropertyTableImp* const table = Listing();
    return table != nullptr && asset_meta::GetListText(*table, fixed_property::kKeyword, index,
                                                       keyword, locale, library_->Identifier());
}

std::uint64_t AssetDefinitionDataIterator::GetCategoryCount() const {
    const PropertyTableImp* const table = Listing();
    return table == nullptr ? 0
                            : asset_meta::TextCount(*table, PropertyTableImp::kIterationGroup,
                                                    fixed_property::kCategory);
}

bool AssetDefinitionDataIterator::GetCategory(std::uint64_t index, IString& category,
                                              const IString& locale) const {
    const PropertyTableImp* const table = Listing();
    return table != nullptr && asset_meta::GetListText(*table, fixed_property::kCategory, index,
                                                       category, locale, library_->Identifier());
}

std::uint64_t AssetDefinitionDataIterator::GetThumbnailCount() const {
    const PropertyTableImp* const table = Listing();
    return table != nullptr ? asset_meta::ThumbnailCount(*table) : 0;
}

bool AssetDefinitionDataIterator::GetThumbnailName(std::uint64_t index, IString& name) const {
    const PropertyTableImp* const table = Listing();
    return table != nullptr && asset_meta::GetThumbnailName(*table, index, name);
}

bool AssetDefinitionDataIterator::GetThumbnail(std::uint64_t index, IString& uri) const {
    const PropertyTableImp* const table = Listing();
    return table != nullptr && asset_meta::GetThumbnail(*table, index, uri);
}

bool AssetDefinitionDataIterator::GetDescription(IString& description,
                                                 const IString& locale) const {
    const PropertyTableImp* const table = Listing();
    return table != nullptr &&
           asset_meta::GetDescription(*table, description, locale, library_->Identifier());
}

bool AssetDefinitionDataIterator::IsHidden() const {
    const PropertyTableImp* const table = Listing();
    return table != nullptr &&
           asset_meta::Boolean(*table, PropertyTableImp::kIterationGroup, fixed_property::kHidden);
}

bool AssetDefinitionDataIterator::GetBaseSchema(IString& id) const {
    const PropertyTableImp* const table = Listing();
    if (table == nullptr) return false;
    Assign(id, TextOf(*table, fixed_property::kBaseSchema));
    return true;
}

bool AssetDefinitionDataIterator::GetVersionGUID(IString& guid) const {
    const PropertyTableImp* const table = Listing();
    if (table == nullptr) return false;
    Assign(guid, asset_meta::VersionGuid(*table));
    return true;
}

void AssetDefinitionDataIterator::Release() {
    delete this;
}

PropertyTableImp* AssetDefinitionDataIterator::Listing() const {
    HalvernAsset* const record = Record();
    if (record == nullptr) return nullptr;
    if (record->definitionLoaded) return record->table;
    return Guarded(nullptr, [&] { return &library_->LoadListing(*record); });
}

// The definition at the position may have gone since: the walk stands at the next one then.
HalvernAsset* AssetDefinitionDataIterator::Record() const {
    if (position_ >= names_.size() || alive_.expired()) return nullptr;
    if (record_generation_ != library_->Generation() && !Skip(position_, true)) return nullptr;
    if (record_ == nullptr || record_position_ != position_ ||
        record_generation_ != library_->Generation()) {
        record_ = library_->FindRecord(names_[position_]);
        record_position_ = position_;
        record_generation_ = library_->Generation();
    }
    return record_;
}

// Moves on from `position` to a definition that is still there; false when there is none that way.
bool AssetDefinitionDataIterator::Skip(std::size_t& position, bool forward) const {
    if (alive_.expired()) return false;
    while (position < names_.size()) {
        if (library_->Contains(names_[position])) return true;
        if (!forward && position == 0) return false;
        position = forward ? position + 1 : position - 1;
    }
    return false;
}

std::vector<nuo::string> AllDefinitions(const GeneralLibrary& library) {
    return library.RecordNames();
}

std::vector<nuo::string> DefinitionsById(const GeneralLibrary& library,
                                         nuo::string_ref identifier) {
    if (!library.Contains(identifier)) return {};
    return {nuo::string(identifier)};
}

std::vector<nuo::string> DefinitionsOfType(GeneralLibrary& library, nuo::string_ref type) {
    std::vector<nuo::string> names;
    for (const nuo::string& name : library.RecordNames()) {
        const bool fits = Guarded(false, [&] {
            const PropertyTableImp& table = library.LoadListing(*library.FindRecord(name));
            const nuo::string stored = TextOf(table, fixed_property::kAssetType);
            return stored == type || asset_meta::AssetTypeForHosts(stored) == type ||
                   TextOf(table, fixed_property::kBaseSchema) == type;
        });
        if (fits) names.push_back(name);
    }
    return names;
}

std::vector<nuo::string> PresentDefinitions(const GeneralLibrary& library,
                                            const SharedAssets::Identifiers& identifiers) {
    std::vector<nuo::string> names;
    for (const nuo::string& identifier : identifiers)
        if (library.Contains(identifier)) names.push_back(identifier);
    return names;
}

}  // namespace korvanet::platform::assets
