#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProxyStyle>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>
#include <QtTest/QTest>

#include "driving.h"
#include "gui/dialogs/check_done_window.h"
#include "gui/dialogs/check_summary_window.h"
#include "gui/dialogs/elided_label.h"
#include "gui/support/dialog_buttons.h"

namespace corvalence::gui {
namespace {

using test::find;

const OpenHelp kNoHelp;

/// Buttons in the order of a desktop that puts Help first.
class HelpFirst : public QProxyStyle {
  public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* result) const override {
        if (hint == SH_DialogButtonLayout) return QDialogButtonBox::KdeLayout;
        return QProxyStyle::styleHint(hint, option, widget, result);
    }
};

/// The style of all windows for as long as it lives.
class InStyle {
  public:
    explicit InStyle(QStyle* style) : before_(QApplication::style()->name()) {
        QApplication::setStyle(style);
    }
    ~InStyle() { QApplication::setStyle(before_); }
    InStyle(const InStyle&) = delete;
    InStyle& operator=(const InStyle&) = delete;

  private:
    QString before_;
};

// Where Help came first it had the keys, and Return opened the help instead of closing the summary.
TEST(Dialogs, ThatOnlyTellSomethingHaveTheirKeysOnOkWhateverTheOrderOfButtons) {
    const InStyle style(new HelpFirst);
    std::vector<QString> topics;
    CheckSummaryWindow window(
        {}, [&](const QString& topic) { topics.push_back(topic); }, nullptr);
    window.show();
    ASSERT_TRUE(test::waitFor([&] { return window.focusWidget() != nullptr; }));
    EXPECT_EQ(window.focusWidget()->objectName(), "okButton");
    QTest::keyClick(window.focusWidget(), Qt::Key_Return);
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_TRUE(topics.empty());
}

TEST(Dialogs, OpenTheirHelpByItsKey) {
    std::vector<QString> topics;
    CheckSummaryWindow window(
        {}, [&](const QString& topic) { topics.push_back(topic); }, nullptr);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(test::waitFor([&] { return window.isActiveWindow(); }));
    QTest::keyClick(&window, Qt::Key_F1);
    EXPECT_EQ(topics, std::vector<QString>{"checksummary"});
}

TEST(Dialogs, AreWideEnoughForTheirTitlesAndNoWiderThanTheScreen) {
    QDialog dialog;
    dialog.setWindowTitle("A title that is a good deal longer than the buttons and the text below it");
    auto* layout = new QVBoxLayout(&dialog);
    layout->addWidget(makeButtons(dialog, QDialogButtonBox::Ok, kNoHelp, {}));
    dialog.show();
    EXPECT_GT(dialog.width(), dialog.fontMetrics().horizontalAdvance(dialog.windowTitle()));
    dialog.hide();
    dialog.setWindowTitle(QString(2000, 'x'));
    dialog.show();
    EXPECT_LT(dialog.width(), QGuiApplication::primaryScreen()->availableSize().width());
}

// Rounded down, the width was less than the text by a part of a pixel, and its middle was left out.
TEST(Dialogs, ShowALineOfAPathWholeAtItsLeastWidth) {
    for (int length = 1; length < 80; ++length) {
        const QString path = QStringLiteral("/srv/") + QStringLiteral("files/li").repeated(10).left(length);
        ElidedLabel label(path);
        EXPECT_EQ(label.fontMetrics().elidedText(path, Qt::ElideMiddle, label.minimumWidth()), path);
    }
}

TEST(Dialogs, ShowTheTotalsOfACheckWithoutScrolling) {
    components::CheckOutcome outcome;
    for (int i = 0; i < 12; ++i)
        outcome.counts.push_back(
            {{}, " Directories created then moved to Recycle Bin between database checks.", 0});
    CheckDoneWindow window("Checking", {{{}, outcome}}, false, nullptr);
    window.show();
    const QPlainTextEdit& totals = find<QPlainTextEdit>(window, "totalsText");
    EXPECT_TRUE(test::waitFor([&] { return totals.verticalScrollBar()->maximum() == 0; }));
    EXPECT_EQ(totals.document()->size().height(), 12) << "no line is broken";
}

}  // namespace
}  // namespace corvalence::gui
