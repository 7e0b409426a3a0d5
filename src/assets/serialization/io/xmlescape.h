#pragma once

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// `text` with & < > " ' as &amp; &lt; &gt; &quot; &apos;, fit for text and for attributes. A text
// without any of them comes back sharing its block.
nuo::string EscapeXml(const nuo::string& text);

// The same, appended to `out`.
void AppendEscapedXml(nuo::string_builder& out, nuo::string_ref text);

// Whether a document can hold `text`, escaped: it is UTF-8 and has no control characters but tab
// and line ends.
bool IsXmlText(nuo::string_ref text);

}  // namespace korvanet::platform::assets
