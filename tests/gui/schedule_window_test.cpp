#include "gui/dialogs/schedule_window.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QtTest/QTest>
#include <filesystem>

#include "crypto/sealed_file.h"
#include "driving.h"
#include "gui/dialogs/schedule_model.h"
#include "gui/dialogs/single_schedule_window.h"
#include "gui/views/list_table.h"
#include "schedule/schedule_list.h"
#include "world.h"

namespace corvalence::gui {
namespace {

using corvalence::test::World;
using schedule::ScheduleDialog;
using schedule::ScheduleList;
using schedule::ScheduleSettings;
using test::find;
using testing::ElementsAre;
using testing::IsEmpty;

class Scheduling : public testing::Test {
  protected:
    Scheduling() {
        world.write("file", "content");
        for (const char* name : {"one", "onemore", "two"}) {
            world.create(name);
            world.add({"file"}, name);
        }
        world.machine.ui.messages.clear();
    }
    std::vector<std::string> scheduled() { return ScheduleList(world.vault()).read().databases; }
    std::string plainList() {
        const auto& session = world.vault().session;
        return std::string(crypto::unsealText(world.platform.files, ScheduleList(world.vault()).path(),
                                              session.key, session.chains.ScheduleIV, crypto::kUnsealSchedule)
                               .view());
    }
    std::string lastMessage() {
        auto& messages = world.machine.ui.messages;
        const std::string text = messages.empty() ? "" : messages.back().text;
        messages.clear();
        return text;
    }
    std::string path(const char* name) { return world.databasePath(name); }

    World world;
    QString topic;
    OpenHelp help = [this](const QString& asked) { topic = asked; };
};

class ScheduleEditor : public Scheduling {
  protected:
    void add(const std::string& text) {
        find<QComboBox>(window, "databaseCombo").setEditText(QString::fromStdString(text));
        find<QPushButton>(window, "addButton").click();
    }
    std::string cell(int row, int column) {
        return list.model()->index(row, column).data().toString().toStdString();
    }

