#include "assets/serialization/io/xmlhandler.h"

#include "io/failing_expat.h"
#include "io/memory_source.h"
#include "io/nested_entities.h"
#include "support/raised.h"
#include "support/virtualslots.h"

namespace {

using halvern_tests::MemorySource;
using halvern_tests::NestedEntities;
using halvern_tests::Raised;
using korvanet::platform::assets::IXmlCallBack;
using korvanet::platform::assets::ParseXml;
using korvanet::platform::assets::xml_malformed_ex;
using korvanet::platform::assets::XmlAttributes;
using korvanet::platform::assets::XmlDriverState;
using testing::ElementsAre;
using testing::IsEmpty;

NUO_DECLARE_EXCEPTION(callback_gave_up);

// Writes events as lines: "<a x=1", "text:...", "a>"; each with the innermost open element.
class Recorder : public IXmlCallBack {
public:
    void OnXml(XmlDriverState& driver, const nuo::string& name, const nuo::string& text,
               const XmlAttributes& attributes, bool start) override {
        std::string line;
        EXPECT_TRUE(name.empty() || text.empty());  // elements come without any
        if (name.empty()) {
            line = "text:" + std::string(text.data());
        } else if (start) {
            line = "<" + std::string(name.data());
            for (const auto& [key, value] : attributes) {
                line += " " + std::string(key.data()) + "=" + value.data();
            }
        } else {
            line = std::string(name.data()) + ">";
        }
        events.push_back(line);
        innermost.push_back(driver.elements.empty() ? "" : driver.elements.back().data());
        attribute_counts.push_back(attributes.size());
        if (line == give_up_at) NUO_RAISE(callback_gave_up, "enough");
        if (line == forget_stack_at) driver.elements.clear();
    }

