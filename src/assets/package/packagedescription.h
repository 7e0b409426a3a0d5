#pragma once

#include <map>
#include <utility>

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// The key of one element of a manifest: its kind ("string", "time") and its name, which may be
// empty. Sorted by kind, then by name.
struct ElementKey {
    nuo::string type;
    nuo::string name;

    friend bool operator<(const ElementKey& a, const ElementKey& b) {
        return a.type == b.type ? a.name < b.name : a.type < b.type;
    }
};

// The elements that describe one folder, or one child of a folder, in the order of writing.
class PropertyMap {
public:
    using Elements = std::map<ElementKey, nuo::string>;
    using value_type = Elements::value_type;

    Elements::const_iterator begin() const { return elements_.begin(); }
    Elements::const_iterator end() const { return elements_.end(); }

    bool Has(const ElementKey& key) const { return elements_.contains(key); }
    // The first element of this name, of any kind, or null.
    const value_type* FindByName(nuo::string_ref name) const;
    // Sets one element; others of its name stay.
    void Set(ElementKey key, nuo::string text);
    // Sets one element and drops all others of its name. An empty kind is stored as "name".
    void SetAlone(const nuo::string& type, const nuo::string& name, nuo::string text);

private:
    Elements elements_;
};

struct PackageEntry {
    explicit PackageEntry(nuo::string of) : name(std::move(of)) {}

    nuo::string name;
    PropertyMap properties;
};

// The children of one folder, by name.
using PackageFolder = std::map<nuo::string, PackageEntry, nuo::string_less>;

// What the manifests of a package say, and will say when they are written next. Paths are in the
// form of PackagePath; nothing is checked against the files.
class PackageDescription {
public:
    // Each gives what is there or makes it empty.
    PackageFolder& LinksOf(nuo::string_ref folder);
    PackageEntry& EntryOf(nuo::string_ref folder, nuo::string_ref leaf);
    PropertyMap& NodeOf(nuo::string_ref folder);

    // Null when there is none.
    const PropertyMap* FindEntry(nuo::string_ref folder, nuo::string_ref leaf) const;
    const PropertyMap* FindNode(nuo::string_ref folder) const;
    bool HasNodes() const { return !nodes_.empty(); }

    // Each adds the elements that are missing of what every root, folder or child has.
    void CompleteRoot();
    void CompleteFolder(nuo::string_ref folder, nuo::string_ref leaf);
    void CompleteEntry(nuo::string_ref folder, nuo::string_ref leaf);

    // Drops what is said of a path, as a folder and as a child of `folder`.
    void Forget(nuo::string_ref path, nuo::string_ref folder, nuo::string_ref leaf);

private:
    std::map<nuo::string, PackageFolder, nuo::string_less> links_;
    std::map<nuo::string, PropertyMap, nuo::string_less> nodes_;
};

}  // namespace korvanet::platform::assets
