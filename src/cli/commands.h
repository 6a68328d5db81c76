#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/context.h"
#include "cli/criteria_options.h"
#include "crypto/digest_code.h"
#include "files/add_pipeline.h"
#include "files/changed_file_details.h"

namespace corvalence::cli {

// Every command: its arguments, and the function that does it in a file of the command's name. They throw
// CommandEnd, and whatever the logic throws.

struct CreateArguments {
    std::string kind;
    std::string name;
    std::optional<std::string> location;
    crypto::DigestCode digest = crypto::DigestCode::Sha256;
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

}  // namespace corvalence::cli
