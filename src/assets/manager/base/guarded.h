#pragma once

#include <concepts>
#include <type_traits>
#include <utility>

namespace korvanet::platform::assets {

/// The one place where exceptions become results: gives what `work` returns, or `failure` when it
/// raises anything.
///
///     return Guarded(false, [&] { return document_->Save(); });
template <class Failure, std::invocable Work>
std::invoke_result_t<Work> Guarded(Failure failure, Work&& work) noexcept {
    try {
        return std::forward<Work>(work)();
    } catch (...) {
        return static_cast<std::invoke_result_t<Work>>(failure);
    }
}

/// The same for work without a result; true when it came to its end.
template <std::invocable Work>
bool Guarded(Work&& work) noexcept {
    return Guarded(false, [&work] {
        work();
        return true;
    });
}

}  // namespace korvanet::platform::assets
