#pragma once

#include <korvanet/platform/core/idatastream.h>
#include <korvanet/platform/core/istring.h>

namespace korvanet::platform::assets {

using core::IString;

class IAssetInstance;

/// Writes instances to a stream that `IAssetDeSerializer` reads, in this process or in another. The
/// stream is a small design package. The order of calls: `SetOptions` if at all, `RegisterAsset`
/// for each instance, `Serialize` as often as needed, `Release`.
class IAssetSerializer {
public:
    /// The save options, in the order of their bits; all false is the ordinary form.
    struct Options {
        /// Kept with the package as the bits 1, 4 and 64 of its options, for hosts to agree upon;
        /// the library gives them no meaning.
        bool flag1 = false;
        bool flag4 = false;
        /// Bit 8: write the older layout, and keep of assets that the system library knows only
        /// what differs from its definitions.
        bool referToSystemLibrary = false;
        bool flag64 = false;
    };

    /// Destroys the serializer; the instances stay as they are. Always true.
    virtual bool Release() = 0;

    /// Adds an instance, with the assets connected to it, to what is written, and gives its
    /// identifier, by which the reader finds it. Adding twice is once. The instance must be held
    /// until the last `Serialize`. False for null.
    virtual bool RegisterAsset(IAssetInstance* asset, IString& identifier) = 0;

    /// Writes the registered instances to `stream`, from its start and instead of what it held, or,
    /// when `stream` is null, to the stream that the serializer was made for. The stream must be
    /// open; it stays the caller's. The registered instances stay registered and unchanged. False,
    /// and nothing written, when saving fails, when nothing is registered ("there is no asset
    /// registered"), or when old content cannot be cut off; assets that the options cannot express
    /// are left out with the warning "the asset needs to registered is not a valid asset!".
    virtual bool Serialize(core::IDataStream* stream) = 0;

    /// False, and the options stay as they were, when `referToSystemLibrary` is set and no system
    /// library is found.
    virtual bool SetOptions(const Options& options) = 0;

    virtual ~IAssetSerializer() = default;
};

}  // namespace korvanet::platform::assets
