#pragma once

#include "assets/property/stringvalues.h"

namespace korvanet::platform::assets {

// The resolution that tells nothing.
inline constexpr std::uint32_t kNoResolution = 4;

// 0 to 3 for a URI that starts with "1/" to "4/", else kNoResolution.
std::uint32_t UriResolution(nuo::string_ref uri);
// The same for the URI of a texture: "1/Mats/" to "4/Mats/", or a sun and sky preset below "3/" to
// "5/".
std::uint32_t TextureResolution(nuo::string_ref uri);

// URIs that may tell the resolution of an image.
template <class Base>
class UriBaseValue : public Base {
public:
    PropertyType GetType() const override { return PropertyType::kUri; }

    bool GetResolution(std::uint32_t& resolution, std::uint64_t index) const override {
        if (!this->CheckIndex(index, this->GetDimension())) {
            return false;
        }
        resolution = UriResolution(this->Place(index));
        return resolution != kNoResolution;
    }
};

class UriValue final : public UriBaseValue<StringValueTemplate<IUriValue>> {};

class UriList final : public UriBaseValue<StringArrayValueTemplate<IUriValue>> {};

// The URIs of one image: a plain list, or the same image in up to four resolutions. Which of the
// two is found out when somebody asks, and kept until the list changes.
class TextureURIValue final : public StringArrayValueTemplate<ITextureURIValue> {
public:
    PropertyType GetType() const override { return PropertyType::kUri; }
    bool SetDimension(std::uint64_t dimension) override;
    bool SetValue(const wchar_t* value, std::uint64_t index) override;
    bool GetResolution(std::uint32_t& resolution, std::uint64_t index) const override;
    bool IsResolutionSet() const override;
    bool GetBaseUri(IString& uri) const override;
    bool SetBaseUri(const wchar_t* uri) override;

    // Forgets what the list is; for code that changes the array behind the value.
    void ResetResolutionState() const { resolution_state_ = ResolutionState::kUnknown; }

private:
    enum class ResolutionState : std::uint32_t { kUnknown = 0, kPlainList = 1, kResolutionSet = 2 };

    void Resolve(const nuo::string& name);
    ResolutionState FindState() const;
    const std::vector<nuo::string>& Variants(const nuo::string& name) const;

    mutable ResolutionState resolution_state_ = ResolutionState::kUnknown;
};

// To be called when code has changed the data behind a property: a texture's URI then forgets what
// its list is.
void ForgetResolutions(const PropertyBase& property);

static_assert(sizeof(UriValue) == kValueObjectSize);
static_assert(sizeof(UriList) == kValueObjectSize);
// The one class with a word of its own.
static_assert(sizeof(TextureURIValue) == kValueObjectSize + sizeof(void*));

}  // namespace korvanet::platform::assets
