#include <QMessageBox>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <stdexcept>

#include "gui/application.h"
#include "gui/support/guarded_application.h"
#include "help_digest.h"
#include "platform/json_settings_store.h"
#include "platform/linux/canberra_sound.h"
#include "platform/linux/desktop_auto_start.h"
#include "platform/linux/extended_attributes.h"
#include "platform/linux/linux_access_control.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_file_system.h"
#include "platform/linux/linux_process.h"
#include "platform/linux/linux_registry.h"
#include "platform/linux/linux_system_status.h"
#include "platform/linux/linux_volumes.h"
#include "platform/linux/mime_file_types.h"
#include "platform/linux/posix_access_lists.h"
#include "platform/linux/program_start.h"
#include "platform/linux/smtp_mail.h"
#include "platform/linux/systemd_services.h"
#include "platform/linux/trash_folders.h"

namespace {

using namespace corvalence;
using namespace corvalence::platform::linux_system;

int runProgram(bool startsInBackground) {
    const OwnPlace place = ownPlace();
    const base::PathRules paths;
    LinuxFileSystem files;
    LinuxAccessControl access;
    LinuxVolumes volumes;
    LinuxSystemStatus status;
    LinuxProcess process;
    MimeFileTypes types;
    LinuxClock clock;
    ExtendedAttributes streams;
    SystemdServices services(files);
    LinuxRegistry registry(files);
    PosixAccessLists accessLists;
    TrashFolders trash(files, [&volumes] { return trashPlaces(volumes); });
    platform::JsonSettingsStore settings(files, paths.absolute(place.settingsFile, "/"));
    const std::string program = process.programFile();
    CanberraSound sound(std::string(paths.folder(program)) + "sounds/");
    DesktopAutoStart autoStart(files, place.autoStartFolder);
    process.catchCancelSignals();
    const gui::Host host{
        .files = files,
        .access = access,
        .volumes = volumes,
        .status = status,
        .process = process,
        .types = types,
        .clock = clock,
        .settings = settings,
        .sound = sound,
        .autoStart = autoStart,
        .machine = {streams, trash, services, registry, accessLists},
        .mail = std::make_shared<SmtpMail>(files, clock),
        .paths = paths,
        .dataRoot = paths.withSeparator(paths.absolute(place.dataRoot, "/")),
        .program = {core::SelfCheckFiles::beside(program, core::kProgramDigest, paths), kHelpDigest},
        .folderIcon = core::desktopFolderIcon()};
    gui::Application application(host, startsInBackground);
    if (!application.start()) return 3;
    return application.run();
}

/// Without a display the toolkit ends the program as if it had crashed, and advises to install it again.
void endWithoutDisplay(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type != QtFatalMsg) {
        std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
        return;
    }
    std::fputs("corvalence: there is no display to show windows on; corvalencectl works on a terminal.\n",
               stderr);
    std::_Exit(4);
}

}  // namespace

int main(int argc, char** argv) {
    prepareProgram();
    std::optional<gui::GuardedApplication> toolkit;
    const auto usual = qInstallMessageHandler(endWithoutDisplay);
    toolkit.emplace(argc, argv);
    qInstallMessageHandler(usual);
    try {
        // What the toolkit knows of the command line is gone from it by now.
        return runProgram(argc > 1);
    } catch (const std::exception& failure) {
        QMessageBox::critical(nullptr, QStringLiteral("Corvalence"), QString::fromUtf8(failure.what()));
        return 4;
    }
}
