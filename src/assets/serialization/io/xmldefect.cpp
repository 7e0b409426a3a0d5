#include "assets/serialization/io/xmldefect.h"

#include <climits>

#include "assets/serialization/io/xmlparser.h"

namespace korvanet::platform::assets {

namespace {

// How many elements are open. Too many of them stop the parser.
struct Depth {
    XML_Parser parser;
    std::size_t open = 0;

    static void Start(void* data, const XML_Char*, const XML_Char**) {
        auto& depth = *static_cast<Depth*>(data);
        if (++depth.open > kMaxOpenElements) XML_StopParser(depth.parser, XML_FALSE);
    }
    static void End(void* data, const XML_Char*) { --static_cast<Depth*>(data)->open; }
};

}  // namespace

std::optional<XmlDefect> FindXmlDefect(const nuo::buffer<nuo::byte>& text) {
    if (text.empty()) return XmlDefect{1, 0, "there is nothing in it"};
    if (text.size() > INT_MAX) return XmlDefect{1, 0, "it is longer than 2 GiB"};
    const XmlParserOwner parser = MakeXmlParser();
    Depth depth{parser.get()};
    XML_SetUserData(parser.get(), &depth);
    XML_SetElementHandler(parser.get(), &Depth::Start, &Depth::End);
    const XML_Status status = XML_Parse(parser.get(), reinterpret_cast<const char*>(text.begin()),
                                        static_cast<int>(text.size()), XML_TRUE);
    if (status == XML_STATUS_OK) return std::nullopt;
    const XML_Index offset = XML_GetCurrentByteIndex(parser.get());
    const XML_Error error = XML_GetErrorCode(parser.get());
    return XmlDefect{XML_GetCurrentLineNumber(parser.get()),
                     offset < 0 ? 0 : static_cast<std::uint64_t>(offset),
                     error == XML_ERROR_ABORTED ? "more than 65,536 elements lie one in the other"
                                                : XML_ErrorString(error)};
}

}  // namespace korvanet::platform::assets
