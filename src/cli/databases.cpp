#include "cli/commands.h"

#include <algorithm>

#include "cli/console_text.h"
#include "cli/json_writer.h"
#include "cli/session.h"
#include "platform/time_text.h"
#include "store/database_files.h"
#include "store/database_opening.h"
#include "store/recent_list.h"

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
State stateOf(Context& context, core::Run& run, const std::vector<store::SealedFileRecord>& files) {
    try {
        return store::DatabaseOpening(run.vault()).state(files);
    } catch (const base::FileFailure& failure) {
        context.ui.message(platform::Icon::Warning, failure.what());
        return State::Changed;
    }
}

/// From 1 for the most recent one; 0 where the database is not in the list.
std::size_t placeIn(const std::vector<std::string>& recent, const std::string& path) {
    const auto found = std::find(recent.begin(), recent.end(), path);
    return found == recent.end() ? 0 : static_cast<std::size_t>(found - recent.begin()) + 1;
}

/// The records of the list alone, in its order.
std::vector<store::IndexRecord> recentOnly(std::vector<store::IndexRecord> records,
                                           const std::vector<std::string>& recent) {
    std::erase_if(records, [&](const auto& record) { return placeIn(recent, record.path) == 0; });
    std::sort(records.begin(), records.end(), [&](const auto& a, const auto& b) {
        return placeIn(recent, a.path) < placeIn(recent, b.path);
    });
    return records;
}

void writeJson(JsonWriter& json, const store::IndexRecord& record, std::string_view kind, State state,
               std::size_t recent) {
    const bool numbered = record.kind == store::DatabaseKind::Numbered;
    json.beginObject();
    json.path("path", record.path);
    json.text("kind", kind);
    numbered ? json.number("number", record.number) : json.null("number");
    numbered ? json.text("digest", crypto::digestKind(record.digest).consoleName) : json.null("digest");
    json.time("created", record.created);
    record.lastCheck ? json.time("last_check", *record.lastCheck) : json.null("last_check");
    json.text("state", stateName(state));
    recent > 0 ? json.number("recent", recent) : json.null("recent");
    json.end();
}

void writeLine(Context& context, const store::IndexRecord& record, std::string_view kind, State state) {
    platform::Clock& clock = context.platform.clock;
    const std::string checked =
        record.lastCheck ? platform::formatFileTime(clock, *record.lastCheck) : "Unchecked";
    context.out << std::string(kind) + "\t" + shown(record.path) + "\t" +
                       platform::formatFileTime(clock, record.created) + "\t" + checked + "\t" +
                       std::string(stateName(state)) + "\n";
}

}  // namespace

ExitCode runDatabases(Context& context, const ListArguments& arguments) {
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
    auto records = store::DatabaseIndex(run->vault()).records();
    const auto recent = store::RecentList(run->configuration(), run->vault().session).paths(records);
    if (arguments.recent) records = recentOnly(std::move(records), recent);
    const auto files = store::databaseFiles(run->vault(), records);
    for (std::size_t at = 0; at < records.size(); ++at) {
        endIfCancelled();
        const store::IndexRecord& record = records[at];
        const State state = stateOf(context, *run, files[at]);
        const bool isSystem = record.kind == store::DatabaseKind::Numbered && files[at].size() > 1;
        const std::string_view kind = isSystem ? kCompleteSystem : kindName(record.kind);
        allVerify = allVerify && state == State::Ok;
        context.options.json ? writeJson(json, record, kind, state, placeIn(recent, record.path))
                             : writeLine(context, record, kind, state);
    }
    endIfCancelled();
    return allVerify ? ExitCode::Done : ExitCode::Differences;
}

}  // namespace corvalence::cli
