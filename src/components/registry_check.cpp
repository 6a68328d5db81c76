#include "components/registry_check.h"

#include "base/record_text.h"

namespace corvalence::components {

namespace {

std::string_view nameIn(std::string_view line) {
    return line.substr(0, line.find(base::kSeparator));
}

std::string_view restIn(std::string_view line) {
    return line.substr(nameIn(line).size() + 1);
}

/// The name as the comparison takes it: a default value's without its backslash, as keys are named.
std::string_view shortName(const RegistryRecord& live) {
    return live.isDefault ? live.name.substr(0, live.name.size() - 1) : live.name;
}

}  // namespace

RegistryCheck::RegistryCheck(store::Vault& vault, const Machine& machine, const std::string&,
                             BaselineFiles files)
    : vault_(vault),
      machine_(machine),
      baseline_(std::move(files)),
      isComplete_(vault.configuration.isOn(settings::key::kCompleteWalk)) {}

bool RegistryCheck::compare(platform::Progress& progress, reports::ReportSink& report) {
    lines_ = readRegistry(vault_, baseline_, &progress);
    RegistryWalk walk(machine_.registry, vault_.platform.ui, progress);
    const std::size_t total = std::max<std::size_t>(lines_.size(), 1);
    const bool isWhole = walk.run([&](const RegistryRecord& live) {
        compareValue(live, progress);
        progress.bar(static_cast<std::uint32_t>(std::uint64_t{platform::Progress::kSteps} * next_ / total));
        return true;
    });
    if (!isWhole) {
        // No report is kept of it, but a log tells what was found.
        findings_.write(report);
        return false;
    }
    endLines();
    vault_.platform.ui.status(0, "Verifying...");
    findings_.joinMoved();
    walk.addRemarks(walkRemarks_);
    findings_.write(report);
    return !progress.cancelled();
}

bool RegistryCheck::isInStep(std::string_view line, const RegistryRecord& live) const {
    return isComplete_ ? nameIn(line) == live.name : line.starts_with(shortName(live));
}

bool RegistryCheck::isEqual(std::string_view before, std::string_view now) const {
    return isComplete_ ? before == now : firstLine(before) == firstLine(now);
}

std::optional<std::size_t> RegistryCheck::find(const RegistryRecord& live, platform::Progress& progress) {
    if (!index_) index_.emplace(lines_, false, progress);
    // With the separator behind it, a name is found as a whole.
    const std::string name =
        isComplete_ ? std::string(live.name) + base::kSeparator : std::string(shortName(live));
    return index_->find(name, next_);
}

void RegistryCheck::compareValue(const RegistryRecord& live, platform::Progress& progress) {
    const auto add = [&] { findings_.addNew(shortName(live), live.name, live.rest); };
    if (next_ == lines_.size()) {
        isComplete_ ? add() : void(++behindEnd_);
        return;
    }
    if (!isInStep(lines_[next_], live)) {
        const auto found = find(live, progress);
        if (!found) {
            // An index that was cancelled finds nothing.
            if (!progress.cancelled()) add();
            return;
        }
        for (; next_ < *found; ++next_)
            miss(lines_[next_]);
    }
    const std::string_view line = lines_[next_++];
    if (nameIn(line) != live.name) ++byBeginning_;
    if (!isEqual(restIn(line), live.rest)) findings_.addChanged(nameIn(line), restIn(line), live.rest);
}

void RegistryCheck::miss(std::string_view line) {
    findings_.addRemoved(nameIn(line), restIn(line));
}

void RegistryCheck::endLines() {
    if (!isComplete_) {
        leftOver_ = lines_.size() - next_;
        return;
    }
    for (; next_ < lines_.size(); ++next_)
        miss(lines_[next_]);
}

std::vector<Remark> RegistryCheck::remarks() const {
    std::vector<Remark> remarks = walkRemarks_;
    addRemark(remarks, {"behind_end",
                        behindEnd_,
                        " values behind the last record of the database were not compared.",
                        {},
                        true});
    addRemark(remarks, {"left_over",
                        leftOver_,
                        " records of the database behind the last value were not compared.",
                        {},
                        true});
    addRemark(remarks, {"by_beginning", byBeginning_, " compared with a record of a longer name.", {}, true});
    addRemark(remarks, {"malformed", lines_.malformed(), " lines of the database are no records.", {}, true});
    return remarks;
}

}  // namespace corvalence::components
