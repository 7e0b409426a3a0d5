#pragma once

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

class KRVTSchemaDefinition;
class SchemaManager;

// Whether the part of a schema can be named after its id: the name stays in its folder, is none of
// the package's own and fits into a ZIP.
bool CanNameSchemaPart(nuo::string_ref id);

// Whether a reader takes the text of a schema file; not when it is empty, since then the schema
// holds something that no file can.
bool IsReadableSchema(nuo::string_ref text);

// Whether a reader of the text, which was written of the schema, takes records by the same layout.
// Not when the text names another base or leaves a property out: one whose flags do not fit its
// kind, which inheriting can bring about, or whose default has come to lie outside of its limits.
bool KeepsItsShape(const SchemaManager& schemas, const KRVTSchemaDefinition& schema,
                   nuo::string_ref text);

}  // namespace korvanet::platform::assets
