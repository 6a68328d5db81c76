#include <gtest/gtest.h>

#include <QLabel>
#include <QProgressBar>
#include <QProxyStyle>
#include <QPushButton>
#include <QStyleFactory>
#include <QTest>
#include <QTimer>

#include "driving.h"
#include "gui/support/bars.h"
#include "gui/support/progress_window.h"
#include "gui/support/qt_user_interface.h"

namespace corvalence::gui {
namespace {

using test::Answer;
using test::find;

ProgressWindow* shownWindow() {
    return dynamic_cast<ProgressWindow*>(QApplication::activeModalWidget());
}

/// Whether work that is over at once shows a window. A machine that is held up in its middle makes it work
/// that lasts: then it is done again.
bool flashes(QtUserInterface& ui) {
    constexpr qint64 kAtOnce = 200;  // milliseconds
    for (;;) {
        QElapsedTimer since;
        since.start();
        const auto progress = ui.openProgress("Short work");
        EXPECT_FALSE(progress->cancelled());
        if (shownWindow() == nullptr) return false;
        if (since.elapsed() < kAtOnce) return true;
    }
}

TEST(Progress, ComesUpWhereWorkLastsShowsItAndIsCancelled) {
    QtUserInterface ui;
    EXPECT_FALSE(flashes(ui));
    ui.typeText = [](std::string_view path) { return path.ends_with(".b") ? "B File" : "Other File"; };
    const auto progress = ui.openProgress("Checking all files in Database: /x/" + std::string(400, 'y'));
    progress->item({"/a/\xFF" + std::string(100, 'b') + ".b", 12});
    progress->bar(32500);
    const std::string sizes =
        "Number of files to be added: 134812   Total size of files to be added: 21261290875 Bytes [19.80 GB]";
    progress->label(sizes);

    ASSERT_TRUE(test::waitFor([&] { return !progress->cancelled() && shownWindow() != nullptr; }));
    auto& window = *shownWindow();
    test::waitFor([&] {
        progress->cancelled();
        return find<QProgressBar>(window, "progressBar").value() == 32500;
    });
    EXPECT_EQ(find<QLabel>(window, "remainingLabel").text(), "Remaining: 12");
    EXPECT_TRUE(find<QLabel>(window, "subjectLabel").text().startsWith("/a/\\xff"))
        << "bytes that are no text";
    EXPECT_EQ(find<QLabel>(window, "typeLabel").text(), "B File");
    auto& note = find<QLabel>(window, "noteLabel");
    EXPECT_EQ(note.text().toStdString(), sizes);
    EXPECT_LE(note.heightForWidth(note.width()), note.height()) << "cut off";
    EXPECT_LT(window.width(), 1000) << "a long path widens nothing";

    QTest::keyClick(&window, Qt::Key_Return);
    EXPECT_FALSE(progress->cancelled());

    window.resize(2000, window.height());
    progress->label("so many\nso large");
    EXPECT_TRUE(test::waitFor([&] {
        progress->item({"/a/" + std::string(130, 'b'), 0, platform::WorkItem::Kind::File, 3000});
        progress->cancelled();
        return find<QLabel>(window, "subjectLabel").text() == "/a/~..." + QString(113, 'b');
    }));
    EXPECT_EQ(find<QLabel>(window, "noteLabel").text(), "so many   so large");
    EXPECT_EQ(find<QLabel>(window, "typeLabel").text(), "Other File   3000 Bytes.  [2.93 KB].");

    QTimer::singleShot(30, [&] { find<QPushButton>(window, "cancelButton").click(); });
    EXPECT_TRUE(test::waitFor([&] { return progress->cancelled(); })) << "the work alone handles the events";
    EXPECT_TRUE(window.isVisible()) << "until the work has stopped";
}

TEST(Progress, ShowsCountersAsTheyGrowAndNoTypeOfWhatIsNoFile) {
    class Growing : public platform::Counting {
      public:
        std::vector<platform::Count> counts() const override {
            return {{"added", " Files Added.", added}, {"removed", " Files Removed.", 0}};
        }
        std::uint64_t added = 0;
    };
    QtUserInterface ui;
    ui.typeText = [](std::string_view) { return "A Type"; };
    const auto progress = ui.openProgress("Checking");
    ASSERT_TRUE(test::waitFor([&] { return !progress->cancelled() && shownWindow() != nullptr; }));
    auto& window = *shownWindow();
    const int height = window.height();
    {
        Growing growing;
        const platform::Watched watched(*progress, growing);
        progress->item({"HKEY_USERS\\x.y", 0, platform::WorkItem::Kind::Other});
        for (growing.added = 0; growing.added < 3; ++growing.added) {
            const QString expected = QStringLiteral("%1 Files Added.\n0 Files Removed.").arg(growing.added);
            EXPECT_TRUE(test::waitFor([&] {
                return !progress->cancelled() && find<QLabel>(window, "countsLabel").text() == expected;
            }));
        }
    }
    EXPECT_TRUE(find<QLabel>(window, "typeLabel").text().isEmpty());
    EXPECT_TRUE(test::waitFor([&] {
        progress->cancelled();
        return window.height() > height;
    })) << "they cover nothing";
    // What was counted is gone: drawn again, the window asks for no more.
    progress->bar(1);
    EXPECT_TRUE(test::waitFor([&] {
        progress->cancelled();
        return find<QProgressBar>(window, "progressBar").value() == 1;
    }));
}

TEST(Progress, HasBarsOfTheDesktopsStyleWhereItHasOneAndTheSettingSaysSo) {
    const auto styleOfBar = [](bool isThemed) {
        setThemedBars(isThemed);
        const std::unique_ptr<QProgressBar> bar(makeBar());
        return bar->style();
    };
    EXPECT_FALSE(hasThemeStyle()) << "off-screen there is no desktop";
    EXPECT_EQ(styleOfBar(false), QApplication::style());
    QApplication::setStyle(new QProxyStyle(QStyleFactory::create("windows")));
    EXPECT_TRUE(hasThemeStyle());
    EXPECT_EQ(styleOfBar(true), QApplication::style());
    EXPECT_EQ(styleOfBar(false)->name(), "fusion");
    QApplication::setStyle(QStringLiteral("fusion"));
}

TEST(UserInterface, LetsWorkBeCancelledFromItsMessagesAndNothingElse) {
    QtUserInterface ui;
    const auto progress = ui.openProgress("Work");
    {
        const Answer ok(QMessageBox::Ok);
        ui.message(platform::Icon::Warning, "one of many");
    }
    {
        test::WhenShown<QMessageBox> escape([](QMessageBox& box) {
            EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::Ok));
            QTest::keyClick(&box, Qt::Key_Escape);
        });
        ui.message(platform::Icon::Warning, "the next");
    }
    EXPECT_FALSE(progress->cancelled());
    {
        const Answer cancel(QMessageBox::Cancel);
        ui.message(platform::Icon::Warning, "enough");
    }
    EXPECT_TRUE(progress->cancelled());
    const test::WhenShown<QMessageBox> plain([](QMessageBox& box) {
        EXPECT_EQ(box.button(QMessageBox::Cancel), nullptr) << "nothing goes on any more";
        box.accept();
    });
    ui.message(platform::Icon::Information, "done");
}

