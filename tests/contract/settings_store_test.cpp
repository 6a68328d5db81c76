#include "platform/settings_store.h"

#include <gtest/gtest.h>

#include "map_settings_store.h"
#include "system_back_end.h"
#include "temp_folder.h"

namespace corvalence::test {
namespace {

template <typename Kind>
class SettingsStoreContract : public testing::Test {};

struct RealStore {
    TempFolder folder;
    SystemBackEnd system;
    SystemSettingsStore store{system.files, folder / "config/settings.json"};
};
struct MemoryStore {
    MapSettingsStore store;
};
using Stores = testing::Types<RealStore, MemoryStore>;
TYPED_TEST_SUITE(SettingsStoreContract, Stores);

TYPED_TEST(SettingsStoreContract, keepsATextForEachKeyPath) {
    TypeParam kind;
    platform::SettingsStore& store = kind.store;
    EXPECT_FALSE(store.exists());
    EXPECT_FALSE(store.read("Software\\Corvalence\\Config5"));
    EXPECT_TRUE(store.write("Software\\Corvalence\\Config5", "1"));
    EXPECT_TRUE(
        store.write("Software\\Corvalence\\Backup\\Backup Files Directory", "/srv/\"b\"/\xC3\xA4\n\x7F"));
    EXPECT_TRUE(store.exists());
    EXPECT_EQ(store.read("Software\\Corvalence\\Config5"), "1");
    EXPECT_EQ(store.read("Software\\Corvalence\\Backup\\Backup Files Directory"),
              "/srv/\"b\"/\xC3\xA4\n\x7F");
    EXPECT_FALSE(store.read("Software\\Corvalence\\Backup"));
    EXPECT_FALSE(store.read("Software\\Corvalence\\Config"));

    EXPECT_TRUE(store.write("Software\\Corvalence\\Config5", ""));
    EXPECT_EQ(store.read("Software\\Corvalence\\Config5"), "");
    EXPECT_EQ(store.read("Software\\Corvalence\\Backup\\Backup Files Directory"),
              "/srv/\"b\"/\xC3\xA4\n\x7F");
}

}  // namespace
}  // namespace corvalence::test
