#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <korvanet/platform/assets/iassetdefinition.h>

#include "assets/library/generallibrary.h"
#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// A walk over the definitions of a library. It remembers their names as they were when it was made,
// passes over those that were removed since, and reads the listing group of each definition that it
// is asked about. It does not keep its library: once that is gone the walk is at its end. A
// definition that cannot be read answers with false, 0 and empty strings.
class AssetDefinitionDataIterator final : public IAssetDefinition::IIterator {
public:
    AssetDefinitionDataIterator(GeneralLibrary& library, std::vector<nuo::string> names);

    bool IsAtEnd() const override;
    bool Next() override;
    bool Previous() override;
    IAssetDefinition* GetDefinition() override;
    bool GetName(IString& name) const override;
    bool GetUIName(IString& name, const IString& locale) const override;
    std::uint64_t GetKeywordCount() const override;
    bool GetKeyword(std::uint64_t index, IString& keyword, const IString& locale) const override;
    std::uint64_t GetCategoryCount() const override;
    bool GetCategory(std::uint64_t index, IString& category, const IString& locale) const override;
    std::uint64_t GetThumbnailCount() const override;
    bool GetThumbnailName(std::uint64_t index, IString& name) const override;
    bool GetThumbnail(std::uint64_t index, IString& uri) const override;
    bool GetDescription(IString& description, const IString& locale) const override;
    bool IsHidden() const override;
    bool GetBaseSchema(IString& id) const override;
    bool GetVersionGUID(IString& guid) const override;
    void Release() override;

private:
    // The definition's table with its listing group, or null at the end and where it cannot be
    // read.
    PropertyTableImp* Listing() const;
    // The record at the position, or null.
    HalvernAsset* Record() const;
    bool Skip(std::size_t& position, bool forward) const;

    GeneralLibrary* library_;
    std::weak_ptr<const GeneralLibrary> alive_;
    std::vector<nuo::string> names_;
    mutable std::size_t position_ = 0;
    // The record that was found last, good as long as the library's generation is the same.
    mutable HalvernAsset* record_ = nullptr;
    mutable std::size_t record_position_ = 0;
    mutable std::uint64_t record_generation_ = 0;
};

// The filters of listings; a definition that cannot be read is in none but those by identifier.

std::vector<nuo::string> AllDefinitions(const GeneralLibrary& library);
std::vector<nuo::string> DefinitionsById(const GeneralLibrary& library, nuo::string_ref identifier);
// Those whose stored asset type, asset type as it is answered, or schema is `type`.
std::vector<nuo::string> DefinitionsOfType(GeneralLibrary& library, nuo::string_ref type);
// Those of a set that the library still has.
std::vector<nuo::string> PresentDefinitions(const GeneralLibrary& library,
                                            const SharedAssets::Identifiers& identifiers);

}  // namespace korvanet::platform::assets
