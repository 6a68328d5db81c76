#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/reseal_plan.h"
#include "core/start.h"
#include "crypto/secret_text.h"

namespace corvalence::core {

/// What the dialog about a change of the password shows beside its fields.
inline constexpr std::string_view kPasswordChangeWarning =
    "This could take a long time if you have a large number of databases.";

/// The three fields of that dialog.
struct PasswordEntry {
    crypto::SecretText current;
    crypto::SecretText chosen;
    crypto::SecretText confirmation;
};

class PasswordChangeDialog {
  public:
    virtual ~PasswordChangeDialog() = default;
    /// "Password details. ": shows the fields as they are and lets the user fill them in. False where the
    /// user leaves.
    virtual bool show(PasswordEntry& entry) = 0;
    /// "Select a report file.", an absolute path. Nothing where the user leaves.
    virtual std::optional<std::string> selectReport() = 0;
};

/// What is wrong with an entry, the first fault in this order.
enum class EntryFault { None, CurrentWrong, Same, Unusable, Differ };
EntryFault findFault(const PasswordEntry& entry, const crypto::SessionKey& current);

enum class PasswordChangeResult {
    Changed,
    Retained,   // the user gave the current password and wants to keep it
    Left,       // the user left the dialog
    Declined,   // not every file can be brought along, and the user did not want to go on without those
    Cancelled,  // while files were sealed; everything is as it was
};

struct PasswordChangeOutcome {
    PasswordChangeResult result = PasswordChangeResult::Left;
    /// What stays under the old password; the user was told.
    std::vector<LeftFile> left = {};
};

/// Changes the password of the installation: asks until the entry is right, then seals every sealed file anew
/// and puts all of them in place together, so that after an end at any instant the next start opens
/// everything with the old or everything with the new password. `savedReports` are brought along; where there
/// are none, the user is asked for some. The run goes on with the new password.
///
/// Throws base::FileFailure; everything is then as it was. Throws crypto::MovesPending, after telling the
/// user, where only the putting in place failed: the run must end then, and the next start completes it.
PasswordChangeOutcome changePassword(Run& run, PasswordChangeDialog& dialog,
                                     std::vector<std::string> savedReports);

}  // namespace corvalence::core
