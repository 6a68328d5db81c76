#include "cli/commands.h"
#include "cli/json_writer.h"
#include "cli/session.h"
#include "core/installation.h"

namespace corvalence::cli {

ExitCode runReset(Context& context) {
    requireInstallation(context);
    settings::Configuration configuration(context.platform.settings, context.ui);
    const std::string root = configuration.folder(settings::key::kInstallDirectory);
    const auto lock = lockInstallation(context, root);
    crypto::WorkingFiles working(context.platform.files, core::journalPath(root), context.platform.paths);
    const bool isReset = core::reset(context.platform, configuration, working);
    if (context.options.json) {
        JsonWriter& json = context.json;
        json.beginObject();
        json.flag("reset", isReset);
    } else {
        context.out << (isReset ? "The password is chosen anew with the next database.\n"
                                : "Nothing was reset.\n");
    }
    const bool isCancelled = context.platform.process.cancelRequested() || context.ui.wasUnanswered();
    return !isReset && isCancelled ? ExitCode::Cancelled : ExitCode::Done;
}

}  // namespace corvalence::cli
