#pragma once

#include <korvanet/platform/assets/ipropertytable.h>

#include "assets/property/intrusive.h"

namespace korvanet::platform::assets {

// The limits of a number: any of the two ends may be missing, and may belong to the range or not.
class KRVTBounds final : public IBounds, public IntrusiveCounter {
public:
    // A percentage has the limits 0 and 1, both inclusive, and the increment 1: the other arguments
    // then count for nothing.
    KRVTBounds(bool hasMinimum, double minimum, bool minimumIsInclusive, bool hasMaximum,
               double maximum, bool maximumIsInclusive, double incrementSize, bool isPercentage);

    bool HasMinimum() const override { return has_minimum_; }
    double GetMinimum() const override { return minimum_; }
    bool MinimumIsInclusive() const override { return minimum_is_inclusive_; }
    bool HasMaximum() const override { return has_maximum_; }
    double GetMaximum() const override { return maximum_; }
    bool MaximumIsInclusive() const override { return maximum_is_inclusive_; }
    double GetIncrementSize() const override { return increment_size_; }
    bool IsPercentage() const override { return is_percentage_; }
    bool IsInBounds(double value) const override {
        return IsAboveMinimum(value) && IsBelowMaximum(value);
    }

    // The nearest value that is in bounds. An exclusive end is missed by the machine epsilon, added
    // as it is and not scaled to the value; equal ends give the minimum.
    double Clamp(double value) const;
    // The same for whole numbers, which miss an exclusive end by one.
    std::int32_t Clamp(std::int32_t value) const;

    // Whether all eight fields are exactly the same.
    bool Equals(const KRVTBounds& other) const;

private:
    bool IsAboveMinimum(double value) const {
        return !has_minimum_ || value > minimum_ || (minimum_is_inclusive_ && value == minimum_);
    }
    bool IsBelowMaximum(double value) const {
        return !has_maximum_ || value < maximum_ || (maximum_is_inclusive_ && value == maximum_);
    }
    double ClampBy(double value, double step) const;

    double minimum_;
    double maximum_;
    double increment_size_;
    bool has_minimum_;
    bool minimum_is_inclusive_;
    bool has_maximum_;
    bool maximum_is_inclusive_;
    bool is_percentage_;
};

// Whether both are missing, or both are there and equal field by field.
bool SameBounds(const KRVTBounds* a, const KRVTBounds* b);

// Body of the exported factory; the result is counted by nobody yet.
KRVTBounds* MakeBounds(bool hasMinimum, double minimum, bool minimumIsInclusive, bool hasMaximum,
                       double maximum, bool maximumIsInclusive, double incrementSize,
                       bool isPercentage);

}  // namespace korvanet::platform::assets
