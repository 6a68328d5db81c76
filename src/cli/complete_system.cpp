#include "cli/complete_system.h"

#include "cli/component_text.h"
#include "cli/console_text.h"
#include "cli/json_writer.h"
#include "cli/session.h"

namespace corvalence::cli {

namespace {

void writeCreatedJson(Context& context, const components::SystemCreated& created) {
    JsonWriter& json = context.json;
    json.beginObject();
    json.path("database", created.database->path());
    json.text("kind", kCompleteSystem);
    json.text("digest", crypto::digestKind(created.database->digest()).consoleName);
    json.number("number", created.database->backupNumber());
    json.beginArray("components");
    for (const components::ComponentCreated& component : created.components) {
        json.beginObject();
        json.text("kind", reports::reportRow(component.component).consoleName);
        writeCountsJson(json, component.counts);
        writeRemarksJson(json, component.remarks);
        json.end();
    }
    json.end();
}

void writeCreated(Context& context, const components::SystemCreated& created) {
    const auto& digest = crypto::digestKind(created.database->digest());
    context.out << shown(created.database->path()) + " created [" + std::string(digest.name) + "].\n";
    for (const components::ComponentCreated& component : created.components) {
        context.out << std::string(reports::reportRow(component.component).consoleName) + ":\n";
        writeCounts(context, component.counts);
        writeRemarks(context, component.remarks);
    }
}

std::vector<reports::ReportKind> selection(const CheckArguments& arguments) {
    std::vector<reports::ReportKind> selected;
    for (const reports::ReportRow& row : reports::reportRows()) {
        const auto& names = arguments.components;
        if (names.empty() || std::find(names.begin(), names.end(), row.consoleName) != names.end())
            selected.push_back(row.kind);
    }
    return selected;
}

void writeChecked(Context& context, core::Run& run, const store::OpenDatabaseContext& database,
                  const components::SystemChecked& checked) {
    if (checked.cancelled) {
        context.out << "The check was cancelled. It left no report.\n";
        return;
    }
    for (const components::ComponentChecked& component : checked.components) {
        const auto page = static_cast<std::size_t>(component.component) + 1;
        context.out << components::systemPageCaption(page) + "  " +
                           std::string(reports::reportRow(component.component).title) + "\n";
        writeOutcome(context, run, component.component, component.outcome);
        writeCounts(context, component.outcome.counts);
        writeRemarks(context, component.outcome.remarks);
    }
    writeCheckedAt(context, database);
}

void writeCheckedJson(Context& context, core::Run& run, const store::OpenDatabaseContext& database,
                      const components::SystemChecked& checked) {
    JsonWriter& json = context.json;
    json.beginObject();
    json.path("database", database.path());
    json.text("kind", kCompleteSystem);
    json.flag("cancelled", checked.cancelled);
    json.number("first_page", checked.firstPage());
    json.beginArray("components");
    for (const components::ComponentChecked& component : checked.components) {
        if (checked.cancelled) break;  // no report is left
        json.beginObject();
        json.text("kind", reports::reportRow(component.component).consoleName);
        writeOutcomeJson(context, run, component.component, component.outcome);
        json.end();
    }
    json.end();
}

}  // namespace

ExitCode createSystem(Context& context, core::Run& run, const store::CreationRequest& request,
                      const CreateArguments& arguments) {
    components::SystemCreationOptions options;
    options.backups = arguments.backups.value_or(files::AddBackups::None);
    options.notifyFailed = !arguments.ignoreFailed;
    const auto created = components::createCompleteSystem(run.vault(), context.machine, request, options);
    context.ui.clearLine();
    if (created.cancelled) return ExitCode::Cancelled;
    if (created.declined) {
        throw CommandEnd(ExitCode::Failed,
                         "No database was made. Without backups it is made with:  --backups none");
    }
    if (!created.database) return ExitCode::Failed;
    noteRecent(run, created.database->path());
    context.options.json ? writeCreatedJson(context, created) : writeCreated(context, created);
    const bool isWhole = std::all_of(
        created.components.begin(), created.components.end(),
        [](const components::ComponentCreated& component) { return components::isWhole(component.remarks); });
    return isWhole ? ExitCode::Done : ExitCode::Differences;
}

ExitCode checkSystem(Context& context, core::Run& run, const store::OpenDatabaseContext& database,
                     const CheckArguments& arguments) {
    const auto checked =
        components::checkCompleteSystem(run.vault(), context.machine, database, selection(arguments));
    if (!checked.cancelled)
        run.vault().platform.ui.message(platform::Icon::Information, std::string(components::kReportsMade));
    context.ui.clearLine();
    context.options.json ? writeCheckedJson(context, run, database, checked)
                         : writeChecked(context, run, database, checked);
    if (checked.cancelled) return ExitCode::Cancelled;
    return checked.differs() || !checked.isWhole() ? ExitCode::Differences : ExitCode::Done;
}

}  // namespace corvalence::cli
