#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/json_writer.h"
#include "cli/session.h"
#include "store/database_creation.h"

namespace corvalence::cli {

namespace {

constexpr std::string_view kBuiltKind = "file-contents";

}  // namespace

ExitCode runCreate(Context& context, const CreateArguments& arguments) {
    if (arguments.kind != kBuiltKind) {
        throw CommandEnd(ExitCode::Usage, arguments.kind + " is no kind that `create` takes. It takes: " +
                                              std::string(kBuiltKind));
    }
    const auto run = startRun(context);
    store::CreationRequest request;
    request.name = arguments.name;
    request.digest = arguments.digest;
    request.location = arguments.location
                           ? absolutePath(context, *arguments.location)
                           : run->configuration().folder(settings::key::kInstallDirectory) + "Databases";
    const auto database = store::DatabaseCreation(run->vault()).create(request);
    if (!database) return ExitCode::Failed;
    noteRecent(*run, database->path());

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

}  // namespace corvalence::cli
