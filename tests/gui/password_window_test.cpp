#include "gui/dialogs/password_window.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest/QTest>
#include <filesystem>

#include "driving.h"
#include "world.h"

namespace corvalence::gui {
namespace {

using corvalence::test::World;
using test::find;
using test::WhenShown;

class PasswordStage : public testing::Test {
  public:
    std::string typed(const std::function<void(QLineEdit& field)>& type) {
        WhenShown<PasswordWindow> shown([&](PasswordWindow& front) {
            QLineEdit& field = find<QLineEdit>(front, "passwordEdit");
            type(field);
            stars = field.text().toStdString();
            QTest::keyClick(&field, Qt::Key_Return);
        });
        const auto password = prompt.show({});
        return password ? std::string(password->view()) : "left";
    }

    World world;
    QString topic;
    PasswordWindow window{world.platform, [this](const QString& asked) { topic = asked; }};
    PasswordPrompt prompt{window};
    std::string stars;
};

TEST_F(PasswordStage, TakesEachKeyAndShowsStars) {
    EXPECT_EQ(typed([](QLineEdit& field) { QTest::keyClicks(&field, "open sesame"); }), "open sesame");
    EXPECT_EQ(stars, "***********");
    EXPECT_EQ(find<QLineEdit>(window, "passwordEdit").text(), "");
    EXPECT_EQ(typed([](QLineEdit& field) {
                  QTest::keyClicks(&field, "first");
                  QTest::keyClick(&field, Qt::Key_Home);
                  QTest::keyClick(&field, Qt::Key_Z, Qt::ControlModifier);
                  QTest::keyClick(&field, Qt::Key_Backspace);
                  QTest::keyClicks(&field, "x*third");
              }),
              "third");
    EXPECT_EQ(stars, "*****");
}

TEST_F(PasswordStage, LetsNothingSlipPastTheRule) {
    const auto paste = [](QLineEdit& field, const char* text) {
        QApplication::clipboard()->setText(QString::fromUtf8(text));
        QTest::keyClick(&field, Qt::Key_V, Qt::ControlModifier);
    };
    EXPECT_EQ(typed([&](QLineEdit& field) {
                  QTest::keyClicks(&field, "a");
                  paste(field, "no*t");
                  paste(field, "bc");
                  field.setText("slipped in");
                  QInputMethodEvent composing("composing", {});
                  QApplication::sendEvent(&field, &composing);
                  QInputMethodEvent composed;
                  composed.setCommitString(QString::fromUtf8("\xC3\xA9"));
                  QApplication::sendEvent(&field, &composed);
              }),
              "abc\xC3\xA9");
    EXPECT_EQ(stars, "****");
}

TEST_F(PasswordStage, SaysOnlyAtTheFirstStartThatAnyPasswordDoes) {
    const auto isSaid = [&](bool choosing, bool again) {
        bool said = false;
        WhenShown<PasswordWindow> shown([&](PasswordWindow& front) {
            const QLabel& label = find<QLabel>(front, "choosingLabel");
            EXPECT_EQ(label.text(), QString(25, ' ') + "CHOOSE ANY PASSWORD.");
            said = label.isVisible();
            find<QPushButton>(front, "helpButton").click();
            EXPECT_EQ(topic, "passwordscreen");
            find<QPushButton>(front, "exitButton").click();
        });
        EXPECT_FALSE(prompt.show({choosing, again}).has_value());
        return said;
    };
    EXPECT_TRUE(isSaid(true, false));
    EXPECT_FALSE(isSaid(false, true));
}

TEST_F(PasswordStage, TakesNoPasswordForAChosenOneOnlyWhereTheUserMeansIt) {
    world.machine.ui.answers = {false, true};
    WhenShown<PasswordWindow> shown([&](PasswordWindow& front) {
        QTest::keyClick(&find<QLineEdit>(front, "passwordEdit"), Qt::Key_Return);
        EXPECT_TRUE(front.isVisible());
        QTest::keyClick(&find<QLineEdit>(front, "passwordEdit"), Qt::Key_Return);
    });
    EXPECT_EQ(prompt.show({.choosing = true})->view(), "");
    EXPECT_EQ(world.machine.ui.questions.size(), 2U);
}

TEST_F(PasswordStage, ResetsAndGoesOnAskingAndTheNextPasswordIsTheOne) {
    world.create();
    world.stop();
    world.machine.ui.answers = {false, true};
    const std::string index = world.data("Backup Files/Database Index");
    WhenShown<PasswordWindow> shown([&](PasswordWindow& front) {
        QLineEdit& field = find<QLineEdit>(front, "passwordEdit");
        QPushButton& reset = find<QPushButton>(front, "resetButton");
        QTest::keyClicks(&field, "forgot");
        reset.click();
        EXPECT_GT(std::filesystem::file_size(index), 0U);
        EXPECT_EQ(field.text(), "******");
        reset.setFocus();
        reset.click();
        EXPECT_EQ(std::filesystem::file_size(index), 0U);
        EXPECT_EQ(front.focusWidget(), &field);
        EXPECT_TRUE(find<QLabel>(front, "choosingLabel").isVisible());
        QTest::keyClicks(&field, "new one");
        QTest::keyClick(&field, Qt::Key_Return);
    });
    std::unique_ptr<core::Run> run;
    EXPECT_EQ(core::Run::start(world.platform, prompt, std::chrono::milliseconds(0), run),
              core::StartResult::Ready);
}

}  // namespace
}  // namespace corvalence::gui
