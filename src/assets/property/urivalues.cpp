#include "assets/property/urivalues.h"

#include <initializer_list>
#include <utility>
#include <vector>

#include "assets/manager/base/guarded.h"
#include "assets/manager/base/text.h"
#include "assets/property/itextureroots.h"
#include "assets/property/modulecontext.h"

namespace korvanet::platform::assets {

namespace {

constexpr nuo::string_ref kSkyPresets = "Environments/SunAndSky/Presets/";
constexpr nuo::string_ref kMats = "/Mats";
constexpr char kFirstLevel = '1';
constexpr char kLastLevel = '4';
// Presets of the sky begin at a higher level.
constexpr char kFirstSkyLevel = '3';
constexpr char kLastSkyLevel = '5';

std::uint32_t LevelBetween(char level, char first, char last) {
    return level >= first && level <= last ? static_cast<std::uint32_t>(level - first)
                                           : kNoResolution;
}

// Whether `text` is the folder that ends at `root` + `folder` + `level` + `tail`, or lies below it.
bool LiesBelow(nuo::string_ref text, std::initializer_list<nuo::string_ref> folder) {
    for (const nuo::string_ref part : folder) {
        if (!text.starts_with(part)) {
            return false;
        }
        text = text.substr(part.size());
    }
    return text.empty() || text.front() == '/';
}

bool FitsLevel(nuo::string_ref uri, nuo::string_ref root, char level) {
    const nuo::string_ref digit(&level, std::uint64_t{1});
    return LiesBelow(uri, {root, "/", digit, kMats}) ||
           LiesBelow(uri, {root, "/", kSkyPresets, digit});
}

bool FitsAnyLevel(nuo::string_ref uri, nuo::string_ref root) {
    for (char level = kFirstLevel; level <= kLastLevel; ++level) {
        if (FitsLevel(uri, root, level)) {
            return true;
        }
    }
    return false;
}

}  // namespace

std::uint32_t UriResolution(nuo::string_ref uri) {
    return uri.size() >= 2 && uri[1] == '/' ? LevelBetween(uri[0], kFirstLevel, kLastLevel)
                                            : kNoResolution;
}

std::uint32_t TextureResolution(nuo::string_ref uri) {
    if (uri.starts_with(kSkyPresets)) {
        // The prefix ends with a separator, so there is one, and a byte before it.
        const std::uint64_t last = uri.rfind('/');
        return LevelBetween(uri[last - 1], kFirstSkyLevel, kLastSkyLevel);
    }
    return uri.substr(1).starts_with("/Mats/") ? LevelBetween(uri[0], kFirstLevel, kLastLevel)
                                               : kNoResolution;
}

bool TextureURIValue::SetDimension(std::uint64_t dimension) {
    ResetResolutionState();
    return StringArrayValueTemplate<ITextureURIValue>::SetDimension(dimension);
}

bool TextureURIValue::SetValue(const wchar_t* value, std::uint64_t index) {
    ResetResolutionState();
    return StringArrayValueTemplate<ITextureURIValue>::SetValue(value, index);
}

bool TextureURIValue::GetResolution(std::uint32_t& resolution, std::uint64_t index) const {
    resolution = kNoResolution;
    if (!CheckIndex(index, GetDimension())) {
        return false;
    }
    resolution = TextureResolution(Place(index));
    return resolution != kNoResolution;
}

bool TextureURIValue::IsResolutionSet() const {
    if (resolution_state_ == ResolutionState::kUnknown) {
        resolution_state_ = FindState();
    }
    return resolution_state_ == ResolutionState::kResolutionSet;
}

TextureURIValue::ResolutionState TextureURIValue::FindState() const {
    const std::uint64_t count = GetDimension();
    if (count == 0) {
        return ResolutionState::kPlainList;
    }
    ITextureRoots* textures = Descriptor().context->textures;
    const nuo::string root = textures == nullptr ? nuo::string() : textures->TextureRoot();
    for (std::uint64_t i = 0; i < count; ++i) {
        if (!FitsAnyLevel(Place(i), root)) {
            return ResolutionState::kPlainList;
        }
    }
    return ResolutionState::kResolutionSet;
}

bool TextureURIValue::GetBaseUri(IString& uri) const {
    if (!IsResolutionSet() || GetDimension() == 0) {
        return false;
    }
    Assign(uri, Place(0));
    return true;
}

const std::vector<nuo::string>& TextureURIValue::Variants(const nuo::string& name) const {
    const ModuleContext& context = *Descriptor().context;
    const auto known = context.textureVariants.find(name);
    if (known != context.textureVariants.end()) {
        return known->second;
    }
    auto variants = context.textures == nullptr ? std::vector<nuo::string>()
                                                : context.textures->ResolutionVariants(name);
    return context.textureVariants.emplace(name, std::move(variants)).first->second;
}

bool TextureURIValue::SetBaseUri(const wchar_t* uri) {
    if (uri == nullptr || !Guarded([&] { Resolve(FromWide(uri)); })) {
        return false;
    }
    NotifyValueChanged();
    return true;
}

void TextureURIValue::Resolve(const nuo::string& name) {
    const std::vector<nuo::string>& variants = Variants(name);
    if (variants.empty()) {
        Elements().resize(1);
        Place(0) = name;
        resolution_state_ = ResolutionState::kPlainList;
    } else {
        Elements().resize(variants.size());
        for (std::size_t i = 0; i < variants.size(); ++i) {
            Place(i) = variants[i];
        }
        resolution_state_ = ResolutionState::kResolutionSet;
    }
}

void ForgetResolutions(const PropertyBase& property) {
    const PropertyDescriptor& descriptor = property.Descriptor();
    // Every property that is read from a file comes by here: types are compared, not cast.
    if (descriptor.type == descriptor.context->types.Value(ValueClass::kTextureURIValue)) {
        static_cast<const TextureURIValue&>(property).ResetResolutionState();
    }
}

}  // namespace korvanet::platform::assets
