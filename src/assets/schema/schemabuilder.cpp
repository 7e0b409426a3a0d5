#include "assets/schema/schemabuilder.h"

#include "assets/manager/base/report.h"
#include "assets/property/fixedproperties.h"
#include "assets/property/property.h"
#include "assets/property/units.h"
#include "assets/schema/ischemaset.h"
#include "assets/schema/propertyflags.h"
#include "assets/schema/schemadefinition.h"
#include "assets/schema/schemagrammar.h"
#include "assets/schema/schemapropertyrecord.h"
#include "assets/schema/valuebuilders.h"

namespace korvanet::platform::assets {
namespace {

namespace element = grammar::element;
using namespace PropertyFlags;
using Record = SchemaPropertyRecord;
using Schema = KRVTSchemaDefinition;

void ReportBadName(nuo::string_ref lead, nuo::string_ref val, nuo::string_ref directive) {
    HalvernError(lead, val, ", not a valid name in property '", directive, "'").Deliver();
}

bool NamesOne(const Record& record) {
    return record.values.size() == 1 && !record.values.front().empty();
}

PropertyBase* SetId(Schema& schema, Record& record) {
    if (!NamesOne(record)) {
        // No blank behind "is", unlike the text for "Base"; kept on purpose.
        ReportBadName("'val' attribute is", record.val, element::kUid);
    } else if (!schema.Id().empty()) {
        HalvernError("'UID' property is redefined.").Deliver();
    } else {
        schema.SetName(record.values.front());
    }
    return nullptr;
}

PropertyBase* AddSecondName(Schema& schema, Record& record) {
    schema.AddAlias(record.alias, record.id);
    return nullptr;
}

struct BuilderRow {
    nuo::string_ref element;
    PropertyBase* (*build)(Schema& schema, Record& record);
};

constexpr BuilderRow kBuilders[] = {
    {element::kUid, SetId},
    {element::kString, value_builders::String},
    {element::kType, value_builders::NeededString},
    {element::kLocalType, value_builders::NeededString},
    {element::kLocalName, value_builders::NeededString},
    {element::kDateTime, value_builders::DateTime},
    {element::kBinary, value_builders::Binary},
    {element::kUuid, value_builders::Uuid},
    {element::kUrl, value_builders::Uri},
    {element::kTextureUri, value_builders::Uri},
    {element::kUi, value_builders::Uri},
    {element::kImplementation, value_builders::Uri},
    {element::kBoolean, value_builders::Boolean},
    {element::kInteger, value_builders::Integer},
    {element::kFloat, value_builders::Float},
    {element::kDistance, value_builders::Float},
    {element::kChoice, value_builders::Choice},
    {element::kColor, value_builders::Color},
    {element::kReference, value_builders::Reference},
    {element::kPropertyAlias, AddSecondName},
    {element::kVector3, value_builders::Vector3},
};

bool PassesTests(const Schema& schema, const Record& record) {
    if (record.id.empty() || schema.FindByNameOrAlias(record.id) != nullptr) return false;
    const std::uint32_t code = CheckPropertyFlags(record.kind, record.flags);
    if (code != 0) WarnFlagConflict(record.id, code);
    return code == 0;
}

bool IsDirective(const Record& record) {
    return record.element == element::kUid || record.element == element::kPropertyAlias;
}

/** What the element says of the flags beyond its attributes. */
void ApplyElementFlags(Record& record) {
    if (record.element == element::kTextureUri) {
        record.flags |= kTextureURI | kAllowMultipleValues;
    } else if (record.element == element::kImplementation) {
        record.flags = kImplementation | kReadOnly;
    } else if (record.element == element::kUi) {
        record.flags = kUIDefinition | kReadOnly;
    } else if (record.element == element::kDistance) {
        record.flags |= kUnits;
    } else if (record.element == element::kVector3) {
        record.flags &= ~kAllowMultipleValues;
    } else if (record.element == element::kType ||
               (record.element == element::kString && record.id == fixed_property::kAssetType)) {
        record.flags = kReadOnly;
    }
}

void NormalizeFlags(Record& record) {
    if ((record.flags & kPublic) != 0 && record.label.empty()) record.label = record.id;
    if (record.fromXml) ApplyElementFlags(record);
    if (IsLengthWord(record.unit)) record.flags |= kUnits;
}

PropertyBase* Build(Schema& schema, Record& record) {
    for (const BuilderRow& row : kBuilders) {
        if (record.element == row.element) return row.build(schema, record);
    }
    HalvernWarn("Unknown Property name.").Deliver();
    return nullptr;
}

/** Tables that were made from the schema before gain the property too. */
void TellTables(Schema& schema, const PropertyBase& property) {
    schema.SetRegistered(true);
    ISchemaSet* set = schema.Set();
    if (set != nullptr && set->FindGlobalSchema(schema.Id()) == &schema) {
        set->PropertyAdded(schema, property);
    }
}

}  // namespace

PropertyBase* AddProperty(KRVTSchemaDefinition& schema, SchemaPropertyRecord& record) {
    if (!PassesTests(schema, record) && !IsDirective(record)) return nullptr;
    NormalizeFlags(record);
    PropertyBase* property = Build(schema, record);
    if (property != nullptr && !record.fromXml) TellTables(schema, *property);
    return property;
}

void AddBaseSchema(KRVTSchemaDefinition& schema, SchemaPropertyRecord& record) {
    if (!NamesOne(record)) {
        ReportBadName("'val' attribute is ", record.val, element::kBase);
    } else if (!schema.BaseId().empty()) {
        HalvernError(record.id, " property is redefined.").Deliver();
    } else {
        record.id = nuo::string(fixed_property::kBaseSchema);
        record.flags = kDefinitionIteratorData;
        value_builders::String(schema, record);
    }
}

bool CheckPropertyName(const KRVTSchemaDefinition& schema, const nuo::string& id) {
    if (id.empty()) {
        HalvernWarn("Empty id name").Deliver();
        return false;
    }
    if (schema.FindByNameOrAlias(id) != nullptr) {
        HalvernWarn("Duplicated property name ", id).Deliver();
        return false;
    }
    return true;
}

}  // namespace korvanet::platform::assets
