#include "assets/package/contenttype.h"

namespace korvanet::platform::assets {

nuo::string_ref ExtensionOf(nuo::string_ref leaf) {
    const std::uint64_t dot = leaf.rfind('.');
    return dot == nuo::string_ref::npos ? nuo::string_ref() : leaf.substr(dot + 1);
}

const nuo::string& ContentTypeOf(nuo::string_ref extension) {
    static const nuo::string image("image/png");
    static const nuo::string xml("application/xml");
    static const nuo::string other("application/octet-stream");
    if (extension == "xml") {
        return xml;
    }
    // The last three are no PNG and are listed as one on purpose: readers know them by that.
    const bool is_image =
        extension == "png" || extension == "jpg" || extension == "exr" || extension == "hdr";
    return is_image ? image : other;
}

void ContentTypeSet::Add(nuo::string_ref extension) {
    if (!extension.empty() && !known_.contains(extension)) {
        extensions_.emplace_back(extension);
        known_.insert(extensions_.back());
    }
}

}  // namespace korvanet::platform::assets
