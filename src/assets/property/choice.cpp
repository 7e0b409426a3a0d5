#include "assets/property/choice.h"

#include <algorithm>

#include "assets/manager/base/report.h"
#include "assets/manager/base/text.h"
#include "assets/property/modulecontext.h"
#include "assets/property/widekey.h"

namespace korvanet::platform::assets {

KRVTChoice::KRVTChoice(nuo::string label, std::int32_t value, nuo::string id)
    : id_(std::move(id)), label_(std::move(label)), value_(value) {}

void KRVTChoice::GetId(IString& id) const {
    Assign(id, id_);
}

void KRVTChoice::GetLabel(IString& label, const wchar_t* locale) const {
    if (list_ == nullptr) {
        Assign(label, label_);
        return;
    }
    const nuo::string key(nuo::string(list_->Name(), ":"), id_);
    Assign(label, Localize(list_->Context(), key, WideKey(locale), label_));
}

bool KRVTChoice::IsEqual(const IChoice* other) const {
    const auto* same = dynamic_cast<const KRVTChoice*>(other);
    return same != nullptr && id_ == same->id_ && value_ == same->value_ && label_ == same->label_;
}

KRVTChoiceList::~KRVTChoiceList() {
    // A host may hold a choice longer than the list.
    for (const auto& choice : choices_) {
        if (choice->list_ == this) {
            choice->list_ = nullptr;
        }
    }
}

IChoice* KRVTChoiceList::GetChoice(std::uint64_t index) const {
    if (index >= choices_.size()) {
        HalvernError("Invalid index").Deliver();
        return nullptr;
    }
    return choices_[index].get();
}

bool KRVTChoiceList::AddChoice(IChoice* choice) {
    auto* given = dynamic_cast<KRVTChoice*>(choice);
    if (given == nullptr || by_id_.count(given->Id()) != 0 || HasValue(given->GetValue())) {
        return false;
    }
    choices_.emplace_back(given);
    by_id_.emplace(given->Id(), given);
    given->list_ = this;
    return true;
}

bool KRVTChoiceList::IsEqual(const IChoiceList* other) const {
    const auto* same = dynamic_cast<const KRVTChoiceList*>(other);
    if (same == nullptr || !(name_ == same->name_) || same->choices_.size() < choices_.size()) {
        return false;
    }
    // Entries of the other list behind the last of this one do not count.
    return std::equal(choices_.begin(), choices_.end(), same->choices_.begin(),
                      [](const auto& a, const auto& b) { return a->IsEqual(b.get()); });
}

const KRVTChoice* KRVTChoiceList::FindById(nuo::string_ref id) const {
    const auto found = by_id_.find(id);
    return found == by_id_.end() ? nullptr : found->second;
}

bool KRVTChoiceList::HasValue(std::int32_t value) const {
    return std::any_of(choices_.begin(), choices_.end(),
                       [value](const auto& choice) { return choice->GetValue() == value; });
}

KRVTChoice* MakeChoice(const IString& label, std::int32_t value, const IString& id) {
    return new KRVTChoice(label.AsUTF8(), value, id.AsUTF8());
}

KRVTChoiceList* MakeChoiceList(const ModuleContext* context) {
    return new KRVTChoiceList(context);
}

}  // namespace korvanet::platform::assets
