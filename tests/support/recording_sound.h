#pragma once

#include <string>
#include <vector>

#include "platform/sound.h"

namespace corvalence::test {

/// Silent; remembers what it was asked to play.
class RecordingSound : public platform::Sound {
  public:
    std::vector<std::string> resources;
    std::vector<std::string> files;

    void playResource(const std::string& name) override { resources.push_back(name); }
    void playFile(const std::string& path) override { files.push_back(path); }
};

}  // namespace corvalence::test
