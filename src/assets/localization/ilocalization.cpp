#include <korvanet/platform/assets/ilocalization.h>

#include "assets/localization/localizationimp.h"
#include "assets/localization/localizationmanagerimp.h"
#include "assets/manager/base/text.h"

namespace korvanet::platform::assets {

ILocalization::ILocalization() : table_(nullptr) {}
ILocalization::ILocalization(ILocalizationImp* table) : table_(table) {}
ILocalization::ILocalization(const ILocalization& other) = default;
ILocalization::~ILocalization() = default;
ILocalization& ILocalization::operator=(const ILocalization& other) = default;

bool ILocalization::IsValid() const {
    return table_ != nullptr;
}

bool ILocalization::GetLocalizedMessage(IString& message, const IString& key) const {
    const nuo::string* found = IsValid() ? table_->Find(key.AsUTF8()) : nullptr;
    if (found == nullptr) {
        return false;
    }
    Assign(message, *found);
    return true;
}

bool ILocalization::HasLocalizedMessage(const IString& key) const {
    return IsValid() && table_->Find(key.AsUTF8()) != nullptr;
}

bool ILocalization::AddLocalizedMessage(const IString& message, const IString& key) {
    return IsValid() && table_->Set(key.AsUTF8(), message.AsUTF8());
}

ILocalizationManager::ILocalizationManager() : manager_(nullptr) {}
ILocalizationManager::ILocalizationManager(ILocalizationManagerImp* manager) : manager_(manager) {}
ILocalizationManager::ILocalizationManager(const ILocalizationManager& other) = default;
ILocalizationManager::~ILocalizationManager() = default;
ILocalizationManager& ILocalizationManager::operator=(const ILocalizationManager& other) = default;

bool ILocalizationManager::IsValid() const {
    return manager_ != nullptr;
}

ILocalization ILocalizationManager::GetILocalization(const IString& locale, const IString& domain) {
    return ILocalization(IsValid() ? manager_->Find(locale.AsUTF8(), domain.AsUTF8()) : nullptr);
}

ILocalization ILocalizationManager::CreateILocalization(const IString& locale,
                                                        const IString& domain) {
    return ILocalization(IsValid() ? &manager_->FindOrCreate(locale.AsUTF8(), domain.AsUTF8())
                                   : nullptr);
}

bool ILocalizationManager::GetLocalizedMessage(IString& message, const IString& key,
                                               const IString& locale) const {
    if (!IsValid()) {
        return false;
    }
    bool found = false;
    const nuo::string text =
        manager_->Lookup(key.AsUTF8(), locale.AsUTF8(), nuo::string(), "", found);
    if (found) {
        Assign(message, text);
    }
    return found;
}

}  // namespace korvanet::platform::assets
