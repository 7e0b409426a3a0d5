#include "assets/library/schemapart.h"

#include <pthread.h>

#include <functional>

#include "assets/library/librarymarkers.h"
#include "assets/library/tabletext.h"
#include "assets/schema/schemaxmlreader.h"
#include "assets/schema/schemaxmlwriter.h"
#include "support.h"

namespace korvanet::platform::assets {
namespace {

TEST(SchemaPart, AnIdThatLeavesItsFolderOrIsReservedNamesNoPart) {
    for (const std::string& id :
         {std::string(), std::string("a/b"), std::string("/a"), std::string("a\nb"),
          std::string("core"), std::string("cnx"), std::string("[Content_Types]"),
          std::string("korvanet-design-package"), std::string(0x4000, 'x')})
        EXPECT_FALSE(CanNameSchemaPart(id.c_str())) << id.substr(0, 40);
    for (const std::string& id :
         {std::string("GenericSchema"), std::string(".."), std::string("a&b"), std::string("a\\b"),
          std::string("50% off"), std::string(0x3FFF, 'x')})
        EXPECT_TRUE(CanNameSchemaPart(id.c_str())) << id.substr(0, 40);
}

TEST(SchemaPart, ATextThatAReaderRefusesIsNotReadable) {
    EXPECT_FALSE(IsReadableSchema(""));
    EXPECT_TRUE(IsReadableSchema("<AssetSchema></AssetSchema>"));
    std::string many;
    for (int index = 0; index < 16384; ++index)
        many += "<a/>";
    EXPECT_TRUE(IsReadableSchema(many.c_str()));
    EXPECT_FALSE(IsReadableSchema((many + "<a/>").c_str()));
    EXPECT_FALSE(IsReadableSchema(std::string((4U << 20) + 1, 'x').c_str()));
    EXPECT_FALSE(IsReadableSchema(std::string(1U << 20, ',').append("<a/>").c_str()));
}

TEST(SchemaPart, ASchemaWithAPropertyThatItsFileWouldLeaveOutIsNotTaken) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    // What the base says of lists reaches a property that can be none.
    ASSERT_NE(LoadGlobal(host, "ListSchema",
                         R"(<AssetSchema><UID val="ListSchema"/><Base val="CommonSchema"/>
<type val="t"/><Integer id="x" val="1" allowmultiplevalues="true"/></AssetSchema>)"),
              nullptr);
    KRVTSchemaDefinition* const child =
        LoadGlobal(host, "BoolSchema", R"(<AssetSchema><UID val="BoolSchema"/>
<Base val="ListSchema"/><Boolean id="x" val="true"/></AssetSchema>)");
    ASSERT_NE(child, nullptr);
    EXPECT_FALSE(KeepsItsShape(*host.global, *child, WriteSchemaXml(*child)));
    EXPECT_EQ((*library)->EnsureSchema(*child), nullptr);
    EXPECT_TRUE((*library)->Save());
}

// One of each class whose element and flags tell more or less than the class.
void AddOddProperties(KRVTSchemaDefinition& schema) {
    using namespace PropertyFlags;
    ASSERT_NE(schema.AddFloatProperty(L"o_unit", kPublic, L"", 1.5, L"parsec", nullptr), nullptr);
    ASSERT_NE(schema.AddUriProperty(L"o_texture", kPublic | kTextureURI, L"", L"t"), nullptr);
    ASSERT_NE(schema.AddUriProperty(L"o_code", kPublic | kImplementation, L"", L"c"), nullptr);
    ASSERT_NE(schema.AddUriProperty(L"o_panel", kPublic | kUIDefinition, L"", L"u"), nullptr);
}

TEST(SchemaPart, ARecordReadsBackWhateverClassesAHostChoseForItsProperties) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        AddOddProperties(*(*library)->Schemas().FindOwn("PaintSchema"));
        AssetDefinition& red = AddPaint(*library, "Red");
        SetText(red, "o_texture", "t2");
        SetText(red, "o_code", "c2");
        SetText(red, "o_panel", "u2");
        SetText(red, "p_file", "f2");
        bytes = library->SavedBytes();
    }
    TestHost other;
    TestLibrary again(other, bytes, false);
    for (const auto& [name, text] :
         {std::pair{"o_texture", "t2"}, {"o_code", "c2"}, {"o_panel", "u2"}, {"p_file", "f2"}})
        EXPECT_STREQ(again.Text("Red", name).c_str(), text) << name;
}

