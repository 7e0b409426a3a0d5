#pragma once

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// Where a text stands in a document.
enum class XmlPlace { kText, kAttribute };

// Appends `text` with & < > " ' as &amp; &lt; &gt; &quot; &apos;, and with the white space that a
// reader would hand on as other white space as references to characters: a carriage return, and in
// attributes also a line feed and a tab.
void AppendEscapedXml(nuo::string_builder& out, nuo::string_ref text, XmlPlace place);

// Whether a document can hold `text`, escaped: it is UTF-8 and has no control characters but tab
// and line ends.
bool IsXmlText(nuo::string_ref text);

}  // namespace korvanet::platform::assets
