#pragma once

#include <cstdint>

#include "assets/property/property.h"
#include "velmor/array.h"
#include "velmor/object.h"

namespace korvanet::platform::assets {

// The native element at `index` of a value, single or list, for code of the library; null when
// there is none or when it is of another class. A change through it is told to nobody.
//
//     if (nuo::string* text = ElementOf<nuo::string>(property)) ...
template <class T>
T* ElementOf(PropertyBase& property, std::uint64_t index = 0) {
    velmor::Object data = property.DataObject();
    if (auto* elements = velmor::bindOrNull<velmor::Array>(data)) {
        if (index >= elements->size()) {
            return nullptr;
        }
        data = (*elements)[index];
    } else if (index != 0) {
        return nullptr;
    }
    return velmor::bindOrNull<T>(data);
}

template <class T>
const T* ElementOf(const PropertyBase& property, std::uint64_t index = 0) {
    return ElementOf<T>(const_cast<PropertyBase&>(property), index);
}

}  // namespace korvanet::platform::assets
