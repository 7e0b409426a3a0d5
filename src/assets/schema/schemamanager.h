#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <vector>

#include <korvanet/platform/core/idatareader.h>

#include "assets/property/intrusive.h"
#include "assets/property/modulecontext.h"
#include "assets/schema/ischemaset.h"
#include "assets/schema/schemadefinition.h"
#include "nuo/common/buffer.h"
#include "nuo/common/iarchive.h"
#include "nuo/common/string.h"
#include "velmor/namespace.h"

namespace korvanet::platform::assets {

/** Where a schema manager takes a base from that it does not have itself. */
enum class SchemaScope {
    /** From nowhere: this is the global set. Its root schema is tested when it enters. */
    kGlobal,
    /** From the global set, but for bases that the library has a file of: these are waited for. */
    kLibrary,
    /** From the global set at once. */
    kBatch,
};

/**
 * How many properties all schemas of one library or batch may inherit together. Each schema holds a
 * copy of all properties of its base, so that some thousand files of a hundred bytes below one
 * large base would fill the memory. Chosen: a set of five hundred schemas that inherit a hundred
 * properties each stays below a fifth of it, and at the bound the copies take less than a hundred
 * megabytes.
 */
inline constexpr std::uint64_t kMaxInheritedProperties = 1u << 18;

/**
 * A set of schemas in a namespace, and the loading of schema files into it. Files come in any
 * order: a schema whose base is missing is pending, outside the namespace, until the base enters
 * the set, be it by a file or by a call. One whose id another schema has taken by then never
 * enters.
 *
 * Results are borrowed: schemas belong to the namespace, pending ones to the manager.
 */
class SchemaManager {
public:
    using SchemaPtr = intrusive_ptr<KRVTSchemaDefinition>;

    /** `set` and `library` may be null; a library's manager passes itself on to its schemas. */
    SchemaManager(const ModuleContext& context, velmor::Namespace schemas, SchemaScope scope,
                  ISchemaSet* set, const ISchemaLibrary* library = nullptr);
    SchemaManager(const SchemaManager&) = delete;
    SchemaManager& operator=(const SchemaManager&) = delete;
    /** Drops what is pending. The schemas of the namespace stay. */
    ~SchemaManager();

    velmor::Namespace Schemas() const { return schemas_; }

    /**
     * Reads one schema from the start of the source. Null when there is none to read, it is
     * malformed, has no id or no base, or is a root schema that the global set refuses. An id that
     * is loaded already gives the schema loaded first and the warning "Try to load a loaded
     * schema.". The result may still be pending. Raises `schema_too_large` when the set would
     * inherit more than kMaxInheritedProperties with this schema. One that waited for it and finds
     * no such room stays pending.
     */
    KRVTSchemaDefinition* LoadSchema(core::IDataReader* source);
    KRVTSchemaDefinition* LoadSchema(nuo::archive::iarchive& source);
    KRVTSchemaDefinition* LoadFromFile(const nuo::string& path);
    /**
     * Reads the file `id` and ".xml" of the folder, and from there the files of the bases that are
     * not known. Null when the schema can't be read or one of its bases is missing.
     */
    KRVTSchemaDefinition* LoadFromFolder(const nuo::string& folder, const nuo::string& id);

    /**
     * What a reader of this text makes of it below `base`, which may be null: a schema that stands
     * in no set. Null when there is none to read.
     */
    SchemaPtr ReadAlone(nuo::archive::iarchive& source, KRVTSchemaDefinition* base) const;

    /** Ids of the files that are going to be loaded; see SchemaScope::kLibrary. */
    void ExpectFiles(std::vector<nuo::string> ids);

    /**
     * Finishes the pending schemas whose bases can be found by now. Raises `schema_too_large`, when
     * all others are finished, if one of them finds no room.
     */
    void RetryPending();
    bool HasPending() const { return !pending_.empty(); }
    bool IsPending(nuo::string_ref id) const;

    /** Schemas of the namespace, in the order of their ids; null past the end. */
    std::uint64_t GetSchemaCount() const;
    KRVTSchemaDefinition* GetSchema(std::uint64_t index) const;
    /** Looks in the namespace, then in the global set. */
    KRVTSchemaDefinition* Find(nuo::string_ref id) const;
    /** Looks in the namespace alone. */
    KRVTSchemaDefinition* FindOwn(nuo::string_ref id) const;
    bool IsOwn(const KRVTSchemaDefinition& schema) const;

    /**
     * The schema of that id, or a new one. Without a base a new one gets "CommonSchema". Null when
     * the id is empty, the base is not in this set, its asset type is another, the set inherits too
     * much already, or the global set refuses an empty root schema.
     */
    KRVTSchemaDefinition* CreateSchema(const nuo::string& id, const nuo::string& assetType,
                                       const KRVTSchemaDefinition* base);

    /**
     * Gives a schema of a batch or a library a twin in this set, its bases first, or merges it into
     * the one that is here. False when one of them is refused; those before it stay.
     */
    bool AddSchema(KRVTSchemaDefinition* schema);
    /** Of the schemas that one run has met, whether they were added. */
    using Added = std::map<const KRVTSchemaDefinition*, bool>;
    /** The same for one of many: none is added twice, however many have it for a base. */
    bool AddSchema(KRVTSchemaDefinition* schema, Added& met);

    /** Counts one more schema below `base`, made elsewhere; false when there is no room for it. */
    bool ReserveBelow(const KRVTSchemaDefinition& base);

    /** Destroys all schemas, pending ones too. */
    void Clear();

private:
    SchemaPtr MakeSchema(const nuo::string& id) const;
    SchemaPtr Parse(nuo::archive::iarchive& source) const;
    KRVTSchemaDefinition* Loaded(nuo::string_ref id) const;
    KRVTSchemaDefinition* Register(const SchemaPtr& schema);
    KRVTSchemaDefinition* RegisterRoot(const SchemaPtr& schema);
    KRVTSchemaDefinition* FindBase(nuo::string_ref id) const;
    void Wait(const SchemaPtr& schema, const nuo::string& base);
    bool HasRoomBelow(const KRVTSchemaDefinition& base) const;
    void Inherit(KRVTSchemaDefinition& schema, KRVTSchemaDefinition& base);
    void Finish(KRVTSchemaDefinition& schema, KRVTSchemaDefinition& base);
    void FinishWaiting(const nuo::string& base);
    void FinishBelow(KRVTSchemaDefinition& base, std::vector<nuo::string>& arrived);
    bool FinishPending(KRVTSchemaDefinition& schema, KRVTSchemaDefinition& base);
    void Enter(KRVTSchemaDefinition& schema);
    KRVTSchemaDefinition* MakeUnder(const nuo::string& id, const nuo::string& assetType,
                                    KRVTSchemaDefinition* base);
    bool AddOne(KRVTSchemaDefinition& schema);
    bool AddNew(KRVTSchemaDefinition& schema);

    const ModuleContext& context_;
    velmor::Namespace schemas_;
    SchemaScope scope_;
    ISchemaSet* set_;
    const ISchemaLibrary* library_;
    std::map<nuo::string, SchemaPtr, nuo::string_less> pending_;
    /** Schemas that were pending when others of their ids entered the set. */
    std::vector<SchemaPtr> superseded_;
    /** Pending schemas by the id of the base that they wait for. */
    std::multimap<nuo::string, KRVTSchemaDefinition*, nuo::string_less> waiting_;
    std::set<nuo::string, nuo::string_less> expected_;
    /** How many properties the schemas of the set have taken from their bases. */
    std::uint64_t inherited_ = 0;
};

}  // namespace korvanet::platform::assets
