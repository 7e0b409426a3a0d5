#include "assets/library/recordform.h"

#include "assets/library/tabletext.h"
#include "assets/schema/schemadefinition.h"
#include "support.h"

namespace korvanet::platform::assets {
namespace {

// A schema with one property of every stored kind, filled from XML.
constexpr char kSchema[] = R"(<AssetSchema><UID val="KindSchema"/><Base val="CommonSchema"/>
<type val="kind"/>
<Binary id="a_binary"/><Boolean id="b_bool" val="true"/>
<Choice id="c_choice" val="y"><ChoiceValue id="x" val="1"/><ChoiceValue id="y" val="258"/></Choice>
<Choice id="d_choices" val="x,y" allowmultiplevalues="true"><ChoiceValue id="x" val="1"/><ChoiceValue id="y" val="258"/></Choice>
<Color id="e_color" valR="1" valG="2" valB="0.5" valA="1"/>
<Color id="f_colors" valR="1" valG="0" valB="0" valA="0" allowmultiplevalues="true"/>
<DateTime id="g_time" val="now"/><Float id="h_double" val="-1"/>
<Float id="i_doubles" val="1,2" allowmultiplevalues="true"/><Distance id="j_length" val="2" unit="mm"/>
<Integer id="k_int" val="-2"/><Integer id="l_ints" val="1,-1" allowmultiplevalues="true"/>
<Reference id="m_reference" allowconnectedassets="multiple"/>
<String id="n_text" val="ab"/><String id="o_texts" val="a,bc" allowmultiplevalues="true"/>
<Reference id="p_texture" type="texture" allowconnectedassets="single"/>
<URL id="q_url" val="u"/><URL id="r_urls" val="u,v" allowmultiplevalues="true"/>
<TextureURI id="s_images" val="i"/><Uuid id="t_uuid" val="id"/><Vector3 id="u_vector" valX="1" valY="2" valZ="-1"/>
<Integer id="texture_MapChannel" val="7"/><Integer id="unifiedbitmap_MapChannel" val="7"/>
<String id="v_fixed" val="shared" readonly="true"/></AssetSchema>)";

class RecordForms : public ::testing::Test {
protected:
    void SetUp() override {
        common = MakePaintLibrary(host);
        nuo::archive::mem_read_write_archive in(nuo::buffer<nuo::byte>(
            reinterpret_cast<const nuo::byte*>(kSchema),
            reinterpret_cast<const nuo::byte*>(kSchema) + sizeof(kSchema) - 1));
        schema = host.global->LoadSchema(in);
        ASSERT_NE(schema, nullptr);
        layout = RecordLayout(*schema);
        table = &MakeDefinition(*schema, velmor::Namespace(), "kind");
        table->AddReference();
    }
    void TearDown() override { table->Release(); }

    std::string Written(std::size_t group, const RecordForm& form = {}) {
        nuo::archive::mem_write_archive out;
        WriteRecordGroup(out, layout, group, form, *table, *schema);
        const auto& bytes = out.get_buffer();
        return {reinterpret_cast<const char*>(bytes.begin()), bytes.size()};
    }
    void Read(const std::string& bytes, std::size_t group, const RecordForm& form = {}) {
        const nuo::buffer<nuo::byte> buffer(
            reinterpret_cast<const nuo::byte*>(bytes.data()),
            reinterpret_cast<const nuo::byte*>(bytes.data()) + bytes.size());
        nuo::archive::buffer_in in(buffer);
        ReadRecordGroup(in, layout, group, form, *table);
    }

