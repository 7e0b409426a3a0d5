#pragma once

#include <cstdint>

#include "assets/property/bounds.h"
#include "assets/property/choice.h"
#include "assets/property/intrusive.h"
#include "nuo/common/string.h"
#include "velmor/type.h"

namespace korvanet::platform::assets {

struct ModuleContext;

// How a value is copied to fresh memory: by its bytes, by sharing a text, element by element, or by
// the methods of its type.
enum class DataForm : std::uint8_t { kPod, kString, kArray, kOther };

// What all copies of one property share: a schema's property and every property cloned from it
// point to one descriptor. Once the schema is read a merge of schemas may replace label, flag word,
// bounds and choices, inheriting the flag word, and the setters of values bounds and choices.
class PropertyDescriptor : public IntrusiveCounter {
public:
    // `type` is the composite type of a value class.
    PropertyDescriptor(const ModuleContext& moduleContext, velmor::Type valueType,
                       nuo::string propertyName, nuo::string defaultLabel, std::uint32_t flagWord);

    // A descriptor of its own with the same content, counted by nobody yet.
    PropertyDescriptor* Copy() const;

    bool Has(std::uint32_t mask) const { return (flags & mask) != 0; }

    const nuo::string name;
    nuo::string label;
    const velmor::Type type;
    std::uint32_t flags;
    intrusive_ptr<KRVTBounds> bounds;
    intrusive_ptr<KRVTChoiceList> choices;
    const ModuleContext* const context;

    // The places of the members of `type`, looked up once so that a value is one addition away.
    const velmor::Type operationType;
    const velmor::Type dataType;
    const DataForm dataForm;
    const std::uint64_t linkOffset;
    const std::uint64_t dataOffset;
};

}  // namespace korvanet::platform::assets
