#pragma once

#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <thread>

#include "platform/sound.h"

namespace corvalence::platform::linux_system {

/// Sounds through the desktop's event sounds: sound server or sound card, whichever answers. A sound ends the
/// one before it. A thread of its own plays, as a server may take its time to answer. Without one there is
/// silence.
class CanberraSound : public Sound {
  public:
    /// `folder` (with a closing separator) holds the program's sounds as "<name>.wav".
    explicit CanberraSound(std::string folder) : folder_(std::move(folder)) {}
    /// Ends the sound that plays.
    ~CanberraSound() override = default;

    void playResource(const std::string& name) override;
    void playFile(const std::string& path) override;

  private:
    void serve(const std::stop_token& stop);

    const std::string folder_;
    std::mutex mutex_;
    std::condition_variable_any asked_;
    std::string next_;     // path; empty where nothing waits to be played
    std::jthread player_;  // begins with the first sound
};

}  // namespace corvalence::platform::linux_system
