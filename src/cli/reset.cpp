#include "cli/commands.h"
#include "cli/json_writer.h"
#include "cli/session.h"
#include "core/installation.h"

namespace corvalence::cli {

ExitCode runReset(Context& context) {
    requireInstallation(context);
    const settings::Configuration configuration(context.platform.settings, context.ui);
    const auto lock = lockInstallation(context, configuration.folder(settings::key::kInstallDirectory));
    const bool isReset = core::reset(context.platform, configuration);
    if (context.options.json) {
        JsonWriter json(context.out);
        json.beginObject();
        json.flag("reset", isReset);
        json.endAll();
    } else {
        context.out << (isReset ? "The password is chosen anew with the next database.\n"
                                : "Nothing was reset.\n");
    }
    return !isReset && context.platform.process.cancelRequested() ? ExitCode::Cancelled : ExitCode::Done;
}

}  // namespace corvalence::cli
