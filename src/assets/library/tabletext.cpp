#include "assets/library/tabletext.h"

#include "velmor/array.h"
#include "velmor/object.h"

namespace korvanet::platform::assets {
namespace {

// The value of a property as an object of the native class T, or null.
template <class T>
T* NativeValue(const PropertyTableImp& table, nuo::string_ref name) {
    PropertyBase* const property = table.FindProperty(name);
    return property != nullptr ? velmor::bindOrNull<T>(property->DataObject()) : nullptr;
}

template <class T>
bool Set(PropertyTableImp& table, nuo::string_ref name, const T& value) {
    T* const place = NativeValue<T>(table, name);
    if (place != nullptr) *place = value;
    return place != nullptr;
}

}  // namespace

nuo::string TextOf(const PropertyTableImp& table, nuo::string_ref property) {
    const std::vector<nuo::string> texts = TextsOf(table, property);
    return texts.empty() ? nuo::string() : texts.front();
}

std::vector<nuo::string> TextsOf(const PropertyTableImp& table, nuo::string_ref property) {
    if (const auto* text = NativeValue<nuo::string>(table, property)) return {*text};
    std::vector<nuo::string> texts;
    const auto* list = NativeValue<velmor::Array>(table, property);
    if (list == nullptr || !velmor::isNative<nuo::string>(list->type())) return texts;
    for (std::uint64_t index = 0; index < list->size(); ++index)
        texts.push_back(*static_cast<const nuo::string*>((*list)[index].data()));
    return texts;
}

bool SetText(PropertyTableImp& table, nuo::string_ref property, nuo::string_ref text) {
    return Set(table, property, nuo::string(text));
}

bool SetNumber(PropertyTableImp& table, nuo::string_ref property, std::int32_t number) {
    return Set(table, property, number);
}

bool SetTruth(PropertyTableImp& table, nuo::string_ref property, bool truth) {
    return Set(table, property, truth);
}

}  // namespace korvanet::platform::assets
