#include "platform/linux/systemd_services.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <filesystem>
#include <thread>

#include "system_back_end.h"
#include "temp_folder.h"

namespace corvalence::test {
namespace {

using namespace platform::linux_system;
using platform::Service;

int answerUnits(sd_bus_message* call, void*, sd_bus_error*) {
    sd_bus_message* answer = nullptr;
    ::sd_bus_message_new_method_return(call, &answer);
    ::sd_bus_message_open_container(answer, 'a', "(ssssssouso)");
    for (const auto& [name, active] : {std::pair("one.service", "active"), {"off.service", "failed"}})
        ::sd_bus_message_append(answer, "(ssssssouso)", name, "text", "loaded", active, "x", "", "/u", 0U, "",
                                "/");
    ::sd_bus_message_close_container(answer);
    const int result = ::sd_bus_send(nullptr, answer, nullptr);
    ::sd_bus_message_unref(answer);
    return result;
}

int answerUnitFiles(sd_bus_message* call, void*, sd_bus_error*) {
    return ::sd_bus_reply_method_return(call, "a(ss)", 2, "/x/one.service", "disabled", "/x/two.service",
                                        "enabled-runtime");
}

const sd_bus_vtable kManager[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("ListUnits", "", "a(ssssssouso)", answerUnits, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("ListUnitFiles", "", "a(ss)", answerUnitFiles, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

/// The other end of a connection, as the manager answers it; ends with the connection.
class Manager {
  public:
    Manager() {
        int ends[2] = {-1, -1};
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        ours_ = ends[0];
        thread_ = std::thread([end = ends[1]] { serve(end); });
    }
    ~Manager() { thread_.join(); }

    Bus connect() {
        sd_bus* bus = nullptr;
        ::sd_bus_new(&bus);
        ::sd_bus_set_fd(bus, ours_, ours_);
        EXPECT_GE(::sd_bus_start(bus), 0);
        return Bus(bus);
    }

  private:
    static void serve(int end) {
        sd_bus* bus = nullptr;
        ::sd_bus_new(&bus);
        ::sd_bus_set_fd(bus, end, end);
        ::sd_bus_set_server(bus, 1,
                            SD_ID128_MAKE(01, 02, 03, 04, 05, 06, 07, 08, 09, 0a, 0b, 0c, 0d, 0e, 0f, 10));
        ::sd_bus_set_anonymous(bus, 1);
        ::sd_bus_start(bus);
        ::sd_bus_add_object_vtable(bus, nullptr, "/org/freedesktop/systemd1",
                                   "org.freedesktop.systemd1.Manager", kManager, nullptr);
        int result = 0;
        while ((result = ::sd_bus_process(bus, nullptr)) >= 0)
            if (result == 0 && ::sd_bus_wait(bus, UINT64_MAX) < 0) break;
        ::sd_bus_close_unref(bus);
    }

    int ours_ = -1;
    std::thread thread_;
};

class Units : public testing::Test {
  protected:
    std::vector<Service> read(std::function<Bus()> openBus = [] { return Bus(); }) {
        return SystemdServices(system_.files,
                               {{folder_ / "etc", true}, {folder_ / "none", true}, {folder_ / "lib", false}},
                               std::move(openBus))
            .services();
    }
    Service named(const std::string& name) {
        for (Service& service : read())
            if (service.name == name) return service;
        ADD_FAILURE() << name;
        return {};
    }
    void link(const std::string& to, const std::string& name) {
        std::filesystem::create_directories(std::filesystem::path(folder_ / name).parent_path());
        std::filesystem::create_symlink(to, folder_ / name);
    }

    SystemBackEnd system_;
    TempFolder folder_;
};

TEST_F(Units, areReadFromTheirFilesWithAllDropIns) {
    folder_.write(
        "lib/one.service",
        "# a comment\n[Unit]\nDescription = One\nDocumentation=man:one(8)\nDocumentation=https://one\n"
        "[Service]\nExecStart=/usr/bin/one --with \\\n# between\n   two\\\n  lines\nUser=daemon\n"
        "ExecReload=/bin/kill\nEnvironment=A=1\n[Install]\nWantedBy=multi-user.target\n");
    Service one = named("one.service");
    EXPECT_EQ(one.displayName, "One");
    EXPECT_EQ(one.description, "man:one(8) https://one");
    EXPECT_EQ(one.type, 0x10U);
    EXPECT_EQ(one.state, 0U);  // nobody knows
    ASSERT_TRUE(one.configuration);
    EXPECT_EQ(one.configuration->binaryPath,
              "/usr/bin/one --with two lines; ExecReload=/bin/kill; Environment=A=1");
    EXPECT_EQ(one.configuration->account, "daemon");
    EXPECT_EQ(one.configuration->startType, 3U);
    EXPECT_EQ(one.configuration->errorControl, 1U);

    // What an intruder would do: another command behind the unit's own file.
    folder_.write("etc/one.service.d/20.conf", "[Service]\nExecStart=\nExecStart=/tmp/two\nUser=\n");
    folder_.write("etc/service.d/30.conf",
                  "[Service]\nExecStartPost=/tmp/all\n[Unit]\nFailureAction=reboot\n");
    folder_.write("lib/one.service.d/20.conf", "[Service]\nExecStart=/overridden\n");
    folder_.write("lib/one.service.d/no.text", "[Service]\nExecStart=/ignored\n");
    one = named("one.service");
    EXPECT_EQ(one.configuration->binaryPath,
              "/tmp/two; ExecStartPost=/tmp/all; ExecReload=/bin/kill; Environment=A=1");
    EXPECT_EQ(one.configuration->account, "root");
    EXPECT_EQ(one.configuration->errorControl, 3U);
}

TEST_F(Units, areEnabledByTheAdministratorsLinksAndMaskedByALinkToNothing) {
    for (const char* name : {"on", "off", "vendor"})
        folder_.write("lib/" + std::string(name) + ".service", "[Service]\nExecStart=/x\n");
    folder_.write("lib/tty@.service", "[Unit]\nDescription=Terminal\n");
    folder_.write("lib/daily.timer", "[Timer]\nOnCalendar=daily\nUnit=off.service\n");
    folder_.write("lib/no.device", "[Unit]\n");
    link("../on.service", "etc/multi-user.target.wants/on.service");
    link("../tty@.service", "etc/getty.target.wants/tty@tty1.service");
    link("/dev/null", "etc/off.service");
    link("../vendor.service", "lib/multi-user.target.wants/vendor.service");
    std::vector<std::pair<std::string, std::uint32_t>> starts;
    for (const Service& service : read())
        starts.emplace_back(service.name, service.configuration->startType);
    EXPECT_EQ(starts, (std::vector<std::pair<std::string, std::uint32_t>>{{"daily.timer", 3},
                                                                          {"off.service", 4},
                                                                          {"on.service", 2},
                                                                          {"tty@.service", 3},
                                                                          {"tty@tty1.service", 2},
                                                                          {"vendor.service", 3}}));
    EXPECT_EQ(named("daily.timer").configuration->binaryPath, "OnCalendar=daily; Unit=off.service");
    EXPECT_EQ(named("tty@tty1.service").displayName, "Terminal");
}

TEST_F(Units, runAndStartAsTheManagerSays) {
    for (const char* name : {"one", "two", "off"})
        folder_.write("lib/" + std::string(name) + ".service", "[Service]\nExecStart=/x\nExecReload=/y\n");
    link("../one.service", "etc/multi-user.target.wants/one.service");
    Manager manager;
    const auto services = read([&] { return manager.connect(); });
    ASSERT_EQ(services.size(), 3U);
    EXPECT_EQ(services[0].state, 1U);  // off: failed
    EXPECT_EQ(services[1].state, 4U);  // one
    EXPECT_EQ(services[1].controls, 9U);
    EXPECT_EQ(services[1].configuration->startType, 3U);  // the manager's word, not the link's
    EXPECT_EQ(services[2].state, 1U);                     // two: not loaded
    EXPECT_EQ(services[2].controls, 0U);
    EXPECT_EQ(services[2].configuration->startType, 2U);
}

TEST_F(Units, ofThisMachineAreListedInAStableOrder) {
    SystemdServices machine(system_.files);
    // Services start and end while they are listed.
    const auto list = [&] {
        auto listed = machine.services();
        for (Service& service : listed)
            service.state = service.controls = 0;
        return listed;
    };
    const auto services = list();
    EXPECT_TRUE(std::is_sorted(services.begin(), services.end(),
                               [](const Service& a, const Service& b) { return a.name < b.name; }));
    EXPECT_EQ(services, list());
}

}  // namespace
}  // namespace corvalence::test
