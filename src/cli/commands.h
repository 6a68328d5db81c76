#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "cli/context.h"
#include "cli/criteria_options.h"
#include "crypto/digest_code.h"
#include "files/add_pipeline.h"
#include "files/changed_file_details.h"
#include "schedule/schedule_settings.h"

namespace corvalence::cli {

// Every command: its arguments, and the function that does it in a file of the command's name. They throw
// CommandEnd, and whatever the logic throws.

struct CreateArguments {
    std::string kind;
    std::string name;
    std::optional<std::string> location;
    crypto::DigestCode digest = crypto::DigestCode::Sha256;
    std::optional<files::AddBackups> backups;  // of a Complete System
    bool ignoreFailed = false;
};

struct ListArguments {
    bool recent = false;
};

struct DatabaseArguments {
    std::string database;
};

struct AddArguments {
    std::string database;
    std::vector<std::string> paths;
    std::optional<std::string> location;  // "*": every drive
    CriteriaTexts criteria;
    bool notifyListed = false;
    bool ignoreFailed = false;
    files::AddBackups backups = files::AddBackups::Configured;
};

struct RemoveArguments {
    std::string database;
    std::vector<std::string> paths;
    bool all = false;
    std::optional<std::string> location;  // "*": any
    CriteriaTexts criteria;
};

struct CheckArguments {
    std::string database;
    std::optional<files::Reaction> reaction;  // empty: ask where there is a terminal, else ignore
    files::RestoreChoice changedFile = files::RestoreChoice::MoveChangedFile;
    std::vector<std::string> components;  // of a Complete System, by the console names of their reports
};

struct RestoreArguments {
    std::string database;
    std::string file;
    files::RestoreChoice changedFile = files::RestoreChoice::MoveChangedFile;
};

struct AnalyseArguments {
    std::string database;
    std::string file;
    bool hex = false;
};

struct PasswordArguments {
    std::vector<std::string> reports;
};

struct ConfigArguments {
    std::string key;
    std::string text;
};

struct ReportArguments {
    std::optional<std::string> kind;  // console name
    std::string path;
    std::size_t page = 1;
};

/// What Auto Restore does, as the console names it.
enum class AutoRestoreName { Off, Delete, Move };
inline constexpr std::array<std::string_view, 3> kAutoRestoreNames = {"off", "delete", "move"};
inline constexpr std::array<std::string_view, 2> kReactionNames = {"continuous", "standard"};
AutoRestoreName autoRestoreName(const schedule::ScheduleSettings& settings);

struct ScheduleArguments {
    std::vector<std::string> databases;
    bool damaged = false;
    std::optional<std::string> interval;
    std::optional<schedule::CheckReaction> reaction;
    std::optional<AutoRestoreName> autoRestore;
};

struct LogArguments {
    std::string path;
    std::optional<std::string> logPasswordFile;
    bool full = false;  // no value is truncated
    bool session = false;
    bool append = false;
    bool overwrite = false;
};

struct GuardArguments {
    bool accept = false;
};

ExitCode runInit(Context& context);
ExitCode runCreate(Context& context, const CreateArguments& arguments);
ExitCode runDatabases(Context& context, const ListArguments& arguments);
ExitCode runDetails(Context& context, const DatabaseArguments& arguments);
ExitCode runFiles(Context& context, const DatabaseArguments& arguments);
ExitCode runAdd(Context& context, const AddArguments& arguments);
ExitCode runRemove(Context& context, const RemoveArguments& arguments);
ExitCode runCheck(Context& context, const CheckArguments& arguments);
ExitCode runRestore(Context& context, const RestoreArguments& arguments);
ExitCode runAnalyse(Context& context, const AnalyseArguments& arguments);
ExitCode runDelete(Context& context, const DatabaseArguments& arguments);
ExitCode runConfigList(Context& context);
ExitCode runConfigGet(Context& context, const ConfigArguments& arguments);
ExitCode runConfigSet(Context& context, const ConfigArguments& arguments);
ExitCode runPassword(Context& context, const PasswordArguments& arguments);
ExitCode runReportShow(Context& context, const ReportArguments& arguments);
ExitCode runReportSave(Context& context, const ReportArguments& arguments);
ExitCode runReportOpen(Context& context, const ReportArguments& arguments);
ExitCode runMailTest(Context& context);
ExitCode runReset(Context& context);
ExitCode runGuardShow(Context& context, const GuardArguments& arguments);
ExitCode runGuardStrengthen(Context& context);
ExitCode runGuardCheck(Context& context);
ExitCode runSelfCheck(Context& context);
ExitCode runScheduleList(Context& context);
ExitCode runScheduleAdd(Context& context, const ScheduleArguments& arguments);
ExitCode runScheduleRemove(Context& context, const ScheduleArguments& arguments);
ExitCode runScheduleInterval(Context& context, const ScheduleArguments& arguments);
ExitCode runScheduleReaction(Context& context, const ScheduleArguments& arguments);
ExitCode runLogShow(Context& context, const LogArguments& arguments);
ExitCode runLogSession(Context& context, const LogArguments& arguments);
ExitCode runLogExport(Context& context, const LogArguments& arguments);
ExitCode runLogImport(Context& context, const LogArguments& arguments);
ExitCode runLogDelete(Context& context);
/// Checks by the schedule until a signal comes.
ExitCode runUnattended(Context& context);

}  // namespace corvalence::cli
