#include "assets/library/resourceuri.h"

#include "assets/package/jpkfs.h"
#include "nuo/common/string_algo/number.h"
#include "nuo/common/string_builder.h"

namespace korvanet::platform::assets {
namespace {

constexpr nuo::string_ref kFileScheme{"file:///"};

bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool BeginsWithDrive(nuo::string_ref text) {
    return text.size() >= 2 && IsLetter(text[0]) && text[1] == ':';
}

void AppendPercent(nuo::string_builder& out, char c) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    const auto code = static_cast<unsigned char>(c);
    out.append('%').append(kDigits[code >> 4]).append(kDigits[code & 15]);
}

bool IsControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

nuo::string EscapeEach(nuo::string_ref text, nuo::string_ref special) {
    nuo::string_builder out;
    for (char c : text) {
        if (special.find(c) != nuo::string_ref::npos || IsControl(c))
            AppendPercent(out, c);
        else
            out.append(c);
    }
    return nuo::string(out);
}

bool IsDots(nuo::string_ref text) {
    return text == "." || text == "..";
}

// A name that means something to paths or to packages, as one that means nothing.
nuo::string Unreserved(const nuo::string& name) {
    return IsDots(name) || !IsUserPath(name) ? EscapeEach(name, ".") : name;
}

}  // namespace

nuo::string_ref ResourcePath(nuo::string_ref uri) {
    return uri.substr(kResourcePrefix.size());
}

nuo::string MakeResourceUri(nuo::string_ref path) {
    return nuo::string(kResourcePrefix, path);
}

nuo::string_ref WithoutFileScheme(nuo::string_ref text) {
    if (!text.starts_with(kFileScheme)) return text;
    const nuo::string_ref rest = text.substr(kFileScheme.size());
    // Without a drive the last slash of the scheme is the root of the path.
    return BeginsWithDrive(rest) ? rest : text.substr(kFileScheme.size() - 1);
}

nuo::string PathComponent(nuo::string_ref text) {
    return Unreserved(EscapeEach(text, "/\\<\"&"));
}

nuo::string ResourceFileName(nuo::string_ref leaf) {
    if (IsDots(leaf)) return {};
    return Unreserved(EscapeEach(leaf, "/\\<\"#&"));
}

nuo::string NumberedFileName(nuo::string_ref leaf, int number) {
    const std::uint64_t dot = leaf.rfind('.');
    const nuo::string_ref stem = leaf.substr(0, dot);
    nuo::string_builder name;
    name.append(stem).append('(').append_number(std::int64_t{number}).append(')');
    if (dot != nuo::string_ref::npos) name.append(leaf.substr(dot));
    return nuo::string(name);
}

}  // namespace korvanet::platform::assets
