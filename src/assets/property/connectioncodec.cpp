#include "assets/property/connectioncodec.h"

#include <cstdint>
#include <utility>

namespace korvanet::platform::assets {

namespace {

constexpr nuo::string_ref kLibraryPrefix = ".slib.";
constexpr nuo::string_ref kAssetPart = ".asset.";

IConnectionCodec* current_codec = nullptr;

}  // namespace

ConnectionCodecScope::ConnectionCodecScope(IConnectionCodec& codec)
    : outer_(std::exchange(current_codec, &codec)) {}

ConnectionCodecScope::~ConnectionCodecScope() {
    current_codec = outer_;
}

IConnectionCodec* ConnectionCodecScope::Current() {
    return current_codec;
}

nuo::string StoredConnection(nuo::string_ref identifier, nuo::string_ref table) {
    const nuo::string library(nuo::string(kLibraryPrefix, identifier), kAssetPart);
    return {library, table};
}

nuo::string_ref ConnectedName(nuo::string_ref identifier, nuo::string_ref text) {
    const nuo::string own = StoredConnection(identifier, nuo::string_ref());
    if (text.starts_with(own)) {
        return text.substr(own.size());
    }
    nuo::string_ref name = text;
    // One part may begin with the dot that ends another.
    for (std::uint64_t at = text.find(kAssetPart); at != nuo::string_ref::npos;
         at = text.find(kAssetPart, at + 1)) {
        name = text.substr(at + kAssetPart.size());
    }
    return name;
}

}  // namespace korvanet::platform::assets
