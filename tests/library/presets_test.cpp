#include <korvanet/platform/assets/reportsink.h>
#include <korvanet/platform/core/jpkuuid.h>
#include <korvanet/platform/core/widestring.h>

#include "assets/asset/assetinstance.h"
#include "assets/library/definitioniterator.h"
#include "assets/library/tabletext.h"
#include "support.h"

namespace korvanet::platform::assets {
namespace {

using core::UTF8String;

void SetUris(PropertyTableImp& table, const char* property, const std::vector<std::string>& uris) {
    auto* value =
        dynamic_cast<IUriValue*>(table.FindProperty(nuo::string_ref(property))->GetValue());
    ASSERT_NE(value, nullptr);
    if (value->GetDimension() != uris.size()) {
        ASSERT_TRUE(value->SetDimension(uris.size()));
    }
    for (std::size_t index = 0; index < uris.size(); ++index)
        ASSERT_TRUE(value->SetValue(UTF8String(uris[index].c_str()).AsWide(), index));
}

// The words of the last error that was reported while the object lives.
class ErrorWords final : public IReportSink {
public:
    ErrorWords() : former_(SetReportSink(this)) {}
    ~ErrorWords() override { SetReportSink(former_); }

    void Trace(const core::WideString&, std::uint32_t, std::uint32_t) override {}
    void Information(const core::WideString&, std::uint32_t, std::uint32_t) override {}
    void Warning(const core::WideString&, std::uint32_t, std::uint32_t) override {}
    void Error(const core::WideString& words, std::uint32_t, std::uint32_t) override {
        text = words.AsUTF8();
    }

    std::string text;

private:
    IReportSink* former_;
};

TEST(Presets, APresetTakesTheListedValuesOverThoseOfItsSource) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    AssetDefinition& red = AddPaint(*library, "Red");
    AssetDefinition* made = (*library)->CreatePreset(
        red, "Blue",
        {PresetValue::Number("version", 4), PresetValue::Truth("Hidden", true),
         PresetValue::Text("UIName", "Blue paint")});
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->GetVersion(), 4);
    EXPECT_TRUE(made->IsHidden());
    EXPECT_TRUE(library->Text("Blue", "UIName") == "Blue paint");
    EXPECT_FALSE(red.IsHidden());
    EXPECT_EQ((*library)->FindRecord("Blue")->state, 1U);
}

TEST(Presets, ATakenIdentifierIsUpdatedInPlaceAndItsObjectStays) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    AssetDefinition& red = AddPaint(*library, "Red");
    AssetDefinition& blue = AddPaint(*library, "Blue");
    SetText(red, "UIName", "rot");
    EXPECT_EQ((*library)->CreatePreset(red, "Blue", {}), &blue);
    EXPECT_TRUE(library->Text("Blue", "UIName") == "rot");
    EXPECT_EQ((*library)->RecordNames().size(), 2U);
}

TEST(Presets, APresetOfItselfOnlyTakesTheValues) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    AssetDefinition& red = AddPaint(*library, "Red");
    EXPECT_EQ((*library)->CreatePreset(red, "Red", {PresetValue::Number("revision", 9)}), &red);
    EXPECT_EQ(red.GetRevision(), 9);
}

TEST(Presets, APresetOfItselfIsLinkedToTheRecordsThatItsConnectionsBecome) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    AssetDefinition& wall = AddPaint(*library, "Wall");
    AssetDefinition& spots = AddPaint(*library, "Spots");
    const PropertyBase& map = *wall.FindProperty(nuo::string_ref("p_map"));
    wall.FindProperty(nuo::string_ref("p_map"))->AppendConnection(spots);
    ASSERT_TRUE((*library)->RemovePreset(spots));
    ASSERT_EQ((*library)->CreatePreset(wall, "Wall", {}), &wall);
    ASSERT_EQ(map.GetConnectedAssetCount(), 1U);
    const PropertyTableImp* const hidden = map.ConnectedTable(0);
    EXPECT_NE(hidden, &spots);
    EXPECT_TRUE((*library)->IsRecord(*hidden));
    EXPECT_EQ((*library)->CreatePreset(wall, "Wall", {}), &wall);
    EXPECT_EQ(map.ConnectedTable(0), hidden);
    EXPECT_EQ((*library)->RecordNames().size(), 2U);
}

