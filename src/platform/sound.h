#pragma once

#include <string>

namespace corvalence::platform {

/// Sounds by their resource names ("clm", "zaaz", "rml", "blp"). Playing returns at once and never fails
/// loudly.
class Sound {
  public:
    virtual ~Sound() = default;
    virtual void playResource(const std::string& name) = 0;
    virtual void playFile(const std::string& path) = 0;
};

}  // namespace corvalence::platform
