#pragma once

#include <cstdint>

#include "assets/property/bounds.h"
#include "assets/property/choice.h"
#include "assets/property/intrusive.h"
#include "assets/schema/schemapropertyrecord.h"
#include "assets/serialization/io/xmlhandler.h"
#include "nuo/common/exception.h"
#include "nuo/common/string.h"

// Reads the format of docs/formats/schema_xml.md.

namespace korvanet::platform::assets {

class KRVTSchemaDefinition;

/** A document that is far larger than any schema, or a set of schemas than any such set. */
NUO_DECLARE_EXCEPTION(schema_too_large);

/**
 * What one schema file may hold; beyond, it is refused. These bound nothing but the file: what many
 * small files make of each other is bounded by kMaxInheritedProperties.
 */
inline constexpr std::uint64_t kMaxSchemaBytes = 4u << 20;
inline constexpr std::uint64_t kMaxSchemaElements = 16384;
inline constexpr std::uint64_t kMaxSchemaListElements = 1u << 20;

/**
 * Fills a schema from the events of one schema file. Only the depth of an element counts: children
 * of the root are properties and directives, all below belongs to the child of the root above it.
 *
 * A property that can't be made is reported and left out; what ends the reading is a document that
 * is not well formed, and `schema_too_large`.
 */
class SchemaManagerXmlData final : public IXmlCallBack {
public:
    explicit SchemaManagerXmlData(KRVTSchemaDefinition& schema) : schema_(schema) {}

    void OnXml(XmlDriverState& driver, const nuo::string& name, const nuo::string& text,
               const XmlAttributes& attributes, bool start) override;

private:
    void StartElement(const nuo::string& name, const XmlAttributes& attributes, std::size_t depth);
    void EndProperty();
    void StartProperty(const nuo::string& name, const XmlAttributes& attributes);
    void Finish();
    void AddChoice(const XmlAttributes& attributes);
    void ReadBounds(const XmlAttributes& attributes);
    void Spend(std::uint64_t& count, std::uint64_t amount, std::uint64_t limit);

    SchemaPropertyRecord record_;
    intrusive_ptr<KRVTBounds> bounds_;
    intrusive_ptr<KRVTChoiceList> choices_;
    KRVTSchemaDefinition& schema_;
    std::uint64_t elements_ = 0;
    std::uint64_t list_elements_ = 0;
};

}  // namespace korvanet::platform::assets
