#include "cli/command_line.h"

#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands.h"
#include "cli/session.h"
#include "reports/report_kind.h"

namespace corvalence::cli {

namespace {

constexpr std::string_view kAsk = "ask";
constexpr std::array<std::string_view, 2> kChangedFileNames = {"delete", "move"};  // by RestoreChoice

struct BackupsRow {
    std::string_view name;
    files::AddBackups backups;
};
constexpr std::array<BackupsRow, 3> kBackups = {{{"none", files::AddBackups::None},
                                                 {"plain", files::AddBackups::Plain},
                                                 {"sealed", files::AddBackups::Sealed}}};

/// A name out of a list, told with the list where it is none of them.
CLI::Validator oneOf(std::vector<std::string> names) {
    return CLI::Validator(
        [names](std::string& text) {
            if (std::find(names.begin(), names.end(), text) != names.end()) return std::string();
            return "\"" + text + "\" is none of: " + CLI::detail::join(names, ", ");
        },
        CLI::detail::join(names, "|"));
}

// The parser takes "[a,b]" for a list wherever several values may stand; a file may well have that name. Such
// arguments go through it behind a guard.
constexpr char kGuard = '\x1F';

std::string guarded(const std::string& argument) {
    const bool needsGuard = !argument.empty() && (argument.front() == '[' || argument.front() == kGuard);
    return needsGuard ? kGuard + argument : argument;
}

std::string unguarded(const std::string& argument) {
    return !argument.empty() && argument.front() == kGuard ? argument.substr(1) : argument;
}

/// An option or, named in capitals, an argument that takes text as it is.
template <typename Value>
CLI::Option* text(CLI::App& command, const std::string& name, Value& value, const std::string& meaning) {
    return command.add_option(name, value, meaning)->transform(unguarded, "");
}

/// Declares the commands; each stores what it is called with in the invocation.
class Commands {
  public:
    Commands(CLI::App& app, Invocation& invocation) : app_(app), invocation_(invocation) {
        plain("init", "Make the installation: data folders, settings, empty sealed files", runInit);
        create();
        databases();
        onDatabase("details", "What is known of a database", runDetails);
        onDatabase("files", "The files that a database lists", runFiles);
        add();
        remove();
        check();
        restore();
        analyse();
        onDatabase("delete", "Delete a database, its backup and the backups of its files", runDelete);
        report();
        schedule();
        log();
        config();
        mail();
        password();
        guard();
        plain("self-check", "Compare the programs with the digests of their build", runSelfCheck);
        plain("run", "Check by the schedule, unattended, until a signal comes", runUnattended);
        plain("reset", "After a forgotten password: empty index, schedule and logs", runReset);
    }

  private:
    using PlainCommand = ExitCode (*)(Context&);
    template <typename Arguments>
    using Command = ExitCode (*)(Context&, const Arguments&);

    static CLI::App* declare(CLI::App& parent, const std::string& name, const std::string& does) {
        CLI::App* command = parent.add_subcommand(name, does);
        command->footer("Options of every command:  corvalencectl --help");
        return command;
    }

    void plain(const std::string& name, const std::string& does, PlainCommand command) {
        plain(app_, name, does, command);
    }
    void plain(CLI::App& parent, const std::string& name, const std::string& does, PlainCommand command) {
        declare(parent, name, does)->callback([this, command] { invocation_.command = command; });
    }

    template <typename Arguments>
    void call(CLI::App* command, std::shared_ptr<Arguments> arguments, Command<Arguments> run) {
        command->callback([this, arguments, run] {
            invocation_.command = [arguments, run](Context& context) { return run(context, *arguments); };
        });
    }

    static void database(CLI::App* command, std::string& value) {
        text(*command, "DATABASE", value, "Full path, or file name where only one database has it")
            ->required();
    }

    static void listedFile(CLI::App* command, std::string& value) {
        text(*command, "FILE", value, "Path of the listed file")->required();
    }