TEST(UserInterface, HoldsNothingUpWhereNobodyIsThereAndCancelsWorkAtTheEnd) {
    QtUserInterface ui;
    ui.isUnattended = [] { return true; };
    ui.message(platform::Icon::Warning, "one");
    ui.message(platform::Icon::Warning, "two");
    EXPECT_TRUE(ui.ask(platform::Icon::Warning, "Go on?", true));
    EXPECT_FALSE(ui.ask(platform::Icon::Warning, "Go on?", false));
    int left = 0;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() != "leftMessage") continue;
        ++left;
        EXPECT_EQ(dynamic_cast<QMessageBox&>(*widget).text(), "one\n\ntwo");
        widget->close();
    }
    EXPECT_EQ(left, 1);

    bool isEnding = false;
    ui.isEnding = [&] { return isEnding; };
    const auto progress = ui.openProgress("Work");
    EXPECT_FALSE(progress->cancelled());
    isEnding = true;
    EXPECT_TRUE(progress->cancelled());
}

TEST(UserInterface, AsksAndTellsInPlainTextAndEscapeIsNo) {
    QtUserInterface ui;
    std::string text;
    {
        Answer yes(QMessageBox::Yes, &text);
        EXPECT_TRUE(ui.ask(platform::Icon::Warning, "Delete <b>this</b>?\n\nSurely?", false));
    }
    EXPECT_EQ(text, "Delete <b>this</b>?\n\nSurely?");
    {
        test::WhenShown<QMessageBox> escape([](QMessageBox& box) {
            EXPECT_EQ(box.textFormat(), Qt::PlainText);
            EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::No)) << "Enter loses nothing";
            box.reject();
        });
        EXPECT_FALSE(ui.ask(platform::Icon::Warning, "Delete?", true));
    }
}

}  // namespace
}  // namespace corvalence::gui
