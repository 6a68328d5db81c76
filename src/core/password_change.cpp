#include "core/password_change.h"

#include "store/backup_database.h"
#include "store/component_index.h"
#include "store/database_index.h"
#include "store/recent_list.h"
#include "store/reseal_pass.h"

namespace corvalence::core {

namespace {

/// Tells a fault and empties the fields that it spoilt. True where the user wants no change after all.
bool isRetained(platform::UserInterface& ui, PasswordEntry& entry, EntryFault fault) {
    switch (fault) {
        case EntryFault::None:
            return false;
        case EntryFault::CurrentWrong:
            ui.message(platform::Icon::Stop, "The current password is incorrect!");
            entry.current.clear();
            entry.chosen.clear();
            return false;
        case EntryFault::Same:
            return ui.ask(platform::Icon::Information,
                          "The current password and the new password are the same.\nDo you want to retain "
                          "your current password?",
                          true);
        case EntryFault::Unusable:
            ui.message(platform::Icon::Stop, *findPasswordFault(entry.chosen.view()));
            entry.chosen.clear();
            entry.confirmation.clear();
            return false;
        case EntryFault::Differ:
            ui.message(platform::Icon::Stop,
                       "The new password and the confirmation of the new password are not the same!");
            entry = {};
            return false;
    }
    return false;
}

/// Asks until an entry has no fault. No session where the user wants none; `result` says why.
std::unique_ptr<crypto::Session> choosePassword(Run& run, PasswordChangeDialog& dialog,
                                                PasswordChangeResult& result) {
    PasswordEntry entry;
    while (dialog.show(entry)) {
        const EntryFault fault = findFault(entry, run.vault().session.key);
        if (fault == EntryFault::None) return std::make_unique<crypto::Session>(entry.chosen.view());
        if (isRetained(run.vault().platform.ui, entry, fault)) {
            result = PasswordChangeResult::Retained;
            return nullptr;
        }
    }
    result = PasswordChangeResult::Left;
    return nullptr;
}

void askForReports(const store::Vault& vault, PasswordChangeDialog& dialog,
                   std::vector<std::string>& reports) {
    platform::UserInterface& ui = vault.platform.ui;
    while (ui.ask(platform::Icon::Information,
                  "Do you have any Corvalence reports that need to be re-encrypted with the new password?")) {
        const auto report = dialog.selectReport();
        if (!report) return;
        if (const auto fault = findReportFault(vault, *report)) {
            ui.message(platform::Icon::Stop, *fault);
        } else {
            reports.push_back(*report);
        }
    }
}

std::string lines(const std::string& heading, const std::vector<std::string>& paths) {
    std::string text = paths.empty() ? "" : heading + "\n";
    for (const std::string& path : paths)
        text += "\n" + path;
    return text.empty() ? text : text + "\n\n";
}

bool wantsToGoOn(platform::UserInterface& ui, const ResealPlan& plan) {
    const std::string text =
        lines("These files are damaged and cannot be brought to the new password:", plan.damaged) +
        lines("These databases are not there to be brought to the new password:", plan.missing);
    return text.empty() ||
           ui.ask(platform::Icon::Warning,
                  text +
                      "The new password will not open them, now or later.\n\nWould you like to change "
                      "the password without them?");
}

/// A record keeps its digest unless it is that of its file or of the file's backup: one that was changed
/// behind the program's back has to be told as changed afterwards as well.
std::optional<std::string> digestNow(const store::Vault& vault, const store::ResealPass& pass,
                                     const std::string& path, const std::string& before) {
    if (auto digest = pass.digestNow(path, before)) return digest;
    return pass.digestNow(store::backupDatabasePath(path, vault.configuration, vault.platform.paths), before);
}

/// False where the user cancelled.
bool resealAll(store::Vault& vault, const crypto::Session& next, const ResealPlan& plan) {
    const store::DatabaseIndex index(vault);
    const store::ComponentIndex components(vault);
    const crypto::ChainValue chain = vault.session.chains.IndexIV;
    std::vector<store::ResealTarget> all = plan.targets;
    all.push_back({index.path(), chain});
    all.push_back({components.path(), chain});
    store::requireRoom(vault, all);

    store::ResealPass pass(vault, next);
    {
        const auto progress =
            vault.platform.ui.openProgress("Applying Password Change To All Relevant Files ...");
        if (!pass.reseal(plan.targets, *progress)) return false;
    }
    const crypto::SecretText others = components.textWith([&](const store::SealedFileRecord& record) {
        return digestNow(vault, pass, record.path, record.digest);
    });
    if (!others.empty()) pass.seal(components.path(), others.view(), chain);
    // An index of 0 bytes lists nothing, and any password opens it.
    const crypto::SecretText text = index.textWith([&](const store::IndexRecord& record) {
        return digestNow(vault, pass, record.path, record.fileDigest);
    });
    if (!text.empty()) pass.seal(index.path(), text.view(), chain);
    try {
        pass.commit();
    } catch (const crypto::MovesPending&) {
        vault.platform.ui.message(
            platform::Icon::Warning,
            "The password change could not be completed. The next start completes it: give the new password "
            "then, and the old one should that be refused.");
        throw;
    }
    return true;
}

}  // namespace

EntryFault findFault(const PasswordEntry& entry, const crypto::SessionKey& current) {
    if (!crypto::SessionKey(entry.current.view()).equals(current)) return EntryFault::CurrentWrong;
    if (entry.current.view() == entry.chosen.view()) return EntryFault::Same;
    if (findPasswordFault(entry.chosen.view())) return EntryFault::Unusable;
    if (entry.chosen.view() != entry.confirmation.view()) return EntryFault::Differ;
    return EntryFault::None;
}

PasswordChangeOutcome changePassword(Run& run, PasswordChangeDialog& dialog,
                                     std::vector<std::string> savedReports) {
    store::Vault& vault = run.vault();
    platform::UserInterface& ui = vault.platform.ui;
    PasswordChangeOutcome outcome;
    auto next = choosePassword(run, dialog, outcome.result);
    if (!next) return outcome;
    if (savedReports.empty()) askForReports(vault, dialog, savedReports);
    ResealPlan plan = planReseal(vault, savedReports);
    if (!wantsToGoOn(ui, plan)) return {PasswordChangeResult::Declined};
    const auto recent =
        store::RecentList(vault.configuration, vault.session).paths(store::DatabaseIndex(vault).records());
    if (!resealAll(vault, *next, plan)) return {PasswordChangeResult::Cancelled};

    run.adopt(std::move(next));
    // The settings cannot be replaced together with the files: a run that is ended here loses this list.
    store::RecentList(run.vault().configuration, run.vault().session).write(recent);
    for (const std::string& path : plan.damaged)
        plan.left.push_back({path, path + " is damaged and stays under the old password."});
    for (const std::string& path : plan.missing)
        plan.left.push_back({path, path + " is not there and stays under the old password."});
    for (const LeftFile& file : plan.left)
        ui.message(platform::Icon::Warning, file.text);
    ui.status(0, "Ready");
    ui.message(platform::Icon::Information, "Password change successfully completed.");
    return {PasswordChangeResult::Changed, std::move(plan.left)};
}

}  // namespace corvalence::core
