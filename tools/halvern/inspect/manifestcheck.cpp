#include "inspect/manifestcheck.h"

#include <map>

#include "assets/package/contenttype.h"
#include "assets/package/jpkfs.h"
#include "assets/package/manifestwords.h"
#include "assets/package/manifestwriter.h"
#include "assets/package/packageerrors.h"
#include "assets/package/packagepath.h"
#include "assets/package/xmlnodedata.h"
#include "assets/serialization/io/xmlhandler.h"
#include "nuo/common/buffer_archive.h"

namespace halvern::inspect {
namespace {

using namespace korvanet::platform::assets;

constexpr const char* kFormat = "http://www.korvanet.com/design-package/2009";

// Takes attributes of the elements of one name, or the text of the document.
class TypeRows final : public IXmlCallBack {
public:
    void OnXml(XmlDriverState&, const nuo::string& name, const nuo::string&,
               const XmlAttributes& attributes, bool start) override {
        if (!start || !(name == "Default")) return;
        const auto extension = attributes.find("Extension");
        const auto type = attributes.find("ContentType");
        if (extension != attributes.end() && type != attributes.end())
            types.emplace(Text(extension->second), Text(type->second));
    }

    std::map<std::string, std::string> types;
};

class AllText final : public IXmlCallBack {
public:
    void OnXml(XmlDriverState&, const nuo::string&, const nuo::string& chunk, const XmlAttributes&,
               bool) override {
        text += Text(chunk);
    }

    std::string text;
};

class ManifestCheck {
public:
    ManifestCheck(PackageParts& parts, Findings& findings) : parts_(parts), findings_(findings) {}

    void Run() {
        CheckFolder("");
        CheckTypes();
        CheckMarker();
    }

private:
    // False when the part is not there, with a finding.
    bool Present(const std::string& path) {
        if (parts_.IsFile(path)) return !parts_.IsUnreadable(path);
        findings_.Add({"package.missing", path, "", "the part is missing"});
        return false;
    }

    // False when there is nothing to compare with; otherwise the events of the part have come.
    bool Parse(const std::string& path, IXmlCallBack& callback, bool closes) {
        if (held_ > XmlNodeData::kMostHeld) return false;  // which is found already
        if (!Present(path)) return false;
        if (parts_.Size(path) > XmlNodeData::kMostHeld) return RefuseSize(path);
        if (!CheckXml(parts_, path, "package.xml", closes, findings_)) return false;
        XmlDriverState driver(callback);
        const auto part = parts_.Open(path);
        try {
            return part && ParseXml(driver, *part);
        } catch (const nuo::context_exception<JpkFsErr>&) {
            return RefuseSize(path);
        }
    }

    bool RefuseSize(const std::string& path) {
        held_ = XmlNodeData::kMostHeld + 1;
        findings_.AddClosing({"limit", path, "",
                              "the links and elements of the package take more memory than a "
                              "reader gives them"});
        return false;
    }

    // Files and folders by name, and whether links can name them.
    using Children = std::map<std::string, bool>;

    void CheckFolder(const std::string& folder) {
        const std::string prefix = folder.empty() ? "" : folder + "/";
        Children children;
        for (const std::string& file : parts_.Files(folder)) {
            if (!IsUserPath(Ref(file))) continue;
            children.emplace(file, CanLinkFile(Ref(file)));
            TakeExtension(file, prefix + file);
        }
        const std::vector<std::string> folders = parts_.Folders(folder);
        for (const std::string& name : folders)
            children.emplace(name, CanLinkFolder(Ref(name)));
        CheckLinks(prefix + kLinksPart, children);
        CheckNode(folder, prefix + kCorePart);
        for (const std::string& below : folders)
            CheckFolder(prefix + below);
    }

    void TakeExtension(const std::string& file, const std::string& path) {
        if (!CanLinkFile(Ref(file))) return;
        const auto dot = file.rfind('.');
        if (dot != std::string::npos && dot + 1 != file.size())
            extensions_.emplace(file.substr(dot + 1), path);
    }

    void CheckLinks(const std::string& path, const Children& children) {
        PackageFolder links;
        XmlNodeData reader(links, held_);
        if (!Parse(path, reader, true)) return;
        for (const auto& [name, entry] : links) {
            if (children.contains(Text(name)))
                CheckLink(path, Text(name), entry.properties);
            else
                findings_.Add({"package.links", path, "link " + Text(name),
                               "a link names a part that is not there"});
        }
        for (const auto& [child, can_be_linked] : children)
            if (can_be_linked && links.find(nuo::string_ref(child)) == links.end())
                findings_.Add(
                    {"package.links", path, "link " + child, "the link of a part is missing"});
    }

    void CheckNode(const std::string& folder, const std::string& path) {
        PropertyMap node;
        XmlNodeData reader(node, held_);
        if (!Parse(path, reader, true) || folder.empty()) return;
        CheckName(path, "element name", node, folder.substr(folder.rfind('/') + 1));
        if (folder != parts_.Identifier()) return;
        const auto* identifier = node.FindByName(words::Identifier().name);
        if (identifier != nullptr && Text(identifier->second) != folder)
            findings_.Add({"package.identifier", path, "element identifier",
                           "the identifier " + Text(identifier->second) +
                               " is not that of the library's folder"});
    }

    void CheckTypes() {
        TypeRows rows;
        if (!Parse(kContentTypesPart, rows, false)) return;
        for (const auto& [extension, path] : extensions_)
            if (!rows.types.contains(extension))
                findings_.Add({"package.types", kContentTypesPart, "extension " + extension,
                               "no content type is told for " + path});
        for (const auto& [extension, type] : rows.types)
            CheckType(kContentTypesPart, "extension " + extension, Ref(extension), type);
    }

    void CheckType(const std::string& part, const std::string& where, nuo::string_ref extension,
                   const std::string& type) {
        const std::string wanted = Text(ContentTypeOf(extension));
        if (type != wanted)
            findings_.Add({"package.types", part, where,
                           "the content type is told as " + type + " in place of " + wanted});
    }

    // What a manifest says of a file or folder under its name.
    void CheckName(const std::string& part, const std::string& where, const PropertyMap& told,
                   const std::string& name) {
        const auto* found = told.FindByName(words::Name().name);
        if (found != nullptr && Text(found->second) != name)
            findings_.Add({"package.name", part, where,
                           "the name is told as " + Text(found->second) + " in place of " + name});
    }

    void CheckLink(const std::string& part, const std::string& name, const PropertyMap& told) {
        const std::string where = "link " + name;
        CheckName(part, where, told, name);
        if (const auto* type = told.FindByName(words::Type().name))
            CheckType(part, where, ExtensionOf(Ref(name)), Text(type->second));
    }

    void CheckMarker() {
        AllText marker;
        if (!Parse(kFormatPart, marker, false)) return;
        if (marker.text != kFormat)
            findings_.Add({"package.marker", kFormatPart, "",
                           "the part does not name the format " + std::string(kFormat)});
    }

    PackageParts& parts_;
    Findings& findings_;
    // The first file of each extension.
    std::map<std::string, std::string> extensions_;
    std::uint64_t held_ = 0;
};

}  // namespace

void CheckManifests(PackageParts& parts, Findings& findings) {
    ManifestCheck(parts, findings).Run();
}

}  // namespace halvern::inspect
