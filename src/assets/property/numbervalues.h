#pragma once

#include "assets/property/property.h"
#include "velmor/vocabulary.h"

namespace korvanet::platform::assets {

// How a number lies in its data. A bool is kept as a byte, since a file may hold any byte there.
template <class T>
struct NumberStorage {
    using type = T;
};
template <>
struct NumberStorage<bool> {
    using type = std::uint8_t;
};

// One number.
template <class T, class I>
class NumberValueTemplate : public ValueTemplate<I> {
public:
    using ValueTemplate<I>::GetValue;

    T GetValue(std::uint64_t index) const override {
        return this->CheckIndex(index, 1) ? static_cast<T>(Number()) : T();
    }
    bool SetValue(T value, std::uint64_t index) override {
        if (!this->CheckIndex(index, 1)) {
            return false;
        }
        if (IsOutOfBounds(value)) {
            return this->RefuseValue();
        }
        Store(value, index);
        return true;
    }
    virtual bool IsOutOfBounds(T value) const = 0;

protected:
    using Storage = typename NumberStorage<T>::type;

    void Store(T value, std::uint64_t) {
        Number() = value;
        this->NotifyValueChanged();
    }

    Storage& Number() const { return this->template Data<Storage>(); }
};

// A list of numbers.
template <class T, class I>
class NumberArrayValueTemplate : public ArrayValueTemplate<T, I> {
public:
    using ValueTemplate<I>::GetValue;

    T GetValue(std::uint64_t index) const override {
        return this->CheckIndex(index, this->GetDimension()) ? this->Element(index) : T();
    }
    bool SetValue(T value, std::uint64_t index) override {
        if (!this->CheckIndex(index, this->GetDimension())) {
            return false;
        }
        if (IsOutOfBounds(value)) {
            return this->RefuseValue();
        }
        Store(value, index);
        return true;
    }
    virtual bool IsOutOfBounds(T value) const = 0;

protected:
    void Store(T value, std::uint64_t index) {
        this->Element(index) = value;
        this->NotifyValueChanged();
    }
};

// A number with limits. They lie on the descriptor, so that all properties made from one schema
// share them.
template <class Base, class T>
class HasBoundsBody : public Base {
public:
    IBounds* GetBounds() const override { return this->Descriptor().bounds.get(); }

    bool IsOutOfBounds(T value) const override {
        const KRVTBounds* bounds = this->Descriptor().bounds.get();
        return bounds != nullptr && !bounds->IsInBounds(value);
    }

    // Sets the limits of all properties that share the descriptor. Null leaves them as they are.
    virtual void SetBounds(IBounds* bounds) {
        if (auto* given = dynamic_cast<KRVTBounds*>(bounds)) {
            this->Descriptor().bounds = given;
        }
    }
};

template <class Base>
class HasBoundsValue;
template <template <class, class> class Numbers, class T, class I>
class HasBoundsValue<Numbers<T, I>> : public HasBoundsBody<Numbers<T, I>, T> {};

class BooleanValue final : public NumberValueTemplate<bool, IBooleanValue> {
public:
    PropertyType GetType() const override { return PropertyType::kBoolean; }
    bool IsOutOfBounds(bool) const override { return false; }
};

class IntegerValue final : public HasBoundsValue<NumberValueTemplate<std::int32_t, IIntegerValue>> {
public:
    PropertyType GetType() const override { return PropertyType::kInteger; }
};

class IntegerList final
    : public HasBoundsValue<NumberArrayValueTemplate<std::int32_t, IIntegerValue>> {
public:
    PropertyType GetType() const override { return PropertyType::kInteger; }
};

class ScalarValue : public HasBoundsValue<NumberValueTemplate<double, IScalarValue>> {
public:
    PropertyType GetType() const override { return PropertyType::kScalar; }
};

class ScalarList final : public HasBoundsValue<NumberArrayValueTemplate<double, IScalarValue>> {
public:
    PropertyType GetType() const override { return PropertyType::kScalar; }
};

// A number with the code of its unit.
class GeneralUnitsValue final : public ScalarValue {
public:
    using ScalarValue::GetValue;

    std::uint32_t GetUnits() const override;
    bool SetUnits(std::uint32_t units) override;
    double GetValue(std::uint64_t index) const override;
    bool SetValue(double value, std::uint64_t index) override;
};

// A fixed row of numbers. It takes any number: the bounds that it may have are not asked.
template <std::uint64_t kSize>
class FixedScalarsValue : public ScalarValue {
public:
    using ScalarValue::GetValue;

    std::uint64_t GetDimension() const override { return kSize; }
    double GetValue(std::uint64_t index) const override {
        return CheckIndex(index, kSize) ? Numbers()[index] : 0.0;
    }
    bool SetValue(double value, std::uint64_t index) override {
        if (!CheckIndex(index, kSize)) {
            return false;
        }
        Numbers()[index] = value;
        NotifyValueChanged();
        return true;
    }

private:
    double* Numbers() const { return &Data<double>(); }
};

class Vector3Value final : public FixedScalarsValue<3> {};
class Vector4Value final : public FixedScalarsValue<4> {};
class Matrix44Value final : public FixedScalarsValue<16> {};

static_assert(sizeof(BooleanValue) == kValueObjectSize);
static_assert(sizeof(IntegerValue) == kValueObjectSize);
static_assert(sizeof(IntegerList) == kValueObjectSize);
static_assert(sizeof(ScalarValue) == kValueObjectSize);
static_assert(sizeof(ScalarList) == kValueObjectSize);
static_assert(sizeof(GeneralUnitsValue) == kValueObjectSize);
static_assert(sizeof(Vector3Value) == kValueObjectSize);
static_assert(sizeof(Vector4Value) == kValueObjectSize);
static_assert(sizeof(Matrix44Value) == kValueObjectSize);
static_assert(sizeof(velmor::Vector3) == 3 * sizeof(double));
static_assert(sizeof(velmor::Vector4) == 4 * sizeof(double));
static_assert(sizeof(velmor::Matrix44) == 16 * sizeof(double));

}  // namespace korvanet::platform::assets
