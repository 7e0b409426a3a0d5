#include <sys/stat.h>

#include "tests/support/managertest.h"

namespace halvern_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TheLibrary : public ManagerTest {
protected:
    assets::IAssetLibrary& Starter() {
        if (starter_ == nullptr) starter_ = OpenForWriting(CopySample("starter.jpk"));
        return *starter_;
    }
    // A library that is open and refuses changes.
    assets::IAssetLibrary& ReadOnly() { return *Open(CopySample("starter-read-only.jpk")); }

private:
    assets::IAssetLibrary* starter_ = nullptr;
};

core::UTF8String Text(const char* text) {
    return core::UTF8String(text);
}

std::string UriOf(assets::IAssetInstance& instance, const wchar_t* property) {
    const auto* value =
        dynamic_cast<const assets::IUriValue*>(instance.FindProperty(property)->GetValue());
    core::UTF8String uri;
    value->GetValue(uri);
    return uri.AsUTF8();
}

double NumberOf(assets::IAssetInstance& instance, const wchar_t* property) {
    return dynamic_cast<const assets::IScalarValue&>(*instance.FindProperty(property)->GetValue())
        .GetValue();
}

TEST_F(TheLibrary, KnowsSevenAssetTypes) {
    assets::IAssetLibrary& library = Starter();
    EXPECT_EQ(library.GetAssetTypeCount(), 7u);
    std::vector<std::string> types;
    for (std::size_t i = 0; i < 7; ++i) {
        core::UTF8String type;
        EXPECT_TRUE(library.GetAssetType(i, type));
        types.emplace_back(type.AsUTF8());
    }
    EXPECT_THAT(types, ElementsAre("materialappearance", "lightappearance", "environment",
                                   "texture", "swatchscene", "proceduralgeometry", "sceneeffect"));
    EXPECT_THAT(Reports(), IsEmpty());
    core::UTF8String type("unchanged");
    EXPECT_FALSE(library.GetAssetType(7, type));
    EXPECT_STREQ(type.AsUTF8(), "unchanged");
    EXPECT_THAT(Reports(), ElementsAre("error: Index is out of scope."));
}

TEST_F(TheLibrary, TakesAVersionThatIsNotZero) {
    assets::IAssetLibrary& library = Starter();
    EXPECT_EQ(library.GetVersion(), 3u);
    EXPECT_FALSE(library.SetVersion(0));
    EXPECT_THAT(Reports(), ElementsAre("error: Cannot set version number to 0."));
    EXPECT_EQ(library.GetVersion(), 3u);
    EXPECT_TRUE(library.SetVersion(4000000000u));
    EXPECT_EQ(library.GetVersion(), 4000000000u);
    ASSERT_TRUE(Manager().SaveLibrary(&library));
    ASSERT_TRUE(Unload(&library));
    EXPECT_EQ(Open(Path("starter.jpk"))->GetVersion(), 4000000000u);
}

TEST_F(TheLibrary, ThatIsReadOnlyRefusesEveryChange) {
    assets::IAssetLibrary& library = ReadOnly();
    const std::uint32_t version = library.GetVersion();
    assets::IAssetDefinition* const definition = DefinitionOf(library, "Generic-001");
    assets::IAssetInstance* const instance = library.CreateInstance(definition);
    const auto refused = [this](bool result, const char* report) {
        EXPECT_FALSE(result) << report;
        EXPECT_THAT(Reports(), ElementsAre(std::string("error: ") + report));
    };
    refused(library.SetVersion(5), "Cannot set version on read-only library");
    refused(library.SetVersion(0), "Cannot set version on read-only library");
    const char* const preset = "Cannot create new preset to read-only AssetLibrary.";
    refused(library.CreatePreset(definition, Text("X"), 1, 1), preset);
    refused(library.CreatePreset(definition, Text(""), true), preset);
    refused(library.CreatePreset(definition, 0), preset);
    refused(library.CreatePresetFromInstance(instance, Text("X"), false), preset);
    refused(library.RemovePreset(definition),
            "Cannot remove preset from a read-only AssetLibrary.");
    refused(library.CopyDefinition(definition, nullptr),
            "Cannot copy AssetDefinition to read-only AssetLibrary.");
    refused(library.AddSchema(definition->GetSchema()), "Cannot edit a read-only AssetLibrary.");
    EXPECT_EQ(library.GetVersion(), version);
    EXPECT_EQ(NamesOf(library).size(), 12u);
    instance->Release();
    definition->Release();
}

