#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include <korvanet/platform/assets/ipropertytable.h>

#include "assets/property/intrusive.h"
#include "nuo/common/string.h"

namespace korvanet::platform::assets {

class KRVTChoiceList;
struct ModuleContext;

// One entry of a choice list: an id that files know, a value that properties hold, and a label.
class KRVTChoice final : public IChoice, public IntrusiveCounter {
public:
    KRVTChoice(nuo::string label, std::int32_t value, nuo::string id);

    void GetId(IString& id) const override;
    std::int32_t GetValue() const override { return value_; }
    void GetLabel(IString& label, const wchar_t* locale) const override;
    bool IsEqual(const IChoice* other) const override;

    const nuo::string& Id() const { return id_; }
    const nuo::string& Label() const { return label_; }

private:
    friend class KRVTChoiceList;

    nuo::string id_;
    nuo::string label_;
    std::int32_t value_;
    const KRVTChoiceList* list_ = nullptr;
};

// The entries that a choice property may take, in the order in which they were added.
class KRVTChoiceList final : public IChoiceList, public IntrusiveCounter {
public:
    explicit KRVTChoiceList(const ModuleContext* context) : context_(context) {}
    ~KRVTChoiceList() override;

    std::uint64_t GetCount() const override { return choices_.size(); }
    IChoice* GetChoice(std::uint64_t index) const override;
    bool AddChoice(IChoice* choice) override;
    bool IsEqual(const IChoiceList* other) const override;

    // The choice with that id, or null.
    const KRVTChoice* FindById(nuo::string_ref id) const;
    bool HasValue(std::int32_t value) const;

    const nuo::string& Name() const { return name_; }
    // The id of the property that the list serves; part of the key of each label.
    void SetName(const nuo::string& name) { name_ = name; }
    const ModuleContext* Context() const { return context_; }

private:
    nuo::string name_;
    const ModuleContext* context_;
    std::vector<intrusive_ptr<KRVTChoice>> choices_;
    std::map<nuo::string, KRVTChoice*, nuo::string_less> by_id_;
};

// Bodies of the exported factories; the results are counted by nobody yet.
KRVTChoice* MakeChoice(const IString& label, std::int32_t value, const IString& id);
KRVTChoiceList* MakeChoiceList(const ModuleContext* context);

}  // namespace korvanet::platform::assets
