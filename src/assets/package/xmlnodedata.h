#pragma once

#include "assets/package/packagedescription.h"
#include "assets/serialization/io/xmlhandler.h"
#include "nuo/common/string_builder.h"

namespace korvanet::platform::assets {

// Reads one "cnx.xml" into the children of a folder, or one "core.xml" into the elements of a
// folder. Elements of any kind and name are taken, so that those a package has beyond the usual
// ones are there when it is written again; docs/formats/manifests_and_options.md tells what is not.
class XmlNodeData : public IXmlCallBack {
public:
    explicit XmlNodeData(PackageFolder& links) : links_(&links) {}
    explicit XmlNodeData(PropertyMap& node) : node_(&node) {}

    void OnXml(XmlDriverState& driver, const nuo::string& name, const nuo::string& text,
               const XmlAttributes& attributes, bool start) override;

private:
    void OnStart(std::size_t depth, const nuo::string& name, const XmlAttributes& attributes);
    void OnEnd(std::size_t depth, const nuo::string& name);
    void OpenContainer(const nuo::string& name, const XmlAttributes& attributes);

    PackageFolder* links_ = nullptr;  // for "cnx.xml"
    PropertyMap* node_ = nullptr;     // for "core.xml"

    nuo::string group_;
    PropertyMap* open_ = nullptr;  // of the "link" or "node" that the parser is in, if any
    nuo::string element_name_;
    nuo::string_builder text_;
};

}  // namespace korvanet::platform::assets
