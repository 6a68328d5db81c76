#pragma once

#include <map>
#include <string>
#include <vector>

#include "components/kinds.h"
#include "listed_recycle_bin.h"
#include "listed_registry.h"
#include "listed_services.h"
#include "reports/report_file.h"
#include "scripted_access_lists.h"
#include "store/database_deletion.h"
#include "world.h"

namespace corvalence::test {

/// What a creation or a check came to. Lines of the report are told as code, blank and path below the user's
/// files, with "/" on every system.
struct BaselineOutcome {
    bool opened = false;
    bool cancelled = false;
    std::vector<std::string> lines;
    std::map<std::string, std::uint64_t> counts;  // those that are not 0
    std::map<std::string, std::uint64_t> faults;  // remarks that are
    std::map<std::string, std::uint64_t> remarks;
    std::vector<std::string> details;  // of faults: path and reason
};

/// A world with baselines of one kind, walks kept to its files.
class BaselineWorld {
  public:
    explicit BaselineWorld(store::DatabaseKind kind);

    BaselineOutcome create(const std::string& name = "base");
    /// Checks after the proof of its integrity; `opened` is false where that refuses.
    BaselineOutcome check(const std::string& name = "base");
    /// The lines that a check had told to a log when it was ended at the `at`th question whether to go on.
    std::vector<std::string> toldUntil(std::uint64_t at);
    /// How often the last check asked whether to go on, by what the status pane said.
    std::map<std::string, std::uint64_t> questionsOfACheck();
    /// The lines of the report that the last check left.
    std::vector<std::string> report();

    /// A path of the user's files as lines tell it.
    std::string shown(std::string_view path) const;
    void remove(const std::string& name) const;
    void makeFolder(const std::string& name) const;

    World world;
    ListedRecycleBin bin;
    ListedServices services;
    ListedRegistry registry;
    ScriptedAccessLists accessLists{world.machine.system.accessLists};
    components::Machine machine{world.machine.system.streams, bin, services, registry, accessLists};
    const components::ComponentKind& kind;

  private:
    static void take(BaselineOutcome& outcome, const std::vector<components::Count>& counts,
                     const std::vector<components::Remark>& remarks);
};

/// A log whose lines stay, and which can be ended by force.
class LastingLines : public reports::ReportSink {
  public:
    std::vector<std::string> lines;
    void addLine(std::string_view line) override { lines.emplace_back(line); }
    bool isLasting() const noexcept override { return true; }
};

class NobodyListens : public store::DeletionListener {
  public:
    void databaseDeleted(const std::string&) override {}
};

}  // namespace corvalence::test
