#pragma once

#include <regex>
#include <string>

#include "assets/package/jpkfs.h"
#include "velmor/vfs/in_memory_fs.h"
#include "vfs/support.h"

namespace package_tests {

namespace fs = velmor::fs;
using korvanet::platform::assets::JpkFs;

inline const std::string kDeclaration = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>";
inline const std::string kLinksHead =
    kDeclaration + "<root version=\"1\" name=\"root\"><group name=\"default\">";
inline const std::string kLinksTail = "</group></root>";
inline const std::string kCoreHead =
    kDeclaration +
    "<root version=\"1\" name=\"root\"><group name=\"content\">"
    "<node name=\"asset\" class=\"schema.korvanet.package.1.asset\">";
inline const std::string kCoreTail = "</node></group></root>";

// With every identifier as UUID and every time as NOW.
inline std::string Masked(const std::string& text) {
    static const std::regex identifier("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}");
    static const std::regex time("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}");
    return std::regex_replace(std::regex_replace(text, identifier, "UUID"), time, "NOW");
}

// The elements that every child has, with the given name and content type.
inline std::string EntryElements(const std::string& name, const std::string& type) {
    return "<bool name=\"interop content\">0</bool><string name=\"name\">" + name +
           "</string><string name=\"type\">" + type + "</string><time name=\"created\">NOW</time>";
}

inline std::string FileLink(const std::string& name, const std::string& type) {
    return "<link name=\"" + name + "\" class=\"schema.korvanet.data.1.resource\">" +
           EntryElements(name, type) + "</link>";
}

// The name of a folder stands as it is in its link, and escaped in the element.
inline std::string FolderLink(const std::string& name, const std::string& escaped) {
    return "<link name=\"" + name + "\">" + EntryElements(escaped, "application/octet-stream") +
           "</link>";
}

inline std::string FolderLink(const std::string& name) {
    return FolderLink(name, name);
}

inline std::string FolderNode(const std::string& name) {
    return "<uuid name=\"identifier\">UUID</uuid><string name=\"name\">" + name +
           "</string><time name=\"created\">NOW</time><time name=\"updated\">NOW</time>"
           "<uint32 name=\"updates\">1</uint32>";
}

inline const std::string kRootNode =
    "<uuid name=\"identifier\">UUID</uuid><bool name=\"read only\">0</bool>"
    "<string name=\"last saved\"></string><time name=\"created\">NOW</time>"
    "<time name=\"updated\">NOW</time><uint32 name=\"updates\">1</uint32>";

// An option as "type:text", "none" when there is none.
inline std::string Option(JpkFs& package, unsigned id, const char* path, const char* name) {
    using korvanet::platform::assets::option_key;
    using korvanet::platform::assets::option_value;
    const nuo::any answer = package.getopt(id, nuo::any(option_key{path, name}));
    if (answer.empty()) return "none";
    const auto* value = nuo::any_cast<option_value>(&answer);
    return std::string(value->type.data()) + ":" + value->text.data();
}

inline void SetOption(JpkFs& package, unsigned id, const char* path, const char* name,
                      const char* type, const char* text) {
    using korvanet::platform::assets::option_key;
    using korvanet::platform::assets::option_value;
    package.setopt(id, nuo::any(option_key{path, name}), nuo::any(option_value{type, text}));
}

}  // namespace package_tests
