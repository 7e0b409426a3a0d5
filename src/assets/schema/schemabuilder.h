#pragma once

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

class KRVTSchemaDefinition;
class PropertyBase;
struct SchemaPropertyRecord;

/**
 * Makes the property that the record tells and adds it to the schema, or carries out the directive
 * that the element stands for.
 *
 * Null when nothing was made: silently for an empty or taken id, for a default that breaks the
 * limits or choices, and for directives; with a warning for flags that conflict ("Property flags
 * conflict in Node: %s, ErrorCode: %d") and for an element without a builder ("Unknown Property
 * name."); with an error for a directive that is wrong. The record is changed on the way.
 */
PropertyBase* AddProperty(KRVTSchemaDefinition& schema, SchemaPropertyRecord& record);

/**
 * The directive "Base": notes the id of the base as the property "BaseSchema". An id that is not
 * exactly one text, or a second base, is an error and is left out.
 */
void AddBaseSchema(KRVTSchemaDefinition& schema, SchemaPropertyRecord& record);

/**
 * Whether a property of that name could be added. Reports "Empty id name", or "Duplicated property
 * name " and the id, as warnings.
 */
bool CheckPropertyName(const KRVTSchemaDefinition& schema, const nuo::string& id);

}  // namespace korvanet::platform::assets
