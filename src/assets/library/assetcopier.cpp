#include "assets/library/assetcopier.h"

#include "assets/library/connectiongraph.h"
#include "assets/library/storedgroups.h"
#include "assets/library/tabletext.h"
#include "assets/property/connection.h"
#include "assets/property/fixedproperties.h"
#include "assets/property/propertyfactory.h"
#include "assets/schema/schemadefinition.h"

namespace korvanet::platform::assets {
PropertyTableImp* AssetCopier::Copy(PropertyTableImp& source, nuo::string_ref identifier) {
    if (ConnectionGraph({&source}).DepthOf(source) > GeneralLibrary::kMaxConnectionDepth)
        NUO_RAISE(JpkFsErr);
    Gather(source);
    if (!EnsureSchemas()) return nullptr;
    for (PropertyTableImp* each : sources_)
        copies_[each] =
            &MakeRecord(*each, each == &source ? nuo::string(identifier) : MakeIdentifier());
    for (PropertyTableImp* each : sources_) {
        PropertyTableImp& made = *copies_[each];
        if (each == &made) continue;
        Fill(*each, made);
        if (each != &source && target_.GetRole() == GeneralLibrary::Role::kLibrary)
            SetTruth(made, fixed_property::kHidden, true);
    }
    PropertyTableImp* const stored = copies_[&source];
    // Last, for its connections may be all that keeps the others.
    if (stored == &source) Relink(*stored);
    return stored;
}

// What is stored: the asset and, by connections, everything that is no record of this library yet.
void AssetCopier::Gather(PropertyTableImp& source) {
    sources_.push_back(&source);
    copies_.emplace(&source, nullptr);
    for (std::size_t next = 0; next < sources_.size(); ++next) {
        ForEachConnection(*sources_[next], [this](PropertyTableImp& connected) {
            if (!target_.IsRecord(connected) && copies_.emplace(&connected, nullptr).second)
                sources_.push_back(&connected);
        });
    }
}

bool AssetCopier::EnsureSchemas() {
    for (const PropertyTableImp* source : sources_) {
        KRVTSchemaDefinition* const schema = AsSchemaDefinition(source->Base());
        if (schema == nullptr || target_.EnsureSchema(*schema) == nullptr) return false;
    }
    return true;
}

// A record that stands there keeps its object, which hosts may hold, and takes schema and values.
PropertyTableImp& AssetCopier::MakeRecord(PropertyTableImp& source, nuo::string_ref identifier) {
    KRVTSchemaDefinition& schema = *target_.EnsureSchema(*AsSchemaDefinition(source.Base()));
    HalvernAsset* record = target_.FindRecord(identifier);
    if (record == nullptr) {
        record = &target_.AddRecord(identifier);
        target_.MakeTable(*record, schema);
        fresh_.push_back(record->identifier);
        record->table->TakeGroups(schema);
        record->definitionLoaded = record->instanceLoaded = true;
    } else if (&target_.LoadRecord(*record) != &source) {
        record->table->SetBase(&schema);
        record->table->SetSource(&schema);
        record->table->TakeGroups(schema);
    }
    record->state = HalvernAsset::kChanged;
    return *record->table;
}

void AssetCopier::Fill(const PropertyTableImp& source, PropertyTableImp& made) {
    for (const std::size_t group : kStoredGroups) {
        for (const PropertyGroup::Entry& entry : source.Group(group)) {
            PropertyBase* const place = made.FindProperty(entry.Name());
            // What is read-only by the schema here is that of all its definitions.
            if (place != nullptr && place->Descriptor().type == entry.Type() &&
                (place->GetFlags() & PropertyFlags::kReadOnly) == 0)
                FillProperty(entry.Property(), *place);
        }
    }
    SetText(made, fixed_property::kBaseSchema, AsSchemaDefinition(made.Base())->Id());
    SetText(made, fixed_property::kAssetLibId, target_.Identifier());
}

void AssetCopier::FillProperty(const PropertyBase& source, PropertyBase& made) {
    CopyValue(source, made);
    made.SetMarked(source.IsMarked());
    made.ClearConnections();
    for (std::uint64_t at = 0; at < source.GetConnectedAssetCount(); ++at)
        if (PropertyTableImp* connected = source.ConnectedTable(at))
            made.AppendConnection(*Counterpart(*connected));
}

// A record that is stored onto itself keeps all but what became a record along with it.
void AssetCopier::Relink(PropertyTableImp& table) {
    for (const std::size_t group : kStoredGroups)
        for (const PropertyGroup::Entry& entry : table.Group(group))
            RelinkProperty(entry.Property());
}

void AssetCopier::RelinkProperty(PropertyBase& property) {
    for (std::uint64_t at = 0; at < property.GetConnectedAssetCount(); ++at) {
        AssetConnection& connection = property.ConnectionAt(at);
        PropertyTableImp* const stored = connection.data ? Counterpart(*connection.data) : nullptr;
        if (stored == connection.data.get()) continue;
        connection.link = stored->GetQualifiedName();
        connection.data = stored;
    }
}

PropertyTableImp* AssetCopier::Counterpart(PropertyTableImp& connected) const {
    const auto copy = copies_.find(&connected);
    return copy != copies_.end() ? copy->second : &connected;
}

}  // namespace korvanet::platform::assets
