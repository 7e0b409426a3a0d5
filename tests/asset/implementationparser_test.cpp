#include "assets/asset/implementationparser.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "asset/support.h"
#include "assets/asset/iurilocator.h"

namespace korvanet::platform::assets {

namespace {

class OneFile final : public IUriLocator {
public:
    bool Locate(const nuo::string& uri, nuo::string& path) override {
        asked = Str(uri);
        if (file.empty()) return false;
        path = nuo::string(file.c_str());
        return true;
    }

    std::string file;
    std::string asked;
};

}  // namespace

class ImplementationBindingTest : public AssetTest {
protected:
    ImplementationBindingTest() {
        char pattern[] = "/tmp/implementation_XXXXXX";
        folder = mkdtemp(pattern);
        locator.file = folder + "/generic.xml";
        tables.services.files = &locator;
    }
    ~ImplementationBindingTest() override { std::filesystem::remove_all(folder); }

    // "<value>|<tag>", or "none".
    std::string Binding(const std::string& xml, const char* identifier = "ImplementationGeneric") {
        std::ofstream(locator.file) << xml;
        core::UTF8String value("former");
        core::UTF8String tag("former");
        if (!instance.GetImplementationBinding(core::UTF8String(identifier), value, tag)) {
            EXPECT_STREQ(value.AsUTF8(), "former");
            return "none";
        }
        return std::string(value.AsUTF8()) + "|" + tag.AsUTF8();
    }

    std::string folder;
    OneFile locator;
    AssetInstance& instance = NewInstance(NewDefinition(*material, "DEF"));
};

TEST_F(ImplementationBindingTest, OnlyTheShaderBindingsCount) {
    EXPECT_EQ(Binding("<root><bindings target='other'><desc val='1' tag='a'/></bindings>"
                      "<bindings target='shader'><desc val='2' tag='b'/></bindings></root>"),
              "2|b");
    EXPECT_EQ(locator.asked, "generic.xml");
    EXPECT_EQ(Binding("<root><bindings target='shader'><desc val='2' tag='b'/></bindings>"
                      "<bindings target='other'><desc val='3' tag='c'/></bindings></root>"),
              "2|b");
    EXPECT_EQ(Binding("<root><bindings target='other'><desc val='1'/></bindings></root>"), "none");
}

TEST_F(ImplementationBindingTest, WithoutShaderBindingsThereIsNone) {
    EXPECT_EQ(Binding("<root><desc val='1'/><bindings><desc val='2'/></bindings></root>"), "none");
    EXPECT_EQ(Binding("<root><bindings target='shader'/><desc val='1'/></root>"), "none");
}

TEST_F(ImplementationBindingTest, ALaterDescriptionOverwritesWhatItHas) {
    EXPECT_EQ(Binding("<r><bindings target='shader'><desc val='1' tag='a'/><desc val='2'/>"
                      "</bindings></r>"),
              "2|a");
    EXPECT_EQ(Binding("<r><bindings target='shader'><desc/></bindings></r>"), "|");
}

TEST_F(ImplementationBindingTest, InnerBindingsWithoutATargetLeaveTheStateUntilTheyEnd) {
    EXPECT_EQ(Binding("<r><bindings target='shader'><bindings><desc val='1'/></bindings>"
                      "<desc val='2'/></bindings></r>"),
              "1|");
}

TEST_F(ImplementationBindingTest, AnUnknownImplementationHasNone) {
    const std::string good = "<r><bindings target='shader'><desc val='1'/></bindings></r>";
    EXPECT_EQ(Binding(good), "1|");
    EXPECT_EQ(Binding(good, "ImplementationHLSL"), "none");
    EXPECT_EQ(Binding(good, ""), "none");
}

TEST_F(ImplementationBindingTest, AFileThatIsBrokenOrMissingHasNone) {
    EXPECT_EQ(Binding("<r><bindings target='shader'><desc val='1'/>"), "none");
    EXPECT_EQ(Binding(""), "none");
    core::UTF8String value;
    core::UTF8String tag;
    const core::UTF8String identifier("ImplementationGeneric");
    std::filesystem::remove(locator.file);
    EXPECT_FALSE(instance.GetImplementationBinding(identifier, value, tag));
    locator.file.clear();
    EXPECT_FALSE(instance.GetImplementationBinding(identifier, value, tag));
    tables.services.files = nullptr;
    EXPECT_FALSE(instance.GetImplementationBinding(identifier, value, tag));
}

}  // namespace korvanet::platform::assets
