#pragma once

#include <cstdint>

#include "assets/package/packagedescription.h"
#include "assets/serialization/io/xmlhandler.h"
#include "nuo/common/string_builder.h"

namespace korvanet::platform::assets {

// Reads one "cnx.xml" into the children of a folder, or one "core.xml" into the elements of a
// folder. Elements of any kind and name are taken, so that those a package has beyond the usual
// ones are there when it is written again; docs/formats/manifests_and_options.md tells what is not.
//
// `count` is what the manifests of one package hold so far, in links and elements; too many end the
// reading with JpkFsErr.
class XmlNodeData : public IXmlCallBack {
public:
    // Chosen: three times what a ZIP of the most entries needs; each takes some 200 bytes.
    static constexpr std::uint64_t kMostElements = std::uint64_t{1} << 20;

    XmlNodeData(PackageFolder& links, std::uint64_t& count) : links_(&links), count_(count) {}
    XmlNodeData(PropertyMap& node, std::uint64_t& count) : node_(&node), count_(count) {}

    void OnXml(XmlDriverState& driver, const nuo::string& name, const nuo::string& text,
               const XmlAttributes& attributes, bool start) override;

private:
    void OnStart(std::size_t depth, const nuo::string& name, const XmlAttributes& attributes);
    void OnEnd(std::size_t depth, const nuo::string& name);
    void Count();
    void OpenContainer(const nuo::string& name, const XmlAttributes& attributes);

    PackageFolder* links_ = nullptr;  // for "cnx.xml"
    PropertyMap* node_ = nullptr;     // for "core.xml"
    std::uint64_t& count_;

    nuo::string group_;
    PropertyMap* open_ = nullptr;  // of the "link" or "node" that the parser is in, if any
    nuo::string element_name_;
    nuo::string_builder text_;
};

}  // namespace korvanet::platform::assets
