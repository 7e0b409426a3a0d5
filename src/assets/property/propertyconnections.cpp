#include <korvanet/platform/assets/iassetinstance.h>

#include "assets/manager/base/guarded.h"
#include "assets/manager/base/report.h"
#include "assets/property/connection.h"
#include "assets/property/modulecontext.h"
#include "assets/property/property.h"
#include "assets/property/propertytable.h"
#include "assets/property/widekey.h"
#include "velmor/runtime.h"

namespace korvanet::platform::assets {

namespace {

constexpr std::uint64_t kNone = ~std::uint64_t{0};

bool Owns(const PropertyTableImp& table, const PropertyBase& property) {
    for (std::size_t group = 0; group < PropertyTableImp::kGroupCount; ++group) {
        if (table.FindInGroup(group, property.Name()) == &property) {
            return true;
        }
    }
    return false;
}

}  // namespace

std::uint64_t PropertyBase::GetConnectedAssetCount() const {
    return Link().size();
}

AssetConnection& PropertyBase::ConnectionAt(std::uint64_t index) const {
    return *static_cast<AssetConnection*>(Link()[index].data());
}

PropertyTableImp* PropertyBase::ConnectedTable(std::uint64_t index) const {
    return ConnectionAt(index).data.get();
}

void PropertyBase::AppendConnection(PropertyTableImp& table) {
    const ModuleContext& context = *descriptor_->context;
    const velmor::Type type = context.types.Connection();
    velmor::Array& link = Link();
    if (!link.bound()) {
        link = velmor::Array(type, context.heap, context.runtime->extHeap());
    }
    const AssetConnection connection{table.GetQualifiedName(), &table, 0};
    link.push_back({type, &connection});
}

void PropertyBase::RemoveConnection(std::uint64_t index) {
    // The last reference may be the one that goes: the row is in order again before it does.
    const intrusive_ptr<PropertyTableImp> held(ConnectedTable(index));
    Link().erase(Link()[index]);
}

void PropertyBase::ClearConnections() {
    velmor::Array gone;
    gone.swap(Link());
}

std::uint64_t PropertyBase::FindConnection(nuo::string_ref assetType) const {
    const std::uint64_t count = GetConnectedAssetCount();
    for (std::uint64_t i = 0; i < count; ++i) {
        const PropertyTableImp* table = ConnectedTable(i);
        if (table != nullptr && AssetTypeOf(*table) == assetType) {
            return i;
        }
    }
    return kNone;
}

void PropertyBase::NotifyConnectionChanged() {
    if (owner_ != nullptr) {
        owner_->ConnectionChanged(*this);
    }
}

bool PropertyBase::ConnectAsset(IAssetInstance* asset) {
    if (!TakesConnections()) {
        return false;
    }
    if (asset == nullptr) {
        if (GetConnectedAssetCount() != 0) {
            ClearConnections();
            NotifyConnectionChanged();
        }
        return true;
    }
    // Counted first: what is dropped below may be all that keeps the very same asset.
    const intrusive_ptr<PropertyTableImp> table(dynamic_cast<PropertyTableImp*>(asset));
    if (!table) {
        return false;
    }
    if (!descriptor_->Has(PropertyFlags::kAllowConnectedAssets)) {
        ClearConnections();
    }
    if (Owns(*table, *this)) {
        // The article is wrong on purpose: hosts know the message in this form.
        HalvernError("Cannot set a instance to its own property.").Deliver();
        return false;
    }
    const std::uint64_t replaced = FindConnection(AssetTypeOf(*table));
    if (!Guarded([&] { AppendConnection(*table); })) {
        return false;
    }
    if (replaced != kNone) {
        RemoveConnection(replaced);
    }
    NotifyConnectionChanged();
    return true;
}

IAssetInstance* PropertyBase::GetConnectedAsset(const wchar_t* assetType) const {
    if (assetType == nullptr || !TakesConnections()) {
        return nullptr;
    }
    const std::uint64_t found = FindConnection(WideKey(assetType));
    return found == kNone ? nullptr : dynamic_cast<IAssetInstance*>(ConnectedTable(found));
}

IAssetInstance* PropertyBase::GetConnectedAsset(std::uint64_t index) const {
    return !TakesConnections() || index >= GetConnectedAssetCount()
               ? nullptr
               : dynamic_cast<IAssetInstance*>(ConnectedTable(index));
}

bool PropertyBase::RemoveConnectedAsset(const wchar_t* assetType) {
    if (assetType == nullptr || !TakesConnections()) {
        return false;
    }
    const std::uint64_t found = FindConnection(WideKey(assetType));
    if (found == kNone) {
        return false;
    }
    RemoveConnection(found);
    NotifyConnectionChanged();
    return true;
}

bool PropertyBase::RemoveConnectedAsset(IAssetInstance* asset) {
    const auto* table = dynamic_cast<PropertyTableImp*>(asset);
    if (table == nullptr || !TakesConnections()) {
        return false;
    }
    const std::uint64_t count = GetConnectedAssetCount();
    for (std::uint64_t i = 0; i < count; ++i) {
        if (ConnectedTable(i) == table) {
            RemoveConnection(i);
            NotifyConnectionChanged();
            return true;
        }
    }
    return false;
}

}  // namespace korvanet::platform::assets
