#include "assets/schema/recordattributes.h"

#include "assets/manager/base/report.h"
#include "assets/property/bounds.h"
#include "assets/schema/schemagrammar.h"
#include "assets/schema/valuelist.h"
#include "nuo/common/string_algo/number.h"

namespace korvanet::platform::assets {
namespace {

namespace attribute = grammar::attribute;

using Record = SchemaPropertyRecord;

void SetFlag(Record& record, std::uint32_t flag, bool on) {
    record.flags = on ? record.flags | flag : record.flags & ~flag;
}

void ReadConnections(Record& record, const nuo::string& value) {
    SetFlag(record, PropertyFlags::kAllowConnectedAsset, value == grammar::kSingle);
    SetFlag(record, PropertyFlags::kAllowConnectedAssets, value == grammar::kMultiple);
}

struct AttributeRow {
    nuo::string_ref name;
    void (*read)(Record& record, const nuo::string& value);
};

constexpr AttributeRow kPropertyAttributes[] = {
    {attribute::kVal,
     [](Record& record, const nuo::string& value) {
         record.val = value;
         record.values = SplitValues(value);
     }},
    {attribute::kType, [](Record& record, const nuo::string& value) { record.typeAttr = value; }},
    {attribute::kId, [](Record& record, const nuo::string& value) { record.id = value; }},
    {attribute::kLabel, [](Record& record, const nuo::string& value) { record.label = value; }},
    {attribute::kUnit, [](Record& record, const nuo::string& value) { record.unit = value; }},
    {attribute::kAlias, [](Record& record, const nuo::string& value) { record.alias = value; }},
    // These two are on unless told to be off; all flags below are off unless told to be on.
    {attribute::kLocal,
     [](Record& record, const nuo::string& value) {
         SetFlag(record, PropertyFlags::kLocal, !(value == grammar::kFalse));
     }},
    {attribute::kPublic,
     [](Record& record, const nuo::string& value) {
         SetFlag(record, PropertyFlags::kPublic, !(value == grammar::kFalse));
     }},
    {attribute::kReadOnly,
     [](Record& record, const nuo::string& value) {
         SetFlag(record, PropertyFlags::kReadOnly, value == grammar::kTrue);
     }},
    {attribute::kIteratorData,
     [](Record& record, const nuo::string& value) {
         SetFlag(record, PropertyFlags::kDefinitionIteratorData, value == grammar::kTrue);
     }},
    {attribute::kMultipleValues,
     [](Record& record, const nuo::string& value) {
         SetFlag(record, PropertyFlags::kAllowMultipleValues, value == grammar::kTrue);
     }},
    {attribute::kMetadata,
     [](Record& record, const nuo::string& value) {
         SetFlag(record, PropertyFlags::kMetadata, value == grammar::kTrue);
     }},
    {attribute::kConnectedAssets, ReadConnections},
    {attribute::kValR,
     [](Record& record, const nuo::string& value) { record.r = SplitNumbers(value); }},
    {attribute::kValX,
     [](Record& record, const nuo::string& value) { record.r = SplitNumbers(value); }},
    {attribute::kValG,
     [](Record& record, const nuo::string& value) { record.g = SplitNumbers(value); }},
    {attribute::kValY,
     [](Record& record, const nuo::string& value) { record.g = SplitNumbers(value); }},
    {attribute::kValB,
     [](Record& record, const nuo::string& value) { record.b = SplitNumbers(value); }},
    {attribute::kValZ,
     [](Record& record, const nuo::string& value) { record.b = SplitNumbers(value); }},
    {attribute::kValA,
     [](Record& record, const nuo::string& value) { record.a = SplitNumbers(value); }},
    {attribute::kFile, [](Record& record, const nuo::string& value) { record.file = value; }},
};

struct BoundsArguments {
    bool hasMinimum = false;
    double minimum = 0.0;
    bool minimumIsInclusive = true;
    bool hasMaximum = false;
    double maximum = 0.0;
    bool maximumIsInclusive = true;
    double incrementSize = 1.0;
    bool isPercentage = false;
};

/** False when `name` is none of a bounds element's attributes. */
bool ReadBoundsAttribute(const nuo::string& name, const nuo::string& value,
                         BoundsArguments& bounds) {
    const auto number = [&] { return nuo::parse_double(value).value_or(0.0); };
    if (name == attribute::kMinimum) {
        bounds.hasMinimum = true;
        bounds.minimum = number();
    } else if (name == attribute::kMaximum) {
        bounds.hasMaximum = true;
        bounds.maximum = number();
    } else if (name == attribute::kIncrementSize) {
        bounds.incrementSize = number();
    } else if (name == attribute::kPercentage) {
        bounds.isPercentage = value == grammar::kTrue;
    } else if (name == attribute::kMinimumIsInclusive) {
        bounds.minimumIsInclusive = value == grammar::kTrue;
    } else if (name == attribute::kMaximumIsInclusive) {
        bounds.maximumIsInclusive = value == grammar::kTrue;
    } else {
        return false;
    }
    return true;
}

const AttributeRow* FindRow(const nuo::string& name) {
    for (const AttributeRow& row : kPropertyAttributes) {
        if (name == row.name) return &row;
    }
    return nullptr;
}

// The report names the value and not the attribute; kept on purpose.
void WarnUnknownAttribute(const nuo::string& value) {
    HalvernWarn(value, " is unknown attribute.").Deliver();
}

}  // namespace

void ReadPropertyAttributes(const XmlAttributes& attributes, SchemaPropertyRecord& record) {
    for (const auto& [name, value] : attributes) {
        if (const AttributeRow* row = FindRow(name)) {
            row->read(record, value);
        } else {
            WarnUnknownAttribute(value);
        }
    }
}

KRVTBounds* ReadBoundsAttributes(const XmlAttributes& attributes) {
    BoundsArguments bounds;
    for (const auto& [name, value] : attributes) {
        if (!ReadBoundsAttribute(name, value, bounds)) WarnUnknownAttribute(value);
    }
    return new KRVTBounds(bounds.hasMinimum, bounds.minimum, bounds.minimumIsInclusive,
                          bounds.hasMaximum, bounds.maximum, bounds.maximumIsInclusive,
                          bounds.incrementSize, bounds.isPercentage);
}

}  // namespace korvanet::platform::assets
