#include "assets/property/propertystream.h"

#include "assets/property/connection.h"
#include "assets/property/modulecontext.h"
#include "assets/property/property.h"
#include "assets/property/urivalues.h"
#include "nuo/common/archive/primitives.h"
#include "velmor/runtime.h"

namespace korvanet::platform::assets {

bool HasBody(const PropertyBase& property) {
    const PropertyType type = property.GetType();
    return type != PropertyType::kTexture && type != PropertyType::kReference;
}

void WriteBody(nuo::archive::writer& writer, const PropertyBase& property) {
    if (HasBody(property)) {
        const velmor::ConstObject data = property.DataObject();
        data.type().methods().serialize(writer, data);
    }
}

void ReadBody(nuo::archive::reader& reader, PropertyBase& property) {
    if (!HasBody(property)) {
        return;
    }
    const ModuleContext& context = *property.Descriptor().context;
    const velmor::Object data = property.DataObject();
    data.type().methods().deserialize(reader, data, context.heap, context.runtime->extHeap());
    ForgetResolutions(property);
}

void WriteConnections(nuo::archive::writer& writer, const PropertyBase& property) {
    const std::uint64_t count = property.GetConnectedAssetCount();
    writer << (count != 0);
    if (count == 0) {
        return;
    }
    writer << property.IsMarked() << static_cast<std::uint32_t>(count);
    for (std::uint64_t i = 0; i < count; ++i) {
        const velmor::ConstObject connection = property.Link()[i];
        connection.type().methods().serialize(writer, connection);
    }
}

void ReadConnections(nuo::archive::reader& reader, PropertyBase& property) {
    property.ClearConnections();
    if (!nuo::archive::read_value<bool>(reader)) {
        return;
    }
    property.SetMarked(nuo::archive::read_value<bool>(reader));
    const ModuleContext& context = *property.Descriptor().context;
    const velmor::Type type = context.types.Connection();
    // One by one: a count that lies costs nothing before the data ends.
    for (auto left = nuo::archive::read_value<std::uint32_t>(reader); left != 0; --left) {
        AssetConnection connection;
        type.methods().deserialize(reader, {type, &connection}, context.heap,
                                   context.runtime->extHeap());
        if (connection.data && property.TakesConnections()) {
            property.AppendConnection(*connection.data);
        }
    }
}

}  // namespace korvanet::platform::assets
