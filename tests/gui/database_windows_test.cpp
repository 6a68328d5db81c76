#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>
#include <filesystem>

#include "core/database_lists.h"
#include "driving.h"
#include "gui/dialogs/complete_system_window.h"
#include "gui/dialogs/create_database_window.h"
#include "gui/dialogs/database_details_window.h"
#include "gui/dialogs/open_database_window.h"
#include "store/database_index.h"
#include "world.h"

namespace corvalence::gui {
namespace {

using corvalence::test::World;
using shell::Mode;
using test::find;

const OpenHelp kNoHelp;

class DatabaseWindows : public testing::Test {
  public:
    std::string lastMessage() {
        return world.machine.ui.messages.empty() ? "" : world.machine.ui.messages.back().text;
    }
    CreateDatabaseWindow createWindow(Mode mode) {
        return {world.vault(), mode,
                [this](const store::CreationRequest& request) {
                    created = store::DatabaseCreation(world.vault()).create(request);
                    return created.has_value();
                },
                kNoHelp, nullptr};
    }
    /// The window after OK with these fields.
    bool isMade(CreateDatabaseWindow& window, const std::string& location, const std::string& name) {
        window.show();
        find<QLineEdit>(window, "locationEdit").setText(QString::fromStdString(location));
        find<QLineEdit>(window, "nameEdit").setText(QString::fromStdString(name));
        find<QPushButton>(window, "okButton").click();
        return !window.isVisible();
    }

