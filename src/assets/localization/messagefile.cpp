#include "assets/localization/messagefile.h"

#include <algorithm>
#include <utility>

namespace korvanet::platform::assets {
namespace {

constexpr bool IsLower(char c) {
    return c >= 'a' && c <= 'z';
}

constexpr char Upper(char c) {
    return IsLower(c) ? static_cast<char>(c - 'a' + 'A') : c;
}

bool MatchesUpper(nuo::string_ref text, nuo::string_ref upper) {
    return text.size() == upper.size() && std::equal(text.begin(), text.end(), upper.begin(),
                                                     [](char a, char b) { return Upper(a) == b; });
}

// The name without its extension; a leading dot begins no extension.
nuo::string_ref Stem(nuo::string_ref name) {
    const std::uint64_t dot = name.rfind('.');
    return dot == nuo::string_ref::npos || dot == 0 ? name : name.substr(0, dot);
}

nuo::string FileName(nuo::string_ref base, nuo::string_ref locale) {
    nuo::string_builder name;
    name.append(base).append('-').append(locale).append(".XLF");
    return nuo::string(name);
}

// A listing may come in any order, so "the first" is the first by name.
void KeepFirst(nuo::string& first, const nuo::string& entry) {
    if (first.empty() || entry < first) {
        nuo::string(entry).swap(first);
    }
}

}  // namespace

UpperText::UpperText(nuo::string_ref text) : ref_(text) {
    if (std::any_of(text.begin(), text.end(), IsLower)) {
        nuo::string::filled(text.size(), [&](char* out) {
            std::transform(text.begin(), text.end(), out, Upper);
        }).swap(made_);
        ref_ = made_;
    }
}

MessageSource::MessageSource(std::weak_ptr<velmor::fs::IVfs> files, nuo::string_ref base_name)
    : files_(std::move(files)),
      stem_(UpperText(Stem(base_name)).Ref()),
      name_(UpperText(base_name).Ref()) {}

nuo::archive::archive_ptr MessageSource::Open(velmor::fs::IVfs& files,
                                              nuo::string_ref locale) const {
    const nuo::string by_stem = FileName(stem_, locale);
    const nuo::string by_name = FileName(name_, locale);
    nuo::string first_by_stem;
    nuo::string first_by_name;
    for (const velmor::fs::VfsNode& entry : files.children("")) {
        if (MatchesUpper(entry.path, by_stem)) {
            KeepFirst(first_by_stem, entry.path);
        } else if (MatchesUpper(entry.path, by_name)) {
            KeepFirst(first_by_name, entry.path);
        }
    }
    const nuo::string& file = first_by_stem.empty() ? first_by_name : first_by_stem;
    if (file.empty()) {
        return nullptr;
    }
    return files.create(file, velmor::fs::mode_read | velmor::fs::mode_random,
                        velmor::fs::open_existing);
}

}  // namespace korvanet::platform::assets
