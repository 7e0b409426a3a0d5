#include "assets/schema/schemaxmlreader.h"

#include <algorithm>

#include "assets/property/fixedproperties.h"
#include "assets/schema/recordattributes.h"
#include "assets/schema/schemabuilder.h"
#include "assets/schema/schemadefinition.h"
#include "assets/schema/schemagrammar.h"
#include "nuo/common/string_algo/number.h"

namespace korvanet::platform::assets {
namespace {

namespace element = grammar::element;

/** Depth of the elements that are properties; the root has depth 1. */
constexpr std::size_t kPropertyDepth = 2;

std::uint64_t ListElements(const SchemaPropertyRecord& record) {
    return record.values.size() + record.r.size() + record.g.size() + record.b.size() +
           record.a.size();
}

void LevelColor(SchemaPropertyRecord& record) {
    const std::size_t length =
        std::max({record.r.size(), record.g.size(), record.b.size(), record.a.size()});
    record.r.resize(length, 0.0);
    record.g.resize(length, 0.0);
    record.b.resize(length, 0.0);
    record.a.resize(length, 1.0);
}

nuo::string Attribute(const XmlAttributes& attributes, nuo::string_ref name) {
    const auto found = attributes.find(name);
    return found == attributes.end() ? nuo::string() : found->second;
}

}  // namespace

void SchemaManagerXmlData::OnXml(XmlDriverState& driver, const nuo::string& name,
                                 const nuo::string&, const XmlAttributes& attributes, bool start) {
    if (name.empty()) return;
    const std::size_t depth = driver.elements.size();
    if (start) {
        StartElement(name, attributes, depth);
    } else if (depth == kPropertyDepth - 1) {
        EndProperty();
    }
}

void SchemaManagerXmlData::StartElement(const nuo::string& name, const XmlAttributes& attributes,
                                        std::size_t depth) {
    Spend(elements_, 1, kMaxSchemaElements);
    if (depth < kPropertyDepth) return;
    if (depth == kPropertyDepth) {
        StartProperty(name, attributes);
    } else if (record_.element == element::kChoice && name == element::kChoiceValue) {
        AddChoice(attributes);
    } else {
        ReadBounds(attributes);
    }
}

void SchemaManagerXmlData::EndProperty() {
    if (record_.element == element::kBase) AddBaseSchema(schema_, record_);
    AddProperty(schema_, record_);
}

void SchemaManagerXmlData::StartProperty(const nuo::string& name, const XmlAttributes& attributes) {
    bounds_.reset();
    choices_.reset();
    record_ = SchemaPropertyRecord();
    record_.fromXml = true;
    record_.flags = PropertyFlags::kPublic;
    record_.element = name;
    ReadPropertyAttributes(attributes, record_);
    Finish();
    Spend(list_elements_, ListElements(record_), kMaxSchemaListElements);
    if (record_.element == element::kChoice) {
        choices_.reset(new KRVTChoiceList(&schema_.Context()));
        record_.choices = choices_.get();
    }
}

void SchemaManagerXmlData::Finish() {
    const nuo::string& name = record_.element;
    const nuo::string first = record_.values.empty() ? nuo::string() : record_.values.front();
    record_.kind = grammar::KindOfElement(name);
    if (name == element::kLocalName || name == element::kLocalType) {
        record_.id = name;
    } else if (name == element::kType) {
        record_.id = nuo::string(fixed_property::kAssetType);
    } else if (name == element::kFloat || name == element::kDistance) {
        record_.number = nuo::parse_double(first).value_or(0.0);
    } else if (name == element::kInteger) {
        record_.integer = nuo::parse_int32(first).value_or(0);
    } else if (name == element::kBoolean) {
        record_.boolean = first == grammar::kTrue;
    } else if (name == element::kColor) {
        LevelColor(record_);
    } else if (name == element::kVector3) {
        record_.r.resize(1, 0.0);
        record_.g.resize(1, 0.0);
        record_.b.resize(1, 0.0);
    } else if (name == element::kReference) {
        record_.isTextureReference = record_.typeAttr == grammar::kTextureType;
    } else if (name == element::kUi || name == element::kImplementation) {
        record_.values.assign(1, record_.val);
    }
}

void SchemaManagerXmlData::AddChoice(const XmlAttributes& attributes) {
    namespace attribute = grammar::attribute;
    const nuo::string value = Attribute(attributes, attribute::kVal);
    // Held here too: an entry that the list refuses goes at once.
    const intrusive_ptr<KRVTChoice> choice(new KRVTChoice(Attribute(attributes, attribute::kLabel),
                                                          nuo::parse_int32(value).value_or(0),
                                                          Attribute(attributes, attribute::kId)));
    choices_->AddChoice(choice.get());
}

void SchemaManagerXmlData::ReadBounds(const XmlAttributes& attributes) {
    bounds_.reset(ReadBoundsAttributes(attributes));
    record_.bounds = bounds_.get();
}

void SchemaManagerXmlData::Spend(std::uint64_t& count, std::uint64_t amount, std::uint64_t limit) {
    count += amount;
    if (count > limit) NUO_RAISE(schema_too_large, "The schema is too large.");
}

}  // namespace korvanet::platform::assets
