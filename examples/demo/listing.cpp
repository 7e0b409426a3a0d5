#include "listing.h"

namespace demo {
namespace {

using Walk = IAssetDefinition::IIterator;

std::string Keywords(const Walk& walk, const UTF8String& locale) {
    std::string words;
    for (std::uint64_t i = 0; i < walk.GetKeywordCount(); ++i) {
        UTF8String word;
        walk.GetKeyword(i, word, locale);
        words += std::string(words.empty() ? "" : ", ") + word.AsUTF8();
    }
    return words;
}

// The walk answers from what a listing shows; the assets themselves are not made.
std::string LineFor(const Walk& walk, const UTF8String& locale) {
    UTF8String identifier, name, description, category;
    walk.GetName(identifier);
    walk.GetUIName(name, locale);
    walk.GetDescription(description, locale);
    walk.GetCategory(0, category, locale);
    return std::string(identifier.AsUTF8()) + " | " + name.AsUTF8() + " | " + description.AsUTF8() +
           " | " + category.AsUTF8() + " | " + Keywords(walk, locale);
}

}  // namespace

Lines List(IAssetLibrary& library, const char* locale) {
    Lines lines;
    int hidden = 0;
    const Definitions walk(library.GetDefinitions());
    for (; !walk->IsAtEnd(); walk->Next()) {
        if (walk->IsHidden()) {
            ++hidden;
        } else {
            lines.push_back(LineFor(*walk, Text(locale)));
        }
    }
    lines.push_back("and " + std::to_string(hidden) + " hidden, connected to these");
    return lines;
}

}  // namespace demo