TEST_F(TheLibrary, ReservedOperationsDoNothing) {
    assets::IAssetLibrary& library = Starter();
    EXPECT_EQ(library.Reserved1(), nullptr);
    EXPECT_FALSE(library.Reserved2() || library.Reserved3() || library.Reserved4() ||
                 library.Reserved5() || library.Reserved6() || library.Reserved7());
    library.Reserved8();
    EXPECT_EQ(NamesOf(library).size(), 12u);
}

TEST_F(TheLibrary, ListsByIdentifierAndByType) {
    assets::IAssetLibrary& library = Starter();
    EXPECT_THAT(NamesOf(library.GetDefinitionsById(Text("Bitmap-002"))), ElementsAre("Bitmap-002"));
    EXPECT_THAT(NamesOf(library.GetDefinitionsById(Text("nobody"))), IsEmpty());
    const std::vector<std::string> textures =
        NamesOf(library.GetDefinitionsOfType(Text("texture")));
    EXPECT_THAT(textures, ElementsAre("Bitmap-001", "Bitmap-002", "Bitmap-003", "Bitmap-004"));
    EXPECT_EQ(NamesOf(library.GetDefinitionsOfType(Text("UnifiedBitmapSchema"))), textures);
    EXPECT_EQ(NamesOf(library.GetDefinitionsOfType(Text("materialappearance"))).size(), 8u);
    EXPECT_THAT(NamesOf(library.GetDefinitionsOfType(Text("swatchscene"))), IsEmpty());
    assets::IAssetDefinition* const definition = DefinitionOf(library, "Bitmap-003");
    assets::IAssetInstance* const instance = library.CreateInstance(definition);
    EXPECT_EQ(NamesOf(library.GetDefinitionsOfType(definition)), textures);
    EXPECT_EQ(NamesOf(library.GetDefinitionsOfType(instance)), textures);
    EXPECT_EQ(NamesOf(library.GetDefinitionsOfType(definition->GetSchema())), textures);
    EXPECT_THAT(
        NamesOf(library.GetDefinitionsOfType(static_cast<assets::IAssetDefinition*>(nullptr))),
        IsEmpty());
    EXPECT_THAT(
        NamesOf(library.GetDefinitionsOfType(static_cast<assets::IAssetInstance*>(nullptr))),
        IsEmpty());
    EXPECT_THAT(NamesOf(library.GetDefinitionsOfType(static_cast<assets::IAssetSchema*>(nullptr))),
                IsEmpty());
    instance->Release();
    definition->Release();
}

TEST_F(TheLibrary, MakesInstancesOfItsOwnDefinitionsAlone) {
    assets::IAssetLibrary& library = Starter();
    assets::IAssetLibrary& other = *Open(CopySample("every-kind.jpk"));
    assets::IAssetDefinition* const foreign = DefinitionOf(other, NamesOf(other).at(0));
    ASSERT_NE(foreign, nullptr);
    EXPECT_EQ(library.CreateInstance(foreign), nullptr);
    EXPECT_EQ(library.CreateInstance(nullptr), nullptr);
    const char* const report = "error: Cannot instantiate an AssetDefinition from another Library.";
    EXPECT_THAT(Reports(), ElementsAre(report, report));
    assets::IAssetInstance* const instance = other.CreateInstance(foreign);
    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(instance->GetReferenceCount(), 1u);
    EXPECT_FALSE(library.DeleteInstance(instance));
    EXPECT_FALSE(library.DeleteInstance(nullptr));
    foreign->Release();
    EXPECT_FALSE(Unload(&other));
    EXPECT_TRUE(other.DeleteInstance(instance));
    EXPECT_TRUE(Unload(&other));
}

