#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "assets/property/intrusive.h"
#include "assets/property/itablefactory.h"
#include "assets/property/propertygroup.h"
#include "nuo/common/string.h"
#include "velmor/namespace.h"
#include "velmor/object.h"

namespace korvanet::platform::assets {

class HalvernAsset;
class IAssetSchema;
struct ModuleContext;

// The body of every table of properties: schema, asset definition and asset instance.
//
// The properties lie in three groups, so that what all copies of an asset share is stored once (the
// read-only group) and what each copy may change is stored per copy. A table belongs to a reflected
// `HalvernAsset` value, its holder, which destroys it.
//
// Life: a factory makes the table with a count of zero; Enter() names it and puts its holder in a
// namespace; the last Unretain() takes it out again and destroys the holder, unless the table is
// pinned: then its namespace keeps it.
class PropertyTableImp : public IntrusiveCounter {
public:
    enum GroupIndex : std::size_t { kReadWriteGroup = 0, kIterationGroup = 1, kReadOnlyGroup = 2 };
    static constexpr std::size_t kGroupCount = 3;
    // Deeper chains of connected tables are not cloned.
    static constexpr int kMaxConnectionDepth = 64;

    PropertyTableImp(TableKind kind, HalvernAsset& holder, const ModuleContext& context);
    ~PropertyTableImp() override;

    // The group that a property with these flags belongs to; read-only wins.
    static GroupIndex GroupOf(std::uint32_t flags);

    HalvernAsset& Holder() const { return *holder_; }
    velmor::Object HolderObject() const;
    const ModuleContext& Context() const { return *context_; }
    TableKind Kind() const { return kind_; }

    // The schema of a definition or instance, the base of a schema; not owned.
    IAssetSchema* Base() const { return base_; }
    void SetBase(IAssetSchema* base) { base_ = base; }

    // The table that this one was made from, which it keeps alive.
    PropertyTableImp* Source() const { return source_.get(); }
    void SetSource(PropertyTableImp* source) { source_ = source; }

    int State() const { return state_; }
    void SetState(int state) { state_ = state; }

    // Groups.
    const PropertyGroup& Group(std::size_t group) const { return *groups_[group]; }
    PropertyGroup& Group(std::size_t group) { return *groups_[group]; }
    // The first property of that name, groups in order, or null.
    PropertyBase* FindProperty(nuo::string_ref name) const;
    // The property of that name, or of the name that the schema gives for it as an alias; null when
    // there is none. A table without a schema knows no aliases.
    virtual PropertyBase* FindByNameOrAlias(nuo::string_ref name) const {
        return FindProperty(name);
    }
    // The property of that name in one group, or null.
    PropertyBase* FindInGroup(std::size_t group, nuo::string_ref name) const {
        return Group(group).Find(name);
    }
    // The same as a reflected object; invalid when there is none.
    velmor::Object GetObject(std::size_t group, nuo::string_ref name) const;
    // Elements of the list of that name; 0 when there is none.
    std::uint64_t GetArraySize(nuo::string_ref name) const;
    // The text at `index` of a property of one group; empty when there is none.
    nuo::string GetText(std::size_t group, nuo::string_ref name, std::uint64_t index = 0) const;
    // Takes the property over, into the group that its flags tell; one of the same name in that
    // group is destroyed.
    void AddProperty(OwnedProperty property);

    // Names and namespaces.
    const nuo::string& Name() const { return name_; }
    void SetName(const nuo::string& name) { name_ = name; }
    // The namespace that the holder stands in; invalid when none.
    velmor::Namespace Registry() const { return registry_; }
    bool IsPinned() const { return pinned_; }
    void SetPinned(bool pinned) { pinned_ = pinned; }
    // Names the table and puts its holder in `registry`, or, with an invalid one, only names it.
    // The name must be free there.
    void Enter(velmor::Namespace registry, const nuo::string& name);
    // Takes the holder out of its namespace and unpins the table, which then lives as long as it is
    // counted: one that nobody counts must be given a reference first or destroyed by its caller.
    void Detach();
    // The names of the namespaces from below the root down to this table, each after a ".".
    nuo::string GetQualifiedName() const;

    // Making tables of tables. The results carry one reference for the caller.

    // An instance of this table: shares the read-only group, copies the other two, and has this
    // table as its source. Connected tables of the read-write group are replaced by instances of
    // theirs. With a valid `registry` all of them are entered there under fresh identifiers. Null
    // when connections reach deeper than kMaxConnectionDepth.
    PropertyTableImp* Clone(velmor::Namespace registry) const;
    // A copy of this instance beside it: as Clone(), but each copy has the source that its original
    // has, and copies of connected tables have the state 1.
    PropertyTableImp* CloneBeside(velmor::Namespace registry) const;
    // Makes one group that of `other`: the read-only one shared, the other two copied with their
    // connections to the same tables.
    void TakeGroup(std::size_t group, const PropertyTableImp& other);
    // Takes all three.
    void TakeGroups(const PropertyTableImp& other);

    // Drops the connections of all properties and tells nobody. Those of the read-only group are
    // gone for all tables that share it: only for the end of them all.
    void ClearConnections();
    // The same for the two groups that are the table's own.
    void ClearOwnConnections();

    // Called before the source of an instance is used, so that one which is bound late can be
    // bound.
    virtual void ResolveSource() const {}

protected:
    void Expire() override;

private:
    friend class TableCloner;

    void ClearConnections(std::size_t group);

    HalvernAsset* holder_;
    IAssetSchema* base_ = nullptr;
    std::array<std::shared_ptr<PropertyGroup>, kGroupCount> groups_;
    nuo::string name_;
    velmor::Namespace registry_;
    bool pinned_ = false;
    intrusive_ptr<PropertyTableImp> source_;
    const ModuleContext* context_;
    int state_ = 0;
    TableKind kind_;
};

// The names of the groups in stored data and in XML, in group order.
inline constexpr const char* kGroupNames[PropertyTableImp::kGroupCount] = {
    "10readwrite", "20iteration", "30readonly"};

// The asset type that a table's read-only group tells; empty when it tells none.
nuo::string AssetTypeOf(const PropertyTableImp& table);

// Makes a holder on the context's heap and an empty table of the given kind in it. The table's
// count is zero and it stands in no namespace.
PropertyTableImp& MakeTable(const ModuleContext& context, TableKind kind);

// Ends a table that nobody counts and that stands in no namespace.
void DestroyTable(PropertyTableImp& table);

// A fresh identifier as text.
nuo::string MakeIdentifier();

}  // namespace korvanet::platform::assets
