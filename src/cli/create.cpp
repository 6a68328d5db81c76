#include "cli/commands.h"
#include "cli/complete_system.h"
#include "cli/component_text.h"
#include "cli/console_text.h"
#include "cli/json_writer.h"
#include "cli/session.h"
#include "store/database_creation.h"

namespace corvalence::cli {

namespace {

ExitCode createFileDatabase(Context& context, core::Run& run, const store::CreationRequest& request) {
    const auto database = store::DatabaseCreation(run.vault()).create(request);
    if (!database) return ExitCode::Failed;
    noteRecent(run, database->path());
    const crypto::DigestKind& digest = crypto::digestKind(database->digest());
    if (context.options.json) {
        JsonWriter& json = context.json;
        json.beginObject();
        json.path("database", database->path());
        json.text("kind", kindName(database->record.kind));
        json.text("digest", digest.consoleName);
        json.number("number", database->backupNumber());
    } else {
        context.out << shown(database->path()) + " created [" + std::string(digest.name) + "].\n";
    }
    return ExitCode::Done;
}

ExitCode createComponent(Context& context, core::Run& run, const components::ComponentKind& kind,
                         const store::CreationRequest& request) {
    const auto creation = kind.makeCreation(run.vault(), context.machine);
    bool wasCancelled = false;
    const auto database = components::createDatabase(run.vault(), kind, request, *creation, wasCancelled);
    if (!database) return wasCancelled ? ExitCode::Cancelled : ExitCode::Failed;
    noteRecent(run, database->path());
    context.ui.clearLine();
    const auto remarks = creation->remarks();
    if (context.options.json) {
        context.json.beginObject();
        context.json.path("database", database->path());
        context.json.text("kind", kindName(kind.kind));
        writeCountsJson(context.json, creation->counts());
        writeRemarksJson(context.json, remarks);
    } else {
        context.out << shown(database->path()) + " created.\n";
        writeCounts(context, creation->counts());
        writeRemarks(context, remarks);
    }
    return isWhole(remarks) ? ExitCode::Done : ExitCode::Differences;
}

}  // namespace

ExitCode runCreate(Context& context, const CreateArguments& arguments) {
    const auto kind = findKind(arguments.kind);
    if (!kind) {
        throw CommandEnd(ExitCode::Usage,
                         arguments.kind + " is no kind that `create` takes. It takes: " + kindNames());
    }
    const bool isSystem = arguments.kind == kCompleteSystem;
    if (!isSystem && (arguments.backups || arguments.ignoreFailed))
        throw CommandEnd(ExitCode::Usage, "--backups and --ignore-failed go with a Complete System.");
    const auto run = startRun(context);
    store::CreationRequest request;
    request.name = arguments.name;
    request.kind = *kind;
    request.digest = arguments.digest;
    request.location = arguments.location
                           ? absolutePath(context, *arguments.location)
                           : run->configuration().folder(settings::key::kInstallDirectory) + "Databases";
    if (isSystem) return createSystem(context, *run, request, arguments);
    if (const auto* component = components::findComponentKind(*kind))
        return createComponent(context, *run, *component, request);
    return createFileDatabase(context, *run, request);
}

}  // namespace corvalence::cli
