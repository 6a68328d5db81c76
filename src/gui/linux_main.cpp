#include <QMessageBox>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <stdexcept>

#include "gui/application.h"
#include "gui/support/guarded_application.h"
#include "help_digest.h"
#include "platform/json_settings_store.h"
#include "platform/linux/back_ends.h"
#include "platform/linux/canberra_sound.h"
#include "platform/linux/desktop_auto_start.h"
#include "platform/linux/program_start.h"

namespace {

using namespace corvalence;
using namespace corvalence::platform::linux_system;

int runProgram(bool startsInBackground) {
    const OwnPlace place = ownPlace();
    const base::PathRules paths;
    BackEnds system;
    platform::JsonSettingsStore settings(system.files, paths.absolute(place.settingsFile, "/"));
    const std::string program = system.process.programFile();
    CanberraSound sound(std::string(paths.folder(program)) + "sounds/");
    DesktopAutoStart autoStart(system.files, place.autoStartFolder);
    system.process.catchCancelSignals();
    const gui::Host host{
        .files = system.files,
        .access = system.access,
        .volumes = system.volumes,
        .status = system.status,
        .process = system.process,
        .types = system.types,
        .clock = system.clock,
        .settings = settings,
        .sound = sound,
        .autoStart = autoStart,
        .machine = {system.streams, system.trash, system.services, system.registry, system.accessLists},
        .mail = system.mail,
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
