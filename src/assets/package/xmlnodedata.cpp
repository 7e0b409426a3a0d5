#include "assets/package/xmlnodedata.h"

#include <utility>

#include "assets/package/packageerrors.h"

namespace korvanet::platform::assets {
namespace {

// Where the parts of a manifest stand: the root is at depth 1.
constexpr std::size_t kGroupDepth = 2;
constexpr std::size_t kContainerDepth = 3;  // "link" or "node"
constexpr std::size_t kElementDepth = 4;

nuo::string NameAttribute(const XmlAttributes& attributes) {
    const auto name = attributes.find("name");
    return name == attributes.end() ? nuo::string() : name->second;
}

}  // namespace

void XmlNodeData::OnXml(XmlDriverState& driver, const nuo::string& name, const nuo::string& text,
                        const XmlAttributes& attributes, bool start) {
    const std::size_t depth = driver.elements.size();
    if (!start) {
        // The element itself has left the stack.
        OnEnd(depth + 1, name);
    } else if (!name.empty()) {
        OnStart(depth, name, attributes);
    } else if (depth == kElementDepth && open_ != nullptr) {
        Hold(text.size());
        text_.append(text);
    }
}

void XmlNodeData::OnStart(std::size_t depth, const nuo::string& name,
                          const XmlAttributes& attributes) {
    if (depth == kGroupDepth) {
        NameAttribute(attributes).swap(group_);
    } else if (depth == kContainerDepth) {
        OpenContainer(name, attributes);
    } else if (depth == kElementDepth && open_ != nullptr) {
        NameAttribute(attributes).swap(element_name_);
        text_.clear();
    }
}

void XmlNodeData::Hold(std::uint64_t bytes) {
    held_ += bytes;
    if (held_ > kMostHeld) NUO_RAISE(JpkFsErr);
}

void XmlNodeData::OpenContainer(const nuo::string& name, const XmlAttributes& attributes) {
    if (links_ != nullptr && name == "link") {
        const nuo::string child = NameAttribute(attributes);
        Hold(kHeldEach + child.size());
        open_ = &links_->try_emplace(child, child).first->second.properties;
    } else if (node_ != nullptr && name == "node" && group_ != "qmx") {
        // The tables of the group "qmx" are the same in every package and are written anew.
        open_ = node_;
    }
}

void XmlNodeData::OnEnd(std::size_t depth, const nuo::string& name) {
    if (depth == kContainerDepth) {
        open_ = nullptr;
    } else if (depth == kElementDepth && open_ != nullptr) {
        Hold(kHeldEach + name.size() + element_name_.size());
        open_->Set({name, element_name_}, nuo::string(text_));
    }
}

}  // namespace korvanet::platform::assets
