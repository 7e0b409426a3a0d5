#pragma once

#include "assets/property/intrusive.h"
#include "assets/property/propertytable.h"

namespace korvanet::platform::assets {

class KRVTSchemaDefinition;

/**
 * Flattens the base into the child, once, when the base is known: the child gains each property
 * that it lacks, with a descriptor of its own. A property that it has keeps value and label and
 * takes the flags of the base's, apart from the two URI roles, which it keeps too; it moves to the
 * group that these flags tell.
 */
void InheritFrom(KRVTSchemaDefinition& child, const KRVTSchemaDefinition& base);

/**
 * Adds to `table` a property like `source`: with a descriptor of its own, which shares the limits
 * and choices. One of the same name in the same group is replaced. Returns the new property.
 */
PropertyBase& AddCopy(PropertyTableImp& table, const PropertyBase& source);

/**
 * The same with the descriptor of `source`, as tables made from a schema share it: for a table made
 * before its schema gained the property.
 */
PropertyBase& AddSharingCopy(PropertyTableImp& table, const PropertyBase& source);

/** A schema with the same id, base, properties and aliases that stands in no namespace. */
intrusive_ptr<KRVTSchemaDefinition> CopySchema(const KRVTSchemaDefinition& schema);

}  // namespace korvanet::platform::assets
