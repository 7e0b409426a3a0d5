#include "authoring.h"

#include <korvanet/platform/assets/ivalue.h>

#include "propertytext.h"

namespace demo {

using namespace korvanet::platform::assets;

namespace {

constexpr const char* kSchemas[] = {"CeramicSchema", "GenericSchema", "UnifiedBitmapSchema"};

// A definition as the content has it: texts are the keys of messages, pictures the names of
// textures.
struct Starter {
    const char* identifier;
    const char* schema;
    const char* key;
    const char* keyword;
    const char* category;
    const char* texture;
};
constexpr Starter kChecker{"checker",         "UnifiedBitmapSchema", "CHECKER",
                           "KEYWORD_PATTERN", "CATEGORY_TEXTURE",    "checker.png"};
constexpr Starter kGrain{"grain",           "UnifiedBitmapSchema", "GRAIN",
                         "KEYWORD_PATTERN", "CATEGORY_TEXTURE",    "grain.png"};
constexpr Starter kTile{"glazed-tile",  "CeramicSchema",    "GLAZED_TILE",
                        "KEYWORD_WALL", "CATEGORY_CERAMIC", "checker.png"};
constexpr Starter kPaint{"plain-paint",  "GenericSchema",  "PLAIN_PAINT",
                         "KEYWORD_WALL", "CATEGORY_PAINT", "gradient.png"};

std::size_t CountProperties(const IPropertyTable& table) {
    std::size_t count = 0;
    IEnumeration<const IProperty*>* const walk = table.GetProperties(false);
    for (walk->First(); walk->IsValid(); walk->Next())
        ++count;
    table.ReleaseEnumeration(walk);
    return count;
}

std::string SchemaLine(const IAssetSchema& schema) {
    UTF8String id, base, type;
    schema.GetId(id);
    if (schema.GetBaseSchema() != nullptr) schema.GetBaseSchema()->GetId(base);
    schema.GetAssetType(type);
    return std::string(id.AsUTF8()) + (base.IsEmpty() ? "" : " on ") + base.AsUTF8() +
           (type.IsEmpty() ? "" : ", for a ") + type.AsUTF8() + ": " +
           std::to_string(CountProperties(schema)) + " properties";
}

// Writes the path of a texture into a URI property. Saving brings the file into the library and
// the property to the URI that the file has there.
void SetUri(IAssetInstance& asset, const char* property, const std::filesystem::path& file) {
    auto* const uri = dynamic_cast<IUriValue*>(PropertyOf(asset, property).GetValue());
    Require(uri != nullptr && (uri->GetDimension() > 0 || uri->SetDimension(1)) &&
                uri->SetValue(Wide(file.string()).c_str()),
            std::string(property) + " does not take a URI");
}

// A new asset with the defaults of its schema and the texts and pictures of the content.
Instance Make(Session& session, const Starter& starter, const std::filesystem::path& content) {
    Instance asset(session->CreateInstanceFromSchema(session->FindSchema(Text(starter.schema)),
                                                     nullptr, nullptr));
    session.Require(asset != nullptr, std::string("no asset came of ") + starter.schema);
    const std::string key = starter.key;
    session.Require(asset->SetUIName(Text(key)) && asset->SetDescription(Text(key + "_DESC")) &&
                        asset->AddKeyword(Text(starter.keyword)) &&
                        asset->AddCategory(Text(starter.category)),
                    "the texts were refused");
    SetUri(*asset, "thumbnail", content / "textures" / starter.texture);
    return asset;
}

std::string Store(Session& session, IAssetLibrary& library, const Starter& starter,
                  IAssetInstance& asset, const std::string& about) {
    session.Require(library.CreatePresetFromInstance(&asset, Text(starter.identifier), false),
                    std::string(starter.identifier) + " could not be stored");
    return std::string(starter.identifier) + " of " + starter.schema + ", " + about;
}

std::string AddTexture(Session& session, IAssetLibrary& library, const Starter& starter,
                       const std::filesystem::path& content) {
    const Instance asset = Make(session, starter, content);
    SetUri(*asset, "unifiedbitmap_Bitmap", content / "textures" / starter.texture);
    return Store(session, library, starter, *asset, std::string("with ") + starter.texture);
}

std::string AddTile(Session& session, IAssetLibrary& library,
                    const std::filesystem::path& content) {
    const Instance asset = Make(session, kTile, content);
    const Instance pattern(Find(library, kChecker.identifier)->CreateInstance());
    session.Require(PropertyOf(*asset, "ceramic_bump_map").ConnectAsset(pattern.get()),
                    "the pattern could not be connected");
    return Store(session, library, kTile, *asset, "connected to checker");
}

std::string AddPaint(Session& session, IAssetLibrary& library,
                     const std::filesystem::path& content) {
    const Instance asset = Make(session, kPaint, content);
    IProperty& color = PropertyOf(*asset, "generic_diffuse");
    session.Require(dynamic_cast<IColorValue&>(*color.GetValue()).SetValue(0.25, 0.5, 0.75, 1.0),
                    "the colour was refused");
    return Store(session, library, kPaint, *asset, "colour " + ValueOf(color));
}

}  // namespace

Lines LoadSchemas(Session& session, const std::filesystem::path& content) {
    const UTF8String folder = Text((content / "schemas").string());
    for (const char* name : kSchemas) {
        session.Require(session->LoadSchemaFromFolder(Text(name), folder) != nullptr,
                        std::string(name) + " could not be loaded");
    }
    Lines lines;
    for (std::size_t i = 0; i < session->GetSchemaCount(); ++i)
        lines.push_back(SchemaLine(*session->GetSchemaAt(i)));
    return lines;
}

Lines BringSchemasIn(Session& session, IAssetLibrary& library) {
    for (const char* name : kSchemas) {
        session.Require(library.AddSchema(session->FindSchema(Text(name))),
                        std::string(name) + " could not be brought in");
    }
    UTF8String identifier;
    library.GetIdentifier(identifier);
    return {std::string("a library with the identifier ") + identifier.AsUTF8(),
            std::to_string(std::size(kSchemas)) + " schemas brought in, with their base"};
}

Lines AddDefinitions(Session& session, IAssetLibrary& library,
                     const std::filesystem::path& content) {
    return {AddTexture(session, library, kChecker, content),
            AddTexture(session, library, kGrain, content), AddTile(session, library, content),
            AddPaint(session, library, content)};
}

}  // namespace demo
