#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "baseline_world.h"
#include "components/service_record.h"
#include "components/service_report.h"

namespace corvalence::test {
namespace {

using components::renderService;
using platform::Service;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Counts = std::map<std::string, std::uint64_t>;

/// A service with every field in use.
Service serviceNamed(const std::string& name) {
    return {
        name,      "The " + name, 0x110, 4, 5, platform::ServiceConfiguration{"/bin/" + name, 2, 1, "root"},
        "It runs."};
}

TEST(ServiceRecord, RendersEveryFieldByItsNumbers) {
    EXPECT_EQ(renderService(serviceNamed("a")),
              "a\x7FThe a\x7FOWN PROCESS  INTERACTIVE PROCESS  \x7FRUNNING\x7F"
              "ACCEPT STOP  ACCEPT SHUTDOWN  \x7F/bin/a\x7F"
              "AUTO START\x7F"
              "ERROR NORMAL\x7Froot\x7FIt runs.\x7F");
    // Nothing breaks a record, numbers without a text leave their field empty.
    EXPECT_EQ(renderService({"n", "b\r\nc", 0x27, 9, 0x1A,
                             platform::ServiceConfiguration{"d\x7F"
                                                            "e",
                                                            0, 4, ""},
                             "f\v\f"}),
              "n\x7F"
              "b  c\x7FKERNEL DRIVER  FILE SYSTEM DRIVER  ADAPTERSHARE PROCESS  \x7F\x7F"
              "ACCEPT PAUSE CONTINUE  ACCEPT PARAMCHANGE  ACCEPT NETBINDCHANGE  \x7F"
              "d e\x7F"
              "BOOT START\x7F\x7F\x7F"
              "f  \x7F");
    const std::string shortOne = renderService({"n", "", 0, 7, 0, std::nullopt, "not told"});
    EXPECT_EQ(shortOne, "n\x7F\x7F\x7FPAUSED\x7F\x7F");
    EXPECT_TRUE(components::isServiceRecord(shortOne));
    for (const char* line :
         {"", "n\x7F", "n\x7F\x7F\x7F\x7F\x7F\x7F", "\x7F\x7F\x7F\x7F\x7F", "n\x7F\x7F\x7F\x7F\x7Fx"})
        EXPECT_FALSE(components::isServiceRecord(line)) << line;
}

class Services : public testing::Test, public BaselineWorld {
  protected:
    Services() : BaselineWorld(store::DatabaseKind::Services) {
        for (const char* name : {"a", "b", "c", "d", "e"})
            services.installed.push_back(serviceNamed(name));
    }
    Service& named(const std::string& name) {
        for (Service& service : services.installed)
            if (service.name == name) return service;
        throw std::out_of_range(name);
    }
    void uninstall(const std::string& name) {
        std::erase_if(services.installed, [&](const Service& service) { return service.name == name; });
    }
    void install(const std::string& name, std::ptrdiff_t place) {
        services.installed.insert(services.installed.begin() + place, serviceNamed(name));
    }
};

TEST_F(Services, TellsEveryChangedFieldWithBothRecords) {
    EXPECT_EQ(create().counts, (Counts{{"services", 5}}));
    EXPECT_THAT(check().lines, IsEmpty());
    named("a").state = 1;
    named("c").configuration->binaryPath = "/tmp/c";
    named("e").configuration.reset();
    const BaselineOutcome outcome = check();
    EXPECT_THAT(outcome.lines, ElementsAre("Cf a", "Ct a", "Cf c", "Ct c", "Cf e", "Ct e"));
    EXPECT_EQ(outcome.counts, (Counts{{"changed", 3}}));
    EXPECT_EQ(outcome.remarks, (Counts{{"checked", 5}}));
    const components::ServiceRenderer renderer{world.platform.paths};
    const std::string line = renderService(named("c")) + "Ct\x7F";
    EXPECT_FALSE(renderer.beginsRecord(3, line));
    EXPECT_THAT(*renderer.columns(line),
                ElementsAre("c", "The c", "Changed - New Details", "RUNNING",
                            "OWN PROCESS  INTERACTIVE PROCESS  ", "ACCEPT STOP  ACCEPT SHUTDOWN  ", "/tmp/c",
                            "AUTO START", "ERROR NORMAL", "root", "It runs."));
    EXPECT_THAT(renderer.text(0, line), HasSubstr("Service now: \nService Name: c\nDisplay Name: The c\n"));
    EXPECT_FALSE(
        renderer.columns("c\x7F"
                         "Ct\x7F"));
}

// A displaced service and those behind it are only looked for; what that hides is told beside the report.
TEST_F(Services, TellsWhatItDidNotCompareBehindADisplacement) {
    create();
    uninstall("b");
    const BaselineOutcome removed = check();
    EXPECT_THAT(removed.lines, ElementsAre("R b"));
    EXPECT_EQ(removed.faults, (Counts{{"by_name", 3}}));
    EXPECT_THAT(removed.details, IsEmpty());
    named("d").state = 1;
    install("new", 1);
    install("last", 5);
    const BaselineOutcome outcome = check();
    EXPECT_THAT(outcome.lines, ElementsAre("A new", "A last", "R b"));
    EXPECT_EQ(outcome.counts, (Counts{{"added", 2}, {"removed", 1}}));
    EXPECT_THAT(outcome.details, ElementsAre("d differs from its record."));

    world.set(settings::key::kCompleteWalk, "1");
    const BaselineOutcome complete = check();
    EXPECT_THAT(complete.lines, ElementsAre("A new", "Cf d", "Ct d", "A last", "R b"));
    EXPECT_THAT(complete.faults, IsEmpty());
}

TEST_F(Services, DoesNotReportAServiceBehindTheLastLineButCountsIt) {
    create();
    install("z", 5);
    const BaselineOutcome outcome = check();
    EXPECT_THAT(outcome.lines, IsEmpty());
    EXPECT_EQ(outcome.faults, (Counts{{"behind_end", 1}}));
    world.set(settings::key::kCompleteWalk, "1");
    EXPECT_THAT(check().lines, ElementsAre("A z"));
}

TEST_F(Services, AreAllRemovedWhereTheManagerGivesNone) {
    create();
    services.fails = true;
    const BaselineOutcome outcome = check();
    EXPECT_THAT(outcome.lines, ElementsAre("R a", "R b", "R c", "R d", "R e"));
    EXPECT_EQ(outcome.faults, (Counts{{"not_listed", 1}}));
    EXPECT_THAT(outcome.details, ElementsAre("service manager AccessDenied."));
    EXPECT_EQ(create("none").faults, (Counts{{"not_listed", 1}}));
    services.fails = false;
    check("none");
    EXPECT_TRUE(world.machine.ui.saw(world.data("Databases/none") + " is an empty database."));
}

TEST_F(Services, ThatNoRecordCanHoldAreCounted) {
    services.installed.push_back(serviceNamed(std::string(20'000, 'x')));
    services.installed.push_back(serviceNamed(""));
    EXPECT_EQ(create().faults, (Counts{{"refused", 2}}));
    EXPECT_THAT(check().lines, IsEmpty());
}

TEST_F(Services, LeaveNothingBehindWhereTheyAreCancelled) {
    world.machine.ui.cancelAt = world.machine.ui.cancelQuestions() + 3;
    EXPECT_TRUE(create().cancelled);
    world.machine.ui.cancelAt.reset();
    ASSERT_TRUE(create().opened);
    world.open("base");
    for (const std::uint64_t at : {3U, 8U}) {
        world.machine.ui.cancelAt = world.machine.ui.cancelQuestions() + at;
        EXPECT_TRUE(components::checkDatabase(world.vault(), machine, kind, world.context()).cancelled);
        world.machine.ui.cancelAt.reset();
        EXPECT_THAT(report(), IsEmpty());
    }
}

}  // namespace
}  // namespace corvalence::test
