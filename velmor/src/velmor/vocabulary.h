#pragma once

#include <cstdint>

/// The native classes behind the named value types. All are plain memory; their stored form is
/// their doubles in order, little-endian, and `UnitsValue` leaves its padding out.
namespace velmor {

struct Matrix44 {
    double m[16];
};

struct Color3 {
    double r, g, b;
};

struct Color4 {
    double r, g, b, a;
};

struct Vector3 {
    double x, y, z;
};

struct Vector4 {
    double x, y, z, w;
};

/// A number and the code of its unit.
struct UnitsValue {
    std::uint32_t unit;
    double value;
};

/// Lexicographic by the fields in order: -1, 0 or 1. A field that is neither less nor greater, such
/// as one that is not a number, counts as equal.
int compareNative(const Matrix44& left, const Matrix44& right);
int compareNative(const Color3& left, const Color3& right);
int compareNative(const Color4& left, const Color4& right);
int compareNative(const Vector3& left, const Vector3& right);
int compareNative(const Vector4& left, const Vector4& right);
int compareNative(const UnitsValue& left, const UnitsValue& right);

}  // namespace velmor
