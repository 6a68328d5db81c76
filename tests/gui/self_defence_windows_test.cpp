#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QLabel>
#include <QPushButton>
#include <filesystem>

#include "driving.h"
#include "gui/dialogs/folder_permissions_window.h"
#include "gui/dialogs/guard_model.h"
#include "gui/dialogs/permissions_changed_window.h"
#include "gui/dialogs/self_check_window.h"
#include "gui/views/list_table.h"
#include "gui/views/row_roles.h"
#include "world.h"

namespace corvalence::gui {
namespace {

using corvalence::test::World;
using platform::AccessEntry;
using test::find;
using testing::HasSubstr;

/// The folder's access list, wherever the folder is.
class FolderList : public platform::AccessLists {
  public:
    std::vector<AccessEntry> list = {{platform::AccountState::Known, "Administrators", "HOST", 0xF01FF, true},
                                     {platform::AccountState::Known, "bob", "HOST", 0x200A9, false}};
    bool isClosed = false;

    std::optional<std::vector<AccessEntry>> read(const std::string&) override { return list; }
    std::size_t removeEntries(const std::string& path,
                              const std::function<bool(const AccessEntry&)>& isUnwanted) override {
        if (isClosed) throw base::FileFailure(base::Cause::AccessDenied, 0, path);
        return std::erase_if(list, isUnwanted);
    }
};

class SelfDefence : public testing::Test {
  protected:
    static std::string cell(ListTable& list, int row, int column) {
        return plainText(list.model()->index(row, column)).toStdString();
    }
    std::string lastMessage() {
        return world.machine.ui.messages.empty() ? "" : world.machine.ui.messages.back().text;
    }

    World world;
    FolderList lists;
    shell::FolderGuard guard{world.vault(), lists};
    QString topic;
    OpenHelp help = [this](const QString& asked) { topic = asked; };
};

TEST_F(SelfDefence, StrengthensTheFolderAndAcceptsWhatIsShown) {
    FolderPermissionsWindow window(guard, guard.read().value(), world.machine.ui, help);
    window.show();
    ListTable& list = find<ListTable>(window, "permissionList");
    const QLabel& advice = find<QLabel>(window, "adviceLabel");
    EXPECT_EQ(window.windowTitle(), "Corvalence folder permissions.");
    EXPECT_EQ(list.model()->rowCount(), 2);
    EXPECT_EQ(cell(list, 1, 0) + cell(list, 1, 1) + cell(list, 1, 2) + cell(list, 1, 3), "bobHOSTNoYes");
    EXPECT_TRUE(advice.isVisible());
    lists.isClosed = true;
    find<QPushButton>(window, "strengthenButton").click();
    EXPECT_THAT(lastMessage(), HasSubstr("could not be strengthened"));
    EXPECT_TRUE(advice.isVisible());
    lists.isClosed = false;
    find<QPushButton>(window, "strengthenButton").click();
    EXPECT_EQ(list.model()->rowCount(), 1);
    EXPECT_FALSE(advice.isVisible());
    EXPECT_FALSE(std::filesystem::exists(world.data("Permissions")));
    find<QPushButton>(window, "helpButton").click();
    EXPECT_EQ(topic, "folderpermissions");
    find<QPushButton>(window, "okButton").click();
    EXPECT_EQ(guard.check().result, shell::GuardResult::Same);
    EXPECT_LE(window.sizeHint().width(), 1000);
}

TEST_F(SelfDefence, ShowsBothStatesOfAFolderThatChanged) {
    guard.accept(guard.read().value());
    lists.list.push_back({platform::AccountState::Known, "eve", "HOST", 0xF01FF, false});
    PermissionsChangedWindow window(guard.check(), help);
    EXPECT_EQ(find<QLabel>(window, "headingLabel").text(), "THE CORVALENCE FOLDER PERMISSIONS HAVE CHANGED!");
    EXPECT_EQ(window.findChild<QLabel*>("damageLabel"), nullptr);
    EXPECT_EQ(find<ListTable>(window, "previousList").model()->rowCount(), 2);
    EXPECT_EQ(cell(find<ListTable>(window, "nowList"), 2, 0), "eve");
    find<QPushButton>(window, "helpButton").click();
    EXPECT_EQ(topic, "permissionschanged");
    EXPECT_LE(window.sizeHint().width(), 1000);
    EXPECT_LE(window.sizeHint().height(), 700);
}

TEST_F(SelfDefence, ListsEntriesAsAModel) {
    GuardModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.setRows(guard.read()->rows);
    EXPECT_EQ(model.headerData(9, Qt::Horizontal, Qt::DisplayRole), "Create Folders");
    EXPECT_EQ(model.index(1, 0).data(Qt::AccessibleDescriptionRole), "Partial access");
    EXPECT_EQ(model.index(0, 0).data(Qt::AccessibleDescriptionRole), "");
}

TEST_F(SelfDefence, WarnsOfItsOwnFilesWithEveryLine) {
    for (const auto* warning : {core::programWarning(core::SelfCheckResult::NoDigest),
                                core::programWarning(core::SelfCheckResult::Changed),
                                core::helpWarning(core::SelfCheckResult::Changed)}) {
        SelfCheckWindow window(*warning, help, QStringLiteral("applicationcheck"));
        EXPECT_EQ(window.windowTitle().toStdString(), warning->title);
        EXPECT_EQ(find<QLabel>(window, "headingLabel").text().toStdString(), warning->heading);
        std::string texts;
        for (const QLabel* label : window.findChildren<QLabel*>())
            texts += label->text().toStdString() + "\n";
        for (const std::string_view line : warning->lines)
            EXPECT_THAT(texts, HasSubstr(std::string(line)));
        find<QPushButton>(window, "helpButton").click();
        EXPECT_EQ(topic, "applicationcheck");
        EXPECT_LE(window.sizeHint().width(), 1000);
        EXPECT_LE(window.sizeHint().height(), 700);
    }
}

}  // namespace
}  // namespace corvalence::gui
