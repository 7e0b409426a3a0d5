#include "assets/asset/assetdefinition.h"
#include "assets/asset/assetinstance.h"
#include "assets/manager/assetlibrarymanager.h"
#include "assets/manager/base/guarded.h"
#include "assets/manager/base/text.h"
#include "assets/manager/tablewalk.h"
#include "assets/property/property.h"
#include "assets/schema/schemadefinition.h"
#include "assets/schema/schemainheritance.h"

namespace korvanet::platform::assets {

void AssetLibraryManager::PromoteSchemas(const std::vector<KRVTSchemaDefinition*>& schemas) {
    SchemaManager::Added met;
    for (KRVTSchemaDefinition* schema : schemas)
        schemas_->AddSchema(schema, met);
}

KRVTSchemaDefinition* AssetLibraryManager::FindGlobalSchema(nuo::string_ref id) {
    return schemas_->FindOwn(id);
}

void AssetLibraryManager::PropertyAdded(KRVTSchemaDefinition& schema,
                                        const PropertyBase& property) {
    // What is read-only stands in the group that assets share with their schema.
    if (PropertyTableImp::GroupOf(property.GetFlags()) == PropertyTableImp::kReadOnlyGroup) return;
    const IAssetSchema* const base = &schema;
    const auto gain = [&](PropertyTableImp& table) {
        if (table.Base() != base || table.FindProperty(property.Name()) != nullptr) return;
        // A schema has flags of its own for what it inherits.
        const bool derives = table.Kind() == TableKind::kSchema;
        PropertyBase& added = derives ? AddCopy(table, property) : AddSharingCopy(table, property);
        if (auto* instance = dynamic_cast<AssetInstance*>(&table)) instance->Watch(added);
    };
    for (const velmor::Namespace from : {global_.own, user_}) {
        for (PropertyTableImp* table : TablesBelow(from, context_)) {
            gain(*table);
            // The definition of an instance may stand in no namespace.
            if (PropertyTableImp* source = table->Source()) gain(*source);
        }
    }
}

IAssetSchema* AssetLibraryManager::LoadSchemaFile(const IString& path) {
    return Guarded(nullptr, [&] { return schemas_->LoadFromFile(ToUtf8(path)); });
}

IAssetSchema* AssetLibraryManager::LoadSchemaFromFolder(const IString& name,
                                                        const IString& folder) {
    return Guarded(nullptr, [&]() -> KRVTSchemaDefinition* {
        SchemaManager batch(context_, tmp_schema_, SchemaScope::kBatch, this);
        const nuo::string id = ToUtf8(name);
        KRVTSchemaDefinition* const loaded =
            Guarded(nullptr, [&] { return batch.LoadFromFolder(ToUtf8(folder), id); });
        // One that the shared set refuses may have a namesake there.
        if (loaded != nullptr) Guarded(false, [&] { return schemas_->AddSchema(loaded); });
        batch.Clear();
        return loaded != nullptr ? FindGlobalSchema(id) : nullptr;
    });
}

// A schema of a library or of a batch goes with these: its twin in the shared set stands for it.
IAssetSchema* AssetLibraryManager::CreateSchema(const IString& name, const IString*, const IString*,
                                                const IString& assetType, IAssetSchema* parent) {
    return Guarded(nullptr, [&]() -> KRVTSchemaDefinition* {
        if (name.IsEmpty()) return nullptr;
        if (KRVTSchemaDefinition* const existing = FindGlobalSchema(ToUtf8(name))) return existing;
        const KRVTSchemaDefinition* base = nullptr;
        if (parent != nullptr) {
            const KRVTSchemaDefinition* const given = AsSchemaDefinition(parent);
            base = given != nullptr ? FindGlobalSchema(given->Id()) : nullptr;
            if (base == nullptr) return nullptr;
        }
        return schemas_->CreateSchema(ToUtf8(name), ToUtf8(assetType), base);
    });
}

std::size_t AssetLibraryManager::GetSchemaCount() const {
    return schemas_->GetSchemaCount();
}

IAssetSchema* AssetLibraryManager::GetSchemaAt(std::size_t index) {
    return schemas_->GetSchema(index);
}

IAssetSchema* AssetLibraryManager::FindSchema(const IString& name) {
    return FindGlobalSchema(name.AsUTF8());
}

IAssetInstance* AssetLibraryManager::CreateInstanceFromSchema(IAssetSchema* schema,
                                                              const IString* identifier,
                                                              const IString* libraryIdentifier) {
    return Guarded(nullptr, [&]() -> IAssetInstance* {
        KRVTSchemaDefinition* const given = AsSchemaDefinition(schema);
        return given != nullptr ? MakeInstance(*given, identifier, libraryIdentifier) : nullptr;
    });
}

// The definition stands in no namespace: it lives as long as its instance. It has the values of the
// schema that was given, and belongs to the twin of that in the shared set, which no library or
// batch takes along when it goes.
IAssetInstance* AssetLibraryManager::MakeInstance(KRVTSchemaDefinition& schema,
                                                  const IString* identifier,
                                                  const IString* libraryIdentifier) {
    KRVTSchemaDefinition* const shared = FindGlobalSchema(schema.Id());
    if (shared == nullptr) return nullptr;
    const nuo::string name = identifier != nullptr ? ToUtf8(*identifier) : nuo::string();
    const intrusive_ptr<AssetDefinition> definition(
        &MakeDefinition(schema, velmor::Namespace(), name));
    definition->SetBase(shared);
    definition->SetSource(shared);
    if (libraryIdentifier != nullptr) definition->SetAssetLibId(ToUtf8(*libraryIdentifier));
    return definition->CreateInstanceIn(global_.tmpAsset);
}

}  // namespace korvanet::platform::assets