    static void changedFile(CLI::App* command, files::RestoreChoice& value) {
        command
            ->add_option_function<std::string>(
                "--changed-file",
                [&value](const std::string& name) {
                    value = name == kChangedFileNames[0] ? files::RestoreChoice::DeleteChangedFile
                                                         : files::RestoreChoice::MoveChangedFile;
                },
                "What becomes of the changed file when the original is put back (default: move, to the "
                "folder of changed files)")
            ->check(oneOf({kChangedFileNames.begin(), kChangedFileNames.end()}));
    }

    void onDatabase(const std::string& name, const std::string& does, Command<DatabaseArguments> run) {
        CLI::App* command = declare(app_, name, does);
        const auto arguments = std::make_shared<DatabaseArguments>();
        database(command, arguments->database);
        call(command, arguments, run);
    }

    void databases() {
        CLI::App* command = declare(app_, "databases", "List every database of the index");
        const auto arguments = std::make_shared<ListArguments>();
        command->add_flag("--recent", arguments->recent, "Only those opened last, the latest first");
        call(command, arguments, runDatabases);
    }

    void create() {
        CLI::App* command = declare(app_, "create", "Make a database");
        const auto arguments = std::make_shared<CreateArguments>();
        text(*command, "KIND", arguments->kind, kindNames())->required();
        text(*command, "NAME", arguments->name, "File name of the database")->required();
        text(*command, "--location", arguments->location,
             "Folder of the database (default: the data folder for databases)");
        std::vector<std::string> names;
        for (const crypto::DigestKind& kind : crypto::kDigestKinds)
            names.emplace_back(kind.consoleName);
        command
            ->add_option_function<std::string>(
                "--digest",
                [&digest = arguments->digest](const std::string& name) {
                    for (const crypto::DigestKind& kind : crypto::kDigestKinds)
                        if (kind.consoleName == name) digest = kind.code;
                },
                "Digest of the listed files (default: sha256)")
            ->check(oneOf(names));
        backups(
            command, [&choice = arguments->backups](files::AddBackups made) { choice = made; },
            "Of a Complete System: backups of the files (default: none)");
        command->add_flag(
            "--ignore-failed", arguments->ignoreFailed,
            "Of a Complete System: count the files that cannot be added, but do not tell each one");
        call(command, arguments, runCreate);
    }

    static void backups(CLI::App* command, const std::function<void(files::AddBackups)>& choose,
                        const std::string& meaning) {
        std::vector<std::string> names;
        for (const BackupsRow& row : kBackups)
            names.emplace_back(row.name);
        command
            ->add_option_function<std::string>(
                "--backups",
                [choose](const std::string& name) {
                    for (const BackupsRow& row : kBackups)
                        if (row.name == name) choose(row.backups);
                },
                meaning)
            ->check(oneOf(names));
    }

    static void criteria(CLI::App* command, CriteriaTexts& texts) {
        text(*command, "--size", texts.size, "larger:N, smaller:N, equal:N or between:N:N bytes");
        text(*command, "--created", texts.created,
             "before:T, after:T, at:T or between:T:T, T as 2024-02-29T12:30:05");
        text(*command, "--modified", texts.modified, "The same of the last modification");
        text(*command, "--type", texts.type, "Extension; empty for files without one, * for any");
        text(
            *command, "--attributes", texts.attributes,
            "List of read-only, hidden, system, archive, compressed, encrypted, each with + where others may "
            "be set as well; any; none");
        text(*command, "--contents", texts.contents, "Text that the file holds");
        command->add_flag("--match-case", texts.matchCase, "Letters of --contents in this case only");
        command->add_flag("--whole-word", texts.wholeWord, "--contents between blanks or the file's ends");
        command->add_flag("--text-only", texts.textOnly,
                          "Search no further than the first byte that is no text");
        text(*command, "--abilities", texts.abilities, "List of network, system, cookies: any of them");
    }