TEST_F(TheLibrary, StoresAPresetWithVersionAndRevision) {
    assets::IAssetLibrary& library = Starter();
    assets::IAssetDefinition* const source = DefinitionOf(library, "Generic-001");
    EXPECT_TRUE(library.CreatePreset(source, Text("Made"), 7, 8));
    assets::IAssetDefinition* made = DefinitionOf(library, "Made");
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->GetVersion(), 7);
    EXPECT_EQ(made->GetRevision(), 8);
    core::UTF8String text;
    EXPECT_TRUE(made->GetAssetLibID(text));
    EXPECT_STREQ(text.AsUTF8(), kStarterIdentifier);
    // A taken identifier is updated in place.
    EXPECT_TRUE(library.CreatePreset(source, Text("Made"), 9, 10));
    EXPECT_EQ(made->GetVersion(), 9);
    EXPECT_EQ(NamesOf(library).size(), 13u);
    made->Release();
    EXPECT_FALSE(library.CreatePreset(source, Text(""), 0, 1));
    EXPECT_THAT(Reports(), ElementsAre("error: New preset identifier shouldn't be NULL."));
    EXPECT_FALSE(library.CreatePreset(source, Text("Other"), 0, 1));
    EXPECT_FALSE(library.CreatePreset(source, Text("Other"), 1, 0));
    const char* const zero =
        "error: Cannot create a new asset preset of which version or revision number is 0.";
    EXPECT_THAT(Reports(), ElementsAre(zero, zero));
    EXPECT_FALSE(library.CreatePreset(nullptr, Text("Other"), 1, 1));
    EXPECT_FALSE(Has(library, "Other"));
    source->Release();
}

TEST_F(TheLibrary, StoresAPresetThatIsHiddenOrNot) {
    assets::IAssetLibrary& library = Starter();
    assets::IAssetDefinition* const source = DefinitionOf(library, "Generic-001");
    for (const bool hidden : {false, true}) {
        const core::UTF8String identifier(hidden ? "Hidden" : "Shown");
        EXPECT_TRUE(library.CreatePreset(source, identifier, hidden));
        auto* const walk = library.GetDefinitionsById(identifier);
        EXPECT_EQ(walk->IsHidden(), hidden);
        walk->Release();
    }
    EXPECT_FALSE(library.CreatePreset(source, Text("Hidden"), true));
    EXPECT_FALSE(library.CreatePreset(source, Text("Generic-002"), false));
    EXPECT_THAT(Reports(), IsEmpty());
    EXPECT_FALSE(library.CreatePreset(source, Text(""), true));
    EXPECT_THAT(Reports(), ElementsAre("error: New preset identifier shouldn't be NULL."));
    EXPECT_FALSE(library.CreatePreset(nullptr, Text("New"), true));
    source->Release();
}

TEST_F(TheLibrary, StoresAPresetUnderTheIdentifierOfItsSource) {
    assets::IAssetLibrary& library = Starter();
    assets::IAssetDefinition* const source = DefinitionOf(library, "Generic-001");
    const std::int32_t version = source->GetVersion();
    EXPECT_TRUE(library.CreatePreset(source, 41));
    EXPECT_EQ(source->GetRevision(), 41);
    EXPECT_EQ(source->GetVersion(), version);
    EXPECT_EQ(NamesOf(library).size(), 12u);
    assets::IAssetLibrary& other = *Create(Path("other.jpk"), "OTHER");
    EXPECT_TRUE(other.CreatePreset(source, 42));
    EXPECT_THAT(NamesOf(other.GetDefinitionsById(Text("Generic-001"))), ElementsAre("Generic-001"));
    EXPECT_FALSE(other.CreatePreset(nullptr, 1));
    source->Release();
}

