#include "assets/schema/valuebuilders.h"

#include <utility>
#include <vector>

#include "assets/manager/base/report.h"
#include "assets/property/bounds.h"
#include "assets/property/choice.h"
#include "assets/property/propertyfactory.h"
#include "assets/property/units.h"
#include "assets/schema/propertydata.h"
#include "assets/schema/schemadefinition.h"
#include "assets/schema/schemapropertyrecord.h"
#include "nuo/common/string_algo/number.h"
#include "velmor/vocabulary.h"

namespace korvanet::platform::assets::value_builders {
namespace {

using Record = SchemaPropertyRecord;
using Schema = KRVTSchemaDefinition;

bool IsList(const Record& record) {
    return (record.flags & PropertyFlags::kAllowMultipleValues) != 0;
}

nuo::string FirstValue(const Record& record) {
    return record.values.empty() ? nuo::string() : record.values.front();
}

OwnedProperty Make(const Schema& schema, const Record& record, ValueClass value) {
    return MakeProperty(schema.Context(), value, record.id, record.label, record.flags);
}

PropertyBase* Add(Schema& schema, OwnedProperty property) {
    PropertyBase* added = property.get();
    if (added != nullptr) schema.AddProperty(std::move(property));
    return added;
}

/** Gives the property its data; null when the value class is not to be had. */
template <class T>
PropertyBase* AddSingle(Schema& schema, OwnedProperty property, const T& value) {
    if (!property) return nullptr;
    *DataAs<T>(*property) = value;
    return Add(schema, std::move(property));
}

template <class T>
PropertyBase* AddList(Schema& schema, OwnedProperty property, const std::vector<T>& values) {
    if (!property) return nullptr;
    auto& list = *DataAs<velmor::Array>(*property);
    list.resize(values.size());
    for (std::uint64_t i = 0; i < values.size(); ++i) {
        *static_cast<T*>(list[i].data()) = values[i];
    }
    return Add(schema, std::move(property));
}

PropertyBase* AddText(Schema& schema, const Record& record, ValueClass single, ValueClass list) {
    if (IsList(record)) return AddList(schema, Make(schema, record, list), record.values);
    return AddSingle(schema, Make(schema, record, single), FirstValue(record));
}

bool IsInBounds(const Record& record, double value) {
    return record.bounds == nullptr || record.bounds->IsInBounds(value);
}

OwnedProperty MakeBounded(const Schema& schema, const Record& record, ValueClass value) {
    OwnedProperty property = Make(schema, record, value);
    if (property) property->Descriptor().bounds = record.bounds;
    return property;
}

std::vector<std::int32_t> Integers(const Record& record) {
    if (!record.fromXml) return {record.integer};
    std::vector<std::int32_t> numbers;
    numbers.reserve(record.values.size());
    for (const nuo::string& value : record.values) {
        numbers.push_back(nuo::parse_int32(value).value_or(0));
    }
    return numbers;
}

std::vector<double> Numbers(const Record& record) {
    if (!record.fromXml) return {record.number};
    std::vector<double> numbers;
    numbers.reserve(record.values.size());
    for (const nuo::string& value : record.values) {
        numbers.push_back(nuo::parse_double(value).value_or(0.0));
    }
    return numbers;
}

/** The values of the entries that are named; names of no entry are dropped. */
std::vector<std::int32_t> ChosenValues(const Record& record) {
    std::vector<std::int32_t> chosen;
    for (const nuo::string& id : record.values) {
        if (const KRVTChoice* choice = record.choices->FindById(id)) {
            chosen.push_back(choice->GetValue());
        }
    }
    return chosen;
}

bool IsWithin(double value, double limit) {
    return value >= 0.0 && value <= limit;
}

// Schemas count r, g and b from 0 to 255, although colours are set from 0 to 1; kept on purpose.
bool IsColorInRange(const Record& record) {
    constexpr double kFullComponent = 255.0;
    return record.r.empty() ||
           (IsWithin(record.r.front(), kFullComponent) &&
            IsWithin(record.g.front(), kFullComponent) &&
            IsWithin(record.b.front(), kFullComponent) && IsWithin(record.a.front(), 1.0));
}

}  // namespace

PropertyBase* String(Schema& schema, Record& record) {
    return AddText(schema, record, ValueClass::kStringValue, ValueClass::kStringList);
}

PropertyBase* NeededString(Schema& schema, Record& record) {
    if (record.values.empty()) {
        HalvernError("Must specify the val tag").Deliver();
        return nullptr;
    }
    return AddSingle(schema, Make(schema, record, ValueClass::kStringValue), FirstValue(record));
}

PropertyBase* DateTime(Schema& schema, Record& record) {
    if (IsList(record)) return nullptr;
    return AddSingle(schema, Make(schema, record, ValueClass::kDateTimeValue), FirstValue(record));
}

PropertyBase* Binary(Schema& schema, Record& record) {
    return Add(schema, Make(schema, record, ValueClass::kBinaryValue));
}

PropertyBase* Uuid(Schema& schema, Record& record) {
    return AddSingle(schema, Make(schema, record, ValueClass::kUuidValue), FirstValue(record));
}

PropertyBase* Uri(Schema& schema, Record& record) {
    const bool isTexture = (record.flags & PropertyFlags::kTextureURI) != 0;
    return AddText(schema, record, ValueClass::kUriValue,
                   isTexture ? ValueClass::kTextureURIValue : ValueClass::kUriList);
}

PropertyBase* Boolean(Schema& schema, Record& record) {
    OwnedProperty property = Make(schema, record, ValueClass::kBooleanValue);
    if (!property) return nullptr;
    dynamic_cast<IBooleanValue&>(*property->GetValue()).SetValue(record.boolean);
    return Add(schema, std::move(property));
}

PropertyBase* Integer(Schema& schema, Record& record) {
    if (!IsInBounds(record, record.integer)) return nullptr;
    if (IsList(record)) {
        return AddList(schema, MakeBounded(schema, record, ValueClass::kIntegerList),
                       Integers(record));
    }
    return AddSingle(schema, MakeBounded(schema, record, ValueClass::kIntegerValue),
                     record.integer);
}

PropertyBase* Float(Schema& schema, Record& record) {
    if (!IsInBounds(record, record.number)) return nullptr;
    if (IsList(record)) {
        return AddList(schema, MakeBounded(schema, record, ValueClass::kScalarList),
                       Numbers(record));
    }
    if (record.unit.empty()) {
        return AddSingle(schema, MakeBounded(schema, record, ValueClass::kScalarValue),
                         record.number);
    }
    return AddSingle(schema, MakeBounded(schema, record, ValueClass::kGeneralUnitsValue),
                     velmor::UnitsValue{UnitFromWord(record.unit), record.number});
}

PropertyBase* Choice(Schema& schema, Record& record) {
    if (record.choices == nullptr) return nullptr;
    const KRVTChoice* chosen = record.choices->FindById(FirstValue(record));
    if (chosen == nullptr && !record.fromXml) return nullptr;
    OwnedProperty property = Make(
        schema, record, IsList(record) ? ValueClass::kChoiceListValue : ValueClass::kChoiceValue);
    if (!property) return nullptr;
    record.choices->SetName(record.id);
    property->Descriptor().choices = record.choices;
    if (IsList(record)) return AddList(schema, std::move(property), ChosenValues(record));
    return AddSingle(schema, std::move(property), chosen != nullptr ? chosen->GetValue() : 0);
}

PropertyBase* Color(Schema& schema, Record& record) {
    const std::size_t length = record.r.size();
    if (record.g.size() != length || record.b.size() != length || record.a.size() != length ||
        !IsColorInRange(record)) {
        return nullptr;
    }
    std::vector<velmor::Color4> colors(length);
    for (std::size_t i = 0; i < length; ++i) {
        colors[i] = velmor::Color4{record.r[i], record.g[i], record.b[i], record.a[i]};
    }
    if (IsList(record)) {
        return AddList(schema, Make(schema, record, ValueClass::kColor4List), colors);
    }
    constexpr velmor::Color4 kBlack{0.0, 0.0, 0.0, 1.0};
    return AddSingle(schema, Make(schema, record, ValueClass::kColor4Value),
                     colors.empty() ? kBlack : colors.front());
}

PropertyBase* Vector3(Schema& schema, Record& record) {
    const auto first = [](const std::vector<double>& numbers) {
        return numbers.empty() ? 0.0 : numbers.front();
    };
    return AddSingle(schema, Make(schema, record, ValueClass::kVector3Value),
                     velmor::Vector3{first(record.r), first(record.g), first(record.b)});
}

PropertyBase* Reference(Schema& schema, Record& record) {
    return Add(schema, Make(schema, record,
                            record.isTextureReference ? ValueClass::kTextureValue
                                                      : ValueClass::kReferenceValue));
}

}  // namespace korvanet::platform::assets::value_builders
