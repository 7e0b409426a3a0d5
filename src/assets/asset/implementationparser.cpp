#include "assets/asset/implementationparser.h"

#include "nuo/common/file_archive.h"

namespace korvanet::platform::assets {
namespace {

constexpr nuo::string_ref kBindings = "bindings";
constexpr nuo::string_ref kTarget = "target";
constexpr nuo::string_ref kShader = "shader";
constexpr nuo::string_ref kDescription = "desc";
constexpr nuo::string_ref kValue = "val";
constexpr nuo::string_ref kTag = "tag";

void TakeAttribute(const XmlAttributes& attributes, nuo::string_ref name, nuo::string& place) {
    const auto found = attributes.find(name);
    if (found != attributes.end()) place = found->second;
}

}  // namespace

void ImplParserCallBack::OnXml(XmlDriverState&, const nuo::string& name, const nuo::string&,
                               const XmlAttributes& attributes, bool start) {
    if (name == kBindings) {
        const auto target = attributes.find(kTarget);
        if (!start) {
            in_shader_bindings_ = false;
        } else if (target != attributes.end() && target->second == kShader) {
            in_shader_bindings_ = true;
        }
    } else if (name == kDescription && start && in_shader_bindings_) {
        found_ = true;
        TakeAttribute(attributes, kValue, value_);
        TakeAttribute(attributes, kTag, tag_);
    }
}

bool ImplParserCallBack::ReadFile(const nuo::string& path) {
    nuo::archive::file_read_archive file(path);
    XmlDriverState driver(*this);
    ParseXml(driver, file);
    return found_;
}

}  // namespace korvanet::platform::assets
