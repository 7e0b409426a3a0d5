#include "assets/library/schemapart.h"

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
    EXPECT_FALSE(KeepsItsShape(*child));
    EXPECT_EQ((*library)->EnsureSchema(*child), nullptr);
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
    library.package->sync();
    library.zip->commit();
}

TEST(SchemaPart, PartsUnderOtherNamesGoWhenTheSchemaIsSavedUnderItsOwn) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        AddPaint(*library, "Red");
        library->SavedBytes();
        MoveSchema(*library, "PaintSchema.xml", {"A.xml", "B.xml"});
        bytes = library->archive.get_buffer();
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
        library->package->sync();
        library->zip->commit();
        bytes = library->archive.get_buffer();
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

TEST(SchemaPart, ThePartOfASchemaThatWaitsForItsBaseIsNotOverwritten) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    const std::string waiting =
        R"(<AssetSchema><UID val="Waiting"/><Base val="Nowhere"/></AssetSchema>)";
    {
        auto library = MakePaintLibrary(host);
        library->SavedBytes();
        MoveSchema(*library, "PaintSchema.xml", {"A.xml"});
        library->Write("LIB/Schemas/PaintSchema.xml", waiting);
        library->package->sync();
        library->zip->commit();
        bytes = library->archive.get_buffer();
    }
    TestLibrary library(host, bytes, true);
    EXPECT_FALSE(library->Save());
    EXPECT_EQ(library.Part("LIB/Schemas/PaintSchema.xml"), waiting);
}

TEST(SchemaPart, ASchemaWhoseIdIsNoNameStaysInThePartThatItCameFrom) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        library->SavedBytes();
        library->Write("LIB/Schemas/odd.xml",
                       R"(<AssetSchema><UID val="a/b"/><Base val="CommonSchema"/></AssetSchema>)");
        library->package->sync();
        library->zip->commit();
        bytes = library->archive.get_buffer();
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
        library->package->sync();
        library->zip->commit();
        bytes = library->archive.get_buffer();
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
