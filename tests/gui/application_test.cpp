#include "gui/application.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QDesktopServices>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include "desk.h"
#include "driving.h"
#include "gui/dialogs/changed_file_window.h"
#include "gui/dialogs/check_done_window.h"
#include "gui/dialogs/check_summary_window.h"
#include "gui/dialogs/complete_system_window.h"
#include "gui/dialogs/configuration_window.h"
#include "gui/dialogs/create_database_window.h"
#include "gui/dialogs/criteria_window.h"
#include "gui/dialogs/database_details_window.h"
#include "gui/dialogs/file_analysis_window.h"
#include "gui/dialogs/log_window.h"
#include "gui/dialogs/open_database_window.h"
#include "gui/dialogs/password_change_window.h"
#include "gui/dialogs/password_window.h"
#include "gui/dialogs/searching_window.h"
#include "gui/dialogs/self_check_window.h"
#include "gui/schedule_commands.h"
#include "gui/support/progress_window.h"
#include "gui/views/file_list_view.h"
#include "gui/views/report_view.h"
#include "machine.h"
#include "reports/report_writer.h"
#include "schedule/log_files.h"
#include "schedule/schedule_dialog.h"
#include "store/database_index.h"

namespace corvalence::gui {
namespace {

using shell::Command;
using test::Answer;
using test::find;
using test::WhenShown;
using testing::HasSubstr;
using testing::Not;

class NoAutoStart : public platform::AutoStart {
  public:
    bool enable(const std::string&) override { return false; }
    bool disable() override { return true; }
    bool isEnabled() override { return false; }
};

class SlowRegistry : public corvalence::test::ListedRegistry {
  public:
    int delay = 0;  // milliseconds a key

    std::unique_ptr<platform::RegistryKeyReader> open(platform::RegistryRoot root,
                                                      const std::string& path) override {
        QTest::qSleep(delay);
        return ListedRegistry::open(root, path);
    }
};

/// The whole program on a machine, from its first window on.
class Program : public testing::Test {
  protected:
    Program() {
        world.stop();
        const std::string folder = world.data("");
        host.program = {core::SelfCheckFiles::beside(folder + "corvalence", core::kProgramDigest, {}), {}};
    }

    /// The program with its window open. What the self-check has to say of a folder without a program is
    /// passed over.
    void start(const char* password = "open sesame", bool inBackground = false) {
        application = std::make_unique<Application>(host, inBackground);
        application->tray = std::make_unique<test::ShownTray>();
        application->hasTray = [] { return true; };
        const WhenShown<PasswordWindow> enter([&](PasswordWindow& window) { type(window, password); });
        ASSERT_TRUE(application->start());
        application->frame().firstPaint = [] {};
        application->frame().show();
    }

    static void type(PasswordWindow& window, const char* password) {
        QTest::keyClicks(&find<QLineEdit>(window, "passwordEdit"), password);
        find<QPushButton>(window, "okButton").click();
    }
    static std::string totals(CheckDoneWindow& window) {
        return find<QPlainTextEdit>(window, "totalsText").toPlainText().toStdString();
    }
    void trigger(Command command) { application->frame().actions().action(command)->trigger(); }
    FileListView* list() { return application->workspace().fileList(); }

    void createDatabase(const QString& name) {
        const WhenShown<CreateDatabaseWindow> fill([&](CreateDatabaseWindow& window) {
            find<QLineEdit>(window, "nameEdit").setText(name);
            find<QPushButton>(window, "okButton").click();
        });
        trigger(Command::CreateDatabase);
    }
    void addFolder(const std::string& folder) {
        std::string told;
        const WhenShown<CriteriaWindow> fill([&](CriteriaWindow& window) {
            find<QLineEdit>(window, "locationEdit").setText(QString::fromStdString(folder));
            proceed = std::make_unique<WhenShown<SearchingWindow>>(
                [&](SearchingWindow& search) {
                    report = std::make_unique<Answer>(QMessageBox::Ok, &told);
                    find<QPushButton>(search, "proceedButton").click();
                },
                [](SearchingWindow& search) {
                    return find<QPushButton>(search, "proceedButton").isEnabled();
                });
            find<QPushButton>(window, "okButton").click();
        });
        trigger(Command::AddByLocation);
        proceed.reset();
        report.reset();
        EXPECT_EQ(told.substr(0, 7), "2 Files") << told;
    }

