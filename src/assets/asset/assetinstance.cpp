#include "assets/asset/assetinstance.h"

#include <algorithm>
#include <utility>

#include "assets/asset/assetcompare.h"
#include "assets/asset/assetdefinition.h"
#include "assets/asset/igenericconverter.h"
#include "assets/manager/base/guarded.h"
#include "assets/manager/base/report.h"
#include "assets/property/fixedproperties.h"

namespace korvanet::platform::assets {

AssetInstance::AssetInstance(HalvernAsset& holder, const ModuleContext& context,
                             const AssetServices& services)
    : AssetAdaptor<IAssetInstance>(TableKind::kInstance, holder, context), services_(services) {}

AssetInstance::~AssetInstance() = default;

void AssetInstance::Release() {
    Unretain();
}

bool AssetInstance::IsRevision(std::int32_t revision) const {
    return asset_meta::Integer(*this, kReadWriteGroup, fixed_property::kRevision) == revision;
}

bool AssetInstance::AddObserver(IAssetObserver* observer) {
    if (observer == nullptr) return false;
    if (observers_.empty()) {
        for (const std::size_t group : {kReadWriteGroup, kIterationGroup}) {
            for (const PropertyGroup::Entry& entry : Group(group))
                entry.Property().SetOwner(this);
        }
    }
    if (std::find(observers_.begin(), observers_.end(), observer) != observers_.end()) {
        HalvernError("Observer already exists.").Deliver();
        return false;
    }
    return Guarded([&] { observers_.push_back(observer); });
}

bool AssetInstance::RemoveObserver(IAssetObserver* observer) {
    const auto found = std::find(observers_.begin(), observers_.end(), observer);
    if (found == observers_.end()) {
        HalvernError("Observer does not exist.").Deliver();
        return false;
    }
    observers_.erase(found);
    return true;
}

IAssetDefinition* AssetInstance::GetDefinition() {
    return Guarded(nullptr, [this]() -> IAssetDefinition* {
        AssetDefinition* definition = Definition();
        return definition != nullptr ? definition->AddReference() : nullptr;
    });
}

IAssetInstance* AssetInstance::AddReference() {
    Retain();
    return this;
}

IAssetInstance* AssetInstance::Clone() {
    return Guarded(nullptr, [this]() -> IAssetInstance* {
        return static_cast<AssetInstance*>(CloneBeside(Registry()));
    });
}

bool AssetInstance::IsEqual(const IAssetInstance* other, bool deep, bool publicOnly,
                            bool byVersionOnly) const {
    if (other == this) return true;
    const auto* instance = dynamic_cast<const AssetInstance*>(other);
    if (instance == nullptr) return false;
    if (byVersionOnly) return asset_meta::VersionGuid(*this) == asset_meta::VersionGuid(*instance);
    return AssetComparison(deep, publicOnly).AreEqual(*this, *instance);
}

IAssetInstance* AssetInstance::CreateGenericInstance() {
    if (services_.converter == nullptr) return nullptr;
    return Guarded(nullptr, [this] { return services_.converter->Convert(*this); });
}

// The list is walked by an index below the length that it had at the start: observers that come
// meanwhile are not told. None may go meanwhile, and should one do so all the same, the walk ends
// at what is left, and one of these may go untold.
template <class Tell>
void AssetInstance::TellObservers(Tell&& tell) {
    if (observers_.empty()) return;
    // One of them may let go of the last reference.
    const intrusive_ptr<AssetInstance> held(this);
    for (std::size_t i = 0, count = observers_.size(); i < count && i < observers_.size(); ++i) {
        tell(*observers_[i]);
    }
}

void AssetInstance::ValueChanged(IProperty& property) {
    TellObservers([&](IAssetObserver& observer) { observer.OnValueChanged(&property); });
}

void AssetInstance::ConnectionChanged(IProperty& property) {
    TellObservers([&](IAssetObserver& observer) { observer.OnConnectionChanged(&property); });
}

void AssetInstance::AssetChanged() {
    TellObservers([](IAssetObserver& observer) { observer.OnAssetChanged(); });
}

void AssetInstance::Watch(PropertyBase& property) {
    if (!observers_.empty()) property.SetOwner(this);
}

void AssetInstance::SetDefinitionGetter(DefinitionGetter getter) {
    definition_getter_ = std::move(getter);
}

void AssetInstance::ResolveSource() const {
    if (!definition_getter_) return;
    const DefinitionGetter getter = std::exchange(definition_getter_, nullptr);
    AssetDefinition* definition = getter();
    if (definition != nullptr && definition != Source()) {
        const_cast<AssetInstance*>(this)->SetSource(definition);
    }
}

AssetDefinition* AssetInstance::Definition() const {
    ResolveSource();
    return dynamic_cast<AssetDefinition*>(Source());
}

}  // namespace korvanet::platform::assets