TEST(Presets, AnEditedInstanceBecomesAPreset) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    AssetDefinition& red = AddPaint(*library, "Red");
    AssetInstance* instance = red.CreateInstanceIn((*library)->Namespaces().tmpAsset);
    ASSERT_TRUE(instance->SetUIName(UTF8String("Deep red")));
    EXPECT_TRUE((*library)->HasOutstandingReferences());
    ASSERT_NE((*library)->CreatePreset(*instance, "Deep", {}), nullptr);
    EXPECT_TRUE(library->Text("Deep", "UIName") == "Deep red");
    EXPECT_TRUE(library->Text("Deep", "BaseSchema") == "PaintSchema");
    instance->Release();
    EXPECT_FALSE((*library)->HasOutstandingReferences());
}

TEST(Presets, AConnectedRecordIsLinkedAndAConnectedInstanceBecomesAHiddenRecord) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    AssetDefinition& wall = AddPaint(*library, "Wall");
    AssetDefinition& spots = AddPaint(*library, "Spots");
    wall.FindProperty(nuo::string_ref("p_map"))->AppendConnection(spots);
    ASSERT_NE((*library)->CreatePreset(wall, "Wall2", {}), nullptr);
    EXPECT_EQ(
        library->Definition("Wall2").FindProperty(nuo::string_ref("p_map"))->ConnectedTable(0),
        &spots);
    EXPECT_EQ((*library)->RecordNames().size(), 3U);

    AssetInstance* instance = wall.CreateInstanceIn((*library)->Namespaces().tmpAsset);
    ASSERT_NE((*library)->CreatePreset(*instance, "Wall3", {}), nullptr);
    instance->Release();
    EXPECT_EQ((*library)->RecordNames().size(), 5U);
    const PropertyTableImp* hidden =
        library->Definition("Wall3").FindProperty(nuo::string_ref("p_map"))->ConnectedTable(0);
    EXPECT_TRUE((*library)->IsRecord(*hidden));
    EXPECT_EQ(hidden->Name().size(), 36U);
    EXPECT_TRUE(static_cast<const AssetDefinition*>(hidden)->IsHidden());
    EXPECT_FALSE((*library)->HasOutstandingReferences());
}

TEST(Presets, RemovingAPresetOfAnotherLibraryIsRefused) {
    TestHost host;
    auto one = MakePaintLibrary(host, "ONE");
    auto two = MakePaintLibrary(host, "TWO");
    AssetDefinition& red = AddPaint(*one, "Red");
    AddPaint(*two, "Red");
    {
        ErrorWords words;
        EXPECT_FALSE((*two)->RemovePreset(red));
        EXPECT_EQ(words.text, "The Preset doesn't belong to this library.");
    }
    EXPECT_TRUE((*one)->Contains("Red"));
    EXPECT_TRUE((*two)->Contains("Red"));
}

TEST(Presets, ARemovedPresetLivesAsLongAsItIsHeld) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    AssetDefinition& red = AddPaint(*library, "Red");
    red.AddReference();
    ASSERT_TRUE((*library)->RemovePreset(red));
    EXPECT_FALSE((*library)->Contains("Red"));
    EXPECT_EQ(red.GetReferenceCount(), 1U);
    UTF8String name;
    EXPECT_TRUE(red.GetName(name));
    EXPECT_STREQ(name.AsUTF8(), "Red");
    red.Release();
}

