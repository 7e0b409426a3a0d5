#pragma once

#include <cstdint>

#include <korvanet/platform/core/export.h>
#include <korvanet/platform/core/istring.h>

namespace korvanet::platform::core {

/// Text encodings that URIs and XML need. Input and output may be the same string. An operation
/// that returns false has changed nothing.
class HALVERN_API StringAlgorithm {
public:
    StringAlgorithm() = delete;

    /// Writes every byte of the UTF-8 text that is not an unreserved character of RFC 3986
    /// (letters, digits, "-", ".", "_", "~") as "%" and two upper-case hexadecimal digits. The
    /// result can stand as one component of a URI.
    static void PercentEncode(const IString& text, IString& encoded);

    /// The same, but lets the reserved characters of RFC 3986 stand too ("/", ":", "?" and the
    /// like), so that a whole URI keeps its structure. A "%" that starts a valid escape stands as
    /// it is.
    static void UriEncode(const IString& text, IString& encoded);

    /// Turns every escape back into its byte, and leaves all else alone ("+" stays "+"). False, and
    /// `decoded` is as it was, when a "%" is not followed by two hexadecimal digits, when an escape
    /// means NUL, or when the bytes are no UTF-8, which a string could not hold.
    static bool PercentDecode(const IString& text, IString& decoded);

    /// The `size` bytes at `data` in base64 (RFC 4648, standard alphabet, padded, one line).
    static void Base64Encode(const void* data, std::uint64_t size, IString& encoded);

    /// The bytes that a base64 text holds. White space between digits is passed over. `size`
    /// receives the number of bytes, also when `data` is null, which asks for the size alone. False
    /// when the text is not base64, or when the bytes do not fit in `capacity`.
    static bool Base64Decode(const IString& text, void* data, std::uint64_t capacity,
                             std::uint64_t& size);
};

}  // namespace korvanet::platform::core
