#include "assets/property/connection.h"

#include "assets/property/connectioncodec.h"
#include "nuo/common/archive/string.h"
#include "velmor/primitive_methods.h"

namespace korvanet::platform::assets {

namespace {

class Methods final : public velmor::PrimitiveMethods<AssetConnection> {
public:
    void deserialize(nuo::archive::reader& reader, velmor::Object object, nuo::heap*,
                     nuo::ext_heap*) const override {
        AssetConnection& connection = native(object);
        reader >> connection.link;
        IConnectionCodec* codec = ConnectionCodecScope::Current();
        connection.data = codec == nullptr ? nullptr : codec->Decode(connection.link);
        if (connection.data) {
            connection.link = connection.data->GetQualifiedName();
        }
    }
    void serialize(nuo::archive::writer& writer, velmor::ConstObject object) const override {
        const AssetConnection& connection = native(object);
        IConnectionCodec* codec = ConnectionCodecScope::Current();
        writer << (codec == nullptr || !connection.data ? connection.link
                                                        : codec->Encode(*connection.data));
    }
};

}  // namespace

int compareNative(const AssetConnection& left, const AssetConnection& right) {
    return velmor::compareNative(left.link, right.link);
}

int compareNative(const AssetSymbolLink& left, const AssetSymbolLink& right) {
    return velmor::compareNative(left.link, right.link);
}

int compareNative(const PropertySymbolLink& left, const PropertySymbolLink& right) {
    return velmor::compareNative(left.link, right.link);
}

const velmor::TypeMethods& AssetConnectionMethods() {
    static const auto* const only = new Methods;
    return *only;
}

}  // namespace korvanet::platform::assets
