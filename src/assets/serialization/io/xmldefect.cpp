#include "assets/serialization/io/xmldefect.h"

// The library is built with this, and its header declares the bound on entities only where it is
// defined.
#define XML_DTD 1
#include <expat.h>

#include <climits>
#include <memory>
#include <new>
#include <type_traits>

#include "assets/serialization/io/xmlhandler.h"

namespace korvanet::platform::assets {
namespace {

struct ParserDeleter {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};

}  // namespace

std::optional<XmlDefect> FindXmlDefect(const nuo::buffer<nuo::byte>& text) {
    if (text.empty()) return XmlDefect{1, 0, "there is nothing in it"};
    if (text.size() > INT_MAX) return XmlDefect{1, 0, "it is longer than 2 GiB"};
    const std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserDeleter> parser(
        XML_ParserCreate(nullptr));
    if (!parser) throw std::bad_alloc();
    XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser.get(), kMaxEntityGrowth);
    const XML_Status status = XML_Parse(parser.get(), reinterpret_cast<const char*>(text.begin()),
                                        static_cast<int>(text.size()), XML_TRUE);
    if (status == XML_STATUS_OK) return std::nullopt;
    const XML_Index offset = XML_GetCurrentByteIndex(parser.get());
    return XmlDefect{XML_GetCurrentLineNumber(parser.get()),
                     offset < 0 ? 0 : static_cast<std::uint64_t>(offset),
                     XML_ErrorString(XML_GetErrorCode(parser.get()))};
}

}  // namespace korvanet::platform::assets
