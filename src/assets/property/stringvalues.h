#pragma once

#include "assets/property/property.h"
#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// What text values do with one text, whatever holds it.
class StringAccess {
public:
    // False for a null `text`.
    static bool Store(nuo::string& place, const wchar_t* text);
    static bool Load(const nuo::string& place, IString& text);
    // The message for the text as a key where the property is local, else the text itself.
    static bool LoadLocalized(const PropertyDescriptor& descriptor, const nuo::string& place,
                              IString& text, const wchar_t* locale);
};

// The operations of texts in terms of `Place(index)` of the derived class.
template <class Base>
class StringOperations : public Base {
public:
    using Base::GetValue;

    bool GetValue(IString& value, std::uint64_t index) const override {
        return this->CheckIndex(index, this->GetDimension()) &&
               StringAccess::Load(Place(index), value);
    }
    bool SetValue(const wchar_t* value, std::uint64_t index) override {
        if (!this->CheckIndex(index, this->GetDimension()) ||
            !StringAccess::Store(Place(index), value)) {
            return false;
        }
        this->NotifyValueChanged();
        return true;
    }
    bool GetLocalizedValue(IString& value, const wchar_t* locale,
                           std::uint64_t index) const override {
        return this->CheckIndex(index, this->GetDimension()) &&
               StringAccess::LoadLocalized(this->Descriptor(), Place(index), value, locale);
    }

    // The text at an index below GetDimension(), for code of the library; a change is told to
    // nobody.
    virtual nuo::string& Place(std::uint64_t index) const = 0;
};

// One text.
template <class I>
class StringValueTemplate : public StringOperations<ValueTemplate<I>> {
public:
    nuo::string& Place(std::uint64_t) const final { return this->template Data<nuo::string>(); }
};

// A list of texts.
template <class I>
class StringArrayValueTemplate : public StringOperations<ArrayValueTemplate<nuo::string, I>> {
public:
    nuo::string& Place(std::uint64_t index) const final { return this->Element(index); }
};

class StringValue final : public StringValueTemplate<IStringValue> {
public:
    PropertyType GetType() const override { return PropertyType::kString; }
};

class StringList final : public StringArrayValueTemplate<IStringValue> {
public:
    PropertyType GetType() const override { return PropertyType::kString; }
};

class DateTimeValue final : public StringValueTemplate<IDateTimeValue> {
public:
    PropertyType GetType() const override { return PropertyType::kDateTime; }
};

class UuidValue final : public StringValueTemplate<IUuidValue> {
public:
    PropertyType GetType() const override { return PropertyType::kUuid; }
};

static_assert(sizeof(StringValue) == kValueObjectSize);
static_assert(sizeof(StringList) == kValueObjectSize);
static_assert(sizeof(DateTimeValue) == kValueObjectSize);
static_assert(sizeof(UuidValue) == kValueObjectSize);

}  // namespace korvanet::platform::assets
