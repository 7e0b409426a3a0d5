#pragma once

#include "assets/serialization/io/xmlhandler.h"
#include "nuo/common/string.h"

namespace korvanet::platform::assets {

/**
 * Reads what the shader bindings of an implementation file describe:
 *
 *     <bindings target="shader"> ... <desc val="..." tag="..."/> ... </bindings>
 *
 * Of several "desc" elements the last one counts for each attribute that it has.
 */
class ImplParserCallBack final : public IXmlCallBack {
public:
    void OnXml(XmlDriverState& driver, const nuo::string& name, const nuo::string& text,
               const XmlAttributes& attributes, bool start) override;

    /** Parses the file; whether it describes anything. Raises what opening and parsing raise. */
    bool ReadFile(const nuo::string& path);

    bool Found() const { return found_; }
    const nuo::string& Value() const { return value_; }
    const nuo::string& Tag() const { return tag_; }

private:
    bool in_shader_bindings_ = false;
    bool found_ = false;
    nuo::string value_;
    nuo::string tag_;
};

}  // namespace korvanet::platform::assets
