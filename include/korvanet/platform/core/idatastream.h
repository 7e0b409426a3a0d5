#pragma once

#include <cstdint>

#include <korvanet/platform/core/idatareadstream.h>
#include <korvanet/platform/core/idatawritestream.h>

namespace korvanet::platform::core {

/// A stream that is read and written, with one position for both.
class IDataStream : public IDataReadStream, public IDataWriteStream {
public:
    /// These stand in both bases; here each is one operation. `Seek` follows the rule of the
    /// writer: it may move behind the end.
    bool IsOpen() const override = 0;
    void Close() override = 0;
    std::uint64_t Seek(std::int64_t offset, SeekOrigin origin) override = 0;
    std::uint64_t Tell() const override = 0;

    /// Hands buffered bytes on to what lies behind the stream.
    virtual void Flush() = 0;

    /// Does nothing; it keeps its place in the order of the operations.
    virtual void Reserved() = 0;

    /// Cuts the stream at the position, which becomes its end. False when the stream cannot be cut.
    virtual bool TruncateHere() = 0;
};

}  // namespace korvanet::platform::core
