#include "gui/tool_commands.h"

#include <QDesktopServices>
#include <QFileDialog>
#include <QMessageBox>
#include <QUrl>

#include "core/password_change.h"
#include "files/warning_sound.h"
#include "gui/dialogs/configuration_window.h"
#include "gui/dialogs/folder_permissions_window.h"
#include "gui/dialogs/log_window.h"
#include "gui/dialogs/password_change_window.h"
#include "gui/dialogs/permissions_changed_window.h"
#include "gui/dialogs/self_check_window.h"
#include "gui/support/icons.h"
#include "gui/support/text.h"
#include "shell/configuration_sheet.h"
#include "shell/folder_guard.h"

namespace corvalence::gui {

namespace {

using shell::Command;

constexpr const char* kWebsite = "https://halvernworks.example/corvalence";
constexpr int kAboutPicture = 64;

}  // namespace

ToolCommands::ToolCommands(Workspace& workspace, ProgramFiles program, platform::AutoStart& autoStart)
    : work_(workspace), program_(std::move(program)), autoStart_(autoStart) {
    CommandActions& actions = work_.frame().actions();
    actions.handle(Command::AdjustConfiguration, [this] { configure(); });
    actions.handle(Command::ChangePassword, [this] { changePassword(); });
    actions.handle(Command::FolderPermissions, [this] { showPermissions(); });
    actions.handle(Command::CheckFolderPermissions, [this] { checkPermissions(Telling::Everything); });
    actions.handle(Command::CheckProgram, [this] { checkFiles(Telling::Everything); });
    actions.handle(Command::ViewLogFile, [this] { viewLog(); });
    actions.handle(Command::ImportLogFile, [this] { importLog(); });
    actions.handle(Command::Help, [this] { work_.openHelp()(QStringLiteral("index")); });
    actions.handle(Command::Website, [this] { openWebsite(); });
    actions.handle(Command::About, [this] { about(); });
}

void ToolCommands::checkAtStart() {
    checkFiles(Telling::Faults);
    checkPermissions(Telling::Faults);
}

void ToolCommands::configure() {
    ConfigurationPrompt prompt({work_.platform().sound, work_.platform().paths, work_.openHelp()},
                               &work_.frame());
    shell::ConfigurationSheet(work_.platform(), work_.configuration(), autoStart_, program_.files.program)
        .run(prompt);
    onConfigured();
}

void ToolCommands::changePassword() {
    // Nothing is to hold it while it is sealed anew.
    const std::string open = work_.database() ? work_.database()->path() : std::string();
    if (!open.empty()) work_.close();
    const auto goOn = [&] {
        work_.frame().setStatus(0, "Ready");
        if (!open.empty() && !work_.isEnding()) reopen(open);
    };
    PasswordChangePrompt prompt(work_.openHelp());
    try {
        core::changePassword(work_.run(), prompt, {});
    } catch (const crypto::MovesPending&) {
        throw;
    } catch (...) {
        goOn();  // all is as it was
        throw;
    }
    goOn();
}

void ToolCommands::viewLog() {
    stopChecking();
    LogWindow(work_.vault(), LogWindow::Subject::Master, work_.openHelp(), isInverted(), &work_.frame())
        .exec();
}

void ToolCommands::showSummary() {
    LogWindow(work_.vault(), LogWindow::Subject::Session, work_.openHelp(), isInverted(), &work_.frame())
        .exec();
}

void ToolCommands::importLog() {
    const QString path = QFileDialog::getOpenFileName(&work_.frame(), QStringLiteral("Import Log File."));
    if (path.isEmpty()) return;
    LogWindow(work_.vault(), LogWindow::Subject::Imported, work_.openHelp(), isInverted(), &work_.frame(),
              chosenPath(path))
        .exec();
}

bool ToolCommands::isInverted() {
    return work_.frame().actions().action(Command::InvertColours)->isChecked();
}

void ToolCommands::showPermissions() {
    shell::FolderGuard guard(work_.vault(), work_.machine().accessLists);
    if (auto state = guard.read())
        FolderPermissionsWindow(guard, *std::move(state), work_.platform().ui, work_.openHelp(),
                                &work_.frame())
            .exec();
}

void ToolCommands::checkPermissions(Telling telling) {
    platform::UserInterface& ui = work_.platform().ui;
    shell::FolderGuard guard(work_.vault(), work_.machine().accessLists);
    const shell::GuardCheck check = guard.check();
    switch (check.result) {
        case shell::GuardResult::Same:
            if (telling == Telling::Everything)
                ui.message(platform::Icon::Information,
                           "The permissions of the Corvalence folder have not changed.");
            return;
        case shell::GuardResult::NotStored:
            if (telling == Telling::Everything)
                ui.message(
                    platform::Icon::Information,
                    "No permissions have been accepted yet.\n\nOpen 'Corvalence Folder Permissions' and "
                    "press OK to accept those of now.");
            return;
        case shell::GuardResult::Changed:
        case shell::GuardResult::Damaged:
            PermissionsChangedWindow(check, work_.openHelp(), &work_.frame()).exec();
            // Told at a start: the next one is to tell what changes from now on. A window that the end of the
            // program closed has told nobody.
            if (telling == Telling::Faults && !work_.isEnding()) guard.accept(check.now);
            return;
        case shell::GuardResult::NotChecked:
            return;
    }
}

void ToolCommands::checkFiles(Telling telling) {
    const core::SelfCheck check(work_.platform(), program_.files);
    const auto program = check.checkProgram();
    if (const auto* warning = core::programWarning(program)) warn(*warning, "applicationcheck");
    const auto help = check.checkHelp(program_.builtHelp);
    if (const auto* warning = core::helpWarning(help)) warn(*warning, "helpcheck");
    work_.frame().setStatus(0, "Ready");
    if (telling == Telling::Everything && program == core::SelfCheckResult::Same &&
        help == core::SelfCheckResult::Same) {
        work_.platform().ui.message(platform::Icon::Information,
                                    "The files of Corvalence are as they were built.");
    }
}

void ToolCommands::warn(const core::SelfCheckWarning& warning, const char* topic) {
    files::playWarning(work_.vault());
    SelfCheckWindow(warning, work_.openHelp(), QLatin1String(topic), &work_.frame()).exec();
}

void ToolCommands::openWebsite() {
    if (!QDesktopServices::openUrl(QUrl(QLatin1String(kWebsite))))
        work_.platform().ui.message(platform::Icon::Information,
                                    std::string("No program is here to open this page:\n\n") + kWebsite);
}

void ToolCommands::about() {
    QMessageBox box(&work_.frame());
    box.setObjectName(QStringLiteral("aboutBox"));
    box.setWindowTitle(QStringLiteral("About Corvalence"));
    box.setIconPixmap(icon(QStringLiteral("corvalence")).pixmap(kAboutPicture, kAboutPicture));
    box.setText(QStringLiteral("Corvalence %1").arg(QLatin1String(CORVALENCE_VERSION)));
    box.setInformativeText(QStringLiteral("A monitor of file integrity and system state.\n\nHalvern Works"));
    box.exec();
}

}  // namespace corvalence::gui
