#include "shell/folder_guard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "crypto/sealed_file.h"
#include "failure_of.h"
#include "world.h"

namespace corvalence::test {
namespace {

using platform::AccessEntry;
using platform::AccountState;
using shell::FolderState;
using shell::GuardResult;
using testing::IsEmpty;
using Entries = std::vector<AccessEntry>;

constexpr std::uint32_t kFull = 0xF01FF;

AccessEntry entry(const std::string& account, std::uint32_t rights, bool isAdministrators = false) {
    return {AccountState::Known, account, "HOST", rights, isAdministrators};
}

/// One list for whatever is asked for, as another system than the tests' own might give it.
class OneList : public platform::AccessLists {
  public:
    std::optional<Entries> list = Entries{entry("Administrators", kFull, true), entry("bob", 0x1200A9)};
    bool isClosed = false;

    std::optional<Entries> read(const std::string& path) override {
        if (isClosed) throw base::FileFailure(base::Cause::AccessDenied, 0, path);
        return list;
    }
    std::size_t removeEntries(const std::string& path,
                              const std::function<bool(const AccessEntry&)>& isUnwanted) override {
        if (isClosed) throw base::FileFailure(base::Cause::AccessDenied, 0, path);
        return std::erase_if(*list, isUnwanted);
    }
};

class FolderGuard : public testing::Test {
  protected:
    shell::FolderGuard guard() { return shell::FolderGuard(world.vault(), lists); }
    FolderState state() { return guard().read().value(); }
    void accept() { guard().accept(state()); }
    GuardResult result() { return guard().check().result; }
    std::string file() const { return world.data("Permissions"); }
    void seal(std::string_view text) {
        crypto::sealFile(world.vault().working, text, file(), world.vault().session.key,
                         world.vault().session.chains.LogIV);
    }