    void add() {
        CLI::App* command = declare(app_, "add", "Add files to a database");
        const auto arguments = std::make_shared<AddArguments>();
        database(command, arguments->database);
        text(*command, "PATH", arguments->paths, "Files by name");
        text(*command, "--location", arguments->location,
             "Folder: add the files below it, all or those that meet the criteria; * for every drive");
        criteria(command, arguments->criteria);
        command->add_flag("--notify-listed", arguments->notifyListed,
                          "Tell each file that is listed already");
        command->add_flag("--ignore-failed", arguments->ignoreFailed,
                          "Count the files that cannot be added, but do not tell each one");
        backups(
            command, [&choice = arguments->backups](files::AddBackups made) { choice = made; },
            "Backups that this command makes, whatever the settings say");
        call(command, arguments, runAdd);
    }

    void remove() {
        CLI::App* command = declare(app_, "remove", "Take files out of a database, with their backups");
        const auto arguments = std::make_shared<RemoveArguments>();
        database(command, arguments->database);
        text(*command, "PATH", arguments->paths, "Listed files by name");
        command->add_flag("--all", arguments->all, "Every listed file");
        text(*command, "--location", arguments->location,
             "Folder: the listed files below it, all or those that meet the criteria; * for any");
        criteria(command, arguments->criteria);
        call(command, arguments, runRemove);
    }

    void check() {
        CLI::App* command = declare(app_, "check", "Compare what a database holds with the machine");
        const auto arguments = std::make_shared<CheckArguments>();
        database(command, arguments->database);
        std::vector<std::string> names = {std::string(kAsk)};
        for (const files::ReactionRow& row : files::kReactions)
            names.emplace_back(row.consoleName);
        command
            ->add_option_function<std::string>(
                "--on-change",
                [&reaction = arguments->reaction](const std::string& name) {
                    for (const files::ReactionRow& row : files::kReactions)
                        if (row.consoleName == name) reaction = row.reaction;
                },
                "What is done about a changed file (default: ask on a terminal, else ignore)")
            ->check(oneOf(names));
        changedFile(command, arguments->changedFile);
        std::vector<std::string> components;
        for (const reports::ReportRow& row : reports::reportRows())
            components.emplace_back(row.consoleName);
        command
            ->add_option("--components", arguments->components,
                         "Of a Complete System: what is checked, separated by commas (default: all)")
            ->delimiter(',')
            ->allow_extra_args(false)
            ->check(oneOf(components));
        call(command, arguments, runCheck);
    }

    void restore() {
        CLI::App* command = declare(app_, "restore", "Put one file back from its backup");
        const auto arguments = std::make_shared<RestoreArguments>();
        database(command, arguments->database);
        listedFile(command, arguments->file);
        changedFile(command, arguments->changedFile);
        call(command, arguments, runRestore);
    }

    void analyse() {
        CLI::App* command = declare(app_, "analyse", "Show where a file differs from its backup");
        const auto arguments = std::make_shared<AnalyseArguments>();
        database(command, arguments->database);
        listedFile(command, arguments->file);
        command->add_flag("--hex", arguments->hex, "Rows of 32 bytes in hexadecimal, not of 128 as text");
        call(command, arguments, runAnalyse);
    }

    void password() {
        CLI::App* command = declare(app_, "password", "Change the password of the installation");
        const auto arguments = std::make_shared<PasswordArguments>();
        text(*command, "--report", arguments->reports, "Saved reports that are brought to the new password");
        call(command, arguments, runPassword);
    }

    void report() {
        CLI::App* command = declare(app_, "report", "The reports of the last checks, or a saved one");
        command->require_subcommand(1);
        CLI::App* show = declare(*command, "show", "A page of the last check's report of a kind, or of all");
        const auto shown = std::make_shared<ReportArguments>();
        text(*show, "KIND", shown->kind,
             "file-contents, directory-structure, permissions, registry or services");
        page(show, shown->page);
        call(show, shown, runReportShow);
        CLI::App* save =
            declare(*command, "save", "Save the reports, sealed, each with its letter behind PATH");
        const auto saved = std::make_shared<ReportArguments>();
        text(*save, "PATH", saved->path, "File name without the letter")->required();
        call(save, saved, runReportSave);
        CLI::App* open = declare(*command, "open", "A page of a saved report");
        const auto opened = std::make_shared<ReportArguments>();
        text(*open, "PATH", opened->path, "File name with the letter")->required();
        page(open, opened->page);
        call(open, opened, runReportOpen);
    }

