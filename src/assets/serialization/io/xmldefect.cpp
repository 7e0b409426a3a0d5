#include "assets/serialization/io/xmldefect.h"

#include <climits>

#include "assets/serialization/io/xmlparser.h"

namespace korvanet::platform::assets {

std::optional<XmlDefect> FindXmlDefect(const nuo::buffer<nuo::byte>& text) {
    if (text.empty()) return XmlDefect{1, 0, "there is nothing in it"};
    if (text.size() > INT_MAX) return XmlDefect{1, 0, "it is longer than 2 GiB"};
    const XmlParserOwner parser = MakeXmlParser();
    const XML_Status status = XML_Parse(parser.get(), reinterpret_cast<const char*>(text.begin()),
                                        static_cast<int>(text.size()), XML_TRUE);
    if (status == XML_STATUS_OK) return std::nullopt;
    const XML_Index offset = XML_GetCurrentByteIndex(parser.get());
    return XmlDefect{XML_GetCurrentLineNumber(parser.get()),
                     offset < 0 ? 0 : static_cast<std::uint64_t>(offset),
                     XML_ErrorString(XML_GetErrorCode(parser.get()))};
}

}  // namespace korvanet::platform::assets