    ScheduleDialog dialog{world.vault()};
    ScheduleWindow window{dialog, world.machine.ui, help};
    ListTable& list = find<ListTable>(window, "scheduleList");
};

TEST_F(ScheduleEditor, AddsFromTheListOfDatabasesAndRemovesWhatIsSelected) {
    QComboBox& combo = find<QComboBox>(window, "databaseCombo");
    EXPECT_EQ(window.windowTitle(), "Database checking schedule.");
    EXPECT_EQ(combo.count(), 3);
    EXPECT_EQ(combo.currentText(), "");
    add("");
    EXPECT_THAT(world.machine.ui.messages, IsEmpty());
    add("nowhere");
    EXPECT_EQ(lastMessage(),
              "nowhere is not a valid database. To show all valid databases use the drop down box.");
    EXPECT_EQ(combo.currentText(), "nowhere");
    window.show();
    EXPECT_EQ(window.focusWidget(), &combo) << "there is nothing to look at yet";
    for (const char* name : {"two", "onemore"})
        add(path(name));
    EXPECT_GT(list.columnWidth(1), list.horizontalHeader()->sectionSizeHint(1))
        << "the columns fit what was added";
    combo.setCurrentIndex(combo.findText(QString::fromStdString(path("one"))));
    combo.lineEdit()->setFocus();
    QTest::keyClick(combo.lineEdit(), Qt::Key_Return);
    EXPECT_TRUE(window.isVisible());
    add(path("two"));
    EXPECT_EQ(lastMessage(), path("two") + " previously listed in the schedule.");
    EXPECT_THAT(scheduled(), ElementsAre(path("two"), path("onemore"), path("one")));
    EXPECT_EQ(cell(2, 0) + "|" + cell(2, 1) + "|" + cell(2, 2), "one|" + path("one") + "|Unchecked");

    find<QPushButton>(window, "removeButton").click();
    EXPECT_EQ(lastMessage(), "Select a database from the list first.");
    list.selectRow(2);
    find<QPushButton>(window, "removeButton").click();
    EXPECT_EQ(
        lastMessage(),
        path("onemore") + " was removed as well, as its path begins with the path of a selected database.");
    EXPECT_THAT(scheduled(), ElementsAre(path("two")));
    EXPECT_EQ(list.model()->rowCount(), 1);
}

TEST_F(ScheduleEditor, LeavesTheListAsItIsWhereItCannotBeRead) {
    add(path("one"));
    std::filesystem::remove(ScheduleList(world.vault()).path());
    list.selectRow(0);
    find<QPushButton>(window, "removeButton").click();
    EXPECT_NE(lastMessage(), "");
    EXPECT_EQ(list.model()->rowCount(), 1);
}

TEST_F(ScheduleEditor, StoresIntervalAndReactionWithOkAlone) {
    const auto& restore = find<QCheckBox>(window, "autoRestoreBox");
    const auto& move = find<QRadioButton>(window, "moveRadio");
    EXPECT_TRUE(find<QRadioButton>(window, "continuousRadio").isChecked());
    EXPECT_TRUE(restore.isEnabled());
    EXPECT_FALSE(move.isEnabled());
    find<QCheckBox>(window, "autoRestoreBox").click();
    EXPECT_TRUE(move.isEnabled());
    EXPECT_TRUE(move.isChecked());
    find<QRadioButton>(window, "deleteRadio").click();
    find<QRadioButton>(window, "standardRadio").click();
    EXPECT_FALSE(restore.isEnabled() || move.isEnabled());
    find<QRadioButton>(window, "continuousRadio").click();
    QSpinBox& hours = find<QSpinBox>(window, "hoursSpin");
    hours.setValue(25);
    find<QSpinBox>(window, "minutesSpin").setValue(60);
    find<QSpinBox>(window, "secondsSpin").setValue(5);
    EXPECT_EQ(ScheduleSettings::read(world.configuration()).interval.text(), "00:00:00");
    find<QPushButton>(window, "helpButton").click();
    EXPECT_EQ(topic, "schedule");
    find<QPushButton>(window, "okButton").click();
    EXPECT_EQ(window.result(), QDialog::Accepted);
    const auto settings = ScheduleSettings::read(world.configuration());
    EXPECT_EQ(settings.interval.text(), "24:59:05");
    EXPECT_EQ(settings.reaction, schedule::CheckReaction::Continuous);
    EXPECT_TRUE(settings.autoRestore);
    EXPECT_FALSE(settings.movesChanged);
}

TEST_F(Scheduling, TellsDamagedLinesAndRemovesThemOnRequest) {
    const auto& session = world.vault().session;
    crypto::sealFile(world.vault().working, "no record\r\n" + path("two") + "\x7F\r\n",
                     ScheduleList(world.vault()).path(), session.key, session.chains.ScheduleIV);
    ScheduleDialog dialog(world.vault());
    ScheduleWindow window(dialog, world.machine.ui, help);
    window.show();
    EXPECT_EQ(find<QLabel>(window, "damageLabel").text(), "Lines of the schedule that name no database: 1.");
    find<QPushButton>(window, "dropButton").click();
    EXPECT_FALSE(find<QLabel>(window, "damageLabel").isVisible());
    EXPECT_EQ(plainList(), path("two") + "\x7F\r\n");
    ScheduleModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.setRows(dialog.rows());
    EXPECT_EQ(model.rowCount(), 1);
}

TEST_F(Scheduling, PutsTheOpenDatabaseAtTheEndWithAnIntervalOfItsOwn) {
    ScheduleList(world.vault()).add(path("two"));
    ScheduleList(world.vault()).add(path("one"));
    {
        SingleScheduleWindow window(world.vault(), path("two"), help);
        EXPECT_EQ(window.windowTitle(), "Schedule database checking.");
        find<QSpinBox>(window, "minutesSpin").setValue(2);
        find<QRadioButton>(window, "standardRadio").click();
        find<QPushButton>(window, "helpButton").click();
        EXPECT_EQ(topic, "singleschedule");
        find<QPushButton>(window, "okButton").click();
        EXPECT_EQ(window.result(), QDialog::Accepted);
        EXPECT_FALSE(window.runsMinimized());
        EXPECT_EQ(plainList(), path("one") + "\x7F\r\n" + path("two") +
                                   "\x7F"
                                   "120\x7FP\r\n");
    }
    SingleScheduleWindow window(world.vault(), path("gone"), help);
    window.show();
    find<QPushButton>(window, "okButton").click();
    EXPECT_EQ(lastMessage(), path("gone") + " is not a valid database.");
    EXPECT_TRUE(window.isVisible());
    find<QPushButton>(window, "cancelButton").click();
    EXPECT_EQ(window.result(), QDialog::Rejected);
}

}  // namespace
}  // namespace corvalence::gui
