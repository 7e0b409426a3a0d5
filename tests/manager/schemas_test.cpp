#include <korvanet/platform/assets/iassetobserver.h>
#include <korvanet/platform/assets/ischemabatchloader.h>

#include <filesystem>

#include "assets/property/property.h"
#include "tests/support/managertest.h"

namespace halvern_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Schemas : public ManagerTest {
protected:
    assets::IAssetSchema* Load(const char* name) {
        return Manager().LoadSchemaFromFolder(core::UTF8String(name),
                                              core::UTF8String(DataFile("schemas").c_str()));
    }
    assets::IAssetSchema* LoadFile(const std::string& path) {
        return Manager().LoadSchemaFile(core::UTF8String(path.c_str()));
    }
    assets::IAssetSchema* Make(const char* name, const char* type,
                               assets::IAssetSchema* parent = nullptr) {
        return Manager().CreateSchema(core::UTF8String(name), nullptr, nullptr,
                                      core::UTF8String(type), parent);
    }
    std::vector<std::string> Ids() {
        std::vector<std::string> ids;
        for (std::size_t i = 0; i < Manager().GetSchemaCount(); ++i)
            ids.push_back(IdOf(i));
        return ids;
    }
    std::string IdOf(std::size_t index) {
        core::UTF8String id;
        Manager().GetSchemaAt(index)->GetId(id);
        return id.AsUTF8();
    }
    // GenericSchema in the shared set, with another default than the file of the tests has.
    assets::IAssetSchema* Shifted() {
        std::string text = ReadFile(DataFile("schemas/GenericSchema.xml"));
        text.replace(text.find("1.52"), 4, "2.5");
        WriteFile(Path("GenericSchema.xml"), text);
        std::filesystem::copy_file(DataFile("schemas/CommonSchema.xml"), Path("CommonSchema.xml"));
        return Manager().LoadSchemaFromFolder(core::UTF8String("GenericSchema"),
                                              core::UTF8String(Folder().c_str()));
    }
    // An instance made from a schema of a library, which is unloaded then.
    assets::IAssetInstance* FromLibrarysSchema() {
        assets::IAssetLibrary* const library = Open(CopySample("starter.jpk"));
        assets::IAssetDefinition* const definition = DefinitionOf(*library, "Generic-001");
        assets::IAssetInstance* const instance =
            Manager().CreateInstanceFromSchema(definition->GetSchema(), nullptr, nullptr);
        definition->Release();
        EXPECT_TRUE(Unload(library));
        return instance;
    }
    assets::IAssetSchema* Find(const char* name) {
        return Manager().FindSchema(core::UTF8String(name));
    }
};

TEST_F(Schemas, AreListedByName) {
    EXPECT_EQ(Manager().GetSchemaCount(), 0u);
    EXPECT_EQ(Manager().GetSchemaAt(0), nullptr);
    ASSERT_NE(Load("GenericSchema"), nullptr);
    ASSERT_NE(Load("EveryKindSchema"), nullptr);
    EXPECT_THAT(Ids(), ElementsAre("CommonSchema", "EveryKindSchema", "GenericSchema"));
    EXPECT_EQ(Manager().GetSchemaAt(3), nullptr);
    EXPECT_EQ(Find("GenericSchema"), Manager().GetSchemaAt(2));
    EXPECT_EQ(Find("nobody"), nullptr);
}

TEST_F(Schemas, AFolderGivesASchemaWithItsBases) {
    assets::IAssetSchema* const schema = Load("GenericSchema");
    ASSERT_NE(schema, nullptr);
    EXPECT_EQ(schema, Find("GenericSchema"));
    EXPECT_EQ(schema->GetBaseSchema(), Find("CommonSchema"));
    EXPECT_EQ(Load("GenericSchema"), schema);
    EXPECT_EQ(Load("nobody"), nullptr);
    EXPECT_EQ(Load("../schemas/GenericSchema"), nullptr);
    EXPECT_EQ(Load(""), nullptr);
    EXPECT_EQ(Manager().GetSchemaCount(), 2u);
}

