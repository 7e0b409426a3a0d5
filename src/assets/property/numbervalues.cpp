#include "assets/property/numbervalues.h"

#include "assets/manager/base/report.h"
#include "assets/property/units.h"

namespace korvanet::platform::assets {

std::uint32_t GeneralUnitsValue::GetUnits() const {
    return static_cast<std::uint32_t>(Data<velmor::UnitsValue>().unit);
}

bool GeneralUnitsValue::SetUnits(std::uint32_t units) {
    if (Descriptor().Has(PropertyFlags::kUnits) && !IsLengthUnit(units)) {
        HalvernError("Unsupported unit type").Deliver();
        return false;
    }
    Data<velmor::UnitsValue>().unit = units;
    return true;
}

double GeneralUnitsValue::GetValue(std::uint64_t index) const {
    return CheckIndex(index, 1) ? Data<velmor::UnitsValue>().value : 0.0;
}

bool GeneralUnitsValue::SetValue(double value, std::uint64_t index) {
    if (!CheckIndex(index, 1)) {
        return false;
    }
    const IBounds* bounds = GetBounds();
    if (bounds != nullptr && !bounds->IsInBounds(value)) {
        return RefuseValue();
    }
    Data<velmor::UnitsValue>().value = value;
    NotifyValueChanged();
    return true;
}

}  // namespace korvanet::platform::assets
