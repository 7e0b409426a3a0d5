#pragma once

#include "assets/property/property.h"
#include "velmor/vocabulary.h"

namespace korvanet::platform::assets {

// A colour of three components, each from 0 to 1. Alpha reads as 1 and is ignored in setting.
class Color3Value final : public ValueTemplate<IColorValue> {
public:
    using ValueTemplate<IColorValue>::GetValue;

    PropertyType GetType() const override { return PropertyType::kColor; }
    bool HasAlpha() const override { return false; }
    bool GetValue(double& r, double& g, double& b, double& a, std::uint64_t index) const override;
    bool SetValue(double r, double g, double b, double a, std::uint64_t index) override;
};

// A colour of four components, each from 0 to 1.
class Color4Value final : public ValueTemplate<IColorValue> {
public:
    using ValueTemplate<IColorValue>::GetValue;

    PropertyType GetType() const override { return PropertyType::kColor; }
    bool HasAlpha() const override { return true; }
    bool GetValue(double& r, double& g, double& b, double& a, std::uint64_t index) const override;
    bool SetValue(double r, double g, double b, double a, std::uint64_t index) override;
};

// A list of colours. Unlike the single ones it takes any numbers: the defaults of a schema lie in
// 0 to 255.
template <class Color>
class ColorListTemplate : public ArrayValueTemplate<Color, IColorValue> {
public:
    using ValueTemplate<IColorValue>::GetValue;

    PropertyType GetType() const override { return PropertyType::kColor; }

    // Zero-fills `color` and returns false for a wrong index.
    virtual bool GetColor(Color& color, std::uint64_t index) const;
    virtual bool SetColor(const Color& color, std::uint64_t index);
    virtual bool IsOutOfBounds(const Color&) const { return false; }
};

class Color3List final : public ColorListTemplate<velmor::Color3> {
public:
    using ColorListTemplate<velmor::Color3>::GetValue;

    bool HasAlpha() const override { return false; }
    bool GetValue(double& r, double& g, double& b, double& a, std::uint64_t index) const override;
    bool SetValue(double r, double g, double b, double a, std::uint64_t index) override;
};

class Color4List final : public ColorListTemplate<velmor::Color4> {
public:
    using ColorListTemplate<velmor::Color4>::GetValue;

    bool HasAlpha() const override { return true; }
    bool GetValue(double& r, double& g, double& b, double& a, std::uint64_t index) const override;
    bool SetValue(double r, double g, double b, double a, std::uint64_t index) override;
};

static_assert(sizeof(Color3Value) == kValueObjectSize);
static_assert(sizeof(Color4Value) == kValueObjectSize);
static_assert(sizeof(Color3List) == kValueObjectSize);
static_assert(sizeof(Color4List) == kValueObjectSize);

}  // namespace korvanet::platform::assets
