#include "assets/serialization/io/xmlescape.h"

namespace korvanet::platform::assets {
namespace {

// Empty for characters that stand for themselves.
nuo::string_ref EntityOf(char c) {
    switch (c) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        case '\'':
            return "&apos;";
        default:
            return {};
    }
}

}  // namespace

nuo::string EscapeXml(const nuo::string& text) {
    for (const char c : text) {
        if (!EntityOf(c).empty()) {
            nuo::string_builder escaped;
            AppendEscapedXml(escaped, text);
            return nuo::string(escaped);
        }
    }
    return text;
}

void AppendEscapedXml(nuo::string_builder& out, nuo::string_ref text) {
    const char* plain = text.begin();
    for (const char* at = text.begin(); at != text.end(); ++at) {
        const nuo::string_ref entity = EntityOf(*at);
        if (!entity.empty()) {
            out.append(nuo::string_ref(plain, at)).append(entity);
            plain = at + 1;
        }
    }
    out.append(nuo::string_ref(plain, text.end()));
}

}  // namespace korvanet::platform::assets