    TestHost host;
    std::unique_ptr<TestLibrary> common;
    KRVTSchemaDefinition* schema = nullptr;
    RecordLayout layout;
    AssetDefinition* table = nullptr;
};

#define BYTES(text) std::string(text, sizeof(text) - 1)

const std::string kOne = BYTES("\0\0\0\0\0\0\xF0\x3F");
const std::string kTwo = BYTES("\0\0\0\0\0\0\0\x40");
const std::string kHalf = BYTES("\0\0\0\0\0\0\xE0\x3F");
const std::string kZero = BYTES("\0\0\0\0\0\0\0\0");
const std::string kMinusOne = BYTES("\0\0\0\0\0\0\xF0\xBF");

// The instance record of the defaults, property by property in the order of their names.
std::string ExpectedInstanceRecord() {
    return BYTES("\0\0\0\0")                                     // AssetLibID
           + BYTES("\0\0\0\0")                                   // a_binary
           + BYTES("\x01")                                       // b_bool
           + BYTES("\x02\x01\0\0")                               // c_choice
           + BYTES("\x02\0\0\0\x01\0\0\0\x02\x01\0\0")           // d_choices
           + kOne + kTwo + kHalf + kOne                          // e_color
           + BYTES("\x01\0\0\0") + kOne + kZero + kZero + kZero  // f_colors
           + BYTES("\x03\0\0\0now")                              // g_time
           + kMinusOne                                           // h_double
           + BYTES("\x02\0\0\0") + kOne + kTwo                   // i_doubles
           + BYTES("\x0E\x20\0\0") + kTwo                        // j_length: unit 8206
           + BYTES("\xFE\xFF\xFF\xFF")                           // k_int
           + BYTES("\x02\0\0\0\x01\0\0\0\xFF\xFF\xFF\xFF")       // l_ints
           + BYTES("\0")                                         // m_reference: tail alone
           + BYTES("\x02\0\0\0ab")                               // n_text
           + BYTES("\x02\0\0\0\x01\0\0\0a\x02\0\0\0bc")          // o_texts
           + BYTES("\0")                                         // p_texture: tail alone
           + BYTES("\x01\0\0\0u")                                // q_url
           + BYTES("\x02\0\0\0\x01\0\0\0u\x01\0\0\0v")           // r_urls
           + BYTES("\x01\0\0\0\x01\0\0\0\x01\0\0\0")  // revision, then s_images: count, length
           + BYTES("i")                               //
           + BYTES("\x02\0\0\0id")                    // t_uuid
           + kOne + kTwo + kMinusOne                  // u_vector
           + BYTES("\x01\0\0\0");                     // version
}

TEST_F(RecordForms, AnInstanceRecordIsItsPropertiesInTheOrderOfTheirNames) {
    EXPECT_EQ(Written(PropertyTableImp::kReadWriteGroup), ExpectedInstanceRecord());
}

TEST_F(RecordForms, AnInstanceRecordReadsFromItsBytes) {
    std::string bytes = ExpectedInstanceRecord();
    bytes.replace(bytes.find("now"), 3, "THE");
    Read(bytes, PropertyTableImp::kReadWriteGroup);
    EXPECT_TRUE(TextOf(*table, "g_time") == "THE");
    EXPECT_EQ(Written(PropertyTableImp::kReadWriteGroup), bytes);
}

TEST_F(RecordForms, EveryCutOfARecordFails) {
    const std::string bytes = ExpectedInstanceRecord();
    for (std::size_t length = 0; length < bytes.size(); ++length)
        EXPECT_THROW(Read(bytes.substr(0, length), PropertyTableImp::kReadWriteGroup),
                     nuo::archive::read_failed)
            << length;
}

TEST_F(RecordForms, BytesBehindTheLastPropertyMeanNothing) {
    std::string bytes = ExpectedInstanceRecord();
    bytes.replace(bytes.find("now"), 3, "THE");
    Read(bytes + "tail", PropertyTableImp::kReadWriteGroup);
    EXPECT_EQ(Written(PropertyTableImp::kReadWriteGroup), bytes);
}

TEST_F(RecordForms, AListingRecordHoldsTheIterationGroup) {
    SetText(*table, "BaseSchema", "KindSchema");
    SetText(*table, "VersionGUID", "guid");
    const std::string listing = BYTES("\x0A\0\0\0KindSchema")   // BaseSchema
                                + BYTES("\0")                   // Hidden
                                + BYTES("\0\0\0\0")             // UIName
                                + BYTES("\x04\0\0\0guid")       // VersionGUID
                                + BYTES("\x01\0\0\0\0\0\0\0")   // category
                                + BYTES("\0\0\0\0")             // description
                                + BYTES("\x01\0\0\0\0\0\0\0")   // keyword
                                + BYTES("\x01\0\0\0\0\0\0\0");  // thumbnail
    EXPECT_EQ(Written(PropertyTableImp::kIterationGroup), listing);
}

TEST_F(RecordForms, OlderListingsHoldNoVersionGuid) {
    RecordForm form;
    form.has_version_guid = false;
    SetText(*table, "VersionGUID", "kept");
    const std::string bytes = Written(PropertyTableImp::kIterationGroup, form);
    EXPECT_EQ(bytes.find("kept"), std::string::npos);
    Read(bytes, PropertyTableImp::kIterationGroup, form);
    EXPECT_TRUE(TextOf(*table, "VersionGUID") == "kept");
}

TEST_F(RecordForms, ALibraryWhoseCommonSchemaNamesABaseStoresNoBaseSchema) {
    RecordForm form;
    form.has_base_schema = false;
    EXPECT_EQ(Written(PropertyTableImp::kIterationGroup, form).find("KindSchema"),
              std::string::npos);
}

TEST_F(RecordForms, TheHeaderIsTwoStringsAndInStreamsThree) {
    nuo::archive::mem_write_archive out;
    WriteRecordHeader(out, {"S", "I", "P"}, {});
    RecordForm stream;
    stream.has_parent = true;
    WriteRecordHeader(out, {"S", "I", "P"}, stream);
    const auto& bytes = out.get_buffer();
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes.begin()), bytes.size()),
              BYTES("\x01\0\0\0S\x01\0\0\0I\x01\0\0\0S\x01\0\0\0I\x01\0\0\0P"));
    nuo::archive::buffer_in in(bytes);
    EXPECT_TRUE(ReadRecordHeader(in, {}).parent.empty());
    EXPECT_TRUE(ReadRecordHeader(in, stream).parent == "P");
}

TEST_F(RecordForms, APropertyThatTheTableLacksIsReadAndDroppedAndWrittenAsTheSchemaHasIt) {
    const std::string bytes = ExpectedInstanceRecord();
    table->Group(PropertyTableImp::kReadWriteGroup).Remove("g_time");
    Read(bytes, PropertyTableImp::kReadWriteGroup);
    EXPECT_EQ(table->FindProperty(nuo::string_ref("g_time")), nullptr);
    EXPECT_EQ(Written(PropertyTableImp::kReadWriteGroup), bytes);
}

TEST_F(RecordForms, LayoutsAreOfOneFormWhenNamesClassesAndTailsAgree) {
    EXPECT_TRUE(layout.SameForm(RecordLayout(*schema)));
    schema->FindProperty(nuo::string_ref("n_text"))->Descriptor().flags ^= PropertyFlags::kMetadata;
    EXPECT_TRUE(layout.SameForm(RecordLayout(*schema)));
    ASSERT_NE(schema->AddBooleanProperty(L"z_new", PropertyFlags::kPublic, L"", true), nullptr);
    EXPECT_FALSE(layout.SameForm(RecordLayout(*schema)));
}

}  // namespace
}  // namespace korvanet::platform::assets
