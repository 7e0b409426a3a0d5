#include "library.h"

#include <korvanet/platform/core/utf8string.h>
#include <korvanet/platform/core/widestring.h>

#include "failure.h"
#include "inspect/verify.h"

namespace halvern {

using core::UTF8String;

namespace {

[[noreturn]] void FailToRead(const std::string& identifier, const std::string& file) {
    const std::string why = inspect::WhyNotRead(file, identifier);
    throw Failure(kFile, why.empty() ? "the definition " + identifier + " cannot be read" : why);
}

}  // namespace

HeldDefinition FindDefinition(assets::IAssetLibrary& library, const std::string& identifier,
                              const std::string& file) {
    const HeldIterator found(library.GetDefinitionsById(UTF8String(identifier.c_str())));
    if (found->IsAtEnd()) throw Failure(kNo, "there is no definition " + identifier);
    HeldDefinition definition(found->GetDefinition());
    if (!definition) FailToRead(identifier, file);
    return definition;
}

HeldInstance Instantiate(assets::IAssetDefinition& definition, const std::string& identifier,
                         const std::string& file) {
    HeldInstance instance(definition.CreateInstance());
    if (!instance) FailToRead(identifier, file);
    return instance;
}

void RequireUtf8(const std::string& what, const std::string& text) {
    const core::WideString wide(UTF8String(text.c_str()).AsWide());
    if (text != wide.AsUTF8()) throw Failure(kUsage, what + " is not UTF-8");
}

bool HasDefinition(assets::IAssetLibrary& library, const std::string& identifier) {
    const HeldIterator found(library.GetDefinitionsById(UTF8String(identifier.c_str())));
    return !found->IsAtEnd();
}

}  // namespace halvern
