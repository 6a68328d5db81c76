#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/json_writer.h"
#include "cli/session.h"
#include "core/installation.h"

namespace corvalence::cli {

namespace {

[[noreturn]] void refuseExisting(Context& context) {
    refuseMovedInstallation(context);
    const settings::Configuration configuration(context.platform.settings, context.ui);
    throw CommandEnd(ExitCode::Refused, "There is an installation already, in " +
                                            configuration.folder(settings::key::kInstallDirectory) +
                                            ". Nothing was changed.");
}

}  // namespace

ExitCode runInit(Context& context) {
    const std::string& root = context.dataRoot;
    if (core::isInstalled(context.platform)) refuseExisting(context);
    requireAdministrator(context);  // before anything is made
    context.platform.files.createFolder(root);
    const auto lock = lockInstallation(context, root);
    switch (core::install(context.platform, root)) {
        case core::InstallResult::AlreadyInstalled:
            refuseExisting(context);
        case core::InstallResult::DataInTheWay:
            throw CommandEnd(ExitCode::Refused,
                             root +
                                 " holds the data of an installation whose settings are missing. Nothing was "
                                 "changed.");
        case core::InstallResult::Installed:
            break;
    }
    if (context.options.json) {
        JsonWriter& json = context.json;
        json.beginObject();
        json.path("home", root);
        json.flag("installed", true);
    } else {
        context.out << "Installation made in " + shown(root) +
                           "\nThe password is chosen with the first database.\n";
    }
    return ExitCode::Done;
}

}  // namespace corvalence::cli
