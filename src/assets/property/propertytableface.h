#pragma once

#include <korvanet/platform/assets/ipropertytable.h>

#include "assets/manager/base/guarded.h"
#include "assets/property/enumeration.h"
#include "assets/property/propertytable.h"

namespace korvanet::platform::assets {

// The property of a name or alias that comes from a host; null for a null name.
PropertyBase* FindByWideName(const PropertyTableImp& table, const wchar_t* name);

// Serves the table operations of the interface `I` from the body of the table.
//
// They override those of `I` where it is an IPropertyTable; IAssetDefinition has none, and there
// they stand behind its own, for the library's use. Hence no `override`.
template <class I>
class PropertyTable : public I, public PropertyTableImp {
public:
    using PropertyTableImp::FindProperty;

    PropertyTable(TableKind kind, HalvernAsset& holder, const ModuleContext& context)
        : PropertyTableImp(kind, holder, context) {}

    virtual IEnumeration<const IProperty*>* GetProperties(bool publicOnly) const {
        return Filtered<const IProperty*>(publicOnly);
    }
    virtual IEnumeration<IProperty*>* GetProperties(bool publicOnly) {
        return Filtered<IProperty*>(publicOnly);
    }
    virtual void ReleaseEnumeration(IEnumeration<const IProperty*>* enumeration) const {
        delete enumeration;
    }
    virtual void ReleaseEnumeration(IEnumeration<IProperty*>* enumeration) { delete enumeration; }

    virtual const IProperty* FindProperty(const wchar_t* name) const {
        return FindByWideName(*this, name);
    }
    virtual IProperty* FindProperty(const wchar_t* name) { return FindByWideName(*this, name); }

private:
    using Merge = SortedMultiGroupMergeIterator<IProperty*>;

    template <class Item>
    IEnumeration<Item>* Filtered(bool publicOnly) const {
        return Guarded(nullptr, [&] {
            return new FilterIterator<Merge, Item, SelectPublic>(Merge(*this), publicOnly);
        });
    }
};

}  // namespace korvanet::platform::assets
