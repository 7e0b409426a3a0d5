#include <korvanet/platform/core/registry.h>
#include <korvanet/platform/core/utf8string.h>

#include "platform/registry/currentregistry.h"

namespace {

using korvanet::platform::core::CurrentRegistry;
using korvanet::platform::core::IRegistry;
using korvanet::platform::core::MemoryRegistry;
using korvanet::platform::core::SetRegistry;
using korvanet::platform::core::UTF8String;

TEST(Registry, IsEmptyUnlessAHostGivesOne) {
    UTF8String value("before");
    EXPECT_FALSE(CurrentRegistry().OpenHive());
    EXPECT_EQ(CurrentRegistry().OpenKey(L"SOFTWARE"), 0u);
    EXPECT_FALSE(CurrentRegistry().ReadString(1, L"x", value));
    CurrentRegistry().CloseKey(1);
    CurrentRegistry().CloseHive();
    EXPECT_STREQ(value.AsUTF8(), "before");
}

TEST(Registry, SettingReturnsTheFormerOne) {
    MemoryRegistry first;
    MemoryRegistry second;
    EXPECT_EQ(SetRegistry(&first), nullptr);
    EXPECT_EQ(&CurrentRegistry(), &first);
    EXPECT_EQ(SetRegistry(&second), &first);
    EXPECT_EQ(&CurrentRegistry(), &second);
    EXPECT_EQ(SetRegistry(nullptr), &second);
    EXPECT_FALSE(CurrentRegistry().OpenHive());
    EXPECT_EQ(SetRegistry(nullptr), nullptr);
}

TEST(MemoryRegistry, GivesTheValuesThatWereSet) {
    MemoryRegistry registry;
    registry.SetString(L"SOFTWARE\\Korvanet\\2011", L"LibraryPaths", L"C:\\gr\xFC");
    registry.SetString(L"SOFTWARE\\Korvanet\\2011", L"Other", nullptr);
    ASSERT_TRUE(registry.OpenHive());
    const IRegistry::Key key = registry.OpenKey(L"software\\KORVANET\\2011");
    ASSERT_NE(key, 0u);
    EXPECT_EQ(registry.GetOpenKeyCount(), 1u);
    UTF8String value;
    ASSERT_TRUE(registry.ReadString(key, L"librarypaths", value));
    EXPECT_STREQ(value.AsUTF8(), "C:\\gr\xC3\xBC");
    ASSERT_TRUE(registry.ReadString(key, L"Other", value));
    EXPECT_STREQ(value.AsUTF8(), "");
    registry.SetString(L"SOFTWARE\\Korvanet\\2011", L"LibraryPaths", L"D:\\");
    ASSERT_TRUE(registry.ReadString(key, L"LibraryPaths", value));
    EXPECT_STREQ(value.AsUTF8(), "D:\\");
    registry.CloseKey(key);
    EXPECT_EQ(registry.GetOpenKeyCount(), 0u);
    registry.CloseHive();
}

TEST(MemoryRegistry, MissesWhatIsNotThereAndLeavesTheStringAlone) {
    MemoryRegistry registry;
    registry.SetString(L"a\\b", L"name", L"value");
    UTF8String value("before");
    EXPECT_EQ(registry.OpenKey(L"a"), 0u);
    EXPECT_EQ(registry.OpenKey(nullptr), 0u);
    EXPECT_FALSE(registry.ReadString(0, L"name", value));
    const IRegistry::Key key = registry.OpenKey(L"a\\b");
    EXPECT_FALSE(registry.ReadString(key, L"nam", value));
    EXPECT_FALSE(registry.ReadString(key, nullptr, value));
    registry.CloseKey(key);
    EXPECT_FALSE(registry.ReadString(key, L"name", value));
    registry.CloseKey(key);
    EXPECT_STREQ(value.AsUTF8(), "before");
}

TEST(MemoryRegistry, AKeyThatIsRemovedWhileOpenHasNoValues) {
    MemoryRegistry registry;
    registry.SetString(L"k", L"n", L"v");
    const IRegistry::Key key = registry.OpenKey(L"k");
    EXPECT_TRUE(registry.RemoveKey(L"K"));
    EXPECT_FALSE(registry.RemoveKey(L"K"));
    UTF8String value;
    EXPECT_FALSE(registry.ReadString(key, L"n", value));
    registry.CloseKey(key);
}

TEST(MemoryRegistry, CanRefuseTheConnection) {
    MemoryRegistry registry;
    EXPECT_TRUE(registry.OpenHive());
    registry.SetAvailable(false);
    EXPECT_FALSE(registry.OpenHive());
}

}  // namespace
