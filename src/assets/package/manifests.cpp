#include <vector>

#include "assets/package/contenttype.h"
#include "assets/package/jpkfsimp.h"
#include "assets/package/manifestwriter.h"
#include "assets/package/packageerrors.h"
#include "assets/package/packagepath.h"
#include "assets/package/xmlnodedata.h"
#include "nuo/common/archive/primitives.h"
#include "velmor/vfs/vfs_functions.h"

namespace korvanet::platform::assets {
namespace {

using velmor::fs::IVfs;

constexpr unsigned kReadMode = velmor::fs::mode_read | velmor::fs::mode_random;
constexpr unsigned kWriteMode = velmor::fs::mode_write | velmor::fs::mode_random;

// The user's entries of a folder. They are taken before anything is opened or made there, since
// that may change the listing.
std::vector<nuo::string> UserEntries(IVfs& inner, nuo::string_ref folder) {
    std::vector<nuo::string> names;
    for (const velmor::fs::VfsNode& node : inner.children(folder)) {
        if (!IsReservedName(node.path)) {
            names.push_back(node.path);
        }
    }
    return names;
}

bool IsFolder(IVfs& inner, nuo::string_ref path) {
    return inner.state(path).state == velmor::fs::state_directory;
}

// A link on a disk may lead back to a folder above it.
void CheckDepth(std::size_t depth) {
    if (depth > velmor::fs::max_path_components) {
        NUO_RAISE(JpkFsErr);
    }
}

class Loader {
public:
    Loader(IVfs& inner, PackageDescription& description)
        : inner_(inner), description_(description) {}

    void Load(const nuo::string& folder, std::size_t depth) {
        CheckDepth(depth);
        LoadLinks(folder);
        LoadNode(folder);
        for (const nuo::string& name : UserEntries(inner_, folder)) {
            const nuo::string path = ChildPath(folder, name);
            if (IsFolder(inner_, path)) {
                Load(path, depth + 1);
            }
        }
    }

private:
    nuo::archive::archive_ptr Open(const nuo::string& folder, const char* part) {
        const nuo::string path = ChildPath(folder, part);
        // Before it is opened: a part of a ZIP file is inflated whole then.
        if (inner_.state(path).size > XmlNodeData::kMostHeld) NUO_RAISE(JpkFsErr);
        return inner_.create(path, kReadMode, velmor::fs::open_existing);
    }

    static void Read(XmlNodeData receiver, nuo::archive::iarchive& part) {
        XmlDriverState driver(receiver);
        ParseXml(driver, part);
    }

    void LoadLinks(const nuo::string& folder) {
        if (const auto part = Open(folder, kLinksPart)) {
            Read(XmlNodeData(description_.LinksOf(folder), held_), *part);
        }
    }

    void LoadNode(const nuo::string& folder) {
        if (const auto part = Open(folder, kCorePart)) {
            Read(XmlNodeData(description_.NodeOf(folder), held_), *part);
        }
    }

    IVfs& inner_;
    PackageDescription& description_;
    std::uint64_t held_ = 0;
};

class Writer {
public:
    Writer(IVfs& inner, PackageDescription& description)
        : inner_(inner), description_(description) {}

    void Write() {
        description_.CompleteRoot();
        WriteLinks(nuo::string(), 0);
        types_.Add("xml");
        WriteText(nuo::string(kContentTypesPart), ContentTypesText(types_));
        WriteText(nuo::string(kFormatPart), FormatText());
        for (const nuo::string& folder : folders_) {
            WriteText(ChildPath(folder, kCorePart),
                      CoreText(PackagePath(folder).Leaf(), description_.NodeOf(folder)));
        }
    }

private:
    // The manifests of a folder's own folders are written before its own, each where it is met.
    void WriteLinks(const nuo::string& folder, std::size_t depth) {
        CheckDepth(depth);
        folders_.push_back(folder);
        LinksText text;
        for (const nuo::string& name : UserEntries(inner_, folder)) {
            description_.CompleteEntry(folder, name);
            const PropertyMap& elements = description_.EntryOf(folder, name).properties;
            const nuo::string path = ChildPath(folder, name);
            if (IsFolder(inner_, path)) {
                if (CanLinkFolder(name)) {
                    text.AddFolder(name, elements);
                }
                description_.CompleteFolder(path, name);
                WriteLinks(path, depth + 1);
            } else if (CanLinkFile(name)) {
                text.AddFile(name, elements);
                types_.Add(ExtensionOf(name));
            }
        }
        WriteText(ChildPath(folder, kLinksPart), text.Finish());
    }

    // A part that holds this text already is left alone, so that the ZIP file copies its bytes
    // instead of packing them again.
    void WriteText(const nuo::string& path, const nuo::string& text) {
        if (Holds(path, text)) {
            return;
        }
        const auto part = inner_.create(path, kWriteMode, velmor::fs::open_or_create);
        nuo::archive::writer* const writer = nuo::archive::get_writer(part.get());
        if (writer == nullptr) {
            NUO_RAISE(jpk_package_error, path);
        }
        nuo::archive::write_all(*writer, {text.data(), text.size()});
        writer->truncate(text.size());
    }

    bool Holds(const nuo::string& path, const nuo::string& text) {
        const velmor::fs::VfsNodeState state = inner_.state(path);
        if (state.state != velmor::fs::state_file || state.size != text.size()) {
            return false;
        }
        const auto part = inner_.create(path, kReadMode, velmor::fs::open_existing);
        nuo::archive::reader* const reader = nuo::archive::get_reader(part.get());
        if (reader == nullptr) {
            return false;
        }
        const nuo::string held = nuo::string::filled(text.size(), [&](char* out) {
            nuo::archive::read_some(*reader, {out, text.size()});
        });
        return held == text;
    }

    IVfs& inner_;
    PackageDescription& description_;
    ContentTypeSet types_;
    std::vector<nuo::string> folders_;
};

}  // namespace

void LoadManifests(IVfs& inner, PackageDescription& description) {
    Loader(inner, description).Load(nuo::string(), 0);
    if (!description.HasNodes()) {
        description.CompleteRoot();
    }
}

void WriteManifests(IVfs& inner, PackageDescription& description) {
    Writer(inner, description).Write();
}

}  // namespace korvanet::platform::assets