TEST_F(TheLibrary, StoresAnEditedInstance) {
    assets::IAssetLibrary& library = Starter();
    assets::IAssetDefinition* const definition = DefinitionOf(library, "Generic-001");
    assets::IAssetInstance* const instance = library.CreateInstance(definition);
    auto& fade = dynamic_cast<assets::IScalarValue&>(
        *instance->FindProperty(L"generic_diffuse_image_fade")->GetValue());
    ASSERT_TRUE(fade.SetValue(0.125));
    ASSERT_TRUE(instance->SetUIName(Text("Edited")));
    EXPECT_FALSE(library.CreatePresetFromInstance(instance, Text(""), false));
    EXPECT_THAT(Reports(), ElementsAre("error: New preset identifier shouldn't be NULL."));
    EXPECT_FALSE(library.CreatePresetFromInstance(instance, Text("Generic-002"), false));
    EXPECT_FALSE(library.CreatePresetFromInstance(nullptr, Text("Edited"), false));
    EXPECT_THAT(Reports(), IsEmpty());
    EXPECT_TRUE(library.CreatePresetFromInstance(instance, Text("Edited"), true));
    instance->Release();
    definition->Release();
    ASSERT_TRUE(Manager().SaveLibrary(&library));
    ASSERT_TRUE(Unload(&library));

    assets::IAssetLibrary& again = *Open(Path("starter.jpk"));
    assets::IAssetDefinition* const stored = DefinitionOf(again, "Edited");
    ASSERT_NE(stored, nullptr);
    EXPECT_TRUE(stored->IsHidden());
    assets::IAssetInstance* const copy = again.CreateInstance(stored);
    EXPECT_EQ(NumberOf(*copy, L"generic_diffuse_image_fade"), 0.125);
    copy->Release();
    stored->Release();
}

TEST_F(TheLibrary, ARemovedPresetLivesAsLongAsItIsHeld) {
    assets::IAssetLibrary& library = Starter();
    assets::IAssetDefinition* const definition = DefinitionOf(library, "Generic-001");
    assets::IAssetDefinition::IIterator* const walk = library.GetDefinitions();
    definition->AddReference();
    EXPECT_TRUE(library.RemovePreset(definition));
    EXPECT_FALSE(Has(library, "Generic-001"));
    EXPECT_EQ(definition->GetReferenceCount(), 1u);
    core::UTF8String name;
    EXPECT_TRUE(definition->GetName(name));
    EXPECT_STREQ(name.AsUTF8(), "Generic-001");
    EXPECT_EQ(library.CreateInstance(definition), nullptr);
    Reports();
    EXPECT_FALSE(library.RemovePreset(definition));
    EXPECT_THAT(Reports(), ElementsAre("error: The Preset doesn't belong to this library."));
    definition->Release();
    EXPECT_EQ(NamesOf(walk).size(), 11u);
    EXPECT_FALSE(library.RemovePreset(nullptr));
    EXPECT_TRUE(Manager().SaveLibrary(&library));
    EXPECT_TRUE(Unload(&library));
    EXPECT_EQ(NamesOf(*Open(Path("starter.jpk"))).size(), 11u);
}

TEST_F(TheLibrary, DoesNotRemoveThePresetOfAnother) {
    assets::IAssetLibrary& library = Starter();
    assets::IAssetLibrary& other = *Open(CopySample("every-kind.jpk"));
    assets::IAssetDefinition* const foreign = DefinitionOf(other, NamesOf(other).at(0));
    EXPECT_FALSE(library.RemovePreset(foreign));
    EXPECT_THAT(Reports(), ElementsAre("error: The Preset doesn't belong to this library."));
    EXPECT_EQ(foreign->GetReferenceCount(), 1u);
    foreign->Release();
}

TEST_F(TheLibrary, CopiesADefinitionOfAnotherWithItsFiles) {
    assets::IAssetLibrary* source = Open(CopySample("starter.jpk"));
    assets::IAssetLibrary& target = *Create(Path("target.jpk"), "TARGET");
    assets::IAssetDefinition* const definition = DefinitionOf(*source, "Bitmap-001");
    EXPECT_TRUE(target.CopyDefinition(definition, nullptr));
    const core::UTF8String empty("");
    EXPECT_TRUE(target.CopyDefinition(definition, &empty));
    const core::UTF8String renamed("Renamed");
    EXPECT_TRUE(target.CopyDefinition(definition, &renamed));
    EXPECT_THAT(NamesOf(target), ElementsAre("Bitmap-001", "Renamed"));
    definition->Release();
    EXPECT_TRUE(Unload(source));
    EXPECT_TRUE(Manager().SaveLibrary(&target));
    EXPECT_TRUE(Unload(&target));

    assets::IAssetLibrary& again = *Open(Path("target.jpk"));
    assets::IAssetDefinition* const copy = DefinitionOf(again, "Renamed");
    ASSERT_NE(copy, nullptr);
    assets::IAssetInstance* const instance = again.CreateInstance(copy);
    const std::string uri = UriOf(*instance, L"unifiedbitmap_Bitmap");
    EXPECT_EQ(uri, "jpk:?asset=/TARGET/Resources/Renamed/unifiedbitmap_Bitmap/0/tile0.png");
    std::shared_ptr<core::IDataReadStream> stream;
    EXPECT_TRUE(again.OpenResource(stream, Text(uri.c_str())));
    instance->Release();
    copy->Release();
}

