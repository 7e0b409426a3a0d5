#pragma once

#include <cstdint>

#include <korvanet/platform/core/seekorigin.h>

namespace korvanet::platform::core {

/// Reads bytes from a source with a position. Counts and positions are in bytes.
class IDataReader {
public:
    virtual ~IDataReader() = default;

    /// False once the source is closed, or when it could not be opened at all.
    virtual bool IsOpen() const = 0;

    /// Lets go of the source; nothing can be read afterwards. Closing twice is allowed.
    virtual void Close() = 0;

    /// True while the source is open and the position lies before its end.
    virtual bool CanRead() const = 0;

    /// Reads up to `length` bytes at the position into `buffer` and moves the position behind them.
    /// Returns the count read, which is less than `length` only at the end of the source or on a
    /// failure.
    virtual std::uint64_t Read(void* buffer, std::uint64_t length) = 0;

    /// Reads exactly `length` bytes. False when the source ends before that; the position and the
    /// content of `buffer` are then unspecified. A length of 0 is true.
    virtual bool ReadExact(void* buffer, std::uint64_t length) = 0;

    /// Moves the position to `offset` bytes from `origin`, held within the start and the end of the
    /// source, and returns the new position counted from the start.
    virtual std::uint64_t Seek(std::int64_t offset, SeekOrigin origin) = 0;

    /// The position, counted from the start.
    virtual std::uint64_t Tell() const = 0;
};

}  // namespace korvanet::platform::core
