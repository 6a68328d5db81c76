#pragma once

#include <string>

namespace corvalence::platform {

/// Whether a program begins by itself, in the background, with its user's session. Calls give false where the
/// system refused; nothing has changed then.
class AutoStart {
  public:
    virtual ~AutoStart() = default;

    /// From now on `program`, a full path, is started with the argument "/Background".
    virtual bool enable(const std::string& program) = 0;
    /// From now on nothing is started.
    virtual bool disable() = 0;
    virtual bool isEnabled() = 0;
};

}  // namespace corvalence::platform
