#include "gui/dialogs/changed_file_window.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include "driving.h"
#include "gui/dialogs/check_summary_window.h"
#include "gui/dialogs/file_analysis_window.h"
#include "gui/support/colours.h"
#include "world.h"

namespace corvalence::gui {
namespace {

using corvalence::test::World;
using test::find;
using test::WhenShown;

const OpenHelp kNoHelp;

class NoObserver : public files::CheckObserver {
  public:
    void unchecked(const std::string&, const std::string&) override {}
    void changed(const files::ChangedFileDetails&, files::Reaction, bool done, const std::string&) override {
        wasDone.push_back(done);
    }
    void note(const std::string&, const std::string&) override {}

    std::vector<bool> wasDone;
};

void press(QWidget& window, const char* name) {
    find<QAbstractButton>(window, name).click();
}

// A check whose user gives each of the four answers, and leaves one window by Escape.
TEST(ChangedFileWindow, TakesEachAnswerOfACheck) {
    World world;
    const std::vector<std::string> names = {"escape", "ignore", "update", "update keep", "restore"};
    for (const std::string& name : names)
        world.write(name, "old " + name);
    world.create();
    world.add(names);
    for (const std::string& name : names)
        world.write(name, "new " + name);
    world.open();
    ChangedFilePrompt prompt(world.vault(), world.context(), kNoHelp);
    NoObserver observer;
    files::FileContentsCheck check(world.vault(), world.context(), prompt, observer);

    std::vector<std::unique_ptr<WhenShown<ChangedFileWindow>>> shown;
    std::optional<WhenShown<FileRestoreWindow>> restore;
    std::size_t next = 0;
    std::function<void()> await = [&] {
        shown.push_back(std::make_unique<WhenShown<ChangedFileWindow>>([&](ChangedFileWindow& window) {
            const std::size_t at = next++;
            EXPECT_EQ(find<QLabel>(window, "pathLabel").text().toStdString(), world.path(names[at]));
            EXPECT_TRUE(find<QRadioButton>(window, "reactionButton0").isChecked());
            if (next < names.size()) await();
            if (at == 0) {
                press(window, "reactionButton3");
                window.reject();
                return;
            }
            press(window, ("reactionButton" + std::to_string(at - 1)).c_str());
            if (at < names.size() - 1) {
                press(window, "okButton");
                return;
            }
            restore.emplace([](FileRestoreWindow& choice) {
                EXPECT_TRUE(find<QRadioButton>(choice, "choiceButton1").isChecked());
                press(choice, "choiceButton0");
                press(choice, "okButton");
            });
            press(window, "okButton");
        }));
    };
    await();
    const files::CheckSummary summary = check.checkAllFiles();
    EXPECT_EQ(next, names.size());
    EXPECT_EQ(summary.counts.changed, 5U);
    EXPECT_EQ(world.read("restore"), "old restore");
    EXPECT_EQ(world.read("update"), "new update");
    EXPECT_EQ(world.check().counts().changed, 2U) << "the two that were ignored";

    CheckSummaryWindow window(summary, kNoHelp, nullptr);
    EXPECT_EQ(find<QLabel>(window, "valueLabel1").text(), "5");
    EXPECT_EQ(find<QLabel>(window, "valueLabel4").text(), "5");
    EXPECT_EQ(find<QLabel>(window, "valueLabel5").text(), "0");
    EXPECT_EQ(find<QLabel>(window, "valueLabel0").text(), "12:30:05   29.2.2024");
}

files::ChangedFileDetails someDetails() {
    files::ChangedFileDetails details;
    details.then.path = "/" + std::string(300, 'p');
    details.then.digest = std::string(128, 'a');
    details.then.size = 5;
    details.now = details.then;
    details.now.digest = std::string(127, 'a') + "b";
    details.sizeNow = 5;
    details.digestTruncated = true;
    return details;
}

TEST(ChangedFileWindow, MarksWhatIsNotAsRecordedByMoreThanColour) {
    World world;
    bool isAnalysed = false;
    ChangedFileWindow window(
        someDetails(), world.platform.clock, [&](QWidget*) { isAnalysed = true; }, kNoHelp, nullptr);
    const auto colourOf = [&](const char* name) {
        return find<QLabel>(window, name).palette().color(QPalette::WindowText);
    };
    const QPalette palette = window.palette();
    EXPECT_EQ(colourOf("thenValue1"), thenColour(palette));
    EXPECT_EQ(colourOf("nowValue1"), changedColour(palette));
    EXPECT_EQ(colourOf("nowValue0"), thenColour(palette));
    EXPECT_EQ(find<QLabel>(window, "mark1").accessibleName(), "Changed");
    EXPECT_EQ(window.findChild<QLabel*>("mark0"), nullptr);
    const QLabel& truncated = find<QLabel>(window, "truncatedLabel");
    EXPECT_EQ(truncated.text(), "[Truncated]");
    EXPECT_EQ(truncated.toolTip(), QString(128, 'a'));
    EXPECT_EQ(find<QLabel>(window, "nowValue1").text(), QString(64, 'a'));
    press(window, "analysisButton");
    EXPECT_TRUE(isAnalysed);
    window.adjustSize();
    EXPECT_LE(window.width(), 1000);
    EXPECT_LE(window.height(), 700);
}

TEST(ChangedFileWindow, LetsTheOwnIndexOnlyBeIgnored) {
    World world;
    files::ChangedFileDetails details = someDetails();
    details.digestTruncated = false;
    details.onlyIgnore = true;
    ChangedFileWindow window(details, world.platform.clock, {}, kNoHelp, nullptr);
    EXPECT_EQ(window.findChild<QLabel*>("truncatedLabel"), nullptr);
    EXPECT_TRUE(find<QRadioButton>(window, "reactionButton0").isEnabled());
    for (const char* name : {"reactionButton1", "reactionButton2", "reactionButton3"})
        EXPECT_FALSE(find<QRadioButton>(window, name).isEnabled());
}

}  // namespace
}  // namespace corvalence::gui