TEST(SchemaPart, ARecordReadsBackWhenASchemaHasAListWhereItsBaseHasOneValue) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        const auto load = [&](const char* id, const char* xml) {
            KRVTSchemaDefinition* const schema = LoadGlobal(host, id, xml);
            ASSERT_NE((*library)->EnsureSchema(*schema), nullptr) << id;
        };
        load("OneSchema", R"(<AssetSchema><UID val="OneSchema"/><Base val="PaintSchema"/>
<type val="materialappearance"/><String id="l" val="one"/></AssetSchema>)");
        load("ManySchema", R"(<AssetSchema><UID val="ManySchema"/><Base val="OneSchema"/>
<String id="l" allowmultiplevalues="true" val="a,b,c"/><String id="m" val="n"/></AssetSchema>)");
        KRVTSchemaDefinition& many = *(*library)->Schemas().FindOwn("ManySchema");
        AssetDefinition& model = MakeDefinition(many, velmor::Namespace(), "model");
        model.AddReference();
        SetText(model, "m", "n2");
        ASSERT_NE((*library)->CreatePreset(model, "Red", {}), nullptr);
        model.Release();
        bytes = library->SavedBytes();
    }
    TestHost other;
    TestLibrary again(other, bytes, false);
    EXPECT_EQ(TextsOf(again.Definition("Red"), "l"), (std::vector<nuo::string>{"a", "b", "c"}));
    EXPECT_STREQ(again.Text("Red", "m").c_str(), "n2");
}

TEST(SchemaPart, ASchemaWhoseFileWouldLoseAPropertyIsRefusedBeforeARecordIsStored) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    AddPaint(*library, "Red");
    KRVTSchemaDefinition& schema = *(*library)->Schemas().FindOwn("PaintSchema");
    PropertyBase& depth = *schema.FindProperty(nuo::string_ref("p_depth"));
    const intrusive_ptr<KRVTBounds> limits(new KRVTBounds(true, 7, true, false, 0, true, 1, false));
    depth.Descriptor().bounds = limits;
    EXPECT_FALSE((*library)->Save());
    EXPECT_EQ((*library)->InstanceStore()->BlockCount(), 0U);
    EXPECT_EQ(library->Part("LIB/Schemas/CommonSchema.xml"), "");
    ASSERT_TRUE(dynamic_cast<IScalarValue&>(*depth.GetValue()).SetValue(7.5));
    EXPECT_TRUE((*library)->Save());
}

// Runs on a stack that a call for each schema of a long chain does not fit on.
void RunOnASmallStack(std::function<void()> work) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 << 10), 0);
    pthread_t thread;
    const auto run = [](void* given) -> void* {
        (*static_cast<std::function<void()>*>(given))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
    EXPECT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}

TEST(SchemaPart, AChainOfSchemasOfAnyLengthIsTakenIn) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    KRVTSchemaDefinition* leaf = host.global->FindOwn("CommonSchema");
    for (int i = 0; i < 4000; ++i)
        leaf = host.global->CreateSchema(("S" + std::to_string(i)).c_str(), "", leaf);
    ASSERT_NE(leaf, nullptr);
    KRVTSchemaDefinition* own = nullptr;
    RunOnASmallStack([&] { own = (*library)->EnsureSchema(*leaf); });
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(own, (*library)->Schemas().FindOwn("S3999"));
    EXPECT_EQ((*library)->Schemas().GetSchemaCount(), 4002U);
}

TEST(SchemaPart, ASchemaWhoseFileWouldNameAnotherBaseIsRefused) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    KRVTSchemaDefinition& schema = *(*library)->Schemas().FindOwn("PaintSchema");
    ASSERT_TRUE(SetText(schema, "BaseSchema", "Elsewhere"));
    EXPECT_FALSE((*library)->Save());
    ASSERT_TRUE(SetText(schema, "BaseSchema", "CommonSchema"));
    EXPECT_TRUE((*library)->Save());
}

