#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include <korvanet/platform/assets/iassetdefinition.h>
#include <korvanet/platform/assets/iassetinstance.h>
#include <korvanet/platform/assets/iassetobserver.h>

#include "assets/asset/assetadaptor.h"
#include "assets/asset/assettables.h"
#include "assets/property/ipropertyowner.h"

namespace korvanet::platform::assets {

class AssetDefinition;

/**
 * An asset as a host edits it. Its values are its own from the moment it is made, but for those of
 * the read-only group; it keeps the definition that it came from alive.
 *
 * Its properties learn of it when the first observer comes: an instance that nobody observes pays
 * nothing for notifications.
 */
class AssetInstance final : public AssetAdaptor<IAssetInstance>, public IPropertyOwner {
public:
    /** Finds the definition, and makes it the source of the instance that asks. */
    using DefinitionGetter = std::function<AssetDefinition*()>;

    /** `services` outlive the instance. */
    AssetInstance(HalvernAsset& holder, const ModuleContext& context,
                  const AssetServices& services);
    ~AssetInstance() override;

    void Release() override;
    void BeginChange() override {}
    bool IsRevision(std::int32_t revision) const override;
    void EndChange() override {}
    void CancelChange() override {}
    bool AddObserver(IAssetObserver* observer) override;
    bool RemoveObserver(IAssetObserver* observer) override;
    bool SetUIName(const IString& name) override;
    bool RemoveThumbnail(std::uint64_t index) override;
    bool SetThumbnail(const IString& name, const IString& uri) override;
    bool RemoveKeyword(std::uint64_t index) override;
    bool AddKeyword(const IString& keyword) override;
    bool RemoveCategory(std::uint64_t index) override;
    bool AddCategory(const IString& category) override;
    bool SetDescription(const IString& description) override;
    IAssetDefinition* GetDefinition() override;
    IAssetInstance* AddReference() override;
    IAssetInstance* Clone() override;
    bool IsEqual(const IAssetInstance* other, bool deep, bool publicOnly,
                 bool byVersionOnly) const override;
    bool SetSwatch(const IString& swatch) override;
    IAssetInstance* CreateGenericInstance() override;
    bool GetImplementationBinding(const IString& identifier, IString& value,
                                  IString& tag) const override;
    bool SetVersionGUID(const IString& guid) override;
    bool RenewVersionGUID() override;

    // IPropertyOwner
    void ValueChanged(IProperty& property) override;
    void ConnectionChanged(IProperty& property) override;

    /** Tells the observers of a property too that came after the first of them. */
    void Watch(PropertyBase& property);
    /** Lets the definition be found when somebody first asks for it. */
    void SetDefinitionGetter(DefinitionGetter getter);
    /** Runs the getter, once, if one is set. */
    void ResolveSource() const override;
    /** The definition without a reference for the caller, or null. */
    AssetDefinition* Definition() const;

private:
    template <class Tell>
    void TellObservers(Tell&& tell);
    void AssetChanged();
    bool SetText(std::size_t group, nuo::string_ref name, const IString& text);
    bool AppendText(nuo::string_ref name, const IString& text);
    bool RemoveText(nuo::string_ref name, std::uint64_t index, std::uint64_t count);
    bool FindImplementation(const IString& identifier, nuo::string& uri) const;

    std::vector<IAssetObserver*> observers_;
    mutable DefinitionGetter definition_getter_;
    const AssetServices& services_;
};

}  // namespace korvanet::platform::assets
