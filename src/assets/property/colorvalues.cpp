#include "assets/property/colorvalues.h"

namespace korvanet::platform::assets {

namespace {

bool IsComponent(double value) {
    return value >= 0.0 && value <= 1.0;
}

}  // namespace

bool Color3Value::GetValue(double& r, double& g, double& b, double& a, std::uint64_t index) const {
    if (!CheckIndex(index, 1)) {
        return false;
    }
    const auto& color = Data<velmor::Color3>();
    r = color.r;
    g = color.g;
    b = color.b;
    a = 1.0;
    return true;
}

bool Color3Value::SetValue(double r, double g, double b, double, std::uint64_t index) {
    if (!CheckIndex(index, 1)) {
        return false;
    }
    if (!IsComponent(r) || !IsComponent(g) || !IsComponent(b)) {
        return RefuseValue();
    }
    Data<velmor::Color3>() = {r, g, b};
    NotifyValueChanged();
    return true;
}

bool Color4Value::GetValue(double& r, double& g, double& b, double& a, std::uint64_t index) const {
    if (!CheckIndex(index, 1)) {
        return false;
    }
    const auto& color = Data<velmor::Color4>();
    r = color.r;
    g = color.g;
    b = color.b;
    a = color.a;
    return true;
}

bool Color4Value::SetValue(double r, double g, double b, double a, std::uint64_t index) {
    if (!CheckIndex(index, 1)) {
        return false;
    }
    if (!IsComponent(r) || !IsComponent(g) || !IsComponent(b) || !IsComponent(a)) {
        return RefuseValue();
    }
    Data<velmor::Color4>() = {r, g, b, a};
    NotifyValueChanged();
    return true;
}

template <class Color>
bool ColorListTemplate<Color>::GetColor(Color& color, std::uint64_t index) const {
    if (!this->CheckIndex(index, this->GetDimension())) {
        color = {};
        return false;
    }
    color = this->Element(index);
    return true;
}

template <class Color>
bool ColorListTemplate<Color>::SetColor(const Color& color, std::uint64_t index) {
    if (!this->CheckIndex(index, this->GetDimension())) {
        return false;
    }
    this->Element(index) = color;
    this->NotifyValueChanged();
    return true;
}

template class ColorListTemplate<velmor::Color3>;
template class ColorListTemplate<velmor::Color4>;

bool Color3List::GetValue(double& r, double& g, double& b, double& a, std::uint64_t index) const {
    velmor::Color3 color;
    const bool found = GetColor(color, index);
    r = color.r;
    g = color.g;
    b = color.b;
    a = found ? 1.0 : 0.0;
    return found;
}

bool Color3List::SetValue(double r, double g, double b, double, std::uint64_t index) {
    return SetColor({r, g, b}, index);
}

bool Color4List::GetValue(double& r, double& g, double& b, double& a, std::uint64_t index) const {
    velmor::Color4 color;
    const bool found = GetColor(color, index);
    r = color.r;
    g = color.g;
    b = color.b;
    a = color.a;
    return found;
}

bool Color4List::SetValue(double r, double g, double b, double a, std::uint64_t index) {
    return SetColor({r, g, b, a}, index);
}

}  // namespace korvanet::platform::assets
