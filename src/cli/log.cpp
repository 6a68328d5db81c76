#include <algorithm>
#include <array>

#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/json_writer.h"
#include "cli/password_prompt.h"
#include "cli/session.h"
#include "schedule/log_files.h"
#include "schedule/log_view.h"

namespace corvalence::cli {

namespace {

using schedule::LogFiles;
using schedule::LogIcon;
using schedule::LogKind;
using schedule::LogView;

struct SignRow {
    std::string_view name;  // in documents
    char sign;
    std::string_view colour;  // of a terminal (ECMA-48)
};

constexpr std::array<SignRow, 9> kSigns = {{
    {"plain", ' ', ""},
    {"detail", '*', "36"},
    {"changed", '!', "33"},
    {"normal", ' ', ""},
    {"normal", ' ', ""},
    {"database", '=', "1"},
    {"added", '+', "32"},
    {"removed", '-', "31"},
    {"recycled", '~', "35"},
}};  // by LogIcon

/// A sealed log and the key that it is tried with.
class ShownLog {
  public:
    ShownLog(Context& context, const store::Vault& vault, std::string path, bool isWhole)
        : context_(context), vault_(vault), path_(std::move(path)), isWhole_(isWhole) {
        open(vault.session.key);
    }

    /// Asks for other passwords until one opens it, or the user leaves.
    void askForPassword() {
        while (!view_->isValid() && !context_.platform.process.cancelRequested() &&
               context_.ui.ask(platform::Icon::Warning,
                               path_ + "\n" + std::string(schedule::kAlternativePasswordQuestion), false)) {
            const auto password = PasswordPrompt(context_).readSecret("Alternative password: ");
            if (!password) break;
            use(*password);
        }
    }

    void use(const crypto::SecretText& password) {
        view_.reset();
        alternative_ = std::make_unique<crypto::SessionKey>(password.view());
        open(*alternative_);
    }

    bool isValid() const { return view_->isValid(); }

    ExitCode show() {
        if (!isWhole_ && view_->truncated() > 0 &&
            context_.ui.ask(platform::Icon::Warning, std::string(schedule::kFullValuesQuestion), false)) {
            isWhole_ = true;
            open(alternative_ ? *alternative_ : vault_.session.key);
        }
        context_.options.json ? writeJson() : writeText();
        if (context_.platform.process.cancelRequested()) return ExitCode::Cancelled;
        return view_->isValid() ? ExitCode::Done : ExitCode::Failed;
    }

  private:
    void open(const crypto::SessionKey& key) {
        const auto progress = context_.ui.openProgress("Analysing Log File...");
        view_.emplace(vault_.platform.files, path_, key, vault_.session.chains.LogIV,
                      LogView::Manner{!isWhole_, false}, progress.get());
    }

    template <typename Write>
    void forEachRow(Write&& write) {
        context_.ui.clearLine();
        view_->read(0, view_->rows(), [&](const schedule::LogRow& row) {
            write(row, kSigns[static_cast<std::size_t>(row.icon)]);
            return !context_.platform.process.cancelRequested();
        });
    }

    void writeText() {
        const bool isColoured = context_.terminal.outputIsTerminal();
        forEachRow([&](const schedule::LogRow& row, const SignRow& sign) {
            std::string text = std::string(1, sign.sign) + " " + shown(row.text);
            if (row.isTruncated) text += "...";
            if (isColoured && !sign.colour.empty())
                text = "\x1b[" + std::string(sign.colour) + "m" + text + "\x1b[0m";
            context_.out << text + "\n";
        });
    }

    void writeJson() {
        JsonWriter& json = context_.json;
        json.beginObject();
        json.path("log", path_);
        json.flag("valid", view_->isValid());
        json.beginArray("lines");
        forEachRow([&](const schedule::LogRow& row, const SignRow& sign) {
            json.beginObject();
            json.number("icon", static_cast<int>(row.icon));
            json.text("mark", sign.name);
            json.text("text", row.text);
            json.flag("truncated", row.isTruncated);
            json.end();
        });
        json.end();
    }

