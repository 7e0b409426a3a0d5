#include "assets/schema/schemaxmlwriter.h"

#include <korvanet/platform/assets/ivalue.h>

#include "assets/property/bounds.h"
#include "assets/property/choice.h"
#include "assets/property/fixedproperties.h"
#include "assets/property/numbervalues.h"
#include "assets/property/units.h"
#include "assets/property/urivalues.h"
#include "assets/schema/propertydata.h"
#include "assets/schema/propertyflags.h"
#include "assets/schema/schemacompare.h"
#include "assets/schema/schemadefinition.h"
#include "assets/schema/schemagrammar.h"
#include "assets/schema/valuelist.h"
#include "assets/schema/xmldocument.h"
#include "nuo/common/string_algo/number.h"
#include "nuo/common/string_builder.h"
#include "velmor/array.h"
#include "velmor/vocabulary.h"

namespace korvanet::platform::assets {
namespace {

namespace attribute = grammar::attribute;
namespace element = grammar::element;
using namespace PropertyFlags;

nuo::string Escaped(nuo::string_ref text) {
    nuo::string_builder out;
    AppendEscapedValue(out, text);
    return nuo::string(out);
}

nuo::string_ref BoolWord(bool value) {
    return value ? grammar::kTrue : grammar::kFalse;
}

/** Elements 0 to count - 1, each by `append(out, i)`, with commas between them. */
template <class Append>
nuo::string Join(std::uint64_t count, Append append) {
    nuo::string_builder out;
    for (std::uint64_t i = 0; i < count; ++i) {
        if (i != 0) out.append(',');
        append(out, i);
    }
    return nuo::string(out);
}

bool IsList(const PropertyBase& property) {
    return DataAs<velmor::Array>(property) != nullptr;
}

bool IsWholeUri(nuo::string_ref name) {
    return name == element::kImplementation || name == element::kUi;
}

/**
 * The elements of the two roles make a read-only property of one value. What is stored in records
 * takes one only where the base restores the other flags.
 */
nuo::string_ref UriElement(const PropertyBase& property, const PropertyBase* inherited) {
    if (dynamic_cast<const TextureURIValue*>(&property) != nullptr) return element::kTextureUri;
    const std::uint32_t flags = property.GetFlags();
    if (IsList(property) || (inherited == nullptr && (flags & kReadOnly) == 0)) {
        return element::kUrl;
    }
    // A role that the base has comes back without being told.
    const std::uint32_t own = inherited != nullptr ? flags & ~inherited->GetFlags() : flags;
    if ((own & kImplementation) != 0) return element::kImplementation;
    if ((own & kUIDefinition) != 0) return element::kUi;
    if ((flags & kImplementation) != 0) return element::kImplementation;
    return (flags & kUIDefinition) != 0 ? element::kUi : element::kUrl;
}

nuo::string_ref NumberElement(const PropertyBase& property) {
    if (dynamic_cast<const Vector3Value*>(&property) != nullptr) return element::kVector3;
    return (property.GetFlags() & kUnits) != 0 ? element::kDistance : element::kFloat;
}

/** Empty for a kind that schema files do not know. */
nuo::string_ref ElementOf(const PropertyBase& property, const PropertyBase* inherited) {
    switch (property.GetType()) {
        case PropertyType::kBinary:
            return element::kBinary;
        case PropertyType::kString:
            return element::kString;
        case PropertyType::kDateTime:
            return element::kDateTime;
        case PropertyType::kUri:
            return UriElement(property, inherited);
        case PropertyType::kBoolean:
            return element::kBoolean;
        case PropertyType::kInteger:
            return element::kInteger;
        case PropertyType::kScalar:
            return NumberElement(property);
        case PropertyType::kColor:
            return element::kColor;
        case PropertyType::kTexture:
        case PropertyType::kReference:
            return element::kReference;
        case PropertyType::kChoice:
            return element::kChoice;
        case PropertyType::kUuid:
            return element::kUuid;
        default:
            return {};
    }
}

struct FlagAttribute {
    std::uint32_t flag;
    nuo::string_ref name;
    nuo::string_ref value;
};

/** The flags that a reader takes for off; kPublic is the other way round. */
constexpr FlagAttribute kFlagAttributes[] = {
    {kReadOnly, attribute::kReadOnly, grammar::kTrue},
    {kAllowMultipleValues, attribute::kMultipleValues, grammar::kTrue},
    {kDefinitionIteratorData, attribute::kIteratorData, grammar::kTrue},
    {kLocal, attribute::kLocal, grammar::kTrue},
    {kAllowConnectedAsset, attribute::kConnectedAssets, grammar::kSingle},
    {kAllowConnectedAssets, attribute::kConnectedAssets, grammar::kMultiple},
    {kMetadata, attribute::kMetadata, grammar::kTrue},
};

/** Whether there is a list is told by the value: the flag may be that of a base with another one.
 */
std::uint32_t ToldFlags(const PropertyBase& property) {
    const std::uint32_t flags = property.GetFlags() & ~kAllowMultipleValues;
    return IsList(property) ? flags | kAllowMultipleValues : flags;
}

void WriteFlags(const XmlElement& node, std::uint32_t flags) {
    if ((flags & kPublic) == 0) node.SetAttribute(attribute::kPublic, grammar::kFalse);
    for (const FlagAttribute& row : kFlagAttributes) {
        if ((flags & row.flag) != 0) node.SetAttribute(row.name, row.value);
    }
}

void WriteText(const XmlElement& node, const PropertyBase& property) {
    const std::uint64_t count = TextCount(property);
    if (count == 0) return;
    node.SetAttribute(attribute::kVal, Join(count, [&](nuo::string_builder& out, std::uint64_t i) {
                          AppendEscapedValue(out, *TextAt(property, i));
                      }));
}

void WriteBoolean(const XmlElement& node, const PropertyBase& property) {
    const auto& value = dynamic_cast<const IBooleanValue&>(*property.GetValue());
    node.SetAttribute(attribute::kVal, BoolWord(value.GetValue()));
}

void WriteBounds(const XmlElement& node, const PropertyBase& property) {
    const KRVTBounds* bounds = property.Descriptor().bounds.get();
    if (bounds == nullptr) return;
    const XmlElement child = node.AddChild(element::kBounds);
    child.SetAttribute(attribute::kPercentage, BoolWord(bounds->IsPercentage()));
    child.SetAttribute(attribute::kIncrementSize, nuo::to_text(bounds->GetIncrementSize()));
    if (bounds->IsPercentage()) return;
    if (bounds->HasMinimum()) {
        child.SetAttribute(attribute::kMinimum, nuo::to_text(bounds->GetMinimum()));
        child.SetAttribute(attribute::kMinimumIsInclusive, BoolWord(bounds->MinimumIsInclusive()));
    }
    if (bounds->HasMaximum()) {
        child.SetAttribute(attribute::kMaximum, nuo::to_text(bounds->GetMaximum()));
        child.SetAttribute(attribute::kMaximumIsInclusive, BoolWord(bounds->MaximumIsInclusive()));
    }
}

void WriteInteger(const XmlElement& node, const PropertyBase& property) {
    const auto& value = dynamic_cast<const IIntegerValue&>(*property.GetValue());
    const std::uint64_t count = value.GetDimension();
    if (count == 0) return;
    node.SetAttribute(attribute::kVal, Join(count, [&](nuo::string_builder& out, std::uint64_t i) {
                          out.append_number(std::int64_t{value.GetValue(i)});
                      }));
}

void WriteVector(const XmlElement& node, const IScalarValue& value) {
    node.SetAttribute(attribute::kValX, nuo::to_text(value.GetValue(0)));
    node.SetAttribute(attribute::kValY, nuo::to_text(value.GetValue(1)));
    node.SetAttribute(attribute::kValZ, nuo::to_text(value.GetValue(2)));
}

void WriteNumber(const XmlElement& node, const PropertyBase& property) {
    const auto& value = dynamic_cast<const IScalarValue&>(*property.GetValue());
    if (NumberElement(property) == element::kVector3) {
        WriteVector(node, value);
        return;
    }
    if (const std::uint64_t count = value.GetDimension(); count != 0) {
        node.SetAttribute(attribute::kVal,
                          Join(count, [&](nuo::string_builder& out, std::uint64_t i) {
                              nuo::append_text(out, value.GetValue(i));
                          }));
    }
    // Also without a code: a reader makes another value of a number that has no unit at all.
    if (DataAs<velmor::UnitsValue>(property) != nullptr) {
        node.SetAttribute(attribute::kUnit, WordFromUnit(value.GetUnits()));
    }
}

void WriteColor(const XmlElement& node, const PropertyBase& property) {
    constexpr nuo::string_ref kNames[] = {attribute::kValR, attribute::kValG, attribute::kValB,
                                          attribute::kValA};
    const auto& value = dynamic_cast<const IColorValue&>(*property.GetValue());
    const std::uint64_t count = value.GetDimension();
    if (count == 0) return;
    for (std::size_t component = 0; component < 4; ++component) {
        node.SetAttribute(kNames[component],
                          Join(count, [&](nuo::string_builder& out, std::uint64_t i) {
                              double rgba[4];
                              value.GetValue(rgba[0], rgba[1], rgba[2], rgba[3], i);
                              nuo::append_text(out, rgba[component]);
                          }));
    }
}

const KRVTChoice& ChoiceAt(const KRVTChoiceList& choices, std::uint64_t index) {
    return static_cast<const KRVTChoice&>(*choices.GetChoice(index));
}

const KRVTChoice* ChoiceOf(const KRVTChoiceList& choices, std::int32_t value) {
    for (std::uint64_t i = 0; i < choices.GetCount(); ++i) {
        const KRVTChoice& choice = ChoiceAt(choices, i);
        if (choice.GetValue() == value) return &choice;
    }
    return nullptr;
}

/** Ids of the chosen entries; a value that no entry has is left out. */
void WriteChosen(const XmlElement& node, const IChoiceListValue& value,
                 const KRVTChoiceList& choices) {
    nuo::string_builder ids;
    bool any = false;
    for (std::uint64_t i = 0; i < value.GetDimension(); ++i) {
        const KRVTChoice* choice = ChoiceOf(choices, value.GetValue(i));
        if (choice == nullptr) continue;
        if (any) ids.append(',');
        any = true;
        AppendEscapedValue(ids, choice->Id());
    }
    if (any) node.SetAttribute(attribute::kVal, ids);
}

void WriteChoice(const XmlElement& node, const PropertyBase& property) {
    const KRVTChoiceList* choices = property.Descriptor().choices.get();
    if (choices == nullptr) return;
    WriteChosen(node, dynamic_cast<const IChoiceListValue&>(*property.GetValue()), *choices);
}

void WriteChoiceEntries(const XmlElement& node, const PropertyBase& property) {
    const KRVTChoiceList* choices = property.Descriptor().choices.get();
    if (choices == nullptr) return;
    for (std::uint64_t i = 0; i < choices->GetCount(); ++i) {
        const KRVTChoice& choice = ChoiceAt(*choices, i);
        const XmlElement child = node.AddChild(element::kChoiceValue);
        child.SetAttribute(attribute::kId, choice.Id());
        child.SetAttribute(attribute::kVal, nuo::to_text(choice.GetValue()));
        child.SetAttribute(attribute::kLabel, choice.Label());
    }
}

void WriteValue(const XmlElement& node, const PropertyBase& property) {
    switch (property.GetType()) {
        case PropertyType::kString:
        case PropertyType::kDateTime:
        case PropertyType::kUri:
        case PropertyType::kUuid:
            return WriteText(node, property);
        case PropertyType::kBoolean:
            return WriteBoolean(node, property);
        case PropertyType::kInteger:
            return WriteInteger(node, property);
        case PropertyType::kScalar:
            return WriteNumber(node, property);
        case PropertyType::kColor:
            return WriteColor(node, property);
        case PropertyType::kTexture:
            return node.SetAttribute(attribute::kType, grammar::kTextureType);
        case PropertyType::kChoice:
            return WriteChoice(node, property);
        default:
            return;
    }
}

void WriteChildren(const XmlElement& node, const PropertyBase& property) {
    const PropertyType kind = property.GetType();
    if (kind == PropertyType::kChoice) WriteChoiceEntries(node, property);
    if (kind == PropertyType::kInteger || kind == PropertyType::kScalar) {
        WriteBounds(node, property);
    }
}

void WriteProperty(const XmlElement& root, const PropertyBase& property,
                   const PropertyBase* inherited) {
    const nuo::string_ref name = ElementOf(property, inherited);
    if (name.empty()) return;
    const XmlElement node = root.AddChild(name);
    node.SetAttribute(attribute::kId, property.Name());
    WriteFlags(node, ToldFlags(property));
    if (IsWholeUri(name)) {
        node.SetAttribute(attribute::kVal, *TextAt(property, 0));
    } else {
        WriteValue(node, property);
    }
    if ((property.GetFlags() & kPublic) != 0) {
        node.SetAttribute(attribute::kLabel, property.Descriptor().label);
    }
    WriteChildren(node, property);
}

void WriteDirective(const XmlElement& root, nuo::string_ref name, const nuo::string& val) {
    if (!val.empty()) root.AddChild(name).SetAttribute(attribute::kVal, Escaped(val));
}

nuo::string TextOf(const KRVTSchemaDefinition& schema, nuo::string_ref name) {
    const PropertyBase* property = schema.FindProperty(name);
    const nuo::string* text = property != nullptr ? TextAt(*property, 0) : nullptr;
    return text != nullptr ? *text : nuo::string();
}

bool HasDirective(const KRVTSchemaDefinition& schema, const PropertyBase& property) {
    return !(schema.Id() == grammar::kCommonSchema) &&
           (property.Name() == fixed_property::kBaseSchema ||
            property.Name() == fixed_property::kAssetType);
}

const PropertyBase* InheritedBy(const KRVTSchemaDefinition& schema, const PropertyBase& property) {
    const KRVTSchemaDefinition* base = schema.BaseDefinition();
    return base != nullptr ? base->FindProperty(property.Name().ref()) : nullptr;
}

bool HasFittingFlags(const PropertyBase& property) {
    const std::uint32_t code = CheckPropertyFlags(property.GetType(), property.GetFlags());
    if (code != 0) WarnFlagConflict(property.Name(), code);
    return code == 0;
}

}  // namespace

nuo::string WriteSchemaXml(const KRVTSchemaDefinition& schema) {
    if (schema.Id().empty()) return nuo::string();
    XmlDocument document(element::kRoot);
    const XmlElement root = document.Root();
    WriteDirective(root, element::kUid, schema.Id());
    WriteDirective(root, element::kBase, TextOf(schema, fixed_property::kBaseSchema));
    WriteDirective(root, element::kType, TextOf(schema, fixed_property::kAssetType));
    for (const PropertyBase* property : schema.Properties()) {
        if (HasDirective(schema, *property)) continue;
        const PropertyBase* inherited = InheritedBy(schema, *property);
        if (inherited != nullptr && IsSameDefault(*property, *inherited)) continue;
        if (HasFittingFlags(*property)) WriteProperty(root, *property, inherited);
    }
    for (std::uint64_t i = 0; const auto* alias = schema.AliasAt(i); ++i) {
        const XmlElement node = root.AddChild(element::kPropertyAlias);
        node.SetAttribute(attribute::kAlias, alias->alias);
        node.SetAttribute(attribute::kId, alias->target);
    }
    return document.Dump();
}

}  // namespace korvanet::platform::assets
