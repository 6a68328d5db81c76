#include "platform/windows/windows_sound.h"

#include <windows.h>

#include <mmsystem.h>

#include "platform/windows/wide.h"

namespace corvalence::platform::windows_system {

namespace {

void play(const std::string& name, HMODULE module, DWORD source) {
    // Without a sound of that name, or a device to play it on, there is silence.
    if (const auto wide = toWide(name))
        ::PlaySoundW(wide->c_str(), module, source | SND_ASYNC | SND_NODEFAULT);
}

}  // namespace

void WindowsSound::playResource(const std::string& name) {
    play(name, ::GetModuleHandleW(nullptr), SND_RESOURCE);
}

void WindowsSound::playFile(const std::string& path) {
    play(path, nullptr, SND_FILENAME);
}

}  // namespace corvalence::platform::windows_system
