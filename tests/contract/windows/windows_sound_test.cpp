#include "platform/windows/windows_sound.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>

namespace corvalence::test {
namespace {

TEST(WindowsSound, findsEachSoundOfTheProgramUnderTheNameThatItIsAskedFor) {
    for (const wchar_t* name : {L"clm", L"zaaz", L"rml", L"blp"}) {
        const HRSRC found = ::FindResourceW(nullptr, name, L"WAVE");
        ASSERT_NE(found, nullptr) << name;
        const auto* data = static_cast<const char*>(::LockResource(::LoadResource(nullptr, found)));
        EXPECT_EQ(std::string(data, 4) + std::string(data + 8, 4), "RIFFWAVE") << name;
        EXPECT_GT(::SizeofResource(nullptr, found), 5000U) << name;
    }
}

TEST(WindowsSound, isSilentWithoutFileOrDeviceAndReturnsAtOnce) {
    platform::windows_system::WindowsSound sound;
    const auto start = std::chrono::steady_clock::now();
    sound.playResource("none");
    sound.playResource("rml");
    sound.playFile("C:\\none.wav");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

}  // namespace
}  // namespace corvalence::test
