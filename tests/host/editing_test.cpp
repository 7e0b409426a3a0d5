// What a host does all day: opens a library, lists it, edits an instance under an observer, stores
// it, and finds it again.

#include <korvanet/platform/assets/iassetobserver.h>

#include "tests/support/managertest.h"

namespace halvern_tests {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

core::UTF8String Text(const std::string& text) {
    return core::UTF8String(text.c_str());
}

std::string NameOf(const assets::IProperty& property) {
    core::UTF8String name;
    property.GetName(name);
    return name.AsUTF8();
}

class Observer final : public assets::IAssetObserver {
public:
    void OnValueChanged(assets::IProperty* property) override {
        heard.push_back("value " + NameOf(*property));
    }
    void OnConnectionChanged(assets::IProperty* property) override {
        heard.push_back("connection " + NameOf(*property));
    }
    void OnAssetChanged() override { heard.emplace_back("asset"); }

    std::vector<std::string> heard;
};

template <class Value>
Value& ValueOf(assets::IPropertyTable& table, const wchar_t* property) {
    return dynamic_cast<Value&>(*table.FindProperty(property)->GetValue());
}

std::string TextIn(assets::IPropertyTable& table, const wchar_t* property,
                   std::uint64_t index = 0) {
    core::UTF8String text;
    ValueOf<assets::IStringValue>(table, property).GetValue(text, index);
    return text.AsUTF8();
}

enum class Mode { kInPlace, kCopy };

class Editing : public ManagerTest, public testing::WithParamInterface<Mode> {
protected:
    bool OnCopy() const { return GetParam() == Mode::kCopy; }
    assets::IAssetLibrary* OpenToWrite(const std::string& path) {
        return OnCopy() ? OpenCopyForWriting(path) : OpenForWriting(path);
    }
    assets::IAssetLibrary* OpenToRead(const std::string& path) {
        return OnCopy() ? OpenCopy(path) : Open(path);
    }
    assets::IAssetLibrary* CreateNew(const std::string& path, const std::string& identifier) {
        if (!OnCopy()) return Create(path, identifier);
        return Manager().CreateLibraryCopy(Text(path), Text(identifier), 0);
    }
    assets::IAssetInstance* InstanceOf(assets::IAssetLibrary& library, const std::string& name) {
        assets::IAssetDefinition* const definition = DefinitionOf(library, name);
        if (definition == nullptr) return nullptr;
        assets::IAssetInstance* const instance = library.CreateInstance(definition);
        definition->Release();
        return instance;
    }
    bool SaveAndClose(assets::IAssetLibrary* library) {
        return Manager().SaveLibrary(library) && Unload(library);
    }
};

std::string NameOfMode(const testing::TestParamInfo<Mode>& mode) {
    return mode.param == Mode::kCopy ? "OnACopy" : "InPlace";
}

INSTANTIATE_TEST_SUITE_P(Modes, Editing, testing::Values(Mode::kInPlace, Mode::kCopy), NameOfMode);

TEST_P(Editing, TheWholeRoadOfAMaterial) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* library = OpenToWrite(path);
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(library->IsOnCopy(), OnCopy());
    EXPECT_EQ(NamesOf(library->GetDefinitionsOfType(Text("materialappearance"))).size(), 8u);

    assets::IAssetInstance* instance = InstanceOf(*library, "Generic-003");
    ASSERT_NE(instance, nullptr);
    Observer observer;
    EXPECT_TRUE(instance->AddObserver(&observer));
    EXPECT_TRUE(ValueOf<assets::IScalarValue>(*instance, L"generic_glossiness").SetValue(0.75));
    EXPECT_TRUE(
        ValueOf<assets::IColorValue>(*instance, L"generic_diffuse").SetValue(0.25, 0.5, 1, 1));
    EXPECT_FALSE(ValueOf<assets::IScalarValue>(*instance, L"generic_glossiness").SetValue(7));
    EXPECT_TRUE(instance->SetUIName(Text("Blue \xF0\x9F\x8E\xA8")));
    EXPECT_THAT(observer.heard,
                ElementsAre("value generic_glossiness", "value generic_diffuse", "asset"));
    EXPECT_THAT(Reports(), ElementsAre("error: Value out of range"));
    EXPECT_TRUE(instance->RemoveObserver(&observer));
    // The definition is as it was.
    assets::IAssetInstance* const other = InstanceOf(*library, "Generic-003");
    EXPECT_FALSE(instance->IsEqual(other, false, true, false));
    other->Release();

