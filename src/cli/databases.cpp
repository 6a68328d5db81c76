#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/json_writer.h"
#include "cli/session.h"
#include "platform/time_text.h"
#include "store/database_opening.h"

namespace corvalence::cli {

namespace {

using State = store::DatabaseOpening::State;

std::string_view stateName(State state) {
    switch (state) {
        case State::Ok:
            return "ok";
        case State::Changed:
            return "changed";
        case State::Missing:
            return "missing";
    }
    return {};
}

/// A database that cannot even be read is none that verifies; why is told.
State stateOf(Context& context, core::Run& run, const store::IndexRecord& record) {
    try {
        return store::DatabaseOpening(run.vault()).state(record);
    } catch (const base::FileFailure& failure) {
        context.ui.message(platform::Icon::Warning, failure.what());
        return State::Changed;
    }
}

void writeJson(JsonWriter& json, const store::IndexRecord& record, State state) {
    const bool numbered = record.kind == store::DatabaseKind::Numbered;
    json.beginObject();
    json.path("path", record.path);
    json.text("kind", kindName(record.kind));
    numbered ? json.number("number", record.number) : json.null("number");
    numbered ? json.text("digest", crypto::digestKind(record.digest).consoleName) : json.null("digest");
    json.time("created", record.created);
    record.lastCheck ? json.time("last_check", *record.lastCheck) : json.null("last_check");
    json.text("state", stateName(state));
    json.end();
}

void writeLine(Context& context, const store::IndexRecord& record, State state) {
    platform::Clock& clock = context.platform.clock;
    const std::string checked =
        record.lastCheck ? platform::formatFileTime(clock, *record.lastCheck) : "Unchecked";
    context.out << std::string(kindName(record.kind)) + "\t" + shown(record.path) + "\t" +
                       platform::formatFileTime(clock, record.created) + "\t" + checked + "\t" +
                       std::string(stateName(state)) + "\n";
}

}  // namespace

ExitCode runDatabases(Context& context) {
    const auto run = startRun(context);
    JsonWriter& json = context.json;
    if (context.options.json) {
        json.beginObject();
        json.beginArray("databases");
    }
    const auto endIfCancelled = [&] {
        if (context.platform.process.cancelRequested()) throw CommandEnd(ExitCode::Cancelled);
    };
    bool allVerify = true;
    for (const store::IndexRecord& record : store::DatabaseIndex(run->vault()).records()) {
        endIfCancelled();
        const State state = stateOf(context, *run, record);
        allVerify = allVerify && state == State::Ok;
        context.options.json ? writeJson(json, record, state) : writeLine(context, record, state);
    }
    endIfCancelled();
    return allVerify ? ExitCode::Done : ExitCode::Differences;
}

}  // namespace corvalence::cli
