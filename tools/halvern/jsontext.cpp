#include "jsontext.h"

#include <charconv>
#include <cmath>

namespace halvern {
namespace {

using nlohmann::json;

std::string Quoted(const std::string& text) {
    return json(text).dump(-1, ' ', false, json::error_handler_t::replace);
}

// The JSON library has a writer of its own, which now and then gives a number a digit too much.
void Append(const json& value, std::string& text) {
    const char* separator = "";
    if (value.is_object()) {
        text += '{';
        for (const auto& [name, member] : value.items()) {
            text += separator + Quoted(name) + ": ";
            Append(member, text);
            separator = ", ";
        }
        text += '}';
    } else if (value.is_array()) {
        text += '[';
        for (const json& element : value) {
            text += separator;
            Append(element, text);
            separator = ", ";
        }
        text += ']';
    } else if (value.is_number_float()) {
        const auto number = value.get<double>();
        text += std::isfinite(number) ? NumberText(number) : "null";
    } else if (value.is_string()) {
        text += Quoted(value.get_ref<const std::string&>());
    } else {
        text += value.dump();
    }
}

}  // namespace

std::string JsonText(const json& value) {
    std::string text;
    Append(value, text);
    return text;
}

std::string NumberText(double value) {
    char digits[32];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, value);
    return {digits, end.ptr};
}

}  // namespace halvern
