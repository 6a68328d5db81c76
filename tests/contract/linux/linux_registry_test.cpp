#include "platform/linux/linux_registry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <utility>

#include "platform/linux/settings_text.h"
#include "system_back_end.h"
#include "temp_folder.h"

namespace corvalence::test {
namespace {

using namespace platform::linux_system;
using platform::RegistryRoot;
using testing::ElementsAre;
using testing::IsEmpty;
using Values = std::vector<std::pair<std::string, std::string>>;

class Registry : public testing::Test {
  protected:
    Registry() {
        places_.configuration = folder_ / "etc";
        places_.userConfiguration = folder_ / "config";
        places_.proc = folder_ / "proc";
        places_.sys = folder_ / "sys";
        places_.mime = folder_ / "mime";
        places_.applicationLists = {folder_ / "mimeapps.list", folder_ / "none", folder_ / "mimeinfo.cache"};
    }

    std::vector<std::string> keys(RegistryRoot root, const std::string& path) {
        LinuxRegistry registry(system_.files, places_);
        return keys(registry, root, path);
    }
    static std::vector<std::string> keys(LinuxRegistry& registry, RegistryRoot root,
                                         const std::string& path) {
        const auto key = registry.open(root, path);
        return key ? key->subKeys().names : std::vector<std::string>{"no key"};
    }
    Values values(RegistryRoot root, const std::string& path) {
        LinuxRegistry registry(system_.files, places_);
        registry.open(root, path.substr(0, path.find('\\')));  // as a walk comes there
        const auto key = registry.open(root, path);
        if (!key) return {{"no", "key"}};
        Values all;
        for (platform::RegistryValue value; key->nextValue(value);) {
            EXPECT_EQ(value.type, platform::registry_type::kText);
            EXPECT_EQ(std::string(value.data.begin(), value.data.end()), value.text);
            all.emplace_back(value.name, value.text);
        }
        return all;
    }

