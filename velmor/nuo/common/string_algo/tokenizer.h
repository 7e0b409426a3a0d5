#pragma once

#include "nuo/common/string_ref.h"

namespace nuo {

/// Cuts a path at a separator and keeps empty tokens; tokens are views of the text.
///
///   "a.b" gives a, b      ".a" gives "", a      "a." gives a, ""
///   "a..b" gives a, "", b     "." gives "", ""      "" gives nothing
class tokenizer {
public:
    constexpr tokenizer(string_ref text, char separator) noexcept
        : at_(text.begin()), end_(text.end()), separator_(separator) {}

    /// False when there is no further token; `token` is then left as it was.
    constexpr bool next(string_ref& token) noexcept {
        if (at_ == end_) return false;
        if (*at_ == separator_) {
            if (!after_separator_) {
                after_separator_ = true;
                token = string_ref(at_, at_);
                return true;
            }
            ++at_;
        }
        const char* first = at_;
        while (at_ != end_ && *at_ != separator_)
            ++at_;
        after_separator_ = true;
        token = string_ref(first, at_);
        return true;
    }

    /// What `next` has not handed out yet, with the separator in front, if one stands there.
    constexpr string_ref rest() const noexcept { return {at_, end_}; }

private:
    const char* at_;
    const char* end_;
    char separator_;
    bool after_separator_ = false;
};

}  // namespace nuo
