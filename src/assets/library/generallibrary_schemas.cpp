// How schemas come into a library, and into its parts.

#include <algorithm>
#include <map>

#include "assets/library/generallibrary.h"
#include "assets/library/libraryparts.h"
#include "assets/library/schemapart.h"
#include "assets/schema/schemadefinition.h"
#include "assets/schema/schemainheritance.h"
#include "assets/schema/schemamanager.h"
#include "assets/schema/schemamerge.h"
#include "assets/schema/schemaxmlwriter.h"
#include "velmor/vfs/vfs_functions.h"

namespace korvanet::platform::assets {

namespace fs = velmor::fs;

namespace {

using Depths = std::map<const KRVTSchemaDefinition*, int>;

// Notes how many bases a schema has, and how many each of these.
void NoteDepth(const KRVTSchemaDefinition* schema, Depths& depths) {
    std::vector<const KRVTSchemaDefinition*> chain;
    for (; schema != nullptr && !depths.contains(schema); schema = schema->BaseDefinition())
        chain.push_back(schema);
    int depth = schema != nullptr ? depths[schema] + 1 : 0;
    for (; !chain.empty(); chain.pop_back())
        depths[chain.back()] = depth++;
}

// Bases before those that derive from them.
void SortByDepth(std::vector<KRVTSchemaDefinition*>& schemas) {
    Depths depths;
    for (const KRVTSchemaDefinition* schema : schemas)
        NoteDepth(schema, depths);
    std::stable_sort(schemas.begin(), schemas.end(), [&depths](const auto* a, const auto* b) {
        return depths.find(a)->second < depths.find(b)->second;
    });
}

// Copies of the schemas of a library, bases first, that derive from each other as these do.
class SchemaCopies {
public:
    explicit SchemaCopies(const std::vector<KRVTSchemaDefinition*>& schemas) {
        std::map<const KRVTSchemaDefinition*, KRVTSchemaDefinition*> copy_of;
        for (const KRVTSchemaDefinition* schema : schemas) {
            const intrusive_ptr<KRVTSchemaDefinition>& copy =
                held_.emplace_back(CopySchema(*schema));
            copy->SetInconsistent(schema->IsInconsistent());
            const auto base = copy_of.find(schema->BaseDefinition());
            if (base != copy_of.end()) copy->SetBase(base->second);
            copy_of.emplace(schema, copy.get());
            all_.push_back(copy.get());
        }
    }

