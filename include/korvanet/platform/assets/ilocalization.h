#pragma once

#include <korvanet/platform/core/export.h>
#include <korvanet/platform/core/istring.h>

namespace korvanet::platform::assets {

using core::IString;

class ILocalizationImp;
class ILocalizationManagerImp;

/// A handle on one table of messages: the texts of one locale in one domain, by key. It is as cheap
/// as a pointer and owns nothing; it is good until the manager goes. The operations of an invalid
/// handle give false.
class HALVERN_API ILocalization {
public:
    ILocalization();  // invalid
    explicit ILocalization(ILocalizationImp* table);
    ILocalization(const ILocalization& other);
    ~ILocalization();
    ILocalization& operator=(const ILocalization& other);

    bool IsValid() const;

    /// The message of a key. False, and `message` unchanged, when there is none.
    bool GetLocalizedMessage(IString& message, const IString& key) const;

    bool HasLocalizedMessage(const IString& key) const;

    /// Sets the message of a key. True when the key is new, false when its old message was
    /// replaced.
    bool AddLocalizedMessage(const IString& message, const IString& key);

private:
    ILocalizationImp* table_;
};

/// A handle on all tables of messages (`IAssetLibraryManager::GetLocalizationManager`). A domain is
/// a text that says whose messages they are: a library's identifier for its assets, any text for a
/// host's own tables. Locales are compared without regard to case; "ENG" is where a key is looked
/// for when its own locale lacks it.
class HALVERN_API ILocalizationManager {
public:
    ILocalizationManager();  // invalid
    explicit ILocalizationManager(ILocalizationManagerImp* manager);
    ILocalizationManager(const ILocalizationManager& other);
    ~ILocalizationManager();
    ILocalizationManager& operator=(const ILocalizationManager& other);

    bool IsValid() const;

    /// The table that exists; else an invalid handle. Reads no file.
    ILocalization GetILocalization(const IString& locale, const IString& domain);

    /// The table, made when there is none. A domain without a source is taken as the path of a base
    /// name: when its folder exists, that is where the domain's message files are,
    /// "<base name>-<locale>.xlf", and the table is filled from the file of its locale.
    ILocalization CreateILocalization(const IString& locale, const IString& domain);

    /// Looks for the message of a key in the locale and then in "ENG", in all domains. False, and
    /// `message` unchanged, when there is none, and for an empty locale, for which "ENG" is not
    /// asked either.
    bool GetLocalizedMessage(IString& message, const IString& key, const IString& locale) const;

private:
    ILocalizationManagerImp* manager_;
};

}  // namespace korvanet::platform::assets
