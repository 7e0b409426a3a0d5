#include "assets/localization/localizationimp.h"

namespace korvanet::platform::assets {

const nuo::string* ILocalizationImp::Find(nuo::string_ref key) const {
    const auto found = messages_.find(key);
    return found == messages_.end() ? nullptr : &found->second;
}

bool ILocalizationImp::Set(nuo::string_ref key, nuo::string_ref message) {
    nuo::string text(message);
    const auto place = messages_.lower_bound(key);
    if (place != messages_.end() && place->first == key) {
        place->second.swap(text);
        return false;
    }
    messages_.emplace_hint(place, nuo::string(key), std::move(text));
    return true;
}

void ILocalizationImp::AddFirst(const nuo::string& key, nuo::string_ref message) {
    const auto place = messages_.lower_bound(key);
    if (place == messages_.end() || place->first != key) {
        messages_.emplace_hint(place, key, nuo::string(message));
    }
}

void ILocalizationImp::Clear() {
    messages_.clear();
}

}  // namespace korvanet::platform::assets