TEST(SchemaPart, ASchemaThatCouldNotBeSavedIsNotTaken) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    KRVTSchemaDefinition& common = *host.global->FindOwn("CommonSchema");
    for (const char* id : {"a/b", "core", "a\x01"}) {
        KRVTSchemaDefinition* const odd = host.global->CreateSchema(id, "paint", &common);
        ASSERT_NE(odd, nullptr);
        EXPECT_EQ((*library)->EnsureSchema(*odd), nullptr) << id;
        AssetDefinition& model = MakeDefinition(*odd, velmor::Namespace(), "model");
        model.AddReference();
        EXPECT_EQ((*library)->CreatePreset(model, "Odd", {}), nullptr) << id;
        model.Release();
    }
    KRVTSchemaDefinition* const odd = host.global->CreateSchema("OddSchema", "paint", &common);
    ASSERT_NE(odd->AddStringProperty(L"s", PropertyFlags::kPublic, L"", L"\x01"), nullptr);
    EXPECT_EQ((*library)->EnsureSchema(*odd), nullptr);
    EXPECT_FALSE((*library)->Contains("Odd"));
    EXPECT_TRUE((*library)->Save());
}

// Puts the part of one schema under other names.
void MoveSchema(TestLibrary& library, const std::string& from,
                const std::vector<std::string>& names) {
    const std::string text = library.Part("LIB/Schemas/" + from);
    for (const std::string& name : names)
        library.Write("LIB/Schemas/" + name, text);
    library.package->remove(("LIB/Schemas/" + from).c_str());
}

TEST(SchemaPart, PartsUnderOtherNamesGoWhenTheSchemaIsSavedUnderItsOwn) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        AddPaint(*library, "Red");
        library->SavedBytes();
        MoveSchema(*library, "PaintSchema.xml", {"A.xml", "B.xml"});
        bytes = library->CommittedBytes();
    }
    {
        TestLibrary library(host, bytes, true);
        ASSERT_NE(library->Schemas()
                      .FindOwn("PaintSchema")
                      ->AddIntegerProperty(L"a_count", PropertyFlags::kPublic, L"", 42, nullptr),
                  nullptr);
        bytes = library.SavedBytes();
        EXPECT_EQ(library.Part("LIB/Schemas/A.xml"), "");
        EXPECT_EQ(library.Part("LIB/Schemas/B.xml"), "");
    }
    TestHost other;
    TestLibrary again(other, bytes, false);
    EXPECT_NE(again.Definition("Red").FindProperty(nuo::string_ref("a_count")), nullptr);
}

// What a part holds is told by its UID: two of them may have each other's names.
TEST(SchemaPart, PartsUnderEachOthersNamesAreBothThereAfterASave) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        AddPaint(*library, "Red");
        library->SavedBytes();
        const std::string common = library->Part("LIB/Schemas/CommonSchema.xml");
        const std::string paint = library->Part("LIB/Schemas/PaintSchema.xml");
        library->Write("LIB/Schemas/CommonSchema.xml", paint);
        library->Write("LIB/Schemas/PaintSchema.xml", common);
        bytes = library->CommittedBytes();
    }
    {
        TestHost other;
        TestLibrary library(other, bytes, true);
        AddPaint(library, "Blue");
        bytes = library.SavedBytes();
        EXPECT_NE(library.Part("LIB/Schemas/CommonSchema.xml").find("UID val=\"CommonSchema\""),
                  std::string::npos);
        EXPECT_NE(library.Part("LIB/Schemas/PaintSchema.xml").find("UID val=\"PaintSchema\""),
                  std::string::npos);
    }
    TestHost other;
    TestLibrary again(other, bytes, false);
    EXPECT_NE(again->LoadDefinition("Red"), nullptr);
    EXPECT_NE(again->LoadDefinition("Blue"), nullptr);
}

constexpr const char* kWaitingXml =
    R"(<AssetSchema><UID val="Waiting"/><Base val="Nowhere"/></AssetSchema>)";

// A library in which the part of PaintSchema holds another schema, which waits for its base, and
// PaintSchema lies in `other`, if that is told.
nuo::buffer<nuo::byte> LibraryWithAWaitingSchema(TestHost& host,
                                                 const std::vector<std::string>& other) {
    auto library = MakePaintLibrary(host);
    library->SavedBytes();
    MoveSchema(*library, "PaintSchema.xml", other);
    library->Write("LIB/Schemas/PaintSchema.xml", kWaitingXml);
    return library->CommittedBytes();
}

