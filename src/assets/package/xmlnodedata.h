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
// `held` is what the manifests of one package hold so far, in bytes of memory; too many end the
// reading with JpkFsErr.
class XmlNodeData : public IXmlCallBack {
public:
    // Chosen: by estimate three times what a ZIP of the most entries needs.
    static constexpr std::uint64_t kMostHeld = std::uint64_t{256} << 20;
    // Of a link or element beside its texts. Chosen above what was seen once: four million short
    // elements took 160 bytes each.
    static constexpr std::uint64_t kHeldEach = 256;

    XmlNodeData(PackageFolder& links, std::uint64_t& held) : links_(&links), held_(held) {}
    XmlNodeData(PropertyMap& node, std::uint64_t& held) : node_(&node), held_(held) {}

    void OnXml(XmlDriverState& driver, const nuo::string& name, const nuo::string& text,
               const XmlAttributes& attributes, bool start) override;

private:
    void OnStart(std::size_t depth, const nuo::string& name, const XmlAttributes& attributes);
    void OnEnd(std::size_t depth, const nuo::string& name);
    void Hold(std::uint64_t bytes);
    void OpenContainer(const nuo::string& name, const XmlAttributes& attributes);

    PackageFolder* links_ = nullptr;  // for "cnx.xml"
    PropertyMap* node_ = nullptr;     // for "core.xml"
    std::uint64_t& held_;

    nuo::string group_;
    PropertyMap* open_ = nullptr;  // of the "link" or "node" that the parser is in, if any
    nuo::string element_name_;
    nuo::string_builder text_;
};

}  // namespace korvanet::platform::assets
