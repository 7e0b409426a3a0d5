#pragma once

#include <cstddef>

#include "assets/library/recordlayout.h"
#include "assets/property/propertytable.h"
#include "nuo/common/iarchive.h"
#include "nuo/common/string.h"

// The records of a definition in the two block stores; see docs/formats/records.md.
//
//   instance record = schema_id:string identifier:string parent:string? property*
//   listing record  = property*
//   property        = body? tail?                                 see propertystream.h
//
// An instance record holds the read-write group, a listing record the iteration group.
//
// `parent` stands only in the libraries of asset streams. What lies behind the last property means
// nothing.

namespace korvanet::platform::assets {

// What the form depends on beside the layout.
struct RecordForm {
    // Streams hold the identifier of an instance's parent.
    bool has_parent = false;
    // Listing records before 3.2 hold no "VersionGUID".
    bool has_version_guid = true;
    // The library's common schema names a base: "BaseSchema" then stands in the table of contents
    // alone.
    bool has_base_schema = true;
};

// Does a record of the group hold the item at all?
bool InForm(const RecordLayout::Item& item, std::size_t group, const RecordForm& form);

struct RecordHeader {
    nuo::string schema;
    nuo::string identifier;
    nuo::string parent;
};

// All of these raise read_failed for a record that ends early.
RecordHeader ReadRecordHeader(nuo::archive::reader& in, const RecordForm& form);
void WriteRecordHeader(nuo::archive::writer& out, const RecordHeader& header,
                       const RecordForm& form);

// Fills the properties of one group of `table` from a record that was written by `layout`. A
// property that the table does not have, or has as another class, is read and dropped.
void ReadRecordGroup(nuo::archive::reader& in, const RecordLayout& layout, std::size_t group,
                     const RecordForm& form, PropertyTableImp& table);

// Writes one group by `layout`, which is that of the present schema. A property that the table does
// not have as this class is written as `schema` has it.
void WriteRecordGroup(nuo::archive::writer& out, const RecordLayout& layout, std::size_t group,
                      const RecordForm& form, const PropertyTableImp& table,
                      const PropertyTableImp& schema);

}  // namespace korvanet::platform::assets
