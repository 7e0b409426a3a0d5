#include "assets/library/recordform.h"

#include "assets/property/fixedproperties.h"
#include "assets/property/propertyfactory.h"
#include "assets/property/propertystream.h"
#include "nuo/common/archive/string.h"

namespace korvanet::platform::assets {

using nuo::archive::operator>>;
using nuo::archive::operator<<;

namespace {

bool TakesTail(const RecordLayout::Item& item) {
    return (item.flags & PropertyFlags::kConnectionMask) != 0;
}

// The property that an item means. Groups are asked in order, since a merge of schemas may have
// moved it.
PropertyBase* FindLike(const PropertyTableImp& table, std::size_t group,
                       const PropertyDescriptor& wanted) {
    PropertyBase* found = table.FindInGroup(group, wanted.name);
    if (found == nullptr) found = table.FindProperty(wanted.name);
    return found != nullptr && found->Descriptor().type == wanted.type ? found : nullptr;
}

void ReadItem(nuo::archive::reader& in, const RecordLayout::Item& item, PropertyBase& property) {
    if (HasBody(property)) ReadBody(in, property);
    if (TakesTail(item)) ReadConnections(in, property);
}

}  // namespace

bool InForm(const RecordLayout::Item& item, std::size_t group, const RecordForm& form) {
    if (group != PropertyTableImp::kIterationGroup) return true;
    if (!form.has_version_guid && item.descriptor->name == fixed_property::kVersionGuid)
        return false;
    return form.has_base_schema || !(item.descriptor->name == fixed_property::kBaseSchema);
}

RecordHeader ReadRecordHeader(nuo::archive::reader& in, const RecordForm& form) {
    RecordHeader header;
    in >> header.schema >> header.identifier;
    if (form.has_parent) in >> header.parent;
    return header;
}

void WriteRecordHeader(nuo::archive::writer& out, const RecordHeader& header,
                       const RecordForm& form) {
    out << header.schema << header.identifier;
    if (form.has_parent) out << header.parent;
}

void ReadRecordGroup(nuo::archive::reader& in, const RecordLayout& layout, std::size_t group,
                     const RecordForm& form, PropertyTableImp& table) {
    for (const RecordLayout::Item& item : layout.Group(group)) {
        if (!InForm(item, group, form)) continue;
        if (PropertyBase* property = FindLike(table, group, *item.descriptor)) {
            ReadItem(in, item, *property);
            continue;
        }
        const OwnedProperty dropped = MakeProperty(*item.descriptor);
        ReadItem(in, item, *dropped);
    }
}

void WriteRecordGroup(nuo::archive::writer& out, const RecordLayout& layout, std::size_t group,
                      const RecordForm& form, const PropertyTableImp& table,
                      const PropertyTableImp& schema) {
    for (const RecordLayout::Item& item : layout.Group(group)) {
        if (!InForm(item, group, form)) continue;
        const PropertyBase* property = FindLike(table, group, *item.descriptor);
        if (property == nullptr) property = FindLike(schema, group, *item.descriptor);
        if (HasBody(*property)) WriteBody(out, *property);
        if (TakesTail(item)) WriteConnections(out, *property);
    }
}

}  // namespace korvanet::platform::assets
