#include "assets/schema/xmldocument.h"

#include <libxml/chvalid.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstdint>
#include <memory>

namespace korvanet::platform::assets {
namespace {

/** Starts libxml2 at its first use and cleans up after it when the process ends. */
class XmlLibrary {
public:
    XmlLibrary() { xmlInitParser(); }
    ~XmlLibrary() { xmlCleanupParser(); }
};

void StartLibrary() {
    static const XmlLibrary library;
}

// Text of each element, in the form that xmlNewDocNode takes: a line feed.
constexpr char kLineFeed[] = "&#x000A;";

const xmlChar* AsXml(const nuo::string& text) {
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

// libxml2 prints a message when it meets bytes that are not UTF-8, and writes control characters
// that no reader takes; so neither may reach it.
bool IsXmlText(const nuo::string& text) {
    const xmlChar* at = AsXml(text);
    std::uint64_t left = text.size();
    while (left > 0) {
        int length = left < 4 ? static_cast<int>(left) : 4;
        const int character = xmlGetUTF8Char(at, &length);
        if (character <= 0 || !xmlIsCharQ(static_cast<unsigned>(character))) return false;
        at += length;
        left -= static_cast<std::uint64_t>(length);
    }
    return true;
}

}  // namespace

XmlElement XmlElement::AddChild(nuo::string_ref name) const {
    xmlNode* node = document_->MakeNode(name);
    if (node != nullptr && xmlAddChild(node_, node) == nullptr) {
        xmlFreeNode(node);
        document_->failed_ = true;
        node = nullptr;
    }
    return XmlElement(*document_, node);
}

void XmlElement::SetAttribute(nuo::string_ref name, nuo::string_ref text) const {
    const nuo::string value(text);
    if (node_ == nullptr || !IsXmlText(value) ||
        xmlNewProp(node_, AsXml(nuo::string(name)), AsXml(value)) == nullptr) {
        document_->failed_ = true;
    }
}

XmlDocument::XmlDocument(nuo::string_ref root) {
    StartLibrary();
    document_ = xmlNewDoc(AsXml("1.0"));
    root_ = MakeNode(root);
    if (root_ != nullptr) xmlDocSetRootElement(document_, root_);
}

XmlDocument::~XmlDocument() {
    xmlFreeDoc(document_);
}

nuo::string XmlDocument::Dump() {
    const std::unique_ptr<xmlBuffer, decltype(&xmlBufferFree)> buffer(xmlBufferCreate(),
                                                                      &xmlBufferFree);
    if (failed_ || buffer == nullptr) return nuo::string();
    if (xmlNodeDump(buffer.get(), document_, xmlDocGetRootElement(document_), 2, 1) < 0) {
        return nuo::string();
    }
    return nuo::string(
        nuo::string_ref(reinterpret_cast<const char*>(xmlBufferContent(buffer.get())),
                        static_cast<std::uint64_t>(xmlBufferLength(buffer.get()))));
}

_xmlNode* XmlDocument::MakeNode(nuo::string_ref name) {
    xmlNode* node = nullptr;
    if (document_ != nullptr) {
        node = xmlNewDocNode(document_, nullptr, AsXml(nuo::string(name)),
                             reinterpret_cast<const xmlChar*>(kLineFeed));
    }
    if (node == nullptr) failed_ = true;
    return node;
}

}  // namespace korvanet::platform::assets
