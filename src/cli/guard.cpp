#include "shell/folder_guard.h"

#include <array>

#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/json_writer.h"
#include "cli/session.h"

namespace corvalence::cli {

namespace {

using shell::FolderGuard;
using shell::FolderState;
using shell::GuardResult;
using shell::GuardRow;

constexpr std::string_view kAcceptHint =
    "The present state becomes the accepted one with:  corvalencectl guard show --accept";
constexpr std::array<std::string_view, 5> kResultNames = {"same", "changed", "not stored", "damaged",
                                                          "not checked"};  // by GuardResult

constexpr std::array<std::string_view, 4> kAlarms = {
    "", shell::kGuardAlarm, "No state of the folder is stored yet.",
    "The stored state of the folder is damaged, or sealed with another password."};  // by GuardResult

std::vector<std::string_view> tickedColumns(const GuardRow& row) {
    std::vector<std::string_view> names;
    for (std::size_t column = 0; column < components::kPermissionColumns.size(); ++column)
        if (row.ticks(column)) names.push_back(components::kPermissionColumns[column].name);
    return names;
}

/// A weak entry has a mark in front. One with full control is not told the rights that this consists of.
std::string lineOf(const GuardRow& row) {
    std::string columns;
    for (const std::string_view name : tickedColumns(row)) {
        columns.append(columns.empty() ? "" : ", ").append(name);
        if (name == components::kPermissionColumns.front().name) break;
    }
    const std::string words = row.inWords();
    return std::string(row.isWeak ? "! " : "  ") + shown(row.account) + "\t" + shown(row.domain) + "\t" +
           columns + (words.empty() ? "" : "\t" + words) + "\n";
}

void writeRows(Context& context, std::string_view name, const std::vector<GuardRow>& rows) {
    if (!context.options.json) {
        for (const GuardRow& row : rows)
            context.out << lineOf(row);
        return;
    }
    JsonWriter& json = context.json;
    json.beginArray(name);
    for (const GuardRow& row : rows) {
        json.beginObject();
        json.text("account", row.account);
        json.text("domain", row.domain);
        json.number("rights", row.rights);
        json.beginArray("columns");
        for (const std::string_view column : tickedColumns(row))
            json.text({}, column);
        json.end();
        json.text("words", row.inWords());
        json.flag("weak", row.isWeak);
        json.end();
    }
    json.end();
}

/// The state after a command, with what there is to say about it.
void writeState(Context& context, const FolderState& state) {
    writeRows(context, "entries", state.rows);
    if (context.options.json) context.json.flag("weak", state.isWeak());
}

void writeCheck(Context& context, const shell::GuardCheck& check) {
    if (context.options.json) {
        context.json.beginObject();
        context.json.text("result", kResultNames[static_cast<std::size_t>(check.result)]);
        writeRows(context, "before", check.before);
    } else if (check.result == GuardResult::Changed || check.result == GuardResult::Damaged) {
        context.out << std::string(shell::kGuardBefore) + "\n";
        writeRows(context, {}, check.before);
        context.out << std::string(shell::kGuardNow) + "\n";
    }
    writeRows(context, "now", check.now.rows);
}

void tell(Context& context, platform::Icon icon, std::string_view text) {
    context.ui.message(icon, std::string(text));
}

}  // namespace

ExitCode runGuardShow(Context& context, const GuardArguments& arguments) {
    const auto run = startRun(context);
    FolderGuard guard(run->vault(), context.machine.accessLists);
    const auto state = guard.read();
    if (!state) return ExitCode::Differences;
    if (arguments.accept) guard.accept(*state);
    if (context.options.json) context.json.beginObject();
    writeState(context, *state);
    if (context.options.json) context.json.flag("accepted", arguments.accept);
    if (!state->isWeak()) return ExitCode::Done;
    tell(context, platform::Icon::Warning, shell::kGuardAdvice);
    return ExitCode::Differences;
}

ExitCode runGuardStrengthen(Context& context) {
    const auto run = startRun(context);
    FolderGuard guard(run->vault(), context.machine.accessLists);
    auto state = guard.read();
    if (!state) return ExitCode::Differences;
    const bool isWanted =
        state->isWeak() &&
        context.ui.ask(platform::Icon::Warning,
                       "Everybody but administrators and accounts with full control loses access to the "
                       "Corvalence folder.\n\nWould you like to strengthen it?",
                       false);
    const shell::Strengthening done = isWanted ? guard.strengthen() : shell::Strengthening();
    if (isWanted) state = guard.read();
    if (!state) return ExitCode::Failed;
    if (context.options.json) {
        context.json.beginObject();
        context.json.number("removed", done.removed);
    }
    writeState(context, *state);
    if (!done.failure.empty()) {
        tell(context, platform::Icon::Stop, "The permissions could not be strengthened: " + done.failure);
        return ExitCode::Failed;
    }
    if (done.removed > 0) tell(context, platform::Icon::Information, kAcceptHint);
    if (state->isWeak() && context.ui.wasUnanswered()) return ExitCode::Cancelled;
    return state->isWeak() ? ExitCode::Differences : ExitCode::Done;
}

ExitCode runGuardCheck(Context& context) {
    const auto run = startRun(context);
    const shell::GuardCheck check = FolderGuard(run->vault(), context.machine.accessLists).check();
    writeCheck(context, check);
    if (check.result == GuardResult::Same) return ExitCode::Done;
    if (check.result == GuardResult::NotChecked) return ExitCode::Differences;
    tell(context, platform::Icon::Warning, kAlarms[static_cast<std::size_t>(check.result)]);
    tell(context, platform::Icon::Information, kAcceptHint);
    return ExitCode::Differences;
}

}  // namespace corvalence::cli
