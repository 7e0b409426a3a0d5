#pragma once

#include "nuo/common/iarchive.h"

namespace korvanet::platform::assets {

class PropertyBase;

// The stored form of one property, without its name and type, which the schema tells:
//
//     property    = [ body ] [ tail ]
//     body        = the form of the data type; properties of references and textures have none
//     tail        = 0:byte | 1:byte marked:byte count:uint32 connection{count}
//     connection  = the form of AssetConnection, see connectioncodec.h
//
// Only a property whose flags allow connections has a tail. See docs/formats/records.md.

bool HasBody(const PropertyBase& property);

// Whether a property has a tail is up to the schema that tells the form, whose flags may be others
// than those of the property by now: these write and read one in any case.
void WriteBody(nuo::archive::writer& writer, const PropertyBase& property);
void WriteConnections(nuo::archive::writer& writer, const PropertyBase& property);

// Both raise `nuo::archive::read_failed` when the data ends. A connection that means no table of
// the library is dropped, and so are all that the property does not take.
void ReadBody(nuo::archive::reader& reader, PropertyBase& property);
void ReadConnections(nuo::archive::reader& reader, PropertyBase& property);

}  // namespace korvanet::platform::assets
