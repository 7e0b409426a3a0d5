#pragma once

#include <concepts>
#include <cstdint>
#include <exception>
#include <type_traits>

#include "nuo/common/string_builder.h"
#include "nuo/common/string_ref.h"

namespace nuo {

/// The root of every failure below the interface. Catch a marker class (`nuo::bad_any_cast`) for
/// one failure, this class for all of them.
class exception : public std::exception {
public:
    ~exception() override;
    const char* what() const noexcept override = 0;
    /// Adds to the message; a null text is ignored.
    virtual exception& append(const char* text) = 0;
};

/// What is thrown: a marker class that says which failure it is, with a message that begins with
/// the source position, as in "velmor/src/common/any.cpp(12)".
template <class Marker>
class context_exception : public Marker {
    static_assert(std::is_base_of_v<exception, Marker>);

public:
    /// Never null; empty while nothing was appended.
    const char* what() const noexcept override { return message_.data(); }
    context_exception& append(const char* text) override {
        if (text != nullptr) message_.append(string_ref(text));
        return *this;
    }
    context_exception& append(string_ref text) {
        message_.append(text);
        return *this;
    }

private:
    string_builder message_;
};

namespace detail {

void append_position(string_builder& message, const char* file, std::uint64_t line);

inline void append_piece(string_builder& message, string_ref text) {
    message.append(text);
}
template <std::integral Number>
void append_piece(string_builder& message, Number number) {
    if constexpr (std::signed_integral<Number>)
        message.append_number(static_cast<std::int64_t>(number));
    else
        message.append_number(static_cast<std::uint64_t>(number));
}

}  // namespace detail

/// Throws the failure `Marker` with the text file "(" line ")" and the pieces, which are texts and
/// whole numbers, with nothing between them.
template <class Marker, class... Pieces>
[[noreturn]] void raise(const char* file, std::uint64_t line, const Pieces&... pieces) {
    string_builder message;
    detail::append_position(message, file, line);
    (detail::append_piece(message, pieces), ...);
    context_exception<Marker> failure;
    failure.append(string_ref(message));
    // Copied rather than moved: the message of the copy takes no more than its bytes.
    throw context_exception<Marker>(failure);
}

}  // namespace nuo

/// NUO_RAISE(nuo::bad_any_cast);  NUO_RAISE(bad_datastore, "incorrect record id ", id);
#define NUO_RAISE(marker, ...) ::nuo::raise<marker>(__FILE__, __LINE__ __VA_OPT__(, ) __VA_ARGS__)

/// Declares an empty marker class for NUO_RAISE and for catching.
#define NUO_DECLARE_EXCEPTION(name) \
    class name : public ::nuo::exception {}
