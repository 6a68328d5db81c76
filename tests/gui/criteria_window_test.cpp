#include "gui/dialogs/criteria_window.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QDateTimeEdit>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "driving.h"
#include "gui/dialogs/searching_window.h"
#include "world.h"

namespace corvalence::gui {
namespace {

using corvalence::test::World;
using test::find;

const OpenHelp kNoHelp;

void press(QWidget& window, const char* name) {
    find<QAbstractButton>(window, name).click();
}
void fill(QWidget& window, const char* name, const std::string& text) {
    find<QLineEdit>(window, name).setText(QString::fromStdString(text));
}

/// Presses a button of the window of a search, once `isTime`; the button can only be pressed then where none
/// is given.
class AtSearch {
  public:
    explicit AtSearch(const char* button, std::function<bool(SearchingWindow&)> isTime = {}) {
        QObject::connect(&timer_, &QTimer::timeout, [this, button, isTime] {
            auto* window = dynamic_cast<SearchingWindow*>(QApplication::activeModalWidget());
            if (window == nullptr) return;
            if (isTime ? !isTime(*window) : !find<QPushButton>(*window, "proceedButton").isEnabled()) return;
            timer_.stop();
            press(*window, button);
        });
        timer_.start(5);
    }
    ~AtSearch() { EXPECT_FALSE(timer_.isActive()) << "it did not come to that"; }
    AtSearch(const AtSearch&) = delete;
    AtSearch& operator=(const AtSearch&) = delete;

  private:
    QTimer timer_;
};

class CriteriaWindows : public testing::Test {
  protected:
    CriteriaWindows() {
        world.write("small.txt", "12345");
        world.write("large.exe", std::string(5000, 'x') + " wanted word");
        world.write("none", "");
        world.create();
        EXPECT_EQ(world.open(), store::OpenResult::Opened);
    }
    CriteriaWindow open(CriteriaKind kind, bool adds) {
        return {world.vault(), world.context(), criteriaCommand(kind, adds), kNoHelp, nullptr};
    }
    /// Presses OK, and the button in the window of the search.
    static void run(QDialog& window, const char* button) {
        window.show();
        const AtSearch atSearch(button);
        press(window, "okButton");
    }
    std::vector<std::string> listed() {
        std::vector<std::string> names;
        for (const files::FileRecord& record : world.records())
            names.push_back(record.path.substr(world.path("").size()));
        std::sort(names.begin(), names.end());
        return names;
    }
    std::string lastMessage() { return world.machine.ui.messages.back().text; }

