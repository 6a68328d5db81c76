#pragma once

#include <array>
#include <string_view>

#include "files/add_pipeline.h"

namespace corvalence::gui {

/// One way to back up the files of a command that adds all files.
struct BackupChoice {
    files::AddBackups backups;
    std::string_view text;
};

/// Of "Add all files to a database."
inline constexpr std::array<BackupChoice, 3> kAllFilesBackups = {{
    {files::AddBackups::None,
     "Don't backup every file.  [ Fast. Will detect any modification of your files. File restoration "
     "unavailable ]."},
    {files::AddBackups::Plain,
     "Backup every file. [ Slower. Will detect any modification of your files. File restoration enabled ]. "},
    {files::AddBackups::Sealed,
     "Backup every file and encrypt backup files. [ Slower. Will detect any modification of your files. File "
     "restoration enabled. Secure backup files - 256 bit AES encryption ]."},
}};

/// Of "Create Complete System Database."
inline constexpr std::array<BackupChoice, 3> kSystemBackups = {{
    {files::AddBackups::None,
     "Don't backup every file.  [ Fast. Will detect all modifications to your system. File restoration "
     "unavailable ]."},
    {files::AddBackups::Plain,
     "Backup every file. [ Slower. Will detect all modifications to your system. File restoration enabled "
     "]. "},
    {files::AddBackups::Sealed,
     "Backup every file and encrypt backup files. [ Slower. Will detect all modifications to your system.\n"
     " File restoration enabled. Secure backup files - 256 bit AES encryption ]."},
}};

}  // namespace corvalence::gui
