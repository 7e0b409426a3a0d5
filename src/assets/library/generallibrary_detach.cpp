#include <algorithm>
#include <map>
#include <set>

#include "assets/library/generallibrary.h"
#include "assets/property/property.h"
#include "assets/schema/schemadefinition.h"
#include "assets/schema/schemamanager.h"
#include "velmor/runtime.h"

namespace korvanet::platform::assets {
namespace {

using Tables = std::vector<PropertyTableImp*>;

void AppendTables(velmor::Namespace from, Tables& tables) {
    if (!from.valid()) return;
    for (const velmor::NameValuePair& entry : from.objects())
        if (auto* table = static_cast<HalvernAsset*>(entry.value.data())->table)
            tables.push_back(table);
}

// Visits the tables that a table is connected to. The read-only group is shared by many tables:
// each group is walked once as long as `walked` is the same.
template <class Visit>
void ForEachConnected(const PropertyTableImp& table, std::set<const PropertyGroup*>& walked,
                      Visit&& visit) {
    for (std::size_t group = 0; group < PropertyTableImp::kGroupCount; ++group) {
        const PropertyGroup& properties = table.Group(group);
        if (!walked.insert(&properties).second) continue;
        for (const PropertyGroup::Entry& entry : properties) {
            const PropertyBase& property = entry.Property();
            for (std::uint64_t at = 0; at < property.GetConnectedAssetCount(); ++at)
                if (PropertyTableImp* connected = property.ConnectedTable(at)) visit(*connected);
        }
    }
}

// What a reload must leave alive: tables with references that do not come from the tables
// themselves, and all that these reach by connections and sources.
class HeldTables {
public:
    explicit HeldTables(const Tables& tables) : members_(tables.begin(), tables.end()) {
        CountInner(tables);
        for (PropertyTableImp* table : tables)
            if (table->ReferenceCount() > inner_[table]) Hold(*table);
    }

    const std::set<PropertyTableImp*>& All() const { return held_; }

private:
    void CountInner(const Tables& tables) {
        std::set<const PropertyGroup*> walked;
        for (PropertyTableImp* table : tables) {
            ForEachConnected(*table, walked, [this](PropertyTableImp& to) { ++inner_[&to]; });
            if (table->Source() != nullptr) ++inner_[table->Source()];
        }
    }
    void Hold(PropertyTableImp& first) {
        Tables open{&first};
        std::set<const PropertyGroup*> walked;
        while (!open.empty()) {
            PropertyTableImp& table = *open.back();
            open.pop_back();
            if (members_.count(&table) == 0 || !held_.insert(&table).second) continue;
            ForEachConnected(table, walked, [&](PropertyTableImp& to) { open.push_back(&to); });
            if (table.Source() != nullptr) open.push_back(table.Source());
        }
    }

    std::set<PropertyTableImp*> members_;
    std::map<PropertyTableImp*, std::uint64_t> inner_;
    std::set<PropertyTableImp*> held_;
};

}  // namespace

bool GeneralLibrary::HasOutstandingReferences() const {
    Tables records;
    AppendTables(namespaces_.asset, records);
    std::uint64_t references = 0;
    std::uint64_t connections = 0;
    std::set<const PropertyGroup*> walked;
    for (const PropertyTableImp* table : records) {
        references += table->ReferenceCount();
        ForEachConnected(*table, walked, [&](const PropertyTableImp& to) {
            if (IsRecord(to)) ++connections;
        });
    }
    return references > connections;
}

void GeneralLibrary::PrepareForReload() {
    Tables tables;
    AppendTables(namespaces_.asset, tables);
    AppendTables(namespaces_.tmpAsset, tables);
    const bool anyone =
        std::any_of(tables.begin(), tables.end(),
                    [](const PropertyTableImp* table) { return table->ReferenceCount() != 0; });
    if (!anyone) return;
    const HeldTables held(tables);
    for (PropertyTableImp* table : held.All())
        Detach(*table);
    ++generation_;
}

// The schemas of the document go with it; the shared set has twins of them.
void GeneralLibrary::Detach(PropertyTableImp& table) {
    table.Holder().definitionLoaded = false;
    table.Holder().instanceLoaded = false;
    const KRVTSchemaDefinition* const schema = AsSchemaDefinition(table.Base());
    KRVTSchemaDefinition* const global =
        schema != nullptr ? host_.Schemas().FindGlobalSchema(schema->Id()) : nullptr;
    table.SetBase(global);
    if (table.Kind() == TableKind::kDefinition) table.SetSource(global);
    table.Detach();
}

// Tables point to each other by counted links; these go first, so that the order in which the
// tables end does not matter.
void GeneralLibrary::ReleaseContent() {
    if (!namespaces_.own.valid()) return;
    // A removed preset that somebody holds may keep others of the document alive.
    PrepareForReload();
    Tables tables;
    for (const velmor::Namespace from :
         {namespaces_.asset, namespaces_.tmpAsset, namespaces_.schema})
        AppendTables(from, tables);
    for (PropertyTableImp* table : tables)
        table->Retain();
    for (PropertyTableImp* table : tables) {
        table->ClearConnections();
        table->SetSource(nullptr);
    }
    const nuo::string name = namespaces_.own.name();
    velmor::Runtime& runtime = *host_.Context().runtime;
    runtime.removeObjects(namespaces_.own);
    runtime.removeChild(namespaces_.parent, name);
    namespaces_.own = {};
}

}  // namespace korvanet::platform::assets
