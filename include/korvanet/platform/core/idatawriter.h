#pragma once

#include <cstdint>

#include <korvanet/platform/core/seekorigin.h>

namespace korvanet::platform::core {

/// Writes bytes to a target with a position. Counts and positions are in bytes.
class IDataWriter {
public:
    virtual ~IDataWriter() = default;

    /// False once the target is closed, or when it could not be opened at all.
    virtual bool IsOpen() const = 0;

    /// Lets go of the target; nothing can be written afterwards. Closing twice is allowed.
    virtual void Close() = 0;

    /// True while the target is open and takes bytes.
    virtual bool CanWrite() const = 0;

    /// Writes up to `length` bytes at the position, over what stands there and beyond the end, and
    /// moves the position behind them. Returns the count written, less than `length` only on a
    /// failure.
    virtual std::uint64_t Write(const void* buffer, std::uint64_t length) = 0;

    /// Writes exactly `length` bytes. False when the target did not take them all.
    virtual bool WriteExact(const void* buffer, std::uint64_t length) = 0;

    /// Moves the position to `offset` bytes from `origin`, not before the start, and returns the
    /// new position counted from the start. A position behind the end is allowed; writing there
    /// fills the gap with zeros.
    virtual std::uint64_t Seek(std::int64_t offset, SeekOrigin origin) = 0;

    /// The position, counted from the start.
    virtual std::uint64_t Tell() const = 0;
};

}  // namespace korvanet::platform::core
