#include "gui/dialogs/configuration_window.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QFileDialog>
#include <QGroupBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTabWidget>
#include <deque>

#include "driving.h"
#include "test_platform.h"

namespace corvalence::gui {
namespace {

using corvalence::test::TestPlatform;
using shell::SheetPages;
using test::find;
using test::WhenShown;
using testing::ElementsAre;
using testing::IsEmpty;

class NoAutoStart : public platform::AutoStart {
  public:
    bool isOn = false;
    bool enable(const std::string&) override { return isOn = true; }
    bool disable() override {
        isOn = false;
        return true;
    }
    bool isEnabled() override { return isOn; }
};

class Sheet : public testing::Test {
  protected:
    Sheet() {
        for (const settings::ConfigurationKey& key : settings::configurationKeys())
            configuration.write(key.name, std::string(key.fallback));
    }
    SheetMeans means() {
        return {machine.sound, machine.system.paths, [this](const QString& asked) { topic = asked; }, true};
    }
    SheetPages load() { return sheet.load(); }

    static void click(QWidget& window, const char* name) { find<QAbstractButton>(window, name).click(); }
    static void type(QWidget& window, const char* name, const QString& text) {
        find<QLineEdit>(window, name).setText(text);
    }
    static bool isUsable(QWidget& window, const char* name) {
        return find<QWidget>(window, name).isEnabled();
    }

