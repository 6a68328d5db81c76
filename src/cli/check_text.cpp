#include "cli/changed_file_text.h"
#include "cli/check_report.h"
#include "cli/console_text.h"

namespace corvalence::cli {

namespace {

std::string actionText(files::Reaction reaction, bool done) {
    switch (reaction) {
        case files::Reaction::Ignore:
            return "Ignored.";
        case files::Reaction::UpdateWithBackup:
            return done ? "Database updated, new backup." : "Database not updated.";
        case files::Reaction::UpdateKeepBackup:
            return done ? "Database updated, backup unchanged." : "Database not updated.";
        case files::Reaction::Restore:
            return done ? "Restored." : "Not restored.";
    }
    return {};
}

class CheckText : public CheckReport {
  public:
    CheckText(Context& context, bool alreadyShown) : context_(context), alreadyShown_(alreadyShown) {}

    void begin(const store::OpenDatabaseContext&) override {}

    void unchecked(const std::string& path, const std::string& reason) override {
        if (!alreadyShown_) write("Couldn't check " + shown(path) + "  Reason: " + reason + "\n");
    }

    void changed(const files::ChangedFileDetails& details, files::Reaction reaction, bool done,
                 const std::string& message) override {
        context_.ui.clearLine();
        std::string text = "    Action: " + actionText(reaction, done);
        if (!alreadyShown_) {
            context_.out << shown(details.then.path) + " has been changed!\n";
            writeChangedFile(context_.out, details, context_.platform.clock);
            if (!message.empty()) text += " " + shown(message, LineFeeds::Keep);
        }
        write(text + "\n");
    }

    void note(const std::string& path, const std::string& text) override {
        write("    " + shown(path) + ": " + shown(text, LineFeeds::Keep) + "\n");
    }

    void finish(const files::CheckSummary& summary) override {
        const files::CheckCounts& counts = summary.counts;
        if (counts.cancelled) {
            write("\nThe check was cancelled: " + std::to_string(counts.checked + counts.unchecked) + " of " +
                  std::to_string(counts.listed) + " files were looked at.\n");
            return;
        }
        write("\nChecking Summary.\nDatabase: " + shown(summary.database) + "\nChecked: " +
              summary.checkedAt + "\nTotal number of files listed: " + std::to_string(counts.listed) +
              "\nFiles Checked: " + std::to_string(counts.checked) + "\nFiles Unchecked: " +
              std::to_string(counts.unchecked) + "\nFiles Changed: " + std::to_string(counts.changed) +
              "\nFiles Identical: " + std::to_string(counts.identical) + "\n");
    }

  private:
    void write(const std::string& text) {
        context_.ui.clearLine();
        context_.out << text << std::flush;
    }

    Context& context_;
    bool alreadyShown_;
};

}  // namespace

std::unique_ptr<CheckReport> makeCheckText(Context& context, bool alreadyShown) {
    return std::make_unique<CheckText>(context, alreadyShown);
}

}  // namespace corvalence::cli
