// A host that brings its own schemas, strings, resolvers and choices.

#include <korvanet/platform/assets/ischemabatchloader.h>
#include <korvanet/platform/core/ienumeration.h>

#include <filesystem>

#include "tests/support/managertest.h"

namespace halvern_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A reader of a host's own.
class FileReader final : public core::IDataReadStream {
public:
    explicit FileReader(const std::string& path) : bytes_(ReadFile(path)) {}

    bool IsOpen() const override { return open_; }
    void Close() override { open_ = false; }
    bool CanRead() const override { return open_ && at_ < bytes_.size(); }
    std::uint64_t Read(void* buffer, std::uint64_t length) override {
        const std::uint64_t count = std::min<std::uint64_t>(length, bytes_.size() - at_);
        std::memcpy(buffer, bytes_.data() + at_, count);
        at_ += count;
        return count;
    }
    bool ReadExact(void* buffer, std::uint64_t length) override {
        return Read(buffer, length) == length;
    }
    std::uint64_t Seek(std::int64_t offset, core::SeekOrigin origin) override {
        const auto size = static_cast<std::int64_t>(bytes_.size());
        const std::int64_t from = origin == core::SeekOrigin::kBegin ? 0
                                  : origin == core::SeekOrigin::kCurrent
                                      ? static_cast<std::int64_t>(at_)
                                      : size;
        at_ = static_cast<std::uint64_t>(std::clamp<std::int64_t>(from + offset, 0, size));
        return at_;
    }
    std::uint64_t Tell() const override { return at_; }

private:
    std::string bytes_;
    std::uint64_t at_ = 0;
    bool open_ = true;
};

// A string of a host's own.
class HostString final : public core::IString {
public:
    explicit HostString(const char* text) : text_(text) {}
    const char* AsUTF8() const override { return text_.AsUTF8(); }
    const wchar_t* AsWide() const override { return text_.AsWide(); }
    void Assign(const wchar_t* text) override {
        text_.Assign(text);
        ++assignments;
    }

    int assignments = 0;

private:
    core::UTF8String text_;
};

core::UTF8String Text(const char* text) {
    return core::UTF8String(text);
}

class Authoring : public ManagerTest {};