TEST(Presets, ACopiedDefinitionBringsItsSchemaAndItsFilesAlong) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    auto target = std::make_unique<TestLibrary>(host, GeneralLibrary::Creating{"TARGET", 0});
    {
        auto source = MakePaintLibrary(host, "SOURCE");
        host.libraries["SOURCE"] = &**source;
        AssetDefinition& red = AddPaint(*source, "Red");
        SetUris(red, "p_images", {host.MakeFile("one.png", "1"), host.MakeFile("two.png", "22")});
        source->SavedBytes();
        ASSERT_TRUE(source->Text("Red", "p_images") ==
                    "jpk:?asset=/SOURCE/Resources/Red/p_images/0/one.png");
        ASSERT_NE((*target)->CopyDefinition(red, "Copy"), nullptr);
        host.libraries.clear();
    }
    EXPECT_NE((*target)->Schemas().FindOwn("PaintSchema"), nullptr);
    EXPECT_TRUE(target->Text("Copy", "p_images") ==
                "jpk:?asset=/TARGET/Resources/Copy/p_images/0/one.png");
    EXPECT_EQ(target->Part("TARGET/Resources/Copy/p_images/0/one.png"), "1");
    EXPECT_EQ(target->Part("TARGET/Resources/Copy/p_images/1/two.png"), "22");
    bytes = target->SavedBytes();
    target.reset();
    TestLibrary again(host, bytes, false);
    EXPECT_TRUE(again.Text("Copy", "AssetLibID") == "TARGET");
}

TEST(Presets, ACopyChangesNothingThatTheSchemaOfItsLibraryHasReadOnly) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto target = MakePaintLibrary(host, "TARGET");
        target->SavedBytes();
        std::string schema = target->Part("TARGET/Schemas/PaintSchema.xml");
        const std::size_t at = schema.find("id=\"p_depth\"");
        ASSERT_NE(at, std::string::npos);
        target->Write("TARGET/Schemas/PaintSchema.xml",
                      schema.insert(at + 12, " readonly=\"true\""));
        bytes = target->CommittedBytes();
    }
    auto source = MakePaintLibrary(host, "SOURCE");
    AssetDefinition& red = AddPaint(*source, "Red");
    const auto depth = [](const PropertyTableImp& table) {
        return dynamic_cast<IScalarValue*>(
            table.FindProperty(nuo::string_ref("p_depth"))->GetValue());
    };
    ASSERT_TRUE(depth(red)->SetValue(42));
    TestLibrary target(host, bytes, true);
    const KRVTSchemaDefinition& own = *target->Schemas().FindOwn("PaintSchema");
    ASSERT_EQ(depth(own)->GetValue(), 0.5);
    ASSERT_NE(target->CreatePreset(red, "Copy", {}), nullptr);
    EXPECT_EQ(depth(own)->GetValue(), 0.5);
}

TEST(Presets, AnEnsuredSchemaHasExactlyThePropertiesFlagsAndAliasesOfItsOriginal) {
    TestHost host;
    auto source = MakePaintLibrary(host, "SOURCE");
    KRVTSchemaDefinition& paint = *(*source)->Schemas().FindOwn("PaintSchema");
    ASSERT_TRUE(paint.AddAlias(L"depth", L"p_depth"));
    TestLibrary target(host, GeneralLibrary::Creating{"TARGET", 0});
    KRVTSchemaDefinition* made = target->EnsureSchema(paint);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(target->EnsureSchema(paint), made);
    const auto originals = paint.Properties();
    const auto copies = made->Properties();
    ASSERT_EQ(copies.size(), originals.size());
    for (std::size_t index = 0; index < copies.size(); ++index) {
        EXPECT_TRUE(copies[index]->Name() == originals[index]->Name());
        EXPECT_EQ(copies[index]->GetFlags(), originals[index]->GetFlags());
        EXPECT_TRUE(copies[index]->IsEqual(originals[index]));
    }
    ASSERT_EQ(made->OwnAliases().size(), 1U);
    EXPECT_TRUE(made->OwnAliases()[0].alias == "depth");
    EXPECT_EQ(made->BaseDefinition(), target->Schemas().FindOwn("CommonSchema"));
}

