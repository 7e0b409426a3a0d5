#include "assets/manager/assetlibrary.h"

#include <array>

#include <korvanet/platform/core/utf8string.h>

#include "assets/asset/assetdefinition.h"
#include "assets/asset/assetinstance.h"
#include "assets/library/definitioniterator.h"
#include "assets/manager/base/guarded.h"
#include "assets/manager/base/report.h"
#include "assets/manager/base/text.h"
#include "assets/schema/schemadefinition.h"

namespace korvanet::platform::assets {
namespace {

constexpr std::array<nuo::string_ref, 7> kAssetTypes{
    "materialappearance", "lightappearance",    "environment", "texture",
    "swatchscene",        "proceduralgeometry", "sceneeffect"};

}  // namespace

void AssetLibrary::GetIdentifier(IString& identifier) const {
    Assign(identifier, Identifier());
}

IAssetLibrary* AssetLibrary::AddUse() {
    ++use_count_;
    return this;
}

bool AssetLibrary::IsReadOnly() const {
    return !file_writable_ || Guarded(false, [this] { return Document().IsReadOnlyOption(); });
}

void AssetLibrary::SetReadOnly() {
    Guarded([this] { Document().SetReadOnlyOption(); });
}

std::uint32_t AssetLibrary::GetVersion() const {
    return Document().Version().version;
}

bool AssetLibrary::SetVersion(std::uint32_t version) {
    if (IsReadOnly()) {
        HalvernError("Cannot set version on read-only library").Deliver();
        return false;
    }
    if (version == 0) {
        HalvernError("Cannot set version number to 0.").Deliver();
        return false;
    }
    Document().SetVersion(version);
    return true;
}

std::size_t AssetLibrary::GetAssetTypeCount() const {
    return kAssetTypes.size();
}

bool AssetLibrary::GetAssetType(std::size_t index, IString& name) const {
    if (index >= kAssetTypes.size()) {
        HalvernError("Index is out of scope.").Deliver();
        return false;
    }
    Assign(name, kAssetTypes[index]);
    return true;
}

IAssetInstance* AssetLibrary::CreateInstance(IAssetDefinition* definition) {
    core::UTF8String name;
    if (definition == nullptr || !definition->GetName(name) ||
        !Document().Contains(name.AsUTF8())) {
        HalvernError("Cannot instantiate an AssetDefinition from another Library.").Deliver();
        return nullptr;
    }
    return definition->CreateInstance();
}

bool AssetLibrary::DeleteInstance(IAssetInstance* instance) {
    auto* const own = dynamic_cast<AssetInstance*>(instance);
    if (own == nullptr || !Document().Owns(*own)) return false;
    own->Release();
    return true;
}

bool AssetLibrary::AddSchema(IAssetSchema* schema) {
    if (IsReadOnly()) {
        HalvernError("Cannot edit a read-only AssetLibrary.").Deliver();
        return false;
    }
    KRVTSchemaDefinition* const own = AsSchemaDefinition(schema);
    return own != nullptr &&
           Guarded(false, [&] { return Document().EnsureSchema(*own) != nullptr; });
}

// Listings. One that cannot be made is empty.

IAssetDefinition::IIterator* AssetLibrary::List(const std::function<Names()>& filter) {
    return new AssetDefinitionDataIterator(Document(), Guarded(Names(), filter));
}

IAssetDefinition::IIterator* AssetLibrary::GetDefinitions() {
    return List([this] { return AllDefinitions(Document()); });
}

IAssetDefinition::IIterator* AssetLibrary::GetDefinitionsById(const IString& text) {
    return List([&] { return DefinitionsById(Document(), text.AsUTF8()); });
}

IAssetDefinition::IIterator* AssetLibrary::GetDefinitionsOfType(const IString& type) {
    return List([&] { return DefinitionsOfType(Document(), type.AsUTF8()); });
}

IAssetDefinition::IIterator* AssetLibrary::GetDefinitionsOfType(IAssetSchema* schema) {
    core::UTF8String type;
    if (schema == nullptr || !schema->GetAssetType(type)) return List([] { return Names(); });
    return GetDefinitionsOfType(type);
}

IAssetDefinition::IIterator* AssetLibrary::GetDefinitionsOfType(IAssetDefinition* definition) {
    return GetDefinitionsOfType(definition != nullptr ? definition->GetSchema() : nullptr);
}

IAssetDefinition::IIterator* AssetLibrary::GetDefinitionsOfType(IAssetInstance* instance) {
    return GetDefinitionsOfType(instance != nullptr ? instance->GetSchema() : nullptr);
}

}  // namespace korvanet::platform::assets
