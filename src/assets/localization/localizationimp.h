#pragma once

#include <map>

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// One table of messages: the texts of one locale in one domain, by key.
class ILocalizationImp {
public:
    // The message of a key, or null. Good until the table changes.
    const nuo::string* Find(nuo::string_ref key) const;

    // Sets the message of a key. True when the key is new, false when its message was replaced.
    bool Set(nuo::string_ref key, nuo::string_ref message);

    // Adds a message, unless the key has one already.
    void AddFirst(const nuo::string& key, nuo::string_ref message);

    void Clear();

private:
    std::map<nuo::string, nuo::string, nuo::string_less> messages_;
};

}  // namespace korvanet::platform::assets
