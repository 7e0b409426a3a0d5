#pragma once

#include <cstdint>

#include "assets/property/property.h"
#include "nuo/common/string.h"
#include "velmor/array.h"
#include "velmor/object.h"

namespace korvanet::platform::assets {

/** The data of a property when it is of the native class `T`, else null. */
template <class T>
T* DataAs(PropertyBase& property) {
    return velmor::bindOrNull<T>(property.DataObject());
}

template <class T>
const T* DataAs(const PropertyBase& property) {
    return velmor::bindOrNull<T>(property.DataObject());
}

/** How many texts a property holds: 1 for a single one, 0 for a value that is no text. */
std::uint64_t TextCount(const PropertyBase& property);

/** The text at `index`, of a single value or of a list; null when there is none. */
const nuo::string* TextAt(const PropertyBase& property, std::uint64_t index);

/**
 * Replaces the text at `index`, and tells nobody. False, and nothing is changed, when there is no
 * such text.
 */
bool SetTextAt(PropertyBase& property, std::uint64_t index, const nuo::string& text);

/** The list of texts of a property for a change, or null when it holds none. */
velmor::Array* TextList(PropertyBase& property);

}  // namespace korvanet::platform::assets
