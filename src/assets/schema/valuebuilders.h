#pragma once

namespace korvanet::platform::assets {

class KRVTSchemaDefinition;
class PropertyBase;
struct SchemaPropertyRecord;

/**
 * One function for each way to make a value from a record. Each adds the property to the schema and
 * returns it; null when the record allows none.
 */
namespace value_builders {

PropertyBase* String(KRVTSchemaDefinition& schema, SchemaPropertyRecord& record);
PropertyBase* NeededString(KRVTSchemaDefinition& schema, SchemaPropertyRecord& record);
PropertyBase* DateTime(KRVTSchemaDefinition& schema, SchemaPropertyRecord& record);
PropertyBase* Binary(KRVTSchemaDefinition& schema, SchemaPropertyRecord& record);
PropertyBase* Uuid(KRVTSchemaDefinition& schema, SchemaPropertyRecord& record);
PropertyBase* Uri(KRVTSchemaDefinition& schema, SchemaPropertyRecord& record);
PropertyBase* Boolean(KRVTSchemaDefinition& schema, SchemaPropertyRecord& record);
PropertyBase* Integer(KRVTSchemaDefinition& schema, SchemaPropertyRecord& record);
PropertyBase* Float(KRVTSchemaDefinition& schema, SchemaPropertyRecord& record);
PropertyBase* Choice(KRVTSchemaDefinition& schema, SchemaPropertyRecord& record);
PropertyBase* Color(KRVTSchemaDefinition& schema, SchemaPropertyRecord& record);
PropertyBase* Vector3(KRVTSchemaDefinition& schema, SchemaPropertyRecord& record);
PropertyBase* Reference(KRVTSchemaDefinition& schema, SchemaPropertyRecord& record);

}  // namespace value_builders
}  // namespace korvanet::platform::assets
