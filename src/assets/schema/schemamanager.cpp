#include "assets/schema/schemamanager.h"

#include <iterator>
#include <utility>

#include "assets/property/fixedproperties.h"
#include "assets/property/halvernasset.h"
#include "assets/schema/propertyflags.h"
#include "assets/schema/schemabuilder.h"
#include "assets/schema/schemagrammar.h"
#include "assets/schema/schemainheritance.h"
#include "assets/schema/schemamerge.h"
#include "assets/schema/schemapropertyrecord.h"
#include "velmor/runtime.h"

namespace korvanet::platform::assets {
namespace {

KRVTSchemaDefinition* SchemaIn(velmor::Object object) {
    if (!object.valid()) return nullptr;
    return static_cast<KRVTSchemaDefinition*>(static_cast<HalvernAsset*>(object.data())->table);
}

std::uint64_t PropertyCount(const KRVTSchemaDefinition& schema) {
    std::uint64_t count = 0;
    for (std::size_t group = 0; group < PropertyTableImp::kGroupCount; ++group) {
        count += schema.Group(group).Size();
    }
    return count;
}

/** Sets the property "BaseSchema", or adds it. */
void SetBaseId(KRVTSchemaDefinition& schema, const nuo::string& base) {
    SchemaPropertyRecord record;
    record.fromXml = true;
    record.element = nuo::string(grammar::element::kBase);
    record.values.assign(1, base);
    AddBaseSchema(schema, record);
}

bool SetAssetType(KRVTSchemaDefinition& schema, const nuo::string& assetType) {
    SchemaPropertyRecord record;
    record.element = nuo::string(grammar::element::kString);
    record.kind = PropertyType::kString;
    record.id = nuo::string(fixed_property::kAssetType);
    record.label = record.id;
    record.flags = PropertyFlags::kReadOnly;
    record.values.assign(1, assetType);
    return AddProperty(schema, record) != nullptr;
}

}  // namespace

SchemaManager::SchemaManager(const ModuleContext& context, velmor::Namespace schemas,
                             SchemaScope scope, ISchemaSet* set, const ISchemaLibrary* library)
    : context_(context), schemas_(schemas), scope_(scope), set_(set), library_(library) {}

SchemaManager::~SchemaManager() = default;

bool SchemaManager::IsPending(nuo::string_ref id) const {
    return pending_.find(id) != pending_.end();
}

std::uint64_t SchemaManager::GetSchemaCount() const {
    return schemas_.imp()->objects.size();
}

KRVTSchemaDefinition* SchemaManager::GetSchema(std::uint64_t index) const {
    const auto& objects = schemas_.imp()->objects;
    if (index >= objects.size()) return nullptr;
    return SchemaIn(std::next(objects.begin(), static_cast<std::ptrdiff_t>(index))->second);
}

KRVTSchemaDefinition* SchemaManager::Find(nuo::string_ref id) const {
    if (KRVTSchemaDefinition* own = FindOwn(id)) return own;
    return scope_ != SchemaScope::kGlobal && set_ != nullptr ? set_->FindGlobalSchema(id) : nullptr;
}

KRVTSchemaDefinition* SchemaManager::FindOwn(nuo::string_ref id) const {
    return SchemaIn(schemas_.findObject(id).value);
}

bool SchemaManager::IsOwn(const KRVTSchemaDefinition& schema) const {
    return schema.Registry() == schemas_;
}

KRVTSchemaDefinition* SchemaManager::CreateSchema(const nuo::string& id,
                                                  const nuo::string& assetType,
                                                  const KRVTSchemaDefinition* base) {
    if (id.empty()) return nullptr;
    if (KRVTSchemaDefinition* existing = FindOwn(id)) return existing;
    const bool isRoot = id == grammar::kCommonSchema;
    // A new root schema is empty, and so has none of the properties that the global one must have.
    if (isRoot && scope_ == SchemaScope::kGlobal) return nullptr;
    KRVTSchemaDefinition* ownBase = nullptr;
    if (base != nullptr) {
        ownBase = FindOwn(base->Id());
    } else if (!isRoot) {
        ownBase = FindOwn(grammar::kCommonSchema);
    }
    if (ownBase == nullptr && (base != nullptr || !isRoot)) return nullptr;
    KRVTSchemaDefinition* made = MakeUnder(id, assetType, ownBase);
    if (made != nullptr) FinishWaiting(id);
    return made;
}

bool SchemaManager::AddSchema(KRVTSchemaDefinition* schema) {
    Added met;
    return AddSchema(schema, met);
}

bool SchemaManager::AddSchema(KRVTSchemaDefinition* schema, Added& met) {
    if (schema == nullptr) return false;
    std::vector<KRVTSchemaDefinition*> chain;
    while (schema != nullptr && !IsOwn(*schema) && !met.contains(schema)) {
        chain.push_back(schema);
        schema = schema->BaseDefinition();
    }
    const auto known = met.find(schema);
    bool added = known == met.end() || known->second;
    for (; !chain.empty(); chain.pop_back()) {
        added = added && AddOne(*chain.back());
        met.emplace(chain.back(), added);
    }
    return added;
}

void SchemaManager::Clear() {
    waiting_.clear();
    pending_.clear();
    superseded_.clear();
    inherited_ = 0;
    context_.runtime->removeObjects(schemas_);
}

SchemaManager::SchemaPtr SchemaManager::MakeSchema(const nuo::string& id) const {
    SchemaPtr schema(static_cast<KRVTSchemaDefinition*>(&MakeTable(context_, TableKind::kSchema)));
    schema->SetName(id);
    schema->SetLibrary(library_);
    schema->SetSet(set_);
    return schema;
}

void SchemaManager::Enter(KRVTSchemaDefinition& schema) {
    // Named by a copy: the name of the table itself is assigned on the way.
    const nuo::string id = schema.Id();
    schema.Enter(schemas_, id);
    schema.SetPinned(true);
    schema.SetRegistered(false);
}

KRVTSchemaDefinition* SchemaManager::MakeUnder(const nuo::string& id, const nuo::string& assetType,
                                               KRVTSchemaDefinition* base) {
    if (base != nullptr) {
        const nuo::string baseType = base->AssetType();
        if (!baseType.empty() && !(baseType == assetType)) return nullptr;
        if (!HasRoomBelow(*base)) return nullptr;
    }
    const SchemaPtr schema = MakeSchema(id);
    if (!assetType.empty() && !SetAssetType(*schema, assetType)) return nullptr;
    if (base != nullptr) {
        SetBaseId(*schema, base->Id());
        Inherit(*schema, *base);
    }
    Enter(*schema);
    return schema.get();
}

bool SchemaManager::HasRoomBelow(const KRVTSchemaDefinition& base) const {
    // The shared set grows with each library that a process opens, and each of these is bounded.
    return scope_ == SchemaScope::kGlobal ||
           inherited_ + PropertyCount(base) <= kMaxInheritedProperties;
}

bool SchemaManager::ReserveBelow(const KRVTSchemaDefinition& base) {
    if (!HasRoomBelow(base)) return false;
    inherited_ += PropertyCount(base);
    return true;
}

void SchemaManager::Inherit(KRVTSchemaDefinition& schema, KRVTSchemaDefinition& base) {
    inherited_ += PropertyCount(base);
    schema.SetBase(&base);
    InheritFrom(schema, base);
}

bool SchemaManager::AddOne(KRVTSchemaDefinition& schema) {
    if (schema.Id() == grammar::kCommonSchema && !HasRequiredProperties(schema)) return false;
    KRVTSchemaDefinition* existing = FindOwn(schema.Id());
    if (existing == nullptr) return AddNew(schema);
    const KRVTSchemaDefinition* base = schema.BaseDefinition();
    const KRVTSchemaDefinition* existingBase = existing->BaseDefinition();
    if (base != nullptr && existingBase != nullptr && !(base->Id() == existingBase->Id())) {
        return false;
    }
    return MergeInto(schema, existing).merged;
}

bool SchemaManager::AddNew(KRVTSchemaDefinition& schema) {
    KRVTSchemaDefinition* base = nullptr;
    if (schema.BaseDefinition() != nullptr) {
        base = FindOwn(schema.BaseDefinition()->Id());
    } else if (!(schema.Id() == grammar::kCommonSchema)) {
        base = FindOwn(grammar::kCommonSchema);
        if (base == nullptr) return false;
    }
    const std::uint64_t inherited = inherited_;
    KRVTSchemaDefinition* twin = MakeUnder(schema.Id(), schema.AssetType(), base);
    if (twin == nullptr) return false;
    if (!MergeInto(schema, twin).merged) {
        inherited_ = inherited;
        context_.runtime->removeObject(schemas_, schema.Id());
        return false;
    }
    twin->SetRegistered(false);
    schema.SetInconsistent(false);
    FinishWaiting(schema.Id());
    return true;
}

}  // namespace korvanet::platform::assets