TEST(SchemaPart, ThePartOfASchemaThatWaitsForItsBaseIsNotOverwritten) {
    TestHost host;
    TestLibrary library(host, LibraryWithAWaitingSchema(host, {"A.xml"}), true);
    EXPECT_FALSE(library->Save());
    EXPECT_EQ(library.Part("LIB/Schemas/PaintSchema.xml"), kWaitingXml);
}

TEST(SchemaPart, ASchemaWhosePartHoldsOneThatWaitsForItsBaseIsNotTaken) {
    TestHost host;
    TestLibrary library(host, LibraryWithAWaitingSchema(host, {}), true);
    EXPECT_EQ(library->EnsureSchema(*host.global->FindOwn("PaintSchema")), nullptr);
    EXPECT_TRUE(library->Save());
    EXPECT_EQ(library.Part("LIB/Schemas/PaintSchema.xml"), kWaitingXml);
}

// What is its own stays its own, whatever else a process has open.
TEST(SchemaPart, ASchemaThatWaitsForItsBaseIsNotReplacedByItsNamesake) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    const std::string waiting =
        R"(<AssetSchema><UID val="PaintSchema"/><Base val="Nowhere"/></AssetSchema>)";
    {
        auto library = MakePaintLibrary(host);
        AddPaint(*library, "Red");
        library->SavedBytes();
        library->Write("LIB/Schemas/PaintSchema.xml", waiting);
        bytes = library->CommittedBytes();
    }
    TestLibrary library(host, bytes, true);
    KRVTSchemaDefinition& shared = *host.global->FindOwn("PaintSchema");
    EXPECT_THROW(library->LoadDefinition("Red"), SchemaNotFoundErr);
    EXPECT_EQ(library->EnsureSchema(shared), nullptr);
    EXPECT_EQ(library->Schemas().FindOwn("PaintSchema"), nullptr);
    EXPECT_EQ(library.Part("LIB/Schemas/PaintSchema.xml"), waiting);
}

TEST(SchemaPart, ALibraryWhoseSchemasInheritTooMuchInAnyOrderDoesNotOpen) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        library->SavedBytes();
        std::string large =
            R"(<AssetSchema><UID val="Z"/><Base val="CommonSchema"/><type val="t"/>)";
        for (int i = 0; i < 16000; ++i)
            large += "<URL id=\"u" + std::to_string(i) + "\"/>";
        library->Write("LIB/Schemas/Z.xml", large + "</AssetSchema>");
        for (int i = 0; i < 17; ++i) {
            const std::string id = "A" + std::to_string(i);
            library->Write("LIB/Schemas/" + id + ".xml",
                           "<AssetSchema><UID val=\"" + id + "\"/><Base val=\"Z\"/></AssetSchema>");
        }
        bytes = library->CommittedBytes();
    }
    EXPECT_THROW(TestLibrary(host, bytes, false), schema_too_large);
}

TEST(SchemaPart, ASaveThatCannotTellOneSchemaMergesNoNewerFormOfAnother) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    KRVTSchemaDefinition* const second = (*library)->EnsureSchema(
        *host.global->CreateSchema("SecondSchema", "light", host.global->FindOwn("CommonSchema")));
    ASSERT_NE(second, nullptr);
    ASSERT_NE(second->AddStringProperty(L"s", PropertyFlags::kPublic, L"", L"\x01"), nullptr);
    KRVTSchemaDefinition& own = *(*library)->Schemas().FindOwn("PaintSchema");
    KRVTSchemaDefinition& shared = *host.global->FindOwn("PaintSchema");
    ASSERT_NE(shared.AddIntegerProperty(L"a_new", PropertyFlags::kPublic, L"", 1, nullptr),
              nullptr);
    ASSERT_TRUE(SetNumber(shared, "SchemaVersion", 9));
    EXPECT_FALSE((*library)->Save());
    EXPECT_EQ(own.FindProperty(nuo::string_ref("a_new")), nullptr);
    EXPECT_NE(own.Version(), 9);
    ASSERT_TRUE(SetText(*second, "s", "told"));
    EXPECT_TRUE((*library)->Save());
    EXPECT_NE(own.FindProperty(nuo::string_ref("a_new")), nullptr);
    EXPECT_EQ(own.Version(), 9);
}