    EXPECT_TRUE(library->CreatePresetFromInstance(instance, Text("Mine"), false));
    instance->Release();
    ASSERT_TRUE(SaveAndClose(library));
    EXPECT_FALSE(Exists(path + ".lck"));
    EndManager();

    ASSERT_NE(library = OpenToRead(path), nullptr);
    EXPECT_EQ(NamesOf(*library).size(), 13u);
    auto* const walk = library->GetDefinitionsById(Text("Mine"));
    core::UTF8String name;
    EXPECT_TRUE(walk->GetUIName(name, Text("ENG")));
    EXPECT_STREQ(name.AsUTF8(), "Blue \xF0\x9F\x8E\xA8");
    EXPECT_STREQ(name.AsWide(), L"Blue \x1F3A8");
    walk->Release();
    ASSERT_NE(instance = InstanceOf(*library, "Mine"), nullptr);
    EXPECT_EQ(ValueOf<assets::IScalarValue>(*instance, L"generic_glossiness").GetValue(), 0.75);
    double r = 0, g = 0, b = 0, a = 0;
    EXPECT_TRUE(ValueOf<assets::IColorValue>(*instance, L"generic_diffuse").GetValue(r, g, b, a));
    EXPECT_THAT((std::vector<double>{r, g, b}), ElementsAre(0.25, 0.5, 1.0));
    instance->Release();
}

TEST_P(Editing, ConnectedAssetsAreStoredWithTheOneThatNamesThem) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* library = OpenToWrite(path);
    assets::IAssetInstance* material = InstanceOf(*library, "Generic-001");
    assets::IAssetInstance* const texture = InstanceOf(*library, "Bitmap-002");
    Observer observer;
    material->AddObserver(&observer);
    EXPECT_TRUE(
        ValueOf<assets::IScalarValue>(*texture, L"unifiedbitmap_RGBAmount").SetValue(0.625));
    ASSERT_TRUE(material->FindProperty(L"generic_bump_map")->ConnectAsset(texture));
    EXPECT_THAT(observer.heard, ElementsAre("connection generic_bump_map"));
    EXPECT_TRUE(library->CreatePresetFromInstance(material, Text("Bumpy"), false));
    material->RemoveObserver(&observer);
    texture->Release();
    material->Release();
    EXPECT_EQ(NamesOf(*library).size(), 14u);
    ASSERT_TRUE(SaveAndClose(library));

    ASSERT_NE(library = OpenToRead(path), nullptr);
    ASSERT_NE(material = InstanceOf(*library, "Bumpy"), nullptr);
    assets::IProperty* const bump = material->FindProperty(L"generic_bump_map");
    ASSERT_EQ(bump->GetConnectedAssetCount(), 1u);
    assets::IAssetInstance* const connected = bump->GetConnectedAsset(std::uint64_t{0});
    ASSERT_NE(connected, nullptr);
    EXPECT_EQ(connected, bump->GetConnectedAsset(L"texture"));
    EXPECT_EQ(ValueOf<assets::IScalarValue>(*connected, L"unifiedbitmap_RGBAmount").GetValue(),
              0.625);
    // It is a record of its own, which listings for people leave out.
    std::size_t hidden = 0;
    auto* const walk = library->GetDefinitionsOfType(Text("texture"));
    for (; !walk->IsAtEnd(); walk->Next())
        hidden += walk->IsHidden() ? 1 : 0;
    walk->Release();
    EXPECT_EQ(hidden, 1u);
    material->Release();
}

TEST_P(Editing, ANewLibraryTakesDefinitionsOfAnotherWithTheirFiles) {
    assets::IAssetLibrary* source = Open(CopySample("starter.jpk"));
    assets::IAssetLibrary* library = CreateNew(Path("Neue \xC3\x9C\xF0\x9F\x8E\xA8.jpk"), "NEW");
    ASSERT_NE(library, nullptr);
    for (const char* name : {"Bitmap-001", "Generic-002"}) {
        assets::IAssetDefinition* const definition = DefinitionOf(*source, name);
        EXPECT_TRUE(library->CopyDefinition(definition, nullptr)) << name;
        definition->Release();
    }
    EXPECT_TRUE(Unload(source));
    ASSERT_TRUE(SaveAndClose(library));
    EndManager();

    ASSERT_NE(library = OpenToRead(Path("Neue \xC3\x9C\xF0\x9F\x8E\xA8.jpk")), nullptr);
    EXPECT_THAT(NamesOf(*library), Contains("Bitmap-001"));
    assets::IAssetInstance* const bitmap = InstanceOf(*library, "Bitmap-001");
    const std::string uri = TextIn(*bitmap, L"unifiedbitmap_Bitmap");
    EXPECT_EQ(uri.rfind("jpk:?asset=/NEW/Resources/", 0), 0u) << uri;
    std::shared_ptr<core::IDataReadStream> stream;
    ASSERT_TRUE(library->OpenResource(stream, Text(uri)));
    EXPECT_GT(stream->Seek(0, core::SeekOrigin::kEnd), 0u);
    EXPECT_EQ(TextIn(*bitmap, L"AssetLibID"), "NEW");
    bitmap->Release();
}