    const std::vector<KRVTSchemaDefinition*>& All() const { return all_; }

private:
    std::vector<intrusive_ptr<KRVTSchemaDefinition>> held_;
    std::vector<KRVTSchemaDefinition*> all_;
};

bool MergeNewer(KRVTSchemaDefinition& shared, KRVTSchemaDefinition& schema) {
    if (schema.BaseDefinition() == nullptr || schema.IsInconsistent()) return true;
    if (shared.Version() <= schema.Version() || !MergesClean(shared, schema)) return true;
    return MergeInto(shared, &schema, VersionPolicy::kWithChange).merged;
}

// Brings newer schemas of the shared set in, and each schema that derives from a changed one along
// with it, as a reader of the saved files would make them. Bases stand before what derives from
// them.
bool MergeSchemas(const std::vector<KRVTSchemaDefinition*>& schemas,
                  const std::vector<KRVTSchemaDefinition*>& shared) {
    std::map<nuo::string, KRVTSchemaDefinition*, nuo::string_less> twins;
    for (KRVTSchemaDefinition* twin : shared)
        twins.emplace(twin->Id(), twin);
    for (KRVTSchemaDefinition* schema : schemas) {
        const auto twin = twins.find(schema->Id());
        if (twin != twins.end() && !MergeNewer(*twin->second, *schema)) return false;
        if (const KRVTSchemaDefinition* base = schema->BaseDefinition())
            InheritFrom(*schema, *base);
    }
    return true;
}

}  // namespace

// As a save makes it, which takes in what the base has here.
bool GeneralLibrary::CouldBeSaved(const KRVTSchemaDefinition& schema) const {
    const intrusive_ptr<KRVTSchemaDefinition> saved = CopySchema(schema);
    if (const KRVTSchemaDefinition* base = schema.BaseDefinition()) InheritFrom(*saved, *base);
    const nuo::string text = WriteSchemaXml(*saved);
    return IsReadableSchema(text) && KeepsItsShape(*schemas_, *saved, text);
}

// A chain of bases may be far longer than calls can be nested.
KRVTSchemaDefinition* GeneralLibrary::EnsureSchema(KRVTSchemaDefinition& schema) {
    std::vector<KRVTSchemaDefinition*> strangers;
    KRVTSchemaDefinition* own = &schema;
    for (; own != nullptr && !schemas_->IsOwn(*own); own = own->BaseDefinition())
        strangers.push_back(own);
    for (; !strangers.empty(); strangers.pop_back()) {
        own = EnsureBelow(own, *strangers.back());
        if (own == nullptr) return nullptr;
    }
    return own;
}

KRVTSchemaDefinition* GeneralLibrary::EnsureBelow(KRVTSchemaDefinition* base,
                                                  KRVTSchemaDefinition& schema) {
    if (KRVTSchemaDefinition* const own = schemas_->FindOwn(schema.Id())) return own;
    // A schema that waits for its base has none of its properties yet, and keeps its name.
    if (base == nullptr && !schema.BaseId().empty()) return nullptr;
    if (schemas_->IsPending(schema.Id())) return nullptr;
    // Nor is one taken that the library could not be saved with.
    if (!CanNameSchemaPart(schema.Id()) ||
        !MayBeWritten(schema_parts_.PartFor(schema.Id()), schema.Id()))
        return nullptr;
    const intrusive_ptr<KRVTSchemaDefinition> copy = CopySchema(schema);
    copy->SetBase(base);
    if (!CouldBeSaved(*copy)) return nullptr;
    if (base != nullptr && !schemas_->ReserveBelow(*base)) return nullptr;
    copy->SetLibrary(this);
    copy->SetSet(&host_.Schemas());
    const nuo::string id = schema.Id();
    copy->Enter(namespaces_.schema, id);
    copy->SetPinned(true);
    // Records may have been read by it before it was the library's own.
    layouts_.emplace(id, RecordLayout(*copy));
    return copy.get();
}

// False, with nothing changed, when a schema can't be told or its part would be written over
// another's: no reader would find what is stored by its layout. Copies are merged first, on both
// sides, for a merge may change its source too.
bool GeneralLibrary::BringSchemasUpToDate(SchemaTexts& texts) {
    std::vector<KRVTSchemaDefinition*> schemas = OwnSchemas();
    std::vector<KRVTSchemaDefinition*> shared;
    for (const KRVTSchemaDefinition* schema : schemas)
        if (auto* const twin = host_.Schemas().FindGlobalSchema(schema->Id()))
            shared.push_back(twin);
    SortByDepth(schemas);
    SortByDepth(shared);
    const SchemaCopies told(schemas);
    const SchemaCopies sources(shared);
    return MergeSchemas(told.All(), sources.All()) && TellSchemas(told.All(), texts) &&
           MergeSchemas(schemas, shared);
}

bool GeneralLibrary::TellSchemas(const std::vector<KRVTSchemaDefinition*>& schemas,
                                 SchemaTexts& texts) const {
    for (const KRVTSchemaDefinition* schema : schemas) {
        SchemaText told{schema->Id(), schema_parts_.PartFor(schema->Id()), WriteSchemaXml(*schema)};
        if (!MayBeWritten(told.part, told.id) || !IsReadableSchema(told.text) ||
            !KeepsItsShape(*schemas_, *schema, told.text))
            return false;
        texts.push_back(std::move(told));
    }
    return true;
}

// A part is another's when that one still waits for its base, and so is in its file alone, or will
// be written to it too.
bool GeneralLibrary::MayBeWritten(const nuo::string& part, const nuo::string& id) const {
    const nuo::string* const owner = schema_parts_.SchemaOf(part);
    if (owner == nullptr || *owner == id) return true;
    return schemas_->FindOwn(*owner) != nullptr && !(schema_parts_.PartFor(*owner) == part);
}

// A schema has one part: of several the next reader would take the first, and with it an old form.
// All are written before any goes, for what one schema leaves may be what another takes.
void GeneralLibrary::WriteSchemas(const SchemaTexts& texts) {
    const nuo::string folder = Path(kSchemasFolder);
    for (const SchemaText& told : texts) {
        WritePart(fs::joinPath(folder, told.part), {told.text.data(), told.text.size()});
        schema_parts_.Add(told.id, told.part);
    }
    for (const SchemaText& told : texts)
        for (const nuo::string& part : schema_parts_.Others(told.part))
            RemoveSchemaPart(part);
}

// A part that stays, stays known: the next save removes it.
void GeneralLibrary::RemoveSchemaPart(const nuo::string& part) {
    const nuo::string path = fs::joinPath(Path(kSchemasFolder), part);
    if (package_.remove(path) != fs::er_ok && package_.state(path).state != fs::state_not_found)
        NUO_RAISE(JpkFsErr, path);
    schema_parts_.Remove(part);
}

}  // namespace korvanet::platform::assets
