// The part of SchemaManager that reads files and waits for bases.

#include <algorithm>

#include <korvanet/platform/core/idatareader.h>

#include "assets/manager/base/guarded.h"
#include "assets/manager/base/path.h"
#include "assets/manager/base/report.h"
#include "assets/property/fixedproperties.h"
#include "assets/schema/propertydata.h"
#include "assets/schema/propertyflags.h"
#include "assets/schema/schemabuilder.h"
#include "assets/schema/schemagrammar.h"
#include "assets/schema/schemainheritance.h"
#include "assets/schema/schemamanager.h"
#include "assets/schema/schemapropertyrecord.h"
#include "assets/schema/schemaxmlreader.h"
#include "assets/serialization/io/xmlhandler.h"
#include "nuo/common/buffer_archive.h"
#include "nuo/common/file_archive.h"

namespace korvanet::platform::assets {
namespace {

/** Below this version the root schema had defaults of its own for what each asset sets itself. */
constexpr std::int32_t kVersionWithoutDefaultKeywords = 3;

/** Adds a property that a file may leave out, unless it is there: without a label, even if public.
 */
void AddMissing(KRVTSchemaDefinition& schema, nuo::string_ref element, nuo::string_ref id,
                std::uint32_t flags, std::int32_t integer = 0) {
    if (schema.FindProperty(id) != nullptr) return;
    SchemaPropertyRecord record;
    record.fromXml = true;
    record.element = nuo::string(element);
    record.kind = grammar::KindOfElement(element);
    record.id = nuo::string(id);
    record.flags = flags;
    record.integer = integer;
    record.values.assign(1, nuo::string());
    if (PropertyBase* const added = AddProperty(schema, record))
        added->Descriptor().label = nuo::string();
}

void CompleteVersion(KRVTSchemaDefinition& schema) {
    AddMissing(schema, grammar::element::kInteger, fixed_property::kSchemaVersion,
               PropertyFlags::kReadOnly, 1);
}

void ResetTexts(KRVTSchemaDefinition& schema, nuo::string_ref id) {
    PropertyBase* property = schema.FindProperty(id);
    if (property == nullptr) return;
    if (velmor::Array* list = TextList(*property)) list->resize(1);
    SetTextAt(*property, 0, nuo::string());
}

void CompleteRoot(KRVTSchemaDefinition& schema) {
    using namespace PropertyFlags;
    AddMissing(schema, grammar::element::kString, fixed_property::kAssetLibId, kPublic);
    AddMissing(schema, grammar::element::kUuid, fixed_property::kVersionGuid,
               kDefinitionIteratorData);
    AddMissing(schema, grammar::element::kString, fixed_property::kLocalType, kReadOnly | kLocal);
    AddMissing(schema, grammar::element::kString, fixed_property::kLocalName, kReadOnly | kLocal);
    if (schema.Version() < kVersionWithoutDefaultKeywords) {
        ResetTexts(schema, fixed_property::kCategory);
        ResetTexts(schema, fixed_property::kKeyword);
    }
}

/** The whole of the reader, from its start, in a buffer; false when it is none or too long. */
bool ReadAll(core::IDataReader* reader, nuo::buffer<nuo::byte>& bytes) {
    constexpr std::uint64_t kChunk = 64 << 10;
    if (reader == nullptr || !reader->IsOpen()) return false;
    reader->Seek(0, core::SeekOrigin::kBegin);
    std::uint64_t size = 0;
    for (;;) {
        bytes.resize(size + kChunk);
        const std::uint64_t count = std::min(reader->Read(bytes.begin() + size, kChunk), kChunk);
        size += count;
        if (count == 0) break;
        if (size > kMaxSchemaBytes) return false;
    }
    bytes.resize(size);
    return true;
}

/** An id that is a file name and not a path. */
bool IsFileName(const nuo::string& id) {
    return !id.empty() && !(id == ".") && !(id == "..") &&
           std::none_of(id.begin(), id.end(), [](char c) { return c == '/' || c == '\\'; });
}

nuo::string FileOf(const nuo::string& folder, const nuo::string& id) {
    return AppendPath(folder, nuo::string(id, ".xml"));
}

[[noreturn]] void RaiseNoRoom() {
    NUO_RAISE(schema_too_large, "The schemas inherit too much.");
}

}  // namespace

KRVTSchemaDefinition* SchemaManager::LoadSchema(core::IDataReader* source) {
    nuo::buffer<nuo::byte> bytes;
    if (!ReadAll(source, bytes)) return nullptr;
    nuo::archive::buffer_in archive(bytes);
    return LoadSchema(archive);
}

KRVTSchemaDefinition* SchemaManager::LoadSchema(nuo::archive::iarchive& source) {
    const SchemaPtr schema = Parse(source);
    if (!schema || schema->Id().empty()) return nullptr;
    if (KRVTSchemaDefinition* loaded = Loaded(schema->Id())) {
        HalvernWarn("Try to load a loaded schema.").Deliver();
        return loaded;
    }
    CompleteVersion(*schema);
    return schema->Id() == grammar::kCommonSchema ? RegisterRoot(schema) : Register(schema);
}

KRVTSchemaDefinition* SchemaManager::LoadFromFile(const nuo::string& path) {
    // A file that can't be read is one without a schema.
    return Guarded(nullptr, [&]() -> KRVTSchemaDefinition* {
        nuo::archive::file_read_archive file(path);
        return LoadSchema(file);
    });
}

KRVTSchemaDefinition* SchemaManager::LoadFromFolder(const nuo::string& folder,
                                                    const nuo::string& id) {
    if (!IsFileName(id)) return nullptr;
    KRVTSchemaDefinition* schema = LoadFromFile(FileOf(folder, id));
    if (schema == nullptr) return nullptr;
    std::set<nuo::string, nuo::string_less> tried;
    nuo::string base = schema->BaseId();
    while (IsFileName(base) && FindBase(base) == nullptr && !IsPending(base) &&
           tried.insert(base).second) {
        const KRVTSchemaDefinition* loaded = LoadFromFile(FileOf(folder, base));
        if (loaded == nullptr) break;
        base = loaded->BaseId();
    }
    return IsPending(schema->Id()) ? nullptr : schema;
}

SchemaManager::SchemaPtr SchemaManager::ReadAlone(nuo::archive::iarchive& source,
                                                  KRVTSchemaDefinition* base) const {
    const SchemaPtr schema = Parse(source);
    if (!schema) return schema;
    CompleteVersion(*schema);
    if (schema->Id() == grammar::kCommonSchema) {
        CompleteRoot(*schema);
    } else if (base != nullptr) {
        schema->SetBase(base);
        InheritFrom(*schema, *base);
    }
    return schema;
}

void SchemaManager::ExpectFiles(std::vector<nuo::string> ids) {
    expected_ = std::set<nuo::string, nuo::string_less>(ids.begin(), ids.end());
}

void SchemaManager::RetryPending() {
    std::set<nuo::string, nuo::string_less> bases;
    for (const auto& [base, schema] : waiting_)
        bases.insert(base);
    for (const nuo::string& base : bases)
        FinishWaiting(base);
    for (const auto& [base, schema] : waiting_)
        if (FindBase(base) != nullptr) RaiseNoRoom();
}

SchemaManager::SchemaPtr SchemaManager::Parse(nuo::archive::iarchive& source) const {
    nuo::archive::random* extent = source.query_random();
    if (extent == nullptr || extent->size() > kMaxSchemaBytes) return SchemaPtr();
    const SchemaPtr schema = MakeSchema(nuo::string());
    SchemaManagerXmlData reader(*schema);
    XmlDriverState driver(reader);
    // Malformed, too large or unreadable: there is no schema, and a batch may go on.
    return Guarded(false, [&] { return ParseXml(driver, source); }) ? schema : SchemaPtr();
}

KRVTSchemaDefinition* SchemaManager::Loaded(nuo::string_ref id) const {
    if (KRVTSchemaDefinition* own = FindOwn(id)) return own;
    const auto found = pending_.find(id);
    return found != pending_.end() ? found->second.get() : nullptr;
}

KRVTSchemaDefinition* SchemaManager::Register(const SchemaPtr& schema) {
    const nuo::string baseId = schema->BaseId();
    if (baseId.empty()) return nullptr;
    if (KRVTSchemaDefinition* base = FindBase(baseId)) {
        Finish(*schema, *base);
        FinishWaiting(schema->Id());
    } else {
        Wait(schema, baseId);
    }
    return schema.get();
}

KRVTSchemaDefinition* SchemaManager::RegisterRoot(const SchemaPtr& schema) {
    CompleteRoot(*schema);
    if (scope_ == SchemaScope::kGlobal && !HasRequiredProperties(*schema)) return nullptr;
    Enter(*schema);
    FinishWaiting(schema->Id());
    return schema.get();
}

KRVTSchemaDefinition* SchemaManager::FindBase(nuo::string_ref id) const {
    if (KRVTSchemaDefinition* own = FindOwn(id)) return own;
    return expected_.find(id) != expected_.end() ? nullptr : Find(id);
}

void SchemaManager::Wait(const SchemaPtr& schema, const nuo::string& base) {
    pending_.emplace(schema->Id(), schema);
    waiting_.emplace(base, schema.get());
}

void SchemaManager::Finish(KRVTSchemaDefinition& schema, KRVTSchemaDefinition& base) {
    if (!HasRoomBelow(base)) RaiseNoRoom();
    Inherit(schema, base);
    Enter(schema);
}

/** Finishes those that wait for the base, those that wait for these, and so on. */
void SchemaManager::FinishWaiting(const nuo::string& base) {
    std::vector<nuo::string> arrived(1, base);
    while (!arrived.empty()) {
        KRVTSchemaDefinition* const found = FindBase(arrived.back());
        arrived.pop_back();
        if (found != nullptr) FinishBelow(*found, arrived);
    }
}

/** Adds the ids of those that were finished. One that finds no room stays among those that wait. */
void SchemaManager::FinishBelow(KRVTSchemaDefinition& base, std::vector<nuo::string>& arrived) {
    const nuo::string id = base.Id();
    for (auto at = waiting_.lower_bound(id); at != waiting_.end() && at->first == id;) {
        KRVTSchemaDefinition& schema = *at->second;
        if (FindOwn(schema.Id()) == nullptr && !HasRoomBelow(base)) {
            ++at;
            continue;
        }
        if (FinishPending(schema, base)) arrived.push_back(schema.Id());
        at = waiting_.erase(at);
    }
}

/** False when a schema of its id has come in the meantime, which then stands for it. */
bool SchemaManager::FinishPending(KRVTSchemaDefinition& schema, KRVTSchemaDefinition& base) {
    const auto held = pending_.find(schema.Id());
    const bool first = FindOwn(schema.Id()) == nullptr;
    if (first) {
        Finish(schema, base);
    } else {
        // A host may hold it still.
        superseded_.push_back(held->second);
    }
    pending_.erase(held);
    return first;
}

}  // namespace korvanet::platform::assets