    std::vector<std::string> events;
    std::vector<std::string> innermost;
    std::vector<std::size_t> attribute_counts;
    std::string give_up_at;
    std::string forget_stack_at;
};

std::vector<std::string> EventsOf(std::string_view document) {
    Recorder recorder;
    XmlDriverState driver(recorder);
    MemorySource source(document);
    EXPECT_TRUE(ParseXml(driver, source.archive()));
    EXPECT_THAT(driver.elements, IsEmpty());
    return recorder.events;
}

std::string FailureOf(std::string_view document, Recorder& recorder) {
    XmlDriverState driver(recorder);
    MemorySource source(document);
    return Raised<xml_malformed_ex>([&] { ParseXml(driver, source.archive()); });
}

std::string FailureOf(std::string_view document) {
    Recorder recorder;
    return FailureOf(document, recorder);
}

TEST(ParseXml, GivesNestedElementsAsStartAndEndEvents) {
    EXPECT_THAT(EventsOf("<a><b/></a>"), ElementsAre("<a", "<b", "b>", "a>"));
}

TEST(ParseXml, ShowsTheElementOnTheStackAtItsStartAndItsParentAtItsEnd) {
    Recorder recorder;
    XmlDriverState driver(recorder);
    MemorySource source("<a><b/></a>");
    ParseXml(driver, source.archive());
    EXPECT_THAT(recorder.innermost, ElementsAre("a", "b", "a", ""));
}

TEST(ParseXml, GivesAttributesSortedAndOnlyAtTheStart) {
    Recorder recorder;
    XmlDriverState driver(recorder);
    MemorySource source("<a y='2' x='1'>t</a>");
    ParseXml(driver, source.archive());
    EXPECT_THAT(recorder.events, ElementsAre("<a x=1 y=2", "text:t", "a>"));
    EXPECT_THAT(recorder.attribute_counts, ElementsAre(2U, 0U, 0U));
}

TEST(ParseXml, GivesAnEmptyMapForAnElementWithoutAttributes) {
    Recorder recorder;
    XmlDriverState driver(recorder);
    MemorySource source("<a/>");
    ParseXml(driver, source.archive());
    EXPECT_THAT(recorder.attribute_counts, ElementsAre(0U, 0U));
}

TEST(ParseXml, SplitsATextAtACharacterReference) {
    EXPECT_THAT(EventsOf("<a>x&#38;y</a>"), ElementsAre("<a", "text:x", "text:&", "text:y", "a>"));
}

TEST(ParseXml, DeliversWhiteSpaceLikeAnyText) {
    EXPECT_THAT(EventsOf("<a> <b/>\n</a>"),
                ElementsAre("<a", "text: ", "<b", "b>", "text:\n", "a>"));
}

TEST(ParseXml, SkipsCommentsInstructionsAndTheDeclaration) {
    EXPECT_THAT(EventsOf("<?xml version=\"1.0\"?><!-- c --><a><?p i?><!-- d --></a>"),
                ElementsAre("<a", "a>"));
}

TEST(ParseXml, ReadsTheEncodingThatTheDocumentDeclares) {
    EXPECT_THAT(EventsOf("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\xe9</a>"),
                ElementsAre("<a", "text:\xc3\xa9", "a>"));
}

TEST(ParseXml, ReadsFromTheStartOfTheSourceWhereverItStands) {
    Recorder recorder;
    XmlDriverState driver(recorder);
    MemorySource source("<a/>");
    source.archive().seek(3);
    EXPECT_TRUE(ParseXml(driver, source.archive()));
    EXPECT_THAT(recorder.events, ElementsAre("<a", "a>"));
}

TEST(ParseXml, ForgetsTheStackOfAnEarlierRun) {
    Recorder recorder;
    XmlDriverState driver(recorder);
    driver.elements.emplace_back("left over");
    MemorySource source("<a/>");
    EXPECT_TRUE(ParseXml(driver, source.archive()));
}

TEST(ParseXml, RefusesAnEmptySourceWithoutAnyEvent) {
    Recorder recorder;
    EXPECT_EQ(FailureOf("", recorder), "The xml input is bad.");
    EXPECT_THAT(recorder.events, IsEmpty());
}

TEST(ParseXml, RefusesADocumentThatIsNotWellFormed) {
    EXPECT_EQ(FailureOf("no xml"), "The xml input is bad.");
    EXPECT_EQ(FailureOf("<a></b>"), "The xml input is bad.");
    EXPECT_EQ(FailureOf("<a x='1' x='2'/>"), "The xml input is bad.");
    EXPECT_EQ(FailureOf("<a/><b/>"), "The xml input is bad.");
    EXPECT_EQ(FailureOf("<a>\xff\xfe</a>"), "The xml input is bad.");
    EXPECT_EQ(FailureOf(" "), "The xml input is bad.");
}

TEST(ParseXml, RefusesUnclosedElementsAfterTheirEvents) {
    Recorder recorder;
    EXPECT_EQ(FailureOf("<a><b>", recorder), "The xml input is bad.");
    EXPECT_THAT(recorder.events, ElementsAre("<a", "<b"));
}

TEST(ParseXml, TellsOfAnEndTagThatMeetsAnotherStack) {
    Recorder recorder;
    recorder.forget_stack_at = "<b";
    EXPECT_EQ(FailureOf("<a><b/></a>", recorder), "The nodes of xml are asymmetric.");
    EXPECT_THAT(recorder.events, ElementsAre("<a", "<b"));
}

TEST(ParseXml, TellsOfAnEndTagThatMeetsAnotherName) {
    class Pusher : public Recorder {
        void OnXml(XmlDriverState& driver, const nuo::string& name, const nuo::string& text,
                   const XmlAttributes& attributes, bool start) override {
            Recorder::OnXml(driver, name, text, attributes, start);
            driver.elements.emplace_back("another");
        }
    };
    Pusher pusher;
    EXPECT_EQ(FailureOf("<a/>", pusher), "The nodes of xml are asymmetric.");
}

TEST(ParseXml, LetsTheExceptionOfACallbackOutAndStopsThere) {
    for (const char* place : {"<b", "text:t", "b>"}) {
        Recorder recorder;
        recorder.give_up_at = place;
        XmlDriverState driver(recorder);
        MemorySource source("<a><b>t</b><c/></a>");
        EXPECT_EQ(Raised<callback_gave_up>([&] { ParseXml(driver, source.archive()); }), "enough");
        EXPECT_EQ(recorder.events.back(), place);
    }
}

TEST(ParseXml, GivesNoEndOfAnEmptyElementWhoseStartRaised) {
    Recorder recorder;
    recorder.give_up_at = "<b";
    XmlDriverState driver(recorder);
    MemorySource source("<a><b/></a>");
    EXPECT_EQ(Raised<callback_gave_up>([&] { ParseXml(driver, source.archive()); }), "enough");
    EXPECT_THAT(recorder.events, ElementsAre("<a", "<b"));
}

// A source that claims to be of some size.
class HugeSource : public nuo::archive::archiveT<nuo::archive::reader, nuo::archive::random> {
public:
    nuo::byte* read(nuo::archive::byte_range range) override {
        ++reads;
        return range.first;
    }
    bool readable() override { return true; }
    nuo::archive::view_ptr view_rd(nuo::archive::offset_range) override { return nullptr; }
    bool viewable() override { return false; }
    std::uint64_t offset() override { return 0; }
    std::uint64_t size() override { return 0x80000000; }
    std::uint64_t seek(std::uint64_t) override { return 0; }

