#include "assets/library/schemapart.h"

#include <algorithm>

#include "assets/library/libraryparts.h"
#include "assets/library/recordlayout.h"
#include "assets/package/jpkfs.h"
#include "assets/schema/propertyflags.h"
#include "assets/schema/schemadefinition.h"
#include "assets/schema/schemamanager.h"
#include "assets/schema/schemaxmlreader.h"
#include "nuo/common/buffer_archive.h"

namespace korvanet::platform::assets {
namespace {

// An element has its value as a list, and a colour has one for each component.
constexpr std::uint64_t kListsOfElement = 5;

bool BreaksAPath(char c) {
    return c == '/' || static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

// Of all elements, as the reader counts them. A text in XML holds no other "<".
std::uint64_t CountElements(nuo::string_ref text) {
    std::uint64_t count = 0;
    for (std::uint64_t at = 0; at + 1 < text.size(); ++at)
        if (text[at] == '<' && text[at + 1] != '/') ++count;
    return count;
}

}  // namespace

bool CanNameSchemaPart(nuo::string_ref id) {
    return !id.empty() && id.size() <= kLongestName &&
           std::none_of(id.begin(), id.end(), BreaksAPath) &&
           IsUserPath(nuo::string(id, kSchemaExtension));
}

bool IsReadableSchema(nuo::string_ref text) {
    if (text.empty() || text.size() > kMaxSchemaBytes) return false;
    const std::uint64_t elements = CountElements(text);
    const auto commas = static_cast<std::uint64_t>(std::count(text.begin(), text.end(), ','));
    return elements <= kMaxSchemaElements &&
           commas + elements * kListsOfElement <= kMaxSchemaListElements;
}

bool KeepsItsShape(const SchemaManager& schemas, const KRVTSchemaDefinition& schema,
                   nuo::string_ref text) {
    const auto properties = schema.Properties();
    const bool whole =
        std::all_of(properties.begin(), properties.end(), [](const PropertyBase* property) {
            return CheckPropertyFlags(property->GetType(), property->GetFlags()) == 0;
        });
    if (!whole) return false;
    const auto* first = reinterpret_cast<const nuo::byte*>(text.data());
    const nuo::buffer<nuo::byte> bytes(first, first + text.size());
    nuo::archive::buffer_in archive(bytes);
    KRVTSchemaDefinition* const base = schema.BaseDefinition();
    const auto again = schemas.ReadAlone(archive, base);
    return again && again->Id() == schema.Id() &&
           (base == nullptr || again->BaseId() == base->Id()) &&
           RecordLayout(*again).SameForm(RecordLayout(schema));
}

}  // namespace korvanet::platform::assets
