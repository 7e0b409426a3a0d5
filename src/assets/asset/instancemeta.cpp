// The operations of an instance that set meta values, and the binding of its implementations.

#include <korvanet/platform/core/utf8string.h>

#include "assets/asset/assetinstance.h"
#include "assets/asset/implementationparser.h"
#include "assets/asset/iurilocator.h"
#include "assets/manager/base/guarded.h"
#include "assets/manager/base/report.h"
#include "assets/property/fixedproperties.h"

namespace korvanet::platform::assets {

bool AssetInstance::SetUIName(const IString& name) {
    if (name.IsEmpty()) {
        HalvernError("Can't set UI Name, the Name's empty").Deliver();
        return false;
    }
    return SetText(kIterationGroup, fixed_property::kUiName, name);
}

bool AssetInstance::RemoveThumbnail(std::uint64_t index) {
    return RemoveText(fixed_property::kThumbnail, index, GetThumbnailCount());
}

bool AssetInstance::SetThumbnail(const IString& name, const IString& uri) {
    if (!(nuo::string_ref(name.AsUTF8()) == fixed_property::kThumbnail)) return false;
    if (asset_meta::TextCount(*this, kIterationGroup, fixed_property::kThumbnail) == 0) {
        return AppendText(fixed_property::kThumbnail, uri);
    }
    return SetText(kIterationGroup, fixed_property::kThumbnail, uri);
}

bool AssetInstance::RemoveKeyword(std::uint64_t index) {
    return RemoveText(fixed_property::kKeyword, index, GetKeywordCount());
}

bool AssetInstance::AddKeyword(const IString& keyword) {
    if (keyword.IsEmpty()) {
        // Misspelt on purpose: hosts know the message in this form.
        HalvernError("Can't add localized keyword, the keword is empty.").Deliver();
        return false;
    }
    return AppendText(fixed_property::kKeyword, keyword);
}

bool AssetInstance::RemoveCategory(std::uint64_t index) {
    return RemoveText(fixed_property::kCategory, index, GetCategoryCount());
}

bool AssetInstance::AddCategory(const IString& category) {
    if (category.IsEmpty()) {
        HalvernError("Can't add localized category, the category is empty.").Deliver();
        return false;
    }
    return AppendText(fixed_property::kCategory, category);
}

bool AssetInstance::SetDescription(const IString& description) {
    return SetText(kIterationGroup, fixed_property::kDescription, description);
}

bool AssetInstance::SetSwatch(const IString& swatch) {
    return SetText(kReadWriteGroup, fixed_property::kSwatch, swatch);
}

bool AssetInstance::SetVersionGUID(const IString& guid) {
    return !guid.IsEmpty() && SetText(kIterationGroup, fixed_property::kVersionGuid, guid);
}

bool AssetInstance::RenewVersionGUID() {
    core::UTF8String fresh;
    return Guarded([&] { Assign(fresh, MakeIdentifier()); }) && SetVersionGUID(fresh);
}

bool AssetInstance::GetImplementationBinding(const IString& identifier, IString& value,
                                             IString& tag) const {
    return Guarded(false, [&] {
        nuo::string uri;
        nuo::string path;
        ImplParserCallBack parser;
        if (services_.files == nullptr || !FindImplementation(identifier, uri) ||
            !services_.files->Locate(uri, path) || !parser.ReadFile(path)) {
            return false;
        }
        Assign(value, parser.Value());
        Assign(tag, parser.Tag());
        return true;
    });
}

bool AssetInstance::SetText(std::size_t group, nuo::string_ref name, const IString& text) {
    PropertyBase* property = FindInGroup(group, name);
    if (property == nullptr) return false;
    if (!Guarded(false, [&] { return SetTextAt(*property, 0, ToUtf8(text)); })) return false;
    AssetChanged();
    return true;
}

bool AssetInstance::AppendText(nuo::string_ref name, const IString& text) {
    PropertyBase* property = FindInGroup(kIterationGroup, name);
    velmor::Array* list = property != nullptr ? TextList(*property) : nullptr;
    if (list == nullptr) return false;
    const auto append = [&] {
        const nuo::string added = ToUtf8(text);
        list->push_back({list->type(), &added});
    };
    if (!Guarded(append)) return false;
    AssetChanged();
    return true;
}

bool AssetInstance::RemoveText(nuo::string_ref name, std::uint64_t index, std::uint64_t count) {
    if (!asset_meta::CheckIndex(index, count)) return false;
    velmor::Array* list = TextList(*FindInGroup(kIterationGroup, name));
    if (list == nullptr) return false;
    list->erase((*list)[index]);
    AssetChanged();
    return true;
}

bool AssetInstance::FindImplementation(const IString& identifier, nuo::string& uri) const {
    const nuo::string wanted = ToUtf8(identifier);
    core::UTF8String text;
    for (std::uint64_t i = 0, count = GetImplementationCount(); i < count; ++i) {
        if (GetImplementationIdentifier(i, text) && wanted == text.AsUTF8()) {
            if (!GetImplementationUri(i, text)) return false;
            uri = ToUtf8(text);
            return true;
        }
    }
    return false;
}

}  // namespace korvanet::platform::assets