    static void page(CLI::App* command, std::size_t& number) {
        command->add_option("--page", number, "Number of the page (default: 1)")->check(CLI::PositiveNumber);
    }

    void schedule() {
        CLI::App* command = declare(app_, "schedule", "The databases that are checked by the clock, and how");
        command->require_subcommand(1);
        plain(*command, "list", "Every scheduled database with its last check", runScheduleList);
        const auto added = std::make_shared<ScheduleArguments>();
        CLI::App* add = declare(*command, "add", "Put databases at the end of the schedule");
        text(*add, "DATABASE", added->databases, "Full paths, or file names")->required();
        call(add, added, runScheduleAdd);
        const auto removed = std::make_shared<ScheduleArguments>();
        CLI::App* remove =
            declare(*command, "remove", "Take databases out, and all whose paths begin like theirs");
        text(*remove, "DATABASE", removed->databases, "Full paths, or file names");
        remove->add_flag("--damaged", removed->damaged, "Lines that name no database");
        call(remove, removed, runScheduleRemove);
        const auto timed = std::make_shared<ScheduleArguments>();
        CLI::App* interval = declare(*command, "interval", "Show or set the time between two rounds");
        text(*interval, "HH:MM:SS", timed->interval, "Up to 24:59:59; 0:0:0 for no checks");
        call(interval, timed, runScheduleInterval);
        reaction(declare(*command, "reaction", "Show or set what a scheduled check does about changes"));
    }

    void reaction(CLI::App* command) {
        const auto arguments = std::make_shared<ScheduleArguments>();
        command
            ->add_option_function<std::string>(
                "REACTION",
                [&reaction = arguments->reaction](const std::string& name) {
                    reaction = name == kReactionNames[0] ? schedule::CheckReaction::Continuous
                                                         : schedule::CheckReaction::Standard;
                },
                "continuous: a log, nobody is asked; standard: asks at changed files")
            ->check(oneOf({kReactionNames.begin(), kReactionNames.end()}));
        command
            ->add_option_function<std::string>(
                "--auto-restore",
                [&restore = arguments->autoRestore](const std::string& name) {
                    const auto found = std::find(kAutoRestoreNames.begin(), kAutoRestoreNames.end(), name);
                    restore = static_cast<AutoRestoreName>(found - kAutoRestoreNames.begin());
                },
                "Changed files are restored, and what they were changed to is deleted or moved")
            ->check(oneOf({kAutoRestoreNames.begin(), kAutoRestoreNames.end()}));
        call(command, arguments, runScheduleReaction);
    }

    void log() {
        CLI::App* command = declare(app_, "log", "The log of scheduled checks");
        command->require_subcommand(1);
        onLog(*command, "show", "The log file", runLogShow);
        const auto [session, shown] =
            onLog(*command, "session", "The log of the session in progress", runLogSession);
        session->add_flag("--append", shown->append, "Append it to the log file, and empty it");
        session
            ->add_flag("--overwrite", shown->overwrite, "Put it in the place of the log file, and empty it")
            ->excludes("--append");
        CLI::App* exported = declare(*command, "export", "Copy the log file, sealed as it is");
        const auto copied = std::make_shared<LogArguments>();
        text(*exported, "PATH", copied->path, "File to be written")->required();
        exported->add_flag("--session", copied->session, "The session log instead");
        call(exported, copied, runLogExport);
        const auto [import, foreign] =
            onLog(*command, "import", "An exported log, or one from a mail", runLogImport);
        text(*import, "PATH", foreign->path, "File of the log")->required();
        text(*import, "--log-password-file", foreign->logPasswordFile,
             "File whose first line is the password of the log, - for standard input");
        plain(*command, "delete", "Empty the log file", runLogDelete);
    }

