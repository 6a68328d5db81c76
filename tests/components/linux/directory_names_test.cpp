#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/xattr.h>

#include <filesystem>

#include "baseline_world.h"
#include "platform/linux/trash_folders.h"

namespace corvalence::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

TEST(DirectoryNames, NoRecordCanHoldAreRefusedCountedAndTold) {
    BaselineWorld machine(store::DatabaseKind::DirectoryStructure);
    World& world = machine.world;
    for (const char* name : {"ok",
                             "a\x7F"
                             "b",
                             "line\nbreak", "fold\r/below", "tab\tis fine", "\xFF\xFE"})
        world.write(name, "x");
    std::string deep(240, 'd');
    for (int level = 0; level < 3; ++level) {
        world.write(deep + "/f", "x");
        deep += "/" + std::string(240, 'd');
    }
    const bool hasStream = ::setxattr(world.path("ok").c_str(), "user.bad\x7F", "1", 1, 0) == 0;
    const BaselineOutcome created = machine.create();
    // Three names, the folder that is too deep, the stream where files can have one.
    EXPECT_THAT(created.faults, ElementsAre(Pair("refused", hasStream ? 5 : 4)));
    EXPECT_EQ(created.details.size(), hasStream ? 5U : 4U);
    const BaselineOutcome checked = machine.check();
    EXPECT_THAT(checked.lines, IsEmpty());
    EXPECT_EQ(checked.faults, created.faults);
}

TEST(DirectoryNames, OfLinksAndPipesAreFilesAndNeverFollowed) {
    BaselineWorld machine(store::DatabaseKind::DirectoryStructure);
    World& world = machine.world;
    world.write("a/1", "x");
    std::filesystem::create_directory_symlink(world.path("a"), world.path("to a"));
    std::filesystem::create_symlink("nowhere", world.path("z"));
    machine.create();
    EXPECT_THAT(machine.check().lines, IsEmpty());
    std::filesystem::remove(world.path("to a"));
    EXPECT_THAT(machine.check().lines, ElementsAre("R to a"));
}

TEST(DirectoryTrash, OfADesktopIsToldWithTheOriginalPath) {
    BaselineWorld machine(store::DatabaseKind::DirectoryStructure);
    World& world = machine.world;
    for (const char* name : {"a/1", "b/2", "c", "z"})
        world.write(name, "x");
    const std::string trash = world.machine.folder / "Trash";
    platform::linux_system::TrashFolders bin(world.machine.system.files, [&] {
        return platform::linux_system::TrashPlaces{{trash}, {}};
    });
    const components::Machine real{world.machine.system.streams, bin, machine.services, machine.registry,
                                   machine.accessLists};
    machine.create();
    std::filesystem::create_directories(trash + "/files");
    std::filesystem::create_directories(trash + "/info");
    for (const char* name : {"a", "c"}) {
        writeWholeFile(trash + "/info/" + name + ".trashinfo",
                       "[Trash Info]\nPath=" + world.path(name) + "\nDeletionDate=2024-02-29T12:30:05\n");
        std::filesystem::rename(world.path(name), trash + "/files/" + name);
    }
    world.open("base");
    components::checkDatabase(world.vault(), real, machine.kind, world.context());
    EXPECT_THAT(machine.report(), ElementsAre("B a/1", "B c", "DB a/"));
}

}  // namespace
}  // namespace corvalence::test
