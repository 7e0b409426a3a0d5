#pragma once

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

class KRVTSchemaDefinition;

// Whether the part of a schema can be named after its id: the name stays in its folder, is none of
// the package's own and fits into a ZIP.
bool CanNameSchemaPart(nuo::string_ref id);

// Whether a reader takes the text of a schema file; not when it is empty, since then the schema
// holds something that no file can.
bool IsReadableSchema(nuo::string_ref text);

// Whether a file of the schema tells all of its properties; one whose flags do not fit its kind,
// which inheriting can bring about, is left out, and records would be read by another layout.
bool KeepsItsShape(const KRVTSchemaDefinition& schema);

}  // namespace korvanet::platform::assets