    SystemBackEnd system_;
    TempFolder folder_;
    RegistryPlaces places_;
};

TEST_F(Registry, showsSettingsFilesWithTheirSections) {
    folder_.write("etc/login.conf", "# comment\nUMASK = 022 \nA=1 \\\n  2\nUMASK=077\n");
    folder_.write("etc/app/app.ini", "top=0\n[one]\nx=1\n; y=2\n[two\\b]\r\nz=3\r\n[one]\nw=4\n");
    folder_.write("etc/app/back\\slash.conf", "k=v\n");
    folder_.write("etc/script", "if [ -x a ]; then\na=b\nfi\n");
    folder_.write("etc/binary", std::string("a=b\0", 4));
    folder_.write("etc/large", "a=" + std::string(300 * 1024, 'x'));
    folder_.write("etc/empty", "");
    folder_.write("config/Cache/x.ini", "a=b\n");
    std::filesystem::create_symlink(folder_ / "etc/login.conf", folder_ / "etc/link.conf");
    std::filesystem::create_directory_symlink("..", folder_ / "etc/loop");
    constexpr auto kMachine = RegistryRoot::LocalMachine;
    EXPECT_THAT(keys(kMachine, ""), ElementsAre("Configuration", "Kernel"));
    EXPECT_THAT(keys(kMachine, "Configuration"), ElementsAre("app", "link.conf", "login.conf"));
    EXPECT_THAT(keys(kMachine, "Configuration\\app"), ElementsAre("app.ini", "back/slash.conf"));
    EXPECT_THAT(keys(kMachine, "Configuration\\app\\app.ini"), ElementsAre("one", "two/b"));
    EXPECT_THAT(values(kMachine, "Configuration\\login.conf"),
                ElementsAre(std::pair("UMASK", "022"), std::pair("A", "1 2"), std::pair("UMASK (2)", "077")));
    EXPECT_THAT(values(kMachine, "Configuration\\app\\app.ini"), ElementsAre(std::pair("top", "0")));
    EXPECT_THAT(values(kMachine, "Configuration\\app\\app.ini\\one"),
                ElementsAre(std::pair("x", "1"), std::pair("w", "4")));
    EXPECT_THAT(values(kMachine, "Configuration\\app\\app.ini\\two/b"), ElementsAre(std::pair("z", "3")));
    EXPECT_THAT(values(kMachine, "Configuration\\app\\back/slash.conf"), ElementsAre(std::pair("k", "v")));
    for (const char* none : {"Configuration\\script", "Configuration\\app\\app.ini\\three", "Other", "\\\\"})
        EXPECT_THAT(keys(kMachine, none), ElementsAre("no key")) << none;
    EXPECT_THAT(keys(RegistryRoot::CurrentUser, "Configuration"), IsEmpty());
}

TEST_F(Registry, tellsWhatRootAloneCanRead) {
    if (::geteuid() != 0) GTEST_SKIP() << "makes files of root's";
    namespace fs = std::filesystem;
    folder_.write("etc/open.conf", "k=v\n");
    folder_.write("etc/closed.conf", "k=v\n");
    folder_.write("etc/private/inside.conf", "k=v\n");
    fs::permissions(folder_.path(), fs::perms(0755));
    fs::permissions(folder_ / "etc", fs::perms(0755));
    fs::permissions(folder_ / "etc/open.conf", fs::perms(0644));
    fs::permissions(folder_ / "etc/closed.conf", fs::perms(0640));
    fs::permissions(folder_ / "etc/private", fs::perms(0700));
    fs::permissions(folder_ / "etc/private/inside.conf", fs::perms(0644));
    fs::create_symlink(folder_ / "etc/private/inside.conf", folder_ / "etc/link.conf");
    const auto isProtected = [&](const std::string& name) {
        LinuxRegistry registry(system_.files, places_);
        platform::RegistryValue value;
        const auto key = registry.open(RegistryRoot::LocalMachine, "Configuration\\" + name);
        EXPECT_TRUE(key && key->nextValue(value)) << name;
        return value.isProtected;
    };
    EXPECT_FALSE(isProtected("open.conf"));
    for (const char* name : {"closed.conf", "private\\inside.conf", "link.conf"})
        EXPECT_TRUE(isProtected(name)) << name;
}

TEST_F(Registry, showsTheKernelsParametersButNotWhatChangesByItself) {
    folder_.write("proc/sys/kernel/hostname", "here\n");
    folder_.write("proc/sys/kernel/random/boot_id", "1\n");
    folder_.write("proc/sys/kernel/random/poolsize", "256\n");
    folder_.write("proc/sys/kernel/ns_last_pid", "77\n");
    folder_.write("proc/sys/net/ipv4/tcp_mem", "1\t2\t3\n");
    constexpr auto kMachine = RegistryRoot::LocalMachine;
    EXPECT_THAT(keys(kMachine, "Kernel"), ElementsAre("kernel", "net"));
    EXPECT_THAT(values(kMachine, "Kernel\\kernel"), ElementsAre(std::pair("hostname", "here")));
    EXPECT_THAT(values(kMachine, "Kernel\\kernel\\random"), ElementsAre(std::pair("poolsize", "256")));
    EXPECT_THAT(values(kMachine, "Kernel\\net\\ipv4"), ElementsAre(std::pair("tcp_mem", "1\t2\t3")));
}

TEST_F(Registry, showsAccountsProgramsAndTheMachine) {
    folder_.write("etc/passwd",
                  "root:x:0:0:root:/root:/bin/sh\nme::1000:1000:Me,,,:/home/me:/bin/sh\nbroken:x\n");
    folder_.write("etc/group", "adm:x:4:me,you\n");
    folder_.write("mime/globs2", "# glob\n50:text/html:*.html\n80:application/xhtml:*.html\n");
    folder_.write("mimeapps.list", "[Default Applications]\ntext/html=browser.desktop\n");
    folder_.write("mimeinfo.cache", "[MIME Cache]\ntext/html=browser.desktop;editor.desktop;\n");
    folder_.write("proc/cmdline", "root=/dev/sda1 quiet\n");
    folder_.write("proc/modules", "ext4 123 2 - Live 0x0\n");
    folder_.write("proc/self/mountinfo",
                  "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n2 1 0:9 / /run/user/1000 rw - tmpfs tmpfs rw\n");
    folder_.write("sys/bus/pci/devices/0000:00:1f.0/vendor", "0x8086\n");
    constexpr auto kUsers = RegistryRoot::Users;
    EXPECT_THAT(keys(kUsers, "Local"), ElementsAre("Accounts", "Groups"));
    LinuxRegistry registry(system_.files, places_);
    EXPECT_THAT(keys(registry, kUsers, "Local"), ElementsAre("Accounts", "Groups"));
    EXPECT_THAT(keys(registry, kUsers, "Local\\Accounts"), ElementsAre("me", "root"));
    EXPECT_THAT(
        values(kUsers, "Local\\Accounts\\me"),
        ElementsAre(std::pair("Group", "1000"), std::pair("Home", "/home/me"), std::pair("Name", "Me,,,"),
                    std::pair("Password", "none"), std::pair("Shell", "/bin/sh"), std::pair("User", "1000")));
    EXPECT_THAT(values(kUsers, "Local\\Groups\\adm"),
                ElementsAre(std::pair("Group", "4"), std::pair("Members", "me,you")));
    EXPECT_THAT(values(RegistryRoot::ClassesRoot, "Types\\*.html"),
                ElementsAre(std::pair("application/xhtml", "80"), std::pair("text/html", "50")));
    EXPECT_THAT(
        values(RegistryRoot::ClassesRoot, "Applications\\text/html"),
        ElementsAre(
            std::pair("Default Applications, " + (folder_ / "mimeapps.list"), "browser.desktop"),
            std::pair("MIME Cache, " + (folder_ / "mimeinfo.cache"), "browser.desktop;editor.desktop;")));
    constexpr auto kConfig = RegistryRoot::CurrentConfig;
    EXPECT_THAT(values(kConfig, "Machine\\Boot"),
                ElementsAre(std::pair("Command Line", "root=/dev/sda1 quiet")));
    EXPECT_THAT(values(kConfig, "Machine\\Modules"), ElementsAre(std::pair("ext4", "123 bytes")));
    EXPECT_THAT(values(kConfig, "Machine\\Mounts"), ElementsAre(std::pair("/", "ext4 /dev/sda1")));
    EXPECT_THAT(values(kConfig, "Machine\\Devices\\PCI\\0000:00:1f.0"),
                ElementsAre(std::pair("vendor", "0x8086")));
}

/// Every value below a key, by its full name.
std::vector<std::string> dump(LinuxRegistry& registry, RegistryRoot root, const std::string& path) {
    std::vector<std::string> lines;
    const auto key = registry.open(root, path);
    if (!key) return {path + " cannot be opened"};
    for (platform::RegistryValue value; key->nextValue(value);)
        lines.push_back(path + "\\" + value.name + "=" + value.text);
    for (const std::string& name : key->subKeys().names) {
        const auto below = dump(registry, root, path.empty() ? name : path + "\\" + name);
        lines.insert(lines.end(), below.begin(), below.end());
    }
    return lines;
}

TEST_F(Registry, ofThisMachineReadsTheSameTwice) {
    LinuxRegistry registry(system_.files);
    for (const auto& [root, name] : platform::kRegistryRoots) {
        std::vector<std::string> before;
        auto lines = dump(registry, root, "");
        // Others may change something in between: one of the next two pairs is the same then.
        for (int pairs = 0; pairs < 3 && before != lines; ++pairs)
            before = std::exchange(lines, dump(registry, root, ""));
        EXPECT_EQ(before, lines) << name;
        EXPECT_THAT(lines, testing::Each(testing::Not(testing::EndsWith("cannot be opened")))) << name;
    }
}

}  // namespace
}  // namespace corvalence::test