// Of two schemas the base takes a path of the library into the shared one, and with it changes what
// the other is merged with.
TEST(SchemaPart, WhatIsToldOfMergedSchemasIsWhatTheyAre) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    KRVTSchemaDefinition& gloss =
        *LoadGlobal(host, "GlossSchema", R"(<AssetSchema><UID val="GlossSchema"/>
<Base val="PaintSchema"/><Integer id="SchemaVersion" val="2" readonly="true" public="false"/>
</AssetSchema>)");
    KRVTSchemaDefinition& own_gloss = *(*library)->EnsureSchema(gloss);
    KRVTSchemaDefinition& own_paint = *(*library)->Schemas().FindOwn("PaintSchema");
    for (KRVTSchemaDefinition* own : {&own_paint, &own_gloss})
        ASSERT_TRUE(SetText(*own, "p_file", "jpk:?asset=/LIB/Resources/a.png"));
    for (const char* id : {"PaintSchema", "GlossSchema"}) {
        KRVTSchemaDefinition& shared = *host.global->FindOwn(id);
        ASSERT_TRUE(SetNumber(shared, "SchemaVersion", 9));
        ASSERT_TRUE(SetText(shared, "p_file", "a.png"));
        ASSERT_NE(shared.AddIntegerProperty(L"a_new", PropertyFlags::kPublic, L"", 1, nullptr),
                  nullptr);
    }
    ASSERT_TRUE((*library)->Save());
    EXPECT_EQ(library->Part("LIB/Schemas/PaintSchema.xml"), WriteSchemaXml(own_paint).c_str());
    EXPECT_EQ(library->Part("LIB/Schemas/GlossSchema.xml"), WriteSchemaXml(own_gloss).c_str());
}

TEST(SchemaPart, MoreThanALibraryCouldBeOpenedWithIsNotTaken) {
    TestHost host;
    std::string common = kCommonSchemaXml;
    std::string more;
    for (int i = 0; i < 16000; ++i)
        more += "<URL id=\"u" + std::to_string(i) + "\"/>";
    common.insert(common.rfind("</AssetSchema>"), more);
    KRVTSchemaDefinition* const base = LoadGlobal(host, "CommonSchema", common.c_str());
    ASSERT_NE(base, nullptr);
    nuo::buffer<nuo::byte> bytes;
    {
        TestLibrary library(host, GeneralLibrary::Creating{"LIB", 0});
        for (int i = 0; i <= 16; ++i) {
            const std::string id = "S" + std::to_string(i);
            KRVTSchemaDefinition* const schema = host.global->CreateSchema(id.c_str(), "", base);
            ASSERT_NE(schema, nullptr);
            EXPECT_EQ(library->EnsureSchema(*schema) != nullptr, i < 16) << i;
        }
        bytes = library.SavedBytes();
    }
    TestHost other;
    TestLibrary again(other, bytes, false);
    EXPECT_EQ(again->Schemas().GetSchemaCount(), 17U);
}

TEST(SchemaPart, ASchemaWhoseIdIsNoNameStaysInThePartThatItCameFrom) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        library->SavedBytes();
        library->Write("LIB/Schemas/odd.xml",
                       R"(<AssetSchema><UID val="a/b"/><Base val="CommonSchema"/></AssetSchema>)");
        bytes = library->CommittedBytes();
    }
    {
        TestLibrary library(host, bytes, true);
        ASSERT_NE(library->Schemas().FindOwn("a/b"), nullptr);
        bytes = library.SavedBytes();
    }
    TestLibrary again(host, bytes, false);
    EXPECT_NE(again->Schemas().FindOwn("a/b"), nullptr);
}

TEST(SchemaPart, ARecordOfASchemaThatOnlyTheSharedSetHasBringsItIntoItsLibrary) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        AddPaint(*library, "Red");
        library->SavedBytes();
        library->package->remove("LIB/Schemas/PaintSchema.xml");
        bytes = library->CommittedBytes();
    }
    {
        TestLibrary library(host, bytes, true);
        const AssetDefinition& red = library.Definition("Red");
        EXPECT_EQ(red.Base(), library->Schemas().FindOwn("PaintSchema"));
        bytes = library.SavedBytes();
    }
    TestHost other;
    TestLibrary again(other, bytes, false);
    EXPECT_NE(again->LoadDefinition("Red"), nullptr);
}

}  // namespace
}  // namespace korvanet::platform::assets