    World world;
    std::optional<store::OpenDatabaseContext> created;
};

TEST_F(DatabaseWindows, CreateStaysOpenUntilTheFieldsAreRight) {
    auto window = createWindow(Mode::FileContents);
    const std::string databases = find<QLineEdit>(window, "locationEdit").text().toStdString();
    EXPECT_EQ(databases, world.data("Databases"));
    EXPECT_TRUE(find<QRadioButton>(window, "digestButton2").isChecked());
    QLineEdit& name = find<QLineEdit>(window, "nameEdit");

    EXPECT_FALSE(isMade(window, databases, "what?"));
    EXPECT_EQ(lastMessage(), "The name of the database should not contain \\ / : * ? \" < > |");
    EXPECT_EQ(name.text(), "");
    for (const std::string& location : {std::string("Databases"), world.data("gone")}) {
        EXPECT_FALSE(isMade(window, location, "db"));
        EXPECT_TRUE(lastMessage().ends_with("  is not a valid location.")) << lastMessage();
        EXPECT_EQ(name.text(), "db");
    }
    world.create("taken");
    EXPECT_FALSE(isMade(window, databases, "taken"));
    EXPECT_EQ(lastMessage(), "The file " + world.databasePath("taken") + " already exists.");
    world.machine.faults.failAt(1);
    EXPECT_FALSE(isMade(window, databases, "db")) << "a failure is told, and loses nothing";
    world.machine.faults.clear();

    find<QRadioButton>(window, "digestButton3").setChecked(true);
    EXPECT_TRUE(isMade(window, databases, "db"));
    EXPECT_EQ(created->path(), world.databasePath("db"));
    EXPECT_EQ(created->digest(), crypto::DigestCode::Sha512);
    EXPECT_EQ(createWindow(Mode::Registry).findChild<QRadioButton*>("digestButton0"), nullptr);
}

TEST_F(DatabaseWindows, OpenListsTheDatabasesOfTheModeAndDeletesAfterAsking) {
    world.create("first");
    world.create("second");
    core::DatabaseLists lists(world.vault());
    OpenDatabaseWindow window(world.vault(), Mode::FileContents, lists, kNoHelp, nullptr);
    window.show();
    EXPECT_EQ(window.windowTitle(), "Open Database");
    QTreeWidget& list = find<QTreeWidget>(window, "databaseList");
    ASSERT_EQ(list.topLevelItemCount(), 2);
    EXPECT_EQ(list.topLevelItem(0)->text(0), "first");
    EXPECT_EQ(list.topLevelItem(0)->text(1).toStdString(), world.data("Databases/"));
    EXPECT_EQ(list.topLevelItem(0)->text(2), "12:30:05   29.2.2024");
    EXPECT_EQ(list.topLevelItem(0)->text(3), "Unchecked");
    EXPECT_GT(list.columnWidth(1), list.fontMetrics().horizontalAdvance(list.topLevelItem(0)->text(1)))
        << "what the other columns leave is for the location";

    world.machine.ui.answers = {false, true};
    QPushButton& remove = find<QPushButton>(window, "deleteButton");
    remove.click();
    EXPECT_EQ(list.topLevelItemCount(), 2);
    remove.click();
    EXPECT_EQ(list.topLevelItemCount(), 1);
    EXPECT_FALSE(std::filesystem::exists(world.databasePath("first")));
    list.itemDoubleClicked(list.topLevelItem(0), 0);
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_EQ(window.path(), world.databasePath("second"));

    OpenDatabaseWindow empty(world.vault(), Mode::Services, lists, kNoHelp, nullptr);
    EXPECT_EQ(empty.windowTitle(), "Select a Services Database To Be Checked");
    EXPECT_FALSE(find<QPushButton>(empty, "okButton").isEnabled());
    EXPECT_FALSE(find<QPushButton>(empty, "deleteButton").isEnabled());
    empty.accept();
    EXPECT_NE(empty.result(), QDialog::Accepted);
}

TEST_F(DatabaseWindows, DetailsTellWhatTheDatabaseLists) {
    world.write("a", std::string(2000, 'x'));
    world.write("b", "12345");
    world.create();
    world.add({"a", "b"});
    world.open();
    const auto details = files::readDetails(world.vault(), world.context());
    const DatabaseDetailsWindow window(details, world.machine.clock, kNoHelp, nullptr);
    const char* const expected[] = {"12:30:05   29.2.2024",    "Unchecked", nullptr, "2",
                                    "2005 Bytes.  [1.96 KB].", "SHA-256"};
    for (int i = 0; i < 6; ++i) {
        const auto* value = window.findChild<QLabel*>(QStringLiteral("valueLabel%1").arg(i));
        ASSERT_NE(value, nullptr) << i;
        if (expected[i] != nullptr) {
            EXPECT_EQ(value->text(), expected[i]);
        }
    }
    EXPECT_TRUE(world.leftovers().empty());
}

TEST_F(DatabaseWindows, CompleteSystemStaysForAnotherChoice) {
    std::vector<components::SystemCreationOptions> tried;
    CompleteSystemWindow window(
        world.machine.ui,
        [&](const components::SystemCreationOptions& options) {
            tried.push_back(options);
            return tried.size() > 1;
        },
        kNoHelp, nullptr);
    window.show();
    find<QRadioButton>(window, "backupButton2").setChecked(true);
    find<QCheckBox>(window, "notifyFailedBox").setChecked(true);
    find<QPushButton>(window, "okButton").click();
    EXPECT_TRUE(window.isVisible());
    find<QRadioButton>(window, "backupButton0").setChecked(true);
    find<QPushButton>(window, "okButton").click();
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(tried[0].backups, files::AddBackups::Sealed);
    EXPECT_TRUE(tried[0].notifyFailed);
    EXPECT_EQ(tried[1].backups, files::AddBackups::None);
}

TEST_F(DatabaseWindows, ScanSelectionTakesAnyOfTheComponents) {
    ScanSelectionWindow window(kNoHelp, nullptr);
    EXPECT_EQ(window.selection().size(), 5U);
    for (const char* name : {"componentBox0", "componentBox1", "componentBox3"})
        find<QCheckBox>(window, name).click();
    EXPECT_EQ(window.selection(),
              (std::vector{reports::ReportKind::Permissions, reports::ReportKind::Services}));
}

}  // namespace
}  // namespace corvalence::gui