TEST_F(Schemas, AFolderThatLacksABaseGivesNothing) {
    std::filesystem::copy_file(DataFile("schemas/GenericSchema.xml"), Path("GenericSchema.xml"));
    EXPECT_EQ(Manager().LoadSchemaFromFolder(core::UTF8String("GenericSchema"),
                                             core::UTF8String(Folder().c_str())),
              nullptr);
    EXPECT_EQ(Manager().GetSchemaCount(), 0u);
    // The base may also be there already.
    ASSERT_NE(LoadFile(DataFile("schemas/CommonSchema.xml")), nullptr);
    EXPECT_NE(Manager().LoadSchemaFromFolder(core::UTF8String("GenericSchema"),
                                             core::UTF8String(Folder().c_str())),
              nullptr);
}

TEST_F(Schemas, AFileGoesToTheSharedSet) {
    assets::IAssetSchema* const common = LoadFile(DataFile("schemas/CommonSchema.xml"));
    ASSERT_NE(common, nullptr);
    EXPECT_EQ(Find("CommonSchema"), common);
    EXPECT_EQ(LoadFile(Path("missing.xml")), nullptr);
    WriteFile(Path("broken.xml"), "<AssetSchema><UID val=");
    EXPECT_EQ(LoadFile(Path("broken.xml")), nullptr);
    EXPECT_EQ(LoadFile(Folder()), nullptr);
    EXPECT_EQ(Manager().GetSchemaCount(), 1u);
}

TEST_F(Schemas, AreMadeUnderAParent) {
    EXPECT_EQ(Make("", "texture"), nullptr);
    assets::IAssetSchema* const generic = Load("GenericSchema");
    assets::IAssetSchema* const made = Make("Made", "texture");
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->GetBaseSchema(), Find("CommonSchema"));
    EXPECT_EQ(Make("Made", "ignored"), made);
    EXPECT_EQ(Make("Other", "texture", generic), nullptr);
    assets::IAssetSchema* const child = Make("Child", "materialappearance", generic);
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(child->GetBaseSchema(), generic);
    EXPECT_NE(child->FindProperty(L"generic_glossiness"), nullptr);
}

TEST_F(Schemas, AParentOfALibraryStandsForItsTwinInTheSharedSet) {
    assets::IAssetLibrary* const library = Open(CopySample("starter.jpk"));
    assets::IAssetDefinition* const definition = DefinitionOf(*library, "Generic-001");
    assets::IAssetSchema* const own = definition->GetSchema();
    EXPECT_NE(own, Find("GenericSchema"));
    assets::IAssetSchema* const child = Make("Child", "materialappearance", own);
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(child->GetBaseSchema(), Find("GenericSchema"));
    definition->Release();
}

TEST_F(Schemas, AParentThatTheSharedSetLacksIsRefused) {
    ASSERT_NE(LoadFile(DataFile("schemas/CommonSchema.xml")), nullptr);
    assets::ISchemaBatchLoader* const loader = assets::ISchemaBatchLoader::Create();
    const std::string text =
        "<AssetSchema><UID val=\"Batch\"/><Base val=\"CommonSchema\"/></AssetSchema>";
    class Reader final : public core::IDataReader {
    public:
        explicit Reader(const std::string& text) : text_(text) {}
        bool IsOpen() const override { return true; }
        void Close() override {}
        bool CanRead() const override { return at_ < text_.size(); }
        std::uint64_t Read(void* buffer, std::uint64_t length) override {
            const std::uint64_t count = std::min<std::uint64_t>(length, text_.size() - at_);
            std::memcpy(buffer, text_.data() + at_, count);
            at_ += count;
            return count;
        }
        bool ReadExact(void* buffer, std::uint64_t length) override {
            return Read(buffer, length) == length;
        }
        std::uint64_t Seek(std::int64_t offset, core::SeekOrigin origin) override {
            const std::int64_t from = origin == core::SeekOrigin::kBegin     ? 0
                                      : origin == core::SeekOrigin::kCurrent ? Signed(at_)
                                                                             : Signed(text_.size());
            at_ = static_cast<std::uint64_t>(
                std::clamp<std::int64_t>(from + offset, 0, Signed(text_.size())));
            return at_;
        }
        std::uint64_t Tell() const override { return at_; }

    private:
        static std::int64_t Signed(std::uint64_t n) { return static_cast<std::int64_t>(n); }
        const std::string& text_;
        std::uint64_t at_ = 0;
    } reader(text);
    assets::IAssetSchema* const batch = loader->LoadSchema(&reader);
    ASSERT_NE(batch, nullptr);
    EXPECT_EQ(Make("Child", "", batch), nullptr);
    // One that exists is given back whatever the parent.
    EXPECT_EQ(Make("CommonSchema", "", batch), Find("CommonSchema"));
    EXPECT_EQ(Manager().CreateInstanceFromSchema(batch, nullptr, nullptr), nullptr);
    EXPECT_TRUE(loader->Commit());
    loader->Release();
    EXPECT_NE(Make("Child", "", Find("Batch")), nullptr);
}

