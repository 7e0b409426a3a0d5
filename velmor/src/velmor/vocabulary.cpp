#include "velmor/vocabulary.h"

#include <cstddef>

namespace velmor {
namespace {

static_assert(sizeof(Matrix44) == 128 && sizeof(Color3) == 24 && sizeof(Color4) == 32);
static_assert(sizeof(Vector3) == 24 && sizeof(Vector4) == 32 && sizeof(UnitsValue) == 16);
static_assert(offsetof(UnitsValue, value) == 8);

template <class Number>
int order(Number left, Number right) {
    return left < right ? -1 : right < left ? 1 : 0;
}

template <std::size_t Count>
int orderRows(const double (&left)[Count], const double (&right)[Count]) {
    for (std::size_t i = 0; i < Count; ++i) {
        if (const int result = order(left[i], right[i])) return result;
    }
    return 0;
}

}  // namespace

int compareNative(const Matrix44& left, const Matrix44& right) {
    return orderRows(left.m, right.m);
}

int compareNative(const Color3& left, const Color3& right) {
    return orderRows({left.r, left.g, left.b}, {right.r, right.g, right.b});
}

int compareNative(const Color4& left, const Color4& right) {
    return orderRows({left.r, left.g, left.b, left.a}, {right.r, right.g, right.b, right.a});
}

int compareNative(const Vector3& left, const Vector3& right) {
    return orderRows({left.x, left.y, left.z}, {right.x, right.y, right.z});
}

int compareNative(const Vector4& left, const Vector4& right) {
    return orderRows({left.x, left.y, left.z, left.w}, {right.x, right.y, right.z, right.w});
}

int compareNative(const UnitsValue& left, const UnitsValue& right) {
    const int result = order(left.unit, right.unit);
    return result != 0 ? result : order(left.value, right.value);
}

}  // namespace velmor
