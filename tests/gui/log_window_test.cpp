#include "gui/dialogs/log_window.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QFileDialog>
#include <QGroupBox>
#include <QHeaderView>
#include <QPushButton>
#include <QRadioButton>

#include "core/masked_entry.h"
#include "driving.h"
#include "gui/dialogs/different_password_window.h"
#include "gui/dialogs/masked_edit.h"
#include "world.h"

namespace corvalence::gui {
namespace {

using schedule::LogKind;
using test::find;
using Subject = LogWindow::Subject;

class Logs : public testing::Test, public corvalence::test::World {
  protected:
    void write(const std::string& text) {
        schedule::LogPair pair(vault(), false);
        pair.write(text);
        pair.close();
    }
    std::string written(LogKind kind) {
        std::string text;
        const schedule::LogView view(platform.files, schedule::LogFiles(vault()).path(kind),
                                     vault().session.key, vault().session.chains.LogIV, {});
        view.read(0, view.rows(), [&](const schedule::LogRow& row) {
            text += row.text + "\n";
            return true;
        });
        return text;
    }
    /// Shows the window, acts on it and presses OK.
    void show(Subject subject, const std::function<void(LogWindow&)>& act, const std::string& path = {}) {
        LogWindow window(vault(), subject, {}, false, nullptr, path);
        test::WhenShown<LogWindow> shown([&](LogWindow& front) {
            act(front);
            if (front.isVisible()) find<QPushButton>(front, "okButton").click();
        });
        window.exec();
    }
    static QString line(LogWindow& window, int row) {
        return window.list().model()->index(row, 0).data().toString();
    }
    /// A log sealed with another password, where it can be imported from.
    std::string foreignLog(const std::string& secret, const std::string& text) {
        const crypto::SessionKey key(secret);
        crypto::sealFile(vault().working, text, data("foreign"), key, vault().session.chains.LogIV);
        return data("foreign");
    }
};

TEST_F(Logs, ShowASessionAndAppendItToTheLogOrPutItInItsPlace) {
    const std::string text = "\n12:00:00   1.2.2024\nDatabase: /a checked.\n\nFile added:   /b\n";
    write(text);
    show(Subject::Session, [&](LogWindow& window) {
        QAbstractItemModelTester tester(window.list().model(),
                                        QAbstractItemModelTester::FailureReportingMode::Fatal);
        EXPECT_EQ(window.windowTitle(), "Scheduled Checking Summary.");
        EXPECT_EQ(window.list().model()->headerData(0, Qt::Horizontal), "     Summary.");
        EXPECT_EQ(window.list().model()->rowCount(), 5);
        EXPECT_EQ(line(window, 2), "Database: /a checked.");
        EXPECT_EQ(window.list().model()->index(4, 0).data(Qt::AccessibleTextRole), "added: File added:   /b");
        EXPECT_TRUE(find<QRadioButton>(window, "firstChoice").isChecked());
        window.list().selectAll();
        EXPECT_EQ(window.list().selectedText().toStdString(), text);
    });
    EXPECT_EQ(written(LogKind::Master), text);
    EXPECT_EQ(written(LogKind::Session), "");
    write(text);
    show(Subject::Session, [](LogWindow& window) { window.reject(); });
    EXPECT_EQ(written(LogKind::Master), text + text) << "leaving loses no session";
    write("Database: /c checked.\n");
    show(Subject::Session, [](LogWindow& window) { find<QRadioButton>(window, "secondChoice").click(); });
    EXPECT_EQ(written(LogKind::Master), "Database: /c checked.\n");
}

TEST_F(Logs, StayOrGoAsChosenAndAreExportedAsTheyAre) {
    write("Database: /a checked.\n");
    schedule::LogFiles(vault()).appendSession();
    const std::string target = path("exported");
    const auto exportTo = [&](const std::string& chosen) {
        return [chosen](LogWindow& window) {
            test::WhenShown<QFileDialog> choose([&](QFileDialog& dialog) {
                EXPECT_EQ(dialog.windowTitle(), "Export Log File.");
                dialog.selectFile(QString::fromStdString(chosen));
                static_cast<QDialog&>(dialog).done(QDialog::Accepted);
            });
            find<QPushButton>(window, "exportButton").click();
        };
    };
    std::filesystem::create_directories(corvalence::test::fsPath(path("")));
    show(Subject::Master, exportTo(target));
    EXPECT_EQ(read("exported"),
              corvalence::test::readWholeFile(schedule::LogFiles(vault()).path(LogKind::Master)));
    EXPECT_EQ(written(LogKind::Master), "Database: /a checked.\n");
    show(Subject::Master, exportTo(data("Checking Schedule/mine")));
    EXPECT_TRUE(machine.ui.saw(data("Checking Schedule/mine") +
                               " lies in a folder that the installation keeps its own files in."));
    show(
        Subject::Imported,
        [&](LogWindow& window) {
            EXPECT_EQ(window.windowTitle(), "Scheduled Checking Log.");
            EXPECT_EQ(window.list().model()->rowCount(), 1);
            EXPECT_EQ(window.findChild<QRadioButton*>("firstChoice"), nullptr);
        },
        target);
    show(Subject::Master, [](LogWindow& window) { find<QRadioButton>(window, "secondChoice").click(); });
    EXPECT_EQ(written(LogKind::Master), "");
}

TEST_F(Logs, OfAnotherPasswordAreOpenedWithItOrShownAsTheyStand) {
    const std::string log = foreignLog("theirs", "Database: /theirs checked.\n");
    const auto type = [](const char* typed) {
        return [typed](DifferentPasswordWindow& window) {
            EXPECT_EQ(window.windowTitle(), "Different Log Password.");
            find<MaskedEdit>(window, "passwordEdit").entry().paste(typed);
            find<QPushButton>(window, "okButton").click();
        };
    };
    {
        machine.ui.answers = {true};
        test::WhenShown<DifferentPasswordWindow> typing(type("theirs"));
        show(
            Subject::Imported,
            [](LogWindow& window) { EXPECT_EQ(line(window, 0), "Database: /theirs checked."); }, log);
    }
    EXPECT_EQ(machine.ui.questions.size(), 1U);
    {
        machine.ui.answers = {true, false};
        test::WhenShown<DifferentPasswordWindow> typing(type("wrong"));
        show(
            Subject::Imported,
            [](LogWindow& window) { EXPECT_NE(line(window, 0), "Database: /theirs checked."); }, log);
    }
    EXPECT_EQ(machine.ui.questions.size(), 3U);
    {
        machine.ui.answers = {true};
        test::WhenShown<DifferentPasswordWindow> leaving(
            [](DifferentPasswordWindow& window) { window.reject(); });
        show(
            Subject::Imported, [](LogWindow& window) { EXPECT_GT(window.list().model()->rowCount(), 0); },
            log);
    }
    EXPECT_EQ(machine.ui.questions.size(), 4U);
}

TEST_F(Logs, OfAnySizeAreReadWhereTheyAreLookedAt) {
    std::string text = "Database: /a checked.\nValue: " + std::string(20000, 'v') + "\n";
    for (int number = 0; number < 30000; ++number)
        text += "File added:   /folder/" + std::to_string(number) + "\n";
    write(text);
    machine.ui.answers = {false};
    show(Subject::Session, [&](LogWindow& window) {
        EXPECT_EQ(line(window, 1).size(), 10240 + 3);
        EXPECT_GT(window.list().columnWidth(0), 10240) << "a long line is come to sideways";
        window.list().scrollToBottom();
        EXPECT_EQ(line(window, 30001), "File added:   /folder/29999");
        corvalence::test::writeWholeFile(schedule::LogFiles(vault()).path(LogKind::Session), "");
        EXPECT_FALSE(line(window, 12000).isEmpty()) << "what can no longer be read is told";
        EXPECT_NE(line(window, 12000), "File added:   /folder/11998");
    });
    write(text);
    machine.ui.answers = {true};
    show(Subject::Session, [&](LogWindow& window) { EXPECT_EQ(line(window, 1).size(), 20007); });
    machine.ui.cancelAt = machine.ui.cancelQuestions() + 3;
    show(Subject::Master, [&](LogWindow& window) {
        EXPECT_EQ(window.list().model()->rowCount(), 2000);
        EXPECT_EQ(window.windowTitle(), "Scheduled Checking Log. [ CANCELLED ]");
    });
}

TEST_F(Logs, ThatCannotBeChangedAreToldAndStillShown) {
    write("Database: /a checked.\n");
    bool stayed = false;
    show(Subject::Session, [&](LogWindow& window) {
        machine.faults.failAt(1);
        find<QPushButton>(window, "okButton").click();
        stayed = window.isVisible();
        EXPECT_EQ(line(window, 0), "Database: /a checked.");
    });
    EXPECT_TRUE(stayed);
    EXPECT_EQ(machine.ui.messages.size(), 1U);
    EXPECT_EQ(written(LogKind::Master), "Database: /a checked.\n");
}

}  // namespace
}  // namespace corvalence::gui
