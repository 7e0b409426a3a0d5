#pragma once

#include <cstdint>
#include <map>
#include <string>

#include <korvanet/platform/core/export.h>
#include <korvanet/platform/core/istring.h>

namespace korvanet::platform::core {

/// The machine's registry as the library sees it: a hive of keys, each with named text values. The
/// library reads it once, when the manager is made, to learn which asset and texture libraries are
/// installed. The order of calls is `OpenHive`, then any number of `OpenKey`, `ReadString`,
/// `CloseKey`, then `CloseHive`, the last only after an `OpenHive` that was true.
class IRegistry {
public:
    /// An open key; 0 is none.
    using Key = std::uint64_t;

    /// Connects to the hive of the machine. False when there is no registry.
    virtual bool OpenHive() = 0;

    /// Opens a key for reading by its path below the hive, components separated by "\". Returns 0
    /// when there is no such key.
    virtual Key OpenKey(const wchar_t* path) = 0;

    /// Reads the text value `name` of an open key. False, and `value` unchanged, when the key has
    /// no such value.
    virtual bool ReadString(Key key, const wchar_t* name, IString& value) = 0;

    virtual void CloseKey(Key key) = 0;

    virtual void CloseHive() = 0;

    virtual ~IRegistry() = default;
};

/// Makes `registry` the one that managers made from now on read, and returns the former one. Null,
/// which is also the state at start, stands for a machine without a registry. The registry stays
/// the caller's; it must live until it is replaced.
HALVERN_API IRegistry* SetRegistry(IRegistry* registry);

/// A registry in memory, for hosts that know by other means what is installed, and for tests. Keys
/// and value names are compared without regard to the case of ASCII letters.
class HALVERN_API MemoryRegistry final : public IRegistry {
public:
    MemoryRegistry();
    MemoryRegistry(const MemoryRegistry&) = delete;
    MemoryRegistry& operator=(const MemoryRegistry&) = delete;
    ~MemoryRegistry() override;

    /// Sets a value, and makes its key when there is none yet. A null text stands for the empty
    /// one.
    void SetString(const wchar_t* path, const wchar_t* name, const wchar_t* value);

    /// Removes a key with its values. False when there is no such key.
    bool RemoveKey(const wchar_t* path);

    /// Lets `OpenHive` answer false, as on a machine that refuses the connection; true at start.
    void SetAvailable(bool available);

    /// Keys that were opened and not closed yet.
    std::uint64_t GetOpenKeyCount() const;

    bool OpenHive() override;
    Key OpenKey(const wchar_t* path) override;
    bool ReadString(Key key, const wchar_t* name, IString& value) override;
    void CloseKey(Key key) override;
    void CloseHive() override;

private:
    using Values = std::map<std::wstring, std::wstring>;

    std::map<std::wstring, Values> keys_;
    std::map<Key, std::wstring> open_;
    Key next_ = 1;
    bool available_ = true;
};

}  // namespace korvanet::platform::core
