#pragma once

#include <set>
#include <string>

#include "inspect/contentscheck.h"
#include "inspect/findings.h"
#include "inspect/packageparts.h"
#include "inspect/schemacheck.h"

namespace halvern::inspect {

// Reads the records of definitions by their schemas to the last byte, with every connection and
// every URI in them; see docs/formats/records.md.
class RecordCheck {
public:
    // The names are all that connections may mean. The arguments outlive the object.
    RecordCheck(PackageParts& parts, SchemaCheck& schemas,
                const korvanet::platform::assets::RecordForm& form,
                std::set<nuo::string, nuo::string_less> names, Findings& findings);

    // Returns the shape that the other record has, or null when the record tells no schema of the
    // library.
    const SchemaShape* CheckInstance(const std::string& store, const ContentsEntry& entry,
                                     const Bytes& record);
    void CheckListing(const std::string& store, const ContentsEntry& entry,
                      const SchemaShape& shape, const Bytes& record);
    // The URIs that stand once, in a schema, and not in records.
    void CheckSharedUris();

private:
    struct Place {
        const std::string& store;
        const std::string& definition;
        nuo::string_ref property;
    };

    void CheckHeader(const std::string& store, const ContentsEntry& entry,
                     const korvanet::platform::assets::RecordHeader& header);
    // False when the record ends before the last property.
    bool ReadItems(const std::string& store, const ContentsEntry& entry,
                   const std::vector<SchemaShape::Item>& items, nuo::archive::reader& in,
                   std::uint64_t size);
    bool ReadItem(const SchemaShape::Item& item, nuo::archive::reader& in, const Place& place);
    void ReadConnections(const SchemaShape::Item& item, nuo::archive::reader& in,
                         const Place& place);
    bool ReadMark(nuo::archive::reader& in, const Place& place);
    void CheckValue(korvanet::platform::assets::PropertyBase& property, const Place& place);
    bool IsInRange(korvanet::platform::assets::PropertyBase& property) const;
    void CheckUris(const korvanet::platform::assets::IProperty& property, const std::string& part,
                   const std::string& where);
    void Add(const char* rule, const Place& place, const std::string& what);

    PackageParts& parts_;
    SchemaCheck& schemas_;
    korvanet::platform::assets::RecordForm form_;
    std::set<nuo::string, nuo::string_less> names_;
    Findings& findings_;
};

}  // namespace halvern::inspect