    std::pair<CLI::App*, std::shared_ptr<LogArguments>> onLog(CLI::App& parent, const std::string& name,
                                                              const std::string& does,
                                                              Command<LogArguments> run) {
        CLI::App* command = declare(parent, name, does);
        auto arguments = std::make_shared<LogArguments>();
        command->add_flag("--full", arguments->full, "Values beyond 10 KB to their ends");
        call(command, arguments, run);
        return {command, arguments};
    }

    void config() {
        CLI::App* command = declare(app_, "config", "Show or change the configuration");
        command->require_subcommand(1);
        plain(*command, "list", "Every key with its text and its meaning", runConfigList);
        configKey(declare(*command, "get", "The text of a key"), false, runConfigGet);
        configKey(declare(*command, "set", "Give a key another text"), true, runConfigSet);
    }

    void guard() {
        CLI::App* command = declare(app_, "guard", "Who has access to the folder of the installation");
        command->require_subcommand(1);
        CLI::App* show = declare(*command, "show", "Every entry of its access list");
        const auto arguments = std::make_shared<GuardArguments>();
        show->add_flag("--accept", arguments->accept, "Store this state as the accepted one");
        call(show, arguments, runGuardShow);
        plain(*command, "strengthen", "Take partial access away from all but administrators",
              runGuardStrengthen);
        plain(*command, "check", "Compare it with the accepted state", runGuardCheck);
    }

    void mail() {
        CLI::App* command = declare(app_, "mail", "The mails about scheduled checks");
        command->require_subcommand(1);
        plain(*command, "test", "Send one mail to the recipient of the settings", runMailTest);
    }

    void configKey(CLI::App* command, bool withText, Command<ConfigArguments> run) {
        const auto arguments = std::make_shared<ConfigArguments>();
        text(*command, "KEY", arguments->key, "\"Config5\" or \"backup-files\"")->required();
        if (withText) text(*command, "TEXT", arguments->text, "The new text")->required();
        call(command, arguments, run);
    }

    CLI::App& app_;
    Invocation& invocation_;
};

void addGlobalOptions(CLI::App& app, Options& options) {
    text(app, "--home", options.home, "Folder of the installation (default: the user's own)");
    text(app, "--password-file", options.passwordFile,
         "File whose first line is the password, - for standard input; for `password`, lines 2 and 3 are the "
         "new one and its confirmation");
    app.add_flag("--json", options.json, "Results as one JSON document");
    app.add_flag("--quiet", options.quiet, "No progress and no information messages");
    app.add_flag("--yes", options.yes, "Answer yes to every question");
    app.add_option_function<unsigned>(
        "--wait", [&options](unsigned seconds) { options.wait = std::chrono::seconds(seconds); },
        "Seconds to wait for another program at work on the installation (default: 10)");
    app.set_version_flag("--version", "corvalencectl " CORVALENCE_VERSION);
}

}  // namespace

std::variant<Invocation, ExitCode> parseCommandLine(const std::vector<std::string>& arguments,
                                                    std::ostream& out, std::ostream& err) {
    Invocation invocation;
    CLI::App app("Records what files hold in password-sealed databases and tells what has changed.",
                 "corvalencectl");
    app.allow_windows_style_options(false);
    app.fallthrough();  // the options of every command may stand behind it
    app.require_subcommand(1);
    addGlobalOptions(app, invocation.options);
    const Commands commands(app, invocation);
    try {
        std::vector<std::string> fromTheEnd;  // the order in which the parser takes them
        std::transform(arguments.rbegin(), arguments.rend(), std::back_inserter(fromTheEnd), guarded);
        app.parse(std::move(fromTheEnd));
    } catch (const CLI::Success& finished) {
        app.exit(finished, out, err);
        return ExitCode::Done;
    } catch (const CLI::Error& error) {
        app.exit(error, out, err);
        return ExitCode::Usage;
    }
    return invocation;
}

}  // namespace corvalence::cli