    TestPlatform machine;
    platform::Platform platform{machine.files,  machine.access,         machine.volumes,
                                machine.status, machine.system.process, machine.system.types,
                                machine.clock,  machine.settings,       machine.sound,
                                machine.ui,     machine.system.paths};
    settings::Configuration configuration{machine.settings, machine.ui};
    NoAutoStart start;
    shell::ConfigurationSheet sheet{platform, configuration, start, "/opt/corvalence"};
    QString topic;
};

TEST_F(Sheet, HasSixPagesInTheirOrderEachWithItsHelp) {
    ConfigurationWindow window(load(), means());
    EXPECT_EQ(window.windowTitle(), "Configuration.");
    QTabWidget& tabs = find<QTabWidget>(window, "tabs");
    QStringList titles;
    QStringList topics;
    for (int i = 0; i < tabs.count(); ++i) {
        titles += tabs.tabText(i);
        for (auto* button : tabs.widget(i)->findChildren<QAbstractButton*>()) {
            if (!button->objectName().endsWith("HelpButton")) continue;
            button->click();
            topics += topic;
        }
    }
    EXPECT_EQ(titles.join('|'), "Backup.|Audio.|Background Checking.|Page Size.|Interface.|Email.");
    EXPECT_EQ(topics.join('|'),
              "configbackup|configaudio|configbackground|configpagesize|configinterface|configemail");
    EXPECT_LE(window.sizeHint().width(), 1000);
    EXPECT_LE(window.sizeHint().height(), 700);
}

// Windows take two thirds of a screen by themselves, and pages scrolled that had room.
TEST_F(Sheet, OpensAsTallAsItsPages) {
    ConfigurationWindow window(load(), means());
    window.show();
    EXPECT_EQ(window.height(),
              std::min(window.sizeHint().height(), window.screen()->availableSize().height() - 60));
}

TEST_F(Sheet, LetsFieldsBeUsedAsTheOthersStand) {
    SheetPages pages = load();
    pages.backup.folder = "/stored/";
    ConfigurationWindow window(pages, means());
    EXPECT_FALSE(isUsable(window, "locationEdit") || isUsable(window, "locationButton"));
    click(window, "besideBox");
    EXPECT_TRUE(isUsable(window, "locationEdit") && isUsable(window, "locationButton"));
    type(window, "locationEdit", "/elsewhere");
    click(window, "besideBox");
    EXPECT_EQ(find<QLineEdit>(window, "locationEdit").text(), "/stored/");
    click(window, "backupDatabasesBox");
    EXPECT_FALSE(isUsable(window, "suffixEdit") || isUsable(window, "besideBox"));
    click(window, "backupFilesBox");
    EXPECT_FALSE(isUsable(window, "encryptBox"));
    click(window, "keepRecentBox");
    EXPECT_FALSE(isUsable(window, "recentSpin"));
    for (const char* field :
         {"eachRadio", "changesRadio", "plainRadio", "encryptedRadio", "recipientEdit", "timeoutSpin",
          "serverEdit", "tlsBox", "senderEdit", "loginEdit", "authoritiesEdit"}) {
        EXPECT_FALSE(isUsable(window, field)) << field;
    }
    click(window, "emailBox");
    EXPECT_TRUE(isUsable(window, "recipientEdit") && isUsable(window, "serverEdit"));
}

TEST_F(Sheet, PlaysEachSoundOfItsButtonsAtOnce) {
    ConfigurationWindow window(load(), means());
    type(window, "soundFileEdit", "/s/own.wav");
    for (const char* button : {"bleepButton", "calmButton", "warningButton", "alarmButton", "fileButton"})
        click(window, button);
    EXPECT_THAT(machine.sound.resources, ElementsAre("blp", "clm", "zaaz", "rml"));
    EXPECT_THAT(machine.sound.files, ElementsAre("/s/own.wav"));
}

TEST_F(Sheet, TakesTheFolderAndTheSoundThatTheUserFinds) {
    const std::string root = machine.folder.path();
    const std::string sound = machine.folder.write("own.wav", "RIFF");
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    ConfigurationWindow window(load(), means());
    const auto choose = [](const std::string& path, QString* title) {
        return [path, title](QFileDialog& dialog) {
            *title = dialog.windowTitle();
            dialog.setDirectory(QFileInfo(QString::fromStdString(path)).path());
            find<QLineEdit>(dialog, "fileNameEdit").setText(QString::fromStdString(path));
            QMetaObject::invokeMethod(&dialog, "accept");
        };
    };
    QString title;
    click(window, "besideBox");
    {
        WhenShown<QFileDialog> shown(choose(root.substr(0, root.size() - 1), &title));
        click(window, "locationButton");
    }
    EXPECT_EQ(window.pages().backup.folder, root.substr(0, root.size() - 1));
    {
        WhenShown<QFileDialog> shown(choose(sound, &title));
        click(window, "soundFileBrowseButton");
    }
    EXPECT_EQ(title, "Select WAV file.");
    EXPECT_EQ(window.pages().audio.soundFile, sound);
}

TEST_F(Sheet, KeepsWhatNobodyEditedByteForByte) {
    SheetPages pages = load();
    pages.backup.folder = "/old/\xFF name/";
    pages.audio.soundFile = "/s\n.wav";
    pages.email.loginFile = "/\xC3";
    pages.look.walkRoots = "/srv/\xFE\n/home";
    ConfigurationWindow window(pages, means());
    EXPECT_EQ(window.pages().backup.folder, pages.backup.folder);
    EXPECT_EQ(window.pages().audio.soundFile, pages.audio.soundFile);
    EXPECT_EQ(window.pages().email.loginFile, pages.email.loginFile);
    EXPECT_EQ(window.pages().look.walkRoots, pages.look.walkRoots);
    find<QPlainTextEdit>(window, "walkRootsEdit").setPlainText("/srv\n\n/home\n");
    EXPECT_EQ(window.pages().look.walkRoots, "/srv\n/home");
}

TEST_F(Sheet, StoresEveryFieldOnOk) {
    const std::string roots = machine.folder.path() + "\n" + machine.folder.path();
    WhenShown<ConfigurationWindow> shown([&](ConfigurationWindow& window) {
        type(window, "suffixEdit", "+");
        click(window, "encryptBox");
        click(window, "bleepRadio");
        click(window, "calmRadio");
        for (const char* box : {"startBox", "trayProgressBox", "animatedBox"})
            click(window, box);
        find<QSpinBox>(window, "pageSizeSpin").setValue(70000);
        find<QSpinBox>(window, "recentSpin").setValue(0);
        find<QSpinBox>(window, "infoBarSpin").setValue(60);
        EXPECT_FALSE(find<QAbstractButton>(window, "themedBox").isEnabled()) << "there is no such style here";
        for (const char* box : {"folderIconBox", "completeWalkBox"})
            click(window, box);
        find<QPlainTextEdit>(window, "walkRootsEdit").setPlainText(QString::fromStdString(roots));
        for (const char* button : {"emailBox", "changesRadio", "plainRadio", "tlsBox"})
            click(window, button);
        type(window, "recipientEdit", "a@b.c");
        find<QSpinBox>(window, "timeoutSpin").setValue(31);
        type(window, "serverEdit", "smtp://h");
        type(window, "senderEdit", "s@b.c");
        click(window, "okButton");
    });
    ConfigurationPrompt prompt(means());
    sheet.run(prompt);
    const SheetPages now = load();
    EXPECT_EQ(now.backup.suffix, "+");
    EXPECT_FALSE(now.backup.encrypts || now.audio.isCountdownSilent || now.background.isAnimated);
    EXPECT_EQ(now.audio.warning, shell::WarningChoice::Calm);
    EXPECT_TRUE(now.background.startsWithSession && start.isOn);
    EXPECT_EQ(configuration.stored("Config15"), "65000");
    EXPECT_EQ(now.pageSize.rows, 10000);
    EXPECT_EQ(now.look.recentCount, 1);
    EXPECT_EQ(now.look.infoBarSeconds, 59);
    EXPECT_TRUE(now.look.completeWalk && !now.look.folderIcon);
    EXPECT_EQ(now.look.walkRoots, roots);
    EXPECT_TRUE(now.email.isEnabled && now.email.onlyChanges && !now.email.encrypted &&
                !now.email.requiresTls);
    EXPECT_EQ(now.email.recipient + now.email.server + now.email.sender, "a@b.csmtp://hs@b.c");
    EXPECT_EQ(now.email.timeoutMinutes, 30);
    EXPECT_THAT(machine.ui.messages, IsEmpty());
}

/// The sheets of one run, one after the other, each driven by a step of its own.
class Showings {
  public:
    explicit Showings(std::deque<std::function<void(ConfigurationWindow&)>> steps)
        : steps_(std::move(steps)) {
        next();
    }
    bool areDone() const { return steps_.empty() && shown_->wasShown(); }

