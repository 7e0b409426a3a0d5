#pragma once

#include <cstdint>

#include <korvanet/platform/core/idatareadstream.h>
#include <korvanet/platform/core/istring.h>

namespace korvanet::platform::assets {

using core::IString;

class IAssetInstance;

/// Reads instances from a stream that `IAssetSerializer` wrote. The order of calls: `Deserialize`,
/// `GetAsset` for each instance, `Release`.
class IAssetDeSerializer {
public:
    /// Destroys the deserializer; instances that are held stay valid. Always true.
    virtual bool Release() = 0;

    /// Reads the stream, which must be open, to its end, and closes it; it stays the caller's. What
    /// an earlier call read is let go of first. `options` is kept with what is read and has no
    /// meaning for the library. False for a stream that holds no asset stream.
    virtual bool Deserialize(core::IDataReadStream* stream, std::uint32_t options) = 0;

    /// The instance of that identifier, with one reference for the caller. Null when the stream has
    /// none, and before `Deserialize`.
    virtual IAssetInstance* GetAsset(const IString& identifier) = 0;

    virtual ~IAssetDeSerializer() = default;
};

}  // namespace korvanet::platform::assets
