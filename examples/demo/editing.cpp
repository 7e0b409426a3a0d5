#include "editing.h"

#include <korvanet/platform/assets/iassetobserver.h>
#include <korvanet/platform/assets/ivalue.h>

#include "propertytext.h"

namespace demo {

using namespace korvanet::platform::assets;

namespace {

// Writes down what it hears. An instance tells after the change, so that the property has its new
// value already.
class Listener final : public IAssetObserver {
public:
    explicit Listener(IAssetInstance& asset) : asset_(asset) { asset_.AddObserver(this); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    ~Listener() override { asset_.RemoveObserver(this); }

    void Note(const std::string& line) { heard_.push_back(line); }
    const Lines& Heard() const { return heard_; }

private:
    void OnValueChanged(IPropertyTable::IProperty* property) override {
        Note("heard: " + LabelOf(*property) + " is now " + ValueOf(*property));
    }
    void OnConnectionChanged(IPropertyTable::IProperty* property) override {
        Note("heard: " + LabelOf(*property) + " is now connected to " + ValueOf(*property));
    }
    void OnAssetChanged() override {
        UTF8String name;
        asset_.GetUIName(name, Text("ENG"));
        Note(std::string("heard: the asset is now called ") + name.AsUTF8());
    }

    IAssetInstance& asset_;
    Lines heard_;
};

template <class Value>
Value& ValueOfTile(IAssetInstance& tile, const char* property) {
    return dynamic_cast<Value&>(*PropertyOf(tile, property).GetValue());
}

}  // namespace

Lines EditTile(Session& session, IAssetLibrary& library, IAssetInstance& tile) {
    Listener listener(tile);
    session.Require(ValueOfTile<IScalarValue>(tile, "ceramic_tile_width").SetValue(20) &&
                        ValueOfTile<IChoiceListValue>(tile, "ceramic_application").SetValue(2) &&
                        ValueOfTile<IColorValue>(tile, "ceramic_color").SetValue(0.2, 0.3, 0.5, 1),
                    "a value was refused");
    if (!ValueOfTile<IScalarValue>(tile, "ceramic_bump_amount").SetValue(7))
        listener.Note("refused: Relief 7 (" + session.TakeReport() + ")");

    const Instance grain(Find(library, "grain")->CreateInstance());
    session.Require(PropertyOf(tile, "ceramic_bump_map").ConnectAsset(grain.get()),
                    "the pattern could not be connected");
    session.Require(tile.SetUIName(Text("Large tile")), "the name was refused");
    return listener.Heard();
}

Lines StoreTile(Session& session, IAssetLibrary& library, IAssetInstance& tile) {
    Lines lines;
    if (!library.CreatePresetFromInstance(&tile, Text("glazed-tile"), false))
        lines.push_back("refused: glazed-tile (the identifier is taken)");
    session.Require(library.CreatePresetFromInstance(&tile, Text(kEditedTile), false),
                    "the preset could not be stored");
    lines.push_back(std::string("stored as ") + kEditedTile);
    session.Require(session->SaveLibrary(&library), "the library could not be saved");
    lines.push_back("saved");
    if (!session->UnloadLibrary(&library))
        lines.push_back("refused: to unload the library (the instance is held)");
    return lines;
}

}  // namespace demo
