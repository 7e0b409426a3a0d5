#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "velmor/namespace.h"
#include "velmor/type.h"

namespace korvanet::platform::assets {

struct ModuleContext;

// The value classes, numbered by their place among the handles of HalvernTypes.
enum class ValueClass : std::uint32_t {
    kBinaryValue = 6,
    kBooleanValue,
    kChoiceValue,
    kChoiceListValue,
    kColor3List,
    kColor3Value,
    kColor4List,
    kColor4Value,
    kDateTimeValue,
    kGeneralUnitsValue,
    kIntegerList,
    kIntegerValue,
    kMatrix44Value,
    kReferenceValue,
    kScalarList,
    kScalarValue,
    kStringList,
    kStringValue,
    kTextureURIValue,
    kTextureValue,
    kUnSpecifiedValue,
    kUriValue,
    kUriList,
    kUuidValue,
    kVector3Value,
    kVector4Value,
};

inline constexpr std::size_t kFirstValueClass = 6;
inline constexpr std::size_t kEndOfValueClasses = 32;

// The reflected types of the asset layer, filled once by InitializeHalvernTypes.
//
// A handle is null when the runtime lacks the type, as the data type of a value class may be
// missing; nobody can make a value of such a class.
class HalvernTypes {
public:
    velmor::Namespace Namespaces() const { return namespaces_; }

    velmor::Type Asset() const { return types_[1]; }
    velmor::Type Connection() const { return types_[3]; }

    // The composite type of a value class: "operation", "link" and "data".
    velmor::Type Value(ValueClass value) const { return types_[static_cast<std::size_t>(value)]; }

    // The handle at a position from 1 to 31.
    velmor::Type At(std::size_t position) const { return types_[position]; }

private:
    friend class HalvernTypesBuilder;

    velmor::Namespace namespaces_;
    std::array<velmor::Type, kEndOfValueClasses> types_;
};

// Name of the value class, such as "ScalarValue".
const char* ValueClassName(ValueClass value);

// Registers the types of the asset layer below `root`, a namespace in which the runtime's own types
// were started, and fills `context.types`. Where another context has done so already, the types are
// taken over by name.
void InitializeHalvernTypes(velmor::Namespace root, ModuleContext& context);

}  // namespace korvanet::platform::assets
