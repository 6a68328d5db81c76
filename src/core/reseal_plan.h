#pragma once

#include <string>
#include <vector>

#include "store/reseal_target.h"
#include "store/vault.h"

namespace corvalence::core {

/// A file that a change of the password leaves under the old one, and why.
struct LeftFile {
    std::string path;
    std::string text;
};

/// What a change of the password is going to do with the files of an installation.
struct ResealPlan {
    std::vector<store::ResealTarget> targets;  // the index is none of them
    std::vector<LeftFile> left;
    /// Files that hold the installation's data and cannot be sealed anew, since they are damaged.
    std::vector<std::string> damaged;
    /// Databases that are not there, nor backup databases that could restore them. Back later, as when a
    /// volume is mounted, they are still sealed for the old password.
    std::vector<std::string> missing;
};

/// Looks at every sealed file of the installation: databases with the files beside them, backup databases,
/// pairs of backups, schedule, logs, the folder guard's state, current reports, and the saved reports that
/// the user named. Nothing is written. Throws base::FileFailure where a file is there and cannot be opened
/// for reading and writing.
ResealPlan planReseal(store::Vault& vault, const std::vector<std::string>& savedReports);

/// Why a file that the user names cannot be a saved report of this installation; nothing where it can.
std::optional<std::string> findReportFault(const store::Vault& vault, const std::string& path);

}  // namespace corvalence::core
