#pragma once

#include <cstdint>
#include <optional>

#include "nuo/common/buffer.h"
#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// Where a document stops being well-formed XML, and why. The readers of this system need only the
// answer that it is not; people who mend a file need the place.
struct XmlDefect {
    std::uint64_t line;    // counted from 1
    std::uint64_t offset;  // of the first byte that does not fit
    nuo::string what;      // the parser's words
};

// Nothing for a document that `ParseXml` takes.
std::optional<XmlDefect> FindXmlDefect(const nuo::buffer<nuo::byte>& text);

}  // namespace korvanet::platform::assets
