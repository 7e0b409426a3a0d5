#pragma once

#include "assets/property/property.h"

namespace korvanet::platform::assets {

// A place for connected assets. The assets stand in "link"; the value itself holds nothing, so two
// of one class are always equal.
template <class I>
class ReferenceValueTemplate : public ValueTemplate<I> {
public:
    using ValueTemplate<I>::IsEqual;

    bool IsEqual(const IValue* other) const override { return this->SameClass(other) != nullptr; }
};

class ReferenceValue final : public ReferenceValueTemplate<IReferenceValue> {
public:
    PropertyType GetType() const override { return PropertyType::kReference; }
};

class TextureValue final : public ReferenceValueTemplate<ITextureValue> {
public:
    PropertyType GetType() const override { return PropertyType::kTexture; }
};

static_assert(sizeof(ReferenceValue) == kValueObjectSize);
static_assert(sizeof(TextureValue) == kValueObjectSize);

}  // namespace korvanet::platform::assets
