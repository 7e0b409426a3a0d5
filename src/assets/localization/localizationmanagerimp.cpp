#include "assets/localization/localizationmanagerimp.h"

#include <utility>

#include "assets/localization/localizationxmldata.h"
#include "assets/manager/base/guarded.h"
#include "assets/manager/base/path.h"
#include "velmor/vfs/local_fs.h"

namespace korvanet::platform::assets {
namespace {

constexpr const char* kFallbackLocale = "ENG";

void ReadMessages(ILocalizationImp& messages, const MessageSource& source, velmor::fs::IVfs& files,
                  nuo::string_ref locale) {
    const nuo::archive::archive_ptr file = source.Open(files, locale);
    if (file) {
        LocalizationXmlData reader(messages);
        XmlDriverState driver(reader);
        ParseXml(driver, *file);
    }
}

}  // namespace

ILocalizationManagerImp::ILocalizationManagerImp() = default;
ILocalizationManagerImp::~ILocalizationManagerImp() = default;

bool ILocalizationManagerImp::RegisterSource(const std::shared_ptr<velmor::fs::IVfs>& file_system,
                                             nuo::string_ref base_name, nuo::string_ref domain) {
    Domain& record = DomainOf(domain).second;
    if (record.source && record.source->Files()) {
        return false;
    }
    record.source.emplace(file_system, base_name);
    return true;
}

void ILocalizationManagerImp::UnregisterDomain(nuo::string_ref domain) {
    for (auto& [locale, tables] : locales_) {
        const auto found = tables.find(domain);
        if (found == tables.end()) {
            continue;
        }
        if (found->second->handed_out) {
            found->second->messages.Clear();
            retired_.push_back(std::move(found->second));
        }
        tables.erase(found);
    }
    const auto found = domains_.find(domain);
    if (found != domains_.end()) {
        domains_.erase(found);
    }
}

nuo::string ILocalizationManagerImp::Lookup(nuo::string_ref key, nuo::string_ref locale,
                                            const nuo::string& fallback, nuo::string_ref domain,
                                            bool& found) {
    found = false;
    if (locale.empty() || domains_.empty()) {
        return fallback;
    }
    const UpperText upper(locale);
    const nuo::string* message = SearchLocale(key, upper.Ref(), domain);
    if (message == nullptr && upper.Ref() != kFallbackLocale) {
        message = SearchLocale(key, kFallbackLocale, domain);
    }
    found = message != nullptr;
    return found ? *message : fallback;
}

ILocalizationImp* ILocalizationManagerImp::Find(nuo::string_ref locale, nuo::string_ref domain) {
    const auto tables = locales_.find(UpperText(locale).Ref());
    if (tables == locales_.end()) {
        return nullptr;
    }
    const auto table = tables->second.find(domain);
    if (table == tables->second.end()) {
        return nullptr;
    }
    table->second->handed_out = true;
    return &table->second->messages;
}

ILocalizationImp& ILocalizationManagerImp::FindOrCreate(nuo::string_ref locale,
                                                        nuo::string_ref domain) {
    const UpperText upper(locale);
    Domains::value_type& record = DomainOf(domain);
    if (!record.second.source) {
        AddFolderAsSource(record);
    }
    Table& table = TableOf(TablesOf(upper.Ref()), record.first);
    if (record.second.source && !table.loaded) {
        Load(table, *record.second.source, upper.Ref());
    }
    table.handed_out = true;
    return table.messages;
}

ILocalizationManagerImp::Tables& ILocalizationManagerImp::TablesOf(nuo::string_ref locale) {
    const auto place = locales_.lower_bound(locale);
    if (place != locales_.end() && place->first == locale) {
        return place->second;
    }
    return locales_.emplace_hint(place, nuo::string(locale), Tables())->second;
}

ILocalizationManagerImp::Domains::value_type& ILocalizationManagerImp::DomainOf(
    nuo::string_ref domain) {
    const auto place = domains_.lower_bound(domain);
    if (place != domains_.end() && place->first == domain) {
        return *place;
    }
    return *domains_.emplace_hint(place, nuo::string(domain), Domain());
}

ILocalizationManagerImp::Table& ILocalizationManagerImp::TableOf(Tables& tables,
                                                                 const nuo::string& domain) {
    std::unique_ptr<Table>& table = tables[domain];
    if (!table) {
        table = std::make_unique<Table>();
    }
    return *table;
}

void ILocalizationManagerImp::Load(Table& table, const MessageSource& source,
                                   nuo::string_ref locale) {
    const std::shared_ptr<velmor::fs::IVfs> files = source.Files();
    if (!files) {
        return;  // not looked for: another source may still come
    }
    table.loaded = true;
    // A failure is tolerated because a text without its message still reads as its key: what came
    // before the bad place stays, and the file is not tried again.
    Guarded([&] { ReadMessages(table.messages, source, *files, locale); });
}

// `table` is the one of this locale and domain, or null when it was not made yet.
const nuo::string* ILocalizationManagerImp::FindMessage(nuo::string_ref key, nuo::string_ref locale,
                                                        Tables& tables,
                                                        const Domains::value_type& domain,
                                                        Table* table) {
    if (table != nullptr) {
        const nuo::string* message = table->messages.Find(key);
        if (message != nullptr || table->loaded) {
            return message;
        }
    }
    const std::optional<MessageSource>& source = domain.second.source;
    if (!source || !source->Files()) {
        return nullptr;
    }
    Table& made = TableOf(tables, domain.first);
    Load(made, *source, locale);
    return made.messages.Find(key);
}

const nuo::string* ILocalizationManagerImp::SearchLocale(nuo::string_ref key,
                                                         nuo::string_ref locale,
                                                         nuo::string_ref domain) {
    Tables& tables = TablesOf(locale);
    const auto own = domains_.find(domain);
    if (own != domains_.end()) {
        const auto table = tables.find(domain);
        Table* const made = table == tables.end() ? nullptr : table->second.get();
        if (const nuo::string* message = FindMessage(key, locale, tables, *own, made)) {
            return message;
        }
    }
    // Both maps are sorted alike and every table's domain is known, so one walk serves both, and
    // names are compared by the block that they share.
    auto next = tables.begin();
    for (auto at = domains_.begin(); at != domains_.end(); ++at) {
        Table* made = nullptr;
        if (next != tables.end() && next->first == at->first) {
            made = next->second.get();
            ++next;
        }
        if (at == own) {
            continue;
        }
        if (const nuo::string* message = FindMessage(key, locale, tables, *at, made)) {
            return message;
        }
    }
    return nullptr;
}

void ILocalizationManagerImp::AddFolderAsSource(Domains::value_type& domain) {
    const nuo::string_ref leaf = LeafOfPath(domain.first);
    const nuo::string_ref folder = FolderOfPath(domain.first);
    if (leaf.empty() || folder.empty()) {
        return;
    }
    auto files = std::make_shared<velmor::fs::LocalFs>(nuo::string(folder));
    if (files->state("").state == velmor::fs::state_directory) {
        domain.second.source.emplace(files, leaf);
        domain.second.kept = std::move(files);
    }
}

}  // namespace korvanet::platform::assets
