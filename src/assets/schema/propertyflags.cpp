#include "assets/schema/propertyflags.h"

#include "assets/manager/base/report.h"
#include "assets/property/fixedproperties.h"
#include "assets/property/propertytable.h"

namespace korvanet::platform::assets {
namespace {

using namespace PropertyFlags;

constexpr std::uint32_t kFirstUnknownFlag = 0x1000;
constexpr std::uint32_t kUriRoles = kUIDefinition | kImplementation | kTextureURI;
/** The flags that tell how and where a property is stored. */
constexpr std::uint32_t kStorageFlags = kReadOnly | kAllowMultipleValues | kDefinitionIteratorData;

bool HasListClass(PropertyType kind) {
    switch (kind) {
        case PropertyType::kString:
        case PropertyType::kUri:
        case PropertyType::kInteger:
        case PropertyType::kScalar:
        case PropertyType::kColor:
        case PropertyType::kChoice:
            return true;
        default:
            return false;
    }
}

bool ConnectionsConflict(PropertyType kind, std::uint32_t connections) {
    const bool holdsNothingElse =
        kind == PropertyType::kTexture || kind == PropertyType::kReference;
    return connections == kConnectionMask || (holdsNothingElse && connections == 0);
}

struct RequiredProperty {
    nuo::string_ref name;
    std::uint32_t storageFlags;
};

constexpr RequiredProperty kRequiredProperties[] = {
    {fixed_property::kBaseSchema, kDefinitionIteratorData},
    {fixed_property::kSchemaVersion, kReadOnly},
    {fixed_property::kAssetLibId, 0},
    {fixed_property::kAssetType, kReadOnly},
    {fixed_property::kLocalType, kReadOnly},
    {fixed_property::kLocalName, kReadOnly},
    {fixed_property::kUiName, kDefinitionIteratorData},
    {fixed_property::kKeyword, kDefinitionIteratorData | kAllowMultipleValues},
    {fixed_property::kCategory, kDefinitionIteratorData | kAllowMultipleValues},
    {fixed_property::kDescription, kDefinitionIteratorData},
    {fixed_property::kThumbnail, kDefinitionIteratorData | kAllowMultipleValues},
    {fixed_property::kHidden, kDefinitionIteratorData},
    {fixed_property::kVersionGuid, kDefinitionIteratorData},
    {fixed_property::kVersion, 0},
    {fixed_property::kRevision, 0},
    {fixed_property::kUiDefinition, kReadOnly},
    {fixed_property::kAdvancedUiDefinition, kReadOnly},
};

}  // namespace

std::uint32_t CheckPropertyFlags(PropertyType kind, std::uint32_t flags) {
    const auto has = [flags](std::uint32_t mask) { return (flags & mask) != 0; };
    std::uint32_t code = 0;
    if (flags >= kFirstUnknownFlag) code |= flag_conflict::kUnknownFlag;
    if (has(kReadOnly) && has(kDefinitionIteratorData)) {
        code |= flag_conflict::kReadOnlyIteratorData;
    }
    if (has(kAllowMultipleValues) && !HasListClass(kind)) code |= flag_conflict::kListOfOtherKind;
    if (has(kUnits) && kind != PropertyType::kScalar) code |= flag_conflict::kUnitOfOtherKind;
    if (has(kUriRoles) && kind != PropertyType::kUri) code |= flag_conflict::kUriRoleOfOtherKind;
    if (ConnectionsConflict(kind, flags & kConnectionMask)) code |= flag_conflict::kConnections;
    return code;
}

void WarnFlagConflict(nuo::string_ref id, std::uint32_t code) {
    HalvernWarn("Property flags conflict in Node: ", id, ", ErrorCode: ", code).Deliver();
}

bool HasRequiredProperties(const PropertyTableImp& table) {
    for (const RequiredProperty& required : kRequiredProperties) {
        const PropertyBase* property = table.FindProperty(required.name);
        if (property == nullptr) return false;
        if ((property->GetFlags() & kStorageFlags) != required.storageFlags) return false;
    }
    return true;
}

}  // namespace korvanet::platform::assets
