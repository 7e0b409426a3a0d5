#include "assets/schema/propertydata.h"

#include "assets/property/propertyaccess.h"
#include "assets/property/urivalues.h"

namespace korvanet::platform::assets {
namespace {

bool IsText(velmor::Type type) {
    return type.valid() && type.methods().typeinfo() == velmor::TypeInfo<nuo::string>::instance();
}

/** Null unless the data is an array of texts; an array without a type has no elements. */
const velmor::Array* ListOf(const PropertyBase& property) {
    const auto* list = DataAs<velmor::Array>(property);
    return list != nullptr && IsText(list->type()) ? list : nullptr;
}

}  // namespace

std::uint64_t TextCount(const PropertyBase& property) {
    if (const velmor::Array* list = ListOf(property)) return list->size();
    return DataAs<nuo::string>(property) != nullptr ? 1 : 0;
}

const nuo::string* TextAt(const PropertyBase& property, std::uint64_t index) {
    return ElementOf<nuo::string>(property, index);
}

bool SetTextAt(PropertyBase& property, std::uint64_t index, const nuo::string& text) {
    auto* place = const_cast<nuo::string*>(TextAt(property, index));
    if (place == nullptr) return false;
    *place = text;
    ForgetResolutions(property);
    return true;
}

velmor::Array* TextList(PropertyBase& property) {
    ForgetResolutions(property);
    return const_cast<velmor::Array*>(ListOf(property));
}

}  // namespace korvanet::platform::assets