TEST(Presets, TheListingSkipsWhatWasRemovedAndEndsWithItsLibrary) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    for (const char* name : {"A", "B", "C"})
        AddPaint(*library, name);
    AssetDefinitionDataIterator walk(**library, AllDefinitions(**library));
    UTF8String name;
    ASSERT_TRUE(walk.GetName(name));
    EXPECT_STREQ(name.AsUTF8(), "A");
    AssetDefinition& removed = library->Definition("B");
    removed.AddReference();
    ASSERT_TRUE((*library)->RemovePreset(removed));
    removed.Release();
    ASSERT_TRUE(walk.Next());
    ASSERT_TRUE(walk.GetName(name));
    EXPECT_STREQ(name.AsUTF8(), "C");
    EXPECT_FALSE(walk.Next());
    EXPECT_TRUE(walk.IsAtEnd());
    EXPECT_FALSE(walk.GetName(name));
    EXPECT_EQ(walk.GetKeywordCount(), 0U);
    EXPECT_EQ(walk.GetDefinition(), nullptr);
    EXPECT_TRUE(walk.Previous());
    ASSERT_TRUE(walk.GetName(name));
    EXPECT_STREQ(name.AsUTF8(), "C");
    ASSERT_TRUE(walk.Previous());
    EXPECT_FALSE(walk.Previous());
    library.reset();
    EXPECT_TRUE(walk.IsAtEnd());
    EXPECT_FALSE(walk.GetName(name));
    EXPECT_FALSE(walk.Next());
    EXPECT_FALSE(walk.Previous());
}

TEST(Presets, TheListingMovesOnWhenTheDefinitionAtItsPositionIsRemoved) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    for (const char* name : {"A", "B", "C"})
        AddPaint(*library, name);
    AssetDefinitionDataIterator walk(**library, AllDefinitions(**library));
    std::string left;
    while (!walk.IsAtEnd()) {
        UTF8String name;
        ASSERT_TRUE(walk.GetName(name));
        if (name == UTF8String("B")) {
            left += name.AsUTF8();
            walk.Next();
        } else {
            AssetDefinition& removed = library->Definition(name.AsUTF8());
            removed.AddReference();
            ASSERT_TRUE((*library)->RemovePreset(removed));
            removed.Release();
        }
    }
    EXPECT_EQ(left, "B");
    EXPECT_EQ((*library)->RecordNames().size(), 1U);
}

TEST(Presets, TheListingAnswersFromTheStoredListingGroup) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    AssetDefinition& red = AddPaint(*library, "Red");
    SetText(red, "UIName", " Red  ");
    SetText(red, "VersionGUID", "guid");
    SetUris(red, "thumbnail", {"red.png", "second.png"});
    dynamic_cast<IBooleanValue&>(*red.FindProperty(nuo::string_ref("Hidden"))->GetValue())
        .SetValue(true);
    AddPaint(*library, "Shown");
    const nuo::buffer<nuo::byte> bytes = library->SavedBytes();
    library.reset();

    TestLibrary again(host, bytes, false);
    AssetDefinitionDataIterator walk(*again, AllDefinitions(*again));
    UTF8String text;
    ASSERT_TRUE(walk.GetUIName(text, UTF8String("")));
    EXPECT_STREQ(text.AsUTF8(), " Red");
    ASSERT_TRUE(walk.GetThumbnailName(0, text));
    EXPECT_STREQ(text.AsUTF8(), "thumbnail");
    ASSERT_TRUE(walk.GetVersionGUID(text));
    EXPECT_STREQ(text.AsUTF8(), "guid");
    EXPECT_TRUE(walk.IsHidden());
    EXPECT_FALSE(again->FindRecord("Red")->instanceLoaded);

    ASSERT_TRUE(walk.Next());
    EXPECT_FALSE(walk.IsHidden());
    EXPECT_FALSE(walk.GetThumbnailName(0, text));
    ASSERT_TRUE(walk.GetVersionGUID(text));
    EXPECT_TRUE(core::JPKUUID::IsValid(text)) << text.AsUTF8();
    EXPECT_FALSE(walk.Next());
    EXPECT_FALSE(walk.GetVersionGUID(text));
    EXPECT_FALSE(walk.GetThumbnailName(0, text));
    EXPECT_FALSE(walk.IsHidden());
}

TEST(Presets, ConnectedCopiesEnterTheSharedAssetsAndLeaveThem) {
    TestHost host;
    TestLibrary source(host, "starter.jpk", false);
    auto library = std::make_unique<TestLibrary>(host, GeneralLibrary::Creating{"LIB", 0});
    (*library)->Shared().SetEnabled(true);
    ASSERT_NE((*library)->CreatePreset(source.Definition("Generic-001"), "Copy", {}), nullptr);
    const auto entered = (*library)->Shared().ByNameOfType("texture");
    (*library)->Shared().Clear();
    (*library)->RebuildSharedAssets();
    EXPECT_EQ(entered, (*library)->Shared().ByNameOfType("texture"));
    EXPECT_FALSE(entered.empty());
}