    Context& context_;
    const store::Vault& vault_;
    std::string path_;
    bool isWhole_;
    std::unique_ptr<crypto::SessionKey> alternative_;
    std::optional<LogView> view_;
};

ExitCode showOwn(Context& context, core::Run& run, LogKind kind, const LogArguments& arguments) {
    ShownLog log(context, run.vault(), LogFiles(run.vault()).path(kind), arguments.full);
    log.askForPassword();
    return log.show();
}

ExitCode tellDone(Context& context, std::string_view what, const std::string& text) {
    if (context.options.json) {
        context.json.beginObject();
        context.json.flag(what, true);
    } else {
        context.out << text + "\n";
    }
    return ExitCode::Done;
}

}  // namespace

ExitCode runLogShow(Context& context, const LogArguments& arguments) {
    const auto run = startRun(context);
    return showOwn(context, *run, LogKind::Master, arguments);
}

ExitCode runLogSession(Context& context, const LogArguments& arguments) {
    const auto run = startRun(context);
    LogFiles logs(run->vault());
    if (arguments.append) {
        logs.appendSession();
        return tellDone(context, "appended", "The session log was appended to the log file.");
    }
    if (arguments.overwrite) {
        if (!logs.overwriteMaster())
            throw CommandEnd(ExitCode::Differences,
                             "The session log is empty; the log file was left as it is.");
        return tellDone(context, "overwritten", "The session log took the place of the log file.");
    }
    return showOwn(context, *run, LogKind::Session, arguments);
}

ExitCode runLogExport(Context& context, const LogArguments& arguments) {
    const std::string path = absolutePath(context, arguments.path);
    const auto run = startRun(context);
    LogFiles logs(run->vault());
    if (const auto fault = logs.findExportFault(path)) throw CommandEnd(ExitCode::Failed, *fault);
    if (context.platform.files.status(path, platform::Follow::No) &&
        !context.ui.ask(platform::Icon::Warning, path + " is there already. Would you like to replace it?",
                        false))
        return ExitCode::Cancelled;
    logs.exportLog(arguments.session ? LogKind::Session : LogKind::Master, path);
    if (context.options.json) {
        context.json.beginObject();
        context.json.path("exported", path);
    } else {
        context.out << shown(path) + " exported.\n";
    }
    return ExitCode::Done;
}

ExitCode runLogImport(Context& context, const LogArguments& arguments) {
    const std::string path = absolutePath(context, arguments.path);
    const auto run = startRun(context);
    if (!context.platform.files.status(path, platform::Follow::Yes))
        throw base::FileFailure(base::Cause::FileNotFound, 0, path);
    ShownLog log(context, run->vault(), path, arguments.full);
    if (arguments.logPasswordFile) {
        const auto password = readPasswordFile(context, *arguments.logPasswordFile);
        if (!password) throw CommandEnd(ExitCode::Refused, "no password was given for the log");
        log.use(*password);
    } else {
        log.askForPassword();
    }
    if (log.isValid()) return log.show();
    if (context.platform.process.cancelRequested()) return ExitCode::Cancelled;
    throw CommandEnd(ExitCode::Refused,
                     path + " was not opened: it is no log file, or is encrypted with another password.");
}

ExitCode runLogDelete(Context& context) {
    const auto run = startRun(context);
    LogFiles logs(run->vault());
    const std::string path = logs.path(LogKind::Master);
    if (context.ui.ask(platform::Icon::Warning, "Everything in " + path + " will be lost. Delete log file?",
                       false)) {
        logs.empty(LogKind::Master);
        return tellDone(context, "deleted", "The log file was deleted.");
    }
    if (!context.options.json) context.out << "Nothing was deleted.\n";
    const bool isCancelled = context.platform.process.cancelRequested() || context.ui.wasUnanswered();
    return isCancelled ? ExitCode::Cancelled : ExitCode::Done;
}

}  // namespace corvalence::cli
