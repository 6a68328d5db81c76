#pragma once

#include <array>
#include <string>
#include <string_view>

#include "crypto/working_files.h"
#include "platform/platform.h"
#include "settings/configuration.h"

namespace corvalence::core {

/// Names of the data folders below an installation's root.
inline constexpr std::array<std::string_view, 5> kDataFolders = {"Backup Files", "Changed Files",
                                                                 "Checking Schedule", "Databases", "Reports"};

/// Whether the settings name an installation.
bool isInstalled(platform::Platform& platform);

/// Whether the two paths lead to one folder.
bool isSameFolder(platform::Platform& platform, const std::string& a, const std::string& b);

/// Whether the installation that the settings name is the one in `folder`, by whatever path. A copy's
/// settings name the folder that it was copied from, and databases are sealed for the paths where they were
/// made: such an installation must not be worked on.
bool isInstalledIn(platform::Platform& platform, const std::string& folder);

enum class InstallResult {
    Installed,
    AlreadyInstalled,  // settings are there; nothing was touched
    DataInTheWay,      // no settings, but a Database Index that is not empty: nothing was touched
};

/// Makes an installation below `root` (with a closing separator): the data folders, the empty sealed files,
/// then the settings with their fall-back values, the folder keys last, so that one that was begun can be
/// finished by running it again. The caller holds the lock. Throws base::FileFailure; "Registry error." is
/// shown and thrown as one where the settings cannot be written.
InstallResult install(platform::Platform& platform, const std::string& root);

/// For a forgotten password, after asking: empties index, schedule, logs and the list of recent databases and
/// removes the folder guard's state, so that any password is accepted next. The old database files stay, as
/// files that nobody can decipher; what an ended run had begun is never carried on. False where the user said
/// no. Throws base::FileFailure. `working`: of the installation, with no temporary alive.
bool reset(platform::Platform& platform, settings::Configuration& configuration,
           crypto::WorkingFiles& working);

/// The journal of the working files of the installation in `root`.
std::string journalPath(const std::string& root);

/// Tells what a clearing of leftovers had to leave.
void tellUncleared(platform::Platform& platform, const crypto::WorkingFiles& working);

}  // namespace corvalence::core
