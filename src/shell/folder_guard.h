#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "components/permission_record.h"
#include "platform/access_lists.h"
#include "store/vault.h"

namespace corvalence::shell {

// Texts of the two windows of the guard.
inline constexpr std::string_view kGuardTitle = "Corvalence folder permissions.";
inline constexpr std::string_view kGuardIntroduction =
    "This is a list of the accounts that have access permissions to the Corvalence folder, along with their "
    "various permissions.";
inline constexpr std::string_view kGuardAdvice =
    "Corvalence can strengthen the access controls for the Corvalence folder.\n\nRecommendation : "
    "Strengthen.";
inline constexpr std::string_view kGuardAlarm = "THE CORVALENCE FOLDER PERMISSIONS HAVE CHANGED!";
inline constexpr std::string_view kGuardBefore = "Previous permissions:";
inline constexpr std::string_view kGuardNow = "Permissions now:";

/// An entry of the folder's access list, as a row of the lists in both windows: its cells are account, domain
/// and a yes or no for each of components::kPermissionColumns.
struct GuardRow {
    std::string account;
    std::string domain;
    std::uint32_t rights = 0;
    /// Gives partial access, which strengthening takes away from all but the administrators. What gives none
    /// at all is not weak, nor is the owner's own entry on Linux, which stays whatever it gives.
    bool isWeak = false;

    bool ticks(std::size_t column) const { return components::kPermissionColumns[column].ticks(rights); }
    /// What the columns leave unsaid: on Linux what the entry's mode lets its class do with the folder, with
    /// set-id and sticky bits; elsewhere the rights that have no column. May be empty.
    std::string inWords() const;
};

/// Who may do what with the folder, at one moment.
struct FolderState {
    std::vector<GuardRow> rows;

    /// Whether strengthening is recommended.
    bool isWeak() const;
    /// A line an entry, in the list's order: account, domain and rights, separated by commas; ended by CR LF.
    std::string text() const;
};

enum class GuardResult {
    Same,
    Changed,
    NotStored,   // no state was accepted yet
    Damaged,     // the stored state cannot be read to its end; `before` holds what can
    NotChecked,  // the user was told why
};

struct GuardCheck {
    GuardResult result = GuardResult::NotChecked;
    std::vector<GuardRow> before = {};
    FolderState now = {};
};

struct Strengthening {
    std::size_t removed = 0;  // entries that were taken out, or emptied
    /// Why nothing, or not everything, was removed; empty where all went well.
    std::string failure = {};
};

/// Guards the folder that all of an installation lies in: shows its access list, tightens it, keeps the
/// accepted state in the sealed file `Permissions`, and compares with that.
///
/// Links on the way to the folder are followed first, so that it is the folder itself that is looked at and
/// tightened.
class FolderGuard {
  public:
    FolderGuard(store::Vault& vault, platform::AccessLists& lists) : vault_(vault), lists_(lists) {}

    /// The live state; nothing, after telling the user, where the volume keeps no access lists or the list
    /// cannot be read.
    std::optional<FolderState> read();

    /// Takes every entry out of the list but those of administrators and those with full access, and closes
    /// it against what the folder above would hand down. Nothing is told.
    Strengthening strengthen();

    /// Stores a state as the accepted one. Throws base::FileFailure; the one stored before holds then.
    void accept(const FolderState& state);

    /// Compares the live state with the accepted one, by their whole texts. Throws base::FileFailure where
    /// the stored file is there but cannot be opened or read.
    GuardCheck check();

  private:
    std::string stateFile() const;
    bool readStored(std::vector<GuardRow>& rows) const;

    store::Vault& vault_;
    platform::AccessLists& lists_;
};

}  // namespace corvalence::shell
