#pragma once

#include <exception>
#include <string>
#include <utility>

namespace halvern_tests {

// The text of a failure behind its source position, "file(line)".
inline std::string TextOf(const std::exception& failure) {
    const std::string what = failure.what();
    const std::size_t position = what.find(')');
    return position == std::string::npos ? "no position in: " + what : what.substr(position + 1);
}

// Runs `action` and returns the text of the `Marker` that it raised. Another exception passes.
template <class Marker, class Action>
std::string Raised(Action&& action) {
    try {
        std::forward<Action>(action)();
    } catch (const Marker& failure) {
        return TextOf(failure);
    }
    return "nothing was raised";
}

}  // namespace halvern_tests
