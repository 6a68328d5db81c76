#pragma once

#include <string>

namespace corvalence::platform::linux_system {

/// What a program does before anything else: standard descriptors that the caller closed are taken up, so
/// that no file that is opened later gets results written into it, and a reader that goes away or a limit on
/// the size of files ends a write, not the process.
void prepareProgram();

/// Where a user's installation lies.
struct OwnPlace {
    std::string dataRoot;         // with a closing separator
    std::string settingsFile;     // full path
    std::string autoStartFolder;  // of the desktop's autostart entries
};

/// The user's own place by the XDG base directories; a variable that is not absolute counts as not given.
/// Throws std::runtime_error where the user has no home folder.
OwnPlace ownPlace();

}  // namespace corvalence::platform::linux_system
