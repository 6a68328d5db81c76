#include "cli/check_report.h"
#include "cli/json_writer.h"
#include "cli/record_json.h"
#include "cli/session.h"

namespace corvalence::cli {

namespace {

std::string_view actionName(files::Reaction reaction, bool done) {
    switch (reaction) {
        case files::Reaction::Ignore:
            return "ignored";
        case files::Reaction::UpdateWithBackup:
        case files::Reaction::UpdateKeepBackup:
            return done ? "updated" : "not updated";
        case files::Reaction::Restore:
            return done ? "restored" : "not restored";
    }
    return {};
}

/// The counters are known last and stand behind the files. What is told of a changed file after it, such as
/// where its old self went, joins its message.
class CheckJson : public CheckReport {
  public:
    explicit CheckJson(Context& context) : json_(context.json) {}

    void begin(const store::OpenDatabaseContext& database) override {
        json_.beginObject();
        json_.path("database", database.path());
        json_.text("kind", kindName(database.record.kind));
        json_.beginArray("files");
    }

    void unchecked(const std::string& path, const std::string& reason) override {
        endPending();
        json_.beginObject();
        json_.path("path", path);
        json_.text("status", "unchecked");
        json_.text("reason", reason);
        json_.end();
    }

    void changed(const files::ChangedFileDetails& details, files::Reaction reaction, bool done,
                 const std::string& message) override {
        endPending();
        json_.beginObject();
        json_.path("path", details.then.path);
        json_.text("status", "changed");
        json_.beginObject("then");
        writeRecordMembers(json_, details.then, details.then.size);
        json_.end();
        json_.beginObject("now");
        writeRecordMembers(json_, details.now, details.sizeNow);
        json_.end();
        json_.text("action", actionName(reaction, done));
        pendingPath_ = details.then.path;
        pendingMessage_ = message;
    }

    void note(const std::string& path, const std::string& text) override {
        if (path == pendingPath_) {
            if (!pendingMessage_.empty()) pendingMessage_ += "\n";
            pendingMessage_ += text;
        } else {
            notes_.emplace_back(path, text);
        }
    }

    void finish(const files::CheckSummary& summary) override {
        endPending();
        json_.end();
        if (!notes_.empty()) writeNotes();
        const files::CheckCounts& counts = summary.counts;
        json_.number("listed", counts.listed);
        json_.number("checked", counts.checked);
        json_.number("unchecked", counts.unchecked);
        json_.number("changed", counts.changed);
        json_.number("identical", counts.identical);
        json_.flag("cancelled", counts.cancelled);
    }

  private:
    void endPending() {
        if (pendingPath_.empty()) return;
        json_.text("message", pendingMessage_);
        json_.end();
        pendingPath_.clear();
    }

    void writeNotes() {
        json_.beginArray("notes");
        for (const auto& [path, text] : notes_) {
            json_.beginObject();
            json_.path("path", path);
            json_.text("text", text);
            json_.end();
        }
        json_.end();
    }

    JsonWriter& json_;
    std::string pendingPath_;  // of the changed file whose object is still open
    std::string pendingMessage_;
    std::vector<std::pair<std::string, std::string>> notes_;
};

}  // namespace

std::unique_ptr<CheckReport> makeCheckJson(Context& context) {
    return std::make_unique<CheckJson>(context);
}

}  // namespace corvalence::cli
