#include "platform/registry/currentregistry.h"

namespace korvanet::platform::core {

namespace {

// The registry of a machine that has none.
class NoRegistry final : public IRegistry {
public:
    bool OpenHive() override { return false; }
    Key OpenKey(const wchar_t*) override { return 0; }
    bool ReadString(Key, const wchar_t*, IString&) override { return false; }
    void CloseKey(Key) override {}
    void CloseHive() override {}
};

IRegistry* current = nullptr;

}  // namespace

IRegistry& CurrentRegistry() {
    static NoRegistry none;
    return current != nullptr ? *current : none;
}

IRegistry* SetRegistry(IRegistry* registry) {
    IRegistry* const former = current;
    current = registry;
    return former;
}

}  // namespace korvanet::platform::core