    int reads = 0;
};

TEST(ParseXml, RefusesADocumentOfTwoGibibytesWithoutReadingIt) {
    Recorder recorder;
    XmlDriverState driver(recorder);
    HugeSource source;
    EXPECT_EQ(Raised<xml_malformed_ex>([&] { ParseXml(driver, source); }), "The xml input is bad.");
    EXPECT_EQ(source.reads, 0);
}

TEST(ParseXml, RefusesASourceThatCannotBeRead) {
    Recorder recorder;
    XmlDriverState driver(recorder);
    nuo::archive::mem_write_archive sink;
    EXPECT_EQ(Raised<xml_malformed_ex>([&] { ParseXml(driver, sink); }), "The xml input is bad.");
}

TEST(ParseXml, GivesAnEmptyChunkAsAnEmptyText) {
    const halvern_tests::EmptyChunks some;
    EXPECT_THAT(EventsOf("<a>text</a>"), ElementsAre("<a", "text:text", "text:", "a>"));
}

TEST(ParseXml, RaisesWithoutAnEventWhenThereIsNoMemoryForAParser) {
    const halvern_tests::NoParser broken;
    Recorder recorder;
    XmlDriverState driver(recorder);
    MemorySource source("<a/>");
    EXPECT_THROW(ParseXml(driver, source.archive()), std::bad_alloc);
    EXPECT_THAT(recorder.events, IsEmpty());
}

// Counts what it is given without keeping it.
class Counter : public IXmlCallBack {
public:
    void OnXml(XmlDriverState&, const nuo::string&, const nuo::string& text, const XmlAttributes&,
               bool) override {
        characters += text.size();
    }

    std::uint64_t characters = 0;
};

TEST(ParseXml, EndsADocumentWhoseEntitiesGrowByTheThousandBeforeAQuarterOfAMegabyte) {
    Counter counter;
    XmlDriverState driver(counter);
    MemorySource source(NestedEntities(9));
    EXPECT_EQ(Raised<xml_malformed_ex>([&] { ParseXml(driver, source.archive()); }),
              "The xml input is bad.");
    EXPECT_LE(counter.characters, 256U << 10);
}

TEST(ParseXml, LetsTheEntitiesOfASmallDocumentGrowWhileTheTextStaysSmall) {
    Counter counter;
    XmlDriverState driver(counter);
    MemorySource source(NestedEntities(3));
    EXPECT_TRUE(ParseXml(driver, source.archive()));
    EXPECT_EQ(counter.characters, 10'000U);
}

TEST(ParseXml, EndsALongDocumentThatRepeatsOneLongEntity) {
    std::string document = "<!DOCTYPE a [<!ENTITY e \"" + std::string(1 << 20, 'x') + "\">]><a>";
    for (int i = 0; i < 100; ++i)
        document += "&e;";
    document += "</a>";
    Counter counter;
    XmlDriverState driver(counter);
    MemorySource source(document);
    EXPECT_EQ(Raised<xml_malformed_ex>([&] { ParseXml(driver, source.archive()); }),
              "The xml input is bad.");
    EXPECT_LT(counter.characters, 16U << 20);
}

TEST(ParseXml, ReadsElementsThatLie65536DeepAndEndsADocumentWithMore) {
    for (const int depth : {65536, 65537}) {
        std::string document;
        for (int i = 0; i < depth; ++i)
            document += "<a>";
        for (int i = 0; i < depth; ++i)
            document += "</a>";
        Recorder recorder;
        XmlDriverState driver(recorder);
        MemorySource source(document);
        if (depth == 65536)
            EXPECT_TRUE(ParseXml(driver, source.archive()));
        else
            EXPECT_EQ(Raised<xml_malformed_ex>([&] { ParseXml(driver, source.archive()); }),
                      "The xml input is bad.");
        EXPECT_EQ(recorder.events.size(), depth == 65536 ? 131072U : 65536U);
    }
}

TEST(ParseXml, ResolvesTheEntitiesOfAnHonestDocument) {
    EXPECT_THAT(EventsOf("<!DOCTYPE a [<!ENTITY e \"one\">]><a>&e;</a>"),
                ElementsAre("<a", "text:one", "a>"));
}

// Code that was compiled earlier relies on it.
TEST(InterfaceOrder, XmlCallBack) {
    halvern_tests::ExpectOrder(
        0, {halvern_tests::Place(&IXmlCallBack::OnXml), halvern_tests::kDestructor});
}

}  // namespace
