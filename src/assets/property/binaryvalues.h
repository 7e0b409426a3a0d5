#pragma once

#include "assets/property/property.h"

namespace korvanet::platform::assets {

class BinaryValue final : public ValueTemplate<IBinaryValue> {
public:
    PropertyType GetType() const override { return PropertyType::kBinary; }
    std::uint64_t GetSize() const override;
    const void* GetData() const override;
    // Observers do not hear of new bytes.
    bool SetData(const void* data, std::uint64_t size, std::uint64_t index) override;
};

// A value of a kind that this version does not know.
class UnSpecifiedValue final : public ValueTemplate<IUnSpecifiedValue> {
public:
    PropertyType GetType() const override { return PropertyType::kUnspecified; }
};

static_assert(sizeof(BinaryValue) == kValueObjectSize);
static_assert(sizeof(UnSpecifiedValue) == kValueObjectSize);

}  // namespace korvanet::platform::assets
