#include "assets/asset/assetdefinition.h"

#include "assets/asset/assetinstance.h"
#include "assets/manager/base/guarded.h"
#include "assets/manager/base/librarynamespaces.h"
#include "assets/property/fixedproperties.h"

namespace korvanet::platform::assets {
namespace {

/** Where instances of a library's definition go: the namespace beside the one it stands in. */
velmor::Namespace InstanceRegistry(velmor::Namespace definitions) {
    if (!definitions.valid() || !definitions.parent().valid()) return velmor::Namespace();
    return definitions.parent().findChild(kInstanceNamespace);
}

}  // namespace

AssetDefinition::AssetDefinition(HalvernAsset& holder, const ModuleContext& context)
    : AssetAdaptor<IAssetDefinition>(TableKind::kDefinition, holder, context) {}

AssetDefinition::~AssetDefinition() = default;

void AssetDefinition::Release() {
    Unretain();
}

bool AssetDefinition::GetName(IString& name) const {
    Assign(name, Name());
    return true;
}

bool AssetDefinition::GetAssetType(IString& assetType) const {
    Assign(assetType, asset_meta::AssetTypeForHosts(AssetTypeOf(*this)));
    return true;
}

std::int32_t AssetDefinition::GetVersion() const {
    return asset_meta::Integer(*this, kReadWriteGroup, fixed_property::kVersion);
}

std::int32_t AssetDefinition::GetRevision() const {
    return asset_meta::Integer(*this, kReadWriteGroup, fixed_property::kRevision);
}

bool AssetDefinition::IsHidden() const {
    return asset_meta::Boolean(*this, kIterationGroup, fixed_property::kHidden);
}

bool AssetDefinition::GetAssetLibID(IString& identifier) const {
    if (AssetLibId().empty()) return false;
    Assign(identifier, AssetLibId());
    return true;
}

IAssetInstance* AssetDefinition::CreateInstance() {
    return Guarded(nullptr, [this]() -> IAssetInstance* {
        return CreateInstanceIn(InstanceRegistry(Registry()));
    });
}

IAssetDefinition* AssetDefinition::AddReference() {
    Retain();
    return this;
}

AssetInstance* AssetDefinition::CreateInstanceIn(velmor::Namespace registry) {
    return static_cast<AssetInstance*>(PropertyTableImp::Clone(registry));
}

AssetDefinition& MakeDefinition(KRVTSchemaDefinition& schema, velmor::Namespace registry,
                                const nuo::string& id) {
    auto& definition =
        static_cast<AssetDefinition&>(MakeTable(schema.Context(), TableKind::kDefinition));
    definition.TakeGroups(schema);
    definition.SetBase(&schema);
    definition.SetSource(&schema);
    // A copy of the schema's values names the schema's own base here.
    if (PropertyBase* base = definition.FindInGroup(PropertyTableImp::kIterationGroup,
                                                    fixed_property::kBaseSchema)) {
        SetTextAt(*base, 0, schema.Id());
    }
    definition.Enter(registry, id.empty() ? MakeIdentifier() : id);
    return definition;
}

}  // namespace korvanet::platform::assets