TEST(Presets, ListingTouchesTheListingGroupAlone) {
    TestHost host;
    TestLibrary library(host, "starter.jpk", false);
    AssetDefinitionDataIterator walk(*library, AllDefinitions(*library));
    UTF8String text;
    ASSERT_TRUE(walk.GetUIName(text, UTF8String("")));
    EXPECT_STREQ(text.AsUTF8(), "TEX_1");
    const HalvernAsset& record = *library->FindRecord("Bitmap-001");
    EXPECT_TRUE(record.definitionLoaded);
    EXPECT_FALSE(record.instanceLoaded);
    EXPECT_TRUE(record.table->Group(PropertyTableImp::kReadWriteGroup).Empty());
    IAssetDefinition* definition = walk.GetDefinition();
    ASSERT_NE(definition, nullptr);
    EXPECT_TRUE(record.instanceLoaded);
    EXPECT_EQ(definition->GetReferenceCount(), 1U);
    EXPECT_TRUE(library->HasOutstandingReferences());
    definition->Release();
    EXPECT_FALSE(library->HasOutstandingReferences());
}

TEST(Presets, DefinitionsAreFilteredByIdentifierTypeAnsweredTypeAndSchema) {
    TestHost host;
    TestLibrary library(host, "starter.jpk", false);
    EXPECT_EQ(AllDefinitions(*library).size(), 12U);
    EXPECT_EQ(DefinitionsById(*library, "Generic-003").size(), 1U);
    EXPECT_EQ(DefinitionsById(*library, "Generic-999").size(), 0U);
    EXPECT_EQ(DefinitionsOfType(*library, "texture").size(), 4U);
    EXPECT_EQ(DefinitionsOfType(*library, "GenericSchema").size(), 8U);
    EXPECT_EQ(DefinitionsOfType(*library, "nothing").size(), 0U);
}

TEST(Presets, DefinitionsAreFilteredByTheTypeThatHostsAreTold) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    KRVTSchemaDefinition* const schema = (*library)->EnsureSchema(*LoadGlobal(
        host, "ShapeSchema", R"(<AssetSchema><UID val="ShapeSchema"/><Base val="CommonSchema"/>
<type val="RPCGeometry"/></AssetSchema>)"));
    ASSERT_NE(schema, nullptr);
    AssetDefinition& model = MakeDefinition(*schema, velmor::Namespace(), "model");
    model.AddReference();
    ASSERT_NE((*library)->CreatePreset(model, "Shape", {}), nullptr);
    model.Release();
    AddPaint(*library, "Red");
    for (const char* type : {"RPCGeometry", "proceduralgeometry", "ShapeSchema"})
        EXPECT_EQ(DefinitionsOfType(**library, type).size(), 1U) << type;
}

TEST(Presets, SharedIndexesFollowPresetsRemovalsAndTheRebuild) {
    TestHost host;
    TestLibrary library(host, "starter.jpk", true);
    library->Shared().SetEnabled(true);
    library->RebuildSharedAssets();
    EXPECT_EQ(library->Shared().ByNameOfType("texture").size(), 4U);
    EXPECT_EQ(library->Shared().ByName("texture", "TEX_1").count("Bitmap-001"), 1U);
    ASSERT_NE(library->CreatePreset(library.Definition("Bitmap-001"), "New",
                                    {PresetValue::Text("UIName", "TEX_9")}),
              nullptr);
    EXPECT_EQ(library->Shared().ByName("texture", "TEX_9").count("New"), 1U);
    AssetDefinition& made = library.Definition("New");
    made.AddReference();
    ASSERT_TRUE(library->RemovePreset(made));
    made.Release();
    EXPECT_TRUE(library->Shared().ByName("texture", "TEX_9").empty());
}

