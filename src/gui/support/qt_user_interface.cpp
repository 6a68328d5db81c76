#include "gui/support/qt_user_interface.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include "gui/support/progress_window.h"
#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

QMessageBox::Icon boxIcon(platform::Icon icon) {
    switch (icon) {
        case platform::Icon::Information:
            return QMessageBox::Information;
        case platform::Icon::Warning:
            return QMessageBox::Warning;
        case platform::Icon::Stop:
            break;
    }
    return QMessageBox::Critical;
}

void prepare(QMessageBox& box, platform::Icon icon, const std::string& text) {
    box.setIcon(boxIcon(icon));
    box.setWindowTitle(QStringLiteral("Corvalence"));
    box.setTextFormat(Qt::PlainText);  // paths are no markup
    box.setText(shownLines(text));
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    // Whatever else has come up at the same moment.
    QTimer::singleShot(0, &box, [&box] { box.activateWindow(); });
}

std::vector<WorkWindow*> windowsAtWork() {
    std::vector<WorkWindow*> windows;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* window = dynamic_cast<WorkWindow*>(widget);
        if (window != nullptr && window->isAtWork()) windows.push_back(window);
    }
    return windows;
}

/// Work may have one message after the other, and its own window is out of reach as long as they come.
void addCancel(QMessageBox& box) {
    const std::vector<WorkWindow*> windows = windowsAtWork();
    if (windows.empty()) return;
    QPushButton* ok = box.addButton(QMessageBox::Ok);
    QPushButton* cancel = box.addButton(QMessageBox::Cancel);
    cancel->setToolTip(QStringLiteral("Ends the work that is going on"));
    box.setDefaultButton(ok);
    box.setEscapeButton(ok);
    QObject::connect(cancel, &QPushButton::clicked, &box, [windows] {
        for (WorkWindow* window : windows)
            window->reject();
    });
}

}  // namespace

QWidget* frontWindow() {
    QWidget* modal = QApplication::activeModalWidget();
    return modal != nullptr && modal->isVisible() ? modal : QApplication::activeWindow();
}

/// Beside whatever goes on; what comes while it stands there is added to it.
void QtUserInterface::leaveMessage(platform::Icon icon, const std::string& text) {
    constexpr int kMostShown = 4000;  // characters
    if (left_) {
        if (left_->text().size() < kMostShown) left_->setText(left_->text() + "\n\n" + shownLines(text));
        return;
    }
    left_ = new QMessageBox;
    left_->setObjectName(QStringLiteral("leftMessage"));
    left_->setAttribute(Qt::WA_DeleteOnClose);
    left_->setWindowModality(Qt::NonModal);
    prepare(*left_, icon, text);
    left_->show();
}

void QtUserInterface::message(platform::Icon icon, const std::string& text) {
    if (isUnattended()) {
        leaveMessage(icon, text);
        return;
    }
    QMessageBox box(frontWindow());
    box.setObjectName(QStringLiteral("messageBox"));
    prepare(box, icon, text);
    addCancel(box);
    box.exec();
}

bool QtUserInterface::ask(platform::Icon icon, const std::string& text, bool unattended) {
    if (isUnattended()) return unattended;
    QMessageBox box(frontWindow());
    box.setObjectName(QStringLiteral("questionBox"));
    prepare(box, icon, text);
    // A question with a warning is about losing something: Enter must not do that.
    box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    box.setDefaultButton(icon == platform::Icon::Information ? QMessageBox::Yes : QMessageBox::No);
    box.setEscapeButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

std::unique_ptr<platform::Progress> QtUserInterface::openProgress(const std::string& title) {
    return std::make_unique<WindowProgress>(title, frontWindow(), isEnding, typeText);
}

void QtUserInterface::status(int pane, const std::string& text) {
    if (showStatus) showStatus(pane, text);
}

}  // namespace corvalence::gui
