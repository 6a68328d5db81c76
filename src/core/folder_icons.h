#pragma once

#include <string>

#include "platform/platform.h"
#include "settings/configuration.h"

namespace corvalence::core {

/// The file by which a file manager shows an icon for the folder that it lies in. Its text consists of three
/// parts, so that one with another icon's place is known again.
struct FolderIconFile {
    std::string name;
    std::string opening;
    std::string place = {};  // of the icon
    std::string closing = {};

    std::string text() const { return opening + place + closing; }
    /// Whether a file's content is such a text, with any place where this one has a place.
    bool isLike(std::string_view content) const;
};

/// "desktop.ini", with the second icon of the graphical program at this full path.
FolderIconFile windowsFolderIcon(const std::string& program);
/// ".directory", with the icon that the desktop knows the program by.
FolderIconFile desktopFolderIcon();

/// Puts the file into the root of the data folders and into each of them where Config32 is 1, and removes it
/// there where it is not. A file of that name which is not the program's own is left as it is. Failures are
/// passed over: icons are decoration.
void applyFolderIcons(platform::Platform& platform, const settings::Configuration& configuration,
                      const FolderIconFile& icon);

}  // namespace corvalence::core