TEST_F(TheLibrary, CopiesADefinitionWithoutAFileThatIsDamagedInItsLibrary) {
    const std::string path = CopySample("starter.jpk");
    std::string bytes = ReadFile(path);
    const std::size_t name = bytes.find("/tile0.png");
    ASSERT_NE(name, std::string::npos);
    bytes.replace(name + 10, 8, 8, '\xFF');
    WriteFile(path, bytes);
    assets::IAssetLibrary* source = Open(path);
    assets::IAssetLibrary& target = *Create(Path("target.jpk"), "TARGET");
    assets::IAssetDefinition* const definition = DefinitionOf(*source, "Bitmap-001");
    std::shared_ptr<core::IDataReadStream> stream;
    assets::IAssetInstance* const original = source->CreateInstance(definition);
    const std::string uri = UriOf(*original, L"unifiedbitmap_Bitmap");
    ASSERT_FALSE(source->OpenResource(stream, Text(uri.c_str())));
    original->Release();
    EXPECT_TRUE(target.CopyDefinition(definition, nullptr));
    EXPECT_TRUE(Manager().SaveLibrary(&target));
    definition->Release();
    assets::IAssetDefinition* const stored = DefinitionOf(target, "Bitmap-001");
    ASSERT_NE(stored, nullptr);
    assets::IAssetInstance* const copy = target.CreateInstance(stored);
    EXPECT_EQ(UriOf(*copy, L"unifiedbitmap_Bitmap"), uri);
    copy->Release();
    stored->Release();
}

TEST_F(TheLibrary, DoesNotCopyWhatHasNoSchemaOrNoAssetType) {
    assets::IAssetLibrary& library = Starter();
    EXPECT_FALSE(library.CopyDefinition(nullptr, nullptr));
    assets::IAssetSchema* const untyped =
        Manager().CreateSchema(Text("Untyped"), nullptr, nullptr, Text(""), nullptr);
    ASSERT_NE(untyped, nullptr);
    assets::IAssetInstance* const instance =
        Manager().CreateInstanceFromSchema(untyped, nullptr, nullptr);
    ASSERT_NE(instance, nullptr);
    assets::IAssetDefinition* const definition = instance->GetDefinition();
    ASSERT_NE(definition, nullptr);
    EXPECT_FALSE(library.CopyDefinition(definition, nullptr));
    EXPECT_THAT(Reports(), IsEmpty());
    definition->Release();
    instance->Release();
}

TEST_F(TheLibrary, TakesASchemaSoThatItsFileCanBeReadWithoutOthers) {
    assets::IAssetLibrary* library = Create(Path("new.jpk"), "NEW");
    const core::UTF8String folder(DataFile("schemas").c_str());
    assets::IAssetSchema* const schema =
        Manager().LoadSchemaFromFolder(Text("GenericSchema"), folder);
    ASSERT_NE(schema, nullptr);
    EXPECT_TRUE(library->AddSchema(schema));
    EXPECT_TRUE(library->AddSchema(schema));
    EXPECT_FALSE(library->AddSchema(nullptr));
    ASSERT_TRUE(Manager().SaveLibrary(library));
    EndManager();
    EXPECT_EQ(Manager().FindSchema(Text("GenericSchema")), nullptr);
    ASSERT_NE(library = Open(Path("new.jpk")), nullptr);
    EXPECT_NE(Manager().FindSchema(Text("GenericSchema")), nullptr);
    EXPECT_NE(Manager().FindSchema(Text("CommonSchema")), nullptr);
    EXPECT_THAT(Reports(), IsEmpty());
}

}  // namespace
}  // namespace halvern_tests
