#include "assets/property/bounds.h"

#include <limits>

namespace korvanet::platform::assets {

namespace {

// Machine epsilon of a double, applied absolutely: the smallest step away from an end near zero.
constexpr double kStep = 2.220446049250313e-16;
constexpr double kIntegerStep = 1.0;

}  // namespace

KRVTBounds::KRVTBounds(bool hasMinimum, double minimum, bool minimumIsInclusive, bool hasMaximum,
                       double maximum, bool maximumIsInclusive, double incrementSize,
                       bool isPercentage)
    : minimum_(isPercentage ? 0.0 : minimum),
      maximum_(isPercentage ? 1.0 : maximum),
      increment_size_(isPercentage ? 1.0 : incrementSize),
      has_minimum_(isPercentage || hasMinimum),
      minimum_is_inclusive_(isPercentage || minimumIsInclusive),
      has_maximum_(isPercentage || hasMaximum),
      maximum_is_inclusive_(isPercentage || maximumIsInclusive),
      is_percentage_(isPercentage) {}

double KRVTBounds::ClampBy(double value, double step) const {
    if (IsInBounds(value)) {
        return value;
    }
    if (has_minimum_ && has_maximum_ && minimum_ == maximum_) {
        return minimum_;
    }
    if (!IsAboveMinimum(value)) {
        return minimum_is_inclusive_ ? minimum_ : minimum_ + step;
    }
    return maximum_is_inclusive_ ? maximum_ : maximum_ - step;
}

double KRVTBounds::Clamp(double value) const {
    return ClampBy(value, kStep);
}

std::int32_t KRVTBounds::Clamp(std::int32_t value) const {
    const double clamped = ClampBy(value, kIntegerStep);
    // Limits are doubles and may lie beyond what an integer holds, where a cast has no meaning.
    if (!(clamped > std::numeric_limits<std::int32_t>::min())) {
        return std::numeric_limits<std::int32_t>::min();
    }
    if (clamped >= std::numeric_limits<std::int32_t>::max()) {
        return std::numeric_limits<std::int32_t>::max();
    }
    return static_cast<std::int32_t>(clamped);
}

bool KRVTBounds::Equals(const KRVTBounds& other) const {
    return minimum_ == other.minimum_ && maximum_ == other.maximum_ &&
           increment_size_ == other.increment_size_ && has_minimum_ == other.has_minimum_ &&
           minimum_is_inclusive_ == other.minimum_is_inclusive_ &&
           has_maximum_ == other.has_maximum_ &&
           maximum_is_inclusive_ == other.maximum_is_inclusive_ &&
           is_percentage_ == other.is_percentage_;
}

bool SameBounds(const KRVTBounds* a, const KRVTBounds* b) {
    return a == nullptr || b == nullptr ? a == b : a->Equals(*b);
}

KRVTBounds* MakeBounds(bool hasMinimum, double minimum, bool minimumIsInclusive, bool hasMaximum,
                       double maximum, bool maximumIsInclusive, double incrementSize,
                       bool isPercentage) {
    return new KRVTBounds(hasMinimum, minimum, minimumIsInclusive, hasMaximum, maximum,
                          maximumIsInclusive, incrementSize, isPercentage);
}

}  // namespace korvanet::platform::assets
