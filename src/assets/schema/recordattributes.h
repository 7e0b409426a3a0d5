#pragma once

#include "assets/schema/schemapropertyrecord.h"
#include "assets/serialization/io/xmlhandler.h"

namespace korvanet::platform::assets {

/**
 * Stores the attributes of a property element in the record, in the order of their names. An
 * attribute that the grammar lacks is a warning and is left out.
 */
void ReadPropertyAttributes(const XmlAttributes& attributes, SchemaPropertyRecord& record);

/** The limits that a bounds element tells; counted by nobody yet. */
KRVTBounds* ReadBoundsAttributes(const XmlAttributes& attributes);

}  // namespace korvanet::platform::assets
