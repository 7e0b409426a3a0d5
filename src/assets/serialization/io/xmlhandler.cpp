#include "assets/serialization/io/xmlhandler.h"

#include <climits>
#include <exception>

#include "assets/serialization/io/xmlparser.h"
#include "nuo/common/archive/primitives.h"
#include "nuo/common/buffer.h"

namespace korvanet::platform::assets {
namespace {

[[noreturn]] void RaiseBadInput() {
    NUO_RAISE(xml_malformed_ex, "The xml input is bad.");
}

// One run of the parser. Nothing may be thrown through expat, which is C: the handlers catch,
// stop the parser and leave the exception here.
class Run {
public:
    explicit Run(XmlDriverState& driver) : driver_(driver), parser_(MakeXmlParser()) {
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(parser_.get(), &Run::OnStart, &Run::OnEnd);
        XML_SetCharacterDataHandler(parser_.get(), &Run::OnText);
    }

    bool Parse(const nuo::buffer<nuo::byte>& text) {
        const XML_Status status =
            XML_Parse(parser_.get(), reinterpret_cast<const char*>(text.begin()),
                      static_cast<int>(text.size()), XML_TRUE);
        if (failure_) {
            std::rethrow_exception(failure_);
        }
        return status == XML_STATUS_OK;
    }

private:
    template <class Event>
    void Deliver(Event event) {
        // Expat may still deliver an end tag after it was stopped.
        if (failure_) {
            return;
        }
        try {
            event();
        } catch (...) {
            failure_ = std::current_exception();
            XML_StopParser(parser_.get(), XML_FALSE);
        }
    }

    static void OnStart(void* data, const XML_Char* name, const XML_Char** attributes) {
        static_cast<Run*>(data)->Start(name, attributes);
    }

    static void OnEnd(void* data, const XML_Char* name) { static_cast<Run*>(data)->End(name); }

    static void OnText(void* data, const XML_Char* text, int length) {
        static_cast<Run*>(data)->Text(text, length);
    }

    void Start(const XML_Char* name, const XML_Char** attributes) {
        Deliver([&] {
            if (driver_.elements.size() == kMaxOpenElements) RaiseBadInput();
            driver_.elements.emplace_back(name);
            XmlAttributes map;
            for (; *attributes != nullptr; attributes += 2) {
                map.emplace(nuo::string(attributes[0]), nuo::string(attributes[1]));
            }
            // A copy: the callback may change the stack.
            const nuo::string element(driver_.elements.back());
            driver_.callback->OnXml(driver_, element, empty_, map, true);
        });
    }

    void End(const XML_Char* name) {
        Deliver([&] {
            const nuo::string element(name);
            if (driver_.elements.empty() || driver_.elements.back() != element) {
                NUO_RAISE(xml_malformed_ex, "The nodes of xml are asymmetric.");
            }
            driver_.elements.pop_back();
            driver_.callback->OnXml(driver_, element, empty_, no_attributes_, false);
        });
    }

    void Text(const XML_Char* text, int length) {
        Deliver([&] {
            driver_.callback->OnXml(driver_, empty_,
                                    nuo::string(nuo::string_ref(text, text + length)),
                                    no_attributes_, true);
        });
    }

    XmlDriverState& driver_;
    XmlParserOwner parser_;
    std::exception_ptr failure_;
    const nuo::string empty_;
    const XmlAttributes no_attributes_;
};

// The whole source; nothing when it cannot be read or is too long for one call of the parser.
nuo::buffer<nuo::byte> ReadWhole(nuo::archive::iarchive& source) {
    nuo::buffer<nuo::byte> text;
    nuo::archive::random* const position = source.query_random();
    nuo::archive::reader* const reader = source.query_reader();
    if (position == nullptr || reader == nullptr || position->size() > INT_MAX) {
        return text;
    }
    position->seek(0);
    text.resize(position->size());
    const nuo::archive::byte_range range(text.begin(), text.end());
    text.resize(static_cast<std::uint64_t>(nuo::archive::read_some(*reader, range) - range.first));
    return text;
}

}  // namespace

bool ParseXml(XmlDriverState& driver, nuo::archive::iarchive& source) {
    const nuo::buffer<nuo::byte> text = ReadWhole(source);
    driver.elements.clear();
    const bool parsed = !text.empty() && Run(driver).Parse(text);
    if (!parsed || !driver.elements.empty()) RaiseBadInput();
    return true;
}

}  // namespace korvanet::platform::assets
