#include "inspect/recordcheck.h"

#include <algorithm>

#include <korvanet/platform/assets/ivalue.h>
#include <korvanet/platform/core/utf8string.h>

#include "assets/library/libraryparts.h"
#include "assets/library/resourceuri.h"
#include "assets/package/jpkfs.h"
#include "assets/property/connectioncodec.h"
#include "assets/property/fixedproperties.h"
#include "assets/property/propertystream.h"
#include "nuo/common/archive/string.h"
#include "nuo/common/buffer_archive.h"

namespace halvern::inspect {

using namespace korvanet::platform::assets;
using korvanet::platform::core::UTF8String;
using nuo::archive::operator>>;

namespace {

std::string WhereOf(const std::string& definition, nuo::string_ref property) {
    return "record " + definition + ", property " + Text(property);
}

}  // namespace

RecordCheck::RecordCheck(PackageParts& parts, SchemaCheck& schemas, const RecordForm& form,
                         std::set<nuo::string, nuo::string_less> names, Findings& findings)
    : parts_(parts),
      schemas_(schemas),
      form_(form),
      names_(std::move(names)),
      findings_(findings) {}

void RecordCheck::Add(const char* rule, const Place& place, const std::string& what) {
    findings_.Add({rule, place.store, WhereOf(place.definition, place.property), what});
}

const SchemaShape* RecordCheck::CheckInstance(const std::string& store, const ContentsEntry& entry,
                                              const Bytes& record) {
    const std::string where = "record " + Text(entry.entry.identifier);
    nuo::archive::buffer_in in(record);
    RecordHeader header;
    try {
        header = ReadRecordHeader(in, form_);
    } catch (const nuo::exception&) {
        findings_.Add({"record.header", store, where, "the record ends within its header"});
        return nullptr;
    }
    const SchemaShape* const shape = schemas_.Find(header.schema, form_);
    if (shape == nullptr) {
        if (!schemas_.IsBroken(header.schema))
            findings_.Add({"record.schema", store, where,
                           "the schema " + Text(header.schema) + " is not in the library"});
        return nullptr;
    }
    CheckHeader(store, entry, header);
    ReadItems(store, entry, shape->instance, in, record.size());
    return shape;
}

void RecordCheck::CheckHeader(const std::string& store, const ContentsEntry& entry,
                              const RecordHeader& header) {
    const std::string contents = parts_.Path(kContentsPart);
    const TocEntry& told = entry.entry;
    if (!(header.identifier == told.identifier))
        findings_.Add({"record.identifier", store, "record " + Text(told.identifier),
                       "the record is that of " + Text(header.identifier)});
    if (!told.base_schema.empty() && !(told.base_schema == header.schema))
        findings_.Add({"contents.schema", contents, entry.Where(),
                       "the base schema is " + Text(told.base_schema) + ", and in the record " +
                           Text(header.schema)});
    const nuo::string type = schemas_.Find(header.schema, form_)->schema->AssetType();
    if (!(type == told.asset_type))
        findings_.Add(
            {"contents.type", contents, entry.Where(),
             "the asset type is " + Text(told.asset_type) + ", and in the schema " + Text(type)});
}

void RecordCheck::CheckListing(const std::string& store, const ContentsEntry& entry,
                               const SchemaShape& shape, const Bytes& record) {
    nuo::archive::buffer_in in(record);
    if (!ReadItems(store, entry, shape.listing, in, record.size())) return;
    for (const SchemaShape::Item& item : shape.listing) {
        if (!(item.item.descriptor->name == fixed_property::kBaseSchema)) continue;
        UTF8String told;
        auto* const text = dynamic_cast<IStringValue*>(item.property->GetValue());
        if (text != nullptr && text->GetValue(told) && !(shape.schema->Id() == told.AsUTF8()))
            findings_.Add(
                {"record.schema", store,
                 WhereOf(Text(entry.entry.identifier), fixed_property::kBaseSchema.data()),
                 std::string("the schema is told as ") + told.AsUTF8() + " in place of " +
                     Text(shape.schema->Id())});
    }
}

bool RecordCheck::ReadItems(const std::string& store, const ContentsEntry& entry,
                            const std::vector<SchemaShape::Item>& items, nuo::archive::reader& in,
                            std::uint64_t size) {
    const std::string definition = Text(entry.entry.identifier);
    auto& position = dynamic_cast<nuo::archive::random&>(in);
    for (const SchemaShape::Item& item : items)
        if (!ReadItem(item, in, {store, definition, item.item.descriptor->name})) return false;
    const std::uint64_t rest = size - position.offset();
    if (rest == 0) return true;
    // A record has a byte at least; that of a group without properties means nothing.
    if (items.empty() && position.offset() == 0 && size == 1) return true;
    findings_.Add({"record.size", store, "record " + definition,
                   std::to_string(rest) + " bytes stand behind the last property"});
    return true;
}

// False when nothing can be read behind it.
bool RecordCheck::ReadItem(const SchemaShape::Item& item, nuo::archive::reader& in,
                           const Place& place) {
    PropertyBase& property = *item.property;
    try {
        if (HasBody(property)) {
            ReadBody(in, property);
            CheckValue(property, place);
        }
        if ((item.item.flags & PropertyFlags::kConnectionMask) != 0)
            ReadConnections(item, in, place);
        return true;
    } catch (const nuo::exception&) {
        Add("record.short", place, "the record ends within the property");
        return false;
    }
}

bool RecordCheck::ReadMark(nuo::archive::reader& in, const Place& place) {
    const auto mark = nuo::archive::read_value<std::uint8_t>(in);
    if (mark > 1)
        Add("record.value", place,
            "a byte before the connections is " + std::to_string(mark) + " in place of 0 or 1");
    return mark != 0;
}

void RecordCheck::ReadConnections(const SchemaShape::Item& item, nuo::archive::reader& in,
                                  const Place& place) {
    if (!ReadMark(in, place)) return;
    ReadMark(in, place);
    const auto count = nuo::archive::read_value<std::uint32_t>(in);
    const bool takes_several = (item.item.flags & PropertyFlags::kAllowConnectedAssets) != 0;
    if (count > 1 && !takes_several)
        Add("record.value", place,
            "the property takes one connection and has " + std::to_string(count));
    for (std::uint32_t at = 0; at < count; ++at) {
        nuo::string text;
        in >> text;
        const nuo::string_ref name = ConnectedName(Ref(parts_.Identifier()), text);
        if (names_.find(name) == names_.end())
            Add("connection", place,
                "a connection names the definition " + Text(name) +
                    ", which is not in the library");
    }
}

bool RecordCheck::IsInRange(PropertyBase& property) const {
    IValue* const value = property.GetValue();
    if (auto* choice = dynamic_cast<IChoiceListValue*>(value)) {
        IChoiceList* const choices = choice->GetChoices();
        for (std::uint64_t at = 0; choices != nullptr && at < choice->GetDimension(); ++at) {
            std::uint64_t entry = 0;
            while (entry < choices->GetCount() &&
                   choices->GetChoice(entry)->GetValue() != choice->GetValue(at))
                ++entry;
            if (entry == choices->GetCount()) return false;
        }
        return true;
    }
    const auto fits = [](auto& number) {
        const IBounds* const bounds = number.GetBounds();
        for (std::uint64_t at = 0; bounds != nullptr && at < number.GetDimension(); ++at)
            if (!bounds->IsInBounds(number.GetValue(at))) return false;
        return true;
    };
    if (auto* integer = dynamic_cast<IIntegerValue*>(value)) return fits(*integer);
    // Vectors take any number, whatever the schema says.
    const HalvernTypes& types = schemas_.Context().types;
    if (property.Descriptor().type == types.Value(ValueClass::kVector3Value)) return true;
    auto* const scalar = dynamic_cast<IScalarValue*>(value);
    return scalar == nullptr || fits(*scalar);
}

void RecordCheck::CheckValue(PropertyBase& property, const Place& place) {
    if (!IsInRange(property)) Add("record.value", place, "the value is not one the schema allows");
    CheckUris(property, place.store, WhereOf(place.definition, place.property));
}

void RecordCheck::CheckUris(const IProperty& property, const std::string& part,
                            const std::string& where) {
    if (property.GetType() != PropertyType::kUri) return;
    const auto& texts = dynamic_cast<const IStringValue&>(*property.GetValue());
    for (std::uint64_t at = 0; at < texts.GetDimension(); ++at) {
        UTF8String uri;
        if (!texts.GetValue(uri, at) || !IsResourceUri(uri.AsUTF8())) continue;
        const std::string path = Text(ResourcePath(uri.AsUTF8()));
        if (!IsUserPath(Ref(path)) || !parts_.IsFile(path))
            findings_.Add({"uri", part, where,
                           "the URI names the part " + path + ", which is not in the library"});
    }
}

void RecordCheck::CheckSharedUris() {
    for (const KRVTSchemaDefinition* schema : schemas_.All()) {
        const KRVTSchemaDefinition* const base = schema->BaseDefinition();
        for (const PropertyGroup::Entry& entry : schema->Group(PropertyTableImp::kReadOnlyGroup)) {
            const PropertyBase* const inherited =
                base != nullptr ? base->PropertyTableImp::FindProperty(entry.Name()) : nullptr;
            if (inherited != nullptr && inherited->IsEqual(&entry.Property())) continue;
            CheckUris(
                entry.Property(),
                parts_.Path(kSchemasFolder) + "/" + Text(schema->Id()) + Text(kSchemaExtension),
                "property " + Text(entry.Name()));
        }
    }
}

}  // namespace halvern::inspect
