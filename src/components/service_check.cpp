#include "components/service_check.h"

#include <algorithm>
#include <unordered_set>

#include "components/service_report.h"

namespace corvalence::components {

ServiceCheck::ServiceCheck(store::Vault& vault, const Machine& machine, const std::string&,
                           BaselineFiles files)
    : vault_(vault),
      machine_(machine),
      baseline_(std::move(files)),
      isComplete_(vault.configuration.isOn(settings::key::kCompleteWalk)) {}

bool ServiceCheck::compare(platform::Progress& progress, reports::ReportSink& report) {
    lines_ = SealedLines(vault_, baseline_.front(), {kServiceLineLimit, isServiceRecord}, &progress);
    auto live = listServices(machine_.services, progress);
    if (!live) return false;
    live_ = *std::move(live);
    report_ = &report;
    for (std::size_t line = 0; line < lines_.size(); ++line) {
        if (progress.cancelled()) return false;
        last_[serviceName(lines_[line])] = line;
    }
    const std::size_t count = live_.records.size();
    for (std::size_t at = 0; at < count; ++at) {
        if (progress.cancelled()) return false;
        isComplete_ ? compareByName(live_.records[at]) : compareInStep(live_.records[at]);
        progress.bar(static_cast<std::uint32_t>(platform::Progress::kSteps * (at + 1) / count));
    }
    findRemoved(progress);
    return !progress.cancelled();
}

void ServiceCheck::compareInStep(std::string_view live) {
    const std::string_view line = next_ < lines_.size() ? lines_[next_++] : std::string_view();
    if (line == live) return;
    const std::string_view name = serviceName(live);
    if (!line.empty() && serviceName(line) == name) {
        change(line, live);
    } else {
        displaced(live, name);
    }
}

void ServiceCheck::displaced(std::string_view live, std::string_view name) {
    const auto last = last_.find(name);
    if (next_ == lines_.size()) {
        ++behindEnd_;
    } else if (last == last_.end() || last->second < next_) {
        add(live, service_code::kAdded);
        ++added_;
    } else {
        ++byName_;
        if (lines_[last->second] != live) unreported_.emplace_back(name);
    }
    // From here on the service in hand meets the first line again.
    next_ = 0;
}

void ServiceCheck::compareByName(std::string_view live) {
    const auto line = last_.find(serviceName(live));
    if (line == last_.end()) {
        add(live, service_code::kAdded);
        ++added_;
    } else if (lines_[line->second] != live) {
        change(lines_[line->second], live);
    }
}

void ServiceCheck::findRemoved(platform::Progress& progress) {
    std::unordered_set<std::string_view> present;
    for (const std::string& record : live_.records)
        present.insert(serviceName(record));
    for (std::size_t line = 0; line < lines_.size(); ++line) {
        if (progress.cancelled()) return;
        if (present.contains(serviceName(lines_[line]))) continue;
        add(lines_[line], service_code::kRemoved);
        ++removed_;
    }
}

void ServiceCheck::add(std::string_view record, std::string_view code) {
    // The record ends with a separator of its own.
    std::string line(record);
    base::appendField(line, code);
    report_->addLine(line);
}

void ServiceCheck::change(std::string_view before, std::string_view now) {
    add(before, service_code::kBefore);
    add(now, service_code::kNow);
    ++changed_;
}

std::vector<Count> ServiceCheck::counts() const {
    const auto text = [](std::uint64_t count, std::string_view one, std::string_view more) {
        return count == 1 ? one : more;
    };
    return {{"changed", text(changed_, " Service Changed. ", " Services Changed. "), changed_},
            {"added", text(added_, " New Service. ", " New Services. "), added_},
            {"removed", text(removed_, " Removed Service. ", " Removed Services. "), removed_}};
}

std::vector<Remark> ServiceCheck::remarks() const {
    std::vector<Remark> remarks;
    addRemark(remarks, {"checked", live_.records.size(), " Services Checked. ", {}, false});
    live_.addRemarks(remarks);
    addRemark(remarks, {"behind_end",
                        behindEnd_,
                        " services behind the last line of the database were not compared.",
                        {},
                        true});
    Remark displaced{
        "by_name", byName_, " services were only looked for, since others are out of order.", {}, true};
    for (const std::string& name : unreported_)
        displaced.details.push_back({name, "differs from its record."});
    addRemark(remarks, std::move(displaced));
    addRemark(remarks, {"malformed", lines_.malformed(), " lines of the database are no records.", {}, true});
    return remarks;
}

}  // namespace corvalence::components
