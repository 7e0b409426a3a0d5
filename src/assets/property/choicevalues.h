#pragma once

#include "assets/property/numbervalues.h"

namespace korvanet::platform::assets {

// A number, or a list of numbers, each of which is the value of an entry of a choice list. Like
// bounds the list lies on the descriptor.
template <class Base>
class ChoiceBaseValue : public Base {
public:
    using Base::IsEqual;

    PropertyType GetType() const override { return PropertyType::kChoice; }
    IChoiceList* GetChoices() const override { return this->Descriptor().choices.get(); }

    // A value that no entry has is refused without a report. Bounds are not asked.
    bool SetValue(std::int32_t value, std::uint64_t index) override {
        if (!this->CheckIndex(index, this->GetDimension())) {
            return false;
        }
        const KRVTChoiceList* choices = this->Descriptor().choices.get();
        if (choices == nullptr || !choices->HasValue(value)) {
            return false;
        }
        this->Store(value, index);
        return true;
    }

    // Choices are equal only when both have a list to choose from and the lists are equal too.
    bool IsEqual(const IValue* other) const override {
        const auto* same = this->SameClass(other);
        const KRVTChoiceList* own = this->Descriptor().choices.get();
        return same != nullptr && own != nullptr &&
               own->IsEqual(same->Descriptor().choices.get()) && Base::IsEqual(other);
    }

    // Sets the list of all properties that share the descriptor. Null leaves it as it is.
    virtual void SetChoices(IChoiceList* choices) {
        if (auto* given = dynamic_cast<KRVTChoiceList*>(choices)) {
            this->Descriptor().choices = given;
        }
    }
};

class ChoiceValue final
    : public ChoiceBaseValue<HasBoundsValue<NumberValueTemplate<std::int32_t, IChoiceListValue>>> {
};

class ChoiceListValue final
    : public ChoiceBaseValue<
          HasBoundsValue<NumberArrayValueTemplate<std::int32_t, IChoiceListValue>>> {};

static_assert(sizeof(ChoiceValue) == kValueObjectSize);
static_assert(sizeof(ChoiceListValue) == kValueObjectSize);

}  // namespace korvanet::platform::assets
