#pragma once

#include <cstdint>
#include <vector>

#include <korvanet/platform/assets/ipropertytable.h>

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

class KRVTBounds;
class KRVTChoiceList;

/**
 * All that is told of one property before it is made: filled from an element of a schema file or
 * from the arguments of an `Add...` operation, and then given to AddProperty, so that both obey the
 * same rules.
 */
struct SchemaPropertyRecord {
    nuo::string id;
    nuo::string typeAttr;
    /** Name of the element, such as "Float"; it selects the builder. */
    nuo::string element;
    /** The attribute `val` as it stands; `values` are its pieces. */
    nuo::string val;
    nuo::string label;
    nuo::string unit;
    nuo::string alias;
    nuo::string file;
    std::vector<nuo::string> values;
    // Colour components; a vector uses the first three.
    std::vector<double> r;
    std::vector<double> g;
    std::vector<double> b;
    std::vector<double> a;
    std::uint32_t flags = 0;
    /** Not owned: a property takes its share when it is made, and none when it is refused. */
    KRVTBounds* bounds = nullptr;
    KRVTChoiceList* choices = nullptr;
    double number = 0.0;
    std::int32_t integer = 0;
    bool boolean = false;
    bool isTextureReference = false;
    /** Kind of the element by the grammar, which need not be that of the value class made. */
    PropertyType kind = PropertyType::kUnspecified;
    bool fromXml = false;
};

}  // namespace korvanet::platform::assets
