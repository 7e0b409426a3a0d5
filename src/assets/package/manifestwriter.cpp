#include "assets/package/manifestwriter.h"

#include <algorithm>

#include "assets/package/manifestwords.h"
#include "assets/serialization/io/xmlescape.h"

namespace korvanet::platform::assets {
namespace {

constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>";
constexpr const char* kRoot = "<root version=\"1\" name=\"root\">";

// A fixed word of the format. The year in it never changes, and no reader compares it.
constexpr const char* kFormatIdentifier = "http://www.korvanet.com/design-package/2009";

constexpr const char* kQmxTables =
    "<group name=\"qmx\">"
    "<table name=\"kqmxvector4\"><double name=\"values\">0 0 0 0</double></table>"
    "<table name=\"kqmxvector2\"><double name=\"values\">0 0</double></table>"
    "<table name=\"triangle attributes\">"
    "<double name=\"per-vtx normals\">0 0 0 0 0 0 0 0 0 0 0 0</double>"
    "<double name=\"per-vtx colors\">0 0 0 0 0 0 0 0 0 0 0 0</double></table></group>";

// An element that no document can hold is left out: one of them would make the whole package
// unreadable.
void AppendElement(nuo::string_builder& text, const ElementKey& key, nuo::string_ref value) {
    if (!IsXmlText(key.name) || !IsXmlText(value)) {
        return;
    }
    text.append('<').append(key.type);
    if (key.name.empty()) {
        text.append(" locale=\"en-us\">");
    } else {
        text.append(" name=\"");
        AppendEscapedXml(text, key.name, XmlPlace::kAttribute);
        text.append("\">");
    }
    AppendEscapedXml(text, value, XmlPlace::kText);
    text.append("</").append(key.type).append('>');
}

void AppendElements(nuo::string_builder& text, const PropertyMap& elements) {
    for (const auto& [key, value] : elements) {
        AppendElement(text, key, value);
    }
}

bool IsIdentifier(const ElementKey& key) {
    return key.type == words::Identifier().type && key.name == words::Identifier().name;
}

void AppendIdentifier(nuo::string_builder& text, const PropertyMap& node) {
    for (const auto& [key, value] : node) {
        if (IsIdentifier(key)) {
            AppendElement(text, key, value);
        }
    }
}

void AppendDefault(nuo::string_builder& text, nuo::string_ref extension) {
    text.append("<Default Extension=\"");
    AppendEscapedXml(text, extension, XmlPlace::kAttribute);
    text.append("\" ContentType=\"").append(ContentTypeOf(extension)).append("\"/>");
}

}  // namespace

nuo::string ContentTypesText(const ContentTypeSet& types) {
    nuo::string_builder text;
    text.append(kDeclaration);
    text.append("<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">");
    for (const nuo::string& extension : types.Extensions()) {
        AppendDefault(text, extension);
    }
    text.append("</Types>");
    return nuo::string(text);
}

nuo::string FormatText() {
    nuo::string_builder text;
    text.append(kDeclaration).append("<formats><format>").append(kFormatIdentifier);
    text.append("</format></formats>");
    return nuo::string(text);
}

nuo::string CoreText(nuo::string_ref leaf, const PropertyMap& node) {
    nuo::string_builder text;
    text.append(kDeclaration).append(kRoot).append("<group name=\"content\">");
    text.append("<node name=\"asset\" class=\"schema.korvanet.package.1.asset\">");
    AppendIdentifier(text, node);
    for (const auto& [key, value] : node) {
        if (!IsIdentifier(key)) {
            AppendElement(text, key, value);
        }
    }
    text.append("</node></group>").append(leaf == "qmx" ? kQmxTables : "").append("</root>");
    return nuo::string(text);
}

bool CanLinkFile(nuo::string_ref name) {
    return IsXmlText(name);
}

bool CanLinkFolder(nuo::string_ref name) {
    // It is written raw: these would break the tag, or be read back as others.
    constexpr nuo::string_ref kOthers{"&<\"\t\n\r"};
    const bool is_raw = std::none_of(
        name.begin(), name.end(), [&](char c) { return kOthers.find(c) != nuo::string_ref::npos; });
    return is_raw && IsXmlText(name);
}

LinksText::LinksText() {
    text_.append(kDeclaration).append(kRoot).append("<group name=\"default\">");
}

void LinksText::AddFolder(nuo::string_ref name, const PropertyMap& elements) {
    text_.append("<link name=\"").append(name).append("\">");
    AppendElements(text_, elements);
    text_.append("</link>");
}

void LinksText::AddFile(nuo::string_ref name, const PropertyMap& elements) {
    text_.append("<link name=\"");
    AppendEscapedXml(text_, name, XmlPlace::kAttribute);
    text_.append("\" class=\"schema.korvanet.data.1.resource\">");
    AppendElements(text_, elements);
    text_.append("</link>");
}

nuo::string LinksText::Finish() {
    text_.append("</group></root>");
    return nuo::string(text_);
}

}  // namespace korvanet::platform::assets
