#include "platform/linux/canberra_sound.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <chrono>

#include "temp_folder.h"

namespace corvalence::test {
namespace {

using namespace std::chrono_literals;

/// A sound card that keeps what is played in a file.
class RecordedCard : public testing::Test {
  protected:
    void SetUp() override {
        const std::string card = folder_.write(
            "card.conf", "pcm.null { type null }\npcm.!default { type file; slave.pcm \"null\"; file \"" +
                             folder_.path() + "played\"; format raw }\n");
        ::setenv("ALSA_CONFIG_PATH", card.c_str(), 1);
        ::setenv("CANBERRA_DRIVER", "alsa", 1);
    }
    void TearDown() override {
        ::unsetenv("ALSA_CONFIG_PATH");
        ::unsetenv("CANBERRA_DRIVER");
    }

    /// What has been played once `bytes` have been, or after a minute.
    std::string played(std::size_t bytes) {
        const auto end = std::chrono::steady_clock::now() + 1min;
        std::string data;
        while (data.size() < bytes && std::chrono::steady_clock::now() < end) {
            std::this_thread::sleep_for(10ms);
            if (folder_.has("played")) data = folder_.read("played");
        }
        return data;
    }

    TempFolder folder_;
};

TEST_F(RecordedCard, hearsEachSoundOfTheProgramAndFilesOfTheUser) {
    constexpr std::size_t kHeader = 44;
    const std::string sounds = CORVALENCE_SOUNDS;
    for (const char* name : {"clm", "zaaz", "rml", "blp"}) {
        const std::string wave = readWholeFile(sounds + name + ".wav").substr(kHeader);
        EXPECT_LT(wave.size(), 2 * 22050 * 3 / 2) << name;
        for (const bool isResource : {true, false}) {
            platform::linux_system::CanberraSound sound(sounds);
            if (isResource) {
                sound.playResource(name);
            } else {
                sound.playFile(sounds + name + ".wav");
            }
            EXPECT_TRUE(played(wave.size()) == wave) << name;
            std::filesystem::remove(fsPath(folder_ / "played"));
        }
    }
}

TEST_F(RecordedCard, isSilentWithoutFileOrDeviceAndReturnsAtOnce) {
    const auto start = std::chrono::steady_clock::now();
    {
        platform::linux_system::CanberraSound sound(folder_.path());
        sound.playResource("none");
        sound.playFile(folder_.write("text.wav", "no sound at all"));
        sound.playFile("");
    }
    ::setenv("ALSA_CONFIG_PATH", "/dev/null", 1);
    platform::linux_system::CanberraSound sound(CORVALENCE_SOUNDS);
    sound.playResource("rml");
    EXPECT_LT(std::chrono::steady_clock::now() - start, 20s);
    EXPECT_FALSE(folder_.has("played"));
}

}  // namespace
}  // namespace corvalence::test