    World world;
    OneList lists;
};

TEST_F(FolderGuard, tellsEveryEntryWithItsColumnsAndWhetherItIsWeak) {
    lists.list = Entries{entry("Administrators", 0x1F01FF & ~0x100000U, true),
                         entry("a\r\nb,c", 0x1200A9 & ~0x100000U),
                         {AccountState::Unnamed, "", "", 0x80008, false},
                         {AccountState::Failed, "x", "y", 0xF01FE, false},
                         entry("none", 0),
                         entry("more", 0x8F01FF)};
    const FolderState now = state();
    EXPECT_EQ(now.text(),
              "Administrators,HOST,983551\r\na  b,c,HOST,131241\r\nUnknown,Unknown,524296\r\n"
              "Unknown,Unknown,983550\r\nnone,HOST,0\r\nmore,HOST,9372159\r\n");
    std::string weak;
    std::string ticks;
    for (const shell::GuardRow& row : now.rows) {
        weak += row.isWeak ? "w" : "-";
        for (std::size_t column = 0; column < components::kPermissionColumns.size(); ++column)
            ticks += row.ticks(column) ? "x" : ".";
        ticks += " ";
    }
    EXPECT_EQ(weak, "-www--");
    EXPECT_EQ(ticks,
              "xxxxxxxxxxxxxx .x.xxx....x.x. .x............ .xx..xxxxxxxxx .............. xxxxxxxxxxxxxx ");
    EXPECT_TRUE(now.isWeak());
    EXPECT_EQ(now.rows[0].inWords(), "");
    EXPECT_EQ(now.rows[2].inWords(), "Take Ownership");
    EXPECT_EQ(now.rows[5].inWords(), "Sticky");
    lists.list.reset();
    EXPECT_TRUE(state().isWeak()) << "everybody may do everything";
}

TEST_F(FolderGuard, strengthensToAdministratorsAndFullControlOnce) {
    lists.list =
        Entries{entry("Administrators", 0x8, true), entry("eve", 0x8), entry("bob", kFull), entry("none", 0)};
    EXPECT_EQ(guard().strengthen().removed, 2U);
    EXPECT_EQ(*lists.list, (Entries{entry("Administrators", 0x8, true), entry("bob", kFull)}));
    const shell::Strengthening again = guard().strengthen();
    EXPECT_EQ(again.removed, 0U);
    EXPECT_EQ(again.failure, "");
    lists.isClosed = true;
    EXPECT_NE(guard().strengthen().failure, "");
    EXPECT_THAT(world.machine.ui.messages, IsEmpty());
}

TEST_F(FolderGuard, tellsAChangeOfTheAcceptedState) {
    EXPECT_EQ(result(), GuardResult::NotStored);
    accept();
    EXPECT_EQ(readWholeFile(file()).find("bob"), std::string::npos);
    EXPECT_EQ(result(), GuardResult::Same);
    std::swap(lists.list->front(), lists.list->back());
    const shell::GuardCheck check = guard().check();
    EXPECT_EQ(check.result, GuardResult::Changed);
    ASSERT_EQ(check.before.size(), 2U);
    EXPECT_EQ(check.before[1].account, "bob");
    EXPECT_TRUE(check.before[1].isWeak);
    EXPECT_EQ(check.now.rows[0].account, "bob");
    accept();
    EXPECT_EQ(result(), GuardResult::Same);
    lists.list->clear();
    EXPECT_EQ(result(), GuardResult::Changed);
    accept();
    EXPECT_EQ(result(), GuardResult::Same);
    EXPECT_EQ(world.changePassword("another").result, core::PasswordChangeResult::Changed);
    EXPECT_EQ(result(), GuardResult::Same);
}

// What the last block leaves behind the text once passed for a line.
TEST_F(FolderGuard, takesAStateOfAnyLengthForWhatItIs) {
    for (std::size_t length = 1; length < 80; ++length) {
        lists.list = Entries{entry("Administrators", kFull, true), entry(std::string(length, 'b'), 8)};
        accept();
        EXPECT_EQ(result(), GuardResult::Same) << length;
        std::string text = state().text();
        std::erase(text, '\r');
        if (length < 8) continue;  // two line feeds in the last block: rule A ends at the first
        seal(text);
        EXPECT_EQ(result(), GuardResult::Same) << length << " with bare line feeds";
    }
    seal("Administrators,HOST,983551\r\n");
    EXPECT_EQ(result(), GuardResult::Changed) << "a line that is missing";
}

TEST_F(FolderGuard, tellsAStoredStateThatCannotBeRead) {
    accept();
    const std::string sealed = readWholeFile(file());
    writeWholeFile(file(), sealed + "x");
    EXPECT_EQ(result(), GuardResult::Damaged);
    writeWholeFile(file(), sealed);
    flipByte(file());
    const shell::GuardCheck check = guard().check();
    EXPECT_EQ(check.result, GuardResult::Damaged);
    EXPECT_EQ(check.now.rows.size(), 2U);
    accept();
    EXPECT_EQ(result(), GuardResult::Same);
    world.machine.faults.failReads("Permissions");
    EXPECT_THROW(result(), base::FileFailure);
}

TEST_F(FolderGuard, saysWhereThereIsNothingToGuard) {
    accept();
    lists.isClosed = true;
    EXPECT_FALSE(guard().read());
    EXPECT_EQ(world.machine.ui.messages.back().text, "Unable to ascertain permissions.");
    EXPECT_EQ(world.machine.ui.messages.back().icon, platform::Icon::Stop);
    world.machine.volumes.withLists = false;
    EXPECT_EQ(result(), GuardResult::NotChecked);
    EXPECT_EQ(world.machine.ui.messages.back().text,
              "Your file system does not support permissions.\n\nA greater level of security can be acheived "
              "by using NTFS.");
}

TEST_F(FolderGuard, keepsTheOldStateWhereTheNewCannotBeStored) {
    accept();
    lists.list->pop_back();
    const FolderState now = state();
    for (std::uint64_t at = 1;; ++at) {
        ASSERT_LT(at, 50U);
        world.machine.faults.failAt(at);
        const bool isStored = causeOf([&] { guard().accept(now); }) == base::Cause::None;
        const bool hasStruck = world.machine.faults.hasStruck();
        world.machine.faults.clear();
        EXPECT_EQ(result(), isStored ? GuardResult::Same : GuardResult::Changed) << at;
        if (!hasStruck) break;
    }
    EXPECT_THAT(world.leftovers("Administrators"), IsEmpty());
}

}  // namespace
}  // namespace corvalence::test
