#include <gtest/gtest.h>
#include <windows.h>

#include <random>

#include "platform/windows/registry_auto_start.h"
#include "platform/windows/registry_file_types.h"
#include "platform/windows/registry_key.h"
#include "platform/windows/registry_settings_store.h"
#include "platform/windows/wide.h"

namespace corvalence::test {
namespace {

using namespace platform::windows_system;

constexpr const char* kKey = "Software\\Corvalence\\Config5";

/// A key of its own below the current user, gone with all its contents at the end.
class Registry : public testing::Test {
  protected:
    ~Registry() override { ::RegDeleteTreeW(HKEY_CURRENT_USER, toWide(below_).value().c_str()); }

    RegistryKey keyBelow(const std::string& path) {
        return RegistryKey::create(HKEY_CURRENT_USER, toWide(below_ + path).value(), KEY_SET_VALUE);
    }

    const std::string below_ = "Software\\Corvalence Test " + std::to_string(std::random_device()()) + "\\";
    RegistrySettingsStore store_{below_};
};

TEST_F(Registry, holdsEachSettingAsTheDefaultValueOfItsKey) {
    EXPECT_FALSE(store_.exists());
    EXPECT_FALSE(store_.read(kKey));
    EXPECT_TRUE(store_.write(kKey, "1"));
    EXPECT_TRUE(store_.exists());
    EXPECT_FALSE(store_.read("Software\\Corvalence\\Config"));
    EXPECT_EQ(RegistryKey::open(HKEY_CURRENT_USER, toWide(below_ + kKey).value(), KEY_QUERY_VALUE).text({}),
              L"1");
    // Longer than any buffer of a fixed size, beyond the code page, and nothing at all.
    for (const std::string& text :
         {std::string(5000, 'x'), std::string("C:\\\xD0\x96\xE4\xB8\xAD\\"), std::string()}) {
        EXPECT_TRUE(store_.write(kKey, text));
        EXPECT_EQ(RegistrySettingsStore(below_).read(kKey), text);
    }
    for (const std::string& text : {std::string("\xFF"), std::string("a\0b", 3)})
        EXPECT_FALSE(store_.write(kKey, text));
    EXPECT_EQ(store_.read(kKey), "");
}

TEST_F(Registry, givesWhatOtherProgramsWroteAsFarAsItIsText) {
    const auto key = keyBelow(kKey);
    const DWORD number = 7;
    ::RegSetValueExW(key.get(), nullptr, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number),
                     sizeof(number));
    EXPECT_FALSE(store_.read(kKey));
    // A text need not have its zero, and ends at it where it has one.
    const wchar_t text[] = L"12\0rest";
    for (const DWORD units : {2UL, 3UL, 7UL}) {
        ::RegSetValueExW(key.get(), nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(text), units * 2);
        EXPECT_EQ(store_.read(kKey), "12") << units;
    }
}

TEST_F(Registry, startsTheProgramWithTheSessionUntilItsValueIsBlank) {
    RegistryAutoStart start(below_);
    EXPECT_FALSE(start.isEnabled());
    EXPECT_TRUE(start.enable("C:\\\xD0\x96 x\\Corvalence.exe"));
    EXPECT_TRUE(start.isEnabled());
    const auto run = RegistryKey::open(
        HKEY_CURRENT_USER, toWide(below_ + "Software\\Microsoft\\Windows\\CurrentVersion\\Run").value(),
        KEY_QUERY_VALUE);
    EXPECT_EQ(run.text(L"Corvalence"), L"\"C:\\\x0416 x\\Corvalence.exe\" /Background");
    EXPECT_TRUE(start.disable());
    EXPECT_EQ(run.text(L"Corvalence"), L"");
    EXPECT_FALSE(start.isEnabled());
}

TEST_F(Registry, namesFileTypesByExtensionOrByClass) {
    struct Class {
        const wchar_t* name;
        const wchar_t* text;
    };
    constexpr Class kClasses[] = {{L"cvqfile", L"By its extension"},
                                  {L".cvq", L"cvq.class"},
                                  {L".cvr", L"cvr.class"},
                                  {L"cvr.class", L"By its class"},
                                  {L".cvs", L"cvs.missing"}};
    for (const Class& row : kClasses) {
        const auto key = RegistryKey::create(HKEY_CLASSES_ROOT, row.name, KEY_SET_VALUE);
        if (!key.isOpen()) GTEST_SKIP() << "only administrators may register types";
        key.setText({}, row.text);
    }
    RegistryFileTypes types;
    EXPECT_EQ(types.typeText("cvq"), "By its extension");
    EXPECT_EQ(types.typeText("cvr"), "By its class");
    for (const char* unknown : {"cvs", "cvt", "", "\xFF", "cvr\\x"})
        EXPECT_FALSE(types.typeText(unknown)) << unknown;
    for (const Class& row : kClasses)
        ::RegDeleteTreeW(HKEY_CLASSES_ROOT, row.name);
}

}  // namespace
}  // namespace corvalence::test
