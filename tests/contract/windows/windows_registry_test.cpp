#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <map>

#include "platform/windows/registry_key.h"
#include "platform/windows/wide.h"
#include "platform/windows/windows_registry.h"

namespace corvalence::test {
namespace {

using platform::RegistryRoot;
using platform::RegistryValue;
using platform::windows_system::RegistryKey;

/// A key of its own below the user's settings, gone at the end.
class MachineRegistry : public testing::Test {
  protected:
    MachineRegistry() : path_("Software\\Corvalence-" + std::to_string(::GetCurrentProcessId())) {
        key_ = RegistryKey::create(HKEY_CURRENT_USER, wide(path_), KEY_ALL_ACCESS);
    }
    ~MachineRegistry() override { ::RegDeleteTreeW(HKEY_CURRENT_USER, wide(path_).c_str()); }

    static std::wstring wide(const std::string& text) { return *platform::windows_system::toWide(text); }
    void set(const wchar_t* name, DWORD type, const void* data, std::size_t size) {
        EXPECT_EQ(::RegSetValueExW(key_.get(), name, 0, type, static_cast<const BYTE*>(data),
                                   static_cast<DWORD>(size)),
                  ERROR_SUCCESS);
    }
    std::map<std::string, RegistryValue> valuesOf(const std::string& path) {
        std::map<std::string, RegistryValue> values;
        const auto key = registry_.open(RegistryRoot::CurrentUser, path);
        RegistryValue value;
        while (key->nextValue(value))
            values[value.name] = value;
        return values;
    }
    /// One line a key and value, in the order of the walk, without data.
    void walk(RegistryRoot root, const std::string& path, std::vector<std::string>& lines) {
        lines.push_back(path);
        const auto key = registry_.open(root, path);
        if (key == nullptr) return;
        for (RegistryValue value; key->nextValue(value);)
            lines.push_back(path + "\\" + value.name + " " + std::to_string(value.type));
        const auto below = key->subKeys();
        if (!below.isComplete) lines.push_back(path + kIncomplete);
        for (const std::string& name : below.names)
            walk(root, path.empty() ? name : path + "\\" + name, lines);
    }

    static constexpr const char* kIncomplete = ": not all keys";
    platform::windows_system::WindowsRegistry registry_;
    std::string path_;
    RegistryKey key_;
};

TEST_F(MachineRegistry, givesValuesOfEveryTypeWithTheirBytesAndTexts) {
    const std::wstring text = L"\u00e4 \u4e00\r\n";
    set(L"", REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    set(L"hidden behind a zero", REG_EXPAND_SZ, L"%a%\0b", 6 * sizeof(wchar_t));
    set(L"no end", REG_SZ, L"abc", 3 * sizeof(wchar_t));
    set(L"odd", REG_SZ, "a\0b", 3);
    set(L"list", REG_MULTI_SZ, L"a\0b\0", 5 * sizeof(wchar_t));
    set(L"number", REG_DWORD, "\x01\x02\x03\x04", 4);
    set(L"\u4e00", 4711, "xyz", 3);
    set(L"empty", REG_BINARY, nullptr, 0);
    const std::vector<std::uint8_t> large(3'000'000, 0x5A);
    set(L"large", REG_BINARY, large.data(), large.size());

    auto values = valuesOf(path_);
    EXPECT_EQ(values.size(), 9U);
    EXPECT_EQ(values[""].text, "\xC3\xA4 \xE4\xB8\x80\r\n");
    EXPECT_EQ(values[""].data.size(), 12U);
    EXPECT_EQ(values["hidden behind a zero"].text, std::string("%a%\0b", 5));
    EXPECT_EQ(values["no end"].text, "abc");
    EXPECT_EQ(values["odd"].data, (std::vector<std::uint8_t>{'a', 0, 'b'}));
    EXPECT_EQ(values["list"].data.size(), 10U);
    EXPECT_EQ(values["list"].text, "");
    EXPECT_EQ(values["number"].data, (std::vector<std::uint8_t>{1, 2, 3, 4}));
    EXPECT_EQ(values["number"].type, DWORD{REG_DWORD});
    EXPECT_EQ(values["\xE4\xB8\x80"].type, 4711U);
    EXPECT_TRUE(values["empty"].data.empty() && values["empty"].isReadable);
    EXPECT_EQ(values["large"].data, large);
}

TEST_F(MachineRegistry, growsWithAValueThatGrowsWhileItIsRead) {
    set(L"a", REG_BINARY, "x", 1);
    const auto key = registry_.open(RegistryRoot::CurrentUser, path_);
    const std::vector<std::uint8_t> grown(100'000, 1);
    set(L"a", REG_BINARY, grown.data(), grown.size());
    RegistryValue value;
    ASSERT_TRUE(key->nextValue(value));
    EXPECT_EQ(value.data, grown);
    EXPECT_FALSE(key->nextValue(value));
}

TEST_F(MachineRegistry, opensNothingThatIsMissingAndMakesNothing) {
    for (const std::string& path : {path_ + "\\none", path_ + "\\\xFF", std::string("Soft\0ware", 9)})
        EXPECT_EQ(registry_.open(RegistryRoot::CurrentUser, path), nullptr);
    EXPECT_TRUE(registry_.open(RegistryRoot::CurrentUser, path_)->subKeys().names.empty());
    EXPECT_TRUE(valuesOf(path_).empty());
}

TEST_F(MachineRegistry, isWalkedInTheSameOrderTwice) {
    for (const auto& [root, name] : platform::kRegistryRoots) {
        // The system and other programs write meanwhile: sooner or later two walks have the same before them.
        std::vector<std::string> first;
        bool areSame = false;
        for (int walks = 0; walks < 20 && !areSame; ++walks) {
            std::vector<std::string> second;
            walk(root, "", second);
            areSame = first == second;
            first.swap(second);
        }
        EXPECT_TRUE(areSame) << name;
        EXPECT_GT(first.size(), 1U) << name;
        EXPECT_THAT(first, testing::Each(testing::Not(testing::EndsWith(kIncomplete)))) << name;
    }
}

}  // namespace
}  // namespace corvalence::test