TEST(Presets, WhatDefinitionsOfALibraryNameIsCountedAndACopyCountsToo) {
    TestHost host;
    auto source = MakePaintLibrary(host, "SOURCE");
    auto target = MakePaintLibrary(host, "TARGET");
    KRVTSchemaDefinition* const user = LoadGlobal(
        host, "UserSchema",
        R"(<AssetSchema><UID val="UserSchema"/><Base val="CommonSchema"/><type val="material"/>)"
        R"(<String id="physmat_aspects" allowmultiplevalues="true" val="Spots,Shine"/>)"
        "</AssetSchema>");
    KRVTSchemaDefinition* const texture =
        LoadGlobal(host, "SpotSchema",
                   R"(<AssetSchema><UID val="SpotSchema"/><Base val="CommonSchema"/>)"
                   R"(<type val="texture"/></AssetSchema>)");
    const auto store = [&](KRVTSchemaDefinition& schema, const char* identifier) {
        AssetDefinition& model = MakeDefinition(schema, velmor::Namespace(), "model");
        model.AddReference();
        (*source)->CreatePreset(model, identifier, {PresetValue::Text("UIName", "Name")});
        model.Release();
    };
    store(*user, "User");
    store(*texture, "Spots");
    EXPECT_EQ((*source)->Shared().Count("Spots"), 0U);
    (*source)->RebuildSharedAssets();
    EXPECT_EQ((*source)->Shared().Count("Spots"), 1U);
    EXPECT_EQ((*source)->Shared().Count("Shine"), 1U);

    (*target)->Shared().SetEnabled(true);
    ASSERT_NE((*target)->CopyDefinition(source->Definition("Spots"), "Copy"), nullptr);
    EXPECT_EQ((*target)->Shared().ByName("texture", "Name").count("Copy"), 1U);
    ASSERT_NE((*target)->CopyDefinition(source->Definition("User"), "One"), nullptr);
    ASSERT_NE((*target)->CopyDefinition(source->Definition("User"), "Two"), nullptr);
    EXPECT_EQ((*target)->Shared().Count("Spots"), 2U);
    AssetDefinition& two = target->Definition("Two");
    two.AddReference();
    ASSERT_TRUE((*target)->RemovePreset(two));
    two.Release();
    EXPECT_EQ((*target)->Shared().Count("Spots"), 1U);
}

TEST(Reloading, HeldDefinitionsAndInstancesOutliveTheDocument) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    AssetDefinition& wall = AddPaint(*library, "Wall");
    wall.FindProperty(nuo::string_ref("p_map"))->AppendConnection(AddPaint(*library, "Spots"));
    AddPaint(*library, "Free");
    library->SavedBytes();
    AssetInstance* instance = wall.CreateInstanceIn((*library)->Namespaces().tmpAsset);
    (*library)->PrepareForReload();
    EXPECT_FALSE((*library)->Contains("Wall"));
    EXPECT_FALSE((*library)->Contains("Spots"));
    EXPECT_TRUE((*library)->Contains("Free"));
    library.reset();
    UTF8String name;
    IAssetDefinition* definition = instance->GetDefinition();
    ASSERT_NE(definition, nullptr);
    EXPECT_TRUE(definition->GetName(name));
    EXPECT_STREQ(name.AsUTF8(), "Wall");
    EXPECT_EQ(definition->GetSchema(), host.global->FindOwn("PaintSchema"));
    EXPECT_EQ(instance->FindProperty(L"p_map")->GetConnectedAssetCount(), 1U);
    EXPECT_TRUE(instance->SetUIName(UTF8String("still here")));
    definition->Release();
    instance->Release();
}

TEST(Reloading, TheScratchFolderGoesWithTheDocument) {
    TestHost host;
    { auto library = MakePaintLibrary(host); }
    EXPECT_TRUE(host.temp->children("").empty());
}

TEST(Reloading, StoresCanBeClosedAndReopenedBeforeAnySave) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    (*library)->ReopenStores(false);
    EXPECT_EQ((*library)->InstanceStore()->BlockCount(), 0U);
    (*library)->CloseStores();
    EXPECT_EQ((*library)->InstanceStore(), nullptr);
    (*library)->ReopenStores(true);
    AddPaint(*library, "Red");
    library->SavedBytes();
}

}  // namespace
}  // namespace korvanet::platform::assets
