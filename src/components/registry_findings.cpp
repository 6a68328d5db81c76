#include "components/registry_findings.h"

#include <algorithm>
#include <unordered_map>

#include "base/record_text.h"
#include "components/registry_record.h"

namespace corvalence::components {

namespace {

RegistryFindings::Value valueOf(std::string_view rest) {
    const std::size_t at = std::min(rest.find(base::kSeparator), rest.size());
    std::string data(firstLine(rest.substr(std::min(at + 1, rest.size()))));
    // A text that stands as it is may hold one, a field of the report must not.
    std::replace(data.begin(), data.end(), base::kSeparator, ' ');
    return {std::string(rest.substr(0, at)), std::move(data)};
}

}  // namespace

void RegistryFindings::addNew(std::string_view name, std::string_view identity, std::string_view rest) {
    add({RegistryChange::Added, std::string(name), std::string(identity), valueOf(rest), {}});
}

void RegistryFindings::addRemoved(std::string_view name, std::string_view rest) {
    add({RegistryChange::Removed, std::string(name), std::string(name), valueOf(rest), {}});
}

void RegistryFindings::addChanged(std::string_view name, std::string_view before, std::string_view now) {
    add({RegistryChange::Changed, std::string(name), std::string(name), valueOf(before), valueOf(now)});
}

void RegistryFindings::add(Finding finding) {
    ++countOf(finding.change);
    if (report_ != nullptr) {
        // One that was removed may yet turn up elsewhere, and an added one may be what turns up.
        const bool isRemoved = finding.change == RegistryChange::Removed;
        if (isRemoved) removed_.insert(finding.identity);
        finding.isTold =
            !isRemoved && (finding.change == RegistryChange::Changed || !removed_.contains(finding.identity));
        if (finding.isTold) tell(finding, *report_);
    }
    findings_.push_back(std::move(finding));
}

void RegistryFindings::tell(const Finding& finding, reports::ReportSink& report) {
    const std::string_view code = registryChange(finding.change).code;
    if (finding.change == RegistryChange::Changed) {
        report.add(
            {finding.name, finding.value.type, finding.value.data, code, finding.now.type, finding.now.data});
    } else {
        report.add({finding.name, finding.value.type, finding.value.data, code});
    }
}

bool RegistryFindings::joinMoved(platform::Progress& progress) {
    // From the end on: of several added ones the first behind a removed one is its own.
    std::unordered_map<std::string_view, std::vector<Finding*>> added;
    for (auto finding = findings_.rbegin(); finding != findings_.rend(); ++finding) {
        if (progress.cancelled()) return false;
        if (finding->change == RegistryChange::Added) added[finding->identity].push_back(&*finding);
        if (finding->change != RegistryChange::Removed) continue;
        const auto found = added.find(finding->identity);
        if (found == added.end() || found->second.empty()) continue;
        Finding& other = *found->second.back();
        found->second.pop_back();
        other.isDropped = true;
        --countOf(RegistryChange::Added);
        --countOf(RegistryChange::Removed);
        if (finding->value == other.value) {
            finding->isDropped = true;
        } else {
            finding->change = RegistryChange::Changed;
            ++countOf(RegistryChange::Changed);
            finding->now = other.value;
        }
    }
    std::erase_if(findings_, [](const Finding& finding) { return finding.isDropped; });
    return true;
}

std::vector<Count> RegistryFindings::counts() const {
    std::vector<Count> counts;
    for (std::size_t row = 0; row < kRegistryChanges.size(); ++row)
        counts.push_back({kRegistryChanges[row].name, kRegistryChanges[row].total, counts_[row]});
    return counts;
}

bool RegistryFindings::write(reports::ReportSink& report, const std::function<bool()>& goesOn) const {
    for (const Finding& finding : findings_) {
        if (!goesOn()) return false;
        if (!finding.isTold && !finding.isDropped) tell(finding, report);
    }
    return true;
}

}  // namespace corvalence::components
