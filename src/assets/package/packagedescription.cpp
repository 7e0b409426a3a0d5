#include "assets/package/packagedescription.h"

#include <korvanet/platform/core/jpkuuid.h>
#include <korvanet/platform/core/utf8string.h>
#include <korvanet/platform/core/w3ctime.h>

#include "assets/package/contenttype.h"
#include "assets/package/manifestwords.h"

namespace korvanet::platform::assets {
namespace {

nuo::string FreshIdentifier() {
    char text[core::JPKUUID::kTextLength + 1];
    core::JPKUUID().ToChars(text);
    return nuo::string(text);
}

nuo::string Now() {
    core::UTF8String text;
    core::W3CTime().ToString(text);
    return nuo::string(text.AsUTF8());
}

// `make` is called only when the element is missing.
template <class Make>
void AddMissing(PropertyMap& elements, const ElementKey& key, Make make) {
    if (!elements.Has(key)) {
        elements.Set(key, make());
    }
}

// What the root and every other folder have alike.
void CompleteCommon(PropertyMap& node) {
    AddMissing(node, words::Identifier(), FreshIdentifier);
    AddMissing(node, words::Created(), Now);
    AddMissing(node, words::Updated(), Now);
    AddMissing(node, words::Updates(), [] { return words::One(); });
}

template <class Map>
typename Map::mapped_type& FindOrMake(Map& map, nuo::string_ref key) {
    const auto place = map.lower_bound(key);
    if (place != map.end() && place->first == key) {
        return place->second;
    }
    return map.emplace_hint(place, nuo::string(key), typename Map::mapped_type())->second;
}

}  // namespace

const PropertyMap::value_type* PropertyMap::FindByName(nuo::string_ref name) const {
    for (const value_type& element : elements_) {
        if (element.first.name == name) {
            return &element;
        }
    }
    return nullptr;
}

void PropertyMap::Set(ElementKey key, nuo::string text) {
    const auto [place, made] = elements_.try_emplace(std::move(key), text);
    if (!made) {
        place->second.swap(text);
    }
}

void PropertyMap::SetAlone(const nuo::string& type, const nuo::string& name, nuo::string text) {
    for (auto at = elements_.begin(); at != elements_.end();) {
        at = at->first.name == name ? elements_.erase(at) : std::next(at);
    }
    elements_.emplace(ElementKey{type.empty() ? words::UntypedKind() : type, name},
                      std::move(text));
}

PackageFolder& PackageDescription::LinksOf(nuo::string_ref folder) {
    return FindOrMake(links_, folder);
}

PackageEntry& PackageDescription::EntryOf(nuo::string_ref folder, nuo::string_ref leaf) {
    PackageFolder& children = LinksOf(folder);
    const auto place = children.lower_bound(leaf);
    if (place != children.end() && place->first == leaf) {
        return place->second;
    }
    const nuo::string name(leaf);
    return children.emplace_hint(place, name, PackageEntry(name))->second;
}

PropertyMap& PackageDescription::NodeOf(nuo::string_ref folder) {
    return FindOrMake(nodes_, folder);
}

const PropertyMap* PackageDescription::FindEntry(nuo::string_ref folder,
                                                 nuo::string_ref leaf) const {
    const auto children = links_.find(folder);
    if (children == links_.end()) {
        return nullptr;
    }
    const auto entry = children->second.find(leaf);
    return entry == children->second.end() ? nullptr : &entry->second.properties;
}

const PropertyMap* PackageDescription::FindNode(nuo::string_ref folder) const {
    const auto node = nodes_.find(folder);
    return node == nodes_.end() ? nullptr : &node->second;
}

void PackageDescription::CompleteRoot() {
    PropertyMap& node = NodeOf("");
    CompleteCommon(node);
    AddMissing(node, words::ReadOnly(), [] { return words::Zero(); });
    AddMissing(node, words::LastSaved(), [] { return nuo::string(); });
}

void PackageDescription::CompleteFolder(nuo::string_ref folder, nuo::string_ref leaf) {
    PropertyMap& node = NodeOf(folder);
    CompleteCommon(node);
    AddMissing(node, words::Name(), [leaf] { return nuo::string(leaf); });
}

void PackageDescription::CompleteEntry(nuo::string_ref folder, nuo::string_ref leaf) {
    PackageEntry& entry = EntryOf(folder, leaf);
    AddMissing(entry.properties, words::Name(), [&] { return entry.name; });
    AddMissing(entry.properties, words::Type(),
               [leaf] { return ContentTypeOf(ExtensionOf(leaf)); });
    AddMissing(entry.properties, words::Created(), Now);
    AddMissing(entry.properties, words::InteropContent(), [] { return words::Zero(); });
}

void PackageDescription::Forget(nuo::string_ref path, nuo::string_ref folder,
                                nuo::string_ref leaf) {
    const auto own_links = links_.find(path);
    if (own_links != links_.end()) {
        links_.erase(own_links);
    }
    const auto node = nodes_.find(path);
    if (node != nodes_.end()) {
        nodes_.erase(node);
    }
    const auto siblings = links_.find(folder);
    if (siblings == links_.end()) {
        return;
    }
    const auto entry = siblings->second.find(leaf);
    if (entry != siblings->second.end()) {
        siblings->second.erase(entry);
    }
}

}  // namespace korvanet::platform::assets