  private:
    void next() {
        shown_ = std::make_unique<WhenShown<ConfigurationWindow>>([this](ConfigurationWindow& window) {
            const auto step = steps_.front();
            steps_.pop_front();
            // The one that waits for the next sheet must be there before this one is left.
            QTimer::singleShot(0, &window, [this, step, &window] {
                if (!steps_.empty()) next();
                step(window);
            });
        });
    }

    std::deque<std::function<void(ConfigurationWindow&)>> steps_;
    std::unique_ptr<WhenShown<ConfigurationWindow>> shown_;
};

TEST_F(Sheet, ComesAgainWithWhatWasEnteredUntilTheRulesHold) {
    const auto confirm = [](auto act) {
        return [act](ConfigurationWindow& window) {
            act(window);
            click(window, "okButton");
        };
    };
    Showings showings({confirm([](QWidget& window) {
                           find<QTabWidget>(window, "tabs").setCurrentIndex(5);
                           click(window, "emailBox");
                           type(window, "recipientEdit", "nobody");
                           type(window, "suffixEdit", "D");
                       }),
                       confirm([](QWidget& window) {
                           EXPECT_EQ(find<QTabWidget>(window, "tabs").currentIndex(), 5);
                           EXPECT_EQ(find<QLineEdit>(window, "recipientEdit").text(), "nobody");
                           type(window, "recipientEdit", "a@b.c");
                       }),
                       confirm([](QWidget& window) {
                           type(window, "suffixEdit", "");
                           click(window, "besideBox");
                           type(window, "locationEdit", "/nowhere/");
                       }),
                       confirm([](QWidget& window) {
                           type(window, "suffixEdit", "~");
                           EXPECT_EQ(find<QLineEdit>(window, "locationEdit").text(), "/nowhere/");
                           click(window, "besideBox");
                           EXPECT_EQ(find<QLineEdit>(window, "locationEdit").text(), "/stored/");
                       })});
    configuration.write("Config3", "/stored/");
    ConfigurationPrompt prompt(means());
    sheet.run(prompt);
    EXPECT_TRUE(showings.areDone());
    std::vector<std::string> told;
    for (const auto& message : machine.ui.messages)
        told.push_back(message.text);
    EXPECT_THAT(told,
                ElementsAre("The recipient address must be a full Email address",
                            "The character to append to the database name should not be 'D', 'P', or 'R'.",
                            "If you want to backup each database you must enter a character to append to "
                            "the database name."));
    EXPECT_EQ(load().email.recipient, "a@b.c");
}

TEST_F(Sheet, LeavesTheSettingsAsTheyWereOnCancelAndHidesTheServerWhereNoneIsNeeded) {
    WhenShown<ConfigurationWindow> shown([&](ConfigurationWindow& window) {
        EXPECT_TRUE(find<QLineEdit>(window, "serverEdit").isHidden() ||
                    find<QLineEdit>(window, "serverEdit").parentWidget()->isHidden());
        click(window, "animatedBox");
        click(window, "cancelButton");
    });
    SheetMeans other = means();
    other.sendsThroughServer = false;
    ConfigurationPrompt prompt(other);
    sheet.run(prompt);
    EXPECT_TRUE(load().background.isAnimated);
}

}  // namespace
}  // namespace corvalence::gui
