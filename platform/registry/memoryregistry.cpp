#include <korvanet/platform/core/registry.h>

#include <utility>

namespace korvanet::platform::core {

namespace {

std::wstring Folded(const wchar_t* text) {
    std::wstring folded = text != nullptr ? text : L"";
    for (wchar_t& c : folded) {
        if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c - L'A' + L'a');
    }
    return folded;
}

}  // namespace

MemoryRegistry::MemoryRegistry() = default;
MemoryRegistry::~MemoryRegistry() = default;

void MemoryRegistry::SetString(const wchar_t* path, const wchar_t* name, const wchar_t* value) {
    keys_[Folded(path)][Folded(name)] = value != nullptr ? value : L"";
}

bool MemoryRegistry::RemoveKey(const wchar_t* path) {
    return keys_.erase(Folded(path)) != 0;
}

void MemoryRegistry::SetAvailable(bool available) {
    available_ = available;
}

std::uint64_t MemoryRegistry::GetOpenKeyCount() const {
    return open_.size();
}

bool MemoryRegistry::OpenHive() {
    return available_;
}

IRegistry::Key MemoryRegistry::OpenKey(const wchar_t* path) {
    std::wstring folded = Folded(path);
    if (keys_.find(folded) == keys_.end()) return 0;
    open_.emplace(next_, std::move(folded));
    return next_++;
}

// A key that was removed while it was open has no values.
bool MemoryRegistry::ReadString(Key key, const wchar_t* name, IString& value) {
    const auto path = open_.find(key);
    if (path == open_.end()) return false;
    const auto values = keys_.find(path->second);
    if (values == keys_.end()) return false;
    const auto found = values->second.find(Folded(name));
    if (found == values->second.end()) return false;
    value.Assign(found->second.c_str());
    return true;
}

void MemoryRegistry::CloseKey(Key key) {
    open_.erase(key);
}

void MemoryRegistry::CloseHive() {}

}  // namespace korvanet::platform::core
