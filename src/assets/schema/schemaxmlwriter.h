#pragma once

#include "nuo/common/string.h"

// Writes the format of docs/formats/schema_xml.md.

namespace korvanet::platform::assets {

class KRVTSchemaDefinition;

/**
 * The schema as XML, from the root element on; empty when the schema has no id or a text that XML
 * can't hold. A property that its base has with an equal default is left out, and so is one whose
 * flags conflict, with a warning. Elements follow the classes of the values, so that a reader makes
 * the same ones.
 */
nuo::string WriteSchemaXml(const KRVTSchemaDefinition& schema);

}  // namespace korvanet::platform::assets
