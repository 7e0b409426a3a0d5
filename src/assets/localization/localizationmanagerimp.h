#pragma once

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "assets/localization/localizationimp.h"
#include "assets/localization/messagefile.h"
#include "nuo/common/string.h"
#include "velmor/vfs/vfs.h"

namespace korvanet::platform::assets {

// The store of all messages of the process: tables by locale and domain, filled from the message
// files of the sources that libraries and hosts register. Locales are compared in upper case. It
// belongs to one thread, also for queries, which load.
class ILocalizationManagerImp {
public:
    ILocalizationManagerImp();
    ~ILocalizationManagerImp();
    ILocalizationManagerImp(const ILocalizationManagerImp&) = delete;
    ILocalizationManagerImp& operator=(const ILocalizationManagerImp&) = delete;

    // Makes the top folder of `file_system` the place of the message files of a domain, whose names
    // begin with `base_name`. False, and nothing changes, when the domain has a source already. The
    // caller keeps the file system alive; once it is gone no more files are read. Nothing is read
    // before a query asks.
    bool RegisterSource(const std::shared_ptr<velmor::fs::IVfs>& file_system,
                        nuo::string_ref base_name, nuo::string_ref domain);

    // Drops the source and the tables of a domain. Tables that a host holds a handle on are emptied
    // and live on, out of reach of lookups, until the store goes.
    void UnregisterDomain(nuo::string_ref domain);

    // The first message of `key`: in the locale, in `domain` and then in all others; then likewise
    // in "ENG". Else, and for an empty locale, `fallback`, which may be the key. `found` tells
    // which. Loads the tables it comes by; a message file that is broken counts up to where it
    // breaks.
    nuo::string Lookup(nuo::string_ref key, nuo::string_ref locale, const nuo::string& fallback,
                       nuo::string_ref domain, bool& found);

    // The table if there is one, else null. Reads no file.
    ILocalizationImp* Find(nuo::string_ref locale, nuo::string_ref domain);

    // The table, made when there is none, and filled from its message file. A domain without a
    // source that is the path of a file name in an existing folder gets that folder as its source,
    // which the store keeps.
    ILocalizationImp& FindOrCreate(nuo::string_ref locale, nuo::string_ref domain);

private:
    struct Table {
        ILocalizationImp messages;
        bool loaded = false;      // its file was looked for
        bool handed_out = false;  // a host may hold a pointer
    };
    // Every domain that has a source or a table.
    struct Domain {
        std::optional<MessageSource> source;
        std::shared_ptr<velmor::fs::IVfs> kept;  // for sources that the store made itself
    };
    using Domains = std::map<nuo::string, Domain, nuo::string_less>;
    using Tables = std::map<nuo::string, std::unique_ptr<Table>, nuo::string_less>;

    Tables& TablesOf(nuo::string_ref locale);
    Domains::value_type& DomainOf(nuo::string_ref domain);
    static Table& TableOf(Tables& tables, const nuo::string& domain);
    static void Load(Table& table, const MessageSource& source, nuo::string_ref locale);

    const nuo::string* FindMessage(nuo::string_ref key, nuo::string_ref locale, Tables& tables,
                                   const Domains::value_type& domain, Table* table);
    const nuo::string* SearchLocale(nuo::string_ref key, nuo::string_ref locale,
                                    nuo::string_ref domain);
    void AddFolderAsSource(Domains::value_type& domain);

    std::map<nuo::string, Tables, nuo::string_less> locales_;
    Domains domains_;
    std::vector<std::unique_ptr<Table>> retired_;
};

}  // namespace korvanet::platform::assets