    World world;
};

TEST_F(CriteriaWindows, AddsWhatTheSearchFoundOnceTheUserProceeds) {
    auto window = open(CriteriaKind::Size, true);
    EXPECT_EQ(window.windowTitle(), "   Add files of a specific size from the database.");
    press(window, "sizeButton3");
    fill(window, "firstSizeEdit", "4");
    fill(window, "secondSizeEdit", "6");
    fill(window, "locationEdit", world.path(""));
    window.show();
    {
        const AtSearch atSearch("cancelButton", [](SearchingWindow& found) {
            if (!find<QPushButton>(found, "proceedButton").isEnabled()) return false;
            EXPECT_EQ(find<QLabel>(found, "countLabel").text(), "Number of files to be added: 1");
            EXPECT_EQ(find<QLabel>(found, "sizeLabel").text(), "Total size of files to be added: 5 Bytes");
            return true;
        });
        press(window, "okButton");
    }
    EXPECT_TRUE(window.isVisible()) << "the user did not go on";
    EXPECT_TRUE(listed().empty());
    run(window, "proceedButton");
    EXPECT_FALSE(window.isVisible());
    ASSERT_TRUE(window.added());
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_EQ(window.added()->text, "1 File located in " +
                                        world.path("").substr(0, world.path("").size() - 1) +
                                        " successfully added to the database.");
    EXPECT_EQ(listed(), std::vector<std::string>{"small.txt"});
}

TEST_F(CriteriaWindows, StaysOpenAtTheFieldThatIsWrong) {
    auto window = open(CriteriaKind::Size, true);
    window.show();
    QLineEdit& second = find<QLineEdit>(window, "secondSizeEdit");
    EXPECT_FALSE(second.isEnabled());
    press(window, "sizeButton3");
    EXPECT_TRUE(second.isEnabled());
    fill(window, "firstSizeEdit", "6");
    fill(window, "secondSizeEdit", "5");
    press(window, "okButton");
    EXPECT_EQ(window.focusWidget(), &second);
    fill(window, "secondSizeEdit", "7");
    for (const std::string& location : {std::string(), world.path("gone")}) {
        fill(window, "locationEdit", location);
        press(window, "okButton");
        EXPECT_EQ(lastMessage(), location + "  is not a valid location.");
        EXPECT_EQ(window.focusWidget(), &find<QLineEdit>(window, "locationEdit"));
    }
    EXPECT_TRUE(window.isVisible());
    EXPECT_FALSE(window.added());
}

TEST_F(CriteriaWindows, BeginWithTheirFirstField) {
    CriteriaWindow size = open(CriteriaKind::Size, true);
    ASSERT_NE(size.focusWidget(), nullptr);
    EXPECT_EQ(size.focusWidget()->objectName(), "sizeButton0");
    CriteriaWindow location = open(CriteriaKind::Location, true);
    ASSERT_NE(location.focusWidget(), nullptr);
    EXPECT_EQ(location.focusWidget()->objectName(), "locationEdit");
}

TEST_F(CriteriaWindows, CombinesTheGroupsThatAreChecked) {
    auto window = open(CriteriaKind::Combination, true);
    for (const char* group : {"typeGroup", "contentsGroup"})
        find<QGroupBox>(window, group).setChecked(true);
    fill(window, "extensionEdit", "exe");
    fill(window, "contentsEdit", "WANTED word");
    press(window, "wholeWordBox");
    fill(window, "firstSizeEdit", "");  // its group takes no part
    fill(window, "locationEdit", world.path(""));
    run(window, "proceedButton");
    EXPECT_EQ(listed(), std::vector<std::string>{"large.exe"});
    EXPECT_LE(window.width(), 1000);
    EXPECT_LE(window.height(), 700);
}

TEST_F(CriteriaWindows, AnyAttributesLeaveTheOtherBoxesNothingToSay) {
    auto window = open(CriteriaKind::Attributes, true);
    const QCheckBox& readOnly = find<QCheckBox>(window, "attributeBox0");
    EXPECT_TRUE(readOnly.isEnabled());
    press(window, "attributeBox8");
    EXPECT_FALSE(readOnly.isEnabled());
    fill(window, "locationEdit", world.path(""));
    run(window, "proceedButton");
    EXPECT_EQ(listed().size(), 3U);
}

TEST_F(CriteriaWindows, TellsWhereThereIsNoRoomAndAddsNothing) {
    world.machine.status.room = 10;
    auto window = open(CriteriaKind::Location, true);
    fill(window, "locationEdit", world.path(""));
    window.show();
    const AtSearch atSearch("cancelButton", [&](SearchingWindow& found) {
        EXPECT_FALSE(find<QPushButton>(found, "proceedButton").isEnabled());
        return !world.machine.ui.messages.empty();
    });
    press(window, "okButton");
    EXPECT_TRUE(window.isVisible());
    EXPECT_NE(lastMessage().find("enough free disk space"), std::string::npos);
    EXPECT_TRUE(listed().empty());
}

TEST_F(CriteriaWindows, RemoveTwinsAskFirstAndHaveNoNotifyBoxes) {
    world.add({"small.txt", "large.exe", "none"});
    world.open();
    auto window = open(CriteriaKind::Time, false);
    EXPECT_EQ(window.findChild<QCheckBox*>("notifyListedBox"), nullptr);
    press(window, "whichTimeButton1");
    press(window, "timeButton3");
    find<QDateTimeEdit>(window, "firstTimeEdit").setDate(QDate(1990, 1, 1));
    find<QDateTimeEdit>(window, "secondTimeEdit").setDate(QDate(2100, 1, 1));
    fill(window, "locationEdit", world.path("l"));
    world.machine.ui.answers = {false, true};
    window.show();
    world.machine.ui.cancelAt = 1;
    press(window, "okButton");
    EXPECT_TRUE(window.isVisible()) << "a search that was cancelled";
    world.machine.ui.cancelAt.reset();
    press(window, "okButton");
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(world.machine.ui.questions.back().text.substr(0, 27), "1 file will be removed from");
    press(window, "okButton");
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(window.removed()->removed, 1U);
    EXPECT_EQ(listed(), (std::vector<std::string>{"none", "small.txt"}));
}

TEST(CriteriaCommands, StandInTheTableWhereTheyAreLookedFor) {
    for (const CriteriaCommand& command : kCriteriaCommands)
        EXPECT_EQ(&criteriaCommand(command.kind, command.adds), &command);
}

// Its walk goes over every drive of the machine.
TEST_F(CriteriaWindows, AddAllStaysWhereItsSearchIsCancelled) {
    AddAllWindow window(world.vault(), world.context(), kNoHelp, nullptr);
    window.show();
    press(window, "backupButton2");
    EXPECT_LE(window.sizeHint().width(), 1000);
    const AtSearch atSearch("cancelButton", [](SearchingWindow&) { return true; });
    press(window, "okButton");
    EXPECT_TRUE(window.isVisible()) << "a search that was cancelled";
    EXPECT_FALSE(window.added());
}

}  // namespace
}  // namespace corvalence::gui
