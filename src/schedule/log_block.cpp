#include "schedule/log_block.h"

#include <algorithm>
#include <array>

#include "files/file_texts.h"
#include "platform/time_text.h"

namespace corvalence::schedule {

namespace {

namespace key = settings::key;

constexpr std::size_t kLineAcross = 85;

constexpr std::array<std::string_view, 3> kHeaderEndings = {
    " checked.", " does not exist!", " has been changed and cannot be checked!"};  // by BlockHeader

struct TotalRow {
    std::uint32_t files::CheckCounts::*count;
    std::string_view one;
    std::string_view more;
};

constexpr std::array<TotalRow, 4> kFileTotals = {{
    {&files::CheckCounts::checked, " File checked. ", " Files checked. "},
    {&files::CheckCounts::unchecked, " File unchecked. ", " Files unchecked. "},
    {&files::CheckCounts::changed, " File changed. ", " Files changed. "},
    {&files::CheckCounts::identical, " File unchanged. ", " Files unchanged. "},
}};

struct OrderRow {
    store::DatabaseKind kind;
    std::string_view name;     // of a counter or a remark
    std::string_view forNone;  // behind 0, where a check makes no remark
};

/// Totals in an order of their own, remarks among them; the other kinds have their counters and no more.
constexpr std::array<OrderRow, 8> kOrder = {{
    {store::DatabaseKind::Permissions, "checked", " File Permissions checked. "},
    {store::DatabaseKind::Permissions, "unchecked", " File Permissions unchecked. "},
    {store::DatabaseKind::Permissions, "changed", " File Permissions changed. "},
    {store::DatabaseKind::Permissions, "unchanged", " Files Permissions unchanged. "},
    {store::DatabaseKind::Services, "checked", " Services Checked. "},
    {store::DatabaseKind::Services, "changed", " Services Changed. "},
    {store::DatabaseKind::Services, "added", " New Services. "},
    {store::DatabaseKind::Services, "removed", " Removed Services. "},
}};

bool isOrdered(store::DatabaseKind kind, std::string_view name) {
    return std::any_of(kOrder.begin(), kOrder.end(),
                       [&](const OrderRow& row) { return row.kind == kind && row.name == name; });
}

struct Total {
    std::uint64_t count = 0;
    std::string_view text;
};

/// The totals of a check, and behind them what keeps it from being whole.
std::vector<Total> totalsOf(store::DatabaseKind kind, const components::CheckOutcome& outcome) {
    std::vector<Total> totals;
    for (const OrderRow& row : kOrder) {
        if (row.kind != kind) continue;
        Total total{0, row.forNone};
        for (const components::Count& count : outcome.counts)
            if (count.name == row.name) total = {count.count, count.text};
        for (const components::Remark& remark : outcome.remarks)
            if (remark.name == row.name) total = {remark.count, remark.text};
        totals.push_back(total);
    }
    for (const components::Count& count : outcome.counts)
        if (!isOrdered(kind, count.name)) totals.push_back({count.count, count.text});
    for (const components::Remark& remark : outcome.remarks)
        if (remark.isFault && !isOrdered(kind, remark.name)) totals.push_back({remark.count, remark.text});
    return totals;
}

std::string textOf(files::AttributeCode code) {
    const std::string_view text = files::attributeText(code);
    return std::string(text.empty() ? "Indeterminate" : text);
}

}  // namespace

MailPlan mailPlan(const settings::Configuration& configuration, bool modified) {
    if (!configuration.isOn(key::kEmailEnabled)) return MailPlan::Off;
    if (configuration.isOn(key::kEmailOnlyChanges) && !modified) return MailPlan::NoModification;
    return configuration.isOn(key::kEmailEncrypted) ? MailPlan::Sealed : MailPlan::Plain;
}

void LogBlock::line(std::string_view text) {
    sink_.write(std::string(text) + "\n");
}

void LogBlock::total(std::uint64_t count, std::string_view text) {
    line(std::to_string(count).append(text));
}

void LogBlock::begin(std::string_view database, BlockHeader header) {
    line("");
    line(platform::formatFileTime(clock_, clock_.now()));
    line("Database: " + std::string(database).append(kHeaderEndings[static_cast<std::size_t>(header)]));
    line("");
}

void LogBlock::changed(const files::ChangedFileDetails& details, const AutoRestoreResult& restored,
                       const base::PathRules& paths) {
    const files::FileRecord& then = details.then;
    const files::FileRecord& now = details.now;
    const auto timeText = [this](base::FileTime time) { return platform::formatFileTime(clock_, time); };
    const std::array<std::pair<std::string_view, std::string>, 12> fields = {{
        {"File name: ", std::string(paths.fileName(then.path))},
        {"File type: ", details.type},
        {"Digest value when added: ", then.digest},
        {"Digest value now: ", now.digest},
        {"Size when added: ", files::formatSizeText(then.size)},
        {"Size now: ", files::formatSizeText(details.sizeNow)},
        {"Attributes when added: ", textOf(then.attributes)},
        {"Attributes now: ", textOf(now.attributes)},
        {"Creation time when added: ", timeText(then.created)},
        {"Creation time now: ", timeText(now.created)},
        {"Modification time when added: ", timeText(then.written)},
        {"Modification time now: ", timeText(now.written)},
    }};
    line(then.path + " has been changed!");
    for (const auto& [label, value] : fields)
        line(std::string(label) + value);
    if (!restored.isOn) {
        line("Auto restore turned off.");
    } else {
        const bool isMoved = restored.changedFile == files::RestoreChoice::MoveChangedFile;
        line("Auto restore enabled.");
        line(then.path + (restored.isRestored ? " successfully restored." : " could not be restored."));
        if (!restored.isRestored) {
            line("Reason: " + restored.reason);
        } else {
            line(isMoved ? "Changed file moved to 'Changed Files' folder." : "Changed file deleted.");
        }
    }
    line("");
}

void LogBlock::unchecked(std::string_view path, std::string_view reason) {
    line("Couldn't check " + std::string(path) + "\nReason: " + std::string(reason));
}

void LogBlock::summary(const files::CheckCounts& counts) {
    for (const TotalRow& row : kFileTotals) {
        const std::uint32_t count = counts.*row.count;
        total(count, count == 1 ? row.one : row.more);
    }
    line("");
    line("");
}

void LogBlock::summary(store::DatabaseKind kind, const components::CheckOutcome& outcome) {
    for (const components::Remark& remark : outcome.remarks) {
        if (!remark.isFault) continue;
        for (const files::UnreadableEntry& detail : remark.details)
            unchecked(detail.path, detail.reason);
    }
    for (const Total& each : totalsOf(kind, outcome))
        total(each.count, each.text);
    line("");
    line("");
}

void LogBlock::end(MailPlan mail) {
    switch (mail) {
        case MailPlan::Off:
            line("Email notification turned off.");
            break;
        case MailPlan::NoModification:
            line("Email notification enabled only for modifications.");
            break;
        case MailPlan::Plain:
        case MailPlan::Sealed:
            line("Email notification enabled.");
            line(mail == MailPlan::Plain ? "Sending plaintext Email."
                                         : "Sending encrypted Email attachment.");
            break;
    }
    line("");
    line(std::string(kLineAcross, '_'));
}

}  // namespace corvalence::schedule