TEST_P(Editing, APresetIsUpdatedRemovedAndItsRoomReused) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* library = OpenToWrite(path);
    assets::IAssetDefinition* definition = DefinitionOf(*library, "Generic-004");
    ASSERT_TRUE(library->CreatePreset(definition, Text("Made"), 2, 3));
    definition->Release();
    ASSERT_TRUE(Manager().SaveLibrary(library));
    const std::size_t size = ReadFile(path).size();
    for (std::uint32_t revision = 4; revision < 12; ++revision) {
        definition = DefinitionOf(*library, "Made");
        ASSERT_TRUE(library->CreatePreset(definition, revision));
        definition->Release();
        ASSERT_TRUE(Manager().SaveLibrary(library));
    }
    EXPECT_LT(ReadFile(path).size(), size + 2000);
    definition = DefinitionOf(*library, "Made");
    EXPECT_EQ(definition->GetVersion(), 2);
    EXPECT_EQ(definition->GetRevision(), 11);
    ASSERT_TRUE(library->RemovePreset(definition));
    ASSERT_TRUE(SaveAndClose(library));
    ASSERT_NE(library = OpenToRead(path), nullptr);
    EXPECT_EQ(NamesOf(*library).size(), 12u);
}

TEST_P(Editing, ALibraryTurnsFromReadingToWritingAndBack) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* library = OpenToRead(path);
    ASSERT_NE(library, nullptr);
    ASSERT_NE(library = Manager().ReopenForWriting(&library), nullptr);
    ASSERT_TRUE(AddPreset(*library, "Made"));
    ASSERT_TRUE(Manager().SaveLibrary(library));
    ASSERT_NE(library = Manager().ReopenForReading(&library), nullptr);
    EXPECT_FALSE(Manager().SaveLibrary(library));
    ASSERT_TRUE(Unload(library));
    ASSERT_NE(library = OpenToRead(path), nullptr);
    EXPECT_TRUE(Has(*library, "Made"));
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_P(Editing, TheFieldsOfAListing) {
    CopySample("starter-ENG.XLF");
    assets::IAssetLibrary* const library = OpenToRead(CopySample("starter.jpk"));
    auto* const walk = library->GetDefinitionsById(Text("Bitmap-001"));
    core::UTF8String text;
    EXPECT_TRUE(walk->GetUIName(text, Text("ENG")));
    EXPECT_STREQ(text.AsUTF8(), "Texture <1> & more");
    EXPECT_TRUE(walk->GetUIName(text, Text("")));
    EXPECT_STREQ(text.AsUTF8(), "TEX_1");
    EXPECT_EQ(walk->GetCategoryCount(), 3u);
    EXPECT_TRUE(walk->GetCategory(2, text, Text("ENG")));
    EXPECT_STREQ(text.AsUTF8(), "Rubber");
    EXPECT_FALSE(walk->GetCategory(3, text, Text("ENG")));
    EXPECT_EQ(walk->GetKeywordCount(), 2u);
    EXPECT_TRUE(walk->GetDescription(text, Text("ENG")));
    EXPECT_STREQ(text.AsUTF8(), "Brass \xF0\x9F\x98\x80");
    EXPECT_EQ(walk->GetThumbnailCount(), 1u);
    EXPECT_TRUE(walk->GetThumbnail(0, text));
    std::shared_ptr<core::IDataReadStream> stream;
    EXPECT_TRUE(library->OpenResource(stream, text));
    EXPECT_TRUE(walk->GetBaseSchema(text));
    EXPECT_STREQ(text.AsUTF8(), "UnifiedBitmapSchema");
    EXPECT_FALSE(walk->IsHidden());
    EXPECT_FALSE(walk->Next());
    EXPECT_TRUE(walk->IsAtEnd());
    walk->Release();
}

}  // namespace
}  // namespace halvern_tests
