#include "files/warning_sound.h"

namespace corvalence::files {

namespace {

constexpr std::string_view kSounds[] = {"clm", "zaaz", "rml"};
constexpr int kSoundFile = 4;

}  // namespace

void playWarning(const store::Vault& vault) {
    const int chosen = vault.configuration.number(settings::key::kWarningSound);
    if (chosen == kSoundFile) {
        vault.platform.sound.playFile(vault.configuration.text(settings::key::kWarningSoundFile));
    } else if (chosen < static_cast<int>(std::size(kSounds))) {
        vault.platform.sound.playResource(std::string(kSounds[chosen]));
    }
}

}  // namespace corvalence::files
