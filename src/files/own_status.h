#pragma once

#include <string>

#include "platform/user_interface.h"

namespace corvalence::files {

/// A text of the status pane that ends with what it is about, however that ends.
class OwnStatus {
  public:
    OwnStatus(platform::UserInterface& ui, const std::string& text) : ui_(ui) { ui_.status(0, text); }
    ~OwnStatus() { ui_.status(0, "Ready"); }
    OwnStatus(const OwnStatus&) = delete;
    OwnStatus& operator=(const OwnStatus&) = delete;

  private:
    platform::UserInterface& ui_;
};

}  // namespace corvalence::files
