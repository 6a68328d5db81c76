#include "gui/dialogs/password_change_window.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "driving.h"
#include "listed_file.h"
#include "world.h"

namespace corvalence::gui {
namespace {

using corvalence::test::World;
using test::find;
using test::WhenShown;

// A wrong current password first: the fields that are kept are still there when the window comes again.
TEST(PasswordChangeWindow, ChangesThePasswordOnceTheFieldsAreRight) {
    World world;
    corvalence::test::listFile(world, "a", "one");
    PasswordChangePrompt prompt({});
    std::optional<WhenShown<PasswordChangeWindow>> second;
    WhenShown<PasswordChangeWindow> first([&](PasswordChangeWindow& window) {
        EXPECT_EQ(window.windowTitle(), "Password details. ");
        EXPECT_EQ(find<QLabel>(window, "warningLabel").text(),
                  "This could take a long time if you have a large number of databases.");
        find<QLineEdit>(window, "currentEdit").setText("wrong");
        find<QLineEdit>(window, "newEdit").setText("changed");
        find<QLineEdit>(window, "confirmationEdit").setText("changed");
        second.emplace([](PasswordChangeWindow& again) {
            EXPECT_EQ(find<QLineEdit>(again, "currentEdit").text(), "");
            EXPECT_EQ(find<QLineEdit>(again, "newEdit").text(), "");
            EXPECT_EQ(find<QLineEdit>(again, "confirmationEdit").text(), "changed");
            find<QLineEdit>(again, "currentEdit").setText("open sesame");
            find<QLineEdit>(again, "newEdit").setText("changed");
            find<QPushButton>(again, "okButton").click();
        });
        find<QPushButton>(window, "okButton").click();
        EXPECT_EQ(find<QLineEdit>(window, "confirmationEdit").text(), "changed") << "until it is taken";
    });
    const auto outcome = core::changePassword(world.run(), prompt, {});
    EXPECT_EQ(outcome.result, core::PasswordChangeResult::Changed);
    world.password.password = "changed";
    EXPECT_EQ(world.start(), core::StartResult::Ready);
    EXPECT_EQ(world.check().counts().identical, 1U);
}

TEST(PasswordChangeWindow, OverwritesWhatItHeld) {
    core::PasswordEntry entry;
    entry.current = crypto::SecretText("secret");
    PasswordChangeWindow window(entry, {}, nullptr);
    const QString held = find<QLineEdit>(window, "currentEdit").text();
    EXPECT_EQ(held, "secret");
    window.take(entry);
    EXPECT_EQ(entry.current.view(), "secret");
    EXPECT_EQ(held, QString(6, QChar())) << "the memory that the field had";
    EXPECT_EQ(find<QLineEdit>(window, "currentEdit").text(), "");
}

}  // namespace
}  // namespace corvalence::gui
