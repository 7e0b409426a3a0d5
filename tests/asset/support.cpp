#include "asset/support.h"

#include <korvanet/platform/assets/ivalue.h>

#include "assets/property/halvernasset.h"
#include "assets/schema/propertydata.h"

namespace korvanet::platform::assets {

AssetTest::AssetTest()
    : world(tables),
      library(LibraryNamespaces::Create(world.slib, "lib")),
      common(LoadXml(*world.global, CommonXml())),
      material(LoadXml(
          *world.global,
          DerivedXml("MaterialSchema", "CommonSchema",
                     "<type val='materialappearance'/><String id='swatch' public='false'/>"
                     "<implementation id='ImplementationGeneric' val='generic.xml'/>"
                     "<Float id='gloss' val='0.5'/><Float id='hidden' val='1' public='false'/>"
                     "<Float id='listed' val='2' definitionIteratorData='true'/>"
                     "<String id='fixed' val='shared' readonly='true'/>"
                     "<Reference id='map' allowconnectedassets='multiple'/>"
                     "<Reference id='single' allowconnectedassets='single'/>"
                     "<PropertyAlias alias='shine' id='gloss'/>"))),
      texture(LoadXml(*world.global,
                      DerivedXml("TextureSchema", "CommonSchema",
                                 "<type val='texture'/><Float id='scale' val='1'/>"
                                 "<Reference id='inner' allowconnectedassets='single'/>"))) {
    world.context.localization = &localization;
}

AssetTest::~AssetTest() {
    for (IAssetInstance* instance : held_) {
        // Circles of connections hold each other.
        dynamic_cast<PropertyTableImp*>(instance)->ClearConnections();
        instance->Release();
    }
    // As a library does when it goes: its definitions let go of what may end before them.
    for (const auto& [name, object] : library.asset.imp()->objects) {
        PropertyTableImp& table = *static_cast<HalvernAsset*>(object.data())->table;
        table.ClearConnections();
        table.SetSource(nullptr);
    }
}

AssetDefinition& AssetTest::NewDefinition(KRVTSchemaDefinition& schema, const char* id) {
    AssetDefinition& definition = MakeDefinition(schema, library.asset, id);
    definition.SetPinned(true);
    return definition;
}

AssetInstance& AssetTest::NewInstance(AssetDefinition& definition) {
    return Keep(definition.CreateInstance());
}

AssetInstance& AssetTest::Keep(IAssetInstance* instance) {
    held_.push_back(instance);
    return dynamic_cast<AssetInstance&>(*instance);
}

void PutText(PropertyTableImp& table, const char* name, const char* text, std::uint64_t index) {
    PropertyBase& property = Find(table, name);
    velmor::Array* list = TextList(property);
    if (list != nullptr && list->size() <= index) list->resize(index + 1);
    if (!SetTextAt(property, index, text)) throw std::runtime_error(name);
}

void PutNumber(PropertyTableImp& table, const char* name, std::int32_t number) {
    As<IIntegerValue>(Find(table, name)).SetValue(number, 0);
}

}  // namespace korvanet::platform::assets
