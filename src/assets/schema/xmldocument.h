#pragma once

#include "nuo/common/string.h"

struct _xmlDoc;
struct _xmlNode;

namespace korvanet::platform::assets {

class XmlDocument;

/** An element of an XmlDocument; a handle that is copied freely and lives as long as its document.
 */
class XmlElement {
public:
    /** Appends an element. */
    XmlElement AddChild(nuo::string_ref name) const;
    /** Appends an attribute. The caller uses each name once. */
    void SetAttribute(nuo::string_ref name, nuo::string_ref text) const;

private:
    friend class XmlDocument;

    XmlElement(XmlDocument& document, _xmlNode* node) : document_(&document), node_(node) {}

    XmlDocument* document_;
    _xmlNode* node_;
};

/**
 * An XML document in the making. Each element begins with one line feed as its text, so that it
 * keeps an end tag and people can compare two files line by line:
 *
 *     element = "<" name *(" " attribute) ">" LF *element "</" name ">"
 *
 * A text that XML can't hold, or a lack of memory, is remembered and makes Dump fail.
 */
class XmlDocument {
public:
    explicit XmlDocument(nuo::string_ref root);
    ~XmlDocument();
    XmlDocument(const XmlDocument&) = delete;
    XmlDocument& operator=(const XmlDocument&) = delete;

    XmlElement Root() { return XmlElement(*this, root_); }

    /** The text from the root element on, without an XML declaration. Empty on failure. */
    nuo::string Dump();

private:
    friend class XmlElement;

    _xmlNode* MakeNode(nuo::string_ref name);

    _xmlDoc* document_;
    _xmlNode* root_ = nullptr;
    bool failed_ = false;
};

}  // namespace korvanet::platform::assets