    corvalence::test::World world;
    corvalence::test::ListedRecycleBin bin;
    corvalence::test::ListedServices services;
    SlowRegistry registry;
    corvalence::test::ScriptedAccessLists accessLists{world.machine.system.accessLists};
    NoAutoStart autoStart;
    Host host{.files = world.platform.files,
              .access = world.platform.access,
              .volumes = world.platform.volumes,
              .status = world.platform.status,
              .process = world.process,
              .types = world.platform.types,
              .clock = world.platform.clock,
              .settings = world.platform.settings,
              .sound = world.platform.sound,
              .autoStart = autoStart,
              .machine = {world.machine.system.streams, bin, services, registry, accessLists},
              .mail = std::make_shared<corvalence::test::ScriptedMail>(),
              .paths = world.platform.paths,
              .dataRoot = world.data(""),
              .program = {},
              .folderIcon = core::desktopFolderIcon()};
    std::unique_ptr<Application> application;
    std::unique_ptr<WhenShown<SearchingWindow>> proceed;
    std::unique_ptr<Answer> report;
};

// It asked where to make an installation, and refused only then.
TEST_F(Program, RefusesWhoIsNoAdministratorBeforeItAsksForAnInstallation) {
    world.machine.settings.texts.clear();
    host.dataRoot = world.data("") + "elsewhere/";
    world.process.isOne = false;
    Application refused(host, false);
    std::string told;
    const Answer read(QMessageBox::Ok, &told);
    EXPECT_FALSE(refused.start());
    EXPECT_THAT(told, HasSubstr("Administrator account"));
    EXPECT_FALSE(std::filesystem::exists(host.dataRoot));
}

TEST_F(Program, ChangesThePasswordUnderAnOpenDatabaseOrLeavesAllAsItWas) {
    start();
    createDatabase("docs");
    const auto change = [&](QMessageBox::StandardButton last) {
        std::string told;
        std::unique_ptr<WhenShown<QMessageBox>> reports;
        std::unique_ptr<Answer> end;
        const WhenShown<PasswordChangeWindow> fill([&](PasswordChangeWindow& window) {
            find<QLineEdit>(window, "currentEdit").setText("open sesame");
            find<QLineEdit>(window, "newEdit").setText("another one");
            find<QLineEdit>(window, "confirmationEdit").setText("another one");
            reports = std::make_unique<WhenShown<QMessageBox>>([&](QMessageBox& box) {
                end = std::make_unique<Answer>(last, &told);
                box.button(QMessageBox::No)->click();
            });
            window.accept();
        });
        trigger(Command::ChangePassword);
        reports.reset();
        end.reset();
        EXPECT_NE(list(), nullptr) << "the database is open again";
        return told;
    };
    world.machine.status.room = 1000;
    EXPECT_THAT(change(QMessageBox::Ok), HasSubstr("1000"));
    world.machine.status.room.reset();
    EXPECT_EQ(change(QMessageBox::Ok), "Password change successfully completed.");
    application.reset();
    start("another one");
}

TEST_F(Program, MakesADatabaseFindsWhatChangedShowsWhereAndPutsItBack) {
    const std::string path = world.write("a.txt", std::string(300, 'a'));
    world.write("b.txt", "b");
    start();
    createDatabase("docs");
    ASSERT_NE(list(), nullptr);
    addFolder(world.path(""));
    EXPECT_EQ(list()->files().count(), 2U);

    world.write("a.txt", std::string(200, 'a') + "X" + std::string(99, 'a'));
    world.machine.system.files.remove(world.path("b.txt"));
    {
        std::string changed;
        std::unique_ptr<WhenShown<ChangedFileWindow>> details;
        std::unique_ptr<WhenShown<FileAnalysisWindow>> analysis;
        std::unique_ptr<WhenShown<FileRestoreWindow>> restore;
        std::unique_ptr<WhenShown<QMessageBox>> restored;
        std::unique_ptr<WhenShown<QMessageBox>> gone;
        std::unique_ptr<Answer> notes;
        std::string noted;
        std::string unchecked;
        std::unique_ptr<WhenShown<CheckSummaryWindow>> summary;
        std::string outcome;
        const WhenShown<QMessageBox> warning([&](QMessageBox& box) {
            changed = box.text().toStdString();
            details = std::make_unique<WhenShown<ChangedFileWindow>>([&](ChangedFileWindow& window) {
                analysis = std::make_unique<WhenShown<FileAnalysisWindow>>(
                    [](FileAnalysisWindow& shownRows) { shownRows.accept(); });
                find<QPushButton>(window, "analysisButton").click();
                find<QRadioButton>(window, "reactionButton3").click();
                restore = std::make_unique<WhenShown<FileRestoreWindow>>([&](FileRestoreWindow& choice) {
                    restored = std::make_unique<WhenShown<QMessageBox>>([&](QMessageBox& told) {
                        outcome = told.text().toStdString();
                        gone = std::make_unique<WhenShown<QMessageBox>>([&](QMessageBox& missing) {
                            unchecked = missing.text().toStdString();
                            notes = std::make_unique<Answer>(QMessageBox::Ok, &noted);
                            missing.accept();
                        });
                        told.accept();
                    });
                    summary = std::make_unique<WhenShown<CheckSummaryWindow>>(
                        [](CheckSummaryWindow& counts) { counts.accept(); });
                    find<QPushButton>(choice, "okButton").click();
                });
                find<QPushButton>(window, "okButton").click();
            });
            box.accept();
        });
        trigger(Command::CheckDatabase);
        EXPECT_EQ(changed, path + " has been changed! ");
        EXPECT_EQ(outcome, path + " successfully restored.");
        EXPECT_EQ(unchecked, "Couldn't check " + world.path("b.txt") + "\nReason: FileNotFound.") << "once";
        EXPECT_EQ(noted.rfind(path + "\nThe changed file was moved to ", 0), 0U) << noted;
    }
    EXPECT_EQ(world.read("a.txt"), std::string(300, 'a'));
    {
        const WhenShown<DatabaseDetailsWindow> details([](DatabaseDetailsWindow& window) {
            EXPECT_NE(find<QLabel>(window, "valueLabel1").text(), "Unchecked") << "it stayed open";
            window.accept();
        });
        trigger(Command::DatabaseDetails);
    }

    list()->selectRow(0);
    EXPECT_TRUE(application->frame().actions().action(Command::RemoveSelected)->isEnabled());
    {
        std::string removed;
        std::unique_ptr<Answer> told;
        const WhenShown<QMessageBox> question([&](QMessageBox& box) {
            told = std::make_unique<Answer>(QMessageBox::Ok, &removed);
            box.button(QMessageBox::Yes)->click();
        });
        trigger(Command::RemoveSelected);
        EXPECT_EQ(removed, "1 file successfuly removed from the database.");
    }
    EXPECT_EQ(list()->files().count(), 1U);
    trigger(Command::CloseDatabase);
    EXPECT_EQ(list(), nullptr);
    EXPECT_EQ(application->frame().windowTitle(), "Corvalence");
    application->stop();
    EXPECT_TRUE(world.leftovers().empty());
}

TEST_F(Program, LeavesACheckAtTheFirstOfManyMessagesAndTellsOfOneFileOnce) {
    start();
    createDatabase("docs");
    for (const char* name : {"a", "b"}) {
        const std::string path = world.write(name, "old");
        const WhenShown<QFileDialog> choose([&](QFileDialog& dialog) {
            EXPECT_EQ(dialog.windowTitle(), "Add file to database.");
            find<QLineEdit>(dialog, "fileNameEdit").setText(QString::fromStdString(path));
            static_cast<QDialog&>(dialog).accept();
        });
        trigger(Command::AddSpecificFile);  // and no message
        world.write(name, "new");
    }
    ASSERT_EQ(list()->files().count(), 2U);
    {
        // Neither the details nor a second message nor a summary.
        const Answer enough(QMessageBox::Cancel);
        trigger(Command::CheckDatabase);
    }
    {
        std::unique_ptr<Answer> told;
        const WhenShown<QMessageBox> question([&](QMessageBox& box) {
            told = std::make_unique<Answer>(QMessageBox::Ok);
            box.button(QMessageBox::Yes)->click();
        });
        trigger(Command::RemoveAllFiles);
    }
    EXPECT_EQ(find<QLabel>(application->frame(), "workPane").text(), "Ready");
    EXPECT_NE(find<QLabel>(application->frame(), "databasePane").text(), "");
    createDatabase("more");
    EXPECT_EQ(find<QLabel>(application->frame(), "databasePane").text(), "") << "it was said of another";
}

TEST_F(Program, RefusesAWrongPasswordAndALockedInstallationAndEndsWhereTheUserLeaves) {
    start();
    createDatabase("docs");
    {
        // The second start of the program.
        Application second(host, false);
        const Answer told(QMessageBox::Ok);
        EXPECT_FALSE(second.start());
    }
    application->stop();
    application.reset();

    Application again(host, false);
    std::unique_ptr<WhenShown<PasswordWindow>> next;
    const WhenShown<PasswordWindow> wrong([&](PasswordWindow& window) {
        next = std::make_unique<WhenShown<PasswordWindow>>([](PasswordWindow& shownAnew) {
            EXPECT_TRUE(find<QLineEdit>(shownAnew, "passwordEdit").text().isEmpty());
            shownAnew.reject();
        });
        type(window, "something else");
    });
    EXPECT_FALSE(again.start()) << "no message says why";
}

TEST_F(Program, ShowsTheReportOfADirectoryStructureCheckByPagesAndSavesNothingOfIt) {
    world.write("old.txt", "1");
    world.platform.settings.write("Software\\Corvalence\\Walk Roots", world.path(""));
    start();
    EXPECT_EQ(application->frame().windowTitle(), "Corvalence");
    trigger(Command::DirectoryStructureMode);
    EXPECT_EQ(application->frame().windowTitle(), "Corvalence - Directory Structure Mode.");
    createDatabase("names");
    EXPECT_TRUE(application->workspace().state().isDatabaseOpen);
    trigger(Command::DirectoryStructureMode);
    EXPECT_EQ(find<QLabel>(application->frame(), "openDatabase").text(),
              QString::fromStdString("Open database: " + application->workspace().database()->path()))
        << "the mode that it is in already";
    world.platform.settings.write("Software\\Corvalence\\Config15", "1000");
    for (int i = 0; i < 2500; ++i)
        world.write("new" + std::to_string(i), "");
    {
        const WhenShown<CheckDoneWindow> done([&](CheckDoneWindow& window) {
            EXPECT_EQ(window.windowTitle().toStdString(),
                      "Checking directory structure database: " + world.databasePath("names"));
            EXPECT_THAT(totals(window), HasSubstr("2500 Files Added.\n0 Files Removed.\n"));
            EXPECT_EQ(window.focusWidget(), &find<QPushButton>(window, "viewReportButton"));
            find<QPushButton>(window, "viewReportButton").click();
        });
        trigger(Command::CheckDatabase);
    }
    ASSERT_EQ(application->workspace().state().view, shell::View::Report);
    EXPECT_EQ(application->frame().windowTitle(), "Corvalence - Directory Structure Report.");
    auto& caption = find<QLabel>(application->frame(), "pageCaption");
    EXPECT_EQ(caption.text(), "Page: 1 of 3");
    EXPECT_FALSE(application->frame().actions().action(Command::PreviousReport)->isEnabled());
    trigger(Command::NextReport);
    find<QToolButton>(application->frame(), "nextPageButton").click();
    EXPECT_EQ(caption.text(), "Page: 3 of 3");
    auto& view = dynamic_cast<ReportView&>(*application->frame().view());
    EXPECT_EQ(view.table().model()->rowCount(), 500);
    EXPECT_FALSE(application->frame().actions().action(Command::NextReport)->isEnabled());

    const std::string file = reports::reportPath(application->workspace().configuration(),
                                                 reports::ReportKind::DirectoryStructure);
    EXPECT_TRUE(world.platform.files.status(file, platform::Follow::Yes));
    trigger(Command::CloseDatabase);
    EXPECT_FALSE(world.platform.files.status(file, platform::Follow::Yes)) << "it ends with its view";
    EXPECT_EQ(application->frame().windowTitle(), "Corvalence.");
    EXPECT_TRUE(application->frame().actions().action(Command::RegistryMode)->isEnabled());
}

TEST_F(Program, TellsWhatACheckOfTheCompleteSystemCameToAndLeavesNoReportWhereItIsCancelled) {
    world.write("a.txt", "a");
    services.installed.emplace_back().name = "daemon";
    world.platform.settings.write("Software\\Corvalence\\Walk Roots", world.path(""));
    start();
    Workspace& work = application->workspace();
    trigger(Command::CompleteSystemMode);
    {
        std::unique_ptr<WhenShown<CompleteSystemWindow>> backups;
        const WhenShown<CreateDatabaseWindow> fill([&](CreateDatabaseWindow& window) {
            find<QLineEdit>(window, "nameEdit").setText("all");
            backups = std::make_unique<WhenShown<CompleteSystemWindow>>([](CompleteSystemWindow& choice) {
                EXPECT_TRUE(find<QRadioButton>(choice, "backupButton0").isChecked());
                find<QPushButton>(choice, "okButton").click();
            });
            find<QPushButton>(window, "okButton").click();
        });
        trigger(Command::CreateDatabase);
    }
    ASSERT_TRUE(work.state().isDatabaseOpen);
    EXPECT_EQ(application->frame().windowTitle().toStdString(), "Corvalence - " + world.databasePath("all"));
    const auto check = [&](const char* button) {
        const WhenShown<ScanSelectionWindow> select([](ScanSelectionWindow& window) {
            for (const char* name : {"componentBox0", "componentBox2", "componentBox3"})
                find<QCheckBox>(window, name).click();
            window.accept();
        });
        const WhenShown<CheckDoneWindow> done([&](CheckDoneWindow& window) {
            EXPECT_THAT(totals(window), HasSubstr("Directory Structure.\n0 Files Added.\n"));
            EXPECT_THAT(totals(window), HasSubstr("\n\nServices.\n"));
            EXPECT_THAT(totals(window), Not(HasSubstr("Registry.")));
            find<QPushButton>(window, button).click();
        });
        trigger(Command::CheckDatabase);
    };
    const auto hasReport = [&](reports::ReportKind kind) {
        const std::string file = reports::reportPath(work.configuration(), kind);
        return world.platform.files.status(file, platform::Follow::Yes).has_value();
    };
    check("cancelButton");
    EXPECT_EQ(work.state().view, shell::View::Empty);
    EXPECT_FALSE(hasReport(reports::ReportKind::Services));
    std::string told;
    {
        const Answer box(QMessageBox::Ok, &told);
        check("viewReportButton");
    }
    EXPECT_EQ(told.rfind("Corvalence has created a report for each component", 0), 0U);
    EXPECT_TRUE(hasReport(reports::ReportKind::Services));
    EXPECT_EQ(find<QLabel>(application->frame(), "pageCaption").text(), "Page: 2 of 5");
    trigger(Command::NextReport);
    auto& view = dynamic_cast<ReportView&>(*application->frame().view());
    EXPECT_EQ(view.table().emptyText(), "The Permissions component was not checked.");

    const auto choose = [](const std::string& path) {
        return std::make_unique<WhenShown<QFileDialog>>([path](QFileDialog& dialog) {
            dialog.selectFile(QString::fromStdString(path));
            static_cast<QDialog&>(dialog).accept();
        });
    };
    {
        std::unique_ptr<Answer> second;
        const WhenShown<QMessageBox> first([&](QMessageBox& box) {
            second = std::make_unique<Answer>(QMessageBox::Ok, &told);
            box.accept();
        });
        const auto asComponents = choose(world.databasePath("all"));
        trigger(Command::SaveReport);
    }
    EXPECT_EQ(told, world.databasePath("allS") + "  is the name of an existing database.");
    {
        const auto elsewhere = choose(world.path("saved"));
        trigger(Command::SaveReport);
    }
    trigger(Command::CloseDatabase);
    EXPECT_FALSE(hasReport(reports::ReportKind::Services));
    const auto saved = choose(world.path("savedS"));
    trigger(Command::ViewSavedReport);
    EXPECT_EQ(application->frame().windowTitle(), "Corvalence - Services Report.");
    EXPECT_FALSE(application->frame().actions().action(Command::SaveReport)->isEnabled());
}

TEST_F(Program, ShowsTheCreationOfARegistryDatabaseAndLeavesNothingOfACancelledOne) {
    start();
    for (int key = 0; key < 500; ++key)
        registry.key(platform::RegistryRoot::Users, "key" + std::to_string(key));
    registry.delay = 20;
    trigger(Command::RegistryMode);
    const auto note = [](ProgressWindow& window) { return find<QLabel>(window, "noteLabel").text(); };
    const WhenShown<ProgressWindow> progress(
        [&](ProgressWindow& window) {
            EXPECT_EQ(window.windowTitle().toStdString(),
                      "Creating New Registry Structure Database: " + world.databasePath("keys"));
            window.reject();
        },
        [&](ProgressWindow& window) { return note(window).startsWith("Total Number Of Registry Values: "); });
    const WhenShown<CreateDatabaseWindow> fill([&](CreateDatabaseWindow& window) {
        find<QLineEdit>(window, "nameEdit").setText("keys");
        find<QPushButton>(window, "okButton").click();
        EXPECT_TRUE(window.isVisible());
        window.reject();
    });
    trigger(Command::CreateDatabase);
    EXPECT_FALSE(application->workspace().state().isDatabaseOpen);
    EXPECT_FALSE(world.platform.files.status(world.databasePath("keys"), platform::Follow::Yes));
    EXPECT_TRUE(store::DatabaseIndex(application->workspace().vault()).records().empty());
}

TEST_F(Program, StartsBehindTheTrayAndComesUpFromIt) {
    world.platform.settings.write("Software\\Corvalence\\Config8", "1");
    application = std::make_unique<Application>(host, true);
    auto tray = std::make_unique<test::ShownTray>();
    test::ShownTray& icons = *tray;
    application->tray = std::move(tray);
    application->hasTray = [] { return true; };
    const WhenShown<PasswordWindow> enter([&](PasswordWindow& window) { type(window, "open sesame"); });
    ASSERT_TRUE(application->start());
    EXPECT_FALSE(application->frame().isVisible());
    EXPECT_EQ(icons.captions.back(), "Corvalence - Counting Down To Next Scheduled Check.");
    application->frame().firstPaint = [] {};
    const auto frame = [&] { return icons.icons.at(schedule::kMainIcon).frame; };
    EXPECT_TRUE(test::waitFor([&] { return frame() > 0; }));
    application->schedule().trayOpen();
    EXPECT_TRUE(application->frame().isVisible());
    {
        world.platform.settings.write("Software\\Corvalence\\Config22", "0");
        const WhenShown<ConfigurationWindow> sheet([](ConfigurationWindow& window) { window.reject(); });
        trigger(Command::AdjustConfiguration);
    }
    trigger(Command::StartBackground);
    EXPECT_FALSE(test::waitFor([&] { return frame() > 0; }, 600)) << "it is not animated any more";
}

TEST_F(Program, WarnsOfItsOwnFilesOnceItsWindowIsUpAndStillSaysThatThereIsNoTray) {
    application = std::make_unique<Application>(host, true);
    application->tray = std::make_unique<test::ShownTray>();
    application->hasTray = [] { return false; };
    std::vector<QString> titles;
    std::unique_ptr<WhenShown<SelfCheckWindow>> help;
    {
        const WhenShown<PasswordWindow> enter([&](PasswordWindow& window) { type(window, "open sesame"); });
        ASSERT_TRUE(application->start());
    }
    const WhenShown<SelfCheckWindow> program([&](SelfCheckWindow& window) {
        titles.push_back(window.windowTitle());
        help = std::make_unique<WhenShown<SelfCheckWindow>>([&](SelfCheckWindow& next) {
            titles.push_back(next.windowTitle());
            next.accept();
        });
        window.accept();
    });
    ASSERT_TRUE(test::waitFor([&] { return titles.size() == 2 && !application->workspace().isBusy(); }));
    EXPECT_EQ(titles[0] + titles[1], "Application file integrity check.Help file integrity check.");
    EXPECT_EQ(world.machine.sound.resources, (std::vector<std::string>{"rml", "rml"}));
    EXPECT_TRUE(find<QLabel>(application->frame(), "workPane").text().contains("no status tray"));
}

TEST_F(Program, TakesPastedAndDroppedFilesAndOpensARecentDatabase) {
    const auto urls = [](std::initializer_list<QUrl> list) {
        auto* data = new QMimeData;
        data->setUrls(list);
        return data;
    };
    const auto url = [](const std::string& path) {
        return QUrl::fromLocalFile(QString::fromStdString(path));
    };
    const std::string single = world.write("a.txt", "a");
    world.write("folder/b.txt", "b");
    world.write("folder/deep/c.txt", "c");
    start();
    createDatabase("docs");
    const QAction* paste = application->frame().actions().action(Command::PasteFiles);
    QApplication::clipboard()->setMimeData(urls({QUrl("https://halvernworks.example/x")}));
    EXPECT_FALSE(paste->isEnabled()) << "no file of this machine";
    QApplication::clipboard()->setMimeData(urls({url(single)}));
    ASSERT_TRUE(paste->isEnabled());
    {
        std::string told;
        const Answer answer(QMessageBox::Ok, &told);
        trigger(Command::PasteFiles);
        EXPECT_EQ(told, "1 File successfully added to the database.");
    }
    EXPECT_EQ(list()->files().count(), 1U);
    {
        std::string told;
        const Answer answer(QMessageBox::Ok, &told);
        list()->onDrop({world.path("folder")});
        ASSERT_TRUE(test::waitFor([&] { return list()->files().count() == 3; }));
        EXPECT_EQ(told.substr(0, 7), "2 Files") << told;
    }
    trigger(Command::CloseDatabase);
    EXPECT_FALSE(paste->isEnabled());

    QMenu& recent = application->frame().recentMenu();
    recent.aboutToShow();
    ASSERT_EQ(recent.actions().size(), 1);
    recent.actions().front()->trigger();
    ASSERT_NE(list(), nullptr);
    EXPECT_EQ(list()->files().count(), 3U);
    {
        std::string told;
        std::unique_ptr<Answer> gone;
        const WhenShown<QMessageBox> question([&](QMessageBox& box) {
            gone = std::make_unique<Answer>(QMessageBox::Ok, &told);
            box.button(QMessageBox::Yes)->click();
        });
        trigger(Command::DeleteDatabase);
        EXPECT_TRUE(told.ends_with("successfully deleted.")) << told;
    }
    EXPECT_EQ(list(), nullptr);
    recent.aboutToShow();
    ASSERT_EQ(recent.actions().size(), 1);
    EXPECT_FALSE(recent.actions().front()->isEnabled());
}

TEST_F(Program, TellsTheAddressOfAPageThatNothingOpens) {
    start();
    QObject nothing;
    QDesktopServices::setUrlHandler(QStringLiteral("https"), &nothing, "open");
    std::string told;
    {
        const Answer answer(QMessageBox::Ok, &told);
        trigger(Command::Website);
    }
    QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
    EXPECT_NE(told.find("https://"), std::string::npos) << told;
}

TEST_F(Program, ShowsTheMasterLogWithoutTheSummaryOfTheSessionThatItEnds) {
    world.write("a.txt", "a");
    world.platform.settings.write("Software\\Corvalence\\Walk Roots", world.path(""));
    world.platform.settings.write("Software\\Corvalence\\Config10", "1");
    world.platform.settings.write("Software\\Corvalence\\Config11", "N");
    start();
    trigger(Command::DirectoryStructureMode);
    createDatabase("names");
    schedule::ScheduleDialog(application->workspace().vault()).add(world.databasePath("names"));
    trigger(Command::CloseDatabase);
    trigger(Command::StartChecking);
    const std::string session =
        schedule::LogFiles(application->workspace().vault()).path(schedule::LogKind::Session);
    ASSERT_TRUE(test::waitFor([&] {
        const auto log = world.platform.files.status(session, platform::Follow::Yes);
        return log && log->size > 0 && !application->workspace().isBusy();
    }));
    EXPECT_EQ(find<QLabel>(application->frame(), "workPane").text(), "Ready");
    const WhenShown<LogWindow> log([](LogWindow& window) {
        EXPECT_EQ(window.windowTitle(), "Scheduled Checking Log.");
        window.accept();
    });
    trigger(Command::ViewLogFile);
    EXPECT_FALSE(application->workspace().state().isScheduleRunning);
    EXPECT_GT(world.platform.files.status(session, platform::Follow::Yes)->size, 0U) << "it waits";
}

TEST_F(Program, RemembersTheWindowAndIsAskedOnlyOnceToEnd) {
    start();
    application->frame().actions().action(Command::MemoryBar)->trigger();
    application->workspace().perform([&] {
        trigger(Command::Exit);
        EXPECT_TRUE(application->workspace().isEnding()) << "what goes on is to be cancelled";
        EXPECT_TRUE(application->frame().isVisible());
    });
    EXPECT_FALSE(application->frame().isVisible());
    application->frame().close();
    application.reset();
    start();
    EXPECT_FALSE(application->frame().isBarShown(Command::MemoryBar));
}

TEST(Workspace, ListsWhatAFailedCommandHasChanged) {
    test::Desk desk;
    desk.world.write("a.txt", "a");
    ASSERT_TRUE(desk.world.create());
    ASSERT_EQ(desk.world.open(), store::OpenResult::Opened);
    desk.work.showDatabase(desk.world.context());
    ASSERT_EQ(desk.work.fileList()->files().count(), 0U);
    desk.work.perform([&] {
        files::AddPipeline(desk.work.vault(), *desk.work.database()).addFiles({desk.world.path("a.txt")}, {});
        throw std::runtime_error("Behind it.");
    });
    EXPECT_EQ(desk.work.fileList()->files().count(), 1U);
    EXPECT_TRUE(desk.world.machine.ui.saw("Behind it."));
    EXPECT_EQ(desk.world.machine.ui.messages.size(), 1U);
}

TEST(Remarks, AreToldOnceAFaultAndNoNameMakesALineOfItsOwn) {
    test::Desk desk;
    const components::Remark refused{
        "refused", 1, " names refused.", {{"/a\n0 Files changed", "no record"}}, true};
    const components::Remark more{"refused", 21, " could not be added.", {}, true};
    const components::Remark one{"refused", 1, " could not be added.", {}, true};
    const components::Remark hidden{"hidden", 9, " hidden.", {}, false};
    desk.work.tellRemarks("Not whole:", {refused, more, hidden, refused, one});
    EXPECT_EQ(desk.world.machine.ui.messages.back().text,
              "Not whole:\n\n1 names refused.\n  /a\\n0 Files changed  no record\n21 could not be added.\n"
              "1 could not be added.");
}

}  // namespace
}  // namespace corvalence::gui
