// The `Add...` operations of a schema: each fills the record that a file would and gives it to the
// common builder.

#include "assets/manager/base/text.h"
#include "assets/property/bounds.h"
#include "assets/property/choice.h"
#include "assets/schema/schemabuilder.h"
#include "assets/schema/schemadefinition.h"
#include "assets/schema/schemagrammar.h"
#include "assets/schema/schemapropertyrecord.h"

namespace korvanet::platform::assets {
namespace {

namespace element = grammar::element;

SchemaPropertyRecord MakeRecord(nuo::string_ref element, const wchar_t* id, std::uint32_t flags,
                                const wchar_t* label) {
    SchemaPropertyRecord record;
    record.element = nuo::string(element);
    record.kind = grammar::KindOfElement(element);
    record.id = FromWide(id);
    record.flags = flags;
    record.label = FromWide(label);
    return record;
}

/** The value as a whole: a call gives one, and nothing in it separates pieces. */
void SetValue(SchemaPropertyRecord& record, const wchar_t* value) {
    if (value == nullptr) return;
    record.val = FromWide(value);
    record.values.assign(1, record.val);
}

template <class I>
I* Build(KRVTSchemaDefinition& schema, SchemaPropertyRecord& record) {
    PropertyBase* property = AddProperty(schema, record);
    return property != nullptr ? dynamic_cast<I*>(property->GetValue()) : nullptr;
}

/** Whether the limits are none or the library's own, which alone it can keep. */
template <class Own, class I>
bool TakeOwn(I* given, Own*& place) {
    place = dynamic_cast<Own*>(given);
    return given == nullptr || place != nullptr;
}

}  // namespace

IStringValue* KRVTSchemaDefinition::AddStringProperty(const wchar_t* id, std::uint32_t flags,
                                                      const wchar_t* label, const wchar_t* value) {
    SchemaPropertyRecord record = MakeRecord(element::kString, id, flags, label);
    SetValue(record, value);
    return Build<IStringValue>(*this, record);
}

IDateTimeValue* KRVTSchemaDefinition::AddDateTimeProperty(const wchar_t* id, std::uint32_t flags,
                                                          const wchar_t* label,
                                                          const wchar_t* value) {
    SchemaPropertyRecord record = MakeRecord(element::kDateTime, id, flags, label);
    SetValue(record, value);
    return Build<IDateTimeValue>(*this, record);
}

IBinaryValue* KRVTSchemaDefinition::AddBinaryProperty(const wchar_t* id, std::uint32_t flags) {
    SchemaPropertyRecord record = MakeRecord(element::kBinary, id, flags, nullptr);
    return Build<IBinaryValue>(*this, record);
}

IUuidValue* KRVTSchemaDefinition::AddUuidProperty(const wchar_t* id, std::uint32_t flags,
                                                  const wchar_t* label, const wchar_t* value) {
    SchemaPropertyRecord record = MakeRecord(element::kUuid, id, flags, label);
    SetValue(record, value);
    return Build<IUuidValue>(*this, record);
}

IUriValue* KRVTSchemaDefinition::AddUriProperty(const wchar_t* id, std::uint32_t flags,
                                                const wchar_t* label, const wchar_t* value) {
    SchemaPropertyRecord record = MakeRecord(element::kUrl, id, flags, label);
    SetValue(record, value);
    return Build<IUriValue>(*this, record);
}

IBooleanValue* KRVTSchemaDefinition::AddBooleanProperty(const wchar_t* id, std::uint32_t flags,
                                                        const wchar_t* label, bool value) {
    SchemaPropertyRecord record = MakeRecord(element::kBoolean, id, flags, label);
    record.boolean = value;
    return Build<IBooleanValue>(*this, record);
}

IIntegerValue* KRVTSchemaDefinition::AddIntegerProperty(const wchar_t* id, std::uint32_t flags,
                                                        const wchar_t* label, std::int32_t value,
                                                        IBounds* bounds) {
    SchemaPropertyRecord record = MakeRecord(element::kInteger, id, flags, label);
    record.integer = value;
    return TakeOwn(bounds, record.bounds) ? Build<IIntegerValue>(*this, record) : nullptr;
}

IScalarValue* KRVTSchemaDefinition::AddFloatProperty(const wchar_t* id, std::uint32_t flags,
                                                     const wchar_t* label, double value,
                                                     const wchar_t* unit, IBounds* bounds) {
    SchemaPropertyRecord record = MakeRecord(element::kFloat, id, flags, label);
    record.number = value;
    record.unit = FromWide(unit);
    return TakeOwn(bounds, record.bounds) ? Build<IScalarValue>(*this, record) : nullptr;
}

IChoiceListValue* KRVTSchemaDefinition::AddChoiceProperty(const wchar_t* id, std::uint32_t flags,
                                                          const wchar_t* label,
                                                          const wchar_t* value,
                                                          IChoiceList* choices) {
    SchemaPropertyRecord record = MakeRecord(element::kChoice, id, flags, label);
    SetValue(record, value);
    return TakeOwn(choices, record.choices) ? Build<IChoiceListValue>(*this, record) : nullptr;
}

IColorValue* KRVTSchemaDefinition::AddColorProperty(const wchar_t* id, std::uint32_t flags,
                                                    const wchar_t* label, double r, double g,
                                                    double b, double a) {
    SchemaPropertyRecord record = MakeRecord(element::kColor, id, flags, label);
    record.r.assign(1, r);
    record.g.assign(1, g);
    record.b.assign(1, b);
    record.a.assign(1, a);
    return Build<IColorValue>(*this, record);
}

IScalarValue* KRVTSchemaDefinition::AddVector3Property(const wchar_t* id, std::uint32_t flags,
                                                       const wchar_t* label, double x, double y,
                                                       double z) {
    SchemaPropertyRecord record = MakeRecord(element::kVector3, id, flags, label);
    record.r.assign(1, x);
    record.g.assign(1, y);
    record.b.assign(1, z);
    return Build<IScalarValue>(*this, record);
}

IReferenceValue* KRVTSchemaDefinition::AddReferenceProperty(const wchar_t* id, std::uint32_t flags,
                                                            const wchar_t* label, bool isTexture) {
    SchemaPropertyRecord record = MakeRecord(element::kReference, id, flags, label);
    record.isTextureReference = isTexture;
    return Build<IReferenceValue>(*this, record);
}

}  // namespace korvanet::platform::assets