TEST_F(Authoring, SchemasOfABatchComeInAnyOrder) {
    Manager();
    assets::ISchemaBatchLoader* const loader = assets::ISchemaBatchLoader::Create();
    ASSERT_NE(loader, nullptr);
    for (const char* name : {"GenericSchema", "UnifiedBitmapSchema", "CommonSchema"}) {
        FileReader reader(DataFile(std::string("schemas/") + name + ".xml"));
        EXPECT_NE(loader->LoadSchema(&reader), nullptr) << name;
    }
    EXPECT_EQ(Manager().GetSchemaCount(), 0u);
    EXPECT_TRUE(loader->Commit());
    loader->Release();
    EXPECT_EQ(Manager().GetSchemaCount(), 3u);
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(Authoring, AnAssetIsMadeFromASchemaOfTheHostsOwnAndStored) {
    assets::IAssetSchema* const parent =
        Manager().LoadSchemaFromFolder(Text("CommonSchema"), Text(DataFile("schemas").c_str()));
    ASSERT_NE(parent, nullptr);
    assets::IAssetSchema* const schema = Manager().CreateSchema(
        Text("PaintSchema"), nullptr, nullptr, Text("materialappearance"), parent);
    ASSERT_NE(schema, nullptr);
    assets::IChoiceList* const finishes = assets::IChoiceList::Create();
    EXPECT_TRUE(finishes->AddChoice(assets::IChoice::Create(Text("Matte"), 0, Text("matte"))));
    EXPECT_TRUE(finishes->AddChoice(assets::IChoice::Create(Text("Gloss"), 1, Text("gloss"))));
    const std::uint32_t open = assets::PropertyFlags::kPublic;
    EXPECT_NE(schema->AddChoiceProperty(L"finish", open, L"Finish", L"matte", finishes), nullptr);
    EXPECT_NE(schema->AddFloatProperty(
                  L"thickness", open, L"Thickness", 0.5, L"",
                  assets::IBounds::Create(true, 0, true, true, 1, true, 0.125, false)),
              nullptr);
    assets::IAssetInstance* instance = Manager().CreateInstanceFromSchema(schema, nullptr, nullptr);
    ASSERT_NE(instance, nullptr);
    auto* finish =
        dynamic_cast<assets::IChoiceListValue*>(instance->FindProperty(L"finish")->GetValue());
    ASSERT_NE(finish, nullptr);
    EXPECT_TRUE(finish->SetValue(1));
    EXPECT_FALSE(finish->SetValue(2));

    assets::IAssetLibrary* library = Create(Path("paints.jpk"), "PAINTS");
    ASSERT_NE(library, nullptr);
    EXPECT_TRUE(library->CreatePresetFromInstance(instance, Text("Paint"), false));
    instance->Release();
    ASSERT_TRUE(Manager().SaveLibrary(library));
    ASSERT_TRUE(Unload(library));
    EndManager();

    ASSERT_NE(library = Open(Path("paints.jpk")), nullptr);
    assets::IAssetDefinition* const definition = DefinitionOf(*library, "Paint");
    ASSERT_NE(definition, nullptr);
    ASSERT_NE(instance = library->CreateInstance(definition), nullptr);
    finish = dynamic_cast<assets::IChoiceListValue*>(instance->FindProperty(L"finish")->GetValue());
    ASSERT_NE(finish, nullptr);
    EXPECT_EQ(finish->GetValue(), 1);
    ASSERT_NE(finish->GetChoices(), nullptr);
    EXPECT_EQ(finish->GetChoices()->GetCount(), 2u);
    auto* const thickness =
        dynamic_cast<assets::IScalarValue*>(instance->FindProperty(L"thickness")->GetValue());
    EXPECT_EQ(thickness->GetValue(), 0.5);
    EXPECT_FALSE(thickness->SetValue(2));
    EXPECT_THAT(Reports(), ElementsAre("error: Value out of range"));
    core::UTF8String type;
    EXPECT_TRUE(definition->GetAssetType(type));
    EXPECT_STREQ(type.AsUTF8(), "materialappearance");
    instance->Release();
    definition->Release();
}

TEST_F(Authoring, PublicPropertiesAreWalkedInTheOrderOfTheirNames) {
    assets::IAssetLibrary* const library = Open(CopySample("starter.jpk"));
    assets::IAssetDefinition* const definition = DefinitionOf(*library, "Bitmap-001");
    assets::IAssetInstance* const instance = library->CreateInstance(definition);
    std::vector<std::string> names;
    auto* const walk = static_cast<assets::IPropertyTable*>(instance)->GetProperties(true);
    ASSERT_NE(walk, nullptr);
    for (walk->First(); walk->IsValid(); walk->Next()) {
        assets::IProperty* const property = walk->Current();
        EXPECT_NE(property->GetFlags() & assets::PropertyFlags::kPublic, 0u);
        core::UTF8String name;
        property->GetName(name);
        names.emplace_back(name.AsUTF8());
    }
    instance->ReleaseEnumeration(walk);
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    EXPECT_THAT(names, testing::Contains("unifiedbitmap_RGBAmount"));
    EXPECT_THAT(names, testing::Not(testing::Contains("BaseSchema")));
    instance->Release();
    definition->Release();
}

TEST_F(Authoring, StringsOfTheHostAreAssignedOnceAndOnlyOnSuccess) {
    assets::IAssetLibrary* const library = Open(CopySample("starter.jpk"));
    HostString text("kept");
    library->GetIdentifier(text);
    EXPECT_STREQ(text.AsUTF8(), kStarterIdentifier);
    EXPECT_EQ(text.assignments, 1);
    EXPECT_FALSE(library->GetAssetType(7, text));
    EXPECT_FALSE(Manager().GetTextureLibraryPath(text));
    EXPECT_FALSE(Manager().GetPathResolver()->Resolve(HostString("nowhere.png"), text));
    EXPECT_FALSE(Manager().GetPathResolver()->GetSearchPath(0, text));
    EXPECT_STREQ(text.AsUTF8(), kStarterIdentifier);
    EXPECT_EQ(text.assignments, 1);
}

TEST_F(Authoring, ATextureThatTheHostResolvesIsStoredBySaving) {
    assets::IAssetLibrary* library = OpenForWriting(CopySample("starter.jpk"));
    std::filesystem::create_directories(Path("textures"));
    WriteFile(Path("textures/brick.png"), "bytes of the brick");
    ASSERT_TRUE(Manager().GetPathResolver()->AddSearchPath(Text(Path("textures").c_str())));
    assets::IAssetDefinition* definition = DefinitionOf(*library, "Bitmap-001");
    assets::IAssetInstance* instance = library->CreateInstance(definition);
    definition->Release();
    const auto uri_of = [](assets::IAssetInstance& asset) -> assets::IUriValue& {
        return dynamic_cast<assets::IUriValue&>(
            *asset.FindProperty(L"unifiedbitmap_Bitmap")->GetValue());
    };
    ASSERT_TRUE(uri_of(*instance).SetValue(L"brick.png"));
    ASSERT_TRUE(library->CreatePresetFromInstance(instance, Text("Brick"), false));
    instance->Release();
    ASSERT_TRUE(Manager().SaveLibrary(library));
    ASSERT_TRUE(Unload(library));
    std::filesystem::remove_all(Path("textures"));

    ASSERT_NE(library = Open(Path("starter.jpk")), nullptr);
    definition = DefinitionOf(*library, "Brick");
    ASSERT_NE(definition, nullptr);
    instance = library->CreateInstance(definition);
    core::UTF8String uri;
    ASSERT_TRUE(uri_of(*instance).GetValue(uri));
    std::string expected("jpk:?asset=/");
    expected.append(kStarterIdentifier);
    expected.append("/Resources/Brick/unifiedbitmap_Bitmap/0/brick.png");
    EXPECT_EQ(uri.AsUTF8(), expected);
    std::shared_ptr<core::IDataReadStream> stream;
    ASSERT_TRUE(library->OpenResource(stream, uri));
    std::string bytes(18, '\0');
    EXPECT_TRUE(stream->ReadExact(bytes.data(), bytes.size()));
    EXPECT_EQ(bytes, "bytes of the brick");
    instance->Release();
    definition->Release();
}

TEST_F(Authoring, FiftyLibrariesAreOpenAtOnce) {
    for (int i = 0; i < 50; ++i) {
        const std::string number = std::to_string(i);
        assets::IAssetLibrary* const library = Create(Path("l" + number + ".jpk"), "L" + number);
        ASSERT_NE(library, nullptr) << i;
        EXPECT_TRUE(i % 2 != 0 || Manager().SaveLibrary(library));
    }
    EXPECT_EQ(Manager().GetLibraryCount(), 50u);
    for (int i = 0; i < 50; ++i) {
        assets::IAssetLibrary* const library =
            Manager().FindLibrary(Text(("L" + std::to_string(i)).c_str()));
        ASSERT_NE(library, nullptr) << i;
        EXPECT_EQ(Manager().GetLibraryAt(static_cast<std::size_t>(i)), library);
    }
}

}  // namespace
}  // namespace halvern_tests
