#include "files/warning_sound.h"

namespace corvalence::files {

namespace {

constexpr std::string_view kSounds[] = {"clm", "zaaz", "rml"};
constexpr int kSoundFile = 4;

}  // namespace

void playWarning(platform::Sound& sound, int chosen, const std::string& file) {
    if (chosen == kSoundFile) {
        sound.playFile(file);
    } else if (chosen < static_cast<int>(std::size(kSounds))) {
        sound.playResource(std::string(kSounds[chosen]));
    }
}

void playWarning(const store::Vault& vault) {
    const settings::Configuration& configuration = vault.configuration;
    playWarning(vault.platform.sound, configuration.number(settings::key::kWarningSound),
                configuration.text(settings::key::kWarningSoundFile));
}

}  // namespace corvalence::files