TEST_F(Schemas, GiveInstancesWithTheirDefaults) {
    assets::IAssetSchema* const schema = Load("GenericSchema");
    assets::IAssetInstance* const instance =
        Manager().CreateInstanceFromSchema(schema, nullptr, nullptr);
    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(instance->GetReferenceCount(), 1u);
    EXPECT_EQ(instance->GetSchema(), schema);
    const auto* glossiness = dynamic_cast<const assets::IScalarValue*>(
        instance->FindProperty(L"generic_glossiness")->GetValue());
    EXPECT_EQ(glossiness->GetValue(), 0.5);
    assets::IAssetDefinition* const definition = instance->GetDefinition();
    ASSERT_NE(definition, nullptr);
    core::UTF8String text;
    EXPECT_TRUE(definition->GetName(text));
    EXPECT_EQ(std::strlen(text.AsUTF8()), 36u);
    EXPECT_FALSE(definition->GetAssetLibID(text));
    definition->Release();
    instance->Release();
    EXPECT_EQ(Manager().CreateInstanceFromSchema(nullptr, nullptr, nullptr), nullptr);
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(Schemas, GiveInstancesUnderAGivenIdentifierAsOftenAsAsked) {
    assets::IAssetSchema* const schema = Load("GenericSchema");
    const core::UTF8String identifier("Mine");
    const core::UTF8String library("LIB");
    for (int i = 0; i < 2; ++i) {
        assets::IAssetInstance* const instance =
            Manager().CreateInstanceFromSchema(schema, &identifier, &library);
        ASSERT_NE(instance, nullptr);
        assets::IAssetDefinition* const definition = instance->GetDefinition();
        core::UTF8String text;
        EXPECT_TRUE(definition->GetName(text));
        EXPECT_STREQ(text.AsUTF8(), "Mine");
        EXPECT_TRUE(definition->GetAssetLibID(text));
        EXPECT_STREQ(text.AsUTF8(), "LIB");
        // Given back in the other order, the definition still lives as long as its instance.
        definition->Release();
        EXPECT_NE(instance->FindProperty(L"generic_glossiness"), nullptr);
        instance->Release();
    }
}

TEST_F(Schemas, AnInstanceOfALibrarysSchemaOutlivesTheLibrary) {
    assets::IAssetInstance* const instance = FromLibrarysSchema();
    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(instance->GetSchema(), Find("GenericSchema"));
    instance->Release();
}

double NumberOf(assets::IPropertyTable& table, const wchar_t* name) {
    return dynamic_cast<assets::IScalarValue*>(table.FindProperty(name)->GetValue())->GetValue();
}

// Of two schemas of one name and version that differ, the shared set keeps the first.
TEST_F(Schemas, AnInstanceOfALibrarysSchemaHasTheDefaultsOfThatSchema) {
    Shifted();
    assets::IAssetInstance* const instance = FromLibrarysSchema();
    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(NumberOf(*instance, L"generic_refraction_index"), 1.52);
    EXPECT_EQ(instance->GetSchema(), Find("GenericSchema"));
    EXPECT_EQ(NumberOf(*Find("GenericSchema"), L"generic_refraction_index"), 2.5);
    instance->Release();
}

TEST_F(Schemas, AFolderWhoseSchemaTheSharedSetRefusesGivesTheOneThatIsThere) {
    assets::IAssetSchema* const first = Shifted();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(Load("GenericSchema"), first);
    EXPECT_EQ(NumberOf(*first, L"generic_refraction_index"), 2.5);
}

TEST_F(Schemas, InstancesGainThePropertiesThatTheirSchemaGains) {
    Load("GenericSchema");
    assets::IAssetSchema* const schema = Make("Made", "texture");
    assets::IAssetInstance* const instance =
        Manager().CreateInstanceFromSchema(schema, nullptr, nullptr);
    assets::IAssetInstance* const other =
        Manager().CreateInstanceFromSchema(Find("GenericSchema"), nullptr, nullptr);
    ASSERT_NE(
        schema->AddIntegerProperty(L"added", assets::PropertyFlags::kPublic, L"Added", 7, nullptr),
        nullptr);
    assets::IProperty* const property = instance->FindProperty(L"added");
    ASSERT_NE(property, nullptr);
    EXPECT_EQ(dynamic_cast<assets::IIntegerValue*>(property->GetValue())->GetValue(), 7);
    EXPECT_EQ(other->FindProperty(L"added"), nullptr);
    instance->Release();
    other->Release();
}

TEST_F(Schemas, ADerivedSchemaGainsACopyOfItsOwnUnlessThePropertyIsReadOnly) {
    Load("GenericSchema");
    assets::IAssetSchema* const schema = Make("Made", "texture");
    assets::IAssetSchema* const derived = Make("Derived", "texture", schema);
    ASSERT_NE(derived, nullptr);
    using namespace assets::PropertyFlags;
    ASSERT_NE(schema->AddIntegerProperty(L"added", kPublic, L"Added", 7, nullptr), nullptr);
    ASSERT_NE(schema->AddIntegerProperty(L"fixed", kReadOnly, L"", 8, nullptr), nullptr);
    assets::IProperty* const gained = derived->FindProperty(L"added");
    ASSERT_NE(gained, nullptr);
    EXPECT_EQ(dynamic_cast<assets::IIntegerValue*>(gained->GetValue())->GetValue(), 7);
    EXPECT_EQ(derived->FindProperty(L"fixed"), nullptr);
    const auto* const own = dynamic_cast<assets::PropertyBase*>(gained);
    const auto* const base = dynamic_cast<assets::PropertyBase*>(schema->FindProperty(L"added"));
    EXPECT_NE(&own->Descriptor(), &base->Descriptor());
}

TEST_F(Schemas, AnInstanceThatIsObservedTellsOfAPropertyThatItGained) {
    class Counter final : public assets::IAssetObserver {
    public:
        void OnValueChanged(assets::IPropertyTable::IProperty*) override { ++changes; }
        void OnConnectionChanged(assets::IPropertyTable::IProperty*) override {}
        void OnAssetChanged() override {}
        int changes = 0;
    } counter;
    Load("GenericSchema");
    assets::IAssetSchema* const schema = Make("Made", "texture");
    assets::IAssetInstance* const instance =
        Manager().CreateInstanceFromSchema(schema, nullptr, nullptr);
    ASSERT_TRUE(instance->AddObserver(&counter));
    schema->AddIntegerProperty(L"added", assets::PropertyFlags::kPublic, L"Added", 7, nullptr);
    auto* const value =
        dynamic_cast<assets::IIntegerValue*>(instance->FindProperty(L"added")->GetValue());
    EXPECT_TRUE(value->SetValue(8, 0));
    EXPECT_EQ(counter.changes, 1);
    EXPECT_TRUE(instance->RemoveObserver(&counter));
    instance->Release();
}

TEST_F(Schemas, TheDefinitionOfAnInstanceGainsThePropertiesThatItsSchemaGains) {
    Load("GenericSchema");
    assets::IAssetSchema* const schema = Make("Made", "texture");
    assets::IAssetInstance* const instance =
        Manager().CreateInstanceFromSchema(schema, nullptr, nullptr);
    schema->AddIntegerProperty(L"added", assets::PropertyFlags::kPublic, L"Added", 7, nullptr);
    assets::IAssetDefinition* const definition = instance->GetDefinition();
    assets::IAssetInstance* const second = definition->CreateInstance();
    EXPECT_NE(second->FindProperty(L"added"), nullptr);
    second->Release();
    definition->Release();
    instance->Release();
}

}  // namespace
}  // namespace halvern_tests
