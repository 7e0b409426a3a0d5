#include "reopening.h"

#include <korvanet/platform/assets/ivalue.h>

#include <fstream>
#include <iterator>
#include <memory>

#include "editing.h"
#include "propertytext.h"

namespace demo {

using namespace korvanet::platform::assets;

namespace {

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string ReadResource(IAssetLibrary& library, const std::string& uri) {
    std::shared_ptr<korvanet::platform::core::IDataReadStream> stream;
    Require(library.OpenResource(stream, Text(uri)), uri + " could not be opened");
    std::string bytes;
    char buffer[4096];
    while (const std::uint64_t count = stream->Read(buffer, sizeof buffer))
        bytes.append(buffer, count);
    return bytes;
}

void DescribeTile(IAssetLibrary& library, const char* identifier, Lines& lines) {
    const Instance tile(Find(library, identifier)->CreateInstance());
    Require(tile != nullptr, std::string(identifier) + " gives no instance");
    UTF8String name;
    tile->GetUIName(name, Text("DEU"));
    lines.push_back(std::string(identifier) + ", in German: " + name.AsUTF8());
    for (const char* property : {"ceramic_tile_width", "ceramic_application", "ceramic_color",
                                 "ceramic_bump_amount", "ceramic_bump_map"})
        lines.push_back("  " + Describe(*tile, property));
}

std::string DescribePicture(IAssetLibrary& library, const char* identifier,
                            const std::filesystem::path& file) {
    const Instance texture(Find(library, identifier)->CreateInstance());
    const std::string uri = ValueOf(PropertyOf(*texture, "unifiedbitmap_Bitmap"));
    const bool same = ReadResource(library, uri) == ReadFile(file);
    return uri + (same ? ": the bytes of the content" : ": other bytes than the content");
}

}  // namespace

Lines Reopen(const std::filesystem::path& path, const std::filesystem::path& content) {
    Session session;
    IAssetLibrary* const library = session->OpenLibrary(Text(path.string()));
    session.Require(library != nullptr, path.string() + " could not be opened");
    Lines lines;
    DescribeTile(*library, "glazed-tile", lines);
    DescribeTile(*library, kEditedTile, lines);
    lines.push_back(DescribePicture(*library, "grain", content / "textures" / "grain.png"));
    session.Unload(*library);
    return lines;
}

}  // namespace demo
